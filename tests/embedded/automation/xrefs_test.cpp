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

// Where each reference of `drawing` was found, relative to `base`, "-" for
// not found.
std::vector<std::string> Found(const Drawing& drawing, const std::filesystem::path& base) {
  std::vector<std::string> found;
  for (const ExternalReference& reference : drawing.xrefs) {
    found.push_back(
        reference.resolvedPath.empty()
            ? reference.blockName + " -"
            : reference.blockName + " " +
                  std::filesystem::path(reference.resolvedPath).lexically_relative(base).string());
  }
  return found;
}

TEST(ResolveExternalReferencesTest, LooksAsGivenThenByNameBesideTheDrawingThenAlongTheSupportPath) {
  testing::TempFolder folder;
  Put(folder, "plans/Plan.dxf", "");
  Put(folder, "plans/xref/Relatif.dxf", "");
  Put(folder, "plans/Voisin.dxf", "");
  Put(folder, "biblio/Cartouche.dxf", "");
  Put(folder, "autre/Cartouche.dxf", "");
  Drawing drawing = WithXrefs(
      {XrefBlock("REL", "xref\\Relatif.dxf"), XrefBlock("VOISIN", "C:\\anciens\\Voisin.dxf"),
       XrefBlock("CART", "Cartouche.dxf"), XrefBlock("ABS", folder.File("autre/Cartouche.dxf")),
       XrefBlock("PERDU", "Perdu.dxf")});
  drawing.path = folder.File("plans/Plan.dxf");
  std::vector<std::string> loaded;
  ResolveExternalReferences(drawing, folder.File("vide") + ";" + folder.File("biblio"),
                            [&](const std::string& path) {
                              loaded.push_back(path);
                              return std::make_shared<const Drawing>(SampleDrawing());
                            });
  EXPECT_THAT(Found(drawing, folder.path()),
              ElementsAre("REL plans/xref/Relatif.dxf", "VOISIN plans/Voisin.dxf",
                          "CART biblio/Cartouche.dxf", "ABS autre/Cartouche.dxf", "PERDU -"));
  EXPECT_EQ(loaded.size(), 4u);
  EXPECT_TRUE(drawing.xrefs[0].drawing);
  EXPECT_FALSE(drawing.xrefs[4].drawing);
}

