// Layouts as drawings from elsewhere store them: never set up, with devices
// this machine does not have, with paper names written another way. The
// drawing is read by the DXF reader from tests/data/dxf/sheets.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "embedded/automation/embedded_fixture.h"

namespace sheafwork::embedded {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class ForeignSheetsTest : public EmbeddedHostTest {
 protected:
  ForeignSheetsTest() {
    options.reader = {};  // the DXF reader
    path_ = (files.path() / "never_set_up.dxf").string();
    std::filesystem::copy_file(
        std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/dxf/sheets/never_set_up.dxf", path_);
  }

  std::shared_ptr<host::Document> OpenSheets() {
    auto doc = Open(path_);
    doc->Activate();
    Host()->GetPreferences()->SetLogFileOn(true);
    return doc;
  }

  std::string path_;
};

// What each layout plots on, with its own device and with PDF.pc3 given.
struct SheetCase {
  const char* layout;
  const char* paper;  ///< the paper plotted on
  double width;
  double height;
  const char* logged;  ///< in the host's log with the layout's own device
  bool onStderr;       ///< a missing device is told on the display too
};

TEST_F(ForeignSheetsTest, EveryLayoutPlotsOnTheDevicesPaperThatItsStoredPaperStandsFor) {
  const SheetCase cases[] = {
      // Never set up: no device, 0 x 0 mm, no name.
      {"Objet", "ISO A3 (420.00 x 297.00 mm)", 420, 297,
       "Papier « 0 x 0 mm » inutilisable : tracé sur le papier par défaut de PDF.pc3", false},
      {"Vierge", "ISO A3 (420.00 x 297.00 mm)", 420, 297,
       "Périphérique « Aucun » : tracé sur PDF.pc3", false},
      {"Sans traceur", "ISO A4 (210.00 x 297.00 mm)", 210, 297,
       "Périphérique « Aucun » : tracé sur PDF.pc3", false},
      {"Autre PDF", "ISO A1 (841.00 x 594.00 mm)", 841, 594,
       "Périphérique « DWG To PDF.pc3 » absent de cette machine : tracé sur PDF.pc3", true},
      {"Imprimante", "ANSI A (8.50 x 11.00 pouces)", 215.9, 279.4,
       "Périphérique « Microsoft Print to PDF » absent de cette machine : tracé sur PDF.pc3", true},
      // A paper name without its size, on a device that is here.
      {"A2 court", "ISO A2 (594.00 x 420.00 mm)", 594, 420, "périphérique PDF.pc3, sortie", false},
      // A size no device paper has stays the layout's own.
      {"Maison", "Feuille maison", 500, 250,
       "Périphérique « Absent.pc3 » absent de cette machine : tracé sur PDF.pc3", true},
  };
  auto doc = OpenSheets();
  auto plot = doc->GetPlot();
  for (const SheetCase& c : cases) {
    SCOPED_TRACE(c.layout);
    for (const bool given : {false, true}) {
      plots.clear();
      display->notices.clear();
      Show(*doc, c.layout);
      ASSERT_TRUE(plot->PlotToDevice(given ? std::optional<std::string>("PDF.pc3")
                                           : std::optional<std::string>()));
      ASSERT_EQ(plots.size(), 1u);
      EXPECT_EQ(plots[0].settings.mediaName, c.paper);
      EXPECT_NEAR(plots[0].settings.paperWidth, c.width, 1e-6);
      EXPECT_NEAR(plots[0].settings.paperHeight, c.height, 1e-6);
      if (!given) {
        EXPECT_THAT(HostLogLines("never_set_up"),
                    Contains(AllOf(HasSubstr(c.logged),
                                   HasSubstr("présentation " + std::string(c.layout)))));
        EXPECT_EQ(display->notices.size(), c.onStderr ? 1u : 0u);
      } else {
        EXPECT_THAT(display->notices, IsEmpty());
      }
    }
  }
  EXPECT_THAT(display->failures, IsEmpty());
}

TEST_F(ForeignSheetsTest, AMissingDeviceWithoutAFallbackFailsAndAGivenMissingDeviceNeverStandsIn) {
  auto doc = OpenSheets();
  // Saved on the model tab: the paper layout to go back to is the one on
  // *Paper_Space, not the first tab.
  doc->SetActiveSpace(0);
  EXPECT_EQ(doc->ActiveLayout()->Name(), "Autre PDF");
  auto plot = doc->GetPlot();
  Show(*doc, "Vierge");
  EXPECT_FALSE(plot->PlotToDevice("Absent.pc3"));
  auto preferences = std::dynamic_pointer_cast<EmbeddedPreferences>(Host()->GetPreferences());
  ASSERT_NE(preferences, nullptr);
  EXPECT_EQ(preferences->FallbackDevice(), "PDF.pc3");
  preferences->SetFallbackDevice("Autre.pc3");
  Show(*doc, "Autre PDF");
  EXPECT_FALSE(plot->PlotToDevice(std::nullopt));
  EXPECT_TRUE(plots.empty());
  ASSERT_EQ(display->failures.size(), 2u);
  EXPECT_THAT(display->failures[0], HasSubstr("introuvable : Absent.pc3"));
  EXPECT_THAT(display->failures[1],
              HasSubstr("périphérique de remplacement introuvable : Autre.pc3"));
}

}  // namespace
}  // namespace sheafwork::embedded
