#pragma once
// The host's automation names, one table per class of the host automation
// interface (host/automation.h). A property X read with X() and written with
// SetX(v) is the one name "X"; a method keeps its own name. Both sides of
// the automation boundary use these tables: the COM host calls by them and
// the test server serves by them.

#include <string_view>

namespace sheafwork::com::names {

using Name = std::string_view;

struct PlotConfiguration {
  static constexpr Name kName = "Name";
  static constexpr Name kModelType = "ModelType";
  static constexpr Name kConfigName = "ConfigName";
  static constexpr Name kCanonicalMediaName = "CanonicalMediaName";
  static constexpr Name kGetCanonicalMediaNames = "GetCanonicalMediaNames";
  static constexpr Name kRefreshPlotDeviceInfo = "RefreshPlotDeviceInfo";
  static constexpr Name kPaperUnits = "PaperUnits";
  static constexpr Name kPlotRotation = "PlotRotation";
  static constexpr Name kPlotType = "PlotType";
  static constexpr Name kViewToPlot = "ViewToPlot";
  /// Methods with two points, by reference for the reading.
  static constexpr Name kGetWindowToPlot = "GetWindowToPlot";
  static constexpr Name kSetWindowToPlot = "SetWindowToPlot";
  static constexpr Name kCenterPlot = "CenterPlot";
  /// A point: an array of two reals.
  static constexpr Name kPlotOrigin = "PlotOrigin";
  static constexpr Name kUseStandardScale = "UseStandardScale";
  static constexpr Name kStandardScale = "StandardScale";
  /// Methods with numerator and denominator, by reference for the reading.
  static constexpr Name kGetCustomScale = "GetCustomScale";
  static constexpr Name kSetCustomScale = "SetCustomScale";
  static constexpr Name kScaleLineweights = "ScaleLineweights";
  static constexpr Name kPlotWithLineweights = "PlotWithLineweights";
  static constexpr Name kPlotWithPlotStyles = "PlotWithPlotStyles";
  static constexpr Name kStyleSheet = "StyleSheet";
  static constexpr Name kGetPlotStyleTableNames = "GetPlotStyleTableNames";
  static constexpr Name kPlotHidden = "PlotHidden";
  static constexpr Name kCopyFrom = "CopyFrom";
};

/// Every collection: Count and Item (see Documents for where Item starts).
struct Collection {
  static constexpr Name kCount = "Count";
  static constexpr Name kItem = "Item";
};

struct Layer {
  static constexpr Name kName = "Name";
  static constexpr Name kLayerOn = "LayerOn";
  static constexpr Name kFreeze = "Freeze";
  static constexpr Name kPlottable = "Plottable";
};

struct View {
  static constexpr Name kName = "Name";
};

struct TextStyle {
  static constexpr Name kName = "Name";
  static constexpr Name kFontFile = "FontFile";
  static constexpr Name kFontAvailable = "FontAvailable";
};

struct Plot {
  static constexpr Name kQuietErrorMode = "QuietErrorMode";
  static constexpr Name kNumberOfCopies = "NumberOfCopies";
  /// A method with the count by reference.
  static constexpr Name kStartBatchMode = "StartBatchMode";
  static constexpr Name kSheafworkProgress = "SheafworkProgress";
  static constexpr Name kPlotToDevice = "PlotToDevice";
  static constexpr Name kPlotToFile = "PlotToFile";
};

struct Preferences {
  static constexpr Name kPrinterConfigPath = "PrinterConfigPath";
  static constexpr Name kSupportPath = "SupportPath";
  static constexpr Name kLogFilePath = "LogFilePath";
  static constexpr Name kLogFileOn = "LogFileOn";
};

struct State {
  static constexpr Name kIsQuiescent = "IsQuiescent";
};

struct Document {
  static constexpr Name kFullName = "FullName";
  static constexpr Name kReadOnly = "ReadOnly";
  static constexpr Name kSaveAs = "SaveAs";
  static constexpr Name kActivate = "Activate";
  static constexpr Name kClose = "Close";
  static constexpr Name kGetVariable = "GetVariable";
  static constexpr Name kSetVariable = "SetVariable";
  static constexpr Name kActiveSpace = "ActiveSpace";
  static constexpr Name kActiveLayout = "ActiveLayout";
  static constexpr Name kLayouts = "Layouts";
  static constexpr Name kPlotConfigurations = "PlotConfigurations";
  static constexpr Name kLayers = "Layers";
  static constexpr Name kViews = "Views";
  static constexpr Name kTextStyles = "TextStyles";
  static constexpr Name kPlot = "Plot";
  static constexpr Name kRegen = "Regen";
  /// Not every host has it: a host without it draws every kind. Answers an
  /// array of names and an array of counts, in name order, by reference.
  static constexpr Name kUndrawnEntities = "UndrawnEntities";
};

/// The open documents are indexed from 1, the other collections from 0.
struct Documents {
  static constexpr Name kOpen = "Open";
  static constexpr int kFirstIndex = 1;
};

struct Application {
  static constexpr Name kVisible = "Visible";
  static constexpr Name kPath = "Path";
  static constexpr Name kWidth = "Width";
  static constexpr Name kHeight = "Height";
  static constexpr Name kActiveDocument = "ActiveDocument";
  static constexpr Name kDocuments = "Documents";
  static constexpr Name kPreferences = "Preferences";
  static constexpr Name kGetOrvaState = "GetOrvaState";
  static constexpr Name kUpdate = "Update";
  static constexpr Name kQuit = "Quit";
};

}  // namespace sheafwork::com::names
