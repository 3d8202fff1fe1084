// The dialogs: logging, plot devices, results and about; help; the single
// instance lock; and those that edit rows (layouts, named page setups, plot
// settings with its layers page), each writing the row encodings the plot run
// reads.
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QSysInfo>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

#include "fakes/log_lines.h"
#include "fakes/test_data.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "ui/about_dialog.h"
#include "ui/devices_dialog.h"
#include "ui/help.h"
#include "ui/layouts_dialog.h"
#include "ui/logging_dialog.h"
#include "ui/page_setups_dialog.h"
#include "ui/results_dialog.h"
#include "ui/settings_dialog.h"
#include "ui/single_instance.h"
#include "ui/system_info_dialog.h"
#include "ui_fixture.h"

using namespace sheafwork;
using namespace sheafwork::testing;

namespace {

LogSettings SomeSettings() {
  LogSettings log;
  log.JournalLogOn = true;
  log.JournalLogFileName = "/tmp/journal.log";
  log.JournalHeader = "Entête";
  log.JournalUserComment = "Commentaire";
  log.JournalAppend = true;
  log.ErrorLogOn = true;
  log.ErrorLogFileName = "/tmp/erreurs.log";
  log.ErrorAppend = false;
  return log;
}

void Pick(QListWidget& list, const QString& text) {
  const auto found = list.findItems(text, Qt::MatchExactly);
  if (found.isEmpty()) qFatal("no item %s", qPrintable(text));
  list.setCurrentItem(found.front());
}

void Select(Session& session, std::vector<int> rows) { session.Selection.SelectCountCache(rows); }

// Picks the scale named `name` in the settings dialog.
void ChooseScale(const QWidget& dialog, const std::string& name) {
  auto* scale = Child<QComboBox>(dialog, "cboScale");
  scale->setCurrentIndex(scale->findText(QString::fromStdString(name)));
}

}  // namespace

class DialogsTest : public QObject {
  Q_OBJECT

 private slots:
  void loggingShowsBrowsesAndCancels() {
    LogSettings log = SomeSettings();
    log.ErrorLogOn = false;
    const LogSettings before = log;
    ScriptedPrompt prompt;
    ui::LoggingDialog dialog(log, prompt, nullptr);
    QCOMPARE(Child<QLineEdit>(dialog, "txtJournalFilename")->text(),
             QStringLiteral("/tmp/journal.log"));
    QVERIFY(Child<QRadioButton>(dialog, "optJournalAppend")->isChecked());
    QVERIFY(Child<QRadioButton>(dialog, "optErrorOverwrite")->isChecked());
    QCOMPARE(Child<QLineEdit>(dialog, "txtJournalUser")->text(), QStringLiteral("Commentaire"));
    // The unticked group is disabled but keeps its texts; the box stays usable.
    QVERIFY(!Child<QLineEdit>(dialog, "txtErrorFilename")->isEnabled());
    QVERIFY(!Child<QPushButton>(dialog, "cmdErrorBrowse")->isEnabled());
    QCOMPARE(Child<QLineEdit>(dialog, "txtErrorFilename")->text(),
             QStringLiteral("/tmp/erreurs.log"));
    Child<QCheckBox>(dialog, "chkErrorEnable")->click();
    QVERIFY(Child<QLineEdit>(dialog, "txtErrorHeader")->isEnabled());

    // Appending picks a file without the overwrite question; overwriting asks.
    prompt.ThenChoose("/tmp/choisi.log").ThenChoose(std::nullopt);
    Child<QPushButton>(dialog, "cmdJournalBrowse")->click();
    Child<QPushButton>(dialog, "cmdErrorBrowse")->click();
    QCOMPARE(prompt.dialogs.size(), std::size_t{2});
    QCOMPARE(prompt.dialogs[0].request.title, LoadResourceText(ids::kJournalBrowseTitle));
    QVERIFY(!prompt.dialogs[0].request.confirmOverwrite);
    QCOMPARE(prompt.dialogs[1].request.title, LoadResourceText(ids::kErrorLogBrowseTitle));
    QVERIFY(prompt.dialogs[1].request.confirmOverwrite);
    QCOMPARE(Child<QLineEdit>(dialog, "txtJournalFilename")->text(),
             QStringLiteral("/tmp/choisi.log"));
    QCOMPARE(Child<QLineEdit>(dialog, "txtErrorFilename")->text(),
             QStringLiteral("/tmp/erreurs.log"));
    // Cancel keeps every setting, the switch ticked above included.
    Child<QPushButton>(dialog, "cmdJournalCancel")->click();
    QVERIFY(log == before);
  }

