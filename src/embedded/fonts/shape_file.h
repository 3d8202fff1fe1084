#pragma once
// Compiled shape files (.shx): the shapes of a shape font or shape file, of
// a Unicode shape font and of a big font, read from the file's bytes. A
// shape is kept as its definition bytes (the vectors, arcs and codes
// that draw it); render/shape_glyphs.h turns them into strokes.

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace sheafwork::embedded {

enum class ShapeFileKind {
  Shapes,   ///< "shapes 1.0" / "1.1": up to 255 one-byte codes (and a few more)
  Unifont,  ///< "unifont 1.0": shapes numbered by their Unicode code point
  BigFont,  ///< "bigfont 1.0": two-byte codes of an Asian code page
};

/// The file is not a shape file or is cut short; the message (French) names
/// the file and what is wrong.
class ShapeFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class ShapeFile {
 public:
  /// Reads the file at `path`. Throws ShapeFileError.
  static ShapeFile Read(const std::string& path);
  /// Reads the bytes of a file; `name` is what messages call it. Throws
  /// ShapeFileError.
  static ShapeFile Parse(std::vector<std::uint8_t> bytes, const std::string& name);

  ShapeFileKind Kind() const { return kind_; }
  /// Whether the file describes a font (its shape 0 gives the font's
  /// heights) rather than a collection of symbols.
  bool IsFont() const { return above_ > 0; }
  /// How many vector lengths capitals reach above the baseline, and
  /// descenders below it (0 when the file says nothing).
  int Above() const { return above_; }
  int Below() const { return below_; }
  /// 2 when the font also draws vertical text (code 14 then applies).
  int Modes() const { return modes_; }
  /// Big font: whether `byte` starts a two-byte code.
  bool IsLeadByte(std::uint8_t byte) const;

  /// The definition bytes of shape `number` (its name left out), ending
  /// with the 0 that ends the shape when the file has it; empty when the
  /// file has no such shape.
  std::span<const std::uint8_t> Shape(std::uint32_t number) const;
  std::size_t ShapeCount() const { return index_.size(); }

 private:
  struct Entry {
    std::uint32_t number;
    std::size_t offset;
    std::size_t size;
  };
  struct Range {
    std::uint16_t first, last;
  };
  class Cursor;
  ShapeFile() = default;
  void ReadShapes(Cursor& in);
  void ReadUnifont(Cursor& in);
  void ReadBigFont(Cursor& in);
  void ReadFontInfo(std::size_t offset, std::size_t size);
  void Add(std::uint32_t number, std::size_t offset, std::size_t size, bool named);

  ShapeFileKind kind_ = ShapeFileKind::Shapes;
  std::vector<std::uint8_t> bytes_;
  std::vector<Entry> index_;  ///< sorted by number
  std::vector<Range> leadBytes_;
  int above_ = 0;
  int below_ = 0;
  int modes_ = 0;
};

}  // namespace sheafwork::embedded
