#pragma once
// libharfbuzz, opened the first time a TrueType face is needed rather than
// when the program starts: it brings GLib, Graphite and FreeType along, whose
// loading a run without TrueType text would pay for nothing. It stays open for
// the rest of the program.

#include <hb-ot.h>
#include <hb.h>

namespace sheafwork::embedded {

// The functions the program calls, each a member of the same name.
#define SHEAFWORK_HARFBUZZ_FUNCTIONS(X)                                                            \
  X(hb_blob_create_from_file_or_fail)                                                              \
  X(hb_blob_destroy)                                                                               \
  X(hb_buffer_add_utf8)                                                                            \
  X(hb_buffer_create)                                                                              \
  X(hb_buffer_destroy)                                                                             \
  X(hb_buffer_get_glyph_infos) X(hb_buffer_get_glyph_positions)                                    \
      X(hb_buffer_guess_segment_properties) X(hb_draw_funcs_create)                                \
          X(hb_draw_funcs_make_immutable) X(hb_draw_funcs_set_close_path_func)                     \
              X(hb_draw_funcs_set_cubic_to_func) X(hb_draw_funcs_set_line_to_func)                 \
                  X(hb_draw_funcs_set_move_to_func) X(hb_draw_funcs_set_quadratic_to_func)         \
                      X(hb_face_count) X(hb_face_create) X(hb_face_destroy)                        \
                          X(hb_face_get_glyph_count) X(hb_face_get_upem) X(hb_face_make_immutable) \
                              X(hb_font_create) X(hb_font_destroy) X(hb_font_get_glyph_extents)    \
                                  X(hb_font_get_glyph_shape) X(hb_font_get_h_extents)              \
                                      X(hb_font_get_nominal_glyph) X(hb_font_make_immutable)       \
                                          X(hb_font_set_scale) X(hb_ot_metrics_get_position)       \
                                              X(hb_shape)

struct HarfBuzzLibrary {
#define SHEAFWORK_HARFBUZZ_MEMBER(name) decltype(&::name) name = nullptr;
  SHEAFWORK_HARFBUZZ_FUNCTIONS(SHEAFWORK_HARFBUZZ_MEMBER)
#undef SHEAFWORK_HARFBUZZ_MEMBER
};

/// The library with every function above; null when the system has no
/// usable libharfbuzz (then text has no TrueType face).
const HarfBuzzLibrary* HarfBuzz();

}  // namespace sheafwork::embedded
