#include "embedded/automation/plot_configuration.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "embedded/automation/sheet_paper.h"
#include "embedded/plotstyle/lookup.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/paper_names.h"
#include "text/strings.h"

namespace sheafwork::embedded {

namespace msg = host_messages;

namespace {

constexpr std::int16_t kLastStandardScale = 32;

void CheckRange(std::string_view what, int value, int min, int max) {
  if (value < min || value > max) {
    throw host::Error(msg::kInvalidArgument, msg::OutOfRange(what, value, min, max));
  }
}

}  // namespace

bool IsNoDevice(const std::string& configName) {
  return configName.empty() || configName == "none_device" ||
         EqualsIgnoreCase(configName, "None") || configName == CachedText<ids::kNoDevice>();
}

template <typename Interface>
template <typename Body>
auto ConfigurationObject<Interface>::Run(Body&& body)
    -> decltype(body(std::declval<PlotSettings&>())) {
  return Guarded(*core_, *doc_, [&] { return body(Settings()); });
}

template <typename Interface>
PlotSettings& ConfigurationObject<Interface>::Settings() {
  if (kind_ == Kind::Layout) return doc_->drawing.layouts.at(index_).settings;
  return doc_->drawing.pageSetups.at(index_).settings;
}

// The paper's name; a paper stored without one is named by its size.
template <typename Interface>
std::string ConfigurationObject<Interface>::MediaName(const PlotSettings& settings) {
  if (!settings.mediaName.empty()) return settings.mediaName;
  char name[96];
  std::snprintf(name, sizeof name, "Personnalisé (%.2f x %.2f mm)", settings.paperWidth,
                settings.paperHeight);
  return name;
}

template <typename Interface>
std::string ConfigurationObject<Interface>::Name() {
  return Run([&](PlotSettings&) -> std::string {
    if (kind_ == Kind::PageSetup) return doc_->drawing.pageSetups.at(index_).name;
    const Layout& layout = doc_->drawing.layouts.at(index_);
    return layout.IsModel() ? CachedText<ids::kModelTabName>() : layout.name;
  });
}

template <typename Interface>
bool ConfigurationObject<Interface>::ModelType() {
  return Run([](PlotSettings& s) { return s.Has(kModelType); });
}

template <typename Interface>
std::string ConfigurationObject<Interface>::ConfigName() {
  return Run([](PlotSettings& s) {
    return IsNoDevice(s.configName) ? CachedText<ids::kNoDevice>() : s.configName;
  });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetConfigName(const std::string& name) {
  Run([&](PlotSettings& s) {
    if (IsNoDevice(name)) {
      s.configName.clear();
      return;
    }
    const auto device = core_->FindDevice(name);
    if (!device) throw host::Error(msg::kUnknownDevice, msg::UnknownDevice(name));
    s.configName = name;
    // The paper stays; when the new device offers it, with the device's
    // own size and margins; a layout without a usable paper gets the
    // device's default one.
    FitPaperToDevice(s, device->config);
  });
}

template <typename Interface>
std::string ConfigurationObject<Interface>::CanonicalMediaName() {
  return Run([&](PlotSettings& s) { return MediaName(s); });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetCanonicalMediaName(const std::string& name) {
  Run([&](PlotSettings& s) {
    const auto device = IsNoDevice(s.configName) ? std::nullopt : core_->FindDevice(s.configName);
    if (device) {
      if (const Paper* paper = device->config.MatchPaper(name, 0, 0)) {
        UsePaper(s, *paper);
        return;
      }
    }
    if (name != MediaName(s)) throw host::Error(msg::kInvalidArgument, msg::UnknownMedia(name));
  });
}

template <typename Interface>
std::vector<std::string> ConfigurationObject<Interface>::GetCanonicalMediaNames() {
  return Run([&](PlotSettings& s) {
    std::vector<std::string> names;
    const auto device = IsNoDevice(s.configName) ? std::nullopt : core_->FindDevice(s.configName);
    if (device) {
      for (const Paper& paper : device->config.papers) names.push_back(paper.name);
    }
    const std::string own = MediaName(s);
    if (std::find(names.begin(), names.end(), own) == names.end()) names.push_back(own);
    return names;
  });
}

template <typename Interface>
void ConfigurationObject<Interface>::RefreshPlotDeviceInfo() {
  // Configuration files are read afresh at every use.
  Run([](PlotSettings&) {});
}

template <typename Interface>
std::int16_t ConfigurationObject<Interface>::PaperUnits() {
  return Run([](PlotSettings& s) { return s.paperUnits; });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetPaperUnits(std::int16_t units) {
  Run([&](PlotSettings& s) {
    CheckRange("unités du papier", units, 0, 2);
    s.paperUnits = units;
  });
}

template <typename Interface>
std::int16_t ConfigurationObject<Interface>::PlotRotation() {
  return Run([](PlotSettings& s) { return s.rotation; });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetPlotRotation(std::int16_t rotation) {
  Run([&](PlotSettings& s) {
    CheckRange("rotation du tracé", rotation, 0, 3);
    s.rotation = rotation;
  });
}

template <typename Interface>
std::int16_t ConfigurationObject<Interface>::PlotType() {
  return Run([](PlotSettings& s) { return s.plotType; });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetPlotType(std::int16_t type) {
  Run([&](PlotSettings& s) {
    CheckRange("type de tracé", type, kPlotDisplay, kPlotLayout);
    s.plotType = type;
  });
}

template <typename Interface>
std::string ConfigurationObject<Interface>::ViewToPlot() {
  return Run([](PlotSettings& s) { return s.viewName; });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetViewToPlot(const std::string& view) {
  Run([&](PlotSettings& s) {
    const View* found = doc_->drawing.FindView(view);
    if (!found) throw host::Error(msg::kInvalidArgument, msg::UnknownView(view));
    s.viewName = found->name;
  });
}

template <typename Interface>
void ConfigurationObject<Interface>::GetWindowToPlot(host::Point2& lowerLeft,
                                                     host::Point2& upperRight) {
  Run([&](PlotSettings& s) {
    lowerLeft = {s.windowMin.x, s.windowMin.y};
    upperRight = {s.windowMax.x, s.windowMax.y};
  });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetWindowToPlot(host::Point2 lowerLeft,
                                                     host::Point2 upperRight) {
  Run([&](PlotSettings& s) {
    s.windowMin = {lowerLeft.x, lowerLeft.y};
    s.windowMax = {upperRight.x, upperRight.y};
  });
}

template <typename Interface>
bool ConfigurationObject<Interface>::CenterPlot() {
  return Run([](PlotSettings& s) { return s.Has(kPlotCentered); });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetCenterPlot(bool center) {
  Run([&](PlotSettings& s) { s.Set(kPlotCentered, center); });
}

template <typename Interface>
host::Point2 ConfigurationObject<Interface>::PlotOrigin() {
  return Run([](PlotSettings& s) { return host::Point2{s.origin.x, s.origin.y}; });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetPlotOrigin(host::Point2 origin) {
  Run([&](PlotSettings& s) { s.origin = {origin.x, origin.y}; });
}

template <typename Interface>
bool ConfigurationObject<Interface>::UseStandardScale() {
  return Run([](PlotSettings& s) { return s.Has(kUseStandardScale); });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetUseStandardScale(bool standard) {
  Run([&](PlotSettings& s) { s.Set(kUseStandardScale, standard); });
}

template <typename Interface>
std::int16_t ConfigurationObject<Interface>::StandardScale() {
  return Run([](PlotSettings& s) { return s.standardScale; });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetStandardScale(std::int16_t scale) {
  Run([&](PlotSettings& s) {
    CheckRange("échelle standard", scale, 0, kLastStandardScale);
    s.standardScale = scale;
  });
}

template <typename Interface>
void ConfigurationObject<Interface>::GetCustomScale(double& numerator, double& denominator) {
  Run([&](PlotSettings& s) {
    numerator = s.customNumerator;
    denominator = s.customDenominator;
  });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetCustomScale(double numerator, double denominator) {
  Run([&](PlotSettings& s) {
    if (!(numerator > 0) || !(denominator > 0) || !std::isfinite(numerator) ||
        !std::isfinite(denominator)) {
      throw host::Error(msg::kInvalidArgument, msg::BadCustomScale());
    }
    s.customNumerator = numerator;
    s.customDenominator = denominator;
  });
}

template <typename Interface>
bool ConfigurationObject<Interface>::ScaleLineweights() {
  return Run([](PlotSettings& s) { return s.Has(kScaleLineweights); });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetScaleLineweights(bool scale) {
  Run([&](PlotSettings& s) { s.Set(kScaleLineweights, scale); });
}

template <typename Interface>
bool ConfigurationObject<Interface>::PlotWithLineweights() {
  return Run([](PlotSettings& s) { return s.Has(kPrintLineweights); });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetPlotWithLineweights(bool with) {
  Run([&](PlotSettings& s) { s.Set(kPrintLineweights, with); });
}

template <typename Interface>
bool ConfigurationObject<Interface>::PlotWithPlotStyles() {
  return Run([](PlotSettings& s) { return s.Has(kPlotPlotStyles); });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetPlotWithPlotStyles(bool with) {
  Run([&](PlotSettings& s) { s.Set(kPlotPlotStyles, with); });
}

template <typename Interface>
std::string ConfigurationObject<Interface>::StyleSheet() {
  return Run([](PlotSettings& s) { return s.styleSheet; });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetStyleSheet(const std::string& name) {
  Run([&](PlotSettings& s) { s.styleSheet = name; });
}

template <typename Interface>
std::vector<std::string> ConfigurationObject<Interface>::GetPlotStyleTableNames() {
  return Guarded(*core_, [&] { return PlotStyleFileNames(core_->plotStylePath); });
}

template <typename Interface>
bool ConfigurationObject<Interface>::PlotHidden() {
  return Run([](PlotSettings& s) { return s.Has(kPlotHidden); });
}

template <typename Interface>
void ConfigurationObject<Interface>::SetPlotHidden(bool hidden) {
  Run([&](PlotSettings& s) { s.Set(kPlotHidden, hidden); });
}

template <typename Interface>
PlotSettings ConfigurationObject<Interface>::CurrentSettings() {
  return Run([](PlotSettings& s) { return s; });
}

template <typename Interface>
std::string ConfigurationObject<Interface>::PageSetupName() {
  return kind_ == Kind::PageSetup ? Name() : std::string();
}

template <typename Interface>
void ConfigurationObject<Interface>::CopyFrom(host::PlotConfiguration& source) {
  auto* own = dynamic_cast<OwnSettings*>(&source);
  if (!own) {
    CopyThroughInterface(source);
    return;
  }
  PlotSettings copied = own->CurrentSettings();
  const std::string setupName = own->PageSetupName();
  Run([&](PlotSettings& s) {
    // The target keeps what makes it itself: its kind of space and, for a
    // layout, the page setup it records unless a page setup was copied.
    copied.Set(kModelType, s.Has(kModelType));
    if (kind_ == Kind::PageSetup || setupName.empty()) {
      copied.pageSetupName = s.pageSetupName;
    } else {
      copied.pageSetupName = setupName;
    }
    s = copied;
  });
}

// A configuration of another host: every setting through its members.
template <typename Interface>
void ConfigurationObject<Interface>::CopyThroughInterface(host::PlotConfiguration& source) {
  SetConfigName(source.ConfigName());
  const std::string media = source.CanonicalMediaName();
  const auto offered = GetCanonicalMediaNames();
  if (const auto i = FindPaperName(offered, media)) {
    SetCanonicalMediaName(offered[*i]);
  }
  SetPaperUnits(source.PaperUnits());
  SetPlotRotation(source.PlotRotation());
  host::Point2 lowerLeft, upperRight;
  source.GetWindowToPlot(lowerLeft, upperRight);
  SetWindowToPlot(lowerLeft, upperRight);
  const std::string view = source.ViewToPlot();
  if (!view.empty()) SetViewToPlot(view);
  SetPlotType(source.PlotType());
  SetPlotOrigin(source.PlotOrigin());
  SetCenterPlot(source.CenterPlot());
  SetUseStandardScale(source.UseStandardScale());
  SetStandardScale(source.StandardScale());
  double numerator = 1, denominator = 1;
  source.GetCustomScale(numerator, denominator);
  SetCustomScale(numerator, denominator);
  SetScaleLineweights(source.ScaleLineweights());
  SetPlotWithLineweights(source.PlotWithLineweights());
  SetPlotWithPlotStyles(source.PlotWithPlotStyles());
  SetStyleSheet(source.StyleSheet());
  SetPlotHidden(source.PlotHidden());
}

template class ConfigurationObject<host::Layout>;
template class ConfigurationObject<host::PlotConfiguration>;

}  // namespace sheafwork::embedded
