#pragma once
// Splits the bytes of a DXF file, ASCII or binary, into group-code/value tags.
//
// The whole file is in memory; a tag's value is a view into it, so nothing is
// allocated per tag and the bytes must outlive the tags. Usage:
//
//   Tokenizer t(bytes, "plan.dxf");
//   Tag tag;
//   while (t.Next(tag)) {
//     ... tag.code, tag.value (std::string_view), tag.line ...
//   }
//
// Next() returns false after the 0/EOF tag (anything behind it is ignored) or
// at the end of the bytes; it skips 999 comments. Malformed input throws
// DxfError naming the file and the line (the byte offset in a binary file).
//
// In an ASCII file `value` is the value line without its line end (strings
// keep their spaces); in a binary file it is the value's bytes as stored:
// a string without its NUL, a number in little-endian order. Use Double() and
// Integer() to read numbers from either form.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sheafwork::embedded {

/// How the value of a group code is stored.
enum class ValueType : std::uint8_t {
  kString,
  kDouble,
  kInt16,
  kInt32,
  kInt64,
  kBool,    ///< one byte in a binary file
  kBinary,  ///< hex text in ASCII files, length byte + bytes in binary files
  kUnknown,
};

/// The type the format gives to values of `code`.
ValueType TypeOfCode(int code);

struct Tag {
  int code = 0;
  std::string_view value;
  /// ASCII: the 1-based line of the group code; binary: the byte offset of it.
  std::size_t line = 0;
  bool binary = false;

  /// The value as a number; nullopt when it is not one.
  std::optional<double> Double() const;
  std::optional<std::int64_t> Integer() const;
  /// The line (ASCII) or byte offset (binary) where the value starts.
  std::size_t ValuePosition() const { return binary ? line : line + 1; }
};

class Tokenizer {
 public:
  /// `name` is only used in error messages. Throws DxfError when `bytes` is
  /// empty.
  Tokenizer(std::string_view bytes, std::string name);

  /// Reads the next tag into `tag`; false at 0/EOF or the end of the bytes.
  bool Next(Tag& tag);

  bool IsBinary() const { return binary_; }
  /// Binary files: true when group codes are one byte (release 12 and older).
  bool HasShortCodes() const { return shortCodes_; }
  const std::string& Name() const { return name_; }

 private:
  bool NextAscii(Tag& tag);
  bool NextBinary(Tag& tag);
  std::string_view ReadLine();
  void DetectBinaryCodeWidth();
  [[noreturn]] void FailBinaryEnd(std::size_t offset, int code) const;

  const char* begin_;
  const char* pos_;
  const char* end_;
  std::string name_;
  std::size_t line_ = 0;  ///< lines read so far
  bool binary_ = false;
  bool shortCodes_ = false;
  bool done_ = false;
};

/// True when `bytes` starts like a binary DXF file.
bool IsBinaryDxf(std::string_view bytes);

/// `s` without leading and trailing spaces and tabs.
std::string_view TrimSpaces(std::string_view s);

}  // namespace sheafwork::embedded
