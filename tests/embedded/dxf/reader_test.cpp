// The reader over small hand-written files: the tokenizer over text and binary
// files; malformed input, which ends in a DxfError that names the file and the
// place and never in anything else (tests/data/dxf/errors); layouts, tables,
// the text encodings and the header (tests/data/dxf/layouts, tables and
// encodings); entities as the reader decodes them, each kind from the tags a
// writer of release 2000 or later puts down, subclass markers included, and
// wipeouts and clipped block references (entity-tags and masking); hatch paths
// with spline edges written by another program (hatch-spline-edges).

#include "embedded/dxf/reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

#include "embedded/dxf/dxf_fixtures.h"
#include "embedded/dxf/tokenizer.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using sheafwork::testing::ReadTestData;
using sheafwork::testing::TestData;
using ::testing::_;
using ::testing::AllOf;
using ::testing::AllOfArray;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Matcher;
using testing::ModelEntities;
using ::testing::Pair;
using testing::ReadFixture;
using ::testing::ThrowsMessage;

// A tag as read: its code, its value and the line (or byte offset) it
// starts on.
using TagRead = std::tuple<int, std::string, std::size_t>;

std::vector<TagRead> Tokenize(std::string_view bytes) {
  Tokenizer t(bytes, "t.dxf");
  std::vector<TagRead> out;
  Tag tag;
  while (t.Next(tag)) out.emplace_back(tag.code, std::string(tag.value), tag.line);
  return out;
}

TEST(TokenizerAscii, SplitsTagsWhateverTheLineEnds) {
  const std::vector<TagRead> tags = {{0, "SECTION", 1}, {2, "HEADER", 3}};
  // What each case shows, its bytes, the tags read.
  const std::vector<std::tuple<const char*, std::string, std::vector<TagRead>>> cases = {
      {"LF", "0\nSECTION\n2\nHEADER\n", tags},
      {"CR LF", "0\r\nSECTION\r\n2\r\nHEADER\r\n", tags},
      {"lone CR", "0\rSECTION\r2\rHEADER\r", tags},
      {"no final line end", "0\nSECTION\n2\nHEADER", tags},
      {"byte-order mark",
       "\xEF\xBB\xBF"
       "0\nSECTION\n2\nHEADER\n",
       tags},
      {"right-aligned codes", "  0\nSECTION\n  2\nHEADER\n", tags},
      {"code with trailing blanks", "0 \t\nSECTION\n2\nHEADER\n", tags},
      {"comments skipped",
       "999\nmade by hand\n0\nSECTION\n999\n\n2\nHEADER\n",
       {{0, "SECTION", 3}, {2, "HEADER", 7}}},
      {"stops at EOF, garbage ignored", "0\nSECTION\n2\nHEADER\n0\nEOF\n\x01garbage\nabc", tags},
      {"string values keep their spaces", "1\n  two words \n", {{1, "  two words ", 1}}},
      {"empty value", "1\n\n0\nEOF\n", {{1, "", 1}}},
      {"trailing blank lines", "0\nSECTION\n2\nHEADER\n\n\n  \n", tags},
  };
  for (const auto& [what, input, expected] : cases) EXPECT_EQ(Tokenize(input), expected) << what;
}

TEST(TokenizerAscii, ReadsNumbersInEveryCommonSpelling) {
  for (const auto& row : sheafwork::testing::ReadTestTable("dxf/numbers.tsv")) {
    SCOPED_TRACE(row.where);
    const std::string text = "40\n" + row[0] + "\n";
    Tokenizer t(text, "n.dxf");
    Tag tag;
    ASSERT_TRUE(t.Next(tag));
    EXPECT_EQ(tag.Double(), row[1] == "refused" ? std::nullopt : std::optional(std::stod(row[1])));
    if (row[2] != "-") {
      EXPECT_EQ(tag.Integer(), row[2] == "refused"
                                   ? std::nullopt
                                   : std::optional<std::int64_t>(std::stoll(row[2])));
    }
  }
}

