#pragma once
// The embedded host over drawings held in memory: a drawing file holds only
// a key, which the test's reader turns into the drawing the test built. Plots
// are captured instead of made.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "embedded/automation/embedded_host.h"
#include "embedded/dxf/reader.h"
#include "fakes/temp_folder.h"
#include "host/error.h"

namespace sheafwork::embedded {

struct FakePrinters : PrinterCatalog {
  std::vector<PrinterInfo> Printers() override { return {{"Bureau-HP", "HP LaserJet", "ipp://b"}}; }
};

/// Remembers what the host showed, as short texts.
struct RecordingDisplay : ProgressDisplay {
  void Start(int total) override { events.push_back("start " + std::to_string(total)); }
  void Step(const std::string& drawing, const std::string& layout, int n, int total) override {
    events.push_back(std::to_string(n) + "/" + std::to_string(total) + " " + drawing + " " +
                     layout);
  }
  bool Cancelled() override { return cancel; }
  void Finish() override { events.push_back("finish"); }
  void PlotFailed(const std::string& reason) override { failures.push_back(reason); }
  void PlotWarning(const std::string& line) override { warnings.push_back(line); }
  std::vector<std::string> events;
  std::vector<std::string> failures;
  std::vector<std::string> warnings;
  bool cancel = false;
};

/// What the plot engine was asked to do.
struct CapturedPlot {
  std::string drawing;  ///< the drawing's path
  std::string layout;   ///< the layout's stored name
  PlotSettings settings;
  OutputKind output = OutputKind::Pdf;
  std::string outputPath;
  std::string printerName;
  std::vector<Layer> layers;
  std::shared_ptr<const PlotStyleTable> plotStyles;
  int copies = 1;
};

/// A drawing with the model layout and two paper-space layouts, stored out of
/// tab order: "Coupe" (tab 2, no device) before "Présentation1" (tab 1,
/// PDF.pc3 on an A3 sheet).
inline Drawing SampleDrawing() {
  Drawing d;
  d.header.acadVer = "AC1015";
  d.layers = {Layer{}, Layer{}, Layer{}};
  d.layers[0].name = "0";
  d.layers[1].name = "MURS";
  d.layers[2].name = "COTES";
  d.layers[2].plottable = false;
  d.views = {View{}, View{}};
  d.views[0].name = "Façade";
  d.views[1].name = "Détail";
  d.views[1].paperSpace = true;
  d.textStyles = {TextStyle{}, TextStyle{}, TextStyle{}};
  d.textStyles[0].name = "Standard";
  d.textStyles[0].fontFile = "txt";
  d.textStyles[1].name = "";
  d.textStyles[1].fontFile = "ltypeshp.shx";
  d.textStyles[1].isShapeFile = true;
  d.textStyles[2].name = "Titre";
  d.textStyles[2].fontFile = "romans.shx";

  Layout model;
  model.name = "Model";
  model.blockName = "*Model_Space";
  model.settings.flags |= kModelType;
  model.settings.configName = "none_device";
  Layout section;
  section.name = "Coupe";
  section.tabOrder = 2;
  section.blockName = "*Paper_Space0";
  section.settings.configName = "";
  section.settings.mediaName = "Feuille maison";
  section.settings.paperWidth = 500;
  section.settings.paperHeight = 250;
  Layout plan;
  plan.name = "Présentation1";
  plan.tabOrder = 1;
  plan.blockName = "*Paper_Space";
  plan.settings.configName = "PDF.pc3";
  plan.settings.mediaName = "ISO A3 (420.00 x 297.00 mm)";
  d.layouts = {model, section, plan};
  d.activeLayout = 0;

  NamedPageSetup a1;
  a1.name = "A1 PDF";
  a1.settings.configName = "PDF.pc3";
  a1.settings.mediaName = "ISO A1 (841.00 x 594.00 mm)";
  a1.settings.paperWidth = 841;
  a1.settings.paperHeight = 594;
  a1.settings.flags &= ~kUseStandardScale;
  a1.settings.customNumerator = 1;
  a1.settings.customDenominator = 50;
  a1.settings.plotType = kPlotExtents;
  NamedPageSetup modelSetup;
  modelSetup.name = "Objet A4";
  modelSetup.settings.flags |= kModelType;
  d.pageSetups = {a1, modelSetup};
  return d;
}

class EmbeddedHostTest : public ::testing::Test {
 protected:
  EmbeddedHostTest() {
    std::filesystem::create_directories(data.path() / "plotters");
    std::filesystem::copy_file(std::string(SHEAFWORK_SOURCE_DIR) + "/data/plotters/PDF.pc3",
                               data.path() / "plotters" / "PDF.pc3");
    options.dataFolder = data.path().string();
    options.userFolder = user.path().string();
    options.printers = std::make_shared<FakePrinters>();
    options.progress = display;
    options.dwgConverter = "";
    options.reader = [this](const std::string& path) {
      const std::string key = testing::TempFolder::Read(path);
      const auto found = drawings.find(key);
      if (found == drawings.end()) throw DxfError(path + ", ligne 1 : SECTION attendu");
      Drawing drawing = found->second;
      drawing.path = path;
      return drawing;
    };
    options.plotter = [this](const PlotJob& job) {
      if (!plotFailure.empty()) throw PlotError(plotFailure);
      plots.push_back({job.drawing->path, job.layout->name, job.settings, job.output,
                       job.outputPath, job.printerName, job.drawing->layers, job.plotStyles,
                       job.copies});
    };
  }

