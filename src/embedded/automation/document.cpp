// An open document and its collections.

#include <filesystem>
#include <fstream>
#include <functional>
#include <system_error>

#include "embedded/automation/objects.h"
#include "embedded/automation/plot_configuration.h"
#include "embedded/automation/variables.h"
#include "embedded/model/undrawn.h"
#include "embedded/render/shape_font.h"
#include "log/wide_path.h"
#include "text/strings.h"

namespace sheafwork::embedded {

namespace fs = std::filesystem;
namespace msg = host_messages;

namespace {

/// What every object of a document holds.
struct DocumentHandle {
  std::shared_ptr<HostCore> core;
  std::shared_ptr<DocumentState> doc;

  template <typename Body>
  auto operator()(Body&& body) const -> decltype(body()) {
    return Guarded(*core, *doc, std::forward<Body>(body));
  }
};

// A minimal DXF file that any reader accepts: a header and nothing else.
constexpr const char* kEmptyDxf =
    "  0\r\nSECTION\r\n  2\r\nHEADER\r\n  9\r\n$ACADVER\r\n  1\r\nAC1009\r\n  0\r\nENDSEC\r\n"
    "  0\r\nSECTION\r\n  2\r\nENTITIES\r\n  0\r\nENDSEC\r\n  0\r\nEOF\r\n";

class LayerObject : public host::Layer {
 public:
  LayerObject(DocumentHandle handle, std::size_t index) : h_(std::move(handle)), index_(index) {}
  std::string Name() override {
    return h_([&] { return Get().name; });
  }
  bool LayerOn() override {
    return h_([&] { return Get().on; });
  }
  void SetLayerOn(bool on) override {
    h_([&] { Get().on = on; });
  }
  bool Freeze() override {
    return h_([&] { return Get().frozen; });
  }
  void SetFreeze(bool frozen) override {
    h_([&] { Get().frozen = frozen; });
  }
  bool Plottable() override {
    return h_([&] { return Get().plottable; });
  }
  void SetPlottable(bool plottable) override {
    h_([&] { Get().plottable = plottable; });
  }

 private:
  embedded::Layer& Get() { return h_.doc->drawing.layers.at(index_); }
  DocumentHandle h_;
  std::size_t index_;
};

class ViewObject : public host::View {
 public:
  ViewObject(DocumentHandle handle, std::size_t index) : h_(std::move(handle)), index_(index) {}
  std::string Name() override {
    return h_([&] { return h_.doc->drawing.views.at(index_).name; });
  }

 private:
  DocumentHandle h_;
  std::size_t index_;
};

class TextStyleObject : public host::TextStyle {
 public:
  TextStyleObject(DocumentHandle handle, std::size_t index)
      : h_(std::move(handle)), index_(index) {}
  std::string Name() override {
    return h_([&] { return h_.doc->drawing.textStyles.at(index_).name; });
  }
  std::string FontFile() override {
    return h_([&] { return h_.doc->drawing.textStyles.at(index_).fontFile; });
  }
  // Our stroke font stands in for the standard shape fonts; other shape
  // fonts count when found along the support path as the plot finds them
  // (any letter case, ".shx" added to a name without extension).
  bool FontAvailable() override {
    return h_([&] {
      const std::string& file = h_.doc->drawing.textStyles.at(index_).fontFile;
      if (IsStandardShapeFont(file)) return true;
      if (EndsWithIgnoreCase(TrimSpaces(file), ".ttf")) return false;
      return !FindShapeFontFile(file, h_.core->supportPath).empty();
    });
  }

 private:
  DocumentHandle h_;
  std::size_t index_;
};

/// A collection over a list of indexes fixed when it is handed out.
template <typename Interface, typename Element>
class IndexedCollection : public Interface {
 public:
  using Make = std::function<std::shared_ptr<Element>(std::size_t)>;
  IndexedCollection(DocumentHandle handle, std::vector<std::size_t> indexes, Make make)
      : h_(std::move(handle)), indexes_(std::move(indexes)), make_(std::move(make)) {}

  std::int32_t Count() override {
    return h_([&] { return static_cast<std::int32_t>(indexes_.size()); });
  }
  std::shared_ptr<Element> Item(std::int32_t index) override {
    return h_([&] {
      CheckIndex(index, indexes_.size());
      return make_(indexes_[static_cast<std::size_t>(index)]);
    });
  }

 private:
  DocumentHandle h_;
  std::vector<std::size_t> indexes_;
  Make make_;
};

std::vector<std::size_t> AllOf(std::size_t count) {
  std::vector<std::size_t> indexes(count);
  for (std::size_t i = 0; i < count; ++i) indexes[i] = i;
  return indexes;
}

class DocumentObject : public host::Document {
 public:
  explicit DocumentObject(DocumentHandle handle) : h_(std::move(handle)) {}

  std::string FullName() override {
    return h_([&] { return h_.doc->fullName; });
  }
  bool ReadOnly() override {
    return h_([&] { return h_.doc->readOnly; });
  }

  void SaveAs(const std::string& fileName) override {
    h_([&] {
      DocumentState& doc = *h_.doc;
      std::error_code ec;
      if (doc.untitled) {
        std::ofstream out(FsPath(fileName), std::ios::binary | std::ios::trunc);
        out << kEmptyDxf;
        out.close();
        if (!out) throw host::Error(msg::kFileAccess, msg::SaveFailed(fileName, "écriture"));
      } else if (!fs::equivalent(FsPath(doc.fullName), FsPath(fileName), ec)) {
        fs::copy_file(FsPath(doc.fullName), FsPath(fileName), fs::copy_options::overwrite_existing,
                      ec);
        if (ec) throw host::Error(msg::kFileAccess, msg::SaveFailed(fileName, ec.message()));
      }
      doc.fullName = fileName;
      doc.drawing.path = fileName;
      doc.untitled = false;
      doc.readOnly = false;
    });
  }

