// The example drawings: the committed files are exactly what the generator
// writes, well-formed as the format wants, and the reader finds in them what
// the generator put there; the sample sheet holds every kind of entity the
// plot engine draws, with what its zones are there to show.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "dxfgen/house.h"
#include "dxfgen/large_drawing.h"
#include "dxfgen/sample_sheet.h"
#include "embedded/dxf/reader.h"
#include "embedded/dxf/tokenizer.h"
#include "fakes/temp_folder.h"

namespace sheafwork::e2e {
namespace {

namespace fs = std::filesystem;
using embedded::Drawing;
using embedded::Entity;

const fs::path kPlans = fs::path(SHEAFWORK_SOURCE_DIR) / "examples/plans";

TEST(Examples, CommittedFilesAreWhatTheGeneratorWrites) {
  std::set<std::string> expected;
  for (const auto& example : dxfgen::HouseExamples()) {
    SCOPED_TRACE(example.name);
    expected.insert(example.name);
    const std::string committed = testing::TempFolder::Read((kPlans / example.name).string());
    EXPECT_TRUE(committed == example.bytes)
        << "examples/plans/" << example.name
        << " differs from the generator: run `make_examples examples/plans`";
  }
  std::set<std::string> present;
  for (const auto& entry : fs::directory_iterator(kPlans)) {
    if (entry.path().extension() == ".dxf") present.insert(entry.path().filename().string());
  }
  EXPECT_EQ(present, expected);
}

// Handles are unique and below $HANDSEED; every owner is a known handle. An
// object's handle is its first code 5 (105 for a dimension style).
void ExpectConsistentHandles(const std::string& bytes) {
  embedded::Tokenizer tokenizer(bytes, "example.dxf");
  embedded::Tag tag;
  std::string type, variable;
  bool handled = false;
  std::uint64_t seed = 0;
  std::set<std::string> handles, owners;
  while (tokenizer.Next(tag)) {
    const std::string value(tag.value);
    if (tag.code == 0) {
      type = value;
      handled = false;
    } else if (tag.code == 9) {
      variable = value;
    } else if (variable == "$HANDSEED" && seed == 0) {
      seed = std::stoull(value, nullptr, 16);
    } else if (tag.code == (type == "DIMSTYLE" ? 105 : 5) && !handled && type != "SECTION") {
      handled = true;
      EXPECT_TRUE(handles.insert(value).second) << "handle " << value << " twice";
      EXPECT_LT(std::stoull(value, nullptr, 16), seed) << type;
    } else if (tag.code == 330 && value != "0") {
      owners.insert(value);
    }
  }
  ASSERT_GT(seed, 0u);
  for (const std::string& owner : owners) {
    EXPECT_TRUE(handles.count(owner)) << "owned by unknown " << owner;
  }
}

const char* KindOf(const Entity& entity) {
  return std::visit(
      [](const auto& g) -> const char* {
        using G = std::decay_t<decltype(g)>;
        if constexpr (std::is_same_v<G, embedded::Line>) return "LINE";
        if constexpr (std::is_same_v<G, embedded::Arc>) return "ARC";
        if constexpr (std::is_same_v<G, embedded::Circle>) return "CIRCLE";
        if constexpr (std::is_same_v<G, embedded::Polyline>) return "POLYLINE";
        if constexpr (std::is_same_v<G, embedded::Text>) return "TEXT";
        if constexpr (std::is_same_v<G, embedded::MText>) return "MTEXT";
        if constexpr (std::is_same_v<G, embedded::Insert>) return "INSERT";
        if constexpr (std::is_same_v<G, embedded::Hatch>) return "HATCH";
        if constexpr (std::is_same_v<G, embedded::Solid>) return "SOLID";
        if constexpr (std::is_same_v<G, embedded::Viewport>) return "VIEWPORT";
        if constexpr (std::is_same_v<G, embedded::AttributeDefinition>) return "ATTDEF";
        return "OTHER";
      },
      entity.geometry);
}

std::map<std::string, int> Kinds(const std::vector<Entity>& entities) {
  std::map<std::string, int> kinds;
  for (const auto& e : entities) ++kinds[KindOf(e)];
  return kinds;
}

std::map<std::string, int> Kinds(const std::vector<dxfgen::Entity>& entities) {
  std::map<std::string, int> kinds;
  for (const auto& e : entities) ++kinds[e.type == "LWPOLYLINE" ? "POLYLINE" : e.type];
  return kinds;
}

struct Example {
  const char* file;
  dxfgen::Document (*make)();
};

void PrintTo(const Example& example, std::ostream* out) { *out << example.file; }

class ReleaseTwoThousandExample : public ::testing::TestWithParam<Example> {};

TEST_P(ReleaseTwoThousandExample, ReaderFindsWhatTheGeneratorWrote) {
  const dxfgen::Document doc = GetParam().make();
  const std::string bytes = dxfgen::WriteDxf(doc);
  ExpectConsistentHandles(bytes);
  const Drawing drawing = embedded::ReadDxf(bytes, GetParam().file);

  EXPECT_EQ(drawing.header.acadVer, doc.version);
  ASSERT_EQ(drawing.layouts.size(), doc.layouts.size() + 1);
  EXPECT_TRUE(drawing.layouts[0].IsModel());
  const embedded::Block* model = drawing.LayoutBlock(drawing.layouts[0]);
  ASSERT_NE(model, nullptr);
  EXPECT_EQ(Kinds(model->entities), Kinds(doc.model));
  EXPECT_EQ(drawing.activeLayout, static_cast<std::size_t>(doc.activeLayout + 1));

  for (std::size_t i = 0; i < doc.layouts.size(); ++i) {
    const auto& want = doc.layouts[i];
    const auto& got = drawing.layouts[i + 1];
    SCOPED_TRACE(want.name);
    EXPECT_EQ(got.name, want.name);
    EXPECT_FALSE(got.IsModel());
    EXPECT_EQ(got.settings.configName, want.settings.device);
    EXPECT_EQ(got.settings.mediaName, want.settings.media);
    EXPECT_EQ(got.settings.paperWidth, want.settings.paperWidth);
    EXPECT_EQ(got.settings.paperHeight, want.settings.paperHeight);
    const embedded::Block* paper = drawing.LayoutBlock(got);
    ASSERT_NE(paper, nullptr);
    EXPECT_EQ(Kinds(paper->entities), Kinds(want.entities));
  }

  ASSERT_EQ(drawing.pageSetups.size(), doc.pageSetups.size());
  for (std::size_t i = 0; i < doc.pageSetups.size(); ++i) {
    EXPECT_EQ(drawing.pageSetups[i].name, doc.pageSetups[i].name);
    EXPECT_EQ(drawing.pageSetups[i].settings.Has(embedded::kModelType),
              (doc.pageSetups[i].settings.flags & dxfgen::kModelTypeFlag) != 0);
    EXPECT_EQ(drawing.pageSetups[i].settings.paperWidth, doc.pageSetups[i].settings.paperWidth);
  }
  for (const auto& layer : doc.layers) {
    const embedded::Layer* got = drawing.FindLayer(layer.name);
    ASSERT_NE(got, nullptr) << layer.name;
    EXPECT_EQ(got->color, layer.color) << layer.name;
    EXPECT_EQ(got->plottable, layer.plottable) << layer.name;
  }
  for (const auto& style : doc.styles) {
    const embedded::TextStyle* got = drawing.FindTextStyle(style.name);
    ASSERT_NE(got, nullptr) << style.name;
    EXPECT_EQ(got->fontFile, style.fontFile);
  }
  for (const auto& block : doc.blocks) {
    const embedded::Block* got = drawing.FindBlock(block.name);
    ASSERT_NE(got, nullptr) << block.name;
    EXPECT_EQ(got->IsXref(), (block.flags & 4) != 0) << block.name;
    EXPECT_EQ(got->xrefPath, block.xrefPath);
    EXPECT_EQ(Kinds(got->entities), Kinds(block.entities)) << block.name;
  }
}

INSTANTIATE_TEST_SUITE_P(Plans, ReleaseTwoThousandExample,
                         ::testing::Values(Example{"rez-de-chaussee.dxf", dxfgen::GroundFloor},
                                           Example{"etage.dxf", dxfgen::UpperFloor},
                                           Example{"facades.dxf", dxfgen::Elevations},
                                           Example{"cartouche.dxf", dxfgen::TitleBlock}),
                         [](const auto& info) {
                           std::string name = info.param.file;
                           name = name.substr(0, name.find('.'));
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

TEST(Examples, ReleaseTwelveDrawingGetsAModelAndOnePaperLayout) {
  const dxfgen::Document doc = dxfgen::GardenShedR12();
  const Drawing drawing = embedded::ReadDxf(dxfgen::WriteDxf(doc), "ancien-r12.dxf");
  EXPECT_EQ(drawing.header.acadVer, "AC1009");
  ASSERT_EQ(drawing.layouts.size(), 2u);
  EXPECT_TRUE(drawing.layouts[0].IsModel());
  EXPECT_FALSE(drawing.layouts[1].IsModel());
  const embedded::Block* model = drawing.LayoutBlock(drawing.layouts[0]);
  const embedded::Block* paper = drawing.LayoutBlock(drawing.layouts[1]);
  ASSERT_NE(model, nullptr);
  ASSERT_NE(paper, nullptr);
  EXPECT_EQ(Kinds(model->entities), Kinds(doc.model));
  EXPECT_EQ(Kinds(paper->entities), Kinds(doc.layouts[0].entities));
}

TEST(LargeDrawing, IsTheSameForTheSameSeedAndReadsBackEntityForEntity) {
  const std::string once = dxfgen::WriteDxf(dxfgen::LargeDrawing(400, 7));
  EXPECT_EQ(once, dxfgen::WriteDxf(dxfgen::LargeDrawing(400, 7)));
  EXPECT_NE(once, dxfgen::WriteDxf(dxfgen::LargeDrawing(400, 8)));
  ExpectConsistentHandles(once);

  const dxfgen::Document doc = dxfgen::LargeDrawing(2003, 3);
  const Drawing drawing = embedded::ReadDxf(dxfgen::WriteDxf(doc), "grand.dxf");
  const embedded::Block* model = drawing.LayoutBlock(drawing.layouts.at(0));
  ASSERT_NE(model, nullptr);
  EXPECT_EQ(model->entities.size(), 2003u);
  EXPECT_EQ(Kinds(model->entities), Kinds(doc.model));
  EXPECT_TRUE(drawing.skippedEntities.empty());
}

TEST(SampleSheet, HoldsEveryKindOfEntityAndItsSettings) {
  const Drawing d = embedded::ReadDxf(dxfgen::WriteDxf(dxfgen::SampleSheet()), "planche.dxf");
  ASSERT_EQ(d.layouts.size(), 2u);
  const embedded::Block* paper = d.LayoutBlock(d.layouts[1]);
  ASSERT_NE(paper, nullptr);

  std::set<std::size_t> kinds;
  const auto collect = [&](const std::vector<Entity>& entities) {
    for (const Entity& e : entities) kinds.insert(e.geometry.index());
  };
  collect(paper->entities);
  collect(d.LayoutBlock(d.layouts[0])->entities);
  for (const embedded::Block& b : d.blocks) collect(b.entities);
  // Kinds our writer has no use for, read from other writers' drawings
  // (tests/data/dxf/entities), the kinds the host cannot draw, and raster
  // images, which need their file beside the drawing (tests/data/dxf/images).
  const std::set<std::size_t> fromOthers = {
      embedded::Geometry(embedded::ConstructionLine{}).index(),
      embedded::Geometry(embedded::MeshEdges{}).index(),
      embedded::Geometry(embedded::MultiLeader{}).index(),
      embedded::Geometry(embedded::Undrawn{}).index(),
      embedded::Geometry(embedded::RasterImage{}).index()};
  for (std::size_t i = 0; i < std::variant_size_v<embedded::Geometry>; ++i) {
    if (!fromOthers.count(i)) {
      EXPECT_TRUE(kinds.count(i)) << "no entity of kind " << i;
    }
  }
  EXPECT_TRUE(d.skippedEntities.empty());

  EXPECT_EQ(d.header.pdMode, 35);
  EXPECT_DOUBLE_EQ(d.header.pdSize, 3);
  EXPECT_TRUE(d.header.psLtScale);
  for (const char* name : {"TIRETS", "AXE", "POINTILLE", "CACHE", "TIRET_POINT"}) {
    const embedded::Linetype* lt = d.FindLinetype(name);
    ASSERT_NE(lt, nullptr) << name;
    EXPECT_GE(lt->dashes.size(), 2u) << name;
  }

  // Polylines with and without the linetype generation flag, a wipeout, a
  // clipped block reference, a twisted viewport with a frozen layer and one
  // clipped by an entity.
  std::set<std::string> shown;
  for (const Entity& e : paper->entities) {
    if (const auto* p = std::get_if<embedded::Polyline>(&e.geometry);
        p && e.props.linetype == "TIRETS") {
      shown.insert(p->linetypeGeneration ? "generation" : "per segment");
    }
    if (std::holds_alternative<embedded::Wipeout>(e.geometry)) shown.insert("wipeout");
    if (const auto* insert = std::get_if<embedded::Insert>(&e.geometry);
        insert && insert->clip && insert->clip->boundary.size() == 3) {
      shown.insert("clipped insert");
    }
    const auto* vp = std::get_if<embedded::Viewport>(&e.geometry);
    if (vp == nullptr) continue;
    if (vp->twist != 0 && vp->frozenLayers == std::vector<std::string>{"MOBILIER"}) {
      shown.insert("twisted");
    }
    for (const Entity& other : paper->entities) {
      if ((vp->flags & 65536) != 0 && other.handle == vp->clipBoundaryHandle &&
          std::holds_alternative<embedded::Polyline>(other.geometry)) {
        shown.insert("clipped viewport");
      }
    }
  }
  EXPECT_EQ(shown, (std::set<std::string>{"clipped insert", "clipped viewport", "generation",
                                          "per segment", "twisted", "wipeout"}));
}

}  // namespace
}  // namespace sheafwork::e2e
