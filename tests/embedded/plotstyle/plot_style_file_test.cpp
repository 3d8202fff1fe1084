// Table files: a table written by another program (tests/data/plotstyle/other-writer), the
// shipped monochrome table and broken files; and what a table does to an object's colour and
// lineweight.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "embedded/plotstyle/plot_style_file.h"
#include "embedded/plotstyle/plot_style_table.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using ::testing::HasSubstr;

using sheafwork::testing::ReadTestData;
using sheafwork::testing::ReadTestTable;
using sheafwork::testing::TestData;

std::vector<unsigned char> Bytes(const std::string& path) {
  const std::string text = sheafwork::testing::TempFolder::Read(path);
  return {text.begin(), text.end()};
}

// `read` throws a PlotStyleError whose message holds each of `parts`.
template <typename Read>
void ExpectRefused(Read read, std::initializer_list<std::string> parts, const std::string& what) {
  try {
    read();
    ADD_FAILURE() << what << ": read without error";
  } catch (const PlotStyleError& error) {
    for (const std::string& part : parts) EXPECT_THAT(error.what(), HasSubstr(part)) << what;
  }
}

// ez-wide.ctb: that program writes the header's three numbers 8 bytes wide.
TEST(PlotStyleReaderTest, ATableOfAnotherWriterIsReadAsWritten) {
  const std::string path = TestData("plotstyle/other-writer/ez-wide.ctb");
  const std::vector<unsigned char> bytes = Bytes(path);
  // The header's second and third numbers are the text and compressed sizes.
  const PlotStyleHeader header = ReadPlotStyleHeader(bytes, path);
  EXPECT_EQ(header.headerSize, 72u);
  EXPECT_EQ(header.headerSize + header.compressedSize, bytes.size());
  EXPECT_EQ(PlotStyleText(bytes, path).size() + 1, header.textSize);

  const PlotStyleTable table = ReadPlotStyleFile(path);
  EXPECT_EQ(table.description, "Table d'essai");
  const PlotStyleEntry& red = table.entries[0];
  EXPECT_EQ(red.PenRgb(), 0x0000FFu);
  EXPECT_EQ(red.screen, 50);
  EXPECT_EQ(table.EntryLineweightMm(red), 0.5);
  const PlotStyleEntry& yellow = table.entries[1];
  EXPECT_EQ(yellow.PenRgb(), 0x0AC81Eu);
  EXPECT_TRUE(yellow.colorPolicy & kPolicyGrayscale);
  const PlotStyleEntry& green = table.entries[2];
  EXPECT_EQ(green.PenRgb(), std::nullopt);
  ASSERT_TRUE(table.EntryLineweightMm(green).has_value());
  EXPECT_NEAR(*table.EntryLineweightMm(green), 0.33, 1e-9);
  EXPECT_EQ(table.entries[6].PenRgb(), 0x000000u);
  // Entries the program left alone keep the object's colour and lineweight.
  const PlotStyleEntry& blue = table.entries[4];
  EXPECT_EQ(blue.name, "Color_5");
  EXPECT_EQ(blue.PenRgb(), std::nullopt);
  EXPECT_EQ(table.EntryLineweightMm(blue), std::nullopt);
  EXPECT_EQ(blue.screen, 100);
}

TEST(PlotStyleWriterTest, ShippedMonochromeTableIsOursAndPlotsBlack) {
  const std::string path = std::string(SHEAFWORK_SOURCE_DIR) + "/data/plotstyles/monochrome.ctb";
  EXPECT_EQ(Bytes(path), WritePlotStyleTable(MonochromePlotStyleTable()))
      << "data/plotstyles/monochrome.ctb differs from what make_plot_styles writes";

  const PlotStyleTable table = ReadPlotStyleFile(path);
  for (int aci = 1; aci <= kPlotStyleCount; ++aci) {
    const PlotStylePen pen = table.Apply(aci, 0xFF8000, 0.35);
    ASSERT_EQ(pen.rgb, 0x000000u) << "colour " << aci;
    ASSERT_EQ(pen.lineweightMm, 0.35) << "colour " << aci;
  }
}

