// Every layout of every example drawing, plotted to an image and compared
// with its reference in tests/golden/<drawing>-<layout>.png. After a change
// to the rendering that is meant, scripts/update-golden.sh writes the
// references again; look at them before committing them.

#include <gtest/gtest.h>

#include <QImage>
#include <QString>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "embedded/dxf/reader.h"
#include "embedded/model/xrefs.h"
#include "golden/image_compare.h"
#include "support/image_probes.h"

namespace sheafwork::golden {
namespace {

namespace fs = std::filesystem;
using embedded::Drawing;
using embedded::Layout;
using embedded::testing::RenderSheet;

const fs::path kGoldenFolder = fs::path(SHEAFWORK_SOURCE_DIR) / "tests/golden";
const fs::path kPlansFolder = fs::path(SHEAFWORK_SOURCE_DIR) / "examples/plans";

/// One sheet to plot: a layout of an example drawing.
struct Sheet {
  std::string drawing;  ///< file name in examples/plans
  std::string layout;
  std::string name;  ///< "<drawing>-<layout>" in plain ASCII, the image's file name
};

// What the test's name shows of its sheet.
void PrintTo(const Sheet& sheet, std::ostream* out) { *out << sheet.name; }

// A name in plain ASCII letters, digits and dashes, accents dropped.
std::string PlainName(const std::string& utf8) {
  std::string plain;
  for (const QChar c : QString::fromStdString(utf8).normalized(QString::NormalizationForm_D)) {
    if (c.category() == QChar::Mark_NonSpacing) continue;
    if (c.unicode() < 128 && c.isLetterOrNumber()) {
      plain += static_cast<char>(c.toLower().unicode());
    } else if (!plain.empty() && plain.back() != '-') {
      plain += '-';
    }
  }
  while (!plain.empty() && plain.back() == '-') plain.pop_back();
  return plain;
}

Drawing Load(const std::string& fileName) {
  Drawing drawing = embedded::ReadDxfFile((kPlansFolder / fileName).string());
  embedded::ResolveExternalReferences(drawing, "", [](const std::string& path) {
    return std::make_shared<const Drawing>(embedded::ReadDxfFile(path));
  });
  return drawing;
}

std::vector<Sheet> ExampleSheets() {
  std::vector<std::string> drawings;
  for (const auto& entry : fs::directory_iterator(kPlansFolder)) {
    if (entry.path().extension() == ".dxf") drawings.push_back(entry.path().filename().string());
  }
  std::sort(drawings.begin(), drawings.end());
  std::vector<Sheet> sheets;
  for (const std::string& drawing : drawings) {
    for (const Layout& layout : Load(drawing).layouts) {
      sheets.push_back(
          {drawing, layout.name,
           PlainName(fs::path(drawing).stem().string()) + "-" + PlainName(layout.name)});
    }
  }
  return sheets;
}

class GoldenImage : public ::testing::TestWithParam<Sheet> {};

TEST_P(GoldenImage, MatchesItsReference) {
  const Sheet& sheet = GetParam();
  const Drawing drawing = Load(sheet.drawing);
  const auto layout = std::find_if(drawing.layouts.begin(), drawing.layouts.end(),
                                   [&](const Layout& l) { return l.name == sheet.layout; });
  ASSERT_NE(layout, drawing.layouts.end());
  const QImage actual = RenderSheet(drawing, *layout, layout->settings, kPixelsPerMm);
  const fs::path reference = kGoldenFolder / (sheet.name + ".png");
  const char* update = std::getenv("SHEAFWORK_UPDATE_GOLDEN");
  if (update != nullptr && *update != '\0') {
    ASSERT_TRUE(actual.save(QString::fromStdString(reference.string()), "PNG", 9));
    return;
  }
  const QImage expected(QString::fromStdString(reference.string()));
  ASSERT_FALSE(expected.isNull()) << reference << " is missing: run scripts/update-golden.sh";

  const Comparison comparison = CompareImages(expected, actual);
  if (comparison.Matches(CompareOptions{})) return;
  const FailureImages files = SaveFailureImages(sheet.name, actual, comparison);
  ADD_FAILURE() << sheet.drawing << ", layout " << sheet.layout << ": " << comparison.Describe()
                << " (" << expected.width() << "x" << expected.height() << " against "
                << actual.width() << "x" << actual.height() << ")\n  expected: " << reference
                << "\n  actual:   " << files.actual << "\n  diff:     " << files.diff
                << "\nIf the change is meant, run scripts/update-golden.sh.";
}

INSTANTIATE_TEST_SUITE_P(Examples, GoldenImage, ::testing::ValuesIn(ExampleSheets()),
                         [](const ::testing::TestParamInfo<Sheet>& info) {
                           std::string name = info.param.name;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

TEST(GoldenImages, EveryReferenceBelongsToASheet) {
  std::set<std::string> sheets;
  for (const Sheet& sheet : ExampleSheets()) {
    EXPECT_TRUE(sheets.insert(sheet.name).second) << "two sheets named " << sheet.name;
  }
  for (const auto& entry : fs::directory_iterator(kGoldenFolder)) {
    if (entry.path().extension() != ".png") continue;
    EXPECT_TRUE(sheets.count(entry.path().stem().string()))
        << entry.path() << " belongs to no sheet: run scripts/update-golden.sh";
  }
}

}  // namespace
}  // namespace sheafwork::golden

// Qt reads the system's fontconfig setup when it paints text, and
// fontconfig 2.14 loses 288 bytes once while parsing Debian's configuration
// (see platform/fontconfig_fonts.cpp, which carries the same suppression for
// the programs that link it). This binary does not link that library.
#if defined(__SANITIZE_ADDRESS__)
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\n"; }
#endif
