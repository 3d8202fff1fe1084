// The program and its Qt module: the program links no Qt of its own and
// plots PDF without the module; painted rows and the desktop name the
// module and why it did not load.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "e2e/program.h"
#include "fakes/cups_queue.h"

namespace sheafwork::e2e {
namespace {

namespace fs = std::filesystem;
using ::testing::AnyOf;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::StartsWith;

// The libraries the dynamic loader maps with the ELF file `path`, as
// readelf(1) lists them.
std::vector<std::string> NeededLibraries(const std::string& path) {
  int status = -1;
  const std::string dynamic = testing::RunCommand("readelf -d " + Quoted(path), status);
  EXPECT_EQ(status, 0) << dynamic;
  std::vector<std::string> needed;
  for (const std::string& line : testing::SplitLines(dynamic)) {
    const std::size_t name = line.find("(NEEDED)");
    if (name == std::string::npos) continue;
    const std::size_t open = line.find('[', name);
    needed.push_back(line.substr(open + 1, line.find(']', open) - open - 1));
  }
  return needed;
}

// Every library the program needs is loaded at each start, a plot or not:
// Qt lives in the module, libcups, fontconfig and HarfBuzz are opened when
// first used.
TEST(QtModuleTest, TheProgramLinksNoQtItsModuleDoes) {
  const std::vector<std::string> program = NeededLibraries(SHEAFWORK_EXE);
  const std::vector<std::string> module =
      NeededLibraries((fs::path(SHEAFWORK_EXE).parent_path() / "sheafwork-qt.so").string());
  ASSERT_FALSE(program.empty());
  EXPECT_THAT(module,
              IsSupersetOf({"libQt6Widgets.so.6", "libQt6PrintSupport.so.6", "libQt6Svg.so.6"}));
  EXPECT_THAT(program, Each(Not(AnyOf(StartsWith("libQt6"), StartsWith("libcups"),
                                      StartsWith("libfontconfig"), StartsWith("libharfbuzz")))));
}

// A copy of the built program with its data files, without the module:
// PDF rows plot while painted rows of the same list fail, named; the
// desktop does not start and says which file is missing.
using WithoutModule = ExampleListTest;

TEST_F(WithoutModule, PdfRowsPlotWhilePaintedRowsAndTheDesktopNameTheModule) {
  const fs::path built = fs::path(SHEAFWORK_EXE).parent_path();
  const fs::path copy = folder_.path() / "programme";
  fs::create_directories(copy);
  for (const auto& entry : fs::directory_iterator(built)) {
    if (entry.is_directory() && entry.path().filename() != "CMakeFiles") {
      fs::copy(entry.path(), copy / entry.path().filename(), fs::copy_options::recursive);
    }
  }
  fs::copy_file(SHEAFWORK_EXE, copy / "sheafwork");
  const std::string exe = (copy / "sheafwork").string();
  const std::string module = (copy / "sheafwork-qt.so").string();
  const std::string notLoaded =
      module + " n'a pas pu être chargé (" + module + ": cannot open shared object file";

  const std::string rdc = Plan("rez-de-chaussee.dxf");
  AddRow(rdc, " --layout 'Plan A3' --device PNG.pc3 --plot-file " + Quoted(Out("rdc.png")));
  AddRow(rdc, " --layout 'Plan A3' --device PDF.pc3 --plot-file " + Quoted(Out("rdc.pdf")));
  ProgramRun run = RunList("plot", "", "", exe);
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_FALSE(PlotOutput(Out("rdc.pdf")).empty()) << run.err;
  EXPECT_TRUE(PlotOutput(Out("rdc.png")).empty());
  // The embedded host reports why the row failed.
  EXPECT_THAT(run.err,
              HasSubstr("la sortie PNG est indisponible : le module de dessin " + notLoaded));

  run = Sheafwork("", folder_, "", exe);
  EXPECT_NE(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr("sheafwork: l'application de bureau ne peut pas démarrer : le "
                                 "module " +
                                 notLoaded));
}

}  // namespace
}  // namespace sheafwork::e2e
