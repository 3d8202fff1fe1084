#pragma once
// The host automation interface: the contract every CAD host keeps so that the
// program can drive it. The classes mirror the host's published object model
// and hold exactly the members the program calls, named as the object model
// names them: a property X is read with X() and written with SetX(v).
//
// Rules every host keeps:
// - Objects are handed out as std::shared_ptr and stay valid as long as they
//   are held, even after their document was closed (calls on an object of a
//   closed document then throw host::Error).
// - Every collection is indexed from 0 to Count() - 1; an index outside that
//   range throws host::Error.
// - Any member may throw host::Error (see host/error.h); no other exception
//   leaves a host. A host never shows a message box of its own for an error
//   it reports by throwing.
// - Names are compared by the program, never by the host: a host returns
//   names exactly as stored.
// - A French-localised host names the model tab "Objet" and the empty device
//   "Aucun".

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/sysvar.h"

namespace sheafwork::host {

class Document;
class Layout;
class Plot;

/// A 2-D point of the host's plot settings (paper or drawing units).
struct Point2 {
  double x = 0;
  double y = 0;
};

/// The plot settings shared by a named page setup and a layout. A layout is a
/// plot configuration of its own; a named page setup is one the user saved
/// under a name and can copy into a layout.
class PlotConfiguration {
 public:
  virtual ~PlotConfiguration() = default;

  virtual std::string Name() = 0;
  /// True when the configuration was made for model space.
  virtual bool ModelType() = 0;

  /// The device: a system printer's name, a plotter configuration file, or
  /// "Aucun" for none.
  virtual std::string ConfigName() = 0;
  virtual void SetConfigName(const std::string& name) = 0;
  /// The paper size by the device's own name for it.
  virtual std::string CanonicalMediaName() = 0;
  virtual void SetCanonicalMediaName(const std::string& name) = 0;
  /// The paper sizes that the configuration's device offers.
  virtual std::vector<std::string> GetCanonicalMediaNames() = 0;
  /// Asks the host to read the device's capabilities again.
  virtual void RefreshPlotDeviceInfo() = 0;

  /// 0 inches, 1 millimetres, 2 pixels.
  virtual std::int16_t PaperUnits() = 0;
  virtual void SetPaperUnits(std::int16_t units) = 0;
  /// 0, 1, 2, 3: no rotation, 90, 180, 270 degrees.
  virtual std::int16_t PlotRotation() = 0;
  virtual void SetPlotRotation(std::int16_t rotation) = 0;

  /// 0 display, 1 extents, 2 limits, 3 view, 4 window, 5 layout.
  virtual std::int16_t PlotType() = 0;
  virtual void SetPlotType(std::int16_t type) = 0;
  virtual std::string ViewToPlot() = 0;
  virtual void SetViewToPlot(const std::string& view) = 0;
  virtual void GetWindowToPlot(Point2& lowerLeft, Point2& upperRight) = 0;
  virtual void SetWindowToPlot(Point2 lowerLeft, Point2 upperRight) = 0;

  virtual bool CenterPlot() = 0;
  virtual void SetCenterPlot(bool center) = 0;
  virtual Point2 PlotOrigin() = 0;
  virtual void SetPlotOrigin(Point2 origin) = 0;

  virtual bool UseStandardScale() = 0;
  virtual void SetUseStandardScale(bool standard) = 0;
  /// The host's standard-scale number; 0 scales to fit.
  virtual std::int16_t StandardScale() = 0;
  virtual void SetStandardScale(std::int16_t scale) = 0;
  /// Plotted units per drawing units.
  virtual void GetCustomScale(double& numerator, double& denominator) = 0;
  virtual void SetCustomScale(double numerator, double denominator) = 0;
  virtual bool ScaleLineweights() = 0;
  virtual void SetScaleLineweights(bool scale) = 0;

