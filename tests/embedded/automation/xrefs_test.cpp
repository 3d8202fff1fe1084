#include "embedded/model/xrefs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "embedded/automation/embedded_fixture.h"

namespace sheafwork::embedded {
namespace {

using ::testing::ElementsAre;

Block XrefBlock(const std::string& name, const std::string& path, bool overlay = false) {
  Block block;
  block.name = name;
  block.flags = overlay ? 4 + 8 : 4;
  block.xrefPath = path;
  return block;
}

Drawing WithXrefs(std::vector<Block> blocks) {
  Drawing drawing = SampleDrawing();
  for (Block& block : blocks) drawing.blocks.push_back(std::move(block));
  return drawing;
}

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

}  // namespace
}  // namespace sheafwork::embedded