  /// Writes the drawing file `name` in the drawings folder for `drawing`.
  std::string AddDrawing(const std::string& name, Drawing drawing = SampleDrawing()) {
    drawings[name] = std::move(drawing);
    return files.Write(name, name);
  }

  std::shared_ptr<host::Application> Host() {
    if (!app) app = MakeEmbeddedHost(options);
    return app;
  }

  std::shared_ptr<host::Document> Open(const std::string& path, bool readOnly = true) {
    return Host()->GetDocuments()->Open(path, readOnly);
  }

  /// Opens `drawing` as "Plan.dxf", active, with the host's log on.
  std::shared_ptr<host::Document> OpenPlan(Drawing drawing = SampleDrawing()) {
    planPath = AddDrawing("Plan.dxf", std::move(drawing));
    auto doc = Open(planPath);
    doc->Activate();
    Host()->GetPreferences()->SetLogFileOn(true);
    return doc;
  }

  /// The host's log of the drawing opened by OpenPlan.
  std::string PlanLog() const {
    return testing::TempFolder::Read((user.path() / "Plan_sheafwork.log").string());
  }

  testing::TempFolder data;
  testing::TempFolder user;
  testing::TempFolder files;
  std::shared_ptr<RecordingDisplay> display = std::make_shared<RecordingDisplay>();
  EmbeddedHostOptions options;
  std::map<std::string, Drawing> drawings;
  std::vector<CapturedPlot> plots;
  std::string plotFailure;
  std::shared_ptr<host::Application> app;
  std::string planPath;
};

/// The layout of `doc` named `name`.
inline std::shared_ptr<host::Layout> LayoutNamed(host::Document& doc, const std::string& name) {
  auto layouts = doc.GetLayouts();
  for (std::int32_t i = 0; i < layouts->Count(); ++i) {
    if (layouts->Item(i)->Name() == name) return layouts->Item(i);
  }
  ADD_FAILURE() << "no layout " << name;
  return nullptr;
}

/// Makes the layout named `name` the active one of `doc`.
inline void Show(host::Document& doc, const std::string& name) {
  doc.SetActiveLayout(LayoutNamed(doc, name));
}

/// Writes `bytes` to `name` in `folder`, making its subfolders; the full path.
inline std::string Put(const testing::TempFolder& folder, const std::string& name,
                       const std::string& bytes) {
  std::filesystem::create_directories(std::filesystem::path(folder.File(name)).parent_path());
  return folder.Write(name, bytes);
}

/// The error a call throws: its number and description.
template <typename Call>
host::Error ErrorOf(Call&& call) {
  try {
    call();
  } catch (const host::Error& error) {
    return error;
  }
  ADD_FAILURE() << "no host::Error";
  return host::Error(0, "");
}

}  // namespace sheafwork::embedded
