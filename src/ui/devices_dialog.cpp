#include "ui/devices_dialog.h"

#include <QCheckBox>
#include <QDir>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "host/error.h"
#include "plotcfg/devices.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"
#include "ui/dialog_parts.h"
#include "ui/help.h"
#include "ui/icons.h"
#include "ui/list_value_check.h"

namespace sheafwork::ui {

DevicesDialog::DevicesDialog(Session& session, PrinterCatalog* printers, HostSession* host,
                             Prompt& prompt, HelpViewer* help, QWidget* parent)
    : QDialog(parent), session_(session), prompt_(prompt) {
  setObjectName(QStringLiteral("frmDevices"));
  setWindowTitle(Res(ids::kDevicesTitle));
  setWindowIcon(MakeIcon(IconId::Devices));
  int helpId = context::kDevices;
  SetHelpId(this, helpId++);

  auto* group = new QGroupBox(Res(ids::kDevicesGroup), this);
  group->setObjectName(QStringLiteral("grpDevices"));
  list_ = new QListWidget(group);
  list_->setObjectName(QStringLiteral("lstDevices2"));
  list_->setMinimumSize(360, 200);
  showDescription_ = new QCheckBox(Res(ids::kDevicesShowDescription), group);
  showDescription_->setObjectName(QStringLiteral("chkDevices"));
  showDescription_->setChecked(true);
  descriptionLabel_ = new QLabel(Res(ids::kDevicesDescription), group);
  descriptionLabel_->setObjectName(QStringLiteral("lblDevicesDescr"));
  description_ = new QPlainTextEdit(group);
  description_->setObjectName(QStringLiteral("txtDevicesDescr"));
  description_->setReadOnly(true);
  description_->setMaximumHeight(description_->fontMetrics().lineSpacing() * 4 + 12);
  auto* browse = MakeButton(ids::kDevicesBrowse, "cmdDevicesBrowse", group);
  SetHelpIds({group, list_, showDescription_, descriptionLabel_, description_, browse}, helpId);

  auto* grid = new QGridLayout(group);
  grid->addWidget(list_, 1, 0, 1, 2);
  grid->addWidget(showDescription_, 2, 0);
  grid->addWidget(browse, 2, 1);
  grid->addWidget(descriptionLabel_, 3, 0, 1, 2);
  grid->addWidget(description_, 4, 0, 1, 2);
  grid->setColumnStretch(0, 1);

  ButtonRow buttons = MakeButtonRow(this, ids::kDevicesOk, "cmdDevicesOk", ids::kDevicesCancel,
                                    "cmdDevicesCancel", ids::kDevicesHelp, "cmdDevicesHelp");
  SetHelpIds({buttons.ok, buttons.cancel, buttons.help}, helpId);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(group);
  layout->addWidget(buttons.box);

  ConnectButtonRow(this, buttons, help, topic::kDevices);
  connect(browse, &QPushButton::clicked, this, &DevicesDialog::Browse);
  connect(list_, &QListWidget::currentRowChanged, this, &DevicesDialog::Describe);
  // A mouse click makes the item current before it selects it.
  connect(list_, &QListWidget::itemSelectionChanged, this, &DevicesDialog::Describe);
  connect(list_, &QListWidget::itemDoubleClicked, this, &DevicesDialog::accept);
  connect(showDescription_, &QCheckBox::toggled, this, &DevicesDialog::Describe);
  InstallContextHelp(this, help, QString::fromLatin1(topic::kDevices));

  // The choices: the default, the system's printers, then the plotter
  // configuration files of every folder of the host's search path.
  auto* byDefault = new QListWidgetItem(MakeIcon(IconId::Settings), Res(ids::kDefault), list_);
  byDefault->setToolTip(Res(ids::kDevicesDefaultTip));
  std::unique_ptr<PrinterCatalog> system;
  if (!printers) printers = (system = SystemPrinterCatalog()).get();
  printers_ = UsablePrinters(*printers);
  for (const PrinterInfo& printer : printers_) {
    new QListWidgetItem(MakeIcon(IconId::Devices), Q(printer.name), list_);
  }
  if (host) {
    try {
      const std::string path = host->App().GetPreferences()->PrinterConfigPath();
      for (const std::string& folder : SplitSearchPath(path)) {
        const QDir dir(Q(folder));
        const QStringList files = dir.entryList(
            {QStringLiteral("*.pc3")}, QDir::Files | QDir::Readable, QDir::Name | QDir::IgnoreCase);
        for (const QString& file : files) new QListWidgetItem(MakeIcon(IconId::Plot), file, list_);
      }
    } catch (const host::Error&) {
      prompt_.Ask({LoadResourceText(ids::kConfigPathUnreadable), LoadResourceText(ids::kErrorTitle),
                   PromptIcon::Critical, PromptButtons::Ok});
    }
  }
  // With one row, its device is selected.
  const std::vector<int> rows = CachedSelection(session_);
  if (rows.size() == 1) {
    const QString device = Q(session_.List.Entry(rows.front()).PlotDevice);
    for (int i = 0; i < list_->count(); ++i) {
      if (list_->item(i)->text() == device) {
        list_->setCurrentRow(i);
        break;
      }
    }
  }
  Describe();
}

void DevicesDialog::Describe() {
  const bool shown = showDescription_->isChecked();
  descriptionLabel_->setVisible(shown);
  description_->setVisible(shown);
  if (!shown) return;
  QListWidgetItem* item = list_->currentItem();
  if (!item || !item->isSelected()) {
    description_->clear();
    return;
  }
  const std::string name = S(item->text());
  for (const PrinterInfo& printer : printers_) {
    if (printer.name == name) {
      description_->setPlainText(Res(ids::kSystemPrinter) + u'\n' +
                                 Res(ids::kPrinterDriver).trimmed() + u' ' + Q(printer.driver) +
                                 u'\n' + Res(ids::kPrinterPort).trimmed() + u' ' + Q(printer.port));
      return;
    }
  }
  description_->setPlainText(Res(ids::kNonSystemPrinter) + u' ' + item->text());
}

void DevicesDialog::Browse() {
  FileDialogRequest request;
  request.title = LoadResourceText(ids::kPlotterConfigTitle);
  request.filter = LoadResourceText(ids::kPlotterConfigFilter);
  request.mustExist = true;
  const auto name = prompt_.OpenFileName(request);
  if (!name || !EndsWithIgnoreCase(*name, "pc3")) return;
  auto* item = new QListWidgetItem(MakeIcon(IconId::Plot), Q(*name), list_);
  list_->setCurrentItem(item);
}

void DevicesDialog::accept() {
  const QList<QListWidgetItem*> chosen = list_->selectedItems();
  if (chosen.isEmpty()) {
    // Nothing chosen: nothing is written.
    QDialog::reject();
    return;
  }
  const std::string device = S(chosen.front()->text());
  if (!AcceptListValue(prompt_, ListField::Device, device, list_)) return;
  for (int n : CachedSelection(session_)) session_.List.Entry(n).PlotDevice = device;
  QDialog::accept();
}

}  // namespace sheafwork::ui
