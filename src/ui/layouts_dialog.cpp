#include "ui/layouts_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QVBoxLayout>

#include "batch/list_row.h"
#include "log/paths.h"
#include "plotcfg/layout_setup.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "ui/dialog_parts.h"
#include "ui/drawing_reader.h"
#include "ui/help.h"
#include "ui/icons.h"
#include "ui/list_value_check.h"

namespace sheafwork::ui {

std::vector<std::string> CommonLayoutChoices() {
  return {LoadResourceText(ids::kLayoutCurrentTab), LoadResourceText(ids::kLayoutModelTab),
          LoadResourceText(ids::kLayoutLastActive), LoadResourceText(ids::kLayoutAll)};
}

LayoutsSingleDialog::LayoutsSingleDialog(Session& session, int row, HostSession* host,
                                         Prompt& prompt, HelpViewer* help, QWidget* parent)
    : QDialog(parent), session_(session), prompt_(prompt), row_(row) {
  const BatchEntry& entry = session_.List.Entry(row_);
  setObjectName(QStringLiteral("frmLayoutsSingle"));
  setWindowTitle(Res(ids::kLayoutsTitle) + Q(FileNameFromPath(entry.FileName)));
  setWindowIcon(MakeIcon(IconId::Layouts));
  int helpId = context::kLayoutsSingle;
  SetHelpId(this, helpId++);

  all_ = new QRadioButton(Res(ids::kLayoutsPlotAll), this);
  all_->setObjectName(QStringLiteral("optPlotAll"));
  selected_ = new QRadioButton(Res(ids::kLayoutsPlotSelected), this);
  selected_->setObjectName(QStringLiteral("optPlotSelected"));
  list_ = new QListWidget(this);
  list_->setObjectName(QStringLiteral("lstLayouts"));
  list_->setMinimumSize(320, 180);
  showAll_ = new QCheckBox(Res(ids::kLayoutsShowAll), this);
  showAll_->setObjectName(QStringLiteral("chkShowAll"));
  SetHelpIds({all_, selected_, list_, showAll_}, helpId);
  ButtonRow buttons = MakeButtonRow(this, ids::kLayoutsOk, "cmdLayoutsOk", ids::kLayoutsCancel,
                                    "cmdLayoutsCancel", ids::kLayoutsHelp, "cmdLayoutsHelp");
  SetHelpIds({buttons.ok, buttons.cancel, buttons.help}, helpId);

  auto* layout = new QGridLayout(this);
  layout->addWidget(all_, 0, 0, 1, 2);
  layout->addWidget(selected_, 1, 0, 1, 2);
  layout->addWidget(list_, 2, 1);
  layout->addWidget(showAll_, 3, 1);
  layout->addWidget(buttons.box, 4, 0, 1, 2);
  layout->setColumnMinimumWidth(0, 16);

  ConnectButtonRow(this, buttons, help, topic::kLayoutsSingle);
  connect(selected_, &QRadioButton::toggled, list_, &QWidget::setEnabled);
  connect(selected_, &QRadioButton::toggled, showAll_, &QWidget::setEnabled);
  connect(showAll_, &QCheckBox::toggled, this, &LayoutsSingleDialog::Fill);
  connect(list_, &QListWidget::itemDoubleClicked, this, &LayoutsSingleDialog::accept);
  InstallContextHelp(this, help, QString::fromLatin1(topic::kLayoutsSingle));

  // The drawing's own layouts, read through the host.
  if (host) {
    const DrawingInfo info = ReadDrawing(*host, entry.FileName, kReadLayouts);
    if (!info.opened) {
      prompt.Ask({LoadResourceText(ids::kLayoutsOpenError) + info.error,
                  LoadResourceText(ids::kErrorTitle), PromptIcon::Critical, PromptButtons::Ok});
    }
    for (const std::string& name : info.layouts) {
      if (name != ModelTabName()) drawingLayouts_.push_back(name);
    }
  }
  const std::string current = EntryAsShown(entry).Layout;
  const bool named = !IsSpecialLayout(current);
  showAll_->setChecked(!drawingLayouts_.empty() || named);
  Fill();
  if (IsAllLayouts(current)) {
    all_->setChecked(true);
    list_->setEnabled(false);
    showAll_->setEnabled(false);
  } else {
    selected_->setChecked(true);
    for (int i = 0; i < list_->count(); ++i) {
      if (S(list_->item(i)->data(Qt::UserRole).toString()) == current) list_->setCurrentRow(i);
    }
  }
}

void LayoutsSingleDialog::Fill() {
  const QString previous =
      list_->currentItem() ? list_->currentItem()->data(Qt::UserRole).toString() : QString();
  list_->clear();
  // The choices every drawing has, under their short names ...
  const struct {
    int shownId;
    int storedId;
  } generic[] = {{ids::kCurrentTabShort, ids::kLayoutCurrentTab},
                 {ids::kModelShort, ids::kLayoutModelTab},
                 {ids::kLayoutLastActive, ids::kLayoutLastActive}};
  for (const auto& choice : generic) {
    auto* item = new QListWidgetItem(MakeIcon(IconId::Drawing), Res(choice.shownId), list_);
    item->setData(Qt::UserRole, Res(choice.storedId));
    QFont font = item->font();
    font.setItalic(true);
    item->setFont(font);
  }
  // ... then the drawing's own layouts by name.
  if (showAll_->isChecked()) {
    std::vector<std::string> names = drawingLayouts_;
    const std::string& current = session_.List.Entry(row_).Layout;
    if (!current.empty() && !IsSpecialLayout(current) &&
        std::find(names.begin(), names.end(), current) == names.end()) {
      names.push_back(current);  // a name the drawing no longer has stays visible
    }
    for (const std::string& name : names) {
      auto* item = new QListWidgetItem(MakeIcon(IconId::Layouts), Q(name), list_);
      item->setData(Qt::UserRole, Q(name));
    }
  }
  for (int i = 0; i < list_->count(); ++i) {
    if (list_->item(i)->data(Qt::UserRole).toString() == previous) list_->setCurrentRow(i);
  }
}

void LayoutsSingleDialog::accept() {
  std::string layout;
  if (all_->isChecked()) {
    layout = LoadResourceText(ids::kLayoutAll);
  } else if (QListWidgetItem* item = list_->currentItem()) {
    layout = S(item->data(Qt::UserRole).toString());
  } else {
    return;  // nothing chosen: the dialog stays open
  }
  if (!AcceptListValue(prompt_, ListField::Layout, layout, list_)) return;
  session_.List.Entry(row_).Layout = layout;
  QDialog::accept();
}

LayoutsMultiDialog::LayoutsMultiDialog(Session& session, Prompt& prompt, HelpViewer* help,
                                       QWidget* parent)
    : QDialog(parent), session_(session), prompt_(prompt) {
  setObjectName(QStringLiteral("frmLayoutsMulti"));
  setWindowTitle(Res(ids::kLayoutsMultiTitle));
  setWindowIcon(MakeIcon(IconId::Layouts));
  int helpId = context::kLayoutsMulti;
  SetHelpId(this, helpId++);

  auto* label = new QLabel(Res(ids::kLayoutsMultiLabel), this);
  label->setObjectName(QStringLiteral("lblLayouts"));
  choice_ = new QComboBox(this);
  choice_->setObjectName(QStringLiteral("cboLayouts"));
  choice_->setEditable(true);
  choice_->setInsertPolicy(QComboBox::NoInsert);
  choice_->setMinimumWidth(320);
  label->setBuddy(choice_);
  for (const std::string& text : CommonLayoutChoices()) choice_->addItem(Q(text));
  SetHelpIds({label, choice_}, helpId);

  // The rows' common value, when they have one.
  std::optional<std::string> common;
  bool same = true;
  for (int n : CachedSelection(session_)) {
    const std::string layout = EntryAsShown(session_.List.Entry(n)).Layout;
    if (!common) {
      common = layout;
    } else if (*common != layout) {
      same = false;
    }
  }
  if (common && same) {
    choice_->setCurrentText(Q(*common));
  } else {
    choice_->setCurrentIndex(-1);
    choice_->lineEdit()->setPlaceholderText(Res(ids::kSettingsVaries));
  }

  ButtonRow buttons =
      MakeButtonRow(this, ids::kLayoutsMultiOk, "cmdLayoutsMultiOk", ids::kLayoutsMultiCancel,
                    "cmdLayoutsMultiCancel", ids::kLayoutsMultiHelp, "cmdLayoutsMultiHelp");
  SetHelpIds({buttons.ok, buttons.cancel, buttons.help}, helpId);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(label);
  layout->addWidget(choice_);
  layout->addSpacing(8);
  layout->addWidget(buttons.box);

  ConnectButtonRow(this, buttons, help, topic::kLayoutsMulti);
  InstallContextHelp(this, help, QString::fromLatin1(topic::kLayoutsMulti));
}

void LayoutsMultiDialog::accept() {
  const std::string layout = S(choice_->currentText().trimmed());
  if (layout.empty()) {
    QDialog::reject();  // nothing chosen: the rows keep their layouts
    return;
  }
  if (!AcceptListValue(prompt_, ListField::Layout, layout, choice_)) return;
  for (int n : CachedSelection(session_)) session_.List.Entry(n).Layout = layout;
  QDialog::accept();
}

}  // namespace sheafwork::ui