  // OK checks the names of the groups switched on and the values the list
  // file cannot hold: a refusal names the field and the dialog stays open,
  // the settings untouched; a shown text is kept after a warning.
  void loggingOkChecksWhatTheListFileHolds_data() {
    for (const char* column : {"journalOn", "journalName", "errorOn", "errorName", "header",
                               "comment", "message", "title", "accepted"}) {
      QTest::addColumn<QString>(column);
    }
    for (const auto& row : ReadTestTable("ui/logging_ok.tsv")) {
      auto& data = QTest::newRow(row.where.c_str());
      for (const std::string& field : row.fields) data << QString::fromStdString(field);
    }
  }

  void loggingOkChecksWhatTheListFileHolds() {
    QFETCH(QString, journalName);
    QFETCH(QString, errorName);
    QFETCH(QString, header);
    QFETCH(QString, comment);
    QFETCH(QString, message);
    QFETCH(QString, title);
    QFETCH(QString, journalOn);  // "1": ticked, "0": not
    QFETCH(QString, errorOn);
    QFETCH(QString, accepted);
    QStringList texts;  // the message's texts, by their ids
    for (const QString& id : message.split(u' ', Qt::SkipEmptyParts)) {
      if (id != "-") texts << QString::fromStdString(LoadResourceText(id.toInt()));
    }
    LogSettings log = SomeSettings();
    const LogSettings before = log;
    ScriptedPrompt prompt;
    ui::LoggingDialog dialog(log, prompt, nullptr);
    Child<QCheckBox>(dialog, "chkJournalEnable")->setChecked(journalOn == "1");
    Child<QCheckBox>(dialog, "chkErrorEnable")->setChecked(errorOn == "1");
    Child<QLineEdit>(dialog, "txtJournalFilename")->setText(journalName);
    Child<QLineEdit>(dialog, "txtErrorFilename")->setText(errorName);
    Child<QLineEdit>(dialog, "txtJournalHeader")->setText(header);
    Child<QLineEdit>(dialog, "txtJournalUser")->setText(comment);
    Child<QRadioButton>(dialog, "optJournalOverwrite")->setChecked(true);
    Child<QPushButton>(dialog, "cmdJournalOK")->click();
    if (texts.isEmpty()) {
      QVERIFY(prompt.messages.empty());
    } else {
      QCOMPARE(prompt.messages.size(), std::size_t{1});
      QCOMPARE(QString::fromStdString(prompt.messages[0].text), texts.join(" : "));
      QCOMPARE(prompt.messages[0].title, LoadResourceText(title.toInt()));
    }
    QCOMPARE(dialog.result(), int(accepted == "1" ? QDialog::Accepted : QDialog::Rejected));
    if (accepted == "0") {
      QVERIFY(log == before);
      return;
    }
    QCOMPARE(log.JournalLogOn, journalOn == "1");
    QCOMPARE(log.ErrorLogOn, errorOn == "1");
    if (journalOn == "1") {
      QCOMPARE(QString::fromStdString(log.JournalUserComment), comment);
      QCOMPARE(QString::fromStdString(log.JournalLogFileName), journalName);
      QCOMPARE(log.JournalAppend, false);
      QCOMPARE(QString::fromStdString(log.JournalHeader), header);
    } else {
      // Only the switch changes; the name typed in the disabled group is not kept.
      QCOMPARE(log.JournalLogFileName, before.JournalLogFileName);
      QCOMPARE(log.JournalAppend, before.JournalAppend);
    }
  }

