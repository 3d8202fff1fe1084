#pragma once
// A scripted CAD host for tests. It serves drawings described in the test,
// records every call made on it in order, and can be told to fail any member
// or to cancel the batch progress at a given poll.
//
//   testing::FakeHost host;
//   auto& plan = host.AddDrawing("Plan.dwg");        // a real (empty) file
//   plan.AddLayout("Présentation1").configName = "PDF.pc3";
//   plan.AddPageSetup("A3", /*modelType=*/false);
//   plan.layers = {{"0"}, {"MURS"}};
//   host.FailOn("SetPlotType");                      // any object
//   host.FailOn("Layout(Présentation1).SetStandardScale");
//   host.CancelAtPoll(2);                            // 2nd SheafworkProgress read
//   ... run the code ...
//   EXPECT_THAT(host.Calls("Plot("), ElementsAre(...));
//
// Calls are recorded as "Kind(name).Member(arguments)": the kind is the
// interface's class, the name that of the object (a document's file name, a
// layout's, a layer's ...); the application and the collections have no name:
// "Application.Quit()", "Documents.Open(/tmp/x/Plan.dwg, true)". Arguments are
// written with ", " between them; texts as they stand, booleans as
// true/false, reals in their shortest form.

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fakes/temp_folder.h"
#include "host/automation.h"
#include "host/error.h"

namespace sheafwork::testing {

/// The plot settings of a layout or a page setup.
struct FakePlotSettings {
  std::string configName = "Aucun";
  std::string canonicalMediaName = "ISO_A4_(210.00_x_297.00_MM)";
  /// The paper sizes the device offers.
  std::vector<std::string> mediaNames = {"ISO_A4_(210.00_x_297.00_MM)",
                                         "ISO_A3_(297.00_x_420.00_MM)"};
  std::int16_t paperUnits = 1;
  std::int16_t plotRotation = 0;
  std::int16_t plotType = 5;
  std::string viewToPlot;
  host::Point2 windowLowerLeft;
  host::Point2 windowUpperRight;
  bool centerPlot = false;
  host::Point2 plotOrigin;
  bool useStandardScale = true;
  std::int16_t standardScale = 16;
  double customNumerator = 1;
  double customDenominator = 1;
  bool scaleLineweights = false;
  bool plotWithLineweights = true;
  bool plotWithPlotStyles = false;
  std::string styleSheet;
  bool plotHidden = false;
};

struct FakeLayoutData {
  std::string name;
  bool modelType = false;
  FakePlotSettings settings;
};

struct FakeLayerData {
  std::string name;
  bool on = true;
  bool frozen = false;
  bool plottable = true;
};

struct FakeTextStyleData {
  std::string name;
  std::string fontFile;
  bool available = false;  ///< what FontAvailable answers
};

/// What a drawing file holds. Every Open starts from a fresh copy of it, so
/// changes made to an open document never reach the file.
struct FakeDrawing {
  std::string path;  ///< full path; Documents.Open matches it exactly
  /// Layouts in tab order; the model tab "Objet" comes first.
  std::vector<FakeLayoutData> layouts = {{"Objet", true, {}}};
  std::vector<FakeLayoutData> pageSetups;
  std::vector<FakeLayerData> layers = {{"0"}};
  std::vector<std::string> views;
  std::vector<FakeTextStyleData> textStyles = {{"Standard", "txt"}};
  /// 1 model space, 0 paper space.
  std::int16_t activeSpace = 1;
  /// Index in `layouts` of the active tab; the last active paper-space layout
  /// is shown when the space changes to paper.
  int activeLayout = 0;
  int lastPaperLayout = 1;
  bool readOnly = false;
  /// When set, opening the drawing throws this error.
  std::optional<host::Error> openError;

  /// Appends a paper-space layout, or a named page setup.
  FakeLayoutData& AddLayout(const std::string& name) { return layouts.emplace_back(name); }
  FakeLayoutData& AddPageSetup(const std::string& name, bool modelType = false) {
    return pageSetups.emplace_back(name, modelType);
  }
};

/// What happened to one plot call.
struct FakePlotRecord {
  std::string drawing;  ///< the document's full name
  std::string layout;   ///< the active layout's name
  std::optional<std::string> device;
  std::optional<std::string> file;  ///< set for PlotToFile
  FakePlotSettings settings;        ///< the layout's settings at the time
};

class FakeDocument;

class FakeHost {
 public:
  /// A host with one unnamed document open ("Dessin1.dwg", not a file).
  FakeHost();
  ~FakeHost();
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;

  /// A drawing in the fake's own temporary folder: the file is created
  /// (empty) so that existence checks pass. `name` may contain subfolders.
  FakeDrawing& AddDrawing(const std::string& name);
  /// A drawing at a full path of the test's choosing; no file is created.
  FakeDrawing& AddDrawingAt(const std::string& path);
  /// The drawing described at `path`; throws std::out_of_range when none.
  FakeDrawing& Drawing(const std::string& path);

  /// The fake's temporary folder (drawings, plotter configurations ...).
  const TempFolder& Folder() const { return folder_; }

  std::shared_ptr<host::Application> App();

  /// The document most recently opened from `path` (still open or closed);
  /// null when it was never opened.
  FakeDocument* LastOpened(const std::string& path);
  /// The full names of the open documents, in order; the active one is
  /// marked with a leading "*".
  std::vector<std::string> OpenDocuments() const;
  /// The document that was open when the host started.
  FakeDocument& InitialDocument() { return *initial_; }

  // ---- scripting ----

