#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "embedded/automation/embedded_fixture.h"
#include "fakes/log_lines.h"

namespace sheafwork::embedded {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class EmbeddedPlotTest : public EmbeddedHostTest {
 protected:
  /// Opens the sample drawing, active, with the host's log on.
  std::shared_ptr<host::Document> OpenPlan(const std::string& name = "Plan.dxf") {
    planPath = AddDrawing(name);
    auto doc = Open(planPath);
    doc->Activate();
    Host()->GetPreferences()->SetLogFileOn(true);
    return doc;
  }
  void Show(host::Document& doc, const std::string& layout) {
    auto layouts = doc.GetLayouts();
    for (std::int32_t i = 0; i < layouts->Count(); ++i) {
      if (layouts->Item(i)->Name() == layout) doc.SetActiveLayout(layouts->Item(i));
    }
  }
  std::vector<std::string> HostLog() const {
    return testing::TempFolder::Read((user.path() / "Plan_sheafwork.log").string()).empty()
               ? std::vector<std::string>{}
               : Lines(testing::TempFolder::Read((user.path() / "Plan_sheafwork.log").string()));
  }
  static std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
      if (line.ends_with('\r')) line.pop_back();
      lines.push_back(line);
    }
    return lines;
  }

  std::string planPath;
};

TEST_F(EmbeddedPlotTest, ALayoutsOwnPdfDeviceWritesBesideTheDrawing) {
  auto doc = OpenPlan();
  Show(*doc, "Présentation1");
  doc->GetLayers()->Item(1)->SetLayerOn(false);
  ASSERT_TRUE(doc->GetPlot()->PlotToDevice(std::nullopt));
  ASSERT_EQ(plots.size(), 1u);
  const CapturedPlot& plot = plots[0];
  EXPECT_EQ(plot.output, OutputKind::Pdf);
  EXPECT_EQ(plot.outputPath, files.File("Plan-Présentation1.pdf"));
  EXPECT_EQ(plot.layout, "Présentation1");
  EXPECT_EQ(plot.settings.mediaName, "ISO A3 (420.00 x 297.00 mm)");
  EXPECT_FALSE(plot.layers[1].on);  // the document's copy is plotted
  EXPECT_THAT(HostLog(), ElementsAre("Tracé : dessin " + planPath +
                                     ", présentation Présentation1, périphérique PDF.pc3, sortie " +
                                     files.File("Plan-Présentation1.pdf")));
}

TEST_F(EmbeddedPlotTest, PlotToFileAddsTheDevicesExtensionToANameWithoutOne) {
  auto doc = OpenPlan();
  auto plot = doc->GetPlot();
  ASSERT_TRUE(plot->PlotToFile(files.File("sortie"), "PDF.pc3"));
  ASSERT_TRUE(plot->PlotToFile(files.File("sortie.PDF"), "PDF.pc3"));
  // The model tab plots through the device given, with the model's name.
  ASSERT_TRUE(plot->PlotToDevice("PDF.pc3"));
  ASSERT_EQ(plots.size(), 3u);
  EXPECT_EQ(plots[0].outputPath, files.File("sortie.pdf"));
  EXPECT_EQ(plots[1].outputPath, files.File("sortie.PDF"));
  EXPECT_EQ(plots[2].outputPath, files.File("Plan-Objet.pdf"));
}

TEST_F(EmbeddedPlotTest, AConfigurationsOutputFolderWins) {
  const std::string out = files.File("pdf");
  std::filesystem::create_directories(out);
  data.Write("plotters/Dossier.pc3", "driver = pdf\noutput-folder = " + out +
                                         "\npaper = ISO A3 (420.00 x 297.00 mm) | 420 x 297\n");
  auto doc = OpenPlan();
  Show(*doc, "Coupe");
  ASSERT_TRUE(doc->GetPlot()->PlotToDevice("Dossier.pc3"));
  EXPECT_EQ(plots.at(0).outputPath, out + "/Plan-Coupe.pdf");
  // A layout's own sheet stays, even though the device does not offer it.
  EXPECT_EQ(plots.at(0).settings.mediaName, "Feuille maison");
  EXPECT_DOUBLE_EQ(plots.at(0).settings.paperWidth, 500);
}