  void devicesListsPrintersAndConfigurations() {
    UiWorld world;
    world.AddRow("A.dwg");
    world.AddRow("B.dwg");
    world.session.List.Entry(1).PlotDevice = "Traceur A0.PC3";
    world.printers.printers = {{"Bureau", "HP LaserJet", "ipp://imprimante/bureau"},
                               {LoadResourceText(ids::kPseudoPrinter), "-", "-"},
                               {"PDF.pc3", "Imprimante nommée comme un fichier", "cups-pdf:/"}};
    world.session.Selection.SelectCountCache(std::vector<int>{1});
    ui::DevicesDialog one(world.session, &world.printers, world.hostSession.get(), world.prompt,
                          nullptr);
    auto* list = Child<QListWidget>(one, "lstDevices2");
    QCOMPARE(Items(*list),
             (QStringList{"Par défaut", "Bureau", "PDF.pc3", "PDF.pc3", "Traceur A0.PC3"}));
    QCOMPARE(list->currentItem()->text(), QStringLiteral("Traceur A0.PC3"));
    QVERIFY(Child<QPlainTextEdit>(one, "txtDevicesDescr")
                ->toPlainText()
                .startsWith(QString::fromStdString(LoadResourceText(ids::kNonSystemPrinter))));
    // A click describes the item clicked.
    one.show();
    QVERIFY(QTest::qWaitForWindowExposed(&one));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(list->item(1)).center());
    QVERIFY(Child<QPlainTextEdit>(one, "txtDevicesDescr")->toPlainText().contains("HP LaserJet"));
    // A printer named like a file is a system printer.
    list->setCurrentRow(2);
    const QString described = Child<QPlainTextEdit>(one, "txtDevicesDescr")->toPlainText();
    QVERIFY(described.startsWith(QString::fromStdString(LoadResourceText(ids::kSystemPrinter))));
    QVERIFY(described.contains(QStringLiteral("Imprimante nommée comme un fichier")));
    QVERIFY(described.contains(QStringLiteral("cups-pdf:/")));
    Child<QCheckBox>(one, "chkDevices")->setChecked(false);
    QVERIFY(Child<QPlainTextEdit>(one, "txtDevicesDescr")->isHidden());

    // Several rows: nothing is preselected, OK writes the device into each.
    world.session.Selection.SelectCountCache(std::vector<int>{1, 2});
    ui::DevicesDialog both(world.session, &world.printers, world.hostSession.get(), world.prompt,
                           nullptr);
    auto* bothList = Child<QListWidget>(both, "lstDevices2");
    QVERIFY(bothList->selectedItems().isEmpty());
    world.prompt.ThenChoose("/tmp/notes.txt").ThenChoose("/srv/traceurs/Grand.Pc3");
    Child<QPushButton>(both, "cmdDevicesBrowse")->click();
    QCOMPARE(bothList->count(), 5);
    Child<QPushButton>(both, "cmdDevicesBrowse")->click();
    QCOMPARE(bothList->count(), 6);
    Child<QPushButton>(both, "cmdDevicesOk")->click();
    QCOMPARE(world.session.List.Entry(1).PlotDevice, "/srv/traceurs/Grand.Pc3");
    QCOMPARE(world.session.List.Entry(2).PlotDevice, "/srv/traceurs/Grand.Pc3");

