#include "embedded/render/qt_text_fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QString>
#include <algorithm>
#include <cmath>
#include <map>
#include <mutex>
#include <string>

#include "embedded/render/qt_application.h"

namespace sheafwork::embedded {

namespace {

constexpr double kEstimatedAdvance = 0.85;  // cap heights per character without fonts

QString LowerStem(std::string_view file) {
  QString name = QString::fromUtf8(file.data(), static_cast<qsizetype>(file.size()));
  const qsizetype slash = std::max(name.lastIndexOf(u'/'), name.lastIndexOf(u'\\'));
  if (slash >= 0) name = name.mid(slash + 1);
  const QString lower = name.toLower();
  for (const char* ext : {".ttf", ".otf", ".ttc"}) {
    if (lower.endsWith(QLatin1String(ext))) return name.left(name.size() - 4);
  }
  return {};
}

struct Chosen {
  QString family;
  FontMetrics metrics;
};

QFont MakeFont(const QString& family, const FontFace& face, double tracking) {
  QFont font(family);
  font.setPixelSize(kTextGlyphPixels);
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setBold(face.bold);
  font.setItalic(face.italic);
  if (tracking != 1) font.setLetterSpacing(QFont::PercentageSpacing, tracking * 100);
  return font;
}

// Families and metrics are kept; QFont objects are not, so that nothing of
// Qt's outlives the application.
const Chosen& Choose(const FontFace& face) {
  static std::mutex mutex;
  static std::map<std::string, Chosen> cache;
  std::string key(face.family);
  key += '|';
  key += face.file;
  key += face.bold ? "|b" : "|";
  key += face.italic ? "i" : "";
  const std::lock_guard lock(mutex);
  auto it = cache.find(key);
  if (it != cache.end()) return it->second;
  QString family = QStringLiteral("DejaVu Sans");
  const QString asked =
      QString::fromUtf8(face.family.data(), static_cast<qsizetype>(face.family.size()));
  const QString stem = LowerStem(face.file);
  if (!asked.isEmpty() && QFontDatabase::hasFamily(asked)) {
    family = asked;
  } else if (!stem.isEmpty() && QFontDatabase::hasFamily(stem)) {
    family = stem;
  }
  Chosen chosen{family, {}};
  const QFontMetricsF fm(MakeFont(family, face, 1));
  chosen.metrics.capHeight = fm.capHeight() > 0 ? fm.capHeight() : fm.ascent() * 0.7;
  chosen.metrics.descent = fm.descent();
  return cache.emplace(std::move(key), std::move(chosen)).first->second;
}

bool HaveGui() { return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr; }

class Measure final : public TextMeasure {
 public:
  double Advance(const FontFace& face, std::string_view text) override {
    if (!HaveGui()) {
      double chars = 0;
      for (char c : text) chars += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
      return chars * kEstimatedAdvance;
    }
    const QtTextFont font = TextFontFor(face);
    const QFontMetricsF fm(font.font);
    const double width =
        fm.horizontalAdvance(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    return width / font.metrics.capHeight;
  }
  double Descent(const FontFace& face) override {
    if (!HaveGui()) return TextMeasure::Descent(face);
    const FontMetrics m = Choose(face).metrics;
    return m.descent / m.capHeight;
  }
};

}  // namespace

QtTextFont TextFontFor(const FontFace& face, double tracking) {
  const Chosen& chosen = Choose(face);
  return {MakeFont(chosen.family, face, tracking), chosen.metrics};
}

QtRunLines LayOutRunLines(const TextRun& run) {
  QtRunLines laid{
      TextFontFor({run.fontFamily, run.fontFile, run.bold, run.italic}, run.tracking),
      QString::fromUtf8(run.text.data(), static_cast<qsizetype>(run.text.size())).split(u'\n'),
      {},
      {},
      {},
      std::tan(Radians(run.obliqueDegrees))};
  const QFontMetricsF fm(laid.font.font);
  for (const QString& line : laid.lines) laid.widths.push_back(fm.horizontalAdvance(line));
  laid.placements.resize(laid.widths.size());
  laid.placement = PlaceRun(run, laid.font.metrics, laid.widths, laid.placements);
  return laid;
}

TextMeasure& QtTextMeasure() {
  static Measure measure;
  return measure;
}

TextMeasure& GuiTextMeasure() {
  class Starting final : public TextMeasure {
   public:
    double Advance(const FontFace& face, std::string_view text) override {
      EnsureGuiApplication();
      return QtTextMeasure().Advance(face, text);
    }
    double Descent(const FontFace& face) override {
      EnsureGuiApplication();
      return QtTextMeasure().Descent(face);
    }
  };
  static Starting measure;
  return measure;
}

}  // namespace sheafwork::embedded
