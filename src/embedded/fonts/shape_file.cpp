#include "embedded/fonts/shape_file.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "log/wide_path.h"

namespace sheafwork::embedded {

namespace {

// Every compiled shape file starts with one of these lines, ended by CR LF
// and the byte 0x1A.
constexpr std::string_view kShapes10 = "AutoCAD-86 shapes 1.0\r\n\x1a";
constexpr std::string_view kShapes11 = "AutoCAD-86 shapes 1.1\r\n\x1a";
constexpr std::string_view kUnifont = "AutoCAD-86 unifont 1.0\r\n\x1a";
constexpr std::string_view kBigFont = "AutoCAD-86 bigfont 1.0\r\n\x1a";

bool StartsWith(const std::vector<std::uint8_t>& bytes, std::string_view signature) {
  return bytes.size() >= signature.size() &&
         std::memcmp(bytes.data(), signature.data(), signature.size()) == 0;
}

}  // namespace

/// Little-endian numbers read from the file's bytes; running past the end is
/// an error naming the file.
class ShapeFile::Cursor {
 public:
  Cursor(const std::vector<std::uint8_t>& bytes, std::size_t at, const std::string& name)
      : bytes_(bytes), at_(at), name_(name) {}

  std::uint16_t U16() {
    Need(2);
    const auto v = static_cast<std::uint16_t>(bytes_[at_] | (bytes_[at_ + 1] << 8));
    at_ += 2;
    return v;
  }
  std::uint32_t U32() {
    const std::uint32_t low = U16();
    return low | (static_cast<std::uint32_t>(U16()) << 16);
  }
  std::size_t At() const { return at_; }
  /// Moves past `count` bytes that must be there.
  void Skip(std::size_t count) {
    Need(count);
    at_ += count;
  }
  [[noreturn]] void Fail() const {
    throw ShapeFileError("fichier de formes « " + name_ + " » tronqué à l'octet " +
                         std::to_string(at_));
  }

 private:
  void Need(std::size_t count) const {
    if (bytes_.size() - at_ < count) Fail();
  }

  const std::vector<std::uint8_t>& bytes_;
  std::size_t at_;
  const std::string& name_;
};

ShapeFile ShapeFile::Read(const std::string& path) {
  std::ifstream in(FsPath(path), std::ios::binary);
  if (!in) throw ShapeFileError("fichier de formes « " + path + " » illisible");
  std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(in),
                                  std::istreambuf_iterator<char>()};
  if (in.bad()) throw ShapeFileError("fichier de formes « " + path + " » illisible");
  return Parse(std::move(bytes), path);
}

ShapeFile ShapeFile::Parse(std::vector<std::uint8_t> bytes, const std::string& name) {
  ShapeFile file;
  file.bytes_ = std::move(bytes);
  if (StartsWith(file.bytes_, kShapes10) || StartsWith(file.bytes_, kShapes11)) {
    file.kind_ = ShapeFileKind::Shapes;
    Cursor in(file.bytes_, kShapes10.size(), name);
    file.ReadShapes(in);
  } else if (StartsWith(file.bytes_, kUnifont)) {
    file.kind_ = ShapeFileKind::Unifont;
    Cursor in(file.bytes_, kUnifont.size(), name);
    file.ReadUnifont(in);
  } else if (StartsWith(file.bytes_, kBigFont)) {
    file.kind_ = ShapeFileKind::BigFont;
    Cursor in(file.bytes_, kBigFont.size(), name);
    file.ReadBigFont(in);
  } else {
    throw ShapeFileError("« " + name + " » n'est pas un fichier de formes compilé");
  }
  std::stable_sort(file.index_.begin(), file.index_.end(),
                   [](const Entry& a, const Entry& b) { return a.number < b.number; });
  return file;
}

