#include "ui/page_setups_dialog.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

#include "log/paths.h"
#include "plotcfg/page_setup.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "ui/dialog_parts.h"
#include "ui/drawing_reader.h"
#include "ui/help.h"
#include "ui/icons.h"
#include "ui/list_value_check.h"

namespace sheafwork::ui {

PageSetupsDialog::PageSetupsDialog(Session& session, HostSession* host, Prompt& prompt,
                                   HelpViewer* help, QWidget* parent)
    : QDialog(parent), session_(session), host_(host), prompt_(prompt) {
  const std::vector<int> rows = CachedSelection(session_);
  setObjectName(QStringLiteral("frmNPS"));
  const QString subject = rows.size() == 1
                              ? Q(FileNameFromPath(session_.List.Entry(rows.front()).FileName))
                              : Res(ids::kSettingsMultiple);
  setWindowTitle(Res(ids::kSetupsTitle) + subject);
  setWindowIcon(MakeIcon(IconId::PageSetups));
  int helpId = context::kPageSetups;
  SetHelpId(this, helpId++);

  auto* label = new QLabel(Res(ids::kSetupsLabel), this);
  label->setObjectName(QStringLiteral("lblNPS"));
  list_ = new QListWidget(this);
  list_->setObjectName(QStringLiteral("lstNPS"));
  list_->setMinimumSize(360, 180);
  label->setBuddy(list_);
  auto* group = new QGroupBox(Res(ids::kSetupsFromDrawing), this);
  group->setObjectName(QStringLiteral("grpNPSFrom"));
  from_ = new QLineEdit(group);
  from_->setObjectName(QStringLiteral("txtNPSFrom"));
  from_->setReadOnly(true);
  auto* browse = MakeButton(ids::kSetupsBrowse, "cmdNPSBrowse", group);
  browse->setToolTip(Res(ids::kSetupsSelectDrawing));
  auto* fromRow = new QHBoxLayout(group);
  fromRow->addWidget(from_, 1);
  fromRow->addWidget(browse);
  SetHelpIds({label, list_, group, from_, browse}, helpId);
  ButtonRow buttons = MakeButtonRow(this, ids::kSetupsOk, "cmdNPSOk", ids::kSetupsCancel,
                                    "cmdNPSCancel", ids::kSetupsHelp, "cmdNPSHelp");
  SetHelpIds({buttons.ok, buttons.cancel, buttons.help}, helpId);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(label);
  layout->addWidget(list_);
  layout->addWidget(group);
  layout->addWidget(buttons.box);

  ConnectButtonRow(this, buttons, help, topic::kPageSetups);
  connect(browse, &QPushButton::clicked, this, &PageSetupsDialog::Browse);
  connect(list_, &QListWidget::itemDoubleClicked, this, &PageSetupsDialog::accept);
  InstallContextHelp(this, help, QString::fromLatin1(topic::kPageSetups));

  // The first row's page setup says where the list comes from.
  if (rows.empty()) return;
  const BatchEntry& first = session_.List.Entry(rows.front());
  const NpsInfo current = GetNPSInfoForEntry(first.PlotSetup, first.FileName);
  if (current.isExternal) {
    LoadFrom(current.drawing, true);
  } else {
    LoadFrom(first.FileName, false);
  }
  const std::string wanted =
      first.PlotSetup.empty() ? LoadResourceText(ids::kDefault) : current.name;
  for (int i = 0; i < list_->count(); ++i) {
    if (S(list_->item(i)->text()) == wanted) list_->setCurrentRow(i);
  }
}

bool PageSetupsDialog::LoadFrom(const std::string& drawing, bool external) {
  std::vector<std::string> names;
  bool ok = true;
  if (host_) {
    const DrawingInfo info = ReadDrawing(*host_, drawing, kReadPageSetups);
    ok = info.opened && info.pageSetupsOk;
    names = info.pageSetups;
  }
  if (!ok) {
    prompt_.Ask({LoadResourceText(ids::kSetupsUnreadable), LoadResourceText(ids::kErrorTitle),
                 PromptIcon::Critical, PromptButtons::Ok});
    if (external) return false;  // the list keeps what it showed
  }
  source_ = drawing;
  external_ = external;
  from_->setText(Q(drawing));
  list_->clear();
  new QListWidgetItem(MakeIcon(IconId::Settings), Res(ids::kDefault), list_);
  for (const std::string& name : names)
    new QListWidgetItem(MakeIcon(IconId::PageSetups), Q(name), list_);
  return ok;
}

void PageSetupsDialog::Browse() {
  FileDialogRequest request;
  request.title = LoadResourceText(ids::kSetupsSelectDrawing);
  request.filter = DrawingFilter();
  request.fileName = source_;
  request.mustExist = true;
  if (auto name = prompt_.OpenFileName(request)) LoadFrom(*name, true);
}

void PageSetupsDialog::accept() {
  QListWidgetItem* item = list_->currentItem();
  if (!item) {
    QDialog::reject();
    return;
  }
  const std::string name = S(item->text());
  // A page setup of another drawing is written as "drawing|name".
  const std::string value = IsDefaultPageSetup(name) || !external_ ? name : source_ + "|" + name;
  if (!AcceptListValue(prompt_, ListField::PageSetup, value, list_)) return;
  for (int n : CachedSelection(session_)) session_.List.Entry(n).PlotSetup = value;
  QDialog::accept();
}

}  // namespace sheafwork::ui