// Binary files of tests/data/dxf/binary (make_binary.py): a header of
// release 12 (short group codes) or 2000 (long ones), then EOF and a tag
// after it; the width of the codes is found without the release too.
TEST(TokenizerBinary, ReadsShortAndLongGroupCodesByRelease) {
  for (const bool shortCodes : {true, false}) {
    const std::string name = shortCodes ? "dxf/binary/short-codes" : "dxf/binary/long-codes";
    EXPECT_EQ(Tokenizer(ReadTestData(name + "-no-version.dxf"), "b.dxf").HasShortCodes(),
              shortCodes);
    const std::string bytes = ReadTestData(name + ".dxf");
    Tokenizer t(bytes, "b.dxf");
    ASSERT_TRUE(t.IsBinary());
    EXPECT_EQ(t.HasShortCodes(), shortCodes);
    std::vector<Tag> tags;
    Tag tag;
    while (t.Next(tag)) tags.push_back(tag);
    ASSERT_EQ(tags.size(), shortCodes ? 9u : 10u);
    EXPECT_EQ(std::tuple(tags[3].value, tags[4].Double(), tags[5].Integer(), tags[6].Integer(),
                         tags[7].code, tags[8].code, tags[8].Integer()),
              std::tuple(shortCodes ? "AC1009" : "AC1015", 2.5, -3, 70000, 1001, 1070, 7));
    if (!shortCodes) {
      EXPECT_EQ(std::tuple(tags[9].code, tags[9].value.size(), tags[9].Integer()),
                std::tuple(290, 1u, 1));
    }
    EXPECT_EQ(tags[0].line, 22u);  // byte offsets
  }
}

TEST(TokenizerBinary, TruncatedValueNamesTheOffset) {
  // The file ends inside the double of code 10.
  EXPECT_THAT(
      [] { Tokenize(ReadTestData("dxf/binary/value-cut.dxf")); },
      ThrowsMessage<DxfError>(AllOf(HasSubstr("t.dxf, octet"), HasSubstr("valeur du code 10"))));
  EXPECT_THROW(Tokenize(ReadTestData("dxf/binary/string-unterminated.dxf")), DxfError);
}

// Malformed input.

TEST(ReaderErrors, NamesTheFileThePlaceAndWhatWasExpected) {
  for (const auto& row : sheafwork::testing::ReadTestTable("dxf/errors/messages.tsv")) {
    SCOPED_TRACE(row.where);
    std::vector<Matcher<std::string>> parts;
    for (std::size_t i = 1; i < row.fields.size(); ++i) parts.push_back(HasSubstr(row[i]));
    EXPECT_THAT([&] { ReadDxfFile(TestData("dxf/errors/" + row[0])); },
                ThrowsMessage<DxfError>(AllOfArray(parts)));
  }
}

TEST(ReaderErrors, EveryTruncationOfAGoodFileFailsCleanlyOrReads) {
  // Cutting a file anywhere must end in a DxfError or, when the cut falls
  // between sections, a drawing; never anything else.
  const std::string good = ReadTestData("dxf/errors/good.dxf");
  ASSERT_FALSE(good.empty());
  for (std::size_t n = 0; n < good.size(); ++n) {
    try {
      ReadDxf(good.substr(0, n), "cut.dxf");
    } catch (const DxfError& e) {
      EXPECT_THAT(e.what(), HasSubstr("cut.dxf")) << n;
    }
  }
}

// Layouts, tables, text encodings and the header.

// The name and the block name of each layout, in order.
std::vector<std::pair<std::string, std::string>> NamesAndBlocks(const Drawing& d) {
  std::vector<std::pair<std::string, std::string>> names;
  for (const Layout& layout : d.layouts) names.emplace_back(layout.name, layout.blockName);
  return names;
}

