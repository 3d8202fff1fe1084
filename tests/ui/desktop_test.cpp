// The desktop application as a person starts and ends it.
#include <QAction>
#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include "ui/desktop.h"
#include "ui/main_window.h"
#include "ui/single_instance.h"
#include "ui_fixture.h"

using namespace sheafwork;
using namespace sheafwork::testing;

namespace {

QWidget* ShownWindowNamed(const char* name) {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName() == QLatin1String(name) && widget->isVisible()) return widget;
  }
  return nullptr;
}

}  // namespace

class DesktopTest : public QObject {
  Q_OBJECT

 private slots:
  // Quitting with the help window open used to leave the process running,
  // holding the single-instance lock, so the next start was refused.
  void quittingWithHelpOpenEndsTheProgram() {
    QTemporaryDir config;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, config.path());
    FakeHost host;
    HostRegistry hosts;
    hosts.Register("fake", [&host] { return host.App(); });
    TempFolder folder;
    ui::DesktopOptions options;
    options.hosts = &hosts;
    options.dataFolder = folder.File("data");
    options.userFolder = folder.File("utilisateur");
    ScriptedPrompt prompt;
    prompt.ThenAnswer(PromptAnswer::Ok);  // "Quitter le traçage en différé ?"

    bool helpShown = false;
    bool lingered = false;
    // Once the main window shows (the splash runs the event loop before).
    QTimer person;
    person.setInterval(20);
    connect(&person, &QTimer::timeout, [&] {
      auto* window = qobject_cast<ui::MainWindow*>(ShownWindowNamed("frmSheafwork"));
      if (!window) return;
      person.stop();
      window->Command(QStringLiteral("mnuHelpMain"))->trigger();
      helpShown = ShownWindowNamed("frmHelp") != nullptr;
      window->Command(QStringLiteral("mnuFileExit"))->trigger();
    });
    person.start();
    // Ends a session that would not end by itself.
    QTimer watchdog;
    watchdog.setSingleShot(true);
    connect(&watchdog, &QTimer::timeout, [&] {
      lingered = true;
      QCoreApplication::quit();
    });
    watchdog.start(5000);
    const int status = ui::RunDesktopSession(options, prompt);
    watchdog.stop();

    QVERIFY(helpShown);
    QVERIFY2(!lingered, "the program kept running after its main window closed");
    QCOMPARE(status, 0);
    QVERIFY(host.Quit());
    QVERIFY(!ShownWindowNamed("frmHelp"));
    // The next start is not taken for a second instance.
    ui::SingleInstance next;
    QVERIFY(next.TryLock());
  }
};

SHEAFWORK_UI_TEST(DesktopTest);
#include "desktop_test.moc"
