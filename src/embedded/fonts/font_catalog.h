#pragma once
// The face each text is drawn with, chosen once per request and kept for the
// program's life.

#include <string_view>

#include "embedded/fonts/truetype_face.h"

namespace sheafwork::embedded {

/// A font as text asks for it.
struct FontFace {
  std::string_view family;  ///< TrueType family, may be empty
  std::string_view file;    ///< font file, may be empty
  bool bold = false;
  bool italic = false;
};

struct ChosenFace {
  const TrueTypeFace* face = nullptr;  ///< null: the system has no font at all
  /// Italic was asked and the face does not slant: slant it.
  bool slant = false;
};

/// The family asked for when the system has it; else the font file named
/// when the system has a file of that name; else the family named like
/// the file's stem ("Verdana" for "verdana.ttf"); else a family of the same
/// advance widths (Liberation Sans or Nimbus Sans for Arial, and the like
/// for Times New Roman, Courier New, Calibri, Cambria); else DejaVu Sans;
/// else any face. Bold and italic as close as the family has them.
ChosenFace ChooseFace(const FontFace& request);

}  // namespace sheafwork::embedded