// layouts.dxf: a LAYOUT's plot-settings part and layout part both use codes
// 1, 70 and 330; the layouts are stored out of tab order.
TEST(ReaderLayouts, TakesEachCodeFromItsSubclassAndSortsByTabOrder) {
  const Drawing d = ReadFixture("layouts/layouts.dxf");
  ASSERT_THAT(NamesAndBlocks(d),
              ElementsAre(Pair("Model", "*Model_Space"), Pair("Plan", "*Paper_Space"),
                          Pair("Façade", "*Paper_Space7")));
  EXPECT_TRUE(d.layouts[0].IsModel());
  EXPECT_FALSE(d.layouts[2].IsModel());
  // The flags are the plot settings' 70, not the layout's own.
  const Layout& plan = d.layouts[1];
  EXPECT_EQ(std::tuple(plan.settings.pageSetupName, plan.settings.flags, plan.settings.configName,
                       plan.limMin.x, plan.limMax.y, plan.handle),
            std::tuple("applied setup", 688, "DWG To PDF.pc3", -20, 289.5, "59"));
  // $TILEMODE 0: the layout on *Paper_Space was active.
  EXPECT_EQ(d.layouts[d.activeLayout].name, "Plan");
  EXPECT_EQ(ReadFixture("layouts/layouts-tilemode-1.dxf").activeLayout, 0u);
  // Every layout's block exists; the inactive layout keeps its entities.
  for (const Layout& l : d.layouts) EXPECT_NE(d.LayoutBlock(l), nullptr) << l.name;
  ASSERT_EQ(d.FindBlock("*Paper_Space7")->entities.size(), 1u);
  EXPECT_EQ(d.FindBlock("*Paper_Space7")->entities[0].handle, "7B");
}

TEST(ReaderLayouts, BrokenLinksBetweenLayoutsAndBlockRecords) {
  // "Plan" names no block record but record 58 names it; "Coupe" is linked
  // nowhere and gets the paper-space block left over; no model layout is
  // listed at all.
  const Drawing d = ReadFixture("layouts/broken-links.dxf");
  ASSERT_THAT(NamesAndBlocks(d), ElementsAre(Pair("Model", _), Pair("Plan", "*Paper_Space"),
                                             Pair("Coupe", "*Paper_Space7")));
  EXPECT_TRUE(d.layouts[0].IsModel());
  EXPECT_FALSE(d.layouts[2].IsModel());  // the block decides, not the flag
}

TEST(ReaderLayouts, BlocksKeepTheirBaseFlagsAndExternalPath) {
  const Drawing d = ReadFixture("layouts/xref-block.dxf");
  const Block* b = d.FindBlock("FOND");
  ASSERT_NE(b, nullptr);
  EXPECT_EQ(std::tuple(b->IsXref(), b->xrefPath, b->layer, b->base.y),
            std::tuple(true, "..\\fonds\\fond.dxf", "Cadre", 6));
}

TEST(ReaderTables, LayerStates) {
  const Drawing d = ReadFixture("tables/layers.dxf");
  for (const auto& row : sheafwork::testing::ReadTestTable("dxf/tables/layers.tsv")) {
    SCOPED_TRACE(row.where);
    const Layer* layer = d.FindLayer(row[0]);
    ASSERT_NE(layer, nullptr);
    EXPECT_EQ(std::tuple(layer->on, layer->frozen, layer->locked, layer->plottable, layer->color,
                         layer->linetype, layer->lineweight),
              std::tuple(row[1] == "1", row[2] == "1", row[3] == "1", row[4] == "1",
                         std::stoi(row[5]), "DASHED", kLineweightDefault));
  }
}

TEST(ReaderTables, TextStylesKeepFontFilesAndShapeRecords) {
  const Drawing d = ReadFixture("tables/text-styles.dxf");
  ASSERT_EQ(d.textStyles.size(), 3u);
  const TextStyle* cotes = d.FindTextStyle("COTES");
  ASSERT_NE(cotes, nullptr);
  EXPECT_EQ(std::tuple(cotes->fontFile, cotes->bigFontFile, cotes->widthFactor, cotes->oblique,
                       cotes->generation, cotes->isShapeFile),
            std::tuple("romans.shx", "bigfont.shx", 0.8, 15, 2, false));
  EXPECT_EQ(d.FindTextStyle("Titre")->trueTypeFamily, "Arial Narrow");
  EXPECT_TRUE(d.textStyles[2].isShapeFile);
  EXPECT_EQ(d.textStyles[2].fontFile, "ltypeshp.shx");
}

