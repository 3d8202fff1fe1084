// `sheafwork plot` of DWG drawings with no variable set: the converter the
// build put beside the program, one conversion per drawing, and a drawing it
// cannot read failing its row only.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "e2e/program.h"
#include "fakes/cups_queue.h"

namespace sheafwork::e2e {
namespace {

namespace fs = std::filesystem;

// R14 to 2018 with every paper layout, two sheets each (the R14 drawing
// converts with two, where the CAD program's own export has one), and a
// truncated drawing that the converter cannot read, on its own layout so that
// the counting pass does not open it: no sheet. Names in
// tests/data/dwg/samples, without extension.
constexpr const char* kDrawings[] = {"example_r14",  "example_2000", "example_2004",
                                     "truncated",    "example_2007", "example_2010",
                                     "example_2013", "example_2018"};

TEST_F(ExampleListTest, PlotsEveryLayoutOfDwgDrawingsOfEachRelease) {
  if (std::system("command -v node >/dev/null 2>&1") != 0) {
    GTEST_SKIP() << "Node.js (node) is not installed: DWG not tested";
  }
  for (const std::string name : kDrawings) {
    const std::string layout = name == "truncated" ? "Layout1" : "Toutes les présentations";
    AddRow(Fixture("dwg/samples/" + name + ".dwg"),
           " --layout '" + layout + "' --device PDF.pc3 --plot-file " + Quoted(Out(name + ".pdf")));
  }
  SetErrorLog(folder_.File("erreurs.log"));

  // The run's own temporary folder, to see that it leaves nothing there.
  const std::string temporary = folder_.File("tmp");
  fs::create_directories(temporary);
  const ProgramRun run = RunList("plot", "", "TMPDIR=" + Quoted(temporary));
  EXPECT_EQ(run.status, 1) << run.err;  // the truncated drawing's row
  // The converter's reason names the drawing on stderr.
  EXPECT_NE(run.err.find("LibreDWG ne sait pas lire ce dessin"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("truncated.dwg"), std::string::npos) << run.err;

  for (const std::string name : kDrawings) {
    SCOPED_TRACE(name);
    int sheets = 0;
    for (const std::string& file : FilesIn(out_)) {
      if (file.rfind(name, 0) != 0) continue;
      ++sheets;
      EXPECT_EQ(testing::PdfPageSizes(Out(file)).size(), 1u) << file;
    }
    EXPECT_EQ(sheets, name == "truncated" ? 0 : 2);
  }
  // Nothing of the conversions is left in the temporary folder.
  EXPECT_TRUE(fs::is_empty(temporary));
}

}  // namespace
}  // namespace sheafwork::e2e
