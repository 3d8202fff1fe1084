// Plotter configurations read from their files, and devices found by name.

#include "embedded/devices/plotter_config.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <string>

#include "embedded/devices/device.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using ::testing::HasSubstr;

TEST(PlotterConfigTest, DefaultsFollowTheDriver) {
  const PlotterConfig hpgl = ParsePlotterConfig("driver = hpgl\npaper = A | 10 x 10\n", "h.pc3");
  EXPECT_EQ(hpgl.extension, "plt");
  EXPECT_EQ(hpgl.defaultPaper, "A");
  EXPECT_EQ(hpgl.resolutionDpi, 300);

  const PlotterConfig printer = ParsePlotterConfig("driver = printer\nprinter = Bureau\n", "p.pc3");
  EXPECT_EQ(printer.printer, "Bureau");
  EXPECT_EQ(printer.papers, StandardPrinterPapers());
  EXPECT_NE(printer.FindPaper("ISO A4 (210.00 x 297.00 mm)"), nullptr);
}

// tests/data/devices/bad/`file`.pc3 and what reading it must say.
struct BadConfig {
  const char* file;
  const char* line;  ///< "ligne N", or empty when the fault is the whole file's
  const char* what;  ///< part of the message
};

void PrintTo(const BadConfig& bad, std::ostream* out) { *out << bad.file; }

class BadPlotterConfigTest : public ::testing::TestWithParam<BadConfig> {};

TEST_P(BadPlotterConfigTest, NamesTheFileTheLineAndTheFault) {
  const BadConfig& bad = GetParam();
  const std::string file = std::string(bad.file) + ".pc3";
  try {
    ReadPlotterConfigFile(testing::TestData("devices/bad/" + file));
    FAIL() << "accepted: " << file;
  } catch (const DeviceError& error) {
    EXPECT_THAT(error.what(), HasSubstr(*bad.line ? file + ", " + bad.line + " :" : file + " :"));
    EXPECT_THAT(error.what(), HasSubstr(bad.what));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Errors, BadPlotterConfigTest,
    ::testing::Values(BadConfig{"no-equals-sign", "ligne 3", "clé = valeur"},
                      BadConfig{"unknown-driver", "ligne 1", "pilote inconnu « plume »"},
                      BadConfig{"unknown-key", "ligne 2", "clé inconnue « colour »"},
                      BadConfig{"driver-twice", "ligne 2", "clé « driver » répétée"},
                      BadConfig{"resolution-zero", "ligne 2", "résolution incorrecte"},
                      BadConfig{"paper-without-size", "ligne 2", "papier incorrect"},
                      BadConfig{"paper-negative", "ligne 2", "taille de papier incorrecte"},
                      BadConfig{"margins-too-wide", "ligne 2", "marges"},
                      BadConfig{"default-paper-absent", "ligne 2",
                                "papier par défaut « B » absent"},
                      BadConfig{"no-driver", "", "clé « driver » manquante"},
                      BadConfig{"printer-unnamed", "", "clé « printer » manquante"},
                      BadConfig{"not-utf8", "", "UTF-8"}),
    [](const ::testing::TestParamInfo<BadConfig>& info) {
      std::string name = info.param.file;
      std::replace(name.begin(), name.end(), '-', '_');
      return name;
    });

TEST(PlotterConfigTest, AFileThatCannotBeReadIsNamed) {
  testing::TempFolder folder;
  const std::string missing = folder.File("absent.pc3");
  try {
    ReadPlotterConfigFile(missing);
    FAIL();
  } catch (const DeviceError& error) {
    EXPECT_THAT(error.what(), HasSubstr(missing + " : lecture impossible"));
  }
  EXPECT_EQ(ReadPlotterConfigFile(folder.Write("ok.pc3", "driver = pdf\npaper = A | 10 x 10\n"))
                .papers.size(),
            1u);
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
  try {
    ParsePlotterConfig(text, "many.pc3");
    ADD_FAILURE() << "a repeated paper was accepted";
  } catch (const DeviceError& error) {
    EXPECT_THAT(error.what(), HasSubstr("ligne " + std::to_string(kPapers + 2)));
    EXPECT_THAT(error.what(), HasSubstr("Feuille 17"));
  }
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
  EXPECT_FALSE(printer->WritesFiles());
  EXPECT_EQ(printer->PrinterName(), "Bureau-HP");
  EXPECT_EQ(printer->config.papers, StandardPrinterPapers());
  EXPECT_EQ(printer->config.description, "HP LaserJet 4");
  EXPECT_FALSE(FindPlotDevice("bureau-hp", searchPath, printers));
  EXPECT_FALSE(FindPlotDevice("", searchPath, printers));

  folder.Write("un/Salle.pc3", "driver = printer\nprinter = Bureau-HP\n");
  const auto configured = FindPlotDevice("Salle.pc3", searchPath, printers);
  ASSERT_TRUE(configured);
  EXPECT_FALSE(configured->WritesFiles());
  EXPECT_EQ(configured->PrinterName(), "Bureau-HP");
}

}  // namespace
}  // namespace sheafwork::embedded