// Two *ACTIVE viewport records: the first is the one shown.
TEST(ReaderTables, ViewsLinetypesAndTheActiveViewport) {
  const Drawing d = ReadFixture("tables/views-linetypes.dxf");
  ASSERT_TRUE(d.activeView.has_value());
  EXPECT_EQ(std::tuple(d.activeView->center.x, d.activeView->height, d.activeView->aspect,
                       d.activeView->twist),
            std::tuple(50, 80, 1.5, 10));
  const Linetype* lt = d.FindLinetype("dashdot");
  ASSERT_NE(lt, nullptr);
  EXPECT_EQ(lt->dashes, (std::vector<double>{1, -0.5, 0}));
  const View* v = d.FindView("Coupe");
  ASSERT_NE(v, nullptr);
  EXPECT_EQ(std::tuple(v->paperSpace, v->width, v->center.y), std::tuple(true, 60, 6));
}

// Each file holds one TEXT in a drawing of ANSI_1252 code page.
TEST(ReaderText, DecodesByReleaseAndUnicodeEscapes) {
  const std::pair<const char*, std::string> cases[] = {
      {"r2004-ansi.dxf", "45° été"},
      {"r2007-utf8.dxf", "45° été"},
      {"r2007-bad-byte.dxf", "bad \xEF\xBF\xBD byte"},
      {"r2000-unicode-escapes.dxf", "90° ⌀"},
      {"r2010-escapes.dxf", "° and \\U+12 and %%d"},
      {"r12-no-escapes.dxf", "{\\fArial|b1;x}\\P"},
  };
  for (const auto& [file, expected] : cases) {
    const Drawing d = ReadFixture(std::string("encodings/") + file);
    EXPECT_EQ(std::get<Text>(ModelEntities(d).at(0).geometry).text, expected) << file;
  }
}

TEST(ReaderHeader, ReadsTheVariablesTheHostUses) {
  const Drawing d = ReadFixture("tables/header.dxf");
  // The extents are stored as ±1e+20: never set.
  EXPECT_EQ(std::tuple(d.header.insUnits, d.header.extMin.has_value(), d.header.extMax.has_value(),
                       d.header.limMax.x, d.header.ltScale, d.header.fillMode, d.header.psLtScale,
                       d.header.styleSheet, d.header.pdMode),
            std::tuple(4, false, false, 841, 2.5, false, false, "monochrome.ctb", 35));

  const Drawing set = ReadFixture("tables/header-extents.dxf");
  ASSERT_TRUE(set.header.extMin.has_value());
  EXPECT_EQ(set.header.extMin->x, -5);
  EXPECT_EQ(set.header.extMax->y, 20);
}

// Entities, from the drawing tests/data/dxf/entity-tags/`name`.
Drawing Read(const std::string& name) { return ReadFixture("entity-tags/" + name); }

TEST(ReaderEntities, CommonPropertiesFromTheEntityPart) {
  const Drawing d = Read("common-properties.dxf");
  const Entity& e = ModelEntities(d).at(0);
  const EntityProps& p = e.props;
  EXPECT_EQ(std::tuple(e.handle, p.layer, p.linetype, p.color, p.trueColor, p.lineweight,
                       p.linetypeScale, p.invisible),
            std::tuple("2F", "Murs", "BYBLOCK", kColorByBlock, 0xFF00FFu, 50, 2, true));
  const auto& c = std::get<Circle>(e.geometry);
  EXPECT_EQ(std::tuple(c.radius, c.center.y, c.extrusion.z), std::tuple(5, 2, -1));
}

TEST(ReaderEntities, TextAlignmentComesFromTheRightSubclass) {
  const Drawing d = Read("text-and-attribute.dxf");
  const std::vector<Entity>& all = ModelEntities(d);
  ASSERT_EQ(all.size(), 2u);
  const auto& text = std::get<Text>(all[0].geometry);
  EXPECT_EQ(std::tuple(text.text, text.style, text.horizontalAlign, text.verticalAlign,
                       text.hasAlignPoint, text.alignPoint.x),
            std::tuple("  Cuisine", "Cotes", 1, 2, true, 5));

  const auto& insert = std::get<Insert>(all[1].geometry);
  EXPECT_EQ(std::tuple(insert.block, insert.scale.x, insert.rotation), std::tuple("Porte", -1, 90));
  ASSERT_EQ(insert.attributes.size(), 1u);
  const Attribute& a = insert.attributes[0];
  // The vertical alignment is code 74, not the field length in 73.
  EXPECT_EQ(std::tuple(a.tag, a.invisible, a.props.layer, a.text.text, a.text.horizontalAlign,
                       a.text.verticalAlign),
            std::tuple("NUMERO", true, "Attributs", "P12", 2, 3));
}

