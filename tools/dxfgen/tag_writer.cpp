#include "dxfgen/tag_writer.h"

#include <array>
#include <charconv>
#include <cstdio>

#include "text/windows1252.h"

namespace sheafwork::dxfgen {

std::string FormatReal(double value) {
  if (value == 0) return "0.0";  // also turns -0 into 0
  std::array<char, 64> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  std::string text(buffer.data(), result.ptr);
  if (text.find_first_of(".e") == std::string::npos) text += ".0";
  return text;
}

std::string FormatHandle(std::uint64_t handle) {
  std::array<char, 32> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), handle, 16);
  std::string text(buffer.data(), result.ptr);
  for (char& c : text) {
    if (c >= 'a' && c <= 'f') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

void TagWriter::Code(int code) {
  std::array<char, 16> buffer{};
  const int n = std::snprintf(buffer.data(), buffer.size(), "%3d\n", code);
  out_.append(buffer.data(), static_cast<std::size_t>(n));
}

void TagWriter::Text(int code, std::string_view value) {
  Code(code);
  out_ += Utf8ToWindows1252(value).bytes;
  out_ += '\n';
}

void TagWriter::Real(int code, double value) {
  Code(code);
  out_ += FormatReal(value);
  out_ += '\n';
}

void TagWriter::Int(int code, std::int64_t value) {
  Code(code);
  std::array<char, 32> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  out_.append(buffer.data(), result.ptr);
  out_ += '\n';
}

void TagWriter::Point(int code, P2 p) { Point(code, P3{p.x, p.y, 0}); }

void TagWriter::Point(int code, P3 p) {
  Real(code, p.x);
  Real(code + 10, p.y);
  Real(code + 20, p.z);
}

void TagWriter::Point2d(int code, P2 p) {
  Real(code, p.x);
  Real(code + 10, p.y);
}

void TagWriter::Handle(int code, std::uint64_t handle) {
  Code(code);
  out_ += FormatHandle(handle);
  out_ += '\n';
}

}  // namespace sheafwork::dxfgen
