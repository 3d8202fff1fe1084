#include "embedded/fonts/truetype_face.h"

#include <algorithm>
#include <cmath>

#include "embedded/fonts/harfbuzz_library.h"

namespace sheafwork::embedded {

namespace {

// Only called once HarfBuzz() has been found.
struct HbDeleter {
  void operator()(hb_blob_t* p) const { HarfBuzz()->hb_blob_destroy(p); }
  void operator()(hb_face_t* p) const { HarfBuzz()->hb_face_destroy(p); }
  void operator()(hb_font_t* p) const { HarfBuzz()->hb_font_destroy(p); }
  void operator()(hb_buffer_t* p) const { HarfBuzz()->hb_buffer_destroy(p); }
};
using BlobPtr = std::unique_ptr<hb_blob_t, HbDeleter>;
using FacePtr = std::unique_ptr<hb_face_t, HbDeleter>;
using FontPtr = std::unique_ptr<hb_font_t, HbDeleter>;
using BufferPtr = std::unique_ptr<hb_buffer_t, HbDeleter>;

// The outline being drawn, placed at `at`.
struct Outline {
  CurvePath* out;
  Vec2 at;

  Vec2 Place(double x, double y) const { return {at.x + x, at.y + y}; }
};

void MoveTo(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x, float y, void*) {
  auto& o = *static_cast<Outline*>(data);
  o.out->MoveTo(o.Place(x, y));
}

void LineTo(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x, float y, void*) {
  auto& o = *static_cast<Outline*>(data);
  o.out->LineTo(o.Place(x, y));
}

void QuadraticTo(hb_draw_funcs_t*, void* data, hb_draw_state_t* st, float cx, float cy, float x,
                 float y, void*) {
  auto& o = *static_cast<Outline*>(data);
  // The cubic's control points lie two thirds of the way from each end to
  // the quadratic's.
  const double x0 = st->current_x, y0 = st->current_y;
  o.out->CubicTo(o.Place(x0 + 2.0 / 3 * (cx - x0), y0 + 2.0 / 3 * (cy - y0)),
                 o.Place(x + 2.0 / 3 * (cx - x), y + 2.0 / 3 * (cy - y)), o.Place(x, y));
}

void CubicTo(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float c1x, float c1y, float c2x,
             float c2y, float x, float y, void*) {
  auto& o = *static_cast<Outline*>(data);
  o.out->CubicTo(o.Place(c1x, c1y), o.Place(c2x, c2y), o.Place(x, y));
}

void ClosePath(hb_draw_funcs_t*, void* data, hb_draw_state_t*, void*) {
  static_cast<Outline*>(data)->out->Close();
}

hb_draw_funcs_t* DrawFuncs() {
  static hb_draw_funcs_t* const funcs = [] {
    const HarfBuzzLibrary& hb = *HarfBuzz();
    hb_draw_funcs_t* made = hb.hb_draw_funcs_create();
    hb.hb_draw_funcs_set_move_to_func(made, MoveTo, nullptr, nullptr);
    hb.hb_draw_funcs_set_line_to_func(made, LineTo, nullptr, nullptr);
    hb.hb_draw_funcs_set_quadratic_to_func(made, QuadraticTo, nullptr, nullptr);
    hb.hb_draw_funcs_set_cubic_to_func(made, CubicTo, nullptr, nullptr);
    hb.hb_draw_funcs_set_close_path_func(made, ClosePath, nullptr, nullptr);
    hb.hb_draw_funcs_make_immutable(made);
    return made;
  }();
  return funcs;
}

}  // namespace

struct TrueTypeFace::Handles {
  FacePtr face;
  FontPtr font;
};

TrueTypeFace::TrueTypeFace(std::unique_ptr<Handles> handles) : handles_(std::move(handles)) {}
TrueTypeFace::~TrueTypeFace() = default;

std::unique_ptr<TrueTypeFace> TrueTypeFace::Open(const std::string& path, int index) {
  if (HarfBuzz() == nullptr) return nullptr;  // no HarfBuzz here: no face
  const HarfBuzzLibrary& hb = *HarfBuzz();
  const BlobPtr blob(hb.hb_blob_create_from_file_or_fail(path.c_str()));
  if (!blob || index < 0 || static_cast<unsigned>(index) >= hb.hb_face_count(blob.get()))
    return nullptr;
  auto handles = std::make_unique<Handles>();
  handles->face.reset(hb.hb_face_create(blob.get(), static_cast<unsigned>(index)));
  const unsigned upem = hb.hb_face_get_upem(handles->face.get());
  if (hb.hb_face_get_glyph_count(handles->face.get()) == 0 || upem == 0) return nullptr;
  hb.hb_face_make_immutable(handles->face.get());
  handles->font.reset(hb.hb_font_create(handles->face.get()));
  hb_font_t* font = handles->font.get();
  // Design units throughout: no hinting, no rounding to pixels.
  hb.hb_font_set_scale(font, static_cast<int>(upem), static_cast<int>(upem));
  hb.hb_font_make_immutable(font);

  std::unique_ptr<TrueTypeFace> face(new TrueTypeFace(std::move(handles)));
  hb_font_extents_t extents{};
  hb.hb_font_get_h_extents(font, &extents);
  face->descent_ = std::abs(static_cast<double>(extents.descender));
  hb_position_t cap = 0;
  if (hb.hb_ot_metrics_get_position(font, HB_OT_METRICS_TAG_CAP_HEIGHT, &cap) && cap > 0) {
    face->capHeight_ = cap;
  } else {
    // Older fonts do not say: the height of their H, else most of the ascent.
    hb_codepoint_t h = 0;
    hb_glyph_extents_t box{};
    if (hb.hb_font_get_nominal_glyph(font, 'H', &h) &&
        hb.hb_font_get_glyph_extents(font, h, &box) && box.y_bearing > 0) {
      face->capHeight_ = box.y_bearing;
    } else {
      face->capHeight_ = 0.7 * extents.ascender;
    }
  }
  if (!(face->capHeight_ > 0)) face->capHeight_ = 0.7 * upem;
  return face;
}

double TrueTypeFace::Shape(std::string_view line, double tracking,
                           std::vector<PlacedGlyph>& glyphs) const {
  glyphs.clear();
  if (line.empty()) return 0;
  const HarfBuzzLibrary& hb = *HarfBuzz();
  const BufferPtr buffer(hb.hb_buffer_create());
  hb.hb_buffer_add_utf8(buffer.get(), line.data(), static_cast<int>(line.size()), 0,
                        static_cast<int>(line.size()));
  hb.hb_buffer_guess_segment_properties(buffer.get());
  hb.hb_shape(handles_->font.get(), buffer.get(), nullptr, 0);
  unsigned count = 0;
  const hb_glyph_info_t* info = hb.hb_buffer_get_glyph_infos(buffer.get(), &count);
  const hb_glyph_position_t* pos = hb.hb_buffer_get_glyph_positions(buffer.get(), &count);
  glyphs.reserve(count);
  double x = 0, y = 0;
  for (unsigned i = 0; i < count; ++i) {
    glyphs.push_back({info[i].codepoint, {x + pos[i].x_offset, y + pos[i].y_offset}});
    x += pos[i].x_advance * tracking;
    y += pos[i].y_advance;
  }
  return x;
}

double TrueTypeFace::Advance(std::string_view line, double tracking) const {
  thread_local std::vector<PlacedGlyph> glyphs;
  return Shape(line, tracking, glyphs);
}

void TrueTypeFace::AppendOutline(unsigned id, Vec2 at, CurvePath& out) const {
  Outline outline{&out, at};
  HarfBuzz()->hb_font_get_glyph_shape(handles_->font.get(), id, DrawFuncs(), &outline);
}

}  // namespace sheafwork::embedded