TEST(ReaderEntities, MTextJoinsItsChunksInOrder) {
  // Two chunks of 250 letters under code 3, then the last one under code 1.
  const Drawing d = Read("mtext-chunks.dxf");
  ASSERT_EQ(ModelEntities(d).size(), 1u);
  const auto& m = std::get<MText>(ModelEntities(d)[0].geometry);
  EXPECT_EQ(m.text, std::string(250, 'a') + std::string(250, 'b') + "\\Pfin");
  EXPECT_EQ(std::tuple(m.attachment, m.width), std::tuple(5, 100.0));
  EXPECT_NEAR(m.rotation, 90, 1e-9);
}

TEST(ReaderEntities, PolylinesOfBothKinds) {
  const Drawing d = Read("polylines.dxf");
  const std::vector<Entity>& all = ModelEntities(d);
  ASSERT_EQ(all.size(), 4u);
  const auto& lw = std::get<Polyline>(all[0].geometry);
  ASSERT_EQ(lw.vertices.size(), 3u);
  EXPECT_TRUE(lw.closed);
  EXPECT_EQ(std::tuple(lw.constantWidth, lw.vertices[1].bulge, lw.vertices[2].point.y),
            std::tuple(0.5, 1, 2));

  const auto& pl = std::get<Polyline>(all[1].geometry);
  ASSERT_EQ(pl.vertices.size(), 2u);  // the frame point is left out
  // The first vertex's start width is the polyline's default.
  EXPECT_EQ(std::tuple(pl.is3d, pl.elevation, pl.vertices[0].bulge, pl.vertices[0].startWidth,
                       pl.vertices[1].endWidth),
            std::tuple(false, 4, -0.5, 0.2, 0.7));
  EXPECT_EQ(std::get<MeshEdges>(all[2].geometry).vertices.size(), 2u);
  EXPECT_TRUE(std::holds_alternative<Point>(all[3].geometry));
  EXPECT_TRUE(d.skippedEntities.empty());
}

TEST(ReaderEntities, ReleaseTwelveViewportFromExtendedData) {
  const Drawing d = Read("viewport-r12.dxf");
  const auto& vp = std::get<Viewport>(d.FindBlock("*Paper_Space")->entities.at(0).geometry);
  EXPECT_EQ(std::tuple(vp.viewTarget.x, vp.viewDirection.z, vp.viewHeight, vp.viewCenter.x,
                       vp.viewCenter.y),
            std::tuple(5, 1, 300, 7, 8));
  EXPECT_EQ(vp.frozenLayers, std::vector<std::string>{"HIDDEN"});
}

TEST(ReaderEntities, CurvesSolidsAndUnknownKinds) {
  const Drawing d = Read("curves-and-unknown-kinds.dxf");
  const std::vector<Entity>& all = ModelEntities(d);
  ASSERT_EQ(all.size(), 10u);
  const auto& ellipse = std::get<Ellipse>(all[0].geometry);
  EXPECT_EQ(std::tuple(ellipse.majorAxis.x, ellipse.endParam), std::tuple(4, 3.14));
  EXPECT_EQ(std::get<Spline>(all[1].geometry).fitPoints.size(), 3u);
  const auto& solid = std::get<Solid>(all[2].geometry);
  EXPECT_EQ(solid.corners[3].y, 1);  // the third corner repeated
  EXPECT_EQ(std::get<Face3d>(all[3].geometry).invisibleEdges, 5);
  EXPECT_EQ(std::get<Arc>(all[4].geometry).startAngle, 270);
  const auto& dim = std::get<Dimension>(all[5].geometry);
  EXPECT_EQ(std::tuple(dim.block, dim.insert.has_value(), dim.textMidpoint.y),
            std::tuple("*D5", false, 2));
  const auto& leader = std::get<Leader>(all[6].geometry);
  EXPECT_EQ(std::tuple(leader.vertices.size(), leader.arrowhead), std::tuple(2u, false));
  EXPECT_EQ(std::get<Undrawn>(all[7].geometry).kind, "MLINE");
  EXPECT_EQ(d.skippedEntities.at("MLINE"), 2);
  EXPECT_TRUE(std::holds_alternative<AttributeDefinition>(all[9].geometry));
  EXPECT_EQ(d.skippedEntities.count("ATTDEF"), 0u);
}