  /// Calls whose "Kind(name).Member" equals `rule`, or ends with "." + rule,
  /// or whose member equals `rule`, throw `error`, after `afterSuccesses`
  /// matching calls went through.
  void FailOn(const std::string& rule, host::Error error = host::Error(-2147467259, "Échec simulé"),
              int afterSuccesses = 0);
  /// Calls matching `rule` as for FailOn throw std::bad_alloc, as when the
  /// memory runs out.
  void RunOutOfMemoryOn(const std::string& rule);
  /// Like FailOn, as a host whose process has ended: every call from the
  /// first matching one (after `afterSuccesses` went through) on throws
  /// host::HostGone.
  void GoneOn(const std::string& rule, int afterSuccesses = 0);
  /// The `poll`-th read (counted from 1) of SheafworkProgress, and every
  /// later one, returns false.
  void CancelAtPoll(int poll);
  /// PlotToDevice and PlotToFile return `accepted` from now on.
  void SetPlotResult(bool accepted) { plotResult_ = accepted; }

  /// Host state the code under test reads.
  std::string path = "/opt/orvane";
  std::int32_t width = 1280;
  std::int32_t height = 900;
  bool visible = false;
  std::string printerConfigPath;
  std::string supportPath;
  /// The plot style tables the host has, by file name.
  std::vector<std::string> plotStyleTables = {"monochrome.ctb", "acad.ctb"};
  std::string logFilePath = "/opt/orvane/logs";
  bool logFileOn = false;
  /// The host's variables: a document reads its own value when one was set
  /// on it, else this one. Starts with the values a host ships with (SDI 0,
  /// EXPERT 0, PROXYNOTICE 1, XREFCTL 0, FILEDIA 1, CMDECHO 0, CMDDIA 1,
  /// SHPNAME "", REGENMODE 1, LOGFILENAME ...). Reading an unknown name fails.
  std::map<std::string, host::SysVarValue> variables;

  // ---- what happened ----

  /// Every call in order; with `filter`, only those containing it.
  std::vector<std::string> Calls(std::string_view filter = {}) const;
  void ClearCalls() { calls_.clear(); }
  const std::vector<FakePlotRecord>& Plots() const { return plots_; }
  int ProgressPolls() const { return polls_; }
  bool Quit() const { return quit_; }

  // ---- used by the fake objects ----
  /// Records a call and throws when a failure rule matches it.
  void Record(const std::string& object, const std::string& member, const std::string& args = {});

 private:
  friend class FakeDocument;
  friend class FakeApplication;
  friend class FakeDocuments;
  friend class FakePlot;

  struct FailRule {
    std::string rule;
    host::Error error;
    int remaining;             ///< successes still let through
    bool outOfMemory = false;  ///< throws std::bad_alloc
    bool gone = false;         ///< throws host::HostGone
  };

  TempFolder folder_;
  std::vector<std::unique_ptr<FakeDrawing>> drawings_;
  std::vector<std::string> calls_;
  std::vector<FailRule> failures_;
  bool gone_ = false;
  std::vector<FakePlotRecord> plots_;
  std::vector<std::shared_ptr<FakeDocument>> open_;  ///< open documents, in order
  std::shared_ptr<FakeDocument> active_;
  std::shared_ptr<FakeDocument> initial_;
  std::map<std::string, std::shared_ptr<FakeDocument>> lastOpened_;
  std::shared_ptr<host::Application> app_;
  int cancelAtPoll_ = 0;
  int polls_ = 0;
  bool plotResult_ = true;
  bool quit_ = false;
};

/// The state of an open document, for tests to look at.
class FakeDocument : public host::Document, public std::enable_shared_from_this<FakeDocument> {
 public:
  FakeDocument(FakeHost& host, const FakeDrawing& drawing);

  /// The document's current data (starts as a copy of the drawing's).
  FakeDrawing data;
  std::map<std::string, host::SysVarValue> variables;
  bool closed = false;
  /// Full names passed to SaveAs.
  std::vector<std::string> savedAs;

  std::string FullName() override;
  bool ReadOnly() override;
  void SaveAs(const std::string& fileName) override;
  void Activate() override;
  void Close(bool saveChanges) override;
  host::SysVarValue GetVariable(const std::string& name) override;
  void SetVariable(const std::string& name, const host::SysVarValue& value) override;
  std::int16_t ActiveSpace() override;
  void SetActiveSpace(std::int16_t space) override;
  std::shared_ptr<host::Layout> ActiveLayout() override;
  void SetActiveLayout(const std::shared_ptr<host::Layout>& layout) override;
  std::shared_ptr<host::Layouts> GetLayouts() override;
  std::shared_ptr<host::PlotConfigurations> GetPlotConfigurations() override;
  std::shared_ptr<host::Layers> GetLayers() override;
  std::shared_ptr<host::Views> GetViews() override;
  std::shared_ptr<host::TextStyles> GetTextStyles() override;
  std::shared_ptr<host::Plot> GetPlot() override;
  void Regen(std::int16_t which) override;

  /// The value a variable reads, without recording a call: the one set on
  /// this document, else the host's. Throws host::Error for an unknown name.
  host::SysVarValue Variable(const std::string& name) const;

  /// The name calls on this document are recorded under: the file name.
  std::string Tag() const;
  /// Records a call on this document (or one of its objects) and throws when
  /// a failure rule matches; calls on a closed document fail.
  void Record(const std::string& object, const std::string& member, const std::string& args = {});
  FakeHost& Host() { return host_; }

 private:
  void Rec(const std::string& member, const std::string& args = {});
  FakeHost& host_;
};

}  // namespace sheafwork::testing
