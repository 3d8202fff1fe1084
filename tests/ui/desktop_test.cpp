// The desktop application as a person starts and ends it, and what a failed
// row tells them.
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <filesystem>

#include "batch/list_row.h"
#include "host/startup.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "ui/batch_model.h"
#include "ui/desktop.h"
#include "ui/main_window.h"
#include "ui/progress_dialog.h"
#include "ui/single_instance.h"
#include "ui_fixture.h"

using namespace sheafwork;
using namespace sheafwork::testing;

namespace {

ui::MainWindow* ShownMainWindow() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (auto* window = qobject_cast<ui::MainWindow*>(widget); window && window->isVisible()) {
      return window;
    }
  }
  return nullptr;
}

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
      ui::MainWindow* window = ShownMainWindow();
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

  // A failed row says why: its tooltip and the details pane show the reason
  // the host gave (the text the command line prints on stderr), or that it
  // gave none.
  void failedRowShowsTheHostsReason() {
    TempFolder folder;
    const std::filesystem::path damaged = folder.path() / "endommage.dxf";
    std::filesystem::copy_file(
        std::filesystem::path(SHEAFWORK_SOURCE_DIR) / "tests/data/ui/damaged.dxf", damaged);
    auto progress = std::make_shared<ui::ProgressDialog>();
    ScriptedPrompt prompt;
    AttachResult attached = AttachEmbeddedHost(folder, progress, prompt);
    QVERIFY(attached.ok);
    Session session(folder.path().string());
    session.List.Append().FileName = damaged.string();
    session.List.Append().FileName = folder.File("absent.dxf");

    ui::UiContext context;
    context.session = &session;
    context.prompt = &prompt;
    context.host = attached.host.get();
    context.progress = progress.get();
    ListedPrinters printers;
    context.printers = &printers;
    ui::MainWindow window(context);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.Plot();
    ui::BatchModel& model = *window.Model();
    QCOMPARE(model.Status(1), RowStatus::Failed);
    QCOMPARE(model.Status(2), RowStatus::Failed);

    // The reader's reason names the file and where it went wrong.
    for (int column = 0; column < kListColumns; ++column) {
      const QString tip = model.index(0, column).data(Qt::ToolTipRole).toString();
      QVERIFY2(tip.contains(QStringLiteral("endommage.dxf")) &&
                   tip.contains(QStringLiteral("pas un nombre")),
               qPrintable(tip));
    }
    // The first failed row is the current one; its details are in view.
    const QString details = window.Details()->toPlainText();
    QVERIFY2(details.contains(QStringLiteral("pas un nombre")), qPrintable(details));
    QVERIFY(details.contains(QString::fromStdString(LoadResourceText(ids::kDetailsFailed))));
    // A missing drawing has no reason from the host: the row says so, and
    // does not borrow the previous row's.
    const QString missing = model.index(1, 0).data(Qt::ToolTipRole).toString();
    QVERIFY2(missing.contains(QString::fromStdString(LoadResourceText(ids::kDetailsNoReason))),
             qPrintable(missing));
    QVERIFY(!missing.contains(QStringLiteral("pas un nombre")));
    window.List()->setCurrentIndex(model.index(1, 2));
    QVERIFY(window.Details()->toPlainText().contains(QStringLiteral("absent.dxf")));
    EndSession(session, attached.host.get(), prompt);
  }
};

SHEAFWORK_UI_TEST(DesktopTest);
#include "desktop_test.moc"