  virtual bool PlotWithLineweights() = 0;
  virtual void SetPlotWithLineweights(bool with) = 0;
  virtual bool PlotWithPlotStyles() = 0;
  virtual void SetPlotWithPlotStyles(bool with) = 0;
  /// The plot style table, by file name.
  virtual std::string StyleSheet() = 0;
  virtual void SetStyleSheet(const std::string& name) = 0;
  /// The file names of the plot style tables the host has.
  virtual std::vector<std::string> GetPlotStyleTableNames() = 0;
  virtual bool PlotHidden() = 0;
  virtual void SetPlotHidden(bool hidden) = 0;

  /// Copies every plot setting of `source` into this configuration.
  virtual void CopyFrom(PlotConfiguration& source) = 0;
};

class PlotConfigurations {
 public:
  virtual ~PlotConfigurations() = default;
  virtual std::int32_t Count() = 0;
  virtual std::shared_ptr<PlotConfiguration> Item(std::int32_t index) = 0;
};

/// A tab of a drawing: the model tab "Objet" or a paper-space layout.
class Layout : public PlotConfiguration {};

class Layouts {
 public:
  virtual ~Layouts() = default;
  virtual std::int32_t Count() = 0;
  virtual std::shared_ptr<Layout> Item(std::int32_t index) = 0;
};

class Layer {
 public:
  virtual ~Layer() = default;
  virtual std::string Name() = 0;
  virtual bool LayerOn() = 0;
  virtual void SetLayerOn(bool on) = 0;
  virtual bool Freeze() = 0;
  virtual void SetFreeze(bool frozen) = 0;
  virtual bool Plottable() = 0;
  virtual void SetPlottable(bool plottable) = 0;
};

class Layers {
 public:
  virtual ~Layers() = default;
  virtual std::int32_t Count() = 0;
  virtual std::shared_ptr<Layer> Item(std::int32_t index) = 0;
};

/// A named view saved in a drawing.
class View {
 public:
  virtual ~View() = default;
  virtual std::string Name() = 0;
};

class Views {
 public:
  virtual ~Views() = default;
  virtual std::int32_t Count() = 0;
  virtual std::shared_ptr<View> Item(std::int32_t index) = 0;
};

class TextStyle {
 public:
  virtual ~TextStyle() = default;
  virtual std::string Name() = 0;
  /// The font or shape file the style uses, as stored in the drawing ("txt",
  /// "romans.shx", "arial.ttf" ...).
  virtual std::string FontFile() = 0;
  /// Whether the host draws the style's text in its own font although no
  /// file of that name is found where the plot test looks: it finds the
  /// file its own way, or a font of its own stands in for a standard one. A
  /// host that only uses the files themselves answers false.
  virtual bool FontAvailable() = 0;
};

class TextStyles {
 public:
  virtual ~TextStyles() = default;
  virtual std::int32_t Count() = 0;
  virtual std::shared_ptr<TextStyle> Item(std::int32_t index) = 0;
};

/// The plot object of a document.
class Plot {
 public:
  virtual ~Plot() = default;
  /// With quiet error mode a failed plot returns false instead of asking.
  virtual void SetQuietErrorMode(bool quiet) = 0;
  virtual void SetNumberOfCopies(std::int16_t copies) = 0;
  /// Announces how many layouts the run will plot and shows the host's
  /// progress display. The host may correct the count.
  virtual void StartBatchMode(std::int16_t& count) = 0;
  /// True while the progress display is up and its Cancel was not pressed.
  virtual bool SheafworkProgress() = 0;
  /// False ends the batch mode and closes the progress display.
  virtual void SetSheafworkProgress(bool going) = 0;
  /// Plots the active layout to `device` (a printer or a plotter
  /// configuration), or to the layout's own device without one. False when
  /// the host could not plot.
  virtual bool PlotToDevice(const std::optional<std::string>& device) = 0;
  /// Plots the active layout to `fileName`, through `device` or the layout's
  /// own device. A name without an extension gets the device's.
  virtual bool PlotToFile(const std::string& fileName,
                          const std::optional<std::string>& device) = 0;
};

/// The host's options.
class Preferences {
 public:
  virtual ~Preferences() = default;
  /// Folders, separated by ";", in which the host looks for plotter
  /// configuration files.
  virtual std::string PrinterConfigPath() = 0;
  /// Folders, separated by ";", in which the host looks for support files:
  /// fonts, shape files, external references.
  virtual std::string SupportPath() = 0;
  /// The folder in which the host writes its own log file.
  virtual std::string LogFilePath() = 0;
  virtual void SetLogFilePath(const std::string& folder) = 0;
  /// Whether the host writes its own log file; switching it off and on again
  /// starts a fresh log.
  virtual bool LogFileOn() = 0;
  virtual void SetLogFileOn(bool on) = 0;
};

/// The host's busy state, kept by the session for busy checks.
class State {
 public:
  virtual ~State() = default;
  /// True when the host is idle and accepts requests.
  virtual bool IsQuiescent() = 0;
};

class Document {
 public:
  virtual ~Document() = default;

