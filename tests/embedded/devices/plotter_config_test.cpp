// Plotter configurations read from their files, and devices found by name.

#include "embedded/devices/plotter_config.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>

#include "embedded/devices/device.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

TEST(PlotterConfigTest, DefaultsFollowTheDriver) {
  const PlotterConfig hpgl = ParsePlotterConfig("driver = hpgl\npaper = A | 10 x 10\n", "h.pc3");
  EXPECT_EQ(std::tuple(hpgl.extension, hpgl.defaultPaper, hpgl.resolutionDpi),
            std::tuple("plt", "A", 300));

  const PlotterConfig printer = ParsePlotterConfig("driver = printer\nprinter = Bureau\n", "p.pc3");
  EXPECT_EQ(std::tie(printer.printer, printer.papers),
            std::tuple("Bureau", StandardPrinterPapers()));
  EXPECT_NE(printer.FindPaper("ISO A4 (210.00 x 297.00 mm)"), nullptr);
}

TEST(PlotterConfigTest, ABadFileIsNamedWithTheLineAndTheFault) {
  for (const auto& row : testing::ReadTestTable("devices/bad/cases.tsv")) {
    SCOPED_TRACE(row.where);
    const std::string file = row[0] + ".pc3";
    const std::string place = row[1] != "-" ? file + ", " + row[1] + " :" : file + " :";
    EXPECT_THAT([&] { ReadPlotterConfigFile(testing::TestData("devices/bad/" + file)); },
                ThrowsMessage<DeviceError>(AllOf(HasSubstr(place), HasSubstr(row[2]))));
  }
}

// A configuration of many papers reads in time proportional to its size. At
// 400 000 papers a reading that compares each new paper with those before
// takes minutes, beyond the test's time limit; a linear one, a second.
TEST(PlotterConfigTest, ManyPapersAreReadInLinearTime) {
  constexpr int kPapers = 400000;
  std::string text = "driver = pdf\n";
  text.reserve(static_cast<std::size_t>(kPapers) * 40);
  for (int i = 0; i < kPapers; ++i) {
    text +=
        "paper = Feuille " + std::to_string(i) + " | " + std::to_string(100 + i % 900) + " x 200\n";
  }
  testing::TempFolder folder;
  const std::string path = folder.Write("many.pc3", text);
  const PlotterConfig config = ReadPlotterConfigFile(path);
  ASSERT_EQ(config.papers.size(), static_cast<std::size_t>(kPapers));
  EXPECT_EQ(config.defaultPaper, "Feuille 0");

  // A name given twice is still found, on its line.
  text += "paper = Feuille 17 | 100 x 100\n";
  EXPECT_THAT([&] { ParsePlotterConfig(text, "many.pc3"); },
              ThrowsMessage<DeviceError>(AllOf(HasSubstr("ligne " + std::to_string(kPapers + 2)),
                                               HasSubstr("Feuille 17"))));
}

TEST(DeviceLookupTest, OtherNamesArePrintersOfTheSystem) {
  testing::TempFolder folder;
  std::filesystem::create_directories(folder.path() / "un");
  // Blanks around the folders of the path and empty entries are passed over.
  const std::string searchPath =
      " " + folder.File("vide") + " ;" + folder.File("un") + ";;" + folder.File("deux");
  const std::vector<PrinterInfo> printers = {{"Bureau-HP", "HP LaserJet 4", "ipp://bureau"}};
  const auto printer = FindPlotDevice("Bureau-HP", searchPath, printers);
  ASSERT_TRUE(printer);
  EXPECT_EQ(std::tuple(printer->WritesFiles(), printer->PrinterName(), printer->config.papers,
                       printer->config.description),
            std::tuple(false, "Bureau-HP", StandardPrinterPapers(), "HP LaserJet 4"));
  EXPECT_FALSE(FindPlotDevice("bureau-hp", searchPath, printers));
  EXPECT_FALSE(FindPlotDevice("", searchPath, printers));

  folder.Write("un/Salle.pc3", "driver = printer\nprinter = Bureau-HP\n");
  const auto configured = FindPlotDevice("Salle.pc3", searchPath, printers);
  ASSERT_TRUE(configured);
  EXPECT_EQ(std::tuple(configured->WritesFiles(), configured->PrinterName()),
            std::tuple(false, "Bureau-HP"));
}

}  // namespace
}  // namespace sheafwork::embedded
