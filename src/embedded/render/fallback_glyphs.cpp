#include "embedded/render/fallback_glyphs.h"

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "embedded/fonts/font_catalog.h"
#include "embedded/model/curve_path.h"
#include "text/utf8.h"

namespace sheafwork::embedded {

namespace {

// Chords of a glyph's curves stay this close to them, in cap heights.
constexpr double kTolerance = 0.002;

std::unique_ptr<StrokeGlyph> Outline(char32_t code) {
  const ChosenFace chosen = ChooseFace({});
  const TrueTypeFace* face = chosen.face;
  if (face == nullptr || face->CapHeight() <= 0) return nullptr;
  std::string text;
  AppendUtf8(text, code);
  std::vector<PlacedGlyph> glyphs;
  const double advance = face->Shape(text, 1, glyphs);
  if (glyphs.empty()) return nullptr;
  CurvePath path;
  for (const PlacedGlyph& g : glyphs) {
    if (g.id == 0) return nullptr;  // the face's missing-character glyph
    face->AppendOutline(g.id, g.at, path);
  }
  const double cap = face->CapHeight();
  auto glyph = std::make_unique<StrokeGlyph>();
  glyph->filled = true;
  glyph->advance = advance / cap;
  FlattenPath(path, kTolerance * cap, glyph->points, glyph->sizes);
  for (Vec2& p : glyph->points) {
    p = {p.x / cap, p.y / cap};
    glyph->box.Extend(p);
  }
  return glyph;
}

}  // namespace

const StrokeGlyph* FallbackGlyph(char32_t code) {
  static std::mutex mutex;
  static std::unordered_map<char32_t, std::unique_ptr<StrokeGlyph>> glyphs;
  const std::lock_guard lock(mutex);
  const auto found = glyphs.find(code);
  if (found != glyphs.end()) return found->second.get();
  return glyphs.emplace(code, Outline(code)).first->second.get();
}

}  // namespace sheafwork::embedded
