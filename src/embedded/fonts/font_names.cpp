#include "embedded/fonts/font_names.h"

#include <cctype>
#include <fstream>
#include <optional>

#include "log/wide_path.h"

namespace sheafwork::embedded {

namespace {

// Big-endian numbers as the font tables store them.
std::uint32_t U32(std::string_view b, std::size_t at) {
  if (at + 4 > b.size()) return 0;
  const auto* p = reinterpret_cast<const unsigned char*>(b.data() + at);
  return std::uint32_t{p[0]} << 24 | std::uint32_t{p[1]} << 16 | std::uint32_t{p[2]} << 8 | p[3];
}
std::uint16_t U16(std::string_view b, std::size_t at) {
  if (at + 2 > b.size()) return 0;
  const auto* p = reinterpret_cast<const unsigned char*>(b.data() + at);
  return static_cast<std::uint16_t>(p[0] << 8 | p[1]);
}
int S16(std::string_view b, std::size_t at) { return static_cast<std::int16_t>(U16(b, at)); }

constexpr std::uint32_t Tag(const char (&t)[5]) {
  return std::uint32_t(static_cast<unsigned char>(t[0])) << 24 |
         std::uint32_t(static_cast<unsigned char>(t[1])) << 16 |
         std::uint32_t(static_cast<unsigned char>(t[2])) << 8 | static_cast<unsigned char>(t[3]);
}

struct TableDirectory {
  std::string bytes;  // the table records
  std::optional<std::string> Read(const FontFileReader& read, std::uint32_t tag,
                                  std::size_t limit) const {
    for (std::size_t at = 0; at + 16 <= bytes.size(); at += 16) {
      if (U32(bytes, at) != tag) continue;
      const std::uint32_t offset = U32(bytes, at + 8);
      std::size_t length = U32(bytes, at + 12);
      if (length > limit) length = limit;
      std::string table;
      if (!read(offset, length, table)) return std::nullopt;
      return table;
    }
    return std::nullopt;
  }
};

// UTF-16BE (Windows names) or single bytes (Macintosh Roman names, taken as
// Latin-1, which is right for the ASCII family names they hold) to UTF-8.
void AppendUtf8(std::string& out, std::uint32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | c >> 6);
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | c >> 12);
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | c >> 18);
    out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

std::string DecodeName(std::string_view s, bool utf16) {
  std::string out;
  if (!utf16) {
    for (const char c : s) AppendUtf8(out, static_cast<unsigned char>(c));
    return out;
  }
  for (std::size_t i = 0; i + 1 < s.size(); i += 2) {
    std::uint32_t c = U16(s, i);
    if (c >= 0xD800 && c < 0xDC00 && i + 3 < s.size()) {
      const std::uint32_t low = U16(s, i + 2);
      if (low >= 0xDC00 && low < 0xE000) {
        c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        i += 2;
      }
    }
    AppendUtf8(out, c);
  }
  return out;
}

// The name `id` of the 'name' table: Windows Unicode names first, US English
// before any other language, then Macintosh Roman ones.
std::string FindName(std::string_view name, int id) {
  const std::size_t count = U16(name, 2);
  const std::size_t strings = U16(name, 4);
  int best = -1;
  std::string found;
  for (std::size_t r = 0; r < count; ++r) {
    const std::size_t at = 6 + r * 12;
    if (at + 12 > name.size()) break;
    if (U16(name, at + 6) != id) continue;
    const int platform = U16(name, at), encoding = U16(name, at + 2), language = U16(name, at + 4);
    int rank = -1;
    if (platform == 3 && (encoding == 1 || encoding == 10)) rank = language == 0x409 ? 4 : 3;
    if (platform == 0) rank = 2;
    if (platform == 1 && encoding == 0) rank = language == 0 ? 1 : 0;
    if (rank <= best) continue;
    const std::size_t length = U16(name, at + 8), offset = U16(name, at + 10);
    if (strings + offset + length > name.size()) continue;
    best = rank;
    found = DecodeName(name.substr(strings + offset, length), platform != 1);
  }
  return found;
}

