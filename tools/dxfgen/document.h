#pragma once
// What the generator writes: a drawing described as plainly as the file
// format needs it. Handles and owners are assigned by the writer.

#include <cstdint>
#include <string>
#include <vector>

#include "dxfgen/tag_writer.h"

namespace sheafwork::dxfgen {

/// One tag of an entity's own data, after the common part the writer adds.
struct Tag {
  int code = 0;
  std::string value;  ///< already formatted
};

/// The common properties of an entity.
struct Props {
  std::string layer = "0";
  std::string linetype;  ///< empty: by layer
  int color = 256;       ///< 256 by layer, 0 by block
  int lineweight = -1;   ///< -1 by layer, -2 by block, -3 default, else 1/100 mm
};

/// An entity: its type, its properties and its data tags, subclass markers
/// included (the release-12 writer drops them). Followers (vertices,
/// attributes) are written after it and closed by a SEQEND.
struct Entity {
  std::string type;
  Props props;
  std::vector<Tag> tags;
  std::vector<Entity> followers;
  std::vector<P2> extentPoints;  ///< points that bound it, for the header's extents
  /// Names the entity for the handle references of entities written after
  /// it (release 2000 on).
  std::string label;
  /// Handle references written after `tags`: the value is the label of an
  /// entity written before, or "LAYER:" and a layer's name.
  std::vector<Tag> handleRefs;
  /// INSERT: a clip boundary in the block's coordinates, two points for a
  /// rectangle (release 2000 on; the reference gets a spatial filter).
  std::vector<P2> clipBoundary;
};

struct LayerDef {
  std::string name;
  int color = 7;
  std::string linetype = "Continuous";
  int lineweight = -3;
  bool plottable = true;
};

struct LinetypeDef {
  std::string name;
  std::string description;
  std::vector<double> dashes;  ///< > 0 dash, < 0 gap
};

struct StyleDef {
  std::string name;
  std::string fontFile;
  double widthFactor = 1;
};

/// A named model-space view (a plan window).
struct ViewDef {
  std::string name;
  P2 center;
  double width = 0;
  double height = 0;
};

struct BlockDef {
  std::string name;
  P2 base;
  int flags = 0;         ///< 2 has attributes, 4 external reference
  std::string xrefPath;  ///< for an external reference
  std::vector<Entity> entities;
};

/// The plot settings of a layout or a named page setup, lengths on paper in mm.
struct PlotSetup {
  std::string pageSetupName;
  std::string device = "PDF.pc3";
  std::string media;
  double marginLeft = 5, marginBottom = 5, marginRight = 5, marginTop = 5;
  double paperWidth = 420, paperHeight = 297;
  P2 origin;
  P2 windowMin, windowMax;
  double numerator = 1, denominator = 1;
  int flags = 16 | 32 | 128 | 512;  ///< standard scale, plot styles, lineweights, viewports first
  int paperUnits = 1;               ///< millimetres
  int rotation = 0;
  int plotType = 5;        ///< 5 layout, 1 extents, 2 limits, 3 view, 4 window
  int standardScale = 16;  ///< 16 is 1:1, 0 fit
  std::string viewName;
  std::string styleSheet;
};

inline constexpr int kModelTypeFlag = 1024;

struct LayoutDef {
  std::string name;
  PlotSetup settings;
  std::vector<Entity> entities;  ///< paper space, viewports included
};

struct PageSetupDef {
  std::string name;
  PlotSetup settings;
};

/// A header variable written after the usual ones (release 2000 on).
struct HeaderVariable {
  std::string name;  ///< "$PDMODE"
  int code = 70;
  std::string value;  ///< already formatted
};

struct Document {
  std::string version = "AC1015";  ///< AC1015, AC1018 or AC1009
  int insUnits = 4;                ///< millimetres
  P2 limMin{0, 0};
  P2 limMax{420, 297};
  std::vector<LayerDef> layers;  ///< "0" and "Defpoints" are added when missing
  std::vector<LinetypeDef> linetypes;
  std::vector<StyleDef> styles;  ///< "Standard" is added when missing
  std::vector<ViewDef> views;
  std::vector<BlockDef> blocks;
  std::vector<Entity> model;
  PlotSetup modelSettings;
  std::vector<LayoutDef> layouts;  ///< paper layouts in tab order
  int activeLayout = -1;           ///< paper layout active when saved; -1 the model
  std::vector<PageSetupDef> pageSetups;
  std::vector<HeaderVariable> headerVariables;
};

/// The file's bytes: an ASCII DXF of the document's release.
std::string WriteDxf(const Document& doc);

}  // namespace sheafwork::dxfgen
