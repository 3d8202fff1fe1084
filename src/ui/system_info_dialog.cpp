#include "ui/system_info_dialog.h"

#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSysInfo>
#include <QVBoxLayout>

#include "host/error.h"
#include "res/string_ids.h"
#include "ui/help.h"
#include "ui/qt_text.h"

namespace sheafwork::ui {

SystemFacts CollectSystemFacts(const UiContext& context) {
  const QString version = QStringLiteral(SHEAFWORK_UI_VERSION);
  SystemFacts facts;
  facts.emplace_back(Res(ids::kSysInfoSystem),
                     QStringLiteral("%1 (%2 %3, %4)")
                         .arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(),
                              QSysInfo::kernelVersion(), QSysInfo::currentCpuArchitecture()));
  facts.emplace_back(QStringLiteral("Qt"), QString::fromLatin1(qVersion()));
  facts.emplace_back(Res(ids::kAboutProduct), version);
  if (context.host) {
    // The hosts the desktop drives are built with the program: same version.
    QString host = Q(context.hostName).trimmed();
    host += (host.isEmpty() ? QString() : QStringLiteral(" ")) + version;
    try {
      host::Application& app = context.host->App();
      const QString path = Q(app.Path());
      if (!path.isEmpty()) host += QStringLiteral(", ") + path;
      facts.emplace_back(Res(ids::kSysInfoHost), host);
      auto preferences = app.GetPreferences();
      facts.emplace_back(Res(ids::kSysInfoPlotterPath), Q(preferences->PrinterConfigPath()));
      facts.emplace_back(Res(ids::kSysInfoSupportPath), Q(preferences->SupportPath()));
    } catch (const host::Error& error) {
      facts.emplace_back(Res(ids::kSysInfoHost),
                         host + QStringLiteral(", ") + Q(error.description()));
    }
  }
  facts.emplace_back(Res(ids::kSysInfoDataFolder), Q(context.dataFolder));
  facts.emplace_back(Res(ids::kSysInfoUserFolder), Q(context.userFolder));
  return facts;
}

SystemInfoDialog::SystemInfoDialog(const SystemFacts& facts, QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("frmSysInfo"));
  setWindowTitle(Res(ids::kSysInfoTitle));
  SetHelpId(this, context::kAbout);
  text_ = new QPlainTextEdit(this);
  text_->setObjectName(QStringLiteral("txtSysInfo"));
  text_->setReadOnly(true);
  text_->setLineWrapMode(QPlainTextEdit::NoWrap);
  QString text;
  for (const auto& [label, value] : facts) {
    text += label + QStringLiteral("\u00a0: ") + value + u'\n';
  }
  text_->setPlainText(text);
  const QFontMetrics metrics = text_->fontMetrics();
  int width = 0;
  for (const QString& line : text.split(u'\n'))
    width = std::max(width, metrics.horizontalAdvance(line));
  text_->setMinimumSize(std::min(width + 40, 900),
                        metrics.lineSpacing() * (static_cast<int>(facts.size()) + 1) + 16);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdSysInfoOk"));
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text_);
  layout->addWidget(buttons);
}

}  // namespace sheafwork::ui