std::optional<FontFaceNames> ReadFace(const FontFileReader& read, std::uint64_t start, int index) {
  std::string header;
  if (!read(start, 12, header)) return std::nullopt;
  const std::uint32_t version = U32(header, 0);
  if (version != 0x00010000 && version != Tag("OTTO") && version != Tag("true"))
    return std::nullopt;
  const std::size_t tables = U16(header, 4);
  TableDirectory directory;
  if (!read(start + 12, tables * 16, directory.bytes)) return std::nullopt;

  // A name table is rarely larger; bounded against a damaged length.
  const auto name = directory.Read(read, Tag("name"), 1 << 20);
  const auto head = directory.Read(read, Tag("head"), 54);
  const auto hhea = directory.Read(read, Tag("hhea"), 36);
  if (!name || !head || head->size() < 54) return std::nullopt;
  const auto os2 = directory.Read(read, Tag("OS/2"), 96);

  FontFaceNames face;
  face.index = index;
  face.legacyFamily = FindName(*name, 1);
  face.family = FindName(*name, 16);
  if (face.family.empty()) face.family = face.legacyFamily;
  if (face.family.empty()) return std::nullopt;
  face.unitsPerEm = U16(*head, 18);
  const int macStyle = U16(*head, 44);
  face.bold = (macStyle & 1) != 0;
  face.italic = (macStyle & 2) != 0;
  if (hhea && hhea->size() >= 36) {
    face.ascent = S16(*hhea, 4);
    face.descent = -S16(*hhea, 6);
  }
  if (os2 && os2->size() >= 78) {
    face.weight = U16(*os2, 4);
    const int selection = U16(*os2, 62);
    face.italic = (selection & 1) != 0 || (selection & 0x200) != 0;
    face.bold = (selection & 0x20) != 0 || face.weight >= 600;
    if (face.ascent == 0 && face.descent == 0) {
      face.ascent = U16(*os2, 74);
      face.descent = U16(*os2, 76);
    }
    if (U16(*os2, 0) >= 2 && os2->size() >= 90) face.capHeight = S16(*os2, 88);
  }
  if (face.descent < 0) face.descent = -face.descent;
  if (face.unitsPerEm == 0) return std::nullopt;
  return face;
}

}  // namespace

std::vector<FontFaceNames> ReadFontFaceNames(const FontFileReader& read) {
  std::vector<FontFaceNames> faces;
  std::string header;
  if (!read(0, 12, header)) return faces;
  if (U32(header, 0) == Tag("ttcf")) {
    const std::uint32_t count = U32(header, 8);
    std::string offsets;
    if (count > 4096 || !read(12, std::size_t{count} * 4, offsets)) return faces;
    for (std::uint32_t i = 0; i < count; ++i) {
      if (auto face = ReadFace(read, U32(offsets, i * 4), static_cast<int>(i)))
        faces.push_back(std::move(*face));
    }
  } else if (auto face = ReadFace(read, 0, 0)) {
    faces.push_back(std::move(*face));
  }
  return faces;
}

std::vector<FontFaceNames> ReadFontFileFaceNames(const std::string& path) {
  std::ifstream file(FsPath(path), std::ios::binary);
  if (!file) return {};
  return ReadFontFaceNames([&file](std::uint64_t offset, std::size_t size, std::string& out) {
    out.resize(size);
    file.clear();
    file.seekg(static_cast<std::streamoff>(offset));
    return file.read(out.data(), static_cast<std::streamsize>(size)).gcount() ==
           static_cast<std::streamsize>(size);
  });
}

std::string FamilyKey(std::string_view name) {
  std::string key;
  key.reserve(name.size());
  for (const char c : name) {
    if (c == ' ') continue;
    key += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return key;
}

}  // namespace sheafwork::embedded
