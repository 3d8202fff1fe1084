// The logging, plot devices, results and about dialogs; help; the single
// instance lock.
#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QtTest>

#include "fakes/log_lines.h"
#include "fakes/test_data.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "ui/about_dialog.h"
#include "ui/devices_dialog.h"
#include "ui/help.h"
#include "ui/logging_dialog.h"
#include "ui/results_dialog.h"
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
};

SHEAFWORK_UI_TEST(DialogsTest);
#include "dialogs_test.moc"