TEST(ResolveExternalReferencesTest, FollowsNestedReferencesButNotOverlaysAndBreaksCycles) {
  testing::TempFolder folder;
  const std::string a = Put(folder, "A.dxf", "");
  Put(folder, "B.dxf", "");
  Put(folder, "C.dxf", "");
  Put(folder, "Illisible.dxf", "");
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

// The drawings of tests/data/dxf/fan-out: xref-N has ten reference blocks
// that all name xref-(N-1).
std::string FanOut(int level) {
  return std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/dxf/fan-out/xref-" +
         std::to_string(level) + ".dxf";
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

class FanOutTest : public ::testing::Test {
 protected:
  // Resolves xref-6 with `limits`, reading real files and noting each read;
  // reads past twenty fail, as a runaway would.
  Drawing Resolve(const XrefLimits& limits) {
    Drawing drawing = ReadDxfFile(FanOut(6));
    drawing.path = FanOut(6);
    ResolveExternalReferences(
        drawing, "",
        [&](const std::string& path) {
          reads.push_back(std::filesystem::path(path).filename().string());
          if (reads.size() > 20) throw std::runtime_error("trop de lectures");
          return std::make_shared<const Drawing>(ReadDxfFile(path));
        },
        limits);
    return drawing;
  }
  std::vector<std::string> reads;
};

TEST_F(FanOutTest, EachFileIsReadOnceAndItsReferencesShareOneDrawing) {
  const Drawing drawing = Resolve({});
  EXPECT_THAT(reads, ElementsAre("xref-5.dxf", "xref-4.dxf", "xref-3.dxf", "xref-2.dxf",
                                 "xref-1.dxf", "xref-0.dxf"));
  EXPECT_THAT(FirstChain(drawing), ElementsAre("xref-5.dxf", "xref-4.dxf", "xref-3.dxf",
                                               "xref-2.dxf", "xref-1.dxf", "xref-0.dxf", "fin"));
  ASSERT_EQ(drawing.xrefs.size(), 10u);
  for (const ExternalReference& reference : drawing.xrefs) {
    EXPECT_EQ(reference.drawing, drawing.xrefs.front().drawing) << reference.blockName;
  }
}

TEST_F(FanOutTest, ReferencesBeyondTheDepthOrSizeLimitAreLeftOutAndSaySo) {
  struct Case {
    XrefLimits limits;
    std::vector<std::string> chain;
  };
  // The files weigh about 18 KB each.
  const Case cases[] = {
      {{3, XrefLimits{}.maxTotalBytes}, {"xref-5.dxf", "xref-4.dxf", "xref-3.dxf", "profondeur"}},
      {{16, 40000}, {"xref-5.dxf", "xref-4.dxf", "taille"}},
      {{0, XrefLimits{}.maxTotalBytes}, {"profondeur"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.limits.maxDepth) + " " + std::to_string(c.limits.maxTotalBytes));
    reads.clear();
    const Drawing drawing = Resolve(c.limits);
    EXPECT_EQ(FirstChain(drawing), c.chain);
    // What was read is what the chain shows: nothing beyond a limit.
    EXPECT_EQ(reads.size(), c.chain.size() - 1);
  }
}

// A file reached first deep down, where its own references are beyond the
// depth, is resolved again where it is reached higher up.
TEST(ResolveExternalReferencesTest, AFileReachedAgainHigherUpGetsItsDeeperReferences) {
  testing::TempFolder folder;
  const std::string a = Put(folder, "A.dxf", "");
  for (const char* name : {"B.dxf", "C.dxf", "D.dxf"}) Put(folder, name, "");
  std::map<std::string, Drawing> byName = {
      {"B.dxf", WithXrefs({XrefBlock("C", "C.dxf")})},
      {"C.dxf", WithXrefs({XrefBlock("D", "D.dxf")})},
      {"D.dxf", SampleDrawing()},
  };
  Drawing drawing = WithXrefs({XrefBlock("B", "B.dxf"), XrefBlock("C", "C.dxf")});
  drawing.path = a;
  std::vector<std::string> reads;
  ResolveExternalReferences(
      drawing, "",
      [&](const std::string& path) {
        const std::string name = std::filesystem::path(path).filename().string();
        reads.push_back(name);
        return std::make_shared<const Drawing>(byName.at(name));
      },
      XrefLimits{2, XrefLimits{}.maxTotalBytes});
  EXPECT_THAT(FirstChain(drawing), ElementsAre("B.dxf", "C.dxf", "profondeur"));
  ASSERT_TRUE(drawing.xrefs[1].drawing);
  EXPECT_THAT(FirstChain(*drawing.xrefs[1].drawing), ElementsAre("D.dxf", "fin"));
  EXPECT_THAT(reads, ElementsAre("B.dxf", "C.dxf", "D.dxf"));
}

TEST_F(EmbeddedHostTest, WithXrefctlSetTheHostWritesTheReferenceLogBesideTheDrawing) {
  files.Write("Cartouche.dxf", "Cartouche.dxf");
  drawings["Cartouche.dxf"] = SampleDrawing();
  const std::string plan = AddDrawing(
      "Plan.dxf",
      WithXrefs({XrefBlock("CART", "Cartouche.dxf"), XrefBlock("FOND", "C:\\fonds\\Fond.dwg")}));
  const std::string log = files.File("Plan.xlg");

  Open(plan);
  EXPECT_FALSE(std::filesystem::exists(log));

  // Set on the active document, as a program does before opening drawings.
  Host()->ActiveDocument()->SetVariable("XREFCTL", std::int16_t{1});
  Open(plan);
  EXPECT_EQ(testing::TempFolder::Read(log),
            "Références externes du dessin " + plan + "\r\n" + "Xréf CART : Cartouche.dxf -> " +
                files.File("Cartouche.dxf") + "\r\n" +
                "Xréf FOND : C:\\fonds\\Fond.dwg -> Introuvable\r\n");
}

TEST_F(EmbeddedHostTest, AReferenceBeyondTheLimitsIsNamedInTheLogAndOnTheDisplay) {
  options.xrefLimits.maxDepth = 1;
  files.Write("Fond.dxf", "Fond.dxf");
  files.Write("Trame.dxf", "Trame.dxf");
  drawings["Fond.dxf"] = WithXrefs({XrefBlock("TRAME", "Trame.dxf")});
  drawings["Trame.dxf"] = SampleDrawing();
  const std::string plan = AddDrawing("Plan.dxf", WithXrefs({XrefBlock("FOND", "Fond.dxf")}));
  Host()->ActiveDocument()->SetVariable("XREFCTL", std::int16_t{1});

  Open(plan);
  EXPECT_EQ(testing::TempFolder::Read(files.File("Plan.xlg")),
            "Références externes du dessin " + plan + "\r\n" + "Xréf FOND : Fond.dxf -> " +
                files.File("Fond.dxf") + "\r\n" + "  Xréf TRAME : Trame.dxf -> " +
                files.File("Trame.dxf") +
                " : Non chargée (plus de 1 niveau de références imbriquées)\r\n");
  EXPECT_THAT(display->notices,
              ElementsAre("Référence externe non chargée : TRAME (" + files.File("Trame.dxf") +
                          ", dessin " + files.File("Fond.dxf") +
                          ") : plus de 1 niveau de références imbriquées ; le dessin est tracé "
                          "sans elle"));
}

}  // namespace
}  // namespace sheafwork::embedded
