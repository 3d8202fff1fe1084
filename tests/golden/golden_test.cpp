// Every layout of every example drawing, plotted to an image and compared
// with its reference in tests/golden/<drawing>-<layout>.png. After a change
// to the rendering that is meant, scripts/update-golden.sh writes the
// references again; look at them before committing them.

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
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

// The comparison itself: antialiasing and a pixel's shift pass, a line more or less does not.

// A small sheet in the style of a plot: thin lines, a circle, a filled
// square, drawn with antialiasing and offset by (dx, dy) pixels; with
// `extraLine` > 0 one more line of that width.
QImage Sketch(double dx, double dy, double extraLine = 0) {
  QImage image(400, 300, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(dx, dy);
  painter.setPen(QPen(Qt::black, 1.0));
  painter.drawRect(QRectF(10, 10, 380, 280));
  painter.drawLine(QLineF(20, 250, 370, 40));
  painter.setPen(QPen(Qt::blue, 2.0));
  painter.drawEllipse(QPointF(200, 150), 60, 60);
  painter.fillRect(QRectF(300, 200, 40, 40), Qt::red);
  if (extraLine > 0) {
    painter.setPen(QPen(Qt::black, extraLine));
    painter.drawLine(QLineF(40, 60, 120, 60));  // 80 px, a 20 mm line at 4 px/mm
  }
  return image;
}

TEST(CompareImagesTest, ToleratesAntialiasingAndAPixelsShiftButNotALineWhichTheDiffShows) {
  const QImage reference = Sketch(0, 0);
  struct Case {
    const char* name;
    QImage actual;
    bool matches;
  };
  const std::vector<Case> cases = {
      {"identical", Sketch(0, 0), true},
      {"antialiasing moved by a fraction of a pixel", Sketch(0.4, 0.3), true},
      {"moved by one pixel", Sketch(1, 0), true},
      {"moved by three pixels", Sketch(3, 0), false},
      {"a line more", Sketch(0, 0, 1.0), false},
      {"a hairline more (0.1 mm at 4 px/mm)", Sketch(0, 0, 0.4), false},
      {"another size", reference.scaled(401, 300), false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Comparison comparison = CompareImages(reference, c.actual);
    EXPECT_EQ(comparison.Matches(CompareOptions{}), c.matches) << comparison.Describe();
  }
  // A line less is the same fault seen from the other side.
  EXPECT_FALSE(CompareImages(Sketch(0, 0, 0.4), reference).Matches(CompareOptions{}));
  // The diff image marks what differs.
  const Comparison comparison = CompareImages(reference, Sketch(0, 0, 1.0));
  ASSERT_FALSE(comparison.diff.isNull());
  EXPECT_EQ(comparison.diff.pixel(80, 60), qRgb(255, 0, 0));
  EXPECT_NE(comparison.diff.pixel(80, 100), qRgb(255, 0, 0));
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
