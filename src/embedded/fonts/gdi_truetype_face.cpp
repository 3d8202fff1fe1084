// Windows: a face drawn by GDI. The font file is added for this process only
// (AddFontResourceEx, FR_PRIVATE), the face made at one pixel per design
// unit, so that GDI's unhinted outlines and advance widths are the font's
// own numbers. Shaping is simple: one glyph per UTF-16 unit, left to right,
// advance widths without kerning or ligatures.
#include "embedded/fonts/truetype_face.h"

#include <windows.h>

#include <cstddef>
#include <cstring>
#include <mutex>
#include <optional>
#include <unordered_map>

#include "embedded/fonts/font_names.h"
#include "platform/windows_text.h"

namespace sheafwork::embedded {

namespace {

std::optional<FontFaceNames> FaceNames(const std::string& path, int index) {
  for (FontFaceNames& face : ReadFontFileFaceNames(path)) {
    if (face.index == index) return std::move(face);
  }
  return std::nullopt;
}

double FromFixed(FIXED f) { return f.value + f.fract / 65536.0; }

}  // namespace

struct TrueTypeFace::Handles {
  std::wstring file;  // added for this process, removed with the face
  HDC dc = nullptr;
  HFONT font = nullptr;
  HGDIOBJ previous = nullptr;
  // GDI's device context serves one thread at a time.
  mutable std::mutex mutex;
  mutable std::unordered_map<unsigned, double> advances;

  ~Handles() {
    if (dc != nullptr) {
      if (previous != nullptr) SelectObject(dc, previous);
      DeleteDC(dc);
    }
    if (font != nullptr) DeleteObject(font);
    if (!file.empty()) RemoveFontResourceExW(file.c_str(), FR_PRIVATE, nullptr);
  }

