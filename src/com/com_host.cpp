#include "com/com_host.h"

#include <utility>

#include "com/attach.h"
#include "com/member_names.h"
#include "host/error.h"

namespace sheafwork::com {

namespace {

// What every object of the COM host holds: the server's object and the
// DISPIDs looked up on it.
class ComObject {
 public:
  explicit ComObject(ComRef<IDispatch> object) : d_(std::move(object)) {}
  virtual ~ComObject() = default;
  Dispatch& dispatch() { return d_; }

 protected:
  std::string GetString(std::string_view member) { return d_.Get(member).AsString(); }
  bool GetBool(std::string_view member) { return d_.Get(member).AsBool(); }
  std::int16_t GetInt16(std::string_view member) { return d_.Get(member).AsInt16(); }
  std::int32_t GetInt32(std::string_view member) { return d_.Get(member).AsInt32(); }
  template <typename T>
  void Put(std::string_view member, T value) {
    d_.Put(member, Variant(value));
  }
  void PutString(std::string_view member, const std::string& value) {
    d_.Put(member, Variant(std::string_view(value)));
  }
  // The object `member` returns, wrapped.
  template <typename Wrapper>
  std::shared_ptr<Wrapper> Object(std::string_view member) {
    return std::make_shared<Wrapper>(d_.Get(member).AsDispatch());
  }

  Dispatch d_;
};

// The server's object that an object of this host wraps; host::Error 13 for
// an object of another host.
template <typename T>
ComRef<IDispatch> ServerObjectOf(T* object) {
  auto* wrapper = dynamic_cast<ComObject*>(object);
  if (wrapper == nullptr) throw host::Error(13, "Type incompatible: objet d'un autre hôte");
  return wrapper->dispatch().object();
}

host::Point2 PointFrom(const Variant& value) {
  const std::vector<double> xy = value.AsDoubles();
  if (xy.size() < 2) throw host::Error(13, "Type incompatible: point attendu");
  return {xy[0], xy[1]};
}

Variant PointVariant(host::Point2 point) { return Variant::Doubles({point.x, point.y}); }

template <typename Base>
class ComPlotConfigurationOf : public Base, public ComObject {
  using N = names::PlotConfiguration;

 public:
  using ComObject::ComObject;