// Broken or missing files are refused with a message naming the file and the
// fault.
TEST(PlotStyleReaderTest, BrokenFilesNameTheFault) {
  const std::vector<unsigned char> good = WritePlotStyleTable(PlotStyleTable());

  struct Case {
    const char* what;
    std::vector<unsigned char> bytes;
    const char* expected;
  };
  std::vector<Case> cases;
  cases.push_back({"empty", {}, "en-tête tronqué"});
  cases.push_back({"header cut", {good.begin(), good.begin() + 55}, "en-tête tronqué"});
  std::vector<unsigned char> foreign = good;
  std::memcpy(foreign.data(), "GIF89a", 6);
  cases.push_back({"not a table", foreign, "signature absente"});
  cases.push_back({"body cut", {good.begin(), good.end() - 10}, "tronquées"});
  std::vector<unsigned char> garbled = good;
  for (std::size_t i = 60; i < 70; ++i) garbled[i] ^= 0x5A;
  cases.push_back({"bad zlib", garbled, "illisibles"});
  std::vector<unsigned char> lying = good;
  lying[52] = static_cast<unsigned char>(lying[52] + 1);  // text size one more
  cases.push_back({"wrong text size", lying, "annoncés"});
  const std::size_t textSize = ReadPlotStyleHeader(good, "").textSize;
  std::vector<unsigned char> longer = good;
  for (int i = 0; i < 4; ++i) {  // the text 100 bytes longer than announced
    longer[52 + i] = static_cast<unsigned char>(((textSize - 100) >> (8 * i)) & 0xFF);
  }
  const std::string longerMessage = "fait " + std::to_string(textSize) + " octets au lieu des " +
                                    std::to_string(textSize - 100) + " annoncés";
  cases.push_back({"longer text", longer, longerMessage.c_str()});
  std::vector<unsigned char> huge = good;
  huge[55] = 0x7F;
  cases.push_back({"huge text size", huge, "démesurée"});

  for (const Case& c : cases) {
    ExpectRefused([&] { ReadPlotStyleTable(c.bytes, "styles/bad.ctb"); },
                  {"styles/bad.ctb", c.expected}, c.what);
  }
  ExpectRefused([] { ReadPlotStyleFile("/nonexistent/folder/x.ctb"); },
                {"/nonexistent/folder/x.ctb", "lecture impossible"}, "missing file");
}

// The texts of tests/data/plotstyle/broken-text, each with one fault
// (faults.tsv there).
TEST(PlotStyleReaderTest, BrokenTextsNameTheLine) {
  for (const auto& row : ReadTestTable("plotstyle/broken-text/faults.tsv")) {
    const std::string text = ReadTestData("plotstyle/broken-text/" + row[0] + ".txt");
    ExpectRefused([&] { ParsePlotStyleText(text, "t.ctb"); }, {"t.ctb", row[1]}, row.where);
  }
}

TEST(PlotStyleTableTest, AppliesTheEntryOfTheColourNumber) {
  PlotStyleTable table;
  table.entries[0].color = EncodePlotStyleColor(0x0000FF);
  table.entries[0].lineweight = 13;  // 0.50 in the usual table
  table.entries[8].color = EncodePlotStyleColor(0x000000);
  table.entries[8].screen = 25;
  table.entries[2].colorPolicy = kPolicyGrayscale;
  table.entries[3].color = EncodePlotStyleColor(0x123456, kColorKindByLayer);
  table.entries[4].color = EncodePlotStyleColor(0xFF00FF, kColorKindIndex);
  table.entries[5].lineweight = 0;                  // 0.00 mm: the object's lineweight
  table.entries[6].color = kPlotStyleObjectColor2;  // the other "object colour" value
  table.entries[6].modeColor = EncodePlotStyleColor(0x00FF00);

  for (const auto& row : ReadTestTable("plotstyle/apply.tsv")) {
    std::istringstream object(row[1]);
    std::uint32_t rgb = 0;
    double mm = 0;
    object >> std::hex >> rgb >> std::dec >> mm;
    const PlotStylePen pen = table.Apply(std::stoi(row[0]), rgb, mm);
    char plotted[32];
    std::snprintf(plotted, sizeof plotted, "%06X %g", pen.rgb, pen.lineweightMm);
    EXPECT_EQ(plotted, row[2]) << row.where;
  }
}

}  // namespace
}  // namespace sheafwork::embedded
