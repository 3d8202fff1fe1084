// Malformed input ends in a DxfError that names the file and the place; no
// input, however broken, does anything else (tests/data/dxf/errors).

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "embedded/dxf/reader.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using sheafwork::testing::ReadTestData;
using sheafwork::testing::TestData;
using ::testing::HasSubstr;

TEST(ReaderErrors, NamesTheFileThePlaceAndWhatWasExpected) {
  struct Case {
    const char* file;
    std::vector<std::string> parts;
  };
  const std::vector<Case> cases = {
      {"empty.dxf", {"empty.dxf : le fichier est vide"}},
      {"words.dxf", {"words.dxf : ce n'est pas un fichier DXF"}},
      {"png-bytes.dxf", {"n'est pas un fichier DXF"}},
      {"section-not-closed.dxf",
       {"section-not-closed.dxf, ligne 1 : section ENTITIES sans ENDSEC"}},
      {"word-for-a-number.dxf",
       {"word-for-a-number.dxf, ligne 10 : nombre attendu pour le code 10, « abc » trouvé"}},
      {"block-not-closed.dxf", {"ligne 5", "bloc Porte sans ENDBLK"}},
      {"table-not-closed.dxf", {"ligne 5", "table LAYER sans ENDTAB"}},
      {"no-section-name.dxf", {"ligne 1", "nom de section attendu"}},
      {"entity-between-sections.dxf", {"ligne 7", "SECTION attendue, « LINE » trouvé"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    try {
      ReadDxfFile(TestData(std::string("dxf/errors/") + c.file));
      ADD_FAILURE() << "read without error";
    } catch (const DxfError& e) {
      for (const std::string& part : c.parts) EXPECT_THAT(e.what(), HasSubstr(part));
    }
  }
}

TEST(ReaderErrors, EveryTruncationOfAGoodFileFailsCleanlyOrReads) {
  // Cutting a file anywhere must end in a DxfError or, when the cut falls
  // between sections, a drawing; never anything else.
  const std::string good = ReadTestData("dxf/errors/good.dxf");
  ASSERT_FALSE(good.empty());
  for (std::size_t n = 0; n < good.size(); ++n) {
    try {
      ReadDxf(good.substr(0, n), "cut.dxf");
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
