// The main window over the session: which commands are available, what the
// list shows, dropping files, removing rows, the plot run's icons, closing;
// the desktop application as a person starts and ends it; a plot run with
// the embedded host through the progress dialog.
#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>
#include <QtTest>
#include <filesystem>

#include "batch/list_commands.h"
#include "batch/list_row.h"
#include "embedded/automation/embedded_host.h"
#include "fakes/test_data.h"
#include "host/startup.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "ui/batch_model.h"
#include "ui/desktop.h"
#include "ui/main_window.h"
#include "ui/progress_dialog.h"
#include "ui/qt_text.h"
#include "ui/results_dialog.h"
#include "ui/single_instance.h"
#include "ui_fixture.h"

using namespace sheafwork;
using namespace sheafwork::testing;
using sheafwork::ui::MainWindow;

namespace {

QString Cell(const MainWindow& window, int row, int column) {
  return window.Model()->index(row, column).data().toString();
}

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

class MainWindowTest : public QObject {
  Q_OBJECT

 private slots:
  // The list shows the session's rows and follows every change of them,
  // keeping Qt's contract for models throughout.
  void listShowsEntriesAndFollowsEveryChange() {
    UiWorld world;
    world.AddRow("A.dwg");
    world.AddRow("sous/B.dwg");
    world.AddRow("C.dwt");
    world.session.List.Entry(3).Layout = "Présentation1";
    world.session.List.Entry(3).PlotDevice = "PDF.pc3";
    MainWindow window(world.Context());
    QAbstractItemModelTester tester(window.Model(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(window.Model()->rowCount(), 3);
    QCOMPARE(window.Model()->headerData(4, Qt::Horizontal).toString(),
             QString::fromStdString(ListColumnTitle(4)));
    QCOMPARE(Cell(window, 1, 0), QStringLiteral("B.dwg"));
    QVERIFY(Cell(window, 1, 1).endsWith(QStringLiteral("/sous/")) ||
            Cell(window, 1, 1).endsWith(QStringLiteral("/sous")));
    QCOMPARE(Cell(window, 0, 2), QStringLiteral("*Onglet courant*"));
    QCOMPARE(Cell(window, 0, 3), QStringLiteral("Par défaut"));
    QCOMPARE(Cell(window, 2, 2), QStringLiteral("Présentation1"));
    QCOMPARE(Cell(window, 2, 4), QStringLiteral("PDF.pc3"));

    // One row goes without a question; the row after it takes its place.
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.SelectPositions({2});
    QTest::keyClick(window.List(), Qt::Key_Delete);
    QVERIFY(world.prompt.messages.empty());
    QCOMPARE(window.Model()->rowCount(), 2);
    QCOMPARE(Cell(window, 0, 0), QStringLiteral("A.dwg"));
    QCOMPARE(Cell(window, 1, 0), QStringLiteral("C.dwt"));
    QVERIFY(world.session.ListModified);

    // Two rows ask once; No keeps them.
    window.SelectPositions({1, 2});
    world.prompt.ThenAnswer(PromptAnswer::No);
    window.RemoveSelected();
    QCOMPARE(world.prompt.messages.size(), std::size_t{1});
    QCOMPARE(world.prompt.messages[0].text, LoadResourceText(ids::kConfirmRemove));
    QCOMPARE(window.Model()->rowCount(), 2);
    world.prompt.ThenAnswer(PromptAnswer::Yes);
    window.RemoveSelected();
    QCOMPARE(window.Model()->rowCount(), 0);
    QVERIFY(!window.Command("mnuFilePlot")->isEnabled());

    AddDrawingToList(world.session, world.folder.Write("A.dwg", ""));
    AddDrawingToList(world.session, world.folder.Write("B.dwg", ""));
    AddDrawingToList(world.session, world.folder.Write("C.dwg", ""));
    QCOMPARE(window.Model()->rowCount(), 3);
    QCOMPARE(Cell(window, 2, 0), QStringLiteral("C.dwg"));
    window.Model()->SetStatus(3, RowStatus::Failed);
    const std::vector<int> first{1};
    RemoveSelectedEntries(world.session, world.prompt, first);
    QCOMPARE(Cell(window, 0, 0), QStringLiteral("B.dwg"));
    // The failed row's icon moved up with it.
    QCOMPARE(window.Model()->Status(2), RowStatus::Failed);
    world.session.ReloadMainListview(false, false);
    QCOMPARE(window.Model()->Status(2), RowStatus::NotPlotted);
    QCOMPARE(window.Model()->rowCount(), 2);
  }

  void droppedOrAddedDrawingsBecomeRows() {
    UiWorld world;
    MainWindow window(world.Context());
    // Drawings of each kind, a text file and a folder named like a drawing.
    std::filesystem::create_directories(world.folder.path() / "dossier.dwg");
    QList<QUrl> urls;
    for (const char* name :
         {"PLAN.DWG", "notes.txt", "dossier.dwg", "gabarit.dwt", "facades.dxf"}) {
      if (!std::filesystem::exists(world.folder.path() / name)) world.folder.Write(name, "");
      urls << QUrl::fromLocalFile(QString::fromStdString(world.folder.File(name)));
    }
    QMimeData data;
    data.setUrls(urls);
    QVERIFY(window.Model()->canDropMimeData(&data, Qt::CopyAction, -1, -1, {}));
    window.Model()->dropMimeData(&data, Qt::CopyAction, -1, -1, {});
    QCOMPARE(window.Model()->rowCount(), 3);
    QCOMPARE(Cell(window, 0, 0), QStringLiteral("PLAN.DWG"));
    QCOMPARE(Cell(window, 1, 0), QStringLiteral("gabarit.dwt"));
    QCOMPARE(Cell(window, 2, 0), QStringLiteral("facades.dxf"));
    QVERIFY(window.Command("mnuFilePlot")->isEnabled());

    QMimeData plain;
    plain.setText(urls.front().toLocalFile());
    QVERIFY(!window.Model()->canDropMimeData(&plain, Qt::CopyAction, -1, -1, {}));

    // Adding by name takes drawings only.
    world.prompt.ThenChoose(world.folder.Write("a.dwg", ""))
        .ThenChoose(world.folder.Write("b.pdf", ""));
    window.AddDrawings();
    window.AddDrawings();
    QCOMPARE(window.Model()->rowCount(), 4);
    QCOMPARE(world.prompt.dialogs[0].request.title, LoadResourceText(ids::kAddDrawingTitle));
    QCOMPARE(ui::QtNameFilters(world.prompt.dialogs[0].request.filter),
             QStringLiteral("Tous les dessins (*.dwg *.dwt *.dxf);;Fichiers de dessin (*.dwg);;"
                            "Fichiers gabarits (*.dwt);;Fichiers DXF (*.dxf)"));
  }

  void droppedListOpensThenAppends() {
    UiWorld world;
    world.AddRow("A.dwg");
    world.AddRow("B.dwg");
    const std::string list = world.folder.File("liste.qx3");
    QVERIFY(SaveListFile(world.session, world.prompt, list));
    UiWorld other;
    MainWindow window(other.Context());
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(list))});
    window.Model()->dropMimeData(&data, Qt::CopyAction, -1, -1, {});
    QCOMPARE(window.Model()->rowCount(), 2);
    QCOMPARE(window.windowTitle(),
             QString::fromStdString(LoadResourceText(ids::kCaptionPrefix) + list));
    // A second drop adds behind the rows and keeps the name.
    window.Model()->dropMimeData(&data, Qt::CopyAction, -1, -1, {});
    QCOMPARE(window.Model()->rowCount(), 4);
    QCOMPARE(other.session.ListName, list);
  }

