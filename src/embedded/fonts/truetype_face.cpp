#include "embedded/fonts/truetype_face.h"

#include <hb-ot.h>
#include <hb.h>

#include <algorithm>
#include <cmath>

namespace sheafwork::embedded {

namespace {

template <typename T, void (*Free)(T*)>
struct HbDeleter {
  void operator()(T* p) const { Free(p); }
};
using BlobPtr = std::unique_ptr<hb_blob_t, HbDeleter<hb_blob_t, hb_blob_destroy>>;
using FacePtr = std::unique_ptr<hb_face_t, HbDeleter<hb_face_t, hb_face_destroy>>;
using FontPtr = std::unique_ptr<hb_font_t, HbDeleter<hb_font_t, hb_font_destroy>>;
using BufferPtr = std::unique_ptr<hb_buffer_t, HbDeleter<hb_buffer_t, hb_buffer_destroy>>;

// Most segments one curve is cut into.
constexpr int kMostChords = 64;

// The outline being flattened: loops appended to `out`, each started at a
// move and ended at the next move or close.
struct Flattener {
  Loops* out;
  Vec2 at;
  double tolerance;
  std::size_t loopStart = 0;
  bool open = false;

  void Point(double x, double y) { out->points.push_back({at.x + x, at.y + y}); }
  void Close() {
    if (!open) return;
    open = false;
    std::size_t n = out->points.size() - loopStart;
    if (n > 1 && out->points.back().x == out->points[loopStart].x &&
        out->points.back().y == out->points[loopStart].y) {
      out->points.pop_back();  // closed implicitly
      --n;
    }
    if (n < 3) {
      out->points.resize(loopStart);
      return;
    }
    out->sizes.push_back(static_cast<int>(n));
  }
  // Chords for a curve whose second differences reach `bend`: the gap of
  // n chords to the curve stays under bend / (8 n²).
  int Chords(double bend) const {
    if (!(bend > 0) || !(tolerance > 0)) return 1;
    const double n = std::ceil(std::sqrt(bend / (8 * tolerance)));
    return static_cast<int>(std::clamp(n, 1.0, static_cast<double>(kMostChords)));
  }
};

void MoveTo(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x, float y, void*) {
  auto& f = *static_cast<Flattener*>(data);
  f.Close();
  f.loopStart = f.out->points.size();
  f.open = true;
  f.Point(x, y);
}

void LineTo(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x, float y, void*) {
  static_cast<Flattener*>(data)->Point(x, y);
}

void QuadraticTo(hb_draw_funcs_t*, void* data, hb_draw_state_t* st, float cx, float cy, float x,
                 float y, void*) {
  auto& f = *static_cast<Flattener*>(data);
  const double x0 = st->current_x, y0 = st->current_y;
  const int n = f.Chords(2 * std::hypot(x0 - 2 * cx + x, y0 - 2 * cy + y));
  for (int i = 1; i <= n; ++i) {
    const double t = static_cast<double>(i) / n, u = 1 - t;
    f.Point(u * u * x0 + 2 * u * t * cx + t * t * x, u * u * y0 + 2 * u * t * cy + t * t * y);
  }
}

void CubicTo(hb_draw_funcs_t*, void* data, hb_draw_state_t* st, float c1x, float c1y, float c2x,
             float c2y, float x, float y, void*) {
  auto& f = *static_cast<Flattener*>(data);
  const double x0 = st->current_x, y0 = st->current_y;
  const double bend = 6 * std::max<double>(std::hypot(x0 - 2 * c1x + c2x, y0 - 2 * c1y + c2y),
                                           std::hypot(c1x - 2.0 * c2x + x, c1y - 2.0 * c2y + y));
  const int n = f.Chords(bend);
  for (int i = 1; i <= n; ++i) {
    const double t = static_cast<double>(i) / n, u = 1 - t;
    const double a = u * u * u, b = 3 * u * u * t, c = 3 * u * t * t, d = t * t * t;
    f.Point(a * x0 + b * c1x + c * c2x + d * x, a * y0 + b * c1y + c * c2y + d * y);
  }
}

void ClosePath(hb_draw_funcs_t*, void* data, hb_draw_state_t*, void*) {
  static_cast<Flattener*>(data)->Close();
}

hb_draw_funcs_t* DrawFuncs() {
  static hb_draw_funcs_t* const funcs = [] {
    hb_draw_funcs_t* made = hb_draw_funcs_create();
    hb_draw_funcs_set_move_to_func(made, MoveTo, nullptr, nullptr);
    hb_draw_funcs_set_line_to_func(made, LineTo, nullptr, nullptr);
    hb_draw_funcs_set_quadratic_to_func(made, QuadraticTo, nullptr, nullptr);
    hb_draw_funcs_set_cubic_to_func(made, CubicTo, nullptr, nullptr);
    hb_draw_funcs_set_close_path_func(made, ClosePath, nullptr, nullptr);
    hb_draw_funcs_make_immutable(made);
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
  const BlobPtr blob(hb_blob_create_from_file_or_fail(path.c_str()));
  if (!blob || index < 0 || static_cast<unsigned>(index) >= hb_face_count(blob.get()))
    return nullptr;
  auto handles = std::make_unique<Handles>();
  handles->face.reset(hb_face_create(blob.get(), static_cast<unsigned>(index)));
  const unsigned upem = hb_face_get_upem(handles->face.get());
  if (hb_face_get_glyph_count(handles->face.get()) == 0 || upem == 0) return nullptr;
  hb_face_make_immutable(handles->face.get());
  handles->font.reset(hb_font_create(handles->face.get()));
  hb_font_t* font = handles->font.get();
  // Design units throughout: no hinting, no rounding to pixels.
  hb_font_set_scale(font, static_cast<int>(upem), static_cast<int>(upem));
  hb_font_make_immutable(font);

  std::unique_ptr<TrueTypeFace> face(new TrueTypeFace(std::move(handles)));
  hb_font_extents_t extents{};
  hb_font_get_h_extents(font, &extents);
  face->descent_ = std::abs(static_cast<double>(extents.descender));
  hb_position_t cap = 0;
  if (hb_ot_metrics_get_position(font, HB_OT_METRICS_TAG_CAP_HEIGHT, &cap) && cap > 0) {
    face->capHeight_ = cap;
  } else {
    // Older fonts do not say: the height of their H, else most of the ascent.
    hb_codepoint_t h = 0;
    hb_glyph_extents_t box{};
    if (hb_font_get_nominal_glyph(font, 'H', &h) && hb_font_get_glyph_extents(font, h, &box) &&
        box.y_bearing > 0) {
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
  const BufferPtr buffer(hb_buffer_create());
  hb_buffer_add_utf8(buffer.get(), line.data(), static_cast<int>(line.size()), 0,
                     static_cast<int>(line.size()));
  hb_buffer_guess_segment_properties(buffer.get());
  hb_shape(handles_->font.get(), buffer.get(), nullptr, 0);
  unsigned count = 0;
  const hb_glyph_info_t* info = hb_buffer_get_glyph_infos(buffer.get(), &count);
  const hb_glyph_position_t* pos = hb_buffer_get_glyph_positions(buffer.get(), &count);
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

void TrueTypeFace::AppendOutline(unsigned id, Vec2 at, double tolerance, Loops& out) const {
  Flattener flattener{&out, at, tolerance};
  hb_font_get_glyph_shape(handles_->font.get(), id, DrawFuncs(), &flattener);
  flattener.Close();
}

}  // namespace sheafwork::embedded
