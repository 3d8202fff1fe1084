#include "plotcfg/page_setup.h"

#include <cerrno>
#include <cstring>

#include "host/error.h"
#include "log/paths.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/paper_names.h"
#include "text/strings.h"

namespace sheafwork {

NpsInfo GetNPSInfoForEntry(const std::string& plotSetup, const std::string& defaultDrawing) {
  const auto bar = plotSetup.find('|');
  if (bar == std::string::npos) return {defaultDrawing, plotSetup, false};
  const std::string_view text = plotSetup;
  return {std::string(TrimSpaces(text.substr(0, bar))),
          std::string(TrimSpaces(text.substr(bar + 1))), true};
}

bool IsDefaultPageSetup(const std::string& name) { return name == CachedText<ids::kDefault>(); }

PlotSetupRecord ReadPlotSetup(host::PlotConfiguration& source) {
  PlotSetupRecord record;
  record.name = source.Name();
  record.modelType = source.ModelType();
  record.configName = source.ConfigName();
  record.canonicalMediaName = source.CanonicalMediaName();
  record.paperUnits = source.PaperUnits();
  record.plotRotation = source.PlotRotation();
  record.plotType = source.PlotType();
  record.viewToPlot = source.ViewToPlot();
  source.GetWindowToPlot(record.windowLowerLeft, record.windowUpperRight);
  record.centerPlot = source.CenterPlot();
  record.plotOrigin = source.PlotOrigin();
  record.useStandardScale = source.UseStandardScale();
  record.standardScale = source.StandardScale();
  source.GetCustomScale(record.customNumerator, record.customDenominator);
  record.scaleLineweights = source.ScaleLineweights();
  record.plotWithLineweights = source.PlotWithLineweights();
  record.plotWithPlotStyles = source.PlotWithPlotStyles();
  record.styleSheet = source.StyleSheet();
  record.plotHidden = source.PlotHidden();
  return record;
}

bool CopyNPSIntoLayout(HostSession& host, const std::string& name) {
  if (IsDefaultPageSetup(name)) return true;
  try {
    host::Document& doc = host.Doc();
    auto configurations = doc.GetPlotConfigurations();
    const std::int32_t count = configurations->Count();
    std::shared_ptr<host::PlotConfiguration> match;
    // No early stop: among equal names the last one counts.
    for (std::int32_t i = 0; i < count; ++i) {
      auto configuration = configurations->Item(i);
      if (configuration->Name() == name) match = std::move(configuration);
    }
    if (!match) return false;
    // A model-space setup is refused in paper space; a paper-space setup in
    // model space is let through.
    if (doc.ActiveSpace() == 0 && match->ModelType()) return false;
    doc.ActiveLayout()->CopyFrom(*match);
    return true;
  } catch (const host::Error&) {
    return false;
  }
}

namespace {

// "<313> on <folder><separator><file>|<layout>": the drawing is named by its
// folder and file name joined with one separator.
std::string PaperChangeLine(const std::string& drawing, const std::string& layout) {
  std::string folder = FolderFromPath(drawing);
  if (!folder.empty()) folder.pop_back();  // FolderFromPath keeps the separator
  return CachedText<ids::kPaperSizeChanged>() + " on " + folder + FolderSeparator() +
         FileNameFromPath(drawing) + "|" + layout;
}

// Writes the line to the run's error log; when that write fails, to the error
// log file opened afresh; when that cannot be opened, in a message box.
void ReportPaperChange(const PaperChangeReport& report, const std::string& line) {
  const LogSettings& settings = report.settings;
  if (settings.ErrorLogFileName.empty() || !settings.ErrorLogOn) return;
  if (report.errorLog.WriteLogLine(line)) return;
  LogFile fresh;
  if (fresh.Open(settings.ErrorLogFileName, /*append=*/true)) {
    fresh.WriteLogLine(line);
    fresh.Close();
    return;
  }
  const std::string reason = std::strerror(errno);
  if (report.prompt != nullptr) {
    report.prompt->Ask({LoadResourceText(ids::kResultsSaveFailed) + reason,
                        LoadResourceText(ids::kErrorTitle), PromptIcon::Critical,
                        PromptButtons::Ok});
  }
}

// Copies the record into `layout`: the device first, so that the paper sizes
// offered are those of the new device; a paper size the device does not offer
// under any spelling leaves the layout's own and is reported. The window and the view are set
// before the plot type that uses them, and the scale mode before its scale.
void CopyRecordInto(host::Layout& layout, const PlotSetupRecord& record, HostSession& host,
                    const PaperChangeReport& report) {
  layout.SetConfigName(record.configName);
  // The device may write the same paper's name otherwise ("ISO A2" for
  // "ISO A2 (594.00 x 420.00 mm)"): it is set by the device's own name.
  const std::vector<std::string> media = layout.GetCanonicalMediaNames();
  const auto offered = FindPaperName(media, record.canonicalMediaName);
  if (offered) {
    layout.SetCanonicalMediaName(media[*offered]);
  } else {
    ReportPaperChange(report, PaperChangeLine(host.Doc().FullName(), layout.Name()));
  }
  layout.SetPaperUnits(record.paperUnits);
  layout.SetPlotRotation(record.plotRotation);
  layout.SetWindowToPlot(record.windowLowerLeft, record.windowUpperRight);
  if (!record.viewToPlot.empty()) layout.SetViewToPlot(record.viewToPlot);
  layout.SetPlotType(record.plotType);
  layout.SetPlotOrigin(record.plotOrigin);
  layout.SetCenterPlot(record.centerPlot);
  layout.SetUseStandardScale(record.useStandardScale);
  if (record.useStandardScale) {
    layout.SetStandardScale(record.standardScale);
  } else {
    layout.SetCustomScale(record.customNumerator, record.customDenominator);
  }
  layout.SetScaleLineweights(record.scaleLineweights);
  layout.SetPlotWithLineweights(record.plotWithLineweights);
  layout.SetPlotWithPlotStyles(record.plotWithPlotStyles);
  layout.SetStyleSheet(record.styleSheet);
  layout.SetPlotHidden(record.plotHidden);
}

}  // namespace

bool SetupNPS(HostSession& host, const std::string& name, bool isExternal,
              const PlotSetupRecord& record, const PaperChangeReport& report) {
  if (IsDefaultPageSetup(name)) return true;
  try {
    if (!isExternal) return CopyNPSIntoLayout(host, name);
    if (record.modelType && host.Doc().ActiveSpace() == 0) return false;
    auto document = host.App().ActiveDocument();
    auto layout = document->ActiveLayout();
    layout->RefreshPlotDeviceInfo();
    CopyRecordInto(*layout, record, host, report);
    // Assigning the active layout again makes the host take the settings over.
    document->SetActiveLayout(layout);
    return true;
  } catch (const host::Error&) {
    return false;
  }
}

}  // namespace sheafwork