  // The plot test shows its results; a plot run marks every row.
  void plotTestAndPlotRun() {
    UiWorld world;
    world.AddRow("Bon.dwg").AddLayout("A1");
    world.session.List.Entry(1).Layout = "Inconnue";
    FakeDrawing& broken = world.AddRow("Casse.dwg");
    broken.openError = host::Error(-2147467259, "Dessin illisible");
    world.AddRow("Autre.dwg");
    MainWindow window(world.Context());
    QString shown;
    WhenModal<ui::ResultsDialog>([&](ui::ResultsDialog& dialog) {
      shown = dialog.findChild<QPlainTextEdit*>("txtPTResults")->toPlainText();
    });
    window.PlotTest();
    QVERIFY2(shown.contains(
                 QStringLiteral("ERREUR: Présentation <Inconnue> introuvable dans le dessin")),
             qPrintable(shown));
    QVERIFY(!shown.contains(u'\r'));

    world.session.List.Entry(1).Layout = "";
    window.Plot();
    ui::BatchModel& model = *window.Model();
    QCOMPARE(model.Status(1), RowStatus::Plotted);
    QCOMPARE(model.Status(2), RowStatus::Failed);
    QCOMPARE(model.Status(3), RowStatus::Plotted);
    QCOMPARE(world.host.Plots().size(), std::size_t{2});
    // The icons differ, and a new list clears them.
    const auto icon = [&](int row) {
      return model.index(row, 0).data(Qt::DecorationRole).value<QIcon>().pixmap(16).toImage();
    };
    QVERIFY(icon(0) != icon(1));
    QCOMPARE(icon(0), icon(2));
    QVERIFY(window.List()->isEnabled());
    QVERIFY(window.menuBar()->isEnabled());
  }

