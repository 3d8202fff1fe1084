// The reader over small drawings: layouts, page setups, where entities go,
// tables and the text encodings.

#include "embedded/dxf/reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "embedded/dxf/dxf_text.h"

namespace sheafwork::embedded {
namespace {

using testing::Dictionary;
using testing::EndOfFile;
using testing::Header;
using testing::Section;
using testing::Tags;

std::string BlockRecords() {
  std::string records;
  for (const auto& [handle, name, layout] :
       std::vector<std::tuple<const char*, const char*, const char*>>{{"1F", "*Model_Space", "22"},
                                                                      {"58", "*Paper_Space", "59"},
                                                                      {"70", "*Paper_Space7", "71"},
                                                                      {"80", "Door", "0"}}) {
    records += Tags({{0, "BLOCK_RECORD"},
                     {5, handle},
                     {330, "1"},
                     {100, "AcDbSymbolTableRecord"},
                     {100, "AcDbBlockTableRecord"},
                     {2, name},
                     {340, layout}});
  }
  return Section("TABLES",
                 Tags({{0, "TABLE"}, {2, "BLOCK_RECORD"}}) + records + Tags({{0, "ENDTAB"}}));
}

// A LAYOUT whose plot-settings part and layout part both use codes 1, 70 and
// 330, the first 330 being the owning dictionary; no block record when
// `record` is empty.
std::string LayoutObject(const char* handle, const char* name, const char* tab, const char* record,
                         const char* flags) {
  return Tags({{0, "LAYOUT"},
               {5, handle},
               {330, "1A"},
               {100, "AcDbPlotSettings"},
               {1, "applied setup"},
               {2, "DWG To PDF.pc3"},
               {4, "ISO_A3"},
               {44, "420"},
               {45, "297"},
               {70, flags},
               {100, "AcDbLayout"},
               {1, name},
               {70, "1"},
               {71, tab},
               {10, "-20"},
               {20, "-7.5"},
               {11, "400"},
               {21, "289.5"}}) +
         (record[0] != '\0' ? Tags({{330, record}}) : std::string());
}

std::string Objects() {
  return Section(
      "OBJECTS",
      Dictionary("C", "0", {{"ACAD_LAYOUT", "1A"}, {"ACAD_PLOTSETTINGS", "1B"}}) +
          Dictionary("1A", "C", {{"Layout2", "71"}, {"Model", "22"}, {"Layout1", "59"}}) +
          Dictionary("1B", "C", {{"Mise en page A", "90"}, {"Modèle A3", "91"}}) +
          LayoutObject("71", "Façade", "2", "70", "688") +
          LayoutObject("22", "Model", "0", "1F", "1712") +
          LayoutObject("59", "Plan", "1", "58", "688") +
          Tags({{0, "PLOTSETTINGS"},
                {5, "90"},
                {330, "1B"},
                {100, "AcDbPlotSettings"},
                {1, "Mise en page A"},
                {2, "Printer"},
                {70, "688"},
                {73, "1"}}) +
          Tags({{0, "PLOTSETTINGS"},
                {5, "91"},
                {330, "1B"},
                {100, "AcDbPlotSettings"},
                {1, "Modèle A3"},
                {70, "1712"}}) +
          // Not in the page-setup dictionary: an override kept elsewhere.
          Tags({{0, "PLOTSETTINGS"},
                {5, "92"},
                {330, "95"},
                {100, "AcDbPlotSettings"},
                {1, "Override"},
                {70, "688"}}));
}

std::string LayoutDrawing(const std::string& entities, const char* tileMode = "0") {
  // Release 2010: layouts, and UTF-8 for the accented names.
  return Header({{9, "$ACADVER"}, {1, "AC1024"}, {9, "$TILEMODE"}, {70, tileMode}}) +
         BlockRecords() +
         Section("BLOCKS", Tags({{0, "BLOCK"},
                                 {5, "7A"},
                                 {330, "70"},
                                 {100, "AcDbEntity"},
                                 {8, "0"},
                                 {100, "AcDbBlockBegin"},
                                 {2, "*Paper_Space7"},
                                 {70, "0"},
                                 {10, "0"},
                                 {20, "0"},
                                 {30, "0"},
                                 {3, "*Paper_Space7"},
                                 {1, ""}}) +
                               Tags({{0, "CIRCLE"},
                                     {5, "7B"},
                                     {330, "70"},
                                     {100, "AcDbEntity"},
                                     {8, "0"},
                                     {100, "AcDbCircle"},
                                     {10, "1"},
                                     {20, "2"},
                                     {40, "3"}}) +
                               Tags({{0, "ENDBLK"}, {5, "7C"}, {330, "70"}})) +
         Section("ENTITIES", entities) + Objects() + EndOfFile();
}

std::string LineOwnedBy(const char* handle, const char* owner, const char* paperFlag) {
  std::string owned = owner[0] != '\0' ? Tags({{330, owner}}) : std::string();
  return Tags({{0, "LINE"}, {5, handle}}) + owned +
         Tags({{100, "AcDbEntity"},
               {67, paperFlag},
               {8, "0"},
               {100, "AcDbLine"},
               {10, "0"},
               {20, "0"},
               {30, "0"},
               {11, "1"},
               {21, "1"},
               {31, "0"}});
}

std::vector<std::string> HandlesIn(const Drawing& d, std::string_view block) {
  std::vector<std::string> handles;
  const Block* b = d.FindBlock(block);
  if (b == nullptr) return handles;
  for (const Entity& e : b->entities) handles.push_back(e.handle);
  return handles;
}

TEST(ReaderLayouts, TakesEachCodeFromItsSubclassAndSortsByTabOrder) {
  const Drawing d = ReadDxf(LayoutDrawing(""), "plan.dxf");
  ASSERT_EQ(d.layouts.size(), 3u);
  EXPECT_EQ(d.layouts[0].name, "Model");
  EXPECT_EQ(d.layouts[1].name, "Plan");
  EXPECT_EQ(d.layouts[2].name, "Façade");
  EXPECT_EQ(d.layouts[0].blockName, "*Model_Space");
  EXPECT_EQ(d.layouts[1].blockName, "*Paper_Space");
  EXPECT_EQ(d.layouts[2].blockName, "*Paper_Space7");
  EXPECT_TRUE(d.layouts[0].IsModel());
  EXPECT_FALSE(d.layouts[2].IsModel());
  EXPECT_EQ(d.layouts[1].settings.pageSetupName, "applied setup");
  EXPECT_EQ(d.layouts[1].settings.flags, 688);  // not the layout's own 70
  EXPECT_EQ(d.layouts[1].settings.configName, "DWG To PDF.pc3");
  EXPECT_EQ(d.layouts[1].limMin.x, -20);
  EXPECT_EQ(d.layouts[1].limMax.y, 289.5);
  EXPECT_EQ(d.layouts[1].handle, "59");
  // $TILEMODE 0: the layout on *Paper_Space was active.
  EXPECT_EQ(d.layouts[d.activeLayout].name, "Plan");
  EXPECT_EQ(ReadDxf(LayoutDrawing("", "1"), "plan.dxf").activeLayout, 0u);
  // Every layout's block exists; the inactive layout keeps its entities.
  for (const Layout& l : d.layouts) EXPECT_NE(d.LayoutBlock(l), nullptr) << l.name;
  EXPECT_EQ(HandlesIn(d, "*Paper_Space7"), std::vector<std::string>{"7B"});
}

TEST(ReaderLayouts, OwnerDecidesTheSpaceBefore67) {
  const std::string entities = LineOwnedBy("A1", "58", "0") +  // paper by owner
                               LineOwnedBy("A2", "1F", "1") +  // model by owner
                               LineOwnedBy("A3", "", "1") +    // paper by 67
                               LineOwnedBy("A4", "", "0") +    // model by 67
                               LineOwnedBy("A5", "EE", "1");   // unknown owner: 67
  const Drawing d = ReadDxf(LayoutDrawing(entities), "plan.dxf");
  EXPECT_EQ(HandlesIn(d, "*Paper_Space"), (std::vector<std::string>{"A1", "A3", "A5"}));
  EXPECT_EQ(HandlesIn(d, "*Model_Space"), (std::vector<std::string>{"A2", "A4"}));
}

TEST(ReaderLayouts, PageSetupsComeOnlyFromTheirDictionary) {
  const Drawing d = ReadDxf(LayoutDrawing(""), "plan.dxf");
  ASSERT_EQ(d.pageSetups.size(), 2u);
  EXPECT_EQ(d.pageSetups[0].name, "Mise en page A");
  EXPECT_EQ(d.pageSetups[0].settings.configName, "Printer");
  EXPECT_EQ(d.pageSetups[0].settings.rotation, 1);
  EXPECT_FALSE(d.pageSetups[0].settings.Has(kModelType));
  EXPECT_EQ(d.pageSetups[1].name, "Modèle A3");
  EXPECT_TRUE(d.pageSetups[1].settings.Has(kModelType));
}

TEST(ReaderLayouts, BrokenLinksBetweenLayoutsAndBlockRecords) {
  // "Plan" names no block record but record 58 names it; "Coupe" is linked
  // nowhere and gets the paper-space block left over; no model layout is
  // listed at all.
  const std::string objects =
      Section("OBJECTS", Dictionary("C", "", {{"ACAD_LAYOUT", "1A"}}) +
                             Dictionary("1A", "", {{"Coupe", "71"}, {"Plan", "59"}}) +
                             LayoutObject("59", "Plan", "1", "", "688") +
                             LayoutObject("71", "Coupe", "2", "DEAD", "1712"));
  const Drawing d =
      ReadDxf(Header({{9, "$ACADVER"}, {1, "AC1015"}}) + BlockRecords() +
                  Section("BLOCKS",
                          Tags({{0, "BLOCK"}, {330, "70"}, {2, "*Paper_Space7"}, {0, "ENDBLK"}})) +
                  objects + EndOfFile(),
              "broken.dxf");
  ASSERT_EQ(d.layouts.size(), 3u);
  EXPECT_EQ(d.layouts[0].name, "Model");
  EXPECT_TRUE(d.layouts[0].IsModel());
  EXPECT_EQ(d.layouts[1].name, "Plan");
  EXPECT_EQ(d.layouts[1].blockName, "*Paper_Space");
  EXPECT_EQ(d.layouts[2].name, "Coupe");
  EXPECT_EQ(d.layouts[2].blockName, "*Paper_Space7");
  EXPECT_FALSE(d.layouts[2].IsModel());  // the block decides, not the flag
}

TEST(ReaderLayouts, ReleaseTwelveGetsSynthesisedLayouts) {
  const std::string r12 = Header({{9, "$ACADVER"},
                                  {1, "AC1009"},
                                  {9, "$TILEMODE"},
                                  {70, "0"},
                                  {9, "$PLIMMIN"},
                                  {10, "0"},
                                  {20, "0"},
                                  {9, "$PLIMMAX"},
                                  {10, "420"},
                                  {20, "297"}}) +
                          Section("BLOCKS", Tags({{0, "BLOCK"},
                                                  {8, "0"},
                                                  {2, "$MODEL_SPACE"},
                                                  {70, "0"},
                                                  {10, "0"},
                                                  {20, "0"},
                                                  {0, "ENDBLK"}})) +
                          Section("ENTITIES", Tags({{0, "LINE"},
                                                    {8, "0"},
                                                    {10, "0"},
                                                    {20, "0"},
                                                    {11, "1"},
                                                    {21, "1"},
                                                    {0, "LINE"},
                                                    {67, "1"},
                                                    {8, "0"},
                                                    {10, "0"},
                                                    {20, "0"},
                                                    {11, "1"},
                                                    {21, "1"}})) +
                          EndOfFile();
  const Drawing d = ReadDxf(r12, "old.dxf");
  ASSERT_EQ(d.layouts.size(), 2u);
  EXPECT_EQ(d.layouts[0].blockName, "*Model_Space");
  EXPECT_EQ(d.layouts[1].name, "Présentation1");
  EXPECT_EQ(d.activeLayout, 1u);
  EXPECT_EQ(d.LayoutBlock(d.layouts[0])->entities.size(), 1u);
  EXPECT_EQ(d.LayoutBlock(d.layouts[1])->entities.size(), 1u);
  EXPECT_EQ(d.header.acadVer, "AC1009");
}

TEST(ReaderLayouts, AFileOfEntitiesAloneIsADrawing) {
  const Drawing d = ReadDxf(
      Section("ENTITIES", Tags({{0, "POINT"}, {8, "Points"}, {10, "1"}, {20, "2"}})) + EndOfFile(),
      "min.dxf");
  ASSERT_EQ(d.layouts.size(), 1u);
  EXPECT_EQ(d.LayoutBlock(d.layouts[0])->entities.size(), 1u);
  // Layers named by entities exist, and so does layer 0.
  EXPECT_NE(d.FindLayer("POINTS"), nullptr);
  EXPECT_NE(d.FindLayer("0"), nullptr);
}

TEST(ReaderLayouts, BlocksKeepTheirBaseFlagsAndExternalPath) {
  const Drawing d = ReadDxf(Section("BLOCKS", Tags({{0, "BLOCK"},
                                                    {8, "Cadre"},
                                                    {2, "Fond"},
                                                    {70, "4"},
                                                    {10, "5"},
                                                    {20, "6"},
                                                    {1, "..\\fonds\\fond.dxf"},
                                                    {0, "ENDBLK"}})) +
                                EndOfFile(),
                            "xref.dxf");
  const Block* b = d.FindBlock("FOND");
  ASSERT_NE(b, nullptr);
  EXPECT_TRUE(b->IsXref());
  EXPECT_EQ(b->xrefPath, "..\\fonds\\fond.dxf");
  EXPECT_EQ(b->layer, "Cadre");
  EXPECT_EQ(b->base.y, 6);
}

// The seeds of the fuzzer hold the same drawing in ASCII and in binary form.
TEST(ReaderBinary, BinaryAndAsciiFormsReadAlike) {
  const auto read = [](const char* name) {
    const std::filesystem::path path =
        std::filesystem::path(SHEAFWORK_SOURCE_DIR) / "fuzz" / "corpus" / "dxf" / name;
    return ReadDxfFile(path.string());
  };
  const Drawing ascii = read("r12_ascii.dxf");
  const Drawing binary = read("r12_binary.dxf");
  ASSERT_EQ(ascii.layouts.size(), 2u);
  ASSERT_EQ(binary.layouts.size(), ascii.layouts.size());
  EXPECT_EQ(binary.activeLayout, ascii.activeLayout);
  EXPECT_EQ(binary.layers.size(), ascii.layers.size());
  EXPECT_FALSE(binary.FindLayer("Murs")->on);
  for (const char* block : {"*Model_Space", "*Paper_Space", "Porte"}) {
    ASSERT_NE(binary.FindBlock(block), nullptr) << block;
    ASSERT_EQ(binary.FindBlock(block)->entities.size(), ascii.FindBlock(block)->entities.size())
        << block;
  }
  const auto& text = std::get<Text>(binary.FindBlock("*Model_Space")->entities.at(2).geometry);
  EXPECT_EQ(text.text, "Cote %%d 45°");
  EXPECT_EQ(text.verticalAlign, 2);
  const auto& insert = std::get<Insert>(binary.FindBlock("*Model_Space")->entities.at(0).geometry);
  ASSERT_EQ(insert.attributes.size(), 1u);
  EXPECT_EQ(insert.attributes[0].text.text, "P1");
  const auto& vp = std::get<Viewport>(binary.FindBlock("*Paper_Space")->entities.at(0).geometry);
  EXPECT_EQ(vp.viewHeight, 300);
}

std::string LayerRecord(const char* name, const char* color, const char* flags, const char* plot) {
  return Tags({{0, "LAYER"},
               {5, "10"},
               {100, "AcDbSymbolTableRecord"},
               {100, "AcDbLayerTableRecord"},
               {2, name},
               {70, flags},
               {62, color},
               {6, "DASHED"},
               {290, plot},
               {370, "-3"}});
}

TEST(ReaderTables, LayerStates) {
  struct Case {
    const char* color;
    const char* flags;
    const char* plot;
    bool on, frozen, locked, plottable;
    int shownColor;
  };
  const std::vector<Case> cases = {
      {"1", "0", "1", true, false, false, true, 1}, {"-3", "0", "1", false, false, false, true, 3},
      {"5", "1", "1", true, true, false, true, 5},  {"5", "4", "1", true, false, true, true, 5},
      {"7", "5", "0", true, true, true, false, 7},  {"-7", "2", "0", false, false, false, false, 7},
  };
  for (const Case& c : cases) {
    const std::string text = Section("TABLES", Tags({{0, "TABLE"}, {2, "LAYER"}}) +
                                                   LayerRecord("Murs", c.color, c.flags, c.plot) +
                                                   Tags({{0, "ENDTAB"}})) +
                             EndOfFile();
    const Drawing d = ReadDxf(text, "layers.dxf");
    const Layer* layer = d.FindLayer("murs");
    ASSERT_NE(layer, nullptr);
    EXPECT_EQ(layer->on, c.on) << c.color << "/" << c.flags;
    EXPECT_EQ(layer->frozen, c.frozen) << c.color << "/" << c.flags;
    EXPECT_EQ(layer->locked, c.locked) << c.color << "/" << c.flags;
    EXPECT_EQ(layer->plottable, c.plottable) << c.plot;
    EXPECT_EQ(layer->color, c.shownColor) << c.color;
    EXPECT_EQ(layer->linetype, "DASHED");
    EXPECT_EQ(layer->lineweight, kLineweightDefault);
  }
}

TEST(ReaderTables, TextStylesKeepFontFilesAndShapeRecords) {
  const std::string text =
      Section("TABLES", Tags({{0, "TABLE"}, {2, "STYLE"}}) +
                            Tags({{0, "STYLE"},
                                  {2, "Cotes"},
                                  {70, "0"},
                                  {40, "0"},
                                  {41, "0.8"},
                                  {50, "15"},
                                  {71, "2"},
                                  {3, "romans.shx"},
                                  {4, "bigfont.shx"}}) +
                            Tags({{0, "STYLE"},
                                  {2, "Titre"},
                                  {70, "0"},
                                  {3, ""},
                                  {4, ""},
                                  {1001, "ACAD"},
                                  {1000, "Arial Narrow"},
                                  {1071, "0"}}) +
                            Tags({{0, "STYLE"}, {2, ""}, {70, "1"}, {3, "ltypeshp.shx"}}) +
                            Tags({{0, "ENDTAB"}})) +
      EndOfFile();
  const Drawing d = ReadDxf(text, "styles.dxf");
  ASSERT_EQ(d.textStyles.size(), 3u);
  const TextStyle* cotes = d.FindTextStyle("COTES");
  ASSERT_NE(cotes, nullptr);
  EXPECT_EQ(cotes->fontFile, "romans.shx");
  EXPECT_EQ(cotes->bigFontFile, "bigfont.shx");
  EXPECT_DOUBLE_EQ(cotes->widthFactor, 0.8);
  EXPECT_DOUBLE_EQ(cotes->oblique, 15);
  EXPECT_EQ(cotes->generation, 2);
  EXPECT_FALSE(cotes->isShapeFile);
  EXPECT_EQ(d.FindTextStyle("Titre")->trueTypeFamily, "Arial Narrow");
  EXPECT_TRUE(d.textStyles[2].isShapeFile);
  EXPECT_EQ(d.textStyles[2].fontFile, "ltypeshp.shx");
}

TEST(ReaderTables, ViewsLinetypesAndTheActiveViewport) {
  const std::string text = Section("TABLES", Tags({{0, "TABLE"},
                                                   {2, "VPORT"},
                                                   {0, "VPORT"},
                                                   {2, "*ACTIVE"},
                                                   {12, "50"},
                                                   {22, "40"},
                                                   {40, "80"},
                                                   {41, "1.5"},
                                                   {51, "10"},
                                                   {0, "VPORT"},
                                                   {2, "*Active"},
                                                   {12, "-1"},
                                                   {0, "ENDTAB"}}) +
                                                 Tags({{0, "TABLE"},
                                                       {2, "LTYPE"},
                                                       {0, "LTYPE"},
                                                       {2, "DASHDOT"},
                                                       {3, "_ . _"},
                                                       {73, "3"},
                                                       {40, "2"},
                                                       {49, "1"},
                                                       {74, "0"},
                                                       {49, "-0.5"},
                                                       {74, "0"},
                                                       {49, "0"},
                                                       {74, "0"},
                                                       {0, "ENDTAB"}}) +
                                                 Tags({{0, "TABLE"},
                                                       {2, "VIEW"},
                                                       {0, "VIEW"},
                                                       {2, "Coupe"},
                                                       {70, "1"},
                                                       {40, "30"},
                                                       {41, "60"},
                                                       {10, "5"},
                                                       {20, "6"},
                                                       {0, "ENDTAB"}})) +
                           EndOfFile();
  const Drawing d = ReadDxf(text, "tables.dxf");
  ASSERT_TRUE(d.activeView.has_value());
  EXPECT_EQ(d.activeView->center.x, 50);
  EXPECT_EQ(d.activeView->height, 80);
  EXPECT_EQ(d.activeView->aspect, 1.5);
  EXPECT_EQ(d.activeView->twist, 10);
  const Linetype* lt = d.FindLinetype("dashdot");
  ASSERT_NE(lt, nullptr);
  EXPECT_EQ(lt->dashes, (std::vector<double>{1, -0.5, 0}));
  const View* v = d.FindView("Coupe");
  ASSERT_NE(v, nullptr);
  EXPECT_TRUE(v->paperSpace);
  EXPECT_EQ(v->width, 60);
  EXPECT_EQ(v->center.y, 6);
}

TEST(ReaderText, DecodesByReleaseAndUnicodeEscapes) {
  struct Case {
    const char* version;
    std::string raw;
    std::string expected;
  };
  const std::vector<Case> cases = {
      {"AC1018", "45\xB0 \xE9t\xE9", "45° été"},
      {"AC1021", "45\xC2\xB0 \xC3\xA9t\xC3\xA9", "45° été"},
      {"AC1021", "bad \xFF byte", "bad \xEF\xBF\xBD byte"},
      {"AC1015", "90\\U+00B0 \\U+2300", "90° ⌀"},
      {"AC1024", "\\U+00b0 and \\U+12 and %%d", "° and \\U+12 and %%d"},
      {"AC1009", "{\\fArial|b1;x}\\P", "{\\fArial|b1;x}\\P"},
  };
  for (const Case& c : cases) {
    const std::string text =
        Header({{9, "$ACADVER"}, {1, c.version}, {9, "$DWGCODEPAGE"}, {3, "ANSI_1252"}}) +
        Section("ENTITIES", Tags({{0, "TEXT"}, {8, "0"}, {1, c.raw}})) + EndOfFile();
    const Drawing d = ReadDxf(text, "text.dxf");
    const auto& text0 = std::get<Text>(d.FindBlock("*Model_Space")->entities.at(0).geometry);
    EXPECT_EQ(text0.text, c.expected) << c.version << " " << c.raw;
  }
}

TEST(ReaderHeader, ReadsTheVariablesTheHostUses) {
  const std::string text = Header({{9, "$ACADVER"},    {1, "AC1015"},         {9, "$INSUNITS"},
                                   {70, "4"},          {9, "$EXTMIN"},        {10, "1e+20"},
                                   {20, "1e+20"},      {30, "1e+20"},         {9, "$EXTMAX"},
                                   {10, "-1e+20"},     {20, "-1e+20"},        {30, "-1e+20"},
                                   {9, "$LIMMAX"},     {10, "841"},           {20, "594"},
                                   {9, "$LTSCALE"},    {40, "  2.5"},         {9, "$FILLMODE"},
                                   {70, "0"},          {9, "$PSLTSCALE"},     {70, "0"},
                                   {9, "$STYLESHEET"}, {1, "monochrome.ctb"}, {9, "$PDMODE"},
                                   {70, "35"}}) +
                           EndOfFile();
  const Drawing d = ReadDxf(text, "h.dxf");
  EXPECT_EQ(d.header.insUnits, 4);
  EXPECT_FALSE(d.header.extMin.has_value());
  EXPECT_FALSE(d.header.extMax.has_value());
  EXPECT_EQ(d.header.limMax.x, 841);
  EXPECT_EQ(d.header.ltScale, 2.5);
  EXPECT_FALSE(d.header.fillMode);
  EXPECT_FALSE(d.header.psLtScale);
  EXPECT_EQ(d.header.styleSheet, "monochrome.ctb");
  EXPECT_EQ(d.header.pdMode, 35);

  const Drawing set = ReadDxf(
      Header({{9, "$EXTMIN"}, {10, "-5"}, {20, "2"}, {9, "$EXTMAX"}, {10, "10"}, {20, "20"}}) +
          EndOfFile(),
      "h.dxf");
  ASSERT_TRUE(set.header.extMin.has_value());
  EXPECT_EQ(set.header.extMin->x, -5);
  EXPECT_EQ(set.header.extMax->y, 20);
}

}  // namespace
}  // namespace sheafwork::embedded
