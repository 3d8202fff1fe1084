#include "comserver/served_host.h"

#include <sstream>
#include <string>
#include <utility>

#include "com/member_names.h"
#include "comserver/served_object.h"
#include "host/error.h"

namespace sheafwork::comserver {

namespace {

using com::Variant;
namespace names = com::names;

constexpr std::int32_t kInvalidCall = 5;

Variant Text(const std::string& text) { return Variant(std::string_view(text)); }

host::Point2 PointOf(const Variant& value) {
  const std::vector<double> xy = value.AsDoubles();
  if (xy.size() < 2) throw host::Error(13, "Type incompatible: point attendu");
  return {xy[0], xy[1]};
}

Variant PointValue(host::Point2 p) { return Variant::Doubles({p.x, p.y}); }

// A property read by `get` (returning a Variant) and written by `set`
// (taking the put value).
template <typename Get, typename Set>
MemberHandler Property(Get get, Set set) {
  return [get, set](ServedCall& call) {
    if (call.IsPut()) {
      set(call.PutValue());
    } else {
      call.result = get();
    }
  };
}

template <typename Get>
MemberHandler ReadOnly(Get get) {
  return [get](ServedCall& call) {
    if (call.IsPut()) throw host::Error(383, "Propriété en lecture seule");
    call.result = get();
  };
}

// A getter's value as served, and the put value as the setter takes it.
Variant Served(bool value) { return Variant(value); }
Variant Served(std::int16_t value) { return Variant(value); }
Variant Served(std::int32_t value) { return Variant(value); }
Variant Served(double value) { return Variant(value); }
Variant Served(const std::string& text) { return Text(text); }
Variant Served(host::Point2 p) { return PointValue(p); }
void Take(const Variant& v, bool& out) { out = v.AsBool(); }
void Take(const Variant& v, std::int16_t& out) { out = v.AsInt16(); }
void Take(const Variant& v, std::int32_t& out) { out = v.AsInt32(); }
void Take(const Variant& v, std::string& out) { out = v.AsString(); }
void Take(const Variant& v, host::Point2& out) { out = PointOf(v); }

// The property served by the object's getter and setter.
template <typename O, typename T, typename Arg>
MemberHandler Property(std::shared_ptr<O> o, T (O::*get)(), void (O::*set)(Arg)) {
  return Property([o, get] { return Served(((*o).*get)()); },
                  [o, set](const Variant& v) {
                    std::decay_t<Arg> value;
                    Take(v, value);
                    ((*o).*set)(value);
                  });
}

// A member that gives two values back through its arguments by reference.
template <typename O, typename T>
MemberHandler TwoOut(std::shared_ptr<O> o, void (O::*get)(T&, T&)) {
  return [o, get](ServedCall& call) {
    T first{};
    T second{};
    ((*o).*get)(first, second);
    call.SetOut(0, Served(first));
    call.SetOut(1, Served(second));
  };
}

com::ComRef<IDispatch> Serve(std::shared_ptr<host::PlotConfiguration> o);
com::ComRef<IDispatch> Serve(std::shared_ptr<host::Layout> o);
com::ComRef<IDispatch> Serve(std::shared_ptr<host::Layer> o);
com::ComRef<IDispatch> Serve(std::shared_ptr<host::View> o);
com::ComRef<IDispatch> Serve(std::shared_ptr<host::TextStyle> o);
com::ComRef<IDispatch> Serve(std::shared_ptr<host::Document> o);

template <typename T>
std::shared_ptr<T> TargetArg(const ServedCall& call, std::size_t i) {
  auto target = std::static_pointer_cast<host::PlotConfiguration>(
      ServedObject::TargetOf(call.Arg(i).AsDispatch().get()));
  if (!target) throw host::Error(13, "Type incompatible: objet d'un autre serveur");
  auto typed = std::dynamic_pointer_cast<T>(target);
  if (!typed) throw host::Error(13, "Type incompatible");
  return typed;
}

com::ComRef<IDispatch> Serve(std::shared_ptr<host::PlotConfiguration> o) {
  using N = names::PlotConfiguration;
  using I = host::PlotConfiguration;
  MemberTable m = {
      {N::kName, ReadOnly([o] { return Text(o->Name()); })},
      {N::kModelType, ReadOnly([o] { return Variant(o->ModelType()); })},
      {N::kConfigName, Property(o, &I::ConfigName, &I::SetConfigName)},
      {N::kCanonicalMediaName, Property(o, &I::CanonicalMediaName, &I::SetCanonicalMediaName)},
      {N::kGetCanonicalMediaNames,
       [o](ServedCall& call) { call.result = Variant::Strings(o->GetCanonicalMediaNames()); }},
      {N::kRefreshPlotDeviceInfo, [o](ServedCall&) { o->RefreshPlotDeviceInfo(); }},
      {N::kPaperUnits, Property(o, &I::PaperUnits, &I::SetPaperUnits)},
      {N::kPlotRotation, Property(o, &I::PlotRotation, &I::SetPlotRotation)},
      {N::kPlotType, Property(o, &I::PlotType, &I::SetPlotType)},
      {N::kViewToPlot, Property(o, &I::ViewToPlot, &I::SetViewToPlot)},
      {N::kGetWindowToPlot, TwoOut(o, &I::GetWindowToPlot)},
      {N::kSetWindowToPlot,
       [o](ServedCall& call) { o->SetWindowToPlot(PointOf(call.Arg(0)), PointOf(call.Arg(1))); }},
      {N::kCenterPlot, Property(o, &I::CenterPlot, &I::SetCenterPlot)},
      {N::kPlotOrigin, Property(o, &I::PlotOrigin, &I::SetPlotOrigin)},
      {N::kUseStandardScale, Property(o, &I::UseStandardScale, &I::SetUseStandardScale)},
      {N::kStandardScale, Property(o, &I::StandardScale, &I::SetStandardScale)},
      {N::kGetCustomScale, TwoOut(o, &I::GetCustomScale)},
      {N::kSetCustomScale,
       [o](ServedCall& call) {
         o->SetCustomScale(call.Arg(0).AsDouble(), call.Arg(1).AsDouble());
       }},
      {N::kScaleLineweights, Property(o, &I::ScaleLineweights, &I::SetScaleLineweights)},
      {N::kPlotWithLineweights, Property(o, &I::PlotWithLineweights, &I::SetPlotWithLineweights)},
      {N::kPlotWithPlotStyles, Property(o, &I::PlotWithPlotStyles, &I::SetPlotWithPlotStyles)},
      {N::kStyleSheet, Property(o, &I::StyleSheet, &I::SetStyleSheet)},
      {N::kGetPlotStyleTableNames,
       [o](ServedCall& call) { call.result = Variant::Strings(o->GetPlotStyleTableNames()); }},
      {N::kPlotHidden, Property(o, &I::PlotHidden, &I::SetPlotHidden)},
      {N::kCopyFrom,
       [o](ServedCall& call) { o->CopyFrom(*TargetArg<host::PlotConfiguration>(call, 0)); }},
  };
  return ServedObject::Make(o, std::move(m));
}

// Count and Item of a collection, Item from `firstIndex`.
template <typename Collection>
com::ComRef<IDispatch> ServeCollection(std::shared_ptr<Collection> c, int firstIndex = 0,
                                       MemberTable more = {}) {
  more.emplace_back(names::Collection::kCount, ReadOnly([c] { return Variant(c->Count()); }));
  more.emplace_back(names::Collection::kItem, [c, firstIndex](ServedCall& call) {
    call.result = Variant(Serve(c->Item(call.Arg(0).AsInt32() - firstIndex)));
  });
  return ServedObject::Make(c, std::move(more));
}

com::ComRef<IDispatch> Serve(std::shared_ptr<host::Layer> o) {
  using N = names::Layer;
  using I = host::Layer;
  return ServedObject::Make(o, {
                                   {N::kName, ReadOnly([o] { return Text(o->Name()); })},
                                   {N::kLayerOn, Property(o, &I::LayerOn, &I::SetLayerOn)},
                                   {N::kFreeze, Property(o, &I::Freeze, &I::SetFreeze)},
                                   {N::kPlottable, Property(o, &I::Plottable, &I::SetPlottable)},
                               });
}

com::ComRef<IDispatch> Serve(std::shared_ptr<host::View> o) {
  return ServedObject::Make(o, {{names::View::kName, ReadOnly([o] { return Text(o->Name()); })}});
}

com::ComRef<IDispatch> Serve(std::shared_ptr<host::TextStyle> o) {
  using N = names::TextStyle;
  return ServedObject::Make(
      o, {
             {N::kName, ReadOnly([o] { return Text(o->Name()); })},
             {N::kFontFile, ReadOnly([o] { return Text(o->FontFile()); })},
             {N::kFontAvailable, ReadOnly([o] { return Variant(o->FontAvailable()); })},
         });
}

com::ComRef<IDispatch> ServePlot(std::shared_ptr<host::Plot> o) {
  using N = names::Plot;
  using I = host::Plot;
  const auto optional = [](const ServedCall& call, std::size_t i) {
    return call.Has(i) ? std::optional<std::string>(call.Arg(i).AsString()) : std::nullopt;
  };
  const auto writeOnly = [](auto set) {
    return Property([]() -> Variant { throw host::Error(394, "Propriété en écriture seule"); },
                    set);
  };
  return ServedObject::Make(
      o, {
             {N::kQuietErrorMode,
              writeOnly([o](const Variant& v) { o->SetQuietErrorMode(v.AsBool()); })},
             {N::kNumberOfCopies,
              writeOnly([o](const Variant& v) { o->SetNumberOfCopies(v.AsInt16()); })},
             {N::kStartBatchMode,
              [o](ServedCall& call) {
                std::int16_t count = call.Arg(0).AsInt16();
                o->StartBatchMode(count);
                call.SetOut(0, Variant(count));
              }},
             {N::kSheafworkProgress, Property(o, &I::SheafworkProgress, &I::SetSheafworkProgress)},
             {N::kPlotToDevice,
              [o, optional](ServedCall& call) {
                call.result = Variant(o->PlotToDevice(optional(call, 0)));
              }},
             {N::kPlotToFile,
              [o, optional](ServedCall& call) {
                call.result = Variant(o->PlotToFile(call.Arg(0).AsString(), optional(call, 1)));
              }},
         });
}

com::ComRef<IDispatch> ServePreferences(std::shared_ptr<host::Preferences> o) {
  using N = names::Preferences;
  using I = host::Preferences;
  return ServedObject::Make(
      o, {
             {N::kPrinterConfigPath, ReadOnly([o] { return Text(o->PrinterConfigPath()); })},
             {N::kSupportPath, ReadOnly([o] { return Text(o->SupportPath()); })},
             {N::kLogFilePath, Property(o, &I::LogFilePath, &I::SetLogFilePath)},
             {N::kLogFileOn, Property(o, &I::LogFileOn, &I::SetLogFileOn)},
         });
}

com::ComRef<IDispatch> Serve(std::shared_ptr<host::Document> o) {
  using N = names::Document;
  using I = host::Document;
  MemberTable m = {
      {N::kFullName, ReadOnly([o] { return Text(o->FullName()); })},
      {N::kReadOnly, ReadOnly([o] { return Variant(o->ReadOnly()); })},
      {N::kSaveAs, [o](ServedCall& call) { o->SaveAs(call.Arg(0).AsString()); }},
      {N::kActivate, [o](ServedCall&) { o->Activate(); }},
      {N::kClose, [o](ServedCall& call) { o->Close(call.Has(0) && call.Arg(0).AsBool()); }},
      {N::kGetVariable,
       [o](ServedCall& call) { call.result = Variant(o->GetVariable(call.Arg(0).AsString())); }},
      {N::kSetVariable,
       [o](ServedCall& call) { o->SetVariable(call.Arg(0).AsString(), call.Arg(1).AsSysVar()); }},
      {N::kActiveSpace, Property(o, &I::ActiveSpace, &I::SetActiveSpace)},
      {N::kActiveLayout,
       [o](ServedCall& call) {
         if (call.IsPut()) {
           o->SetActiveLayout(TargetArg<host::Layout>(call, call.Count() - 1));
         } else {
           call.result =
               Variant(Serve(std::shared_ptr<host::PlotConfiguration>(o->ActiveLayout())));
         }
       }},
      {N::kLayouts, ReadOnly([o] { return Variant(ServeCollection(o->GetLayouts())); })},
      {N::kPlotConfigurations,
       ReadOnly([o] { return Variant(ServeCollection(o->GetPlotConfigurations())); })},
      {N::kLayers, ReadOnly([o] { return Variant(ServeCollection(o->GetLayers())); })},
      {N::kViews, ReadOnly([o] { return Variant(ServeCollection(o->GetViews())); })},
      {N::kTextStyles, ReadOnly([o] { return Variant(ServeCollection(o->GetTextStyles())); })},
      {N::kPlot, ReadOnly([o] { return Variant(ServePlot(o->GetPlot())); })},
      {N::kRegen, [o](ServedCall& call) { o->Regen(call.Arg(0).AsInt16()); }},
      {N::kUndrawnEntities,
       [o](ServedCall& call) {
         std::vector<std::string> kinds;
         std::vector<double> counts;
         for (const auto& [kind, count] : o->UndrawnEntities()) {
           kinds.push_back(kind);
           counts.push_back(count);
         }
         call.SetOut(0, Variant::Strings(kinds));
         call.SetOut(1, Variant::Doubles(counts));
       }},
  };
  return ServedObject::Make(o, std::move(m));
}

com::ComRef<IDispatch> Serve(std::shared_ptr<host::Layout> o) {
  return Serve(std::shared_ptr<host::PlotConfiguration>(std::move(o)));
}

com::ComRef<IDispatch> ServeDocuments(std::shared_ptr<host::Documents> o) {
  MemberTable open = {{names::Documents::kOpen, [o](ServedCall& call) {
                         call.result = Variant(Serve(
                             o->Open(call.Arg(0).AsString(), call.Has(1) && call.Arg(1).AsBool())));
                       }}};
  return ServeCollection(o, names::Documents::kFirstIndex, std::move(open));
}

}  // namespace

com::ComRef<IDispatch> ServeApplication(std::shared_ptr<host::Application> o, ServerHooks hooks) {
  using N = names::Application;
  using I = host::Application;
  MemberTable m = {
      {N::kVisible, Property(o, &I::Visible, &I::SetVisible)},
      {N::kPath, ReadOnly([o] { return Text(o->Path()); })},
      {N::kWidth, Property(o, &I::Width, &I::SetWidth)},
      {N::kHeight, Property(o, &I::Height, &I::SetHeight)},
      {N::kActiveDocument, ReadOnly([o] { return Variant(Serve(o->ActiveDocument())); })},
      {N::kDocuments, ReadOnly([o] { return Variant(ServeDocuments(o->GetDocuments())); })},
      {N::kPreferences, ReadOnly([o] { return Variant(ServePreferences(o->GetPreferences())); })},
      {N::kGetOrvaState,
       [o](ServedCall& call) {
         auto state = o->GetOrvaState();
         call.result = Variant(ServedObject::Make(
             state, {{names::State::kIsQuiescent,
                      ReadOnly([state] { return Variant(state->IsQuiescent()); })}}));
       }},
      {N::kUpdate, [o](ServedCall&) { o->Update(); }},
      {N::kQuit,
       [o, quit = hooks.quit](ServedCall&) {
         o->Quit();
         if (quit) quit();
       }},
      {"TestHostKind", ReadOnly([kind = hooks.kind] { return Text(kind); })},
      {"TestControl",
       [configure = hooks.configure](ServedCall& call) {
         std::istringstream lines(call.Arg(0).AsString());
         for (std::string line; std::getline(lines, line);) {
           if (!line.empty() && !AddFaultRule(line) && !(configure && configure(line))) {
             throw host::Error(kInvalidCall, "Ligne de contrôle inconnue : " + line);
           }
         }
       }},
  };
  return ServedObject::Make(o, std::move(m));
}

}  // namespace sheafwork::comserver
