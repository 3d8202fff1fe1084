// The desktop application as a person starts and ends it, and with the
// embedded host: a plot run on a real drawing through the progress dialog,
// and the progress dialog itself.
#include <QAction>
#include <QApplication>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <filesystem>

#include "batch/list_row.h"
#include "embedded/automation/embedded_host.h"
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

QWidget* ShownWindowNamed(const char* name) {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName() == QLatin1String(name) && widget->isVisible()) return widget;
  }
  return nullptr;
}

/// The dialog as a person would see it at each plot.
class WatchedProgress : public ui::ProgressDialog {
 public:
  void Step(const std::string& drawing, const std::string& layout, int n, int total) override {
    ui::ProgressDialog::Step(drawing, layout, n, total);
    auto* cancel = Dialog()->findChild<QPushButton*>(QStringLiteral("cmdProgressCancel"));
    cancelUsable = cancel && cancel->isEnabled() && Dialog()->isEnabled();
    parent = Dialog()->parentWidget();
    ++steps;
  }
  bool cancelUsable = false;
  QWidget* parent = nullptr;
  int steps = 0;
};

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

  void progressDialogFollowsTheBatch() {
    ui::ProgressDialog progress;
    QVERIFY(!progress.Cancelled());
    progress.Start(2);
    QVERIFY(progress.Dialog());
    QVERIFY(progress.Dialog()->isVisible());
    QVERIFY(progress.Dialog()->isModal());
    progress.Step("Plan.dxf", "A1", 1, 2);
    QCOMPARE(progress.Dialog()->labelText(), QStringLiteral("Tracé 1 sur 2\u00a0: Plan.dxf - A1"));
    QVERIFY(!progress.Cancelled());
    // More plots than announced stretch the bar instead of overflowing it.
    progress.Step("Plan.dxf", "A3", 3, 2);
    QCOMPARE(progress.Dialog()->maximum(), 3);
    QCOMPARE(progress.Dialog()->labelText(), QStringLiteral("Tracé 3 sur 3\u00a0: Plan.dxf - A3"));
    progress.Dialog()->cancel();
    QVERIFY(progress.Cancelled());
    progress.Finish();
    QVERIFY(!progress.Dialog());
    QVERIFY(!progress.Cancelled());
  }

  // A plot run through the progress dialog. A failed row says why: its
  // tooltips and the details pane show the reason the host gave (the text
  // the command line prints on stderr), or that it gave none.
  void plotRunWithTheEmbeddedHost() {
    TempFolder folder;
    const std::string source = SHEAFWORK_SOURCE_DIR;
    auto progress = std::make_shared<WatchedProgress>();
    ScriptedPrompt prompt;
    // The embedded host, started as the desktop starts it, with the shipped
    // data and no printers.
    embedded::EmbeddedHostOptions options;
    options.dataFolder = source + "/data";
    options.userFolder = folder.File("utilisateur");
    options.printers = std::make_shared<ListedPrinters>();
    options.progress = progress;
    AttachResult attached =
        AttachHost([&] { return embedded::MakeEmbeddedHost(options); },
                   ProgramFiles{folder.File("data"), folder.path().string()}, prompt);
    QVERIFY(attached.ok);
    Session session(folder.path().string());
    BatchEntry& good = session.List.Append();
    good.FileName = source + "/examples/plans/etage.dxf";
    good.Layout = "Onglet Objet";
    good.PlotDevice = "PDF.pc3";
    good.PlotArea = "#E";
    good.PlotScale = "S#0";
    good.PlotFile = folder.File("sortie/etage.pdf");
    session.List.Append().FileName = folder.File("absent.dxf");
    session.List.Append().FileName = source + "/tests/data/ui/damaged.dxf";
    std::filesystem::create_directories(folder.path() / "sortie");

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
    QCOMPARE(progress->steps, 1);
    QCOMPARE(progress->parent, &window);
    QVERIFY(progress->cancelUsable);
    ui::BatchModel& model = *window.Model();
    QCOMPARE(model.Status(1), RowStatus::Plotted);
    QCOMPARE(model.Status(2), RowStatus::Failed);
    QCOMPARE(model.Status(3), RowStatus::Failed);
    QVERIFY(std::filesystem::file_size(folder.File("sortie/etage.pdf")) > 0);
    // The progress dialog went away with the batch.
    QVERIFY(!progress->Dialog());

    // The reader's reason names the file and what it found.
    for (int column = 0; column < kListColumns; ++column) {
      const QString tip = model.index(2, column).data(Qt::ToolTipRole).toString();
      QVERIFY2(tip.contains(QStringLiteral("damaged.dxf")) &&
                   tip.contains(QStringLiteral("pas un nombre")),
               qPrintable(tip));
    }
    // A missing drawing has no reason from the host: the row says so, and
    // the next row does not borrow its reason.
    const QString none = QString::fromStdString(LoadResourceText(ids::kDetailsNoReason));
    QVERIFY(model.index(1, 0).data(Qt::ToolTipRole).toString().contains(none));
    QVERIFY(!model.index(2, 0).data(Qt::ToolTipRole).toString().contains(none));
    QVERIFY(!model.index(0, 0).data(Qt::ToolTipRole).toString().contains(none));
    // The first failed row becomes the current one, its details in view
    // (plain text gives non-breaking spaces back as spaces).
    QVERIFY(window.Details()->toPlainText().contains(QString(none).replace(u'\u00a0', u' ')));
    QVERIFY(window.Details()->toPlainText().contains(
        QString::fromStdString(LoadResourceText(ids::kDetailsFailed))));
    window.List()->setCurrentIndex(model.index(2, 3));
    const QString details = window.Details()->toPlainText();
    QVERIFY2(details.contains(QStringLiteral("pas un nombre")), qPrintable(details));
    EndSession(session, attached.host.get(), prompt);
  }
};

SHEAFWORK_UI_TEST(DesktopTest);
#include "desktop_test.moc"
