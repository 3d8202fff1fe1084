// The dialogs that edit rows: layouts, named page setups and plot settings
// with its layers page. Each writes the row encodings the plot run reads.
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QtTest>

#include "fakes/test_data.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "ui/layouts_dialog.h"
#include "ui/page_setups_dialog.h"
#include "ui/settings_dialog.h"
#include "ui_fixture.h"

using namespace sheafwork;
using namespace sheafwork::testing;

namespace {

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

class EditingDialogsTest : public QObject {
  Q_OBJECT

 private slots:
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

SHEAFWORK_UI_TEST(EditingDialogsTest);
#include "editing_dialogs_test.moc"
