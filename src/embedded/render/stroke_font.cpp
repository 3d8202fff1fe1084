#include "embedded/render/stroke_font.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "embedded/render/stroke_font_data.h"
#include "embedded/render/transform.h"
#include "log/paths.h"
#include "text/strings.h"
#include "text/utf8.h"

namespace sheafwork::embedded {

namespace {

constexpr double kGridPerCap = 12;
constexpr double kArcStepDegrees = 12;  // flattening of the glyphs' arcs
constexpr double kMarkGapLower = 1.5;   // grid units between a letter and its mark
constexpr double kMarkGapUpper = 1.2;
constexpr double kXHeight = 8;

bool IsBlank(char c) { return c == ' '; }

// Reads one number of the tables: an optional minus, digits, an optional
// fraction. The font is built at every start; this is several times faster
// than a general reader.
bool ReadNumber(const char*& p, const char* end, double& out) {
  const bool negative = p < end && *p == '-';
  const char* q = negative ? p + 1 : p;
  const char* digits = q;
  double v = 0;
  for (; q < end && *q >= '0' && *q <= '9'; ++q) v = v * 10 + (*q - '0');
  if (q < end && *q == '.') {
    double scale = 0.1;
    for (++q; q < end && *q >= '0' && *q <= '9'; ++q, scale /= 10) v += (*q - '0') * scale;
  }
  if (q == digits) return false;
  out = negative ? -v : v;
  p = q;
  return true;
}

// Reads the comma-separated numbers of one item ("x,y" or the arc's six).
int ReadNumbers(std::string_view item, double* out, int capacity) {
  int count = 0;
  const char* p = item.data();
  const char* end = item.data() + item.size();
  while (p < end && count < capacity) {
    if (!ReadNumber(p, end, out[count])) break;
    ++count;
    if (p < end && *p == ',') ++p;
  }
  return count;
}

// Parses a stroke string of the tables into `glyph` (grid units, shifted by
// `dx`, `dy`).
void ParseStrokes(std::string_view text, double dx, double dy, StrokeGlyph& glyph) {
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t stop = text.find(';', start);
    if (stop == std::string_view::npos) stop = text.size();
    const std::string_view stroke = text.substr(start, stop - start);
    const std::size_t first = glyph.points.size();
    std::size_t i = 0;
    while (i < stroke.size()) {
      while (i < stroke.size() && IsBlank(stroke[i])) ++i;
      std::size_t j = i;
      while (j < stroke.size() && !IsBlank(stroke[j])) ++j;
      if (j == i) break;
      const std::string_view item = stroke.substr(i, j - i);
      double v[6];
      if (item[0] == '@') {
        if (ReadNumbers(item.substr(1), v, 6) == 6) {
          const double sweep = v[5] - v[4];
          const int steps =
              std::max(2, static_cast<int>(std::ceil(std::fabs(sweep) / kArcStepDegrees)));
          for (int k = 0; k <= steps; ++k) {
            const double a = Radians(v[4] + sweep * k / steps);
            glyph.points.push_back(
                {v[0] + v[2] * std::cos(a) + dx, v[1] + v[3] * std::sin(a) + dy});
          }
        }
      } else if (ReadNumbers(item, v, 2) == 2) {
        glyph.points.push_back({v[0] + dx, v[1] + dy});
      }
      i = j;
    }
    const int size = static_cast<int>(glyph.points.size() - first);
    if (size >= 2) {
      glyph.sizes.push_back(size);
    } else {
      glyph.points.resize(first);
    }
    start = stop + 1;
  }
}

void ToCapHeights(StrokeGlyph& glyph) {
  glyph.advance /= kGridPerCap;
  for (Vec2& p : glyph.points) {
    p = {p.x / kGridPerCap, p.y / kGridPerCap};
    glyph.box.Extend(p);
  }
}

}  // namespace

namespace {

const stroke_data::GlyphSource* FindSource(char32_t code) {
  for (const stroke_data::GlyphSource& source : stroke_data::Glyphs()) {
    if (source.code == code) return &source;
  }
  return nullptr;
}

const stroke_data::MarkSource* FindMark(char name) {
  for (const stroke_data::MarkSource& mark : stroke_data::Marks()) {
    if (mark.name == name) return &mark;
  }
  return nullptr;
}

// A glyph from its own strokes, in grid units.
StrokeGlyph GridGlyph(const stroke_data::GlyphSource& source) {
  StrokeGlyph glyph;
  glyph.advance = source.advance;
  ParseStrokes(source.strokes, 0, 0, glyph);
  return glyph;
}

// A letter and its mark, in grid units.
StrokeGlyph ComposedGlyph(const stroke_data::GlyphSource& baseSource,
                          const stroke_data::MarkSource& mark) {
  StrokeGlyph glyph = GridGlyph(baseSource);
  double minX = std::numeric_limits<double>::max(), maxX = -minX, top = 0;
  for (const Vec2& p : glyph.points) {
    minX = std::min(minX, p.x);
    maxX = std::max(maxX, p.x);
    top = std::max(top, p.y);
  }
  if (glyph.points.empty()) minX = maxX = glyph.advance / 2;
  // The mark sits over the letter's x-height or cap height, whichever
  // the letter reaches; ascenders (none among the bases) would be ignored.
  const bool capital = top > kXHeight + 1;
  const double anchorY =
      mark.below ? 0 : (capital ? kGridPerCap + kMarkGapUpper : kXHeight + kMarkGapLower);
  ParseStrokes(mark.strokes, (minX + maxX) / 2, anchorY, glyph);
  return glyph;
}

}  // namespace

