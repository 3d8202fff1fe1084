#pragma once
// A drawing as the embedded host knows it: what the reader found in the
// file, with layouts synthesised for releases that have none and external
// references resolved.

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "embedded/model/entities.h"
#include "embedded/model/geometry.h"
#include "embedded/model/plot_settings.h"

namespace sheafwork::embedded {

/// The header variables the host uses.
struct Header {
  std::string acadVer;                 ///< "AC1009", "AC1015", ...
  std::string codePage = "ANSI_1252";  ///< strings' code page before AC1021
  Vec3 insBase;
  std::optional<Vec3> extMin, extMax;  ///< absent when unset (±1e20)
  Vec2 limMin{0, 0};
  Vec2 limMax{420, 297};
  Vec2 pLimMin{0, 0};
  Vec2 pLimMax{420, 297};
  std::int16_t insUnits = 0;
  std::int16_t measurement = 1;
  double ltScale = 1;
  bool psLtScale = true;
  std::int16_t pdMode = 0;
  double pdSize = 0;
  bool fillMode = true;
  bool tileMode = true;  ///< the model tab is active
  std::string styleSheet;
  /// Frames of wipeouts: 0 hidden, 1 shown and plotted, 2 shown only
  /// (kept in the drawing's wipeout variables object).
  std::int16_t wipeoutFrame = 0;
  /// Frames of raster images, the same way (kept in the raster variables
  /// object).
  std::int16_t imageFrame = 1;
};

struct Layer {
  std::string name;
  std::string handle;
  std::int16_t color = 7;  ///< 1 to 255
  std::optional<std::uint32_t> trueColor;
  std::string linetype = "Continuous";
  std::int16_t lineweight = kLineweightDefault;
  bool on = true;
  bool frozen = false;
  bool locked = false;
  bool plottable = true;
};

struct Linetype {
  std::string name;
  std::string description;
  double patternLength = 0;
  std::vector<double> dashes;  ///< > 0 dash, < 0 gap, 0 dot
};

struct TextStyle {
  std::string name;
  std::string fontFile;  ///< as stored: "txt", "romans.shx", "arial.ttf", may be empty
  std::string bigFontFile;
  std::string trueTypeFamily;  ///< from the style's extended data, when given
  double fixedHeight = 0;
  double widthFactor = 1;
  double oblique = 0;
  std::int16_t generation = 0;
  bool isShapeFile = false;  ///< the record describes a shape file, not a text style
};

struct View {
  std::string name;
  Vec2 center;  ///< relative to the target
  double width = 0;
  double height = 0;
  Vec3 target;
  Vec3 direction = kUnitZ;
  double twist = 0;
  bool paperSpace = false;
};

/// The model-space view shown when the drawing was saved (VPORT *ACTIVE).
struct ActiveView {
  Vec2 center;
  double height = 0;
  double aspect = 1;  ///< width / height
  Vec3 target;
  double twist = 0;
};

struct Block {
  std::string name;
  std::string recordHandle;  ///< handle of its block record, empty before release 13
  std::string layer = "0";
  Vec3 base;
  std::int16_t flags = 0;  ///< 1 anonymous, 4 external reference, 8 overlay
  std::string xrefPath;    ///< as stored, for an external reference
  std::vector<Entity> entities;
  /// The order in which `entities` are drawn, as indexes, when the drawing
  /// gives one (its draw order table); empty: in file order.
  std::vector<std::uint32_t> drawOrder;

  bool IsXref() const { return (flags & 4) != 0; }
};

struct Layout {
  std::string name;  ///< as stored; the model layout is "Model"
  std::string handle;
  std::string blockName;  ///< "*Model_Space", "*Paper_Space", "*Paper_Space3" ...
  std::int16_t tabOrder = 0;
  Vec2 limMin{0, 0};
  Vec2 limMax{420, 297};
  Vec3 insBase;
  PlotSettings settings;
  /// Why the layout's block could not be found in a damaged file (the file
  /// and what is wrong, in French); such a layout has no block and does not
  /// plot. Empty for a sound layout.
  std::string blockError;

  bool IsModel() const { return (settings.flags & kModelType) != 0; }
};

struct NamedPageSetup {
  std::string name;  ///< the key in the page-setup dictionary
  PlotSettings settings;
};

/// An external reference of the drawing and where it was found.
/// Why a reference that was found was not loaded.
enum class XrefLimit : std::uint8_t {
  None,
  Depth,  ///< nested deeper than references are followed
  Size,   ///< the referenced files loaded already weigh too much
};

struct ExternalReference {
  std::string blockName;
  std::string storedPath;
  std::string resolvedPath;                       ///< empty when not found
  std::shared_ptr<const struct Drawing> drawing;  ///< the loaded drawing when found
  XrefLimit beyond = XrefLimit::None;             ///< found but left out, and why
};

/// The file a raster image shows (IMAGEDEF) and where it was found.
struct ImageDefinition {
  std::string storedPath;    ///< as stored, often a Windows path
  std::string resolvedPath;  ///< empty when not found
};

struct Drawing {
  std::string path;  ///< the file it was read from
  Header header;
  std::vector<Layer> layers;
  std::vector<Linetype> linetypes;
  std::vector<TextStyle> textStyles;
  std::vector<View> views;
  std::optional<ActiveView> activeView;
  std::vector<Block> blocks;    ///< model and paper spaces included
  std::vector<Layout> layouts;  ///< in tab order, the model layout first
  std::vector<NamedPageSetup> pageSetups;
  std::vector<ExternalReference> xrefs;
  /// Image definitions by handle key; see ResolveImageFiles.
  std::unordered_map<std::string, ImageDefinition> images;
  /// Entities of kinds the reader does not know, by type name.
  std::map<std::string, int> skippedEntities;
  /// Index in `layouts` of the layout that was active when saved.
  std::size_t activeLayout = 0;

  /// Lookups by name, case ignored as the format wants; null when absent.
  const Layer* FindLayer(std::string_view name) const;
  Layer* FindLayer(std::string_view name);
  const Block* FindBlock(std::string_view name) const;
  const TextStyle* FindTextStyle(std::string_view name) const;
  const Linetype* FindLinetype(std::string_view name) const;
  const View* FindView(std::string_view name) const;
  /// The block that holds a layout's entities; null when there is none.
  const Block* LayoutBlock(const Layout& layout) const;

  /// Rebuilds the lookup indexes; call after changing the tables or blocks.
  void Reindex();

 private:
  std::unordered_map<std::string, std::size_t> layerIndex_;
  std::unordered_map<std::string, std::size_t> blockIndex_;
};

/// The key under which names are compared: ASCII letters upper-cased.
std::string NameKey(std::string_view name);

}  // namespace sheafwork::embedded