// First and last shape numbers, the count, then for each shape its number
// and size; the shapes follow one after the other in that order.
void ShapeFile::ReadShapes(Cursor& in) {
  in.U16();
  in.U16();
  const std::uint16_t count = in.U16();
  std::vector<std::pair<std::uint16_t, std::uint16_t>> sizes;
  for (std::uint16_t i = 0; i < count; ++i) {
    const std::uint16_t number = in.U16();
    sizes.emplace_back(number, in.U16());
  }
  for (const auto& [number, size] : sizes) {
    const std::size_t offset = in.At();
    in.Skip(size);
    if (number == 0) {
      ReadFontInfo(offset, size);
    } else {
      Add(number, offset, size, true);
    }
  }
}

// The number of shapes with the font's own, the size of the font's record
// and that record; then each shape as its number, its size and its bytes.
void ShapeFile::ReadUnifont(Cursor& in) {
  const std::uint32_t count = in.U32();
  const std::uint16_t infoSize = in.U16();
  const std::size_t infoAt = in.At();
  in.Skip(infoSize);
  ReadFontInfo(infoAt, infoSize);
  for (std::uint32_t i = 1; i < count; ++i) {
    const std::uint16_t number = in.U16();
    const std::uint16_t size = in.U16();
    const std::size_t offset = in.At();
    in.Skip(size);
    Add(number, offset, size, true);
  }
}

// The header's size, the number of shapes, the number of lead-byte ranges
// and the ranges; then for each shape its number, its size and where it is
// in the file.
void ShapeFile::ReadBigFont(Cursor& in) {
  in.U16();
  const std::uint16_t count = in.U16();
  const std::uint16_t ranges = in.U16();
  for (std::uint16_t i = 0; i < ranges; ++i) {
    const std::uint16_t first = in.U16();
    leadBytes_.push_back({first, in.U16()});
  }
  for (std::uint16_t i = 0; i < count; ++i) {
    const std::uint16_t number = in.U16();
    const std::uint16_t size = in.U16();
    const std::uint32_t offset = in.U32();
    if (number == 0 && size == 0 && offset == 0) continue;  // an unused slot
    if (offset > bytes_.size() || bytes_.size() - offset < size) in.Fail();
    if (number == 0) {
      ReadFontInfo(offset, size);
    } else {
      Add(number, offset, size, false);
    }
  }
}

// The font's name ended by a NUL, then the heights above and below the
// baseline and the modes. An extended big font gives (height, 0, modes,
// width) instead: its height is then the height above the baseline.
void ShapeFile::ReadFontInfo(std::size_t offset, std::size_t size) {
  const std::uint8_t* p = bytes_.data() + offset;
  const std::uint8_t* end = p + size;
  const std::uint8_t* nul = std::find(p, end, 0);
  if (nul == end) return;
  const std::uint8_t* v = nul + 1;
  const auto left = static_cast<std::size_t>(end - v);
  if (left < 3) return;
  above_ = v[0];
  below_ = v[1];
  modes_ = v[2];
}

void ShapeFile::Add(std::uint32_t number, std::size_t offset, std::size_t size, bool named) {
  if (named) {
    // The shape's name, ended by a NUL, comes before its bytes.
    const std::uint8_t* p = bytes_.data() + offset;
    const std::uint8_t* nul = std::find(p, p + size, 0);
    if (nul == p + size) return;
    const auto skip = static_cast<std::size_t>(nul - p) + 1;
    offset += skip;
    size -= skip;
  }
  if (size == 0) return;
  index_.push_back({number, offset, size});
}

bool ShapeFile::IsLeadByte(std::uint8_t byte) const {
  return std::any_of(leadBytes_.begin(), leadBytes_.end(),
                     [&](const Range& r) { return byte >= r.first && byte <= r.last; });
}

std::span<const std::uint8_t> ShapeFile::Shape(std::uint32_t number) const {
  const auto it = std::lower_bound(index_.begin(), index_.end(), number,
                                   [](const Entry& e, std::uint32_t n) { return e.number < n; });
  if (it == index_.end() || it->number != number) return {};
  return {bytes_.data() + it->offset, it->size};
}

}  // namespace sheafwork::embedded
