// Pictures of the desktop application for review: the main window with a
// list after a plot run, every dialog, the plot test's results. Run on a real
// (virtual) display:  ui_screenshots OUTPUT_FOLDER WORK_FOLDER
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QLibraryInfo>
#include <QListWidget>
#include <QLocale>
#include <QMessageBox>
#include <QRadioButton>
#include <QTableView>
#include <QTimer>
#include <QTranslator>
#include <QTreeWidget>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "batch/list_commands.h"
#include "fakes/fake_host.h"
#include "fakes/scripted_prompt.h"
#include "host/startup.h"
#include "plottest/plot_test.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "ui/about_dialog.h"
#include "ui/batch_model.h"
#include "ui/devices_dialog.h"
#include "ui/help.h"
#include "ui/icons.h"
#include "ui/layouts_dialog.h"
#include "ui/logging_dialog.h"
#include "ui/main_window.h"
#include "ui/page_setups_dialog.h"
#include "ui/progress_dialog.h"
#include "ui/qt_prompt.h"
#include "ui/qt_text.h"
#include "ui/results_dialog.h"
#include "ui/settings_dialog.h"
#include "ui/system_info_dialog.h"
#include "ui_fixture.h"

using namespace sheafwork;
using namespace sheafwork::testing;

namespace {

QString out;

void Save(QWidget& widget, const char* name) {
  widget.show();
  widget.raise();
  widget.activateWindow();
  for (int i = 0; i < 10; ++i) QApplication::processEvents();
  const QString path = QDir(out).filePath(QString::fromLatin1(name) + QStringLiteral(".png"));
  if (!widget.grab().save(path)) std::cerr << "cannot write " << path.toStdString() << '\n';
  std::cout << path.toStdString() << '\n';
}

// Grabs the modal box or dialog that `show` opens, then closes it.
void SaveModal(const char* name, const std::function<void()>& show) {
  QTimer::singleShot(300, [name] {
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal) return;
    Save(*modal, name);
    if (auto* dialog = qobject_cast<QDialog*>(modal)) dialog->reject();
  });
  show();
}

