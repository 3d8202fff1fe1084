// Malformed input ends in a DxfError that names the file and the place; no
// input, however broken, does anything else.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "embedded/dxf/dxf_text.h"
#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

using testing::EndOfFile;
using ::testing::HasSubstr;
using testing::Section;
using testing::Tags;

std::string ErrorOf(const std::string& bytes, const std::string& name = "/plans/plan.dxf") {
  try {
    ReadDxf(bytes, name);
  } catch (const DxfError& e) {
    return e.what();
  }
  return "(no error)";
}

const std::string kGood =
    Section("HEADER", Tags({{9, "$ACADVER"}, {1, "AC1015"}})) +
    Section("ENTITIES", Tags({{0, "LINE"}, {8, "0"}, {10, "0"}, {20, "0"}, {11, "1"}, {21, "1"}})) +
    EndOfFile();

TEST(ReaderErrors, NamesTheFileThePlaceAndWhatWasExpected) {
  struct Case {
    const char* what;
    std::string input;
    std::vector<std::string> parts;
  };
  const std::vector<Case> cases = {
      {"empty", "", {"plan.dxf : le fichier est vide"}},
      {"not DXF", "Bonjour\nle monde\n", {"plan.dxf : ce n'est pas un fichier DXF"}},
      {"not DXF, binary junk",
       std::string("\x89PNG\r\n\x1a\n\0\0", 10),
       {"n'est pas un fichier DXF"}},
      {"a section never closed",
       Tags({{0, "SECTION"}, {2, "ENTITIES"}, {0, "LINE"}, {8, "0"}}),
       {"plan.dxf, ligne 1 : section ENTITIES sans ENDSEC"}},
      {"a word where a number goes",
       Section("ENTITIES", Tags({{0, "LINE"}, {8, "0"}, {10, "abc"}})) + EndOfFile(),
       {"plan.dxf, ligne 10 : nombre attendu pour le code 10, « abc » trouvé"}},
      {"a block never closed",
       Section("BLOCKS", Tags({{0, "BLOCK"}, {2, "Porte"}, {0, "LINE"}, {8, "0"}})) + EndOfFile(),
       {"ligne 5", "bloc Porte sans ENDBLK"}},
      {"a table never closed",
       Tags({{0, "SECTION"}, {2, "TABLES"}, {0, "TABLE"}, {2, "LAYER"}, {0, "LAYER"}}),
       {"ligne 5", "table LAYER sans ENDTAB"}},
      {"no section name",
       Tags({{0, "SECTION"}, {0, "ENDSEC"}}) + EndOfFile(),
       {"ligne 1", "nom de section attendu"}},
      {"something between sections",
       Section("HEADER", "") + Tags({{0, "LINE"}, {8, "0"}}) + EndOfFile(),
       {"ligne 7", "SECTION attendue, « LINE » trouvé"}},
  };
  for (const Case& c : cases) {
    const std::string message = ErrorOf(c.input);
    for (const std::string& part : c.parts) EXPECT_THAT(message, HasSubstr(part)) << c.what;
  }
}

TEST(ReaderErrors, EveryTruncationOfAGoodFileFailsCleanlyOrReads) {
  // Cutting a file anywhere must end in a DxfError or, when the cut falls
  // between sections, a drawing; never anything else.
  for (std::size_t n = 0; n < kGood.size(); ++n) {
    try {
      ReadDxf(kGood.substr(0, n), "cut.dxf");
    } catch (const DxfError& e) {
      EXPECT_THAT(e.what(), HasSubstr("cut.dxf")) << n;
    }
  }
}

TEST(ReaderErrors, AMissingFileIsADxfErrorNamingIt) {
  const std::string path =
      (std::filesystem::temp_directory_path() / "sheafwork-no-such-drawing.dxf").string();
  std::filesystem::remove(path);
  try {
    ReadDxfFile(path);
    FAIL();
  } catch (const DxfError& e) {
    EXPECT_THAT(e.what(), HasSubstr("sheafwork-no-such-drawing.dxf : lecture impossible"));
  }
}

}  // namespace
}  // namespace sheafwork::embedded