  double AdvanceOf(unsigned glyph) const {
    const auto it = advances.find(glyph);
    if (it != advances.end()) return it->second;
    ABC abc{};
    double advance = 0;
    if (GetCharABCWidthsI(dc, glyph, 1, nullptr, &abc))
      advance = static_cast<double>(abc.abcA) + abc.abcB + abc.abcC;
    advances.emplace(glyph, advance);
    return advance;
  }
};

TrueTypeFace::TrueTypeFace(std::unique_ptr<Handles> handles) : handles_(std::move(handles)) {}
TrueTypeFace::~TrueTypeFace() = default;

std::unique_ptr<TrueTypeFace> TrueTypeFace::Open(const std::string& path, int index) {
  const std::wstring wide = WideFromUtf8(path);
  const std::optional<FontFaceNames> names = FaceNames(path, index);
  if (!names || names->legacyFamily.empty() || names->unitsPerEm <= 0) return nullptr;

  auto handles = std::make_unique<Handles>();
  if (AddFontResourceExW(wide.c_str(), FR_PRIVATE, nullptr) > 0) handles->file = wide;
  LOGFONTW request{};
  request.lfHeight = -names->unitsPerEm;  // the em, one pixel per design unit
  request.lfWeight = names->weight;
  request.lfItalic = names->italic ? TRUE : FALSE;
  request.lfCharSet = DEFAULT_CHARSET;
  request.lfOutPrecision = OUT_TT_ONLY_PRECIS;
  const std::wstring family = WideFromUtf8(names->legacyFamily);
  if (family.size() >= LF_FACESIZE) return nullptr;
  family.copy(request.lfFaceName, family.size());
  handles->font = CreateFontIndirectW(&request);
  handles->dc = CreateCompatibleDC(nullptr);
  if (handles->font == nullptr || handles->dc == nullptr) return nullptr;
  handles->previous = SelectObject(handles->dc, handles->font);
  // GDI gives another family when it has not this one: no face then.
  wchar_t chosen[LF_FACESIZE] = {};
  GetTextFaceW(handles->dc, LF_FACESIZE, chosen);
  if (_wcsicmp(chosen, family.c_str()) != 0) return nullptr;

  std::unique_ptr<TrueTypeFace> face(new TrueTypeFace(std::move(handles)));
  face->descent_ = names->descent;
  face->capHeight_ = names->capHeight;
  if (!(face->capHeight_ > 0)) {
    // Older fonts do not say: the height of their H, else most of the ascent.
    GLYPHMETRICS metrics{};
    const MAT2 identity{{0, 1}, {0, 0}, {0, 0}, {0, 1}};
    if (GetGlyphOutlineW(face->handles_->dc, L'H', GGO_METRICS | GGO_UNHINTED, &metrics, 0, nullptr,
                         &identity) != GDI_ERROR &&
        metrics.gmptGlyphOrigin.y > 0) {
      face->capHeight_ = metrics.gmptGlyphOrigin.y;
    } else {
      face->capHeight_ = 0.7 * names->ascent;
    }
  }
  if (!(face->capHeight_ > 0)) face->capHeight_ = 0.7 * names->unitsPerEm;
  return face;
}

double TrueTypeFace::Shape(std::string_view line, double tracking,
                           std::vector<PlacedGlyph>& glyphs) const {
  glyphs.clear();
  if (line.empty()) return 0;
  const std::wstring text = WideFromUtf8(line);
  std::vector<WORD> ids(text.size());
  const std::lock_guard lock(handles_->mutex);
  if (GetGlyphIndicesW(handles_->dc, text.c_str(), static_cast<int>(text.size()), ids.data(),
                       GGI_MARK_NONEXISTING_GLYPHS) == GDI_ERROR)
    return 0;
  glyphs.reserve(ids.size());
  double x = 0;
  for (const WORD id : ids) {
    const unsigned glyph = id == 0xFFFF ? 0 : id;  // missing: the face's .notdef
    glyphs.push_back({glyph, {x, 0}});
    x += handles_->AdvanceOf(glyph) * tracking;
  }
  return x;
}

double TrueTypeFace::Advance(std::string_view line, double tracking) const {
  thread_local std::vector<PlacedGlyph> glyphs;
  return Shape(line, tracking, glyphs);
}

void TrueTypeFace::AppendOutline(unsigned id, Vec2 at, CurvePath& out) const {
  const std::lock_guard lock(handles_->mutex);
  GLYPHMETRICS metrics{};
  const MAT2 identity{{0, 1}, {0, 0}, {0, 0}, {0, 1}};
  constexpr UINT kFormat = GGO_GLYPH_INDEX | GGO_NATIVE | GGO_UNHINTED;
  const DWORD size = GetGlyphOutlineW(handles_->dc, id, kFormat, &metrics, 0, nullptr, &identity);
  if (size == GDI_ERROR || size == 0) return;
  std::vector<char> buffer(size);
  if (GetGlyphOutlineW(handles_->dc, id, kFormat, &metrics, size, buffer.data(), &identity) ==
      GDI_ERROR)
    return;
  const auto place = [at](const POINTFX& p) {
    return Vec2{at.x + FromFixed(p.x), at.y + FromFixed(p.y)};
  };
  // Quadratic pieces as the equal cubic ones: the cubic's control points lie
  // two thirds of the way from each end to the quadratic's.
  const auto quadratic = [&out](Vec2 from, Vec2 control, Vec2 to) {
    out.CubicTo({from.x + 2.0 / 3 * (control.x - from.x), from.y + 2.0 / 3 * (control.y - from.y)},
                {to.x + 2.0 / 3 * (control.x - to.x), to.y + 2.0 / 3 * (control.y - to.y)}, to);
  };
  const char* p = buffer.data();
  const char* const end = p + size;
  while (p + sizeof(TTPOLYGONHEADER) <= end) {
    TTPOLYGONHEADER header;
    std::memcpy(&header, p, sizeof header);
    if (header.cb < sizeof header || p + header.cb > end) return;
    const char* const loopEnd = p + header.cb;
    Vec2 current = place(header.pfxStart);
    out.MoveTo(current);
    const char* c = p + sizeof header;
    while (c + offsetof(TTPOLYCURVE, apfx) <= loopEnd) {
      WORD type = 0, count = 0;
      std::memcpy(&type, c + offsetof(TTPOLYCURVE, wType), sizeof type);
      std::memcpy(&count, c + offsetof(TTPOLYCURVE, cpfx), sizeof count);
      const char* points = c + offsetof(TTPOLYCURVE, apfx);
      if (points + count * sizeof(POINTFX) > loopEnd) return;
      const auto point = [points](int i) {
        POINTFX fx;
        std::memcpy(&fx, points + i * sizeof(POINTFX), sizeof fx);
        return fx;
      };
      if (type == TT_PRIM_LINE) {
        for (int i = 0; i < count; ++i) out.LineTo(current = place(point(i)));
      } else if (type == TT_PRIM_QSPLINE) {
        // Off-curve points, the on-curve ones between two implied halfway.
        for (int i = 0; i + 1 < count; ++i) {
          const Vec2 control = place(point(i));
          Vec2 to = place(point(i + 1));
          if (i + 2 < count) to = {(control.x + to.x) / 2, (control.y + to.y) / 2};
          quadratic(current, control, to);
          current = to;
        }
      } else if (type == TT_PRIM_CSPLINE) {
        for (int i = 0; i + 2 < count; i += 3) {
          out.CubicTo(place(point(i)), place(point(i + 1)), current = place(point(i + 2)));
        }
      }
      c = points + count * sizeof(POINTFX);
    }
    out.Close();
    p = loopEnd;
  }
}

}  // namespace sheafwork::embedded