std::string Touch(const std::string& path) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path).put('\n');
  return path;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  if (argc < 3) {
    std::cerr << "utilisation : ui_screenshots DOSSIER_IMAGES DOSSIER_TRAVAIL\n";
    return 2;
  }
  out = QString::fromLocal8Bit(argv[1]);
  QDir().mkpath(out);
  const std::string work = argv[2];
  QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
  QTranslator qtTexts;
  if (qtTexts.load(QLocale(QLocale::French), QStringLiteral("qtbase"), QStringLiteral("_"),
                   QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(&qtTexts);
  }
  QApplication::setWindowIcon(ui::MakeIcon(ui::IconId::App));

  // A project of six drawings, served by the scripted host.
  UiWorld world;
  const std::string project = work + "/Projets/Résidence Les Tilleuls";
  const char* names[] = {"A-100 Plan masse.dwg", "A-101 Rez-de-chaussée.dwg", "A-102 Etage 1.dwg",
                         "A-103 Etage 2.dwg",    "A-201 Façades.dwg",         "A-301 Coupes.dwg"};
  for (const char* name : names) {
    const std::string path = Touch(project + "/" + name);
    FakeDrawing& drawing = world.host.AddDrawingAt(path);
    drawing.AddLayout("A1 Plan");
    drawing.AddLayout("A3 Réduction");
    drawing.AddPageSetup("A1 paysage PDF");
    drawing.AddPageSetup("A3 réduction 1:200");
    drawing.views = {"Façade nord", "Façade sud", "Détail entrée"};
    drawing.layers = {{"0"},
                      {"MURS"},
                      {"COTES"},
                      {"HACHURES", false},
                      {"MOBILIER"},
                      {"TEXTES"},
                      {"AXES", true, true},
                      {"FENETRES"},
                      {"PORTES"},
                      {"PRESENTATION"}};
    drawing.layouts[0].settings.standardScale = 26;
    BatchEntry& entry = world.session.List.Append();
    entry.FileName = path;
  }
  world.host.Drawing(project + "/A-301 Coupes.dwg").openError =
      host::Error(53, "Fichier introuvable");
  BatchList& list = world.session.List;
  list.Entry(1).Layout = "Onglet Objet";
  list.Entry(2).Layout = "A1 Plan";
  list.Entry(2).PlotSetup = "A1 paysage PDF";
  list.Entry(2).PlotDevice = "PDF.pc3";
  list.Entry(3).Layout = "Toutes les présentations";
  list.Entry(3).PlotDevice = "Bureau-HP";
  list.Entry(4).Layout = "A3 Réduction";
  list.Entry(4).PlotSetup = work + "/Gabarits/Société.dwt|A3 réduction 1:200";
  list.Entry(5).Layers = "HACHURES 1 MOBILIER 0";
  world.printers.printers = {
      {"Bureau-HP", "HP LaserJet Pro M404", "ipp://imprimante-bureau.local/ipp/print"},
      {"Traceur-A0", "HP DesignJet T830", "socket://192.168.1.40:9100"}};
  world.session.ListName = work + "/Listes/Tilleuls - permis.qx3";
  world.session.Caption = Session::CaptionFor(world.session.ListName);
  world.session.Log = DefaultLogSettings(work + "/Listes");
  world.session.Log.JournalHeader = "Dossier de permis de construire";
  world.session.Log.JournalUserComment = "Indice C";

  ui::QtPrompt qtPrompt;
  ui::HtmlHelp help(ui::HelpFolder(""));
  ui::UiContext context = world.Context();
  context.help = &help;
  ui::MainWindow window(context);
  qtPrompt.SetParent(&window);
  // After a plot run: rows plotted, one failed.
  window.Model()->SetStatus(1, RowStatus::Plotted);
  window.Model()->SetStatus(2, RowStatus::Plotted);
  window.Model()->SetStatus(3, RowStatus::Plotted);
  window.Model()->SetStatus(4, RowStatus::Plotted);
  window.Model()->SetStatus(5, RowStatus::Plotted);
  window.Model()->SetStatus(
      6, RowStatus::Failed,
      {QStringLiteral("Échec du tracé\u00a0: dessin %1/A-301 Coupes.dwg, présentation A1 Plan, "
                      "périphérique PDF.pc3\u00a0: fichier introuvable")
           .arg(ui::Q(project))});
  window.List()->setCurrentIndex(window.Model()->index(5, 0));
  window.SelectPositions({6});
  window.Refresh();
  Save(window, "01-fenetre-principale");

  ui::Splash splash;
  Save(splash, "02-demarrage");
  splash.close();

  ui::AboutDialog about(world.prompt, &window);
  Save(about, "03-a-propos");
  about.close();
  context.dataFolder = work + "/sheafwork";
  context.userFolder = work + "/.local/share/sheafwork";
  context.hostName = "embarque";
  ui::SystemInfoDialog info(ui::CollectSystemFacts(context), &window);
  Save(info, "03-infos-systeme");
  info.close();

  ui::LoggingDialog logging(world.session.Log, world.prompt, &help, &window);
  Save(logging, "04-journalisation");
  logging.close();

  world.session.Selection.SelectCountCache(std::vector<int>{3});
  ui::DevicesDialog devices(world.session, &world.printers, world.hostSession.get(), world.prompt,
                            &help, &window);
  Save(devices, "05-peripheriques");
  devices.close();

  ui::LayoutsSingleDialog layouts(world.session, 2, world.hostSession.get(), world.prompt, &help,
                                  &window);
  Save(layouts, "06-presentations");
  layouts.close();

  world.session.Selection.SelectCountCache(std::vector<int>{1, 2, 5});
  ui::LayoutsMultiDialog layoutsMulti(world.session, world.prompt, &help, &window);
  Save(layoutsMulti, "07-presentations-multiples");
  layoutsMulti.close();

  world.session.Selection.SelectCountCache(std::vector<int>{2});
  ui::PageSetupsDialog setups(world.session, world.hostSession.get(), world.prompt, &help, &window);
  Save(setups, "08-configurations-de-trace");
  setups.close();

  world.session.Selection.SelectCountCache(std::vector<int>{5});
  ui::SettingsDialog settings(world.session, world.hostSession.get(), world.prompt, &help,
                              ui::SettingsDialog::kPlotPage, &window);
  Save(settings, "09-parametres-du-trace");
  settings.close();
  ui::SettingsDialog layers(world.session, world.hostSession.get(), world.prompt, &help,
                            ui::SettingsDialog::kLayersPage, &window);
  if (auto* tree = layers.findChild<QTreeWidget*>(QStringLiteral("lstLayers"))) {
    tree->topLevelItem(3)->setSelected(true);
  }
  Save(layers, "10-calques");
  layers.close();

  PlotTestServices services{world.printers, world.fonts, LocalTimeNow, {}};
  const std::string results = RunPlotTest(world.session, *world.hostSession, services);
  ui::ResultsDialog resultsDialog(results, world.session.Log, world.prompt, &help, &window);
  Save(resultsDialog, "11-resultats-essai");
  resultsDialog.close();

  ui::ProgressDialog progress;
  progress.Start(8);
  progress.Step("A-102 Etage 1.dwg", "A3 Réduction", 4, 8);
  if (progress.Dialog()) Save(*progress.Dialog(), "12-progression");
  progress.Finish();

  help.ShowTopic(QString::fromLatin1(ui::topic::kSettingsPlot));
  if (help.Window()) {
    Save(*help.Window(), "13-aide");
    help.Window()->close();
  }

  SaveModal("14-confirmation-quitter", [&] {
    qtPrompt.Ask({LoadResourceText(ids::kConfirmExit), LoadResourceText(ids::kAppTitle),
                  PromptIcon::Question, PromptButtons::OkCancel});
  });
  SaveModal("15-ajout-dessin", [&] {
    FileDialogRequest request{LoadResourceText(ids::kAddDrawingTitle), ui::DrawingFilter(),
                              project + "/A-101 Rez-de-chaussée.dwg", true, false};
    qtPrompt.OpenFileName(request);
  });
  return 0;
}
