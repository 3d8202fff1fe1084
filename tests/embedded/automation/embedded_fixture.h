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
#include <utility>
#include <vector>

#include "embedded/automation/embedded_host.h"
#include "embedded/dxf/reader.h"
#include "fakes/log_lines.h"
#include "fakes/system_doubles.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "host/error.h"

namespace sheafwork::embedded {

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
  void Notice(const std::string& text) override { notices.push_back(text); }
  std::vector<std::string> events;
  std::vector<std::string> failures;
  std::vector<std::string> notices;
  bool cancel = false;
};

/// What the plot engine was asked to do.
struct CapturedPlot {
  std::string layout;  ///< the layout's stored name
  PlotSettings settings;
  OutputKind output = OutputKind::Pdf;
  std::string outputPath;
  std::string printerName;
  std::shared_ptr<const PlotStyleTable> plotStyles;
};

/// tests/data/dxf/automation/sample.dxf (make_sample.py there): the model
/// layout and two paper-space layouts, "Coupe" (tab 2, no device, a sheet of
/// its own) and "Présentation1" (tab 1, PDF.pc3 on an A3 sheet), and two page
/// setups. Its layouts are put back out of tab order, as the file stores
/// them: the host must not rely on the order.
inline Drawing SampleDrawing() {
  static const Drawing sample = ReadDxfFile(testing::TestData("dxf/automation/sample.dxf"));
  Drawing d = sample;
  std::swap(d.layouts[1], d.layouts[2]);
  return d;
}

/// An external reference's block: `name` showing the drawing at `path`.
inline Block XrefBlock(const std::string& name, const std::string& path, bool overlay = false) {
  Block block;
  block.name = name;
  block.flags = overlay ? 4 + 8 : 4;
  block.xrefPath = path;
  return block;
}

/// The sample drawing with `blocks` added.
inline Drawing WithXrefs(std::vector<Block> blocks) {
  Drawing drawing = SampleDrawing();
  for (Block& block : blocks) drawing.blocks.push_back(std::move(block));
  return drawing;
}

class EmbeddedHostTest : public ::testing::Test {
 protected:
  EmbeddedHostTest() {
    std::filesystem::create_directories(data.path() / "plotters");
    std::filesystem::copy_file(std::string(SHEAFWORK_SOURCE_DIR) + "/data/plotters/PDF.pc3",
                               data.path() / "plotters" / "PDF.pc3");
    options.dataFolder = data.path().string();
    options.userFolder = user.path().string();
    printers->printers = {{"Bureau-HP", "HP LaserJet", "ipp://b"}};
    options.printers = printers;
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
      plots.push_back({job.layout->name, job.settings, job.output, job.outputPath, job.printerName,
                       job.plotStyles});
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

  /// The host's log of the drawing named `drawing` (without its extension),
  /// by default the one OpenPlan opened.
  std::string HostLog(const std::string& drawing = "Plan") const {
    return testing::TempFolder::Read((user.path() / (drawing + "_sheafwork.log")).string());
  }

  /// The lines of that log, without their line ends.
  std::vector<std::string> HostLogLines(const std::string& drawing = "Plan") const {
    return testing::SplitLines(HostLog(drawing));
  }

  testing::TempFolder data;
  testing::TempFolder user;
  testing::TempFolder files;
  std::shared_ptr<testing::ListedPrinters> printers = std::make_shared<testing::ListedPrinters>();
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