  void closingAsksThenEndsTheSession() {
    UiWorld world;
    world.AddRow("Plan.dwg");
    world.session.ListModified = true;
    MainWindow window(world.Context());
    window.show();
    world.prompt.ThenAnswer(PromptAnswer::Cancel);
    QVERIFY(!window.close());
    QVERIFY(window.isVisible());
    QVERIFY(!world.host.Quit());
    // OK, then No to saving: the host is put back and closed.
    world.prompt.ThenAnswer(PromptAnswer::Ok).ThenAnswer(PromptAnswer::No);
    QVERIFY(window.close());
    QCOMPARE(world.prompt.messages.size(), std::size_t{3});
    QCOMPARE(world.prompt.messages[0].text, LoadResourceText(ids::kConfirmExit));
    QCOMPARE(world.prompt.messages[2].text, LoadResourceText(ids::kSaveCurrentList));
    QVERIFY(world.host.Quit());
  }

  void windowComesBackWhereItWas() {
    QTemporaryDir config;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, config.path());
    UiWorld world;
    ui::UiContext context = world.Context();
    context.rememberGeometry = true;
    {
      MainWindow first(context);
      QVERIFY(!first.GeometryRestored());
      first.resize(720, 410);
      first.List()->setColumnWidth(1, 123);
      first.show();
      world.prompt.ThenAnswer(PromptAnswer::Ok);
      QVERIFY(first.close());
    }
    MainWindow second(context);
    QVERIFY(second.GeometryRestored());
    QCOMPARE(second.size(), QSize(720, 410));
    QCOMPARE(second.List()->columnWidth(1), 123);
  }

  void distinctMnemonics() {
    for (const auto& row : ReadTestTable("ui/mnemonics.tsv")) {
      const auto captions = [&](int i) { return QString::fromStdString(row[i]).split(u'|'); };
      const QStringList got = ui::DistinctMnemonics(captions(0));
      QVERIFY2(got == captions(1),
               qPrintable(QString::fromStdString(row.where) + ": " + got.join(u'|')));
    }
  }

  // Without a host the commands that need one say so; a new list asks
  // whether to save the one shown, then clears it.
  void commandsWithoutHostAndNewList() {
    UiWorld world;
    world.AddRow("Plan.dwg");
    ui::UiContext context = world.Context();
    context.host = nullptr;
    MainWindow window(context);
    window.Plot();
    QCOMPARE(world.prompt.messages.size(), std::size_t{1});
    QCOMPARE(world.prompt.messages[0].text, LoadResourceText(ids::kHostLoadFailed));

    world.prompt.ThenAnswer(PromptAnswer::Cancel);
    window.NewList();
    QCOMPARE(window.Model()->rowCount(), 1);
    world.prompt.ThenAnswer(PromptAnswer::No);
    window.NewList();
    QCOMPARE(window.Model()->rowCount(), 0);
    QCOMPARE(window.windowTitle(), QString::fromStdString(LoadResourceText(ids::kAppTitle)));
  }

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

SHEAFWORK_UI_TEST(MainWindowTest);
#include "main_window_test.moc"
