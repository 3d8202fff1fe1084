#pragma once
// Layouts and named page setups of an open document: every property reads
// or writes the layout's PlotSettings in the document's copy of the drawing.
//
// The device "Aucun" is a layout whose stored device is empty, "None" or
// "none_device". Paper sizes are those the device offers; a layout's own
// paper stays listed and valid even when its device does not offer it. A
// paper name is found on a device also when written otherwise ("ISO A2" for
// "ISO A2 (594.00 x 420.00 mm)", see MatchPaper).

#include <memory>

#include "embedded/automation/host_core.h"
#include "host/automation.h"

namespace sheafwork::embedded {

/// The settings a configuration object edits, for CopyFrom between two of
/// the host's own objects.
class OwnSettings {
 public:
  virtual ~OwnSettings() = default;
  virtual PlotSettings CurrentSettings() = 0;
  /// The name a layout records as its page setup when this one is copied
  /// into it; empty for a layout.
  virtual std::string PageSetupName() = 0;
};

template <typename Interface>
class ConfigurationObject : public Interface, public OwnSettings {
 public:
  enum class Kind { Layout, PageSetup };

  ConfigurationObject(std::shared_ptr<HostCore> core, std::shared_ptr<DocumentState> doc, Kind kind,
                      std::size_t index)
      : core_(std::move(core)), doc_(std::move(doc)), kind_(kind), index_(index) {}

  /// The document and the index in its layouts (or page setups).
  const std::shared_ptr<DocumentState>& Doc() const { return doc_; }
  std::size_t Index() const { return index_; }

  std::string Name() override;
  bool ModelType() override;
  std::string ConfigName() override;
  void SetConfigName(const std::string& name) override;
  std::string CanonicalMediaName() override;
  void SetCanonicalMediaName(const std::string& name) override;
  std::vector<std::string> GetCanonicalMediaNames() override;
  void RefreshPlotDeviceInfo() override;
  std::int16_t PaperUnits() override;
  void SetPaperUnits(std::int16_t units) override;
  std::int16_t PlotRotation() override;
  void SetPlotRotation(std::int16_t rotation) override;
  std::int16_t PlotType() override;
  void SetPlotType(std::int16_t type) override;
  std::string ViewToPlot() override;
  void SetViewToPlot(const std::string& view) override;
  void GetWindowToPlot(host::Point2& lowerLeft, host::Point2& upperRight) override;
  void SetWindowToPlot(host::Point2 lowerLeft, host::Point2 upperRight) override;
  bool CenterPlot() override;
  void SetCenterPlot(bool center) override;
  host::Point2 PlotOrigin() override;
  void SetPlotOrigin(host::Point2 origin) override;
  bool UseStandardScale() override;
  void SetUseStandardScale(bool standard) override;
  std::int16_t StandardScale() override;
  void SetStandardScale(std::int16_t scale) override;
  void GetCustomScale(double& numerator, double& denominator) override;
  void SetCustomScale(double numerator, double denominator) override;
  bool ScaleLineweights() override;
  void SetScaleLineweights(bool scale) override;
  bool PlotWithLineweights() override;
  void SetPlotWithLineweights(bool with) override;
  bool PlotWithPlotStyles() override;
  void SetPlotWithPlotStyles(bool with) override;
  std::string StyleSheet() override;
  void SetStyleSheet(const std::string& name) override;
  std::vector<std::string> GetPlotStyleTableNames() override;
  bool PlotHidden() override;
  void SetPlotHidden(bool hidden) override;
  void CopyFrom(host::PlotConfiguration& source) override;

  PlotSettings CurrentSettings() override;
  std::string PageSetupName() override;

 private:
  template <typename Body>
  auto Run(Body&& body) -> decltype(body(std::declval<PlotSettings&>()));
  PlotSettings& Settings();
  std::string MediaName(const PlotSettings& settings);
  void CopyThroughInterface(host::PlotConfiguration& source);

  std::shared_ptr<HostCore> core_;
  std::shared_ptr<DocumentState> doc_;
  Kind kind_;
  std::size_t index_;
};

using LayoutObject = ConfigurationObject<host::Layout>;
using PageSetupObject = ConfigurationObject<host::PlotConfiguration>;

/// True when a stored device means none.
bool IsNoDevice(const std::string& configName);

}  // namespace sheafwork::embedded
