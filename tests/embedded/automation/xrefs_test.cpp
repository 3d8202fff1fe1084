#include "embedded/model/xrefs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "embedded/automation/embedded_fixture.h"
#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

TEST(ResolveExternalReferencesTest, FollowsNestedReferencesButNotOverlaysAndBreaksCycles) {
  testing::TempFolder folder;
  const std::string a = folder.Write("A.dxf", "");
  for (const char* name : {"B.dxf", "C.dxf", "Illisible.dxf"}) folder.Write(name, "");
  std::map<std::string, Drawing> byName = {
      {"A.dxf", WithXrefs({XrefBlock("B", "B.dxf")})},
      {"B.dxf", WithXrefs({XrefBlock("A", "A.dxf"), XrefBlock("C", "C.dxf", true)})},
  };
  Drawing drawing = byName["A.dxf"];
  drawing.path = a;
  drawing.blocks.push_back(XrefBlock("ILL", "Illisible.dxf"));
  ResolveExternalReferences(drawing, "", [&](const std::string& path) {
    const std::string name = std::filesystem::path(path).filename().string();
    if (!byName.contains(name)) throw std::runtime_error("illisible");
    return std::make_shared<const Drawing>(byName[name]);
  });
  ASSERT_EQ(drawing.xrefs.size(), 2u);
  EXPECT_EQ(drawing.xrefs[1].resolvedPath, "");  // could not be read
  const auto& b = drawing.xrefs[0].drawing;
  ASSERT_TRUE(b);
  ASSERT_EQ(b->xrefs.size(), 2u);
  EXPECT_EQ(b->xrefs[0].resolvedPath, a);  // back to A: found, not loaded again
  EXPECT_FALSE(b->xrefs[0].drawing);
  EXPECT_EQ(b->xrefs[1].resolvedPath, "");  // an overlay inside a reference
}

// Follows the first reference down from `drawing`: the file name of each
// drawing loaded, then why the chain stops ("profondeur", "taille") or "fin".
std::vector<std::string> FirstChain(const Drawing& drawing) {
  std::vector<std::string> chain;
  const Drawing* at = &drawing;
  while (!at->xrefs.empty()) {
    const ExternalReference& first = at->xrefs.front();
    if (!first.drawing) {
      chain.push_back(first.beyond == XrefLimit::Depth  ? "profondeur"
                      : first.beyond == XrefLimit::Size ? "taille"
                                                        : "non chargée");
      return chain;
    }
    chain.push_back(std::filesystem::path(first.resolvedPath).filename().string());
    at = first.drawing.get();
  }
  chain.push_back("fin");
  return chain;
}

// tests/data/dxf/fan-out: xref-N has ten reference blocks that all name
// xref-(N-1); the files weigh about 18 KB each.
TEST(FanOutTest, ReferencesBeyondTheDepthOrSizeLimitAreLeftOutAndSaySo) {
  const std::string top = std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/dxf/fan-out/xref-6.dxf";
  struct Case {
    XrefLimits limits;
    std::vector<std::string> chain;
  };
  const Case cases[] = {
      {{3, XrefLimits{}.maxTotalBytes}, {"xref-5.dxf", "xref-4.dxf", "xref-3.dxf", "profondeur"}},
      {{16, 40000}, {"xref-5.dxf", "xref-4.dxf", "taille"}},
      {{0, XrefLimits{}.maxTotalBytes}, {"profondeur"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.limits.maxDepth) + " " + std::to_string(c.limits.maxTotalBytes));
    Drawing drawing = ReadDxfFile(top);
    drawing.path = top;
    std::size_t reads = 0;
    ResolveExternalReferences(
        drawing, "",
        [&](const std::string& path) {
          if (++reads > 20) throw std::runtime_error("trop de lectures");  // a runaway
          return std::make_shared<const Drawing>(ReadDxfFile(path));
        },
        c.limits);
    EXPECT_EQ(FirstChain(drawing), c.chain);
    // What was read is what the chain shows: nothing beyond a limit.
    EXPECT_EQ(reads, c.chain.size() - 1);
  }
}

// Image files a drawing shows that are missing or cannot be read: the host
// names them on the progress display and, like missing external references,
// in the external-reference log the plot test reads.
TEST_F(EmbeddedHostTest, TheReferenceLogListsImageFilesWithTheNotFoundMark) {
  const std::string raster = std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/raster/";
  files.Write("logos/logo.png", testing::TempFolder::Read(raster + "rgb8.png"));
  files.Write("scan.png", testing::TempFolder::Read(raster + "python.ppm"));  // not read
  Drawing drawing = SampleDrawing();
  drawing.images["A1"] = {"logos\\logo.png", ""};
  drawing.images["A2"] = {"C:\\plans\\absent.png", ""};
  drawing.images["A3"] = {"D:\\scans\\scan.png", ""};
  const std::string plan = AddDrawing("Plan.dxf", std::move(drawing));
  Host()->ActiveDocument()->SetVariable("XREFCTL", std::int16_t{1});
  Open(plan);
  const std::string drawn = " (dessin " + plan + ") ; seul son cadre est tracé";
  EXPECT_THAT(display->notices,
              UnorderedElementsAre("Image introuvable : C:\\plans\\absent.png" + drawn,
                                   "Image illisible : " + files.File("scan.png") + drawn));
  EXPECT_EQ(testing::TempFolder::Read(files.File("Plan.xlg")),
            "Références externes du dessin " + plan + "\r\n" + "Image C:\\plans\\absent.png -> " +
                "Introuvable\r\n" + "Image D:\\scans\\scan.png -> " + files.File("scan.png") +
                "\r\n" + "Image logos\\logo.png -> " + files.File("logos/logo.png") + "\r\n");
}

}  // namespace
}  // namespace sheafwork::embedded