  /// The drawing's full path as the host opened it.
  virtual std::string FullName() = 0;
  virtual bool ReadOnly() = 0;
  virtual void SaveAs(const std::string& fileName) = 0;
  virtual void Activate() = 0;
  virtual void Close(bool saveChanges) = 0;

  virtual SysVarValue GetVariable(const std::string& name) = 0;
  virtual void SetVariable(const std::string& name, const SysVarValue& value) = 0;

  /// 1 model space, 0 paper space.
  virtual std::int16_t ActiveSpace() = 0;
  virtual void SetActiveSpace(std::int16_t space) = 0;
  virtual std::shared_ptr<Layout> ActiveLayout() = 0;
  /// Makes `layout` (one of this document's) the active tab; assigning the
  /// active layout again makes the host take its changed settings over.
  virtual void SetActiveLayout(const std::shared_ptr<Layout>& layout) = 0;

  virtual std::shared_ptr<Layouts> GetLayouts() = 0;
  virtual std::shared_ptr<PlotConfigurations> GetPlotConfigurations() = 0;
  virtual std::shared_ptr<Layers> GetLayers() = 0;
  virtual std::shared_ptr<Views> GetViews() = 0;
  virtual std::shared_ptr<TextStyles> GetTextStyles() = 0;
  virtual std::shared_ptr<Plot> GetPlot() = 0;

  /// Regenerates the drawing; 1 regenerates every viewport.
  virtual void Regen(std::int16_t which) = 0;

  /// The kinds of entity in the drawing's layouts that the host cannot
  /// draw, each with its count, in name order. A host that draws every kind
  /// keeps this default.
  virtual std::vector<std::pair<std::string, std::int32_t>> UndrawnEntities() { return {}; }
};

class Documents {
 public:
  virtual ~Documents() = default;
  virtual std::int32_t Count() = 0;
  virtual std::shared_ptr<Document> Item(std::int32_t index) = 0;
  /// Opens the drawing at `fileName`; throws host::Error with kFileNotFound
  /// when there is none. The opened document is not yet active.
  virtual std::shared_ptr<Document> Open(const std::string& fileName, bool readOnly) = 0;
};

/// The host application.
class Application {
 public:
  virtual ~Application() = default;

  virtual bool Visible() = 0;
  virtual void SetVisible(bool visible) = 0;
  /// The host's installation folder.
  virtual std::string Path() = 0;
  /// The host's main window size.
  virtual std::int32_t Width() = 0;
  virtual void SetWidth(std::int32_t width) = 0;
  virtual std::int32_t Height() = 0;
  virtual void SetHeight(std::int32_t height) = 0;

  virtual std::shared_ptr<Document> ActiveDocument() = 0;
  virtual std::shared_ptr<Documents> GetDocuments() = 0;
  virtual std::shared_ptr<Preferences> GetPreferences() = 0;
  virtual std::shared_ptr<State> GetOrvaState() = 0;

  /// Brings the host's display up to date.
  virtual void Update() = 0;
  /// Closes the host. No member may be called afterwards.
  virtual void Quit() = 0;
};

}  // namespace sheafwork::host