    // A search path the host cannot give is said; the default stays on offer.
    world.printers.printers.clear();
    world.host.FailOn("PrinterConfigPath");
    const std::size_t said = world.prompt.messages.size();
    ui::DevicesDialog failing(world.session, &world.printers, world.hostSession.get(), world.prompt,
                              nullptr);
    QCOMPARE(world.prompt.messages.size(), said + 1);
    QCOMPARE(world.prompt.messages.back().text, LoadResourceText(ids::kConfigPathUnreadable));
    QCOMPARE(Items(*Child<QListWidget>(failing, "lstDevices2")), QStringList{"Par défaut"});
  }

  void resultsAppendOnceAndRefuseEmptyText() {
    TempFolder folder;
    LogSettings log = SomeSettings();
    log.JournalLogFileName = folder.File("journal.log");
    ScriptedPrompt prompt;
    ui::ResultsDialog dialog("ligne 1\r\nERREUR: deux\r\n", log, prompt, nullptr);
    QCOMPARE(Child<QPlainTextEdit>(dialog, "txtPTResults")->toPlainText(),
             QStringLiteral("ligne 1\nERREUR: deux"));
    auto* append = Child<QPushButton>(dialog, "cmdPTAppend");
    append->click();
    QVERIFY(!append->isEnabled());
    append->click();
    QCOMPARE(ReadLogLines(log.JournalLogFileName),
             (std::vector<std::string>{"ligne 1", "ERREUR: deux", ""}));
    // Saving writes the text as edited.
    Child<QPlainTextEdit>(dialog, "txtPTResults")->setPlainText(QStringLiteral("modifié"));
    prompt.ThenChoose(folder.File("résultats.txt"));
    Child<QPushButton>(dialog, "cmdPTSave")->click();
    QCOMPARE(ReadLogLines(folder.File("résultats.txt")), (std::vector<std::string>{"modifié", ""}));
    // An emptied text is refused by both buttons.
    Child<QPlainTextEdit>(dialog, "txtPTResults")->clear();
    ui::ResultsDialog again("", log, prompt, nullptr);
    Child<QPushButton>(again, "cmdPTAppend")->click();
    Child<QPushButton>(dialog, "cmdPTSave")->click();
    QCOMPARE(prompt.messages.size(), std::size_t{2});
    QCOMPARE(prompt.messages[0].text, LoadResourceText(ids::kNoResults));
    QCOMPARE(prompt.messages[1].text, LoadResourceText(ids::kNoResults));
    // With the journal off, appending says so first.
    log.JournalLogOn = false;
    ui::ResultsDialog off("", log, prompt, nullptr);
    Child<QPushButton>(off, "cmdPTAppend")->click();
    QCOMPARE(prompt.messages.back().text, LoadResourceText(ids::kJournalNotOn));
  }

  void aboutShowsVersionAndSystemFacts() {
    ScriptedPrompt prompt;
    ui::AboutDialog about(prompt, nullptr, [] { return false; });
    QCOMPARE(about.windowTitle(), QString::fromStdString(LoadResourceText(ids::kAboutTitle)));
    QVERIFY(Child<QLabel>(about, "lblVersion")->text().startsWith(QStringLiteral("Version 0.")));
    about.show();
    Child<QPushButton>(about, "cmdSysInfo")->click();
    QCOMPARE(prompt.messages.size(), std::size_t{1});
    QCOMPARE(prompt.messages[0].text, LoadResourceText(ids::kSysInfoUnavailable));
    QVERIFY(about.isVisible());

    // Where they are available, the system facts name the system, the host
    // and the folders.
    UiWorld world;
    ui::UiContext context = world.Context();
    context.hostName = "embarque";
    context.dataFolder = "/opt/sheafwork/donnees";
    context.userFolder = "/home/moi/.local/share/sheafwork";
    ui::SystemInfoDialog dialog(ui::CollectSystemFacts(context));
    const QString text = Child<QPlainTextEdit>(dialog, "txtSysInfo")->toPlainText();
    for (const QString& expected :
         {QSysInfo::prettyProductName(), QString::fromLatin1(qVersion()),
          QStringLiteral("embarque"), QString::fromStdString(world.host.printerConfigPath),
          QString::fromStdString(context.dataFolder), QString::fromStdString(context.userFolder)}) {
      QVERIFY2(text.contains(expected), qPrintable(expected + QStringLiteral(" in ") + text));
    }
    QVERIFY(!text.contains(QString::fromStdString(LoadResourceText(ids::kSysInfoUnavailable))));
  }

  void helpTopicsByButtonAndF1AndTheirPages() {
    QCOMPARE(ui::TopicForContext(ui::context::kLogging + 5), QStringLiteral("LoggingDialog"));
    QCOMPARE(ui::TopicForContext(ui::context::kSettingsLayers),
             QStringLiteral("PlotSettingsDialog_LayersTab"));
    QCOMPARE(ui::TopicForContext(ui::context::kMainList),
             QStringLiteral("UsingTheSheafworkUtility"));
    QCOMPARE(ui::TopicForContext(42), QStringLiteral("UsingTheSheafworkUtility"));
    LogSettings log = SomeSettings();
    ScriptedPrompt prompt;
    RecordingHelp help;
    ui::LoggingDialog dialog(log, prompt, &help);
    Child<QPushButton>(dialog, "cmdJournalHelp")->click();
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto* name = Child<QLineEdit>(dialog, "txtErrorFilename");
    name->setFocus();
    QCOMPARE(ui::HelpIdOf(name), ui::HelpIdOf(dialog.findChild<QWidget*>("grpError")) + 3);
    QTest::keyClick(name, Qt::Key_F1);
    QCOMPARE(help.topics, (QStringList{"LoggingDialog", "LoggingDialog"}));
    QVERIFY(dialog.isVisible());

    // Every topic has its page.
    const QString folder = ui::HelpFolder("");
    // The main page tells which drawings the program reads.
    QFile main(folder + "/UsingTheSheafworkUtility.html");
    QVERIFY(main.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(main.readAll());
    QVERIFY(page.contains("DXF") && page.contains("DWG"));
    for (const char* topic : {ui::topic::kMain, ui::topic::kLogging, ui::topic::kLayoutsSingle,
                              ui::topic::kLayoutsMulti, ui::topic::kPageSetups, ui::topic::kDevices,
                              ui::topic::kSettingsPlot, ui::topic::kSettingsLayers}) {
      QVERIFY2(QFileInfo::exists(folder + u'/' + topic + ".html"), topic);
    }
  }

  void oneInstanceAtATimeAndADeadOnesLockIsTakenOver() {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("sheafwork.lock"));
    ui::SingleInstance first(path);
    QVERIFY(first.TryLock());
    ui::SingleInstance second(path);
    QVERIFY(!second.TryLock());

    // A lock file left by a program that has ended.
    const QString stale = dir.filePath(QStringLiteral("ancien.lock"));
    QProcess gone;
    gone.start(QStringLiteral("true"));
    QVERIFY(gone.waitForFinished());
    const qint64 pid = gone.processId() > 0 ? gone.processId() : 999999;
    QFile file(stale);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::number(pid) + "\nsheafwork\n" + QSysInfo::machineHostName().toUtf8() +
               "\n");
    file.close();
    ui::SingleInstance instance(stale);
    QVERIFY(instance.TryLock());
  }

  void layoutsOfOneDrawing() {
    UiWorld world;
    FakeDrawing& plan = world.AddRow("Plan.dwg");
    plan.AddLayout("A1");
    plan.AddLayout("A3 paysage");
    ui::LayoutsSingleDialog dialog(world.session, 1, world.hostSession.get(), world.prompt,
                                   nullptr);
    auto* list = Child<QListWidget>(dialog, "lstLayouts");
    QCOMPARE(Items(*list),
             (QStringList{"Onglet courant", "Objet", "Onglet Dernière présentation active", "A1",
                          "A3 paysage"}));
    // An empty Layout is the current tab.
    QCOMPARE(list->currentItem()->text(), QStringLiteral("Onglet courant"));
    Pick(*list, QStringLiteral("A3 paysage"));
    Child<QPushButton>(dialog, "cmdLayoutsOk")->click();
    QCOMPARE(world.session.List.Entry(1).Layout, "A3 paysage");
    // The drawing was read and closed again.
    QCOMPARE(world.host.OpenDocuments().size(), std::size_t{1});

    ui::LayoutsSingleDialog again(world.session, 1, world.hostSession.get(), world.prompt, nullptr);
    QCOMPARE(Child<QListWidget>(again, "lstLayouts")->currentItem()->text(),
             QStringLiteral("A3 paysage"));
    Child<QRadioButton>(again, "optPlotAll")->setChecked(true);
    QVERIFY(!Child<QListWidget>(again, "lstLayouts")->isEnabled());
    again.accept();
    QCOMPARE(world.session.List.Entry(1).Layout, LoadResourceText(ids::kLayoutAll));

    ui::LayoutsSingleDialog model(world.session, 1, world.hostSession.get(), world.prompt, nullptr);
    Child<QRadioButton>(model, "optPlotSelected")->setChecked(true);
    Pick(*Child<QListWidget>(model, "lstLayouts"), QStringLiteral("Objet"));
    model.accept();
    QCOMPARE(world.session.List.Entry(1).Layout, LoadResourceText(ids::kLayoutModelTab));

    // A drawing that does not open offers the three layouts every drawing has.
    QVERIFY(world.prompt.messages.empty());
    world.AddRow("Casse.dwg").openError = host::Error(-2147467259, "Fichier endommagé");
    ui::LayoutsSingleDialog broken(world.session, 2, world.hostSession.get(), world.prompt,
                                   nullptr);
    QCOMPARE(world.prompt.messages.size(), std::size_t{1});
    QCOMPARE(world.prompt.messages[0].text,
             LoadResourceText(ids::kLayoutsOpenError) + "Fichier endommagé");
    QCOMPARE(Child<QListWidget>(broken, "lstLayouts")->count(), 3);
  }

  void layoutsOfSeveralRows() {
    UiWorld world;
    for (const char* name : {"A.dwg", "B.dwg", "C.dwg"}) world.AddRow(name);
    world.session.List.Entry(1).Layout = "Toutes les présentations";
    world.session.List.Entry(3).Layout = "Toutes les présentations";
    Select(world.session, {1, 3});
    ui::LayoutsMultiDialog same(world.session, world.prompt, nullptr);
    auto* choice = Child<QComboBox>(same, "cboLayouts");
    QCOMPARE(choice->currentText(), QStringLiteral("Toutes les présentations"));
    QCOMPARE(choice->count(), 4);
    choice->setCurrentText(QStringLiteral("Onglet Objet"));
    same.accept();
    QCOMPARE(world.session.List.Entry(1).Layout, "Onglet Objet");
    QCOMPARE(world.session.List.Entry(2).Layout, "");
    QCOMPARE(world.session.List.Entry(3).Layout, "Onglet Objet");

    Select(world.session, {1, 2});
    ui::LayoutsMultiDialog differ(world.session, world.prompt, nullptr);
    QCOMPARE(Child<QComboBox>(differ, "cboLayouts")->currentText(), QString());
    differ.accept();  // left empty: nothing changes
    QCOMPARE(world.session.List.Entry(2).Layout, "");
  }

  void pageSetupsFromTheRowOrAnotherDrawing() {
    UiWorld world;
    FakeDrawing& plan = world.AddRow("Plan.dwg");
    plan.AddPageSetup("A3 PDF");
    plan.AddPageSetup("Objet A4", true);
    FakeDrawing& other = world.AddRow("Gabarit.dwt");
    other.AddPageSetup("Norme société");
    Select(world.session, {1});
    ui::PageSetupsDialog dialog(world.session, world.hostSession.get(), world.prompt, nullptr);
    auto* list = Child<QListWidget>(dialog, "lstNPS");
    QCOMPARE(Items(*list), (QStringList{"Par défaut", "A3 PDF", "Objet A4"}));
    Pick(*list, QStringLiteral("A3 PDF"));
    dialog.accept();
    QCOMPARE(world.session.List.Entry(1).PlotSetup, "A3 PDF");

    // From another drawing, for both rows: "drawing|name".
    Select(world.session, {1, 2});
    ui::PageSetupsDialog both(world.session, world.hostSession.get(), world.prompt, nullptr);
    world.prompt.ThenChoose(other.path);
    Child<QPushButton>(both, "cmdNPSBrowse")->click();
    auto* bothList = Child<QListWidget>(both, "lstNPS");
    QCOMPARE(Items(*bothList), (QStringList{"Par défaut", "Norme société"}));
    Pick(*bothList, QStringLiteral("Norme société"));
    both.accept();
    QCOMPARE(world.session.List.Entry(1).PlotSetup, other.path + "|Norme société");
    QCOMPARE(world.session.List.Entry(2).PlotSetup, other.path + "|Norme société");

    // Opened again, the dialog shows where the page setup comes from.
    Select(world.session, {1});
    ui::PageSetupsDialog shown(world.session, world.hostSession.get(), world.prompt, nullptr);
    QCOMPARE(Child<QLineEdit>(shown, "txtNPSFrom")->text(), QString::fromStdString(other.path));
    QCOMPARE(Child<QListWidget>(shown, "lstNPS")->currentItem()->text(),
             QStringLiteral("Norme société"));
    // A drawing that cannot be read keeps the list as it was.
    world.prompt.ThenChoose(world.folder.File("absent.dwg"));
    Child<QPushButton>(shown, "cmdNPSBrowse")->click();
    QCOMPARE(world.prompt.messages.back().text, LoadResourceText(ids::kSetupsUnreadable));
    QCOMPARE(Items(*Child<QListWidget>(shown, "lstNPS")),
             (QStringList{"Par défaut", "Norme société"}));
  }

  void plotSettingsOfOneRow() {
    UiWorld world;
    FakeDrawing& plan = world.AddRow("Plan.dwg");
    plan.views = {"Façade", "Coupe"};
    plan.layouts[0].settings.plotType = 2;  // limits
    plan.layouts[0].settings.standardScale = 26;
    Select(world.session, {1});
    ui::SettingsDialog dialog(world.session, world.hostSession.get(), world.prompt, nullptr,
                              ui::SettingsDialog::kPlotPage);
    QVERIFY(world.prompt.messages.empty());
    // The drawing's own settings are shown for an empty row.
    QVERIFY(Child<QRadioButton>(dialog, "optLimits")->isChecked());
    QCOMPARE(Child<QComboBox>(dialog, "cboScale")->currentText(), QStringLiteral("1:100"));
    auto* views = Child<QComboBox>(dialog, "cboViews");
    QCOMPARE(views->count(), 2);
    Child<QRadioButton>(dialog, "optView")->setChecked(true);
    views->setCurrentText(QStringLiteral("Coupe"));
    ChooseScale(dialog, LoadResourceText(ids::kScaleCustomName));
    Child<QLineEdit>(dialog, "txtPlottedUnits")->setText(QStringLiteral("1"));
    Child<QLineEdit>(dialog, "txtDrawingUnits")->setText(QStringLiteral("48"));
    Child<QCheckBox>(dialog, "chkScaleLW")->setChecked(true);
    Child<QGroupBox>(dialog, "grpPlotFile")->setChecked(true);
    Child<QLineEdit>(dialog, "txtPlotFileName")->setText(QStringLiteral("plan-coupe.pdf"));
    Child<QLineEdit>(dialog, "txtPlotFileFolder")->setText(QStringLiteral("/tmp/traces"));
    Child<QPushButton>(dialog, "cmdSettingsOk")->click();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    const BatchEntry& entry = world.session.List.Entry(1);
    QCOMPARE(entry.PlotArea, "Coupe");
    QCOMPARE(entry.PlotScale, "1#48");
    QVERIFY(entry.ScaleCustom);
    QVERIFY(entry.ScaleLW);
    QCOMPARE(entry.PlotFile, "/tmp/traces/plan-coupe.pdf");
    QCOMPARE(entry.Layers, "");

    // Shown again from the row, then a standard scale and the extents.
    ui::SettingsDialog again(world.session, world.hostSession.get(), world.prompt, nullptr,
                             ui::SettingsDialog::kPlotPage);
    QCOMPARE(Child<QComboBox>(again, "cboViews")->currentText(), QStringLiteral("Coupe"));
    QCOMPARE(Child<QLineEdit>(again, "txtDrawingUnits")->text(), QStringLiteral("48"));
    Child<QRadioButton>(again, "optExtents")->setChecked(true);
    ChooseScale(again, "1:2");
    Child<QGroupBox>(again, "grpPlotFile")->setChecked(false);
    again.accept();
    QCOMPARE(entry.PlotArea, "#E");
    QCOMPARE(entry.PlotScale, "S#17");
    QVERIFY(!entry.ScaleCustom);
    QCOMPARE(entry.PlotFile, "");
  }

  void plotSettingsRefusals_data() {
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("plotted");
    QTest::addColumn<int>("message");  // 0: refused without a message
    QTest::newRow("bad file name") << QStringLiteral("a|b.pdf") << "1" << ids::kFileNameNotValid;
    QTest::newRow("file name too long") << QString(300, u'x') << "1" << ids::kFileNameTooLong;
    QTest::newRow("custom scale of zero") << QStringLiteral("plan.pdf") << "0" << 0;
    QTest::newRow("custom scale left empty") << QStringLiteral("plan.pdf") << QString() << 0;
  }

  void plotSettingsRefusals() {
    QFETCH(QString, fileName);
    QFETCH(QString, plotted);
    QFETCH(int, message);
    UiWorld world;
    world.AddRow("Plan.dwg");
    Select(world.session, {1});
    const BatchEntry before = world.session.List.Entry(1);
    ui::SettingsDialog dialog(world.session, world.hostSession.get(), world.prompt, nullptr,
                              ui::SettingsDialog::kPlotPage);
    ChooseScale(dialog, LoadResourceText(ids::kScaleCustomName));
    Child<QLineEdit>(dialog, "txtPlottedUnits")->setText(plotted);
    Child<QGroupBox>(dialog, "grpPlotFile")->setChecked(true);
    Child<QLineEdit>(dialog, "txtPlotFileName")->setText(fileName);
    Child<QPushButton>(dialog, "cmdSettingsOk")->click();
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QVERIFY(world.session.List.Entry(1) == before);
    if (message) {
      QCOMPARE(world.prompt.messages.size(), std::size_t{1});
      QCOMPARE(world.prompt.messages[0].text, LoadResourceText(message));
      QCOMPARE(world.prompt.messages[0].title, LoadResourceText(ids::kInvalidFileTitle));
    } else {
      QVERIFY(world.prompt.messages.empty());
    }
  }

  void plotSettingsOfSeveralRowsChangeOnlyWhatWasTouched() {
    UiWorld world;
    world.AddRow("A.dwg");
    world.AddRow("B.dwg");
    world.session.List.Entry(1).PlotArea = "#D";
    world.session.List.Entry(2).PlotArea = "#L";
    world.session.List.Entry(1).PlotFile = "/tmp/a.pdf";
    world.session.List.Entry(1).ScaleLW = true;
    BatchEntry a = world.session.List.Entry(1), b = world.session.List.Entry(2);
    Select(world.session, {1, 2});
    ui::SettingsDialog dialog(world.session, world.hostSession.get(), world.prompt, nullptr,
                              ui::SettingsDialog::kLayersPage);
    QCOMPARE(dialog.windowTitle(),
             QString::fromStdString(LoadResourceText(ids::kSettingsMultiTitle)));
    // The layers page is for one row only.
    auto* tabs = Child<QTabWidget>(dialog, "tabSettings");
    QVERIFY(!tabs->isTabEnabled(ui::SettingsDialog::kLayersPage));
    QCOMPARE(tabs->currentIndex(), int(ui::SettingsDialog::kPlotPage));
    QCOMPARE(Child<QComboBox>(dialog, "cboScale")->currentText(), QString());
    QCOMPARE(Child<QCheckBox>(dialog, "chkScaleLW")->checkState(), Qt::PartiallyChecked);
    ChooseScale(dialog, LoadResourceText(ids::kScaleToFitName));
    dialog.accept();
    a.PlotScale = b.PlotScale = "S#0";
    QCOMPARE(world.session.List.Entry(1).PlotScale, "S#0");
    QVERIFY(world.session.List.Entry(1) == a);
    QVERIFY(world.session.List.Entry(2) == b);
  }

  void layersPageWritesTheLayerPairs() {
    UiWorld world;
    FakeDrawing& plan = world.AddRow("Plan.dwg");
    plan.layers = {{"0"}, {"MURS"}, {"Cotes", false}, {"Gelé", true, true}, {"Nom avec espace"}};
    world.session.List.Entry(1).Layers = "murs 0";
    Select(world.session, {1});
    ui::SettingsDialog dialog(world.session, world.hostSession.get(), world.prompt, nullptr,
                              ui::SettingsDialog::kLayersPage);
    auto* tabs = Child<QTabWidget>(dialog, "tabSettings");
    QCOMPARE(tabs->currentIndex(), int(ui::SettingsDialog::kLayersPage));
    auto* layers = Child<QTreeWidget>(dialog, "lstLayers");
    QStringList states;
    for (int i = 0; i < layers->topLevelItemCount(); ++i)
      states << layers->topLevelItem(i)->text(1);
    const QString on = QString::fromStdString(LoadResourceText(ids::kSettingsOnWord));
    const QString off = QString::fromStdString(LoadResourceText(ids::kSettingsOffWord));
    // The row's override wins over the drawing (letter case ignored).
    QCOMPARE(states.mid(0, 4), (QStringList{on, off, off, off}));
    QCOMPARE(states.size(), 5);
    // Without a change the row's text stays as it was.
    ui::SettingsDialog untouched(world.session, world.hostSession.get(), world.prompt, nullptr,
                                 ui::SettingsDialog::kLayersPage);
    untouched.accept();
    QCOMPARE(world.session.List.Entry(1).Layers, "murs 0");

    layers->topLevelItem(3)->setSelected(true);
    Child<QPushButton>(dialog, "cmdLayerOn")->click();
    layers->clearSelection();
    layers->topLevelItem(0)->setSelected(true);
    Child<QPushButton>(dialog, "cmdLayerOff")->click();
    dialog.accept();
    QCOMPARE(world.session.List.Entry(1).Layers, "0 0 MURS 0 Cotes 0 Gelé 1");
  }

  void layerFlagsAreRead() {
    for (const auto& row : ReadTestTable("ui/layer_flags.tsv")) {
      std::vector<std::string> read;
      for (const auto& [name, flag] : ui::ParseLayerFlags(row[0])) {
        read.push_back(name + (flag ? "=1" : "=0"));
      }
      QVERIFY2(read == row.List(1), row.where.c_str());
    }
  }
};

SHEAFWORK_UI_TEST(DialogsTest);
#include "dialogs_test.moc"