  std::string Name() override { return GetString(N::kName); }
  bool ModelType() override { return GetBool(N::kModelType); }
  std::string ConfigName() override { return GetString(N::kConfigName); }
  void SetConfigName(const std::string& name) override { PutString(N::kConfigName, name); }
  std::string CanonicalMediaName() override { return GetString(N::kCanonicalMediaName); }
  void SetCanonicalMediaName(const std::string& name) override {
    PutString(N::kCanonicalMediaName, name);
  }
  std::vector<std::string> GetCanonicalMediaNames() override {
    return d_.Call(N::kGetCanonicalMediaNames).AsStrings();
  }
  void RefreshPlotDeviceInfo() override { d_.Call(N::kRefreshPlotDeviceInfo); }
  std::int16_t PaperUnits() override { return GetInt16(N::kPaperUnits); }
  void SetPaperUnits(std::int16_t units) override { Put(N::kPaperUnits, units); }
  std::int16_t PlotRotation() override { return GetInt16(N::kPlotRotation); }
  void SetPlotRotation(std::int16_t rotation) override { Put(N::kPlotRotation, rotation); }
  std::int16_t PlotType() override { return GetInt16(N::kPlotType); }
  void SetPlotType(std::int16_t type) override { Put(N::kPlotType, type); }
  std::string ViewToPlot() override { return GetString(N::kViewToPlot); }
  void SetViewToPlot(const std::string& view) override { PutString(N::kViewToPlot, view); }
  void GetWindowToPlot(host::Point2& lowerLeft, host::Point2& upperRight) override {
    Variant low;
    Variant high;
    std::vector<Variant> args;
    args.push_back(Variant::RefTo(low));
    args.push_back(Variant::RefTo(high));
    d_.Call(N::kGetWindowToPlot, std::move(args));
    lowerLeft = PointFrom(low);
    upperRight = PointFrom(high);
  }
  void SetWindowToPlot(host::Point2 lowerLeft, host::Point2 upperRight) override {
    std::vector<Variant> args;
    args.push_back(PointVariant(lowerLeft));
    args.push_back(PointVariant(upperRight));
    d_.Call(N::kSetWindowToPlot, std::move(args));
  }
  bool CenterPlot() override { return GetBool(N::kCenterPlot); }
  void SetCenterPlot(bool center) override { Put(N::kCenterPlot, center); }
  host::Point2 PlotOrigin() override { return PointFrom(d_.Get(N::kPlotOrigin)); }
  void SetPlotOrigin(host::Point2 origin) override { d_.Put(N::kPlotOrigin, PointVariant(origin)); }
  bool UseStandardScale() override { return GetBool(N::kUseStandardScale); }
  void SetUseStandardScale(bool standard) override { Put(N::kUseStandardScale, standard); }
  std::int16_t StandardScale() override { return GetInt16(N::kStandardScale); }
  void SetStandardScale(std::int16_t scale) override { Put(N::kStandardScale, scale); }
  void GetCustomScale(double& numerator, double& denominator) override {
    Variant num(0.0);
    Variant den(0.0);
    std::vector<Variant> args;
    args.push_back(Variant::RefTo(num));
    args.push_back(Variant::RefTo(den));
    d_.Call(N::kGetCustomScale, std::move(args));
    numerator = num.AsDouble();
    denominator = den.AsDouble();
  }
  void SetCustomScale(double numerator, double denominator) override {
    std::vector<Variant> args;
    args.emplace_back(numerator);
    args.emplace_back(denominator);
    d_.Call(N::kSetCustomScale, std::move(args));
  }
  bool ScaleLineweights() override { return GetBool(N::kScaleLineweights); }
  void SetScaleLineweights(bool scale) override { Put(N::kScaleLineweights, scale); }
  bool PlotWithLineweights() override { return GetBool(N::kPlotWithLineweights); }
  void SetPlotWithLineweights(bool with) override { Put(N::kPlotWithLineweights, with); }
  bool PlotWithPlotStyles() override { return GetBool(N::kPlotWithPlotStyles); }
  void SetPlotWithPlotStyles(bool with) override { Put(N::kPlotWithPlotStyles, with); }
  std::string StyleSheet() override { return GetString(N::kStyleSheet); }
  void SetStyleSheet(const std::string& name) override { PutString(N::kStyleSheet, name); }
  std::vector<std::string> GetPlotStyleTableNames() override {
    return d_.Call(N::kGetPlotStyleTableNames).AsStrings();
  }
  bool PlotHidden() override { return GetBool(N::kPlotHidden); }
  void SetPlotHidden(bool hidden) override { Put(N::kPlotHidden, hidden); }
  void CopyFrom(host::PlotConfiguration& source) override {
    std::vector<Variant> args;
    args.emplace_back(ServerObjectOf(&source));
    d_.Call(N::kCopyFrom, std::move(args));
  }
};

using ComPlotConfiguration = ComPlotConfigurationOf<host::PlotConfiguration>;
using ComLayout = ComPlotConfigurationOf<host::Layout>;

// A collection of `Item` objects, each wrapped as `Wrapper`.
template <typename Base, typename Element, typename Wrapper, int kFirstIndex = 0>
class ComCollection : public Base, public ComObject {
 public:
  using ComObject::ComObject;
  std::int32_t Count() override { return GetInt32(names::Collection::kCount); }
  std::shared_ptr<Element> Item(std::int32_t index) override {
    std::vector<Variant> args;
    args.emplace_back(static_cast<std::int32_t>(index + kFirstIndex));
    return std::make_shared<Wrapper>(
        d_.Get(names::Collection::kItem, std::move(args)).AsDispatch());
  }
};

class ComLayer : public host::Layer, public ComObject {
  using N = names::Layer;

 public:
  using ComObject::ComObject;
  std::string Name() override { return GetString(N::kName); }
  bool LayerOn() override { return GetBool(N::kLayerOn); }
  void SetLayerOn(bool on) override { Put(N::kLayerOn, on); }
  bool Freeze() override { return GetBool(N::kFreeze); }
  void SetFreeze(bool frozen) override { Put(N::kFreeze, frozen); }
  bool Plottable() override { return GetBool(N::kPlottable); }
  void SetPlottable(bool plottable) override { Put(N::kPlottable, plottable); }
};

class ComView : public host::View, public ComObject {
 public:
  using ComObject::ComObject;
  std::string Name() override { return GetString(names::View::kName); }
};

class ComTextStyle : public host::TextStyle, public ComObject {
  using N = names::TextStyle;

 public:
  using ComObject::ComObject;
  std::string Name() override { return GetString(N::kName); }
  std::string FontFile() override { return GetString(N::kFontFile); }
  bool FontAvailable() override { return GetBool(N::kFontAvailable); }
};

class ComPlot : public host::Plot, public ComObject {
  using N = names::Plot;

