// Finding a table along the plot-style search path.

#include <gtest/gtest.h>

#include <filesystem>

#include "embedded/plotstyle/lookup.h"
#include "fakes/temp_folder.h"

namespace sheafwork::embedded {
namespace {

namespace fs = std::filesystem;
using sheafwork::testing::TempFolder;

class PlotStyleLookupTest : public ::testing::Test {
 protected:
  PlotStyleLookupTest() {
    fs::create_directories(data_ / "plotstyles");
    fs::create_directories(user_ / "plotstyles");
    path_ = (data_ / "plotstyles").string() + ";" + (user_ / "plotstyles").string();
  }
  std::string Put(const fs::path& folder, const std::string& name) {
    return temp_.Write((folder / "plotstyles" / name).lexically_relative(temp_.path()).string(),
                       "x");
  }

  TempFolder temp_;
  fs::path data_ = temp_.path() / "data";
  fs::path user_ = temp_.path() / "user";
  std::string path_;
};

TEST_F(PlotStyleLookupTest, DataFolderFirstThenUserFolder) {
  const std::string inUser = Put(user_, "a.ctb");
  EXPECT_EQ(FindPlotStyleFile("a.ctb", path_), inUser);
  const std::string inData = Put(data_, "a.ctb");
  EXPECT_EQ(FindPlotStyleFile("a.ctb", path_), inData);
  EXPECT_EQ(FindPlotStyleFile("b.ctb", path_), std::nullopt);
  EXPECT_EQ(FindPlotStyleFile("", path_), std::nullopt);
  EXPECT_EQ(FindPlotStyleFile("a.ctb", ""), std::nullopt);
}

TEST_F(PlotStyleLookupTest, NamesFromOtherSystemsAndOtherLetterCases) {
  const std::string mono = Put(user_, "monochrome.ctb");
  EXPECT_EQ(FindPlotStyleFile("Monochrome.CTB", path_), mono);
  EXPECT_EQ(FindPlotStyleFile("C:\\Styles\\monochrome.ctb", path_), mono);
  // A full path that exists is taken as it is, wherever it is.
  const std::string elsewhere = temp_.Write("ailleurs.ctb", "x");
  EXPECT_EQ(FindPlotStyleFile(elsewhere, path_), elsewhere);
  // A full path that does not exist falls back to its file name.
  EXPECT_EQ(FindPlotStyleFile((temp_.path() / "gone" / "monochrome.ctb").string(), path_), mono);
  // A folder of that name is not a table.
  fs::create_directories(data_ / "plotstyles" / "dossier.ctb");
  EXPECT_EQ(FindPlotStyleFile("dossier.ctb", path_), std::nullopt);
}

TEST(PlotStyleKindTest, NamedTablesAreTheStbFiles) {
  EXPECT_TRUE(IsNamedPlotStyleTable("acad.stb"));
  EXPECT_TRUE(IsNamedPlotStyleTable("C:\\x\\Styles.STB"));
  EXPECT_FALSE(IsNamedPlotStyleTable("acad.ctb"));
  EXPECT_FALSE(IsNamedPlotStyleTable("stb"));
}

}  // namespace
}  // namespace sheafwork::embedded
