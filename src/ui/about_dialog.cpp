#include "ui/about_dialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "res/string_ids.h"
#include "res/string_table.h"
#include "ui/dialog_parts.h"
#include "ui/help.h"
#include "ui/icons.h"
#include "ui/system_info_dialog.h"

namespace sheafwork::ui {
namespace {

QLabel* Label(const QString& text, const char* name, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setObjectName(QString::fromLatin1(name));
  label->setWordWrap(true);
  return label;
}

}  // namespace

AboutDialog::AboutDialog(Prompt& prompt, QWidget* parent, std::function<bool()> startSysInfo)
    : QDialog(parent), prompt_(prompt), startSysInfo_(std::move(startSysInfo)) {
  if (!startSysInfo_) {
    startSysInfo_ = [this] {
      SystemInfoDialog info(CollectSystemFacts({}), this);
      info.exec();
      return true;
    };
  }
  setObjectName(QStringLiteral("frmAbout"));
  setWindowTitle(Res(ids::kAboutTitle));
  int helpId = context::kAbout;
  SetHelpId(this, helpId++);

  auto* icon = new QLabel(this);
  icon->setObjectName(QStringLiteral("picIcon"));
  icon->setPixmap(MakeIcon(IconId::App).pixmap(QSize(64, 64)));
  icon->setAlignment(Qt::AlignTop | Qt::AlignHCenter);

  QLabel* title = Label(Res(ids::kAboutProduct), "lblTitle", this);
  title->setWordWrap(false);
  QFont big = title->font();
  big.setPointSizeF(big.pointSizeF() * 1.4);
  big.setBold(true);
  title->setFont(big);
  QLabel* version =
      Label(Res(ids::kAboutVersion) + QStringLiteral(SHEAFWORK_UI_VERSION), "lblVersion", this);
  QLabel* description = Label(Res(ids::kAboutRights), "lblDescription", this);
  auto* line = new QFrame(this);
  line->setFrameShape(QFrame::HLine);
  line->setFrameShadow(QFrame::Sunken);
  QLabel* disclaimer = Label(Res(ids::kAboutWarning), "lblDisclaimer", this);
  QFont small = disclaimer->font();
  small.setPointSizeF(small.pointSizeF() * 0.9);
  disclaimer->setFont(small);

  auto* ok = MakeButton(ids::kAboutOk, "cmdOK", this);
  auto* sysInfo = MakeButton(ids::kAboutSysInfo, "cmdSysInfo", this);
  ok->setDefault(true);
  SetHelpIds({icon, title, version, description, disclaimer, ok, sysInfo}, helpId);

  auto* grid = new QGridLayout(this);
  grid->addWidget(icon, 0, 0, 3, 1);
  grid->addWidget(title, 0, 1);
  grid->addWidget(version, 1, 1);
  grid->addWidget(description, 2, 1);
  grid->addWidget(line, 3, 0, 1, 3);
  grid->addWidget(disclaimer, 4, 0, 1, 2);
  auto* buttons = new QVBoxLayout;
  buttons->addWidget(ok);
  buttons->addWidget(sysInfo);
  buttons->addStretch();
  grid->addLayout(buttons, 0, 2, 3, 1);
  grid->addWidget(new QWidget(this), 4, 2);
  grid->setColumnStretch(1, 1);
  grid->setHorizontalSpacing(16);
  setFixedWidth(640);

  connect(ok, &QPushButton::clicked, this, &QDialog::accept);
  connect(sysInfo, &QPushButton::clicked, this, &AboutDialog::SystemInfo);
  // Let the texts lay out before the box shows.
  QApplication::processEvents();
}

void AboutDialog::SystemInfo() {
  if (!startSysInfo_()) {
    prompt_.Ask({LoadResourceText(ids::kSysInfoUnavailable), LoadResourceText(ids::kAppTitle),
                 PromptIcon::None, PromptButtons::Ok});
  }
}

Splash::Splash(QWidget* parent) : QWidget(parent, Qt::SplashScreen | Qt::WindowStaysOnTopHint) {
  setObjectName(QStringLiteral("frmSplash"));
  setWindowTitle(Res(ids::kAppTitle));
  setAttribute(Qt::WA_StyledBackground);
  auto* frame = new QFrame(this);
  frame->setFrameShape(QFrame::StyledPanel);
  frame->setObjectName(QStringLiteral("splashFrame"));
  frame->setStyleSheet(QStringLiteral(
      "#splashFrame { background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 #ffffff, "
      "stop:1 #e3ebf6); border: 1px solid #8aa2c4; }"));
  auto* icon = new QLabel(frame);
  icon->setPixmap(MakeIcon(IconId::App).pixmap(QSize(72, 72)));
  auto* title = new QLabel(Res(ids::kAppTitle), frame);
  QFont big = title->font();
  big.setPointSizeF(big.pointSizeF() * 1.5);
  big.setBold(true);
  title->setFont(big);
  auto* text = new QLabel(Res(ids::kSplashText), frame);
  text->setObjectName(QStringLiteral("lblSplash"));
  auto* inner = new QGridLayout(frame);
  inner->setContentsMargins(24, 24, 32, 24);
  inner->setHorizontalSpacing(20);
  inner->addWidget(icon, 0, 0, 2, 1);
  inner->addWidget(title, 0, 1);
  inner->addWidget(text, 1, 1);
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(0, 0, 0, 0);
  outer->addWidget(frame);
}

}  // namespace sheafwork::ui