 public:
  using ComObject::ComObject;
  void SetQuietErrorMode(bool quiet) override { Put(N::kQuietErrorMode, quiet); }
  void SetNumberOfCopies(std::int16_t copies) override { Put(N::kNumberOfCopies, copies); }
  void StartBatchMode(std::int16_t& count) override {
    Variant value(count);
    std::vector<Variant> args;
    args.push_back(Variant::RefTo(value));
    d_.Call(N::kStartBatchMode, std::move(args));
    count = value.AsInt16();
  }
  bool SheafworkProgress() override { return GetBool(N::kSheafworkProgress); }
  void SetSheafworkProgress(bool going) override { Put(N::kSheafworkProgress, going); }
  bool PlotToDevice(const std::optional<std::string>& device) override {
    std::vector<Variant> args;
    args.push_back(Optional(device));
    return d_.Call(N::kPlotToDevice, std::move(args)).AsBool();
  }
  bool PlotToFile(const std::string& fileName, const std::optional<std::string>& device) override {
    std::vector<Variant> args;
    args.emplace_back(std::string_view(fileName));
    args.push_back(Optional(device));
    return d_.Call(N::kPlotToFile, std::move(args)).AsBool();
  }

 private:
  static Variant Optional(const std::optional<std::string>& text) {
    return text ? Variant(std::string_view(*text)) : Variant::Missing();
  }
};

class ComPreferences : public host::Preferences, public ComObject {
  using N = names::Preferences;

 public:
  using ComObject::ComObject;
  std::string PrinterConfigPath() override { return GetString(N::kPrinterConfigPath); }
  std::string SupportPath() override { return GetString(N::kSupportPath); }
  std::string LogFilePath() override { return GetString(N::kLogFilePath); }
  void SetLogFilePath(const std::string& folder) override { PutString(N::kLogFilePath, folder); }
  bool LogFileOn() override { return GetBool(N::kLogFileOn); }
  void SetLogFileOn(bool on) override { Put(N::kLogFileOn, on); }
};

class ComState : public host::State, public ComObject {
 public:
  using ComObject::ComObject;
  bool IsQuiescent() override { return GetBool(names::State::kIsQuiescent); }
};

using ComLayouts = ComCollection<host::Layouts, host::Layout, ComLayout>;
using ComPlotConfigurations =
    ComCollection<host::PlotConfigurations, host::PlotConfiguration, ComPlotConfiguration>;
using ComLayers = ComCollection<host::Layers, host::Layer, ComLayer>;
using ComViews = ComCollection<host::Views, host::View, ComView>;
using ComTextStyles = ComCollection<host::TextStyles, host::TextStyle, ComTextStyle>;

// The server answers DISP_E_UNKNOWNNAME for a member it does not have.
bool IsUnknownMember(const host::Error& error) {
  return static_cast<HRESULT>(error.number()) == DISP_E_UNKNOWNNAME &&
         dynamic_cast<const host::HostGone*>(&error) == nullptr;
}

class ComDocument : public host::Document, public ComObject {
  using N = names::Document;