  void Activate() override {
    h_([&] { h_.core->active = h_.doc; });
  }

  // The host cannot write a drawing's changes back: closing with saving
  // leaves the file as it is.
  void Close(bool) override {
    h_([&] { h_.core->RemoveDocument(h_.doc); });
  }

  host::SysVarValue GetVariable(const std::string& name) override {
    return h_([&] { return embedded::GetVariable(*h_.core, *h_.doc, name); });
  }
  void SetVariable(const std::string& name, const host::SysVarValue& value) override {
    h_([&] { embedded::SetVariable(*h_.core, *h_.doc, name, value); });
  }

  std::int16_t ActiveSpace() override {
    return h_([&] { return static_cast<std::int16_t>(h_.doc->ActiveLayout().IsModel() ? 1 : 0); });
  }
  void SetActiveSpace(std::int16_t space) override {
    h_([&] { SetSpace(*h_.doc, space); });
  }

  std::shared_ptr<host::Layout> ActiveLayout() override {
    return h_([&]() -> std::shared_ptr<host::Layout> {
      return MakeLayout(h_.doc->drawing.activeLayout);
    });
  }
  void SetActiveLayout(const std::shared_ptr<host::Layout>& layout) override {
    h_([&] {
      const auto* own = dynamic_cast<const LayoutObject*>(layout.get());
      if (!own || own->Doc() != h_.doc) {
        throw host::Error(msg::kInvalidArgument, msg::ForeignLayout());
      }
      h_.doc->Activate(own->Index());
    });
  }

  std::shared_ptr<host::Layouts> GetLayouts() override {
    return h_([&]() -> std::shared_ptr<host::Layouts> {
      return std::make_shared<IndexedCollection<host::Layouts, host::Layout>>(
          h_, h_.doc->tabs, [h = h_](std::size_t i) -> std::shared_ptr<host::Layout> {
            return std::make_shared<LayoutObject>(h.core, h.doc, LayoutObject::Kind::Layout, i);
          });
    });
  }
  std::shared_ptr<host::PlotConfigurations> GetPlotConfigurations() override {
    return h_([&]() -> std::shared_ptr<host::PlotConfigurations> {
      return std::make_shared<IndexedCollection<host::PlotConfigurations, host::PlotConfiguration>>(
          h_, AllOf(h_.doc->drawing.pageSetups.size()), [h = h_](std::size_t i) {
            return std::make_shared<PageSetupObject>(h.core, h.doc,
                                                     PageSetupObject::Kind::PageSetup, i);
          });
    });
  }
  std::shared_ptr<host::Layers> GetLayers() override {
    return h_([&]() -> std::shared_ptr<host::Layers> {
      return std::make_shared<IndexedCollection<host::Layers, host::Layer>>(
          h_, AllOf(h_.doc->drawing.layers.size()),
          [h = h_](std::size_t i) { return std::make_shared<LayerObject>(h, i); });
    });
  }
  std::shared_ptr<host::Views> GetViews() override {
    return h_([&]() -> std::shared_ptr<host::Views> {
      return std::make_shared<IndexedCollection<host::Views, host::View>>(
          h_, AllOf(h_.doc->drawing.views.size()),
          [h = h_](std::size_t i) { return std::make_shared<ViewObject>(h, i); });
    });
  }
  std::shared_ptr<host::TextStyles> GetTextStyles() override {
    return h_([&]() -> std::shared_ptr<host::TextStyles> {
      // Shape-file records are not text styles.
      std::vector<std::size_t> styles;
      const auto& all = h_.doc->drawing.textStyles;
      for (std::size_t i = 0; i < all.size(); ++i) {
        if (!all[i].isShapeFile) styles.push_back(i);
      }
      return std::make_shared<IndexedCollection<host::TextStyles, host::TextStyle>>(
          h_, std::move(styles),
          [h = h_](std::size_t i) { return std::make_shared<TextStyleObject>(h, i); });
    });
  }
  std::shared_ptr<host::Plot> GetPlot() override {
    return h_([&] { return MakePlotObject(h_.core, h_.doc); });
  }

  // Nothing is displayed, so there is nothing to regenerate.
  void Regen(std::int16_t) override {
    h_([] {});
  }

  std::vector<std::pair<std::string, std::int32_t>> UndrawnEntities() override {
    return h_([&] {
      std::vector<std::pair<std::string, std::int32_t>> kinds;
      for (const auto& [kind, count] : embedded::UndrawnEntities(h_.doc->drawing)) {
        kinds.emplace_back(kind, count);
      }
      return kinds;
    });
  }

 private:
  std::shared_ptr<host::Layout> MakeLayout(std::size_t index) const {
    return std::make_shared<LayoutObject>(h_.core, h_.doc, LayoutObject::Kind::Layout, index);
  }

  DocumentHandle h_;
};

}  // namespace

std::shared_ptr<host::Document> MakeDocumentObject(std::shared_ptr<HostCore> core,
                                                   std::shared_ptr<DocumentState> doc) {
  return std::make_shared<DocumentObject>(DocumentHandle{std::move(core), std::move(doc)});
}

}  // namespace sheafwork::embedded
