#include "embedded/render/shape_font.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <iconv.h>
#endif

#include <array>
#include <cstring>
#include <map>
#include <tuple>

#include "embedded/render/fallback_glyphs.h"
#include "embedded/render/shape_glyphs.h"
#include "log/paths.h"
#include "text/strings.h"
#include "text/utf8.h"
#include "text/windows1252.h"

namespace sheafwork::embedded {

namespace {

// The shape numbers a font of one-byte codes gives the degree sign, the
// plus-minus sign and the diameter symbol.
constexpr std::uint32_t kDegreeShape = 256;
constexpr std::uint32_t kPlusMinusShape = 257;
constexpr std::uint32_t kDiameterShape = 258;

// The text shape fonts every CAD installation has, and "standard", the
// default font LibreCAD writes in its drawings.
constexpr std::string_view kStandardFonts[] = {
    "txt",     "monotxt",  "simplex",  "complex", "italic",   "romans",   "romand",  "romanc",
    "romant",  "italicc",  "italict",  "scripts", "scriptc",  "greeks",   "greekc",  "gothice",
    "gothicg", "gothici",  "isocp",    "isocp2",  "isocp3",   "isoct",    "isoct2",  "isoct3",
    "iso",     "simplex8", "complex8", "romans8", "cyrillic", "cyriltlc", "standard"};

std::uint64_t Key(const ShapeFile& file, std::uint32_t number, const ShapeFile* first) {
  return (static_cast<std::uint64_t>(&file == first ? 0 : 1) << 32) | number;
}

// The Windows code page a drawing's code page names, when it is one of
// two-byte characters; 0 otherwise.
int DoubleByteCodePage(std::string_view codePage) {
  for (const int page : {932, 936, 949, 950}) {
    if (EqualsIgnoreCase(codePage, "ANSI_" + std::to_string(page))) return page;
  }
  return 0;
}

}  // namespace

const ShapeFace& ShapeFace::Builtin() {
  static const ShapeFace face(nullptr, nullptr);
  return face;
}

ShapeFace::ShapeFace(std::shared_ptr<const ShapeFile> font,
                     std::shared_ptr<const ShapeFile> bigFont, int bigFontCodePage)
    : font_(std::move(font)), bigFont_(std::move(bigFont)), bigFontCodePage_(bigFontCodePage) {}

ShapeFace::~ShapeFace() {
#ifndef _WIN32
  if (converter_ != nullptr) iconv_close(static_cast<iconv_t>(converter_));
#endif
}

const StrokeGlyph* ShapeFace::Built(const ShapeFile& file, std::uint32_t number) const {
  const std::uint64_t key = Key(file, number, font_.get());
  const auto found = glyphs_.find(key);
  if (found != glyphs_.end()) return found->second.get();
  std::unique_ptr<StrokeGlyph> glyph;
  if (std::optional<StrokeGlyph> shape = ShapeGlyph(file, number)) {
    glyph = std::make_unique<StrokeGlyph>(std::move(*shape));
  }
  return glyphs_.emplace(key, std::move(glyph)).first->second.get();
}

// The two-byte code of `code` in the big font's code page (lead byte
// first); nullopt when the code page has no such character.
std::optional<std::uint32_t> ShapeFace::BigFontCode(char32_t code) const {
#ifdef _WIN32
  // The system's own tables of the code page.
  wchar_t in[2];
  int inSize = 1;
  if (code >= 0x10000) {
    in[0] = static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
    in[1] = static_cast<wchar_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
    inSize = 2;
  } else {
    in[0] = static_cast<wchar_t>(code);
  }
  char out[8];
  BOOL defaulted = FALSE;
  const int n = WideCharToMultiByte(static_cast<UINT>(bigFontCodePage_), WC_NO_BEST_FIT_CHARS, in,
                                    inSize, out, sizeof out, nullptr, &defaulted);
  if (n != 2 || defaulted) return std::nullopt;
  return static_cast<std::uint32_t>(static_cast<std::uint8_t>(out[0]) << 8 |
                                    static_cast<std::uint8_t>(out[1]));
#else
  if (converter_ == nullptr) {
    const std::string name = "CP" + std::to_string(bigFontCodePage_);
    const iconv_t opened = iconv_open(name.c_str(), "UTF-8");
    if (opened == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
    converter_ = opened;
  }
  std::string in;
  AppendUtf8(in, code);
  char out[8];
  char* inPtr = in.data();
  std::size_t inLeft = in.size();
  char* outPtr = out;
  std::size_t outLeft = sizeof out;
  const auto converter = static_cast<iconv_t>(converter_);
  iconv(converter, nullptr, nullptr, nullptr, nullptr);
  if (iconv(converter, &inPtr, &inLeft, &outPtr, &outLeft) == static_cast<std::size_t>(-1)) {
    return std::nullopt;
  }
  if (outPtr - out != 2) return std::nullopt;
  return static_cast<std::uint32_t>(static_cast<std::uint8_t>(out[0]) << 8 |
                                    static_cast<std::uint8_t>(out[1]));
#endif
}

const StrokeGlyph* ShapeFace::FromFiles(char32_t code) const {
  const std::lock_guard lock(mutex_);
  if (font_) {
    std::array<std::uint32_t, 2> numbers{code, code};
    if (font_->Kind() == ShapeFileKind::Unifont) {
      if (code == 0xD8) numbers[1] = 0x2205;  // what %%c gives may be drawn as a diameter
    } else if (code >= 0x80) {
      // One-byte codes of the Windows code page, and three symbols of
      // their own.
      std::string utf8;
      AppendUtf8(utf8, code);
      const Windows1252Text bytes = Utf8ToWindows1252(utf8);
      numbers[1] = bytes.replaced == 0 && bytes.bytes.size() == 1
                       ? static_cast<std::uint8_t>(bytes.bytes[0])
                       : 0;
      numbers[0] = code == 0xB0                     ? kDegreeShape
                   : code == 0xB1                   ? kPlusMinusShape
                   : code == 0xD8 || code == 0x2205 ? kDiameterShape
                                                    : numbers[1];
    }
    for (const std::uint32_t number : numbers) {
      if (number == 0) continue;
      if (const StrokeGlyph* glyph = Built(*font_, number)) return glyph;
    }
  }
  if (bigFont_ && code >= 0x80) {
    if (const std::optional<std::uint32_t> number = BigFontCode(code)) {
      if (bigFont_->IsLeadByte(static_cast<std::uint8_t>(*number >> 8))) {
        if (const StrokeGlyph* glyph = Built(*bigFont_, *number)) return glyph;
      }
    }
  }
  return nullptr;
}

const StrokeGlyph& ShapeFace::Glyph(char32_t code) const {
  if (font_ || bigFont_) {
    if (const StrokeGlyph* glyph = FromFiles(code)) return *glyph;
  }
  const StrokeFont& stroke = StrokeFont::Get();
  if (const StrokeGlyph* glyph = stroke.Find(code)) return *glyph;
  if (code >= 0x80) {
    if (const StrokeGlyph* glyph = FallbackGlyph(code)) return *glyph;
  }
  return stroke.GlyphOrPlaceholder(code);
}

double ShapeFace::Advance(std::string_view text, double tracking) const {
  return LaidAdvance(text, tracking, [this](char32_t c) -> const StrokeGlyph& { return Glyph(c); });
}

Box2 ShapeFace::Bounds(std::string_view text, double tracking) const {
  return LaidBounds(text, tracking, [this](char32_t c) -> const StrokeGlyph& { return Glyph(c); });
}

std::string FindShapeFontFile(std::string_view fontFile, const std::string& searchPath) {
  std::string name(TrimSpaces(fontFile));
  if (name.empty()) return {};
  if (LastPathPart(name).find('.') == std::string_view::npos) name += ".shx";
  const std::optional<std::string> found = FindFileAlongPath(name, searchPath);
  return found ? *found : std::string();
}

const ShapeFace& FindShapeFace(std::string_view fontFile, std::string_view bigFontFile,
                               const std::string& searchPath, std::string_view codePage) {
  static std::mutex mutex;
  static std::map<std::tuple<std::string, std::string, std::string, int>,
                  std::unique_ptr<ShapeFace>>
      faces;
  static std::map<std::string, std::shared_ptr<const ShapeFile>> files;
  const int page = DoubleByteCodePage(codePage);
  const std::lock_guard lock(mutex);
  auto key = std::make_tuple(std::string(fontFile), std::string(bigFontFile), searchPath, page);
  const auto known = faces.find(key);
  if (known != faces.end()) return known->second ? *known->second : ShapeFace::Builtin();
  auto load = [&](std::string_view name) -> std::shared_ptr<const ShapeFile> {
    const std::string path = FindShapeFontFile(name, searchPath);
    if (path.empty()) return nullptr;
    const auto loaded = files.find(path);
    if (loaded != files.end()) return loaded->second;
    std::shared_ptr<const ShapeFile> file;
    try {
      file = std::make_shared<const ShapeFile>(ShapeFile::Read(path));
    } catch (const ShapeFileError&) {
      file = nullptr;  // unreadable: our stroke font stands in
    }
    files.emplace(path, file);
    return file;
  };
  std::shared_ptr<const ShapeFile> font = load(fontFile);
  std::shared_ptr<const ShapeFile> bigFont = bigFontFile.empty() ? nullptr : load(bigFontFile);
  if (bigFont && bigFont->Kind() != ShapeFileKind::BigFont) bigFont = nullptr;
  if (font && font->Kind() == ShapeFileKind::BigFont) font = nullptr;
  std::unique_ptr<ShapeFace> face;
  if (font || bigFont) {
    face = std::make_unique<ShapeFace>(std::move(font), std::move(bigFont), page != 0 ? page : 936);
  }
  const ShapeFace& chosen = face ? *face : ShapeFace::Builtin();
  faces.emplace(std::move(key), std::move(face));  // a miss too: it is not looked for again
  return chosen;
}

bool IsStandardShapeFont(std::string_view fontFile) {
  std::string_view name = LastPathPart(TrimSpaces(fontFile));
  if (EndsWithIgnoreCase(name, ".shx")) name.remove_suffix(4);
  for (const std::string_view standard : kStandardFonts) {
    if (EqualsIgnoreCase(name, standard)) return true;
  }
  return false;
}

}  // namespace sheafwork::embedded