// Only the list of characters is made here; each glyph is read from its
// table the first time it is asked for (a drawing uses few of them).
StrokeFont::StrokeFont() {
  for (const stroke_data::GlyphSource& source : stroke_data::Glyphs()) {
    slots_.push_back({source.code, &source, nullptr});
  }
  for (const stroke_data::ComposedSource& source : stroke_data::Composed()) {
    const stroke_data::GlyphSource* base = FindSource(source.base);
    const stroke_data::MarkSource* mark = FindMark(source.mark);
    if (base != nullptr && mark != nullptr) slots_.push_back({source.code, base, mark});
  }
  std::stable_sort(slots_.begin(), slots_.end(),
                   [](const Slot& a, const Slot& b) { return a.code < b.code; });
  glyphs_ = std::make_unique<Built[]>(slots_.size());
  std::fill(std::begin(ascii_), std::end(ascii_), -1);
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    codes_.push_back(slots_[i].code);
    if (slots_[i].code < 128) ascii_[slots_[i].code] = static_cast<int>(i);
  }
  placeholder_.advance = stroke_data::Placeholder().advance;
  ParseStrokes(stroke_data::Placeholder().strokes, 0, 0, placeholder_);
  ToCapHeights(placeholder_);
}

const StrokeGlyph& StrokeFont::Glyph(std::size_t index) const {
  Built& built = glyphs_[index];
  std::call_once(built.once, [&] {
    const Slot& slot = slots_[index];
    built.glyph =
        slot.mark != nullptr ? ComposedGlyph(*slot.source, *slot.mark) : GridGlyph(*slot.source);
    ToCapHeights(built.glyph);
  });
  return built.glyph;
}

const StrokeFont& StrokeFont::Get() {
  static const StrokeFont font;
  return font;
}

const StrokeGlyph* StrokeFont::Find(char32_t code) const {
  if (code < 128) {
    const int index = ascii_[code];
    return index < 0 ? nullptr : &Glyph(static_cast<std::size_t>(index));
  }
  const auto it = std::lower_bound(codes_.begin(), codes_.end(), code);
  if (it == codes_.end() || *it != code) return nullptr;
  return &Glyph(static_cast<std::size_t>(it - codes_.begin()));
}

const StrokeGlyph& StrokeFont::GlyphOrPlaceholder(char32_t code) const {
  const StrokeGlyph* glyph = Find(code);
  return glyph != nullptr ? *glyph : placeholder_;
}

double StrokeFont::Advance(std::string_view text, double tracking) const {
  return LaidAdvance(text, tracking,
                     [this](char32_t c) -> const StrokeGlyph& { return GlyphOrPlaceholder(c); });
}

void StrokeFont::AppendStrokes(std::string_view text, double tracking, std::vector<Vec2>& points,
                               std::vector<int>& sizes) const {
  double x = 0;
  for (std::size_t i = 0; i < text.size();) {
    const DecodedChar c = DecodeUtf8(text, i);
    i += c.length;
    const StrokeGlyph& glyph = GlyphOrPlaceholder(c.valid ? c.codePoint : 0xFFFD);
    for (const Vec2& p : glyph.points) points.push_back({p.x + x, p.y});
    sizes.insert(sizes.end(), glyph.sizes.begin(), glyph.sizes.end());
    x += glyph.advance * tracking;
  }
}

Box2 StrokeFont::Bounds(std::string_view text, double tracking) const {
  return LaidBounds(text, tracking,
                    [this](char32_t c) -> const StrokeGlyph& { return GlyphOrPlaceholder(c); });
}

bool IsShapeFont(std::string_view family, std::string_view fontFile) {
  if (!family.empty()) return false;
  const std::string_view name = LastPathPart(fontFile);
  const std::size_t dot = name.rfind('.');
  return dot == std::string_view::npos || EqualsIgnoreCase(name.substr(dot + 1), "shx");
}

}  // namespace sheafwork::embedded
