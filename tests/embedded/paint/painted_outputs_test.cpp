// How the plot engine reaches the painted outputs: provided directly, or
// through a loader called once; a named error when neither gives them.

#include "embedded/render/painted_outputs.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "embedded/paint/painted_files.h"
#include "embedded/render/render_test_support.h"
#include "fakes/temp_folder.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;
using sheafwork::testing::TempFolder;

// Each test starts and ends with this copy's own painted outputs, as the
// other tests of the program expect them.
class PaintedOutputsTest : public ::testing::Test {
 protected:
  ~PaintedOutputsTest() override { SetPaintedOutputs(PaintOutputs()); }

  PlotJob Job(OutputKind kind, const std::string& name) const {
    PlotJob job = MakeJob(drawing_, ModelOf(drawing_), OneToOneSettings(100, 70));
    job.output = kind;
    job.outputPath = folder_.File(name);
    job.printerName = "traceur-absent";
    job.resolutionDpi = 50;
    return job;
  }

  const Drawing drawing_ = ReadTestDrawing("dxf/render/outputs.dxf");
  TempFolder folder_;
};

struct PaintedKind {
  OutputKind kind;
  const char* name;  // as the messages say it
};
constexpr PaintedKind kPaintedKinds[] = {{OutputKind::Png, "la sortie PNG"},
                                         {OutputKind::Svg, "la sortie SVG"},
                                         {OutputKind::Printer, "l'impression"}};

TEST_F(PaintedOutputsTest, WithoutThemPaintedJobsFailByNameWhilePdfAndHpglStillPlot) {
  SetPaintedOutputs({});
  for (const PaintedKind& k : kPaintedKinds) {
    const PlotJob job = Job(k.kind, "sortie");
    EXPECT_EQ(PlotFailure(job),
              std::string(k.name) + " est indisponible : ce programme n'a pas de module de dessin");
    EXPECT_FALSE(std::filesystem::exists(job.outputPath)) << k.name;
  }
  for (OutputKind kind : {OutputKind::Pdf, OutputKind::Hpgl}) {
    const PlotJob job = Job(kind, "plan.out");
    EXPECT_NO_THROW(RunPlotJob(job));
    EXPECT_GT(std::filesystem::file_size(job.outputPath), 0u);
    std::filesystem::remove(job.outputPath);
  }
}

// Stands for a module's output: fails with its own message.
bool RefusingOutput(const PlotJob& job, const SheetLayout&, std::string& failure) noexcept {
  failure = "refusé : " + job.outputPath;
  return false;
}

TEST_F(PaintedOutputsTest, ALoadedTableIsUsedForEachKindAndItsFailuresBecomePlotErrors) {
  int calls = 0;
  SetPaintedOutputsLoader([&calls] {
    ++calls;
    PaintedOutputsLoad load;
    load.module = "module";
    load.outputs = PaintOutputs();
    load.outputs.svg = &RefusingOutput;
    return load;
  });
  const PlotJob png = Job(OutputKind::Png, "plan.png");
  EXPECT_NO_THROW(RunPlotJob(png));
  EXPECT_EQ(TempFolder::Read(png.outputPath).substr(1, 3), "PNG");
  const PlotJob svg = Job(OutputKind::Svg, "plan.svg");
  EXPECT_EQ(PlotFailure(svg), "refusé : " + svg.outputPath);
  EXPECT_EQ(PlotFailure(Job(OutputKind::Printer, "")), "imprimante introuvable : traceur-absent");
  EXPECT_EQ(calls, 1);

  // Outputs set directly replace the loader's.
  SetPaintedOutputs({&RefusingOutput, nullptr, nullptr});
  EXPECT_EQ(PlotFailure(png), "refusé : " + png.outputPath);
  EXPECT_EQ(PlotFailure(svg),
            "la sortie SVG est indisponible : ce programme n'a pas de module de dessin");
}

}  // namespace
}  // namespace sheafwork::embedded
