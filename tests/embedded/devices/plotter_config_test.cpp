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

struct BadConfig {
  const char* text;
  const char* where;  ///< the file and line the message must name
  const char* what;   ///< part of the message
};

class BadPlotterConfigTest : public ::testing::TestWithParam<BadConfig> {};

TEST_P(BadPlotterConfigTest, NamesTheFileTheLineAndTheFault) {
  const BadConfig& bad = GetParam();
  try {
    ParsePlotterConfig(bad.text, "t.pc3");
    FAIL() << "accepted: " << bad.text;
  } catch (const DeviceError& error) {
    EXPECT_THAT(error.what(), HasSubstr(bad.where));
    EXPECT_THAT(error.what(), HasSubstr(bad.what));
  }
}

constexpr const char* kOk = "driver = pdf\npaper = A | 10 x 10\n";

INSTANTIATE_TEST_SUITE_P(
    Errors, BadPlotterConfigTest,
    ::testing::Values(
        BadConfig{"driver = pdf\n# ok\nsans signe égal\n", "t.pc3, ligne 3 :", "clé = valeur"},
        BadConfig{"driver = pdf\n = pdf\n", "ligne 2", "clé = valeur"},
        BadConfig{"driver = plume\n", "ligne 1", "pilote inconnu « plume »"},
        BadConfig{"driver = pdf\ncolour = 3\n", "ligne 2", "clé inconnue « colour »"},
        BadConfig{"driver = pdf\ndriver = png\n", "ligne 2", "clé « driver » répétée"},
        BadConfig{"driver = pdf\nresolution = 0\n", "ligne 2", "résolution incorrecte"},
        BadConfig{"driver = pdf\nresolution = 300dpi\n", "ligne 2", "résolution incorrecte"},
        BadConfig{"driver = pdf\npaper = A\n", "ligne 2", "papier incorrect"},
        BadConfig{"driver = pdf\npaper = | 10 x 10\n", "ligne 2", "papier incorrect"},
        BadConfig{"driver = pdf\npaper = A | 10 x -1\n", "ligne 2", "taille de papier incorrecte"},
        BadConfig{"driver = pdf\npaper = A | 10 par 10\n", "ligne 2", "taille de papier"},
        BadConfig{"driver = pdf\npaper = A | 10 x 10 | 1 1 1\n", "ligne 2", "marges incorrectes"},
        BadConfig{"driver = pdf\npaper = A | 10 x 10 | 5 0 5 0\n", "ligne 2", "marges"},
        BadConfig{"driver = pdf\npaper = A | 10 x 10\npaper = A | 20 x 20\n", "ligne 3",
                  "papier « A » répété"},
        BadConfig{"driver = pdf\ndefault-paper = B\npaper = A | 10 x 10\n", "ligne 2",
                  "papier par défaut « B » absent"},
        BadConfig{"paper = A | 10 x 10\n", "t.pc3 :", "clé « driver » manquante"},
        BadConfig{"driver = svg\n", "t.pc3 :", "aucun papier"},
        BadConfig{"driver = printer\n", "t.pc3 :", "clé « printer » manquante"},
        BadConfig{"driver = pdf\ndescription = caf\xE9\n", "t.pc3 :", "UTF-8"}));

TEST(PlotterConfigTest, AFileThatCannotBeReadIsNamed) {
  testing::TempFolder folder;
  const std::string missing = folder.File("absent.pc3");
  try {
    ReadPlotterConfigFile(missing);
    FAIL();
  } catch (const DeviceError& error) {
    EXPECT_THAT(error.what(), HasSubstr(missing + " : lecture impossible"));
  }
  EXPECT_EQ(ReadPlotterConfigFile(folder.Write("ok.pc3", kOk)).papers.size(), 1u);
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