// A path's edges after a spline edge belong to the path, whatever counts the
// spline edge carries. The edges in order: L line, A arc, S spline.
TEST(HatchEdges, EdgesAfterASplineEdgeStayInThePath) {
  const std::pair<const char*, const char*> cases[] = {{"spline-r2018.dxf", "LSLA"},
                                                       {"spline-fit-r2018.dxf", "LSLA"},
                                                       {"spline-last-r2018.dxf", "LALS"},
                                                       {"spline-last-r2000.dxf", "LALS"}};
  for (const auto& [file, edges] : cases) {
    SCOPED_TRACE(file);
    const Drawing d = ReadFixture(std::string("hatch-spline-edges/") + file);
    ASSERT_EQ(ModelEntities(d).size(), 1u);
    const auto* hatch = std::get_if<Hatch>(&ModelEntities(d)[0].geometry);
    ASSERT_NE(hatch, nullptr);
    ASSERT_EQ(hatch->loops.size(), 1u);
    std::string kinds;
    for (const HatchEdge& e : hatch->loops[0].edges) {
      using Kind = HatchEdge::Kind;
      kinds += e.kind == Kind::Line     ? 'L'
               : e.kind == Kind::Arc    ? 'A'
               : e.kind == Kind::Spline ? 'S'
                                        : 'E';
      if (e.kind == Kind::Spline) {
        EXPECT_EQ(std::tuple(e.controlPoints.size(), e.knots.size()), std::tuple(4u, 8u));
      }
      if (e.kind == Kind::Arc) {
        EXPECT_DOUBLE_EQ(e.radius, 50);
      }
    }
    EXPECT_EQ(kinds, edges);
  }
}

TEST(ReaderWipeout, PlacementAndPolygonBoundaryInPixels) {
  const Drawing d = ReadFixture("masking/wipeout-polygon.dxf");
  const Entity& e = ModelEntities(d).at(0);
  EXPECT_EQ(e.props.layer, "Masque");
  const auto& w = std::get<Wipeout>(e.geometry);
  EXPECT_EQ(std::tuple(w.insert.x, w.insert.y, w.uPixel.x, w.vPixel.y, w.imageSize.x, w.imageSize.y,
                       w.displayFlags, w.clipping, w.clipType),
            std::tuple(100, 50, 40, 20, 1, 1, 7, true, 2));
  ASSERT_EQ(w.clipVertices.size(), 4u);
  EXPECT_EQ(std::tuple(w.clipVertices[1].x, w.clipVertices[1].y, w.clipVertices[2].x,
                       w.clipVertices[2].y),
            std::tuple(0.5, -0.5, 0, 0.5));
}

// An INSERT whose extension dictionary leads to a spatial filter of three
// points, enabled or not, under the key SPATIAL or another one.
TEST(ReaderInserts, ClipBoundaryThroughTheExtensionDictionary) {
  const std::pair<const char*, bool> cases[] = {
      {"insert-clipped.dxf", true},
      {"insert-clip-off.dxf", false},
      {"insert-other-filter.dxf", false},
      {"insert-no-objects.dxf", false},
  };
  for (const auto& [file, clipped] : cases) {
    SCOPED_TRACE(file);
    const Drawing d = ReadFixture(std::string("masking/") + file);
    const auto& insert = std::get<Insert>(ModelEntities(d).at(0).geometry);
    EXPECT_EQ(insert.block, "B");
    ASSERT_EQ(insert.clip != nullptr, clipped);
    if (clipped) {
      const std::vector<Vec2>& boundary = insert.clip->boundary;
      ASSERT_EQ(boundary.size(), 3u);
      EXPECT_DOUBLE_EQ(boundary[1].x, 5);
      EXPECT_DOUBLE_EQ(boundary[2].y, 5);
    }
  }
}

}  // namespace
}  // namespace sheafwork::embedded
