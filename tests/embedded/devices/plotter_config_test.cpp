#include "embedded/devices/plotter_config.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "fakes/temp_folder.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using ::testing::HasSubstr;

TEST(PlotterConfigTest, TheShippedPdfConfigurationOffersIsoAndAnsiSheetsBothWays) {
  const PlotterConfig pdf =
      ReadPlotterConfigFile(std::string(SHEAFWORK_SOURCE_DIR) + "/data/plotters/PDF.pc3");
  EXPECT_EQ(pdf.driver, DeviceDriver::Pdf);
  EXPECT_EQ(pdf.extension, "pdf");
  EXPECT_TRUE(pdf.outputFolder.empty());
  const Paper* a3 = pdf.FindPaper(pdf.defaultPaper);
  ASSERT_NE(a3, nullptr);
  EXPECT_EQ(a3->name, "ISO A3 (420.00 x 297.00 mm)");
  EXPECT_DOUBLE_EQ(a3->width, 420);
  EXPECT_DOUBLE_EQ(a3->height, 297);
  for (const char* name : {"ISO A0 (841.00 x 1189.00 mm)", "ISO A0 (1189.00 x 841.00 mm)",
                           "ISO A4 (210.00 x 297.00 mm)", "ISO A4 (297.00 x 210.00 mm)",
                           "ANSI A (8.50 x 11.00 pouces)", "ANSI E (44.00 x 34.00 pouces)"}) {
    EXPECT_NE(pdf.FindPaper(name), nullptr) << name;
  }
  const Paper* letter = pdf.FindPaper("ANSI A (8.50 x 11.00 pouces)");
  ASSERT_NE(letter, nullptr);
  EXPECT_NEAR(letter->width, 215.9, 1e-9);
}

// A paper as another program stores it, and the shipped PDF device's paper
// it stands for (empty: none, the caller falls back).
struct StoredPaper {
  const char* name;
  double width;
  double height;
  const char* matched;
};

TEST(PlotterConfigTest, AStoredPaperIsFoundByNameByNameWrittenOtherwiseThenBySize) {
  const PlotterConfig pdf =
      ReadPlotterConfigFile(std::string(SHEAFWORK_SOURCE_DIR) + "/data/plotters/PDF.pc3");
  const StoredPaper cases[] = {
      {"ISO A3 (297.00 x 420.00 mm)", 0, 0, "ISO A3 (297.00 x 420.00 mm)"},
      // Underscores, letter case, "MM", trailing zeros.
      {"ISO_A4_(210.00_x_297.00_MM)", 0, 0, "ISO A4 (210.00 x 297.00 mm)"},
      {"iso a4 (297 x 210 mm)", 0, 0, "ISO A4 (297.00 x 210.00 mm)"},
      // Inches written in English.
      {"ANSI_B_(11.00_x_17.00_Inches)", 0, 0, "ANSI B (11.00 x 17.00 pouces)"},
      // A name without its size: the first of that name, or the one of the
      // stored size.
      {"ISO A2", 0, 0, "ISO A2 (594.00 x 420.00 mm)"},
      {"ISO A2", 420, 594, "ISO A2 (420.00 x 594.00 mm)"},
      // Unknown names: by size within half a millimetre, then turned.
      {"Letter_(8.50_x_11.00_Inches)", 215.9, 279.4, "ANSI A (8.50 x 11.00 pouces)"},
      {"ISO_full_bleed_A1_(841.00_x_594.00_MM)", 841.3, 593.8, "ISO A1 (841.00 x 594.00 mm)"},
      {"Sur mesure", 1189.4, 841, "ISO A0 (1189.00 x 841.00 mm)"},
      // Another size under a known name's size, or nothing usable.
      {"ISO A2 (100.00 x 100.00 mm)", 0, 0, ""},
      {"Feuille maison", 500, 250, ""},
      {"Sur mesure", 841.6, 594, ""},
      {"", 0, 0, ""},
  };
  for (const StoredPaper& c : cases) {
    SCOPED_TRACE(std::string(c.name) + " " + std::to_string(c.width));
    const Paper* paper = pdf.MatchPaper(c.name, c.width, c.height);
    EXPECT_EQ(paper ? paper->name : std::string(), c.matched);
  }
  ASSERT_NE(pdf.DefaultPaper(), nullptr);
  EXPECT_EQ(pdf.DefaultPaper()->name, "ISO A3 (420.00 x 297.00 mm)");
}

TEST(PlotterConfigTest, ReadsEveryKeyWithCommentsBlanksAndLineEnds) {
  const PlotterConfig config = ReadPlotterConfigFile(testing::TestData("devices/every-key.pc3"));
  EXPECT_EQ(config.description, "Traceur d'essai");
  EXPECT_EQ(config.resolutionDpi, 600);
  EXPECT_EQ(config.extension, "PDF");
  EXPECT_EQ(config.outputFolder, "/srv/tracés");
  ASSERT_EQ(config.papers.size(), 2u);
  EXPECT_EQ(config.papers[0], (Paper{"Plan étroit", 100, 50, 1, 2, 3, 4}));
  EXPECT_EQ(config.papers[1], (Paper{"Carré", 200, 200, 0, 0, 0, 0}));
  EXPECT_EQ(config.defaultPaper, "Carré");
}

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
                      BadConfig{"no-key", "ligne 2", "clé = valeur"},
                      BadConfig{"unknown-driver", "ligne 1", "pilote inconnu « plume »"},
                      BadConfig{"unknown-key", "ligne 2", "clé inconnue « colour »"},
                      BadConfig{"driver-twice", "ligne 2", "clé « driver » répétée"},
                      BadConfig{"resolution-zero", "ligne 2", "résolution incorrecte"},
                      BadConfig{"resolution-with-unit", "ligne 2", "résolution incorrecte"},
                      BadConfig{"paper-without-size", "ligne 2", "papier incorrect"},
                      BadConfig{"paper-without-name", "ligne 2", "papier incorrect"},
                      BadConfig{"paper-negative", "ligne 2", "taille de papier incorrecte"},
                      BadConfig{"paper-size-in-words", "ligne 2", "taille de papier"},
                      BadConfig{"three-margins", "ligne 2", "marges incorrectes"},
                      BadConfig{"margins-too-wide", "ligne 2", "marges"},
                      BadConfig{"paper-twice", "ligne 3", "papier « A » répété"},
                      BadConfig{"default-paper-absent", "ligne 2",
                                "papier par défaut « B » absent"},
                      BadConfig{"no-driver", "", "clé « driver » manquante"},
                      BadConfig{"no-paper", "", "aucun papier"},
                      BadConfig{"printer-unnamed", "", "clé « printer » manquante"},
                      BadConfig{"not-utf8", "", "UTF-8"}));

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

}  // namespace
}  // namespace sheafwork::embedded
