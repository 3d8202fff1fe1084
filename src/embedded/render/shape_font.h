#pragma once
// What text in a shape font is drawn with: the shape font file its style
// names, found along the host's support path, with the style's big font;
// our stroke font for the characters they lack, or for the whole text when
// no file is found; and the fallback TrueType face's glyphs for what our
// stroke font lacks too. Only a small box is left for a character that no
// font has.

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "embedded/fonts/shape_file.h"
#include "embedded/render/box.h"
#include "embedded/render/stroke_font.h"

namespace sheafwork::embedded {

class ShapeFace {
 public:
  /// Our stroke font alone.
  static const ShapeFace& Builtin();
  /// `font` (may be null) first, then `bigFont` (may be null), whose
  /// two-byte codes are characters of the Windows code page `bigFontCodePage`
  /// (932, 936, 949 or 950).
  ShapeFace(std::shared_ptr<const ShapeFile> font, std::shared_ptr<const ShapeFile> bigFont,
            int bigFontCodePage = 936);
  ~ShapeFace();
  ShapeFace(const ShapeFace&) = delete;
  ShapeFace& operator=(const ShapeFace&) = delete;

  /// The glyph `code` is drawn with: never missing (the placeholder last).
  const StrokeGlyph& Glyph(char32_t code) const;
  /// Width of `text` (UTF-8, one line) in cap heights; `tracking` scales
  /// every advance.
  double Advance(std::string_view text, double tracking = 1) const;
  /// The box around the glyphs of `text` laid from the origin along +x.
  Box2 Bounds(std::string_view text, double tracking = 1) const;

 private:
  const StrokeGlyph* FromFiles(char32_t code) const;
  const StrokeGlyph* Built(const ShapeFile& file, std::uint32_t number) const;

  std::optional<std::uint32_t> BigFontCode(char32_t code) const;

  std::shared_ptr<const ShapeFile> font_;
  std::shared_ptr<const ShapeFile> bigFont_;
  int bigFontCodePage_;
  mutable void* converter_ = nullptr;  ///< iconv's, opened for the first two-byte character
  mutable std::mutex mutex_;
  /// Glyphs read from the files, by file and shape number; null for none.
  mutable std::unordered_map<std::uint64_t, std::unique_ptr<StrokeGlyph>> glyphs_;
};

/// The face of a style whose font is the shape font `fontFile` with the big
/// font `bigFontFile` (may be empty): each file found by its name (".shx"
/// added when it has no extension) along the ";"-separated `searchPath`,
/// read once per process. A file found nowhere, or that cannot be read,
/// leaves our stroke font in its place. `codePage` is the drawing's
/// ("ANSI_936" ...): the code page of the big font's characters when it
/// is one of two-byte characters.
const ShapeFace& FindShapeFace(std::string_view fontFile, std::string_view bigFontFile,
                               const std::string& searchPath, std::string_view codePage = {});

/// The shape file `fontFile` names along `searchPath`, with ".shx" added to
/// a name without extension; empty when there is none.
std::string FindShapeFontFile(std::string_view fontFile, const std::string& searchPath);

/// Whether our stroke font stands in for a shape font of this name when no
/// file of it is found: the text fonts every CAD installation has ("txt",
/// "simplex", "romans", "isocp" ...). Letter case, a folder and the ".shx"
/// extension do not matter.
bool IsStandardShapeFont(std::string_view fontFile);

}  // namespace sheafwork::embedded
