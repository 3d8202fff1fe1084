#pragma once
// The tags of an ASCII DXF file: a group code line, then a value line. Codes
// are right-aligned in three columns as most writers do; numbers are written
// in the shortest form that reads back to the same value, with no locale.

#include <cstdint>
#include <string>
#include <string_view>

namespace sheafwork::dxfgen {

struct P2 {
  double x = 0;
  double y = 0;
};

struct P3 {
  double x = 0;
  double y = 0;
  double z = 0;
};

/// Writes tags into a growing string. Text values are UTF-8 in the program
/// and written in the code page of the file (Windows-1252 for the releases
/// this writer produces).
class TagWriter {
 public:
  explicit TagWriter(std::string& out) : out_(out) {}

  void Text(int code, std::string_view value);
  void Real(int code, double value);
  void Int(int code, std::int64_t value);
  /// A point: X with `code`, Y with code + 10, Z with code + 20.
  void Point(int code, P2 p);
  void Point(int code, P3 p);
  void Point2d(int code, P2 p);
  /// A handle written as upper-case hexadecimal.
  void Handle(int code, std::uint64_t handle);

 private:
  void Code(int code);
  std::string& out_;
};

/// The shortest decimal form of `value` that reads back unchanged, always
/// with a decimal point or an exponent: 0.0, 12.5, 1e+20.
std::string FormatReal(double value);

/// A handle as the format writes it: upper-case hexadecimal, no leading zeros.
std::string FormatHandle(std::uint64_t handle);

}  // namespace sheafwork::dxfgen
