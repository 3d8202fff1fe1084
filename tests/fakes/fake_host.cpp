#include "fakes/fake_host.h"

#include <algorithm>
#include <charconv>
#include <new>
#include <stdexcept>
#include <tuple>
#include <type_traits>
#include <utility>

namespace sheafwork::testing {

namespace {

// Error numbers the fake raises on its own.
constexpr std::int32_t kBadIndex = -2145386476;
constexpr std::int32_t kUnknownVariable = -2145386493;
constexpr std::int32_t kClosedDocument = -2145386420;
constexpr std::int32_t kNoDocument = -2145386421;

std::string Arg(bool v) { return v ? "true" : "false"; }
std::string Arg(std::int16_t v) { return std::to_string(v); }
std::string Arg(std::int32_t v) { return std::to_string(v); }
std::string Arg(double v) {
  char buffer[32];
  auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, v);
  return ec == std::errc() ? std::string(buffer, end) : "?";
}
std::string Arg(const std::string& v) { return v; }
std::string Arg(const host::Point2& p) { return "(" + Arg(p.x) + ", " + Arg(p.y) + ")"; }
std::string Arg(const host::SysVarValue& v) { return host::FormatSysVar(v); }

template <typename First, typename... Rest>
std::string Args(const First& first, const Rest&... rest) {
  std::string text = Arg(first);
  ((text += ", " + Arg(rest)), ...);
  return text;
}

std::string BaseName(const std::string& path) {
  auto slash = path.find_last_of("/\\");
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// What a call to a server whose process has ended fails with.
constexpr std::int32_t kServerGone = -2147023174;  // 0x800706BA

void CheckIndex(std::int32_t index, std::size_t count) {
  if (index < 0 || static_cast<std::size_t>(index) >= count) {
    throw host::Error(kBadIndex, "Index hors limites: " + std::to_string(index));
  }
}

}  // namespace

// ---------------------------------------------------------------------------
// The plot settings of a layout or a page setup of an open document.

// How a setter takes a value of type T, as the host interface declares it.
template <typename T>
using SetterArg = std::conditional_t<std::is_same_v<T, std::string>, const std::string&, T>;

// The recorded getter and setter of one plot setting.
#define FAKE_PLOT_PROPERTY(Type, Name, field)                             \
  Type Name() override { return Get(#Name, &FakePlotSettings::field); }   \
  void Set##Name(SetterArg<Type> value) override {                        \
    Set("Set" #Name, &FakePlotSettings::field, static_cast<Type>(value)); \
  }

// An object at `index` of one of the document's lists; its calls are
// recorded under "Kind(name)".
class FakePart {
 public:
  FakePart(std::shared_ptr<FakeDocument> doc, std::int32_t index)
      : doc_(std::move(doc)), index_(index) {}

 protected:
  template <typename T>
  T& At(std::vector<T>& list) const {
    return list.at(static_cast<std::size_t>(index_));
  }
  void RecordAs(const std::string& kind, const std::string& name, const std::string& member,
                const std::string& args = {}) const {
    doc_->Record(kind + "(" + name + ")", member, args);
  }

  std::shared_ptr<FakeDocument> doc_;
  std::int32_t index_;
};

class FakePlotConfig : public host::Layout, public FakePart {
 public:
  enum class Kind { Layout, PageSetup };
  FakePlotConfig(std::shared_ptr<FakeDocument> doc, std::int32_t index, Kind kind)
      : FakePart(std::move(doc), index), kind_(kind) {}

  FakeLayoutData& Data() {
    return At(kind_ == Kind::Layout ? doc_->data.layouts : doc_->data.pageSetups);
  }
  FakePlotSettings& S() { return Data().settings; }
  std::int32_t Index() const { return index_; }
  FakeDocument& Doc() { return *doc_; }

  void Rec(const std::string& member, const std::string& args = {}) {
    RecordAs(kind_ == Kind::Layout ? "Layout" : "PlotConfiguration", Data().name, member, args);
  }
  template <typename T>
  T Get(const char* member, T FakePlotSettings::*field) {
    Rec(member);
    return S().*field;
  }
  template <typename T>
  void Set(const char* member, T FakePlotSettings::*field, const T& value) {
    Rec(member, Args(value));
    S().*field = value;
  }

  std::string Name() override { return Rec("Name"), Data().name; }
  bool ModelType() override { return Rec("ModelType"), Data().modelType; }
  FAKE_PLOT_PROPERTY(std::string, ConfigName, configName)
  FAKE_PLOT_PROPERTY(std::string, CanonicalMediaName, canonicalMediaName)
  FAKE_PLOT_PROPERTY(std::int16_t, PaperUnits, paperUnits)
  FAKE_PLOT_PROPERTY(std::int16_t, PlotRotation, plotRotation)
  FAKE_PLOT_PROPERTY(std::int16_t, PlotType, plotType)
  FAKE_PLOT_PROPERTY(std::string, ViewToPlot, viewToPlot)
  FAKE_PLOT_PROPERTY(bool, CenterPlot, centerPlot)
  FAKE_PLOT_PROPERTY(host::Point2, PlotOrigin, plotOrigin)
  FAKE_PLOT_PROPERTY(bool, UseStandardScale, useStandardScale)
  FAKE_PLOT_PROPERTY(std::int16_t, StandardScale, standardScale)
  FAKE_PLOT_PROPERTY(bool, ScaleLineweights, scaleLineweights)
  FAKE_PLOT_PROPERTY(bool, PlotWithLineweights, plotWithLineweights)
  FAKE_PLOT_PROPERTY(bool, PlotWithPlotStyles, plotWithPlotStyles)
  FAKE_PLOT_PROPERTY(std::string, StyleSheet, styleSheet)
  FAKE_PLOT_PROPERTY(bool, PlotHidden, plotHidden)
  std::vector<std::string> GetCanonicalMediaNames() override {
    return Get("GetCanonicalMediaNames", &FakePlotSettings::mediaNames);
  }
  std::vector<std::string> GetPlotStyleTableNames() override {
    Rec("GetPlotStyleTableNames");
    return doc_->Host().plotStyleTables;
  }
  void RefreshPlotDeviceInfo() override { Rec("RefreshPlotDeviceInfo"); }
  void GetWindowToPlot(host::Point2& lowerLeft, host::Point2& upperRight) override {
    Rec("GetWindowToPlot");
    lowerLeft = S().windowLowerLeft;
    upperRight = S().windowUpperRight;
  }
  void SetWindowToPlot(host::Point2 lowerLeft, host::Point2 upperRight) override {
    Rec("SetWindowToPlot", Args(lowerLeft, upperRight));
    S().windowLowerLeft = lowerLeft;
    S().windowUpperRight = upperRight;
  }
  void GetCustomScale(double& numerator, double& denominator) override {
    Rec("GetCustomScale");
    numerator = S().customNumerator;
    denominator = S().customDenominator;
  }
  void SetCustomScale(double numerator, double denominator) override {
    Rec("SetCustomScale", Args(numerator, denominator));
    S().customNumerator = numerator;
    S().customDenominator = denominator;
  }
  void CopyFrom(host::PlotConfiguration& source) override {
    auto* fake = dynamic_cast<FakePlotConfig*>(&source);
    Rec("CopyFrom", fake ? fake->Data().name : "?");
    if (!fake) throw std::logic_error("FakeHost: CopyFrom needs a fake plot configuration");
    S() = fake->S();
  }

 private:
  Kind kind_;
};

#undef FAKE_PLOT_PROPERTY

// ---------------------------------------------------------------------------
// Collections and small objects of a document.

// A list of the document's data, recorded under `kind`; its element at an
// index is made as `T(document, index, extra...)`.
template <typename Interface, typename T, typename List, typename... Extra>
class FakeCollection : public Interface {
 public:
  FakeCollection(std::shared_ptr<FakeDocument> doc, std::string kind, List FakeDrawing::*list,
                 Extra... extra)
      : doc_(std::move(doc)), kind_(std::move(kind)), list_(list), extra_(extra...) {}
  std::int32_t Count() override {
    doc_->Record(kind_, "Count");
    return static_cast<std::int32_t>((doc_->data.*list_).size());
  }
  decltype(std::declval<Interface&>().Item(0)) Item(std::int32_t index) override {
    doc_->Record(kind_, "Item", Args(index));
    CheckIndex(index, (doc_->data.*list_).size());
    return std::apply([&](Extra... e) { return std::make_shared<T>(doc_, index, e...); }, extra_);
  }

 private:
  std::shared_ptr<FakeDocument> doc_;
  std::string kind_;
  List FakeDrawing::*list_;
  std::tuple<Extra...> extra_;
};

// The document's collection `kind`, recorded as read from the document.
template <typename Interface, typename T, typename List, typename... Extra>
std::shared_ptr<Interface> Collection(const std::shared_ptr<FakeDocument>& doc,
                                      const std::string& kind, List FakeDrawing::*list,
                                      Extra... extra) {
  doc->Record("Document(" + doc->Tag() + ")", kind);
  return std::make_shared<FakeCollection<Interface, T, List, Extra...>>(doc, kind, list, extra...);
}

class FakeLayer : public host::Layer, public FakePart {
 public:
  using FakePart::FakePart;
  FakeLayerData& L() { return At(doc_->data.layers); }
  bool Flag(const char* member, bool FakeLayerData::*flag) {
    RecordAs("Layer", L().name, member);
    return L().*flag;
  }
  void SetFlag(const char* member, bool FakeLayerData::*flag, bool value) {
    RecordAs("Layer", L().name, member, Args(value));
    L().*flag = value;
  }
  std::string Name() override { return RecordAs("Layer", L().name, "Name"), L().name; }
  bool LayerOn() override { return Flag("LayerOn", &FakeLayerData::on); }
  void SetLayerOn(bool v) override { SetFlag("SetLayerOn", &FakeLayerData::on, v); }
  bool Freeze() override { return Flag("Freeze", &FakeLayerData::frozen); }
  void SetFreeze(bool v) override { SetFlag("SetFreeze", &FakeLayerData::frozen, v); }
  bool Plottable() override { return Flag("Plottable", &FakeLayerData::plottable); }
  void SetPlottable(bool v) override { SetFlag("SetPlottable", &FakeLayerData::plottable, v); }
};

class FakeView : public host::View, public FakePart {
 public:
  using FakePart::FakePart;
  std::string Name() override {
    const std::string& name = At(doc_->data.views);
    return RecordAs("View", name, "Name"), name;
  }
};

class FakeTextStyle : public host::TextStyle, public FakePart {
 public:
  using FakePart::FakePart;
  FakeTextStyleData& T(const char* member) {
    FakeTextStyleData& style = At(doc_->data.textStyles);
    RecordAs("TextStyle", style.name, member);
    return style;
  }
  std::string Name() override { return T("Name").name; }
  std::string FontFile() override { return T("FontFile").fontFile; }
  bool FontAvailable() override { return T("FontAvailable").available; }
};

// The document's plot object (its index is unused).
class FakePlot : public host::Plot, public FakePart {
 public:
  using FakePart::FakePart;
  void Rec(const std::string& member, const std::string& args = {}) {
    RecordAs("Plot", doc_->Tag(), member, args);
  }
  void SetQuietErrorMode(bool v) override { Rec("SetQuietErrorMode", Args(v)); }
  void SetNumberOfCopies(std::int16_t v) override { Rec("SetNumberOfCopies", Args(v)); }
  void StartBatchMode(std::int16_t& count) override { Rec("StartBatchMode", Args(count)); }
  bool SheafworkProgress() override {
    FakeHost& host = doc_->Host();
    Rec("SheafworkProgress");
    ++host.polls_;
    return host.cancelAtPoll_ == 0 || host.polls_ < host.cancelAtPoll_;
  }
  void SetSheafworkProgress(bool v) override { Rec("SetSheafworkProgress", Args(v)); }
  bool PlotToDevice(const std::optional<std::string>& device) override {
    Rec("PlotToDevice", device.value_or(""));
    return Plotted(device, std::nullopt);
  }
  bool PlotToFile(const std::string& fileName, const std::optional<std::string>& device) override {
    Rec("PlotToFile", device ? Args(fileName, *device) : Args(fileName));
    return Plotted(device, fileName);
  }

 private:
  bool Plotted(const std::optional<std::string>& device, const std::optional<std::string>& file) {
    FakeHost& host = doc_->Host();
    const auto& layout = doc_->data.layouts.at(static_cast<std::size_t>(doc_->data.activeLayout));
    host.plots_.push_back({doc_->data.path, layout.name, device, file, layout.settings});
    return host.plotResult_;
  }
};

// ---------------------------------------------------------------------------
// The document.

FakeDocument::FakeDocument(FakeHost& host, const FakeDrawing& drawing)
    : data(drawing), host_(host) {}

std::string FakeDocument::Tag() const { return BaseName(data.path); }

void FakeDocument::Record(const std::string& object, const std::string& member,
                          const std::string& args) {
  host_.Record(object, member, args);
  if (closed) throw host::Error(kClosedDocument, "Le document " + Tag() + " est fermé");
}

void FakeDocument::Rec(const std::string& member, const std::string& args) {
  Record("Document(" + Tag() + ")", member, args);
}

std::string FakeDocument::FullName() { return Rec("FullName"), data.path; }
bool FakeDocument::ReadOnly() { return Rec("ReadOnly"), data.readOnly; }
void FakeDocument::SaveAs(const std::string& fileName) {
  Rec("SaveAs", Args(fileName));
  savedAs.push_back(fileName);
}
void FakeDocument::Activate() {
  Rec("Activate");
  host_.active_ = shared_from_this();
}
void FakeDocument::Close(bool saveChanges) {
  Rec("Close", Args(saveChanges));
  closed = true;
  auto self = shared_from_this();
  std::erase(host_.open_, self);
  if (host_.active_ == self) host_.active_ = host_.open_.empty() ? nullptr : host_.open_.front();
}
host::SysVarValue FakeDocument::GetVariable(const std::string& name) {
  return Rec("GetVariable", Args(name)), Variable(name);
}
host::SysVarValue FakeDocument::Variable(const std::string& name) const {
  if (auto own = variables.find(name); own != variables.end()) return own->second;
  if (auto shared = host_.variables.find(name); shared != host_.variables.end()) {
    return shared->second;
  }
  throw host::Error(kUnknownVariable, "Variable système inconnue: " + name);
}
void FakeDocument::SetVariable(const std::string& name, const host::SysVarValue& value) {
  Rec("SetVariable", Args(name, value));
  variables[name] = value;
}
std::int16_t FakeDocument::ActiveSpace() { return Rec("ActiveSpace"), data.activeSpace; }
void FakeDocument::SetActiveSpace(std::int16_t space) {
  Rec("SetActiveSpace", Args(space));
  if (space == data.activeSpace) return;
  data.activeSpace = space;
  if (space == 1) {
    data.activeLayout = 0;
  } else if (static_cast<std::size_t>(data.lastPaperLayout) < data.layouts.size()) {
    data.activeLayout = data.lastPaperLayout;
  }
}
std::shared_ptr<host::Layout> FakeDocument::ActiveLayout() {
  Rec("ActiveLayout");
  return std::make_shared<FakePlotConfig>(shared_from_this(), data.activeLayout,
                                          FakePlotConfig::Kind::Layout);
}
void FakeDocument::SetActiveLayout(const std::shared_ptr<host::Layout>& layout) {
  auto* fake = dynamic_cast<FakePlotConfig*>(layout.get());
  Rec("SetActiveLayout", fake ? fake->Data().name : "?");
  if (!fake || &fake->Doc() != this) {
    throw host::Error(kBadIndex, "La présentation n'appartient pas au document");
  }
  data.activeLayout = fake->Index();
  data.activeSpace = data.activeLayout == 0 ? 1 : 0;
  if (data.activeLayout > 0) data.lastPaperLayout = data.activeLayout;
}
std::shared_ptr<host::Layouts> FakeDocument::GetLayouts() {
  return Collection<host::Layouts, FakePlotConfig>(
      shared_from_this(), "Layouts", &FakeDrawing::layouts, FakePlotConfig::Kind::Layout);
}
std::shared_ptr<host::PlotConfigurations> FakeDocument::GetPlotConfigurations() {
  return Collection<host::PlotConfigurations, FakePlotConfig>(
      shared_from_this(), "PlotConfigurations", &FakeDrawing::pageSetups,
      FakePlotConfig::Kind::PageSetup);
}
std::shared_ptr<host::Layers> FakeDocument::GetLayers() {
  return Collection<host::Layers, FakeLayer>(shared_from_this(), "Layers", &FakeDrawing::layers);
}
std::shared_ptr<host::Views> FakeDocument::GetViews() {
  return Collection<host::Views, FakeView>(shared_from_this(), "Views", &FakeDrawing::views);
}
std::shared_ptr<host::TextStyles> FakeDocument::GetTextStyles() {
  return Collection<host::TextStyles, FakeTextStyle>(shared_from_this(), "TextStyles",
                                                     &FakeDrawing::textStyles);
}
std::shared_ptr<host::Plot> FakeDocument::GetPlot() {
  return Rec("Plot"), std::make_shared<FakePlot>(shared_from_this(), 0);
}
void FakeDocument::Regen(std::int16_t which) { Rec("Regen", Args(which)); }

// ---------------------------------------------------------------------------
// The application and its documents.

// An object of the host itself; its calls are recorded under `kind`.
class HostPart {
 public:
  HostPart(FakeHost& host, const char* kind) : host_(host), kind_(kind) {}

 protected:
  void Rec(const std::string& member, const std::string& args = {}) {
    host_.Record(kind_, member, args);
  }
  /// Records the write of `value` to the host's `field`, then makes it.
  template <typename T>
  void Put(const char* member, T& field, const T& value) {
    Rec(member, Args(value));
    field = value;
  }

  FakeHost& host_;
  const char* kind_;
};

class FakePreferences : public host::Preferences, HostPart {
 public:
  explicit FakePreferences(FakeHost& host) : HostPart(host, "Preferences") {}
  std::string PrinterConfigPath() override {
    return Rec("PrinterConfigPath"), host_.printerConfigPath;
  }
  std::string SupportPath() override { return Rec("SupportPath"), host_.supportPath; }
  std::string LogFilePath() override { return Rec("LogFilePath"), host_.logFilePath; }
  void SetLogFilePath(const std::string& v) override {
    Put("SetLogFilePath", host_.logFilePath, v);
  }
  bool LogFileOn() override { return Rec("LogFileOn"), host_.logFileOn; }
  void SetLogFileOn(bool v) override { Put("SetLogFileOn", host_.logFileOn, v); }
};

class FakeState : public host::State, HostPart {
 public:
  explicit FakeState(FakeHost& host) : HostPart(host, "State") {}
  bool IsQuiescent() override { return Rec("IsQuiescent"), true; }
};

class FakeDocuments : public host::Documents, HostPart {
 public:
  explicit FakeDocuments(FakeHost& host) : HostPart(host, "Documents") {}
  std::int32_t Count() override {
    Rec("Count");
    return static_cast<std::int32_t>(host_.open_.size());
  }
  std::shared_ptr<host::Document> Item(std::int32_t index) override {
    Rec("Item", Args(index));
    CheckIndex(index, host_.open_.size());
    return host_.open_[static_cast<std::size_t>(index)];
  }
  std::shared_ptr<host::Document> Open(const std::string& fileName, bool readOnly) override {
    Rec("Open", Args(fileName, readOnly));
    auto found = std::find_if(host_.drawings_.begin(), host_.drawings_.end(),
                              [&](const auto& d) { return d->path == fileName; });
    if (found == host_.drawings_.end()) {
      throw host::Error(host::kFileNotFound, "Fichier introuvable: " + fileName);
    }
    if ((*found)->openError) throw *(*found)->openError;
    // In single-document mode the new drawing replaces the only open one.
    if (host_.open_.size() == 1 && host_.active_ &&
        host::SysVarAsInteger(host_.active_->Variable("SDI")) > 0) {
      host_.active_->closed = true;
      host_.open_.clear();
      host_.active_.reset();
    }
    auto doc = std::make_shared<FakeDocument>(host_, **found);
    doc->data.readOnly = doc->data.readOnly || readOnly;
    host_.open_.push_back(doc);
    if (!host_.active_) host_.active_ = doc;
    host_.lastOpened_[fileName] = doc;
    return doc;
  }
};

class FakeApplication : public host::Application, HostPart {
 public:
  explicit FakeApplication(FakeHost& host) : HostPart(host, "Application") {}
  bool Visible() override { return Rec("Visible"), host_.visible; }
  void SetVisible(bool v) override { Put("SetVisible", host_.visible, v); }
  std::string Path() override { return Rec("Path"), host_.path; }
  std::int32_t Width() override { return Rec("Width"), host_.width; }
  void SetWidth(std::int32_t v) override { Put("SetWidth", host_.width, v); }
  std::int32_t Height() override { return Rec("Height"), host_.height; }
  void SetHeight(std::int32_t v) override { Put("SetHeight", host_.height, v); }
  std::shared_ptr<host::Document> ActiveDocument() override {
    Rec("ActiveDocument");
    if (!host_.active_) throw host::Error(kNoDocument, "Aucun document actif");
    return host_.active_;
  }
  std::shared_ptr<host::Documents> GetDocuments() override {
    return Rec("Documents"), std::make_shared<FakeDocuments>(host_);
  }
  std::shared_ptr<host::Preferences> GetPreferences() override {
    return Rec("Preferences"), std::make_shared<FakePreferences>(host_);
  }
  std::shared_ptr<host::State> GetOrvaState() override {
    return Rec("GetOrvaState"), std::make_shared<FakeState>(host_);
  }
  void Update() override { Rec("Update"); }
  void Quit() override {
    Rec("Quit");
    host_.quit_ = true;
  }
};

// ---------------------------------------------------------------------------
// The host.

FakeHost::FakeHost()
    : variables{{"SDI", std::int16_t{0}},         {"EXPERT", std::int16_t{0}},
                {"PROXYNOTICE", std::int16_t{1}}, {"XREFCTL", std::int16_t{0}},
                {"FILEDIA", std::int16_t{1}},     {"CMDECHO", std::int16_t{0}},
                {"CMDDIA", std::int16_t{1}},      {"SHPNAME", std::string()},
                {"REGENMODE", std::int16_t{1}},   {"LOGFILENAME", std::string("orvane.log")}} {
  FakeDrawing initial;
  initial.path = "Dessin1.dwg";
  initial_ = std::make_shared<FakeDocument>(*this, initial);
  open_.push_back(initial_);
  active_ = initial_;
  app_ = std::make_shared<FakeApplication>(*this);
}

FakeHost::~FakeHost() = default;

FakeDrawing& FakeHost::AddDrawing(const std::string& name) {
  return AddDrawingAt(folder_.Write(name, ""));
}

FakeDrawing& FakeHost::AddDrawingAt(const std::string& path) {
  drawings_.push_back(std::make_unique<FakeDrawing>());
  drawings_.back()->path = path;
  return *drawings_.back();
}

FakeDrawing& FakeHost::Drawing(const std::string& path) {
  for (auto& drawing : drawings_) {
    if (drawing->path == path) return *drawing;
  }
  throw std::out_of_range("FakeHost: no drawing " + path);
}

std::shared_ptr<host::Application> FakeHost::App() { return app_; }

FakeDocument* FakeHost::LastOpened(const std::string& path) {
  auto found = lastOpened_.find(path);
  return found == lastOpened_.end() ? nullptr : found->second.get();
}

std::vector<std::string> FakeHost::OpenDocuments() const {
  std::vector<std::string> names;
  for (const auto& doc : open_) names.push_back((doc == active_ ? "*" : "") + doc->data.path);
  return names;
}

void FakeHost::FailOn(const std::string& rule, host::Error error, int afterSuccesses) {
  failures_.push_back({rule, std::move(error), afterSuccesses});
}

void FakeHost::RunOutOfMemoryOn(const std::string& rule) {
  failures_.push_back({rule, host::Error(0, {}), 0, true, false});
}

void FakeHost::GoneOn(const std::string& rule, int afterSuccesses) {
  failures_.push_back(
      {rule, host::Error(kServerGone, "Serveur arrêté"), afterSuccesses, false, true});
}

void FakeHost::CancelAtPoll(int poll) { cancelAtPoll_ = poll; }

std::vector<std::string> FakeHost::Calls(std::string_view filter) const {
  std::vector<std::string> calls;
  for (const auto& call : calls_) {
    if (call.find(filter) != std::string::npos) calls.push_back(call);
  }
  return calls;
}

void FakeHost::Record(const std::string& object, const std::string& member,
                      const std::string& args) {
  const std::string key = object + "." + member;
  const std::string call = key + "(" + args + ")";
  calls_.push_back(call);
  if (gone_) throw host::HostGone(kServerGone, "Serveur arrêté");
  for (auto& failure : failures_) {
    const bool matches = failure.rule == key || failure.rule == call ||
                         (key.size() > failure.rule.size() && key.ends_with("." + failure.rule));
    if (!matches) continue;
    if (failure.remaining > 0) {
      --failure.remaining;
      continue;
    }
    if (failure.outOfMemory) throw std::bad_alloc();
    if (failure.gone) {
      gone_ = true;
      throw host::HostGone(failure.error.number(), failure.error.description());
    }
    throw failure.error;
  }
}

}  // namespace sheafwork::testing