TEST_F(EmbeddedPlotTest, APrinterDevicePrints) {
  auto doc = OpenPlan();
  ASSERT_TRUE(doc->GetPlot()->PlotToDevice("Bureau-HP"));
  ASSERT_EQ(plots.size(), 1u);
  EXPECT_EQ(plots[0].output, OutputKind::Printer);
  EXPECT_EQ(plots[0].printerName, "Bureau-HP");
  EXPECT_THAT(HostLog().at(0), HasSubstr("sortie imprimante Bureau-HP"));
}

TEST_F(EmbeddedPlotTest, EachFileDriverWritesItsKindOfFile) {
  for (const char* name : {"PNG.pc3", "SVG.pc3", "HPGL2.pc3"}) {
    std::filesystem::copy_file(std::string(SHEAFWORK_SOURCE_DIR) + "/data/plotters/" + name,
                               data.path() / "plotters" / name);
  }
  auto doc = OpenPlan();
  auto plot = doc->GetPlot();
  Show(*doc, "Coupe");
  ASSERT_TRUE(plot->PlotToDevice("PNG.pc3"));
  ASSERT_TRUE(plot->PlotToDevice("SVG.pc3"));
  ASSERT_TRUE(plot->PlotToDevice("HPGL2.pc3"));
  ASSERT_TRUE(plot->PlotToFile(files.File("imprimante"), "Bureau-HP"));
  ASSERT_EQ(plots.size(), 4u);
  EXPECT_EQ(plots[0].output, OutputKind::Png);
  EXPECT_EQ(plots[0].outputPath, files.File("Plan-Coupe.png"));
  EXPECT_EQ(plots[1].output, OutputKind::Svg);
  EXPECT_EQ(plots[1].outputPath, files.File("Plan-Coupe.svg"));
  EXPECT_EQ(plots[2].output, OutputKind::Hpgl);
  EXPECT_EQ(plots[2].outputPath, files.File("Plan-Coupe.plt"));
  // A printer's plot to a file is a PDF file.
  EXPECT_EQ(plots[3].output, OutputKind::Pdf);
  EXPECT_EQ(plots[3].outputPath, files.File("imprimante.pdf"));
}

TEST_F(EmbeddedPlotTest, FailedPlotsReturnFalseWithTheirReasonInTheHostLog) {
  data.Write("plotters/Casse.pc3", "driver = pdf\n");
  auto doc = OpenPlan();
  auto plot = doc->GetPlot();
  Show(*doc, "Coupe");
  EXPECT_FALSE(plot->PlotToDevice(std::nullopt));  // its device is "Aucun"
  EXPECT_FALSE(plot->PlotToDevice("Absent.pc3"));
  EXPECT_FALSE(plot->PlotToDevice("Casse.pc3"));
  EXPECT_FALSE(plot->PlotToFile(files.File("absent/x.pdf"), "PDF.pc3"));
  plotFailure = "police introuvable";
  EXPECT_FALSE(plot->PlotToDevice("PDF.pc3"));
  EXPECT_TRUE(plots.empty());

  const std::string start = "Échec du tracé : dessin " + planPath + ", présentation Coupe, ";
  const auto log = HostLog();
  ASSERT_EQ(log.size(), 5u);
  EXPECT_EQ(log[0], start + "périphérique Aucun : aucun périphérique de traçage (« Aucun »)");
  EXPECT_EQ(log[1],
            start + "périphérique Absent.pc3 : périphérique de traçage introuvable : Absent.pc3");
  EXPECT_THAT(log[2], HasSubstr("Casse.pc3 : aucun papier"));
  EXPECT_THAT(log[3], HasSubstr("dossier de sortie introuvable : " + files.File("absent")));
  EXPECT_EQ(log[4], start + "périphérique PDF.pc3 : police introuvable");
  EXPECT_EQ(display->failures, log);
}

TEST_F(EmbeddedPlotTest, SwitchingTheLogOffAndOnStartsAFreshLog) {
  auto doc = OpenPlan();
  auto plot = doc->GetPlot();
  auto preferences = Host()->GetPreferences();
  plot->PlotToDevice("Absent.pc3");
  plot->PlotToDevice("Absent.pc3");
  EXPECT_EQ(HostLog().size(), 2u);
  preferences->SetLogFileOn(false);
  plot->PlotToDevice("Absent.pc3");  // not logged
  EXPECT_EQ(HostLog().size(), 2u);
  preferences->SetLogFileOn(true);
  plot->PlotToDevice("Absent.pc3");
  EXPECT_EQ(HostLog().size(), 1u);
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
