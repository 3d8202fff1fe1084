// Image files a drawing shows that are missing or cannot be read: the host
// names them in its log, on the progress display and, like missing
// external references, in the external-reference log the plot test reads.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "embedded/automation/embedded_fixture.h"

namespace sheafwork::embedded {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

std::string Raster(const std::string& name) {
  return testing::TempFolder::Read(std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/raster/" +
                                   name);
}

class ImageReportTest : public EmbeddedHostTest {
 protected:
  // A drawing with three images: one found beside it, one nowhere, one
  // that is there but not an image file the host reads.
  std::string PlanWithImages() {
    Put(files, "logos/logo.png", Raster("rgb8.png"));
    Put(files, "scan.png", Raster("python.ppm"));
    Drawing drawing = SampleDrawing();
    drawing.images["A1"] = {"logos\\logo.png", ""};
    drawing.images["A2"] = {"C:\\plans\\absent.png", ""};
    drawing.images["A3"] = {"D:\\scans\\scan.png", ""};
    return AddDrawing("Plan.dxf", std::move(drawing));
  }
};

TEST_F(ImageReportTest, MissingAndUnreadableFilesAreNamedInTheLogAndOnTheDisplay) {
  const std::string plan = PlanWithImages();
  Host()->GetPreferences()->SetLogFileOn(true);
  Open(plan);

  const std::string absent =
      "Image introuvable : C:\\plans\\absent.png (dessin " + plan + ") ; seul son cadre est tracé";
  const std::string unreadable = "Image illisible : " + files.File("scan.png") + " (dessin " +
                                 plan + ") ; seul son cadre est tracé";
  EXPECT_THAT(display->notices, UnorderedElementsAre(absent, unreadable));
  const std::string log = PlanLog();
  EXPECT_THAT(log, HasSubstr(absent + "\r\n"));
  EXPECT_THAT(log, HasSubstr(unreadable + "\r\n"));
  EXPECT_THAT(log, Not(HasSubstr("logo.png")));
}

TEST_F(ImageReportTest, TheReferenceLogListsImageFilesWithTheNotFoundMark) {
  const std::string plan = PlanWithImages();
  Host()->ActiveDocument()->SetVariable("XREFCTL", std::int16_t{1});
  Open(plan);
  EXPECT_EQ(testing::TempFolder::Read(files.File("Plan.xlg")),
            "Références externes du dessin " + plan + "\r\n" + "Image C:\\plans\\absent.png -> " +
                "Introuvable\r\n" + "Image D:\\scans\\scan.png -> " + files.File("scan.png") +
                "\r\n" + "Image logos\\logo.png -> " + files.File("logos/logo.png") + "\r\n");
}

}  // namespace
}  // namespace sheafwork::embedded
