#pragma once
// Named page setups: a row's PlotSetup, and copying a page setup into the
// active layout.

#include <cstdint>
#include <string>
#include <vector>

#include "host/host_session.h"
#include "log/log_file.h"
#include "log/log_settings.h"
#include "prompt/prompt.h"

namespace sheafwork {

/// A row's PlotSetup split: the drawing that holds the page setup, its name,
/// and whether that drawing is another one than the row's.
struct NpsInfo {
  std::string drawing;
  std::string name;
  bool isExternal = false;
};

/// "drawing|name" splits at the first bar (both parts trimmed); anything else
/// is a name in `defaultDrawing`, kept as it stands.
NpsInfo GetNPSInfoForEntry(const std::string& plotSetup, const std::string& defaultDrawing);

/// True when `name` is "Par défaut" (exact): no page setup.
bool IsDefaultPageSetup(const std::string& name);

/// The settings of one plot configuration, taken from another drawing to be
/// copied into the layouts of the run's drawings.
struct PlotSetupRecord {
  std::string name;
  bool modelType = false;
  std::string configName;
  std::string canonicalMediaName;
  std::int16_t paperUnits = 0;
  std::int16_t plotRotation = 0;
  std::int16_t plotType = 0;
  std::string viewToPlot;
  host::Point2 windowLowerLeft;
  host::Point2 windowUpperRight;
  bool centerPlot = false;
  host::Point2 plotOrigin;
  bool useStandardScale = true;
  std::int16_t standardScale = 0;
  double customNumerator = 1;
  double customDenominator = 1;
  bool scaleLineweights = false;
  bool plotWithLineweights = true;
  bool plotWithPlotStyles = false;
  std::string styleSheet;
  bool plotHidden = false;
};

/// Reads every setting of `source` into a record. Throws host::Error.
PlotSetupRecord ReadPlotSetup(host::PlotConfiguration& source);

/// Copies the page setup `name` of the current document into its active
/// layout; among equal names the last one wins. False when there is none,
/// when a model-space setup meets a paper-space layout, or the host failed.
bool CopyNPSIntoLayout(HostSession& host, const std::string& name);

/// Where the line about a changed paper size goes: the run's error log, and
/// when writing there fails, the error log file opened afresh; when that
/// fails too, a message box.
struct PaperChangeReport {
  LogFile& errorLog;
  const LogSettings& settings;
  Prompt* prompt = nullptr;
};

/// Applies the row's page setup `name` to the active layout: from the current
/// document, or with `isExternal` from `record` (already read from the other
/// drawing). "Par défaut" does nothing. False when the setup cannot be
/// applied; nothing is reported but the paper-size line.
bool SetupNPS(HostSession& host, const std::string& name, bool isExternal,
              const PlotSetupRecord& record, const PaperChangeReport& report);

}  // namespace sheafwork
