#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "embedded/automation/embedded_fixture.h"
#include "fakes/log_lines.h"

namespace sheafwork::embedded {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

using EmbeddedPlotTest = EmbeddedHostTest;

TEST_F(EmbeddedPlotTest, EachDeviceWritesItsKindOfOutputWhereItBelongs) {
  for (const char* name : {"PNG.pc3", "SVG.pc3", "HPGL2.pc3"}) {
    std::filesystem::copy_file(std::string(SHEAFWORK_SOURCE_DIR) + "/data/plotters/" + name,
                               data.path() / "plotters" / name);
  }
  const std::string folder = files.File("pdf");
  std::filesystem::create_directories(folder);
  data.Write("plotters/Dossier.pc3", "driver = pdf\noutput-folder = " + folder +
                                         "\npaper = ISO A3 (420.00 x 297.00 mm) | 420 x 297\n");
  struct Case {
    const char* layout;
    const char* device;
    std::string file;  ///< PlotToFile's name; empty for PlotToDevice
    OutputKind kind;
    std::string output;  ///< the file written, or the printer
  };
  const Case cases[] = {
      // The model tab plots through the device given, with the model's name.
      {"Objet", "PDF.pc3", "", OutputKind::Pdf, files.File("Plan-Objet.pdf")},
      // A name without an extension gets the device's.
      {"Objet", "PDF.pc3", files.File("sortie"), OutputKind::Pdf, files.File("sortie.pdf")},
      {"Objet", "PDF.pc3", files.File("sortie.PDF"), OutputKind::Pdf, files.File("sortie.PDF")},
      {"Coupe", "PNG.pc3", "", OutputKind::Png, files.File("Plan-Coupe.png")},
      {"Coupe", "SVG.pc3", "", OutputKind::Svg, files.File("Plan-Coupe.svg")},
      {"Coupe", "HPGL2.pc3", "", OutputKind::Hpgl, files.File("Plan-Coupe.plt")},
      // A configuration's output folder wins.
      {"Coupe", "Dossier.pc3", "", OutputKind::Pdf, folder + "/Plan-Coupe.pdf"},
      {"Objet", "Bureau-HP", "", OutputKind::Printer, "Bureau-HP"},
      // A printer's plot to a file is a PDF file.
      {"Coupe", "Bureau-HP", files.File("imprimante"), OutputKind::Pdf,
       files.File("imprimante.pdf")},
  };
  auto doc = OpenPlan();
  auto plot = doc->GetPlot();
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.device) + " " + c.file);
    plots.clear();
    Show(*doc, c.layout);
    ASSERT_TRUE(c.file.empty() ? plot->PlotToDevice(c.device) : plot->PlotToFile(c.file, c.device));
    ASSERT_EQ(plots.size(), 1u);
    EXPECT_EQ(plots[0].output, c.kind);
    const bool printer = c.kind == OutputKind::Printer;
    EXPECT_EQ(printer ? plots[0].printerName : plots[0].outputPath, c.output);
    EXPECT_THAT(HostLogLines().back(),
                HasSubstr((printer ? "sortie imprimante " : "sortie ") + c.output));
    // A layout's own sheet stays, even though the device does not offer it.
    if (c.layout == std::string("Coupe")) {
      EXPECT_EQ(plots[0].settings.mediaName, "Feuille maison");
      EXPECT_DOUBLE_EQ(plots[0].settings.paperWidth, 500);
    }
  }
}

TEST_F(EmbeddedPlotTest, FailedPlotsReturnFalseWithTheirReasonInTheHostLog) {
  data.Write("plotters/Casse.pc3", "driver = pdf\n");
  auto doc = OpenPlan();
  auto plot = doc->GetPlot();
  Show(*doc, "Coupe");
  EXPECT_FALSE(plot->PlotToDevice("Absent.pc3"));
  EXPECT_FALSE(plot->PlotToDevice("Casse.pc3"));
  EXPECT_FALSE(plot->PlotToFile(files.File("absent/x.pdf"), "PDF.pc3"));
  plotFailure = "police introuvable";
  EXPECT_FALSE(plot->PlotToDevice("PDF.pc3"));
  EXPECT_TRUE(plots.empty());

  const std::string start = "Échec du tracé : dessin " + planPath + ", présentation Coupe, ";
  const auto log = HostLogLines();
  ASSERT_EQ(log.size(), 4u);
  EXPECT_EQ(log[0],
            start + "périphérique Absent.pc3 : périphérique de traçage introuvable : Absent.pc3");
  EXPECT_THAT(log[1], HasSubstr("Casse.pc3 : aucun papier"));
  EXPECT_THAT(log[2], HasSubstr("dossier de sortie introuvable : " + files.File("absent")));
  EXPECT_EQ(log[3], start + "périphérique PDF.pc3 : police introuvable");
  EXPECT_EQ(display->failures, log);
}