 public:
  using ComObject::ComObject;
  std::string FullName() override { return GetString(N::kFullName); }
  bool ReadOnly() override { return GetBool(N::kReadOnly); }
  void SaveAs(const std::string& fileName) override {
    std::vector<Variant> args;
    args.emplace_back(std::string_view(fileName));
    d_.Call(N::kSaveAs, std::move(args));
  }
  void Activate() override { d_.Call(N::kActivate); }
  void Close(bool saveChanges) override {
    std::vector<Variant> args;
    args.emplace_back(saveChanges);
    d_.Call(N::kClose, std::move(args));
  }
  host::SysVarValue GetVariable(const std::string& name) override {
    std::vector<Variant> args;
    args.emplace_back(std::string_view(name));
    return d_.Call(N::kGetVariable, std::move(args)).AsSysVar();
  }
  void SetVariable(const std::string& name, const host::SysVarValue& value) override {
    std::vector<Variant> args;
    args.emplace_back(std::string_view(name));
    args.emplace_back(value);
    d_.Call(N::kSetVariable, std::move(args));
  }
  std::int16_t ActiveSpace() override { return GetInt16(N::kActiveSpace); }
  void SetActiveSpace(std::int16_t space) override { Put(N::kActiveSpace, space); }
  std::shared_ptr<host::Layout> ActiveLayout() override {
    return std::make_shared<ComLayout>(d_.Get(N::kActiveLayout).AsDispatch());
  }
  void SetActiveLayout(const std::shared_ptr<host::Layout>& layout) override {
    d_.Put(N::kActiveLayout, Variant(ServerObjectOf(layout.get())));
  }
  std::shared_ptr<host::Layouts> GetLayouts() override { return Object<ComLayouts>(N::kLayouts); }
  std::shared_ptr<host::PlotConfigurations> GetPlotConfigurations() override {
    return Object<ComPlotConfigurations>(N::kPlotConfigurations);
  }
  std::shared_ptr<host::Layers> GetLayers() override { return Object<ComLayers>(N::kLayers); }
  std::shared_ptr<host::Views> GetViews() override { return Object<ComViews>(N::kViews); }
  std::shared_ptr<host::TextStyles> GetTextStyles() override {
    return Object<ComTextStyles>(N::kTextStyles);
  }
  std::shared_ptr<host::Plot> GetPlot() override { return Object<ComPlot>(N::kPlot); }
  void Regen(std::int16_t which) override {
    std::vector<Variant> args;
    args.emplace_back(which);
    d_.Call(N::kRegen, std::move(args));
  }
  std::vector<std::pair<std::string, std::int32_t>> UndrawnEntities() override {
    if (!hasUndrawn_) return {};
    Variant kinds;
    Variant counts;
    std::vector<Variant> args;
    args.push_back(Variant::RefTo(kinds));
    args.push_back(Variant::RefTo(counts));
    try {
      d_.Call(N::kUndrawnEntities, std::move(args));
    } catch (const host::Error& error) {
      if (!IsUnknownMember(error)) throw;
      hasUndrawn_ = false;
      return {};
    }
    if (kinds.raw().vt == VT_EMPTY) return {};
    const std::vector<std::string> names = kinds.AsStrings();
    const std::vector<double> numbers = counts.AsDoubles();
    std::vector<std::pair<std::string, std::int32_t>> undrawn;
    for (std::size_t i = 0; i < names.size() && i < numbers.size(); ++i) {
      undrawn.emplace_back(names[i], static_cast<std::int32_t>(numbers[i]));
    }
    return undrawn;
  }

 private:
  bool hasUndrawn_ = true;
};

class ComDocuments : public ComCollection<host::Documents, host::Document, ComDocument,
                                          names::Documents::kFirstIndex> {
 public:
  using ComCollection::ComCollection;
  std::shared_ptr<host::Document> Open(const std::string& fileName, bool readOnly) override {
    std::vector<Variant> args;
    args.emplace_back(std::string_view(fileName));
    args.emplace_back(readOnly);
    return std::make_shared<ComDocument>(
        d_.Call(names::Documents::kOpen, std::move(args)).AsDispatch());
  }
};

class ComApplication : public host::Application, public ComObject {
  using N = names::Application;

 public:
  using ComObject::ComObject;
  bool Visible() override { return GetBool(N::kVisible); }
  void SetVisible(bool visible) override { Put(N::kVisible, visible); }
  std::string Path() override { return GetString(N::kPath); }
  std::int32_t Width() override { return GetInt32(N::kWidth); }
  void SetWidth(std::int32_t width) override { Put(N::kWidth, width); }
  std::int32_t Height() override { return GetInt32(N::kHeight); }
  void SetHeight(std::int32_t height) override { Put(N::kHeight, height); }
  std::shared_ptr<host::Document> ActiveDocument() override {
    return Object<ComDocument>(N::kActiveDocument);
  }
  std::shared_ptr<host::Documents> GetDocuments() override {
    return Object<ComDocuments>(N::kDocuments);
  }
  std::shared_ptr<host::Preferences> GetPreferences() override {
    return Object<ComPreferences>(N::kPreferences);
  }
  std::shared_ptr<host::State> GetOrvaState() override {
    return std::make_shared<ComState>(d_.Call(N::kGetOrvaState).AsDispatch());
  }
  void Update() override { d_.Call(N::kUpdate); }
  void Quit() override { d_.Call(N::kQuit); }
};

}  // namespace

std::shared_ptr<host::Application> MakeComApplication(ComRef<IDispatch> server) {
  return std::make_shared<ComApplication>(std::move(server));
}

std::shared_ptr<host::Application> AttachComHost(std::string_view progId) {
  return MakeComApplication(AttachServer(progId));
}

}  // namespace sheafwork::com