TEST_F(EmbeddedPlotTest, WhatAPlotLeftOutIsLoggedAndShownByKind) {
  auto doc = OpenPlan(
      ReadDxfFile(std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/dxf/entities/undrawn.dxf"));
  using Kinds = std::vector<std::pair<std::string, std::int32_t>>;
  EXPECT_EQ(doc->UndrawnEntities(), (Kinds{{"MLINE", 2}, {"TOLERANCE", 1}}));
  auto plot = doc->GetPlot();
  ASSERT_TRUE(plot->PlotToFile(files.File("objet.pdf"), "PDF.pc3"));  // the model tab
  const auto log = HostLogLines();
  ASSERT_EQ(log.size(), 2u);
  EXPECT_EQ(log[1],
            "Entités non tracées (types que l'hôte ne sait pas tracer) : MLINE (2), TOLERANCE (1)"
            " (dessin " +
                planPath + ", présentation Objet)");
  EXPECT_EQ(display->notices, std::vector<std::string>{log[1]});
  // A paper layout without viewports does not show them: nothing to say.
  Show(*doc, doc->GetLayouts()->Item(1)->Name());
  ASSERT_TRUE(plot->PlotToFile(files.File("papier.pdf"), "PDF.pc3"));
  EXPECT_EQ(HostLogLines().size(), 3u);
  EXPECT_EQ(display->notices.size(), 1u);
}

TEST_F(EmbeddedPlotTest, BatchModeDrivesTheProgressDisplayUntilCancelled) {
  auto doc = OpenPlan();
  auto plot = doc->GetPlot();
  EXPECT_TRUE(plot->SheafworkProgress());
  std::int16_t count = 2;
  plot->StartBatchMode(count);
  Show(*doc, "Présentation1");
  plot->PlotToDevice(std::nullopt);
  // Progress is the host's, whichever document's plot object reads it.
  EXPECT_TRUE(Host()->ActiveDocument()->GetPlot()->SheafworkProgress());
  display->cancel = true;
  EXPECT_FALSE(plot->SheafworkProgress());
  EXPECT_FALSE(plot->SheafworkProgress());
  EXPECT_THAT(display->events, ElementsAre("start 2", "1/2 Plan.dxf Présentation1", "finish"));

  // A new batch starts afresh; switching progress off ends it.
  display->cancel = false;
  plot->StartBatchMode(count);
  EXPECT_TRUE(plot->SheafworkProgress());
  plot->SetSheafworkProgress(false);
  EXPECT_FALSE(plot->SheafworkProgress());
  EXPECT_EQ(display->events.back(), "finish");
  EXPECT_EQ(ErrorOf([&] { plot->SetNumberOfCopies(0); }).number(), 5);
}

TEST(ConsoleProgressDisplayTest, DrawsABarOnlyOnATerminalAndAlwaysNamesFailures) {
  std::ostringstream pipe;
  auto quiet = ConsoleProgressDisplay(pipe, false);
  quiet->Start(2);
  quiet->Step("Plan.dxf", "Présentation1", 1, 2);
  quiet->PlotFailed("échec");
  quiet->Finish();
  EXPECT_EQ(pipe.str(), "sheafwork: échec\n");
  EXPECT_FALSE(quiet->Cancelled());

  std::ostringstream terminal;
  auto bar = ConsoleProgressDisplay(terminal, true);
  bar->Start(2);
  bar->Step("Plan.dxf", "Présentation1", 2, 2);
  EXPECT_THAT(terminal.str(),
              HasSubstr("[###############               ] 2/2 Plan.dxf - Présentation1"));
  bar->Finish();
  EXPECT_TRUE(terminal.str().ends_with("\r\033[K"));
}

}  // namespace
}  // namespace sheafwork::embedded
