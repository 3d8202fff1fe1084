#include "embedded/render/mtext_format.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>

#include "embedded/render/aci_palette.h"
#include "embedded/render/stroke_font.h"
#include "embedded/render/text_codes.h"
#include "text/strings.h"
#include "text/utf8.h"

namespace sheafwork::embedded {

namespace {

constexpr std::size_t kMaxGroupDepth = 64;  // deeper braces keep the format as it is
constexpr char32_t kNoBreakSpace = 0xA0;
constexpr char32_t kReplacement = 0xFFFD;

// A number at the start of `s` ("+" allowed); nullopt when there is none or
// it is not finite.
std::optional<double> LeadingNumber(std::string_view s, std::string_view* rest = nullptr) {
  if (!s.empty() && s[0] == '+') s.remove_prefix(1);
  double v = 0;
  const auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), v);
  if (ec != std::errc() || !std::isfinite(v)) return std::nullopt;
  if (rest != nullptr) *rest = s.substr(static_cast<std::size_t>(end - s.data()));
  return v;
}

// A size-like value: absolute, or relative to `current` with an "x" suffix.
void ApplyScaled(std::string_view arg, double& current, double low, double high) {
  std::string_view rest;
  const std::optional<double> v = LeadingNumber(arg, &rest);
  if (!v || *v <= 0) return;
  const bool relative = !rest.empty() && (rest[0] == 'x' || rest[0] == 'X');
  current = std::clamp(relative ? current * *v : *v, low, high);
}

void ApplyFont(std::string_view arg, MTextFormat& f, bool shapeFile) {
  const std::size_t bar = arg.find('|');
  const std::string_view name = arg.substr(0, bar);
  if (!name.empty()) {
    f.shapeFace = nullptr;  // the caller finds the new font's
    if (shapeFile) {
      f.file = std::string(name);
      f.family.clear();
      f.strokeFont = IsShapeFont({}, name);
    } else {
      f.family = std::string(name);
      f.file.clear();
      f.strokeFont = false;
    }
  }
  if (bar == std::string_view::npos) return;
  std::string_view options = arg.substr(bar + 1);
  while (!options.empty()) {
    const std::size_t next = options.find('|');
    const std::string_view option = options.substr(0, next);
    if (option.size() >= 2 && (option[0] == 'b' || option[0] == 'i')) {
      const bool on = option[1] != '0';
      (option[0] == 'b' ? f.bold : f.italic) = on;
    }
    if (next == std::string_view::npos) break;
    options.remove_prefix(next + 1);
  }
}

void ApplyParagraph(std::string_view arg, MTextFormat& f) {
  if (!arg.empty() && arg[0] == 'x') arg.remove_prefix(1);
  while (!arg.empty()) {
    const std::size_t next = arg.find(',');
    const std::string_view entry = arg.substr(0, next);
    if (entry.size() >= 2 && entry[0] == 'q') {
      switch (entry[1]) {
        case 'l':
        case 'j':
        case 'd':
          f.paragraphAlign = 0;
          break;
        case 'c':
          f.paragraphAlign = 1;
          break;
        case 'r':
          f.paragraphAlign = 2;
          break;
        case '*':
          f.paragraphAlign = -1;
          break;
        default:
          break;
      }
    }
    if (next == std::string_view::npos) break;
    arg.remove_prefix(next + 1);
  }
}

void ApplyCode(char code, std::string_view arg, MTextFormat& f) {
  switch (code) {
    case 'f':
      ApplyFont(arg, f, false);
      break;
    case 'F':
      ApplyFont(arg, f, true);
      break;
    case 'H':
      ApplyScaled(arg, f.height, 1e-9, 1e9);
      break;
    case 'W':
      ApplyScaled(arg, f.widthFactor, 0.01, 100);
      break;
    case 'T':
      ApplyScaled(arg, f.tracking, 0.5, 4);
      break;
    case 'Q':
      if (const auto v = LeadingNumber(arg)) f.obliqueDegrees = std::clamp(*v, -85.0, 85.0);
      break;
    case 'C':
      if (const auto v = LeadingNumber(arg); v && *v >= 0 && *v <= 256) {
        const int aci = static_cast<int>(*v);
        if (aci == 0 || aci == 256) {
          f.rgb.reset();  // by block, by layer: the entity's colour
          f.aci = 0;
        } else if (aci >= 1 && aci <= 255) {
          f.rgb = AciToRgb(aci);
          f.aci = aci;
        }
      }
      break;
    case 'c':
      if (const auto v = LeadingNumber(arg); v && *v >= 0 && *v <= 0xFFFFFF) {
        // Stored blue in the high byte, red in the low one.
        const auto bgr = static_cast<std::uint32_t>(*v);
        f.rgb = ((bgr & 0xFF) << 16) | (bgr & 0xFF00) | ((bgr >> 16) & 0xFF);
        f.aci = 0;
      }
      break;
    case 'A':
      if (const auto v = LeadingNumber(arg); v && *v >= 0 && *v <= 2) {
        f.lineAlign = static_cast<int>(*v);
      }
      break;
    case 'p':
      ApplyParagraph(arg, f);
      break;
    default:
      break;  // other codes with an argument change nothing we draw
  }
}

class Reader {
 public:
  Reader(std::string_view text, const MTextFormat& base) : text_(text), format_(base) {}

  std::vector<MTextPiece> Read() {
    while (i_ < text_.size()) Step();
    Flush();
    return std::move(pieces_);
  }

 private:
  void Step() {
    const char c = text_[i_];
    switch (c) {
      case '{':
        ++i_;
        if (groups_.size() < kMaxGroupDepth) {
          groups_.push_back(format_);
        } else {
          ++ignoredGroups_;
        }
        return;
      case '}':
        ++i_;
        if (ignoredGroups_ > 0) {
          --ignoredGroups_;
        } else if (!groups_.empty()) {
          format_ = groups_.back();
          groups_.pop_back();
        }
        return;
      case '\\':
        Escape();
        return;
      case '%':
        if (Special()) return;
        break;
      case '^':
        if (Caret()) return;
        break;
      case '\n':
        ++i_;
        Paragraph();
        return;
      case '\r':
        ++i_;
        return;
      default:
        break;
    }
    AppendByte(c);
    ++i_;
  }

  void Escape() {
    if (i_ + 1 >= text_.size()) {
      ++i_;
      return;
    }
    const char code = text_[i_ + 1];
    i_ += 2;
    switch (code) {
      case 'P':
      case 'N':
      case 'X':
        Paragraph(code == 'N');
        return;
      case '~':
        AppendChar(kNoBreakSpace);
        return;
      case '\\':
      case '{':
      case '}':
        AppendByte(code);
        return;
      case 'L':
      case 'l':
        format_.underline = code == 'L';
        return;
      case 'O':
      case 'o':
        format_.overline = code == 'O';
        return;
      case 'K':
      case 'k':
        format_.strike = code == 'K';
        return;
      case 'U':
        Unicode();
        return;
      case 'M':
        MultiByte();
        return;
      case 'S':
        Stack();
        return;
      case 'f':
      case 'F':
      case 'p':
        ApplyCode(code, Argument(), format_);
        return;
      case 'H':
      case 'h':
      case 'W':
      case 'w':
      case 'Q':
      case 'q':
      case 'T':
      case 't':
      case 'C':
      case 'c':
      case 'A':
      case 'a':
        ApplyCode(code, NumericArgument(code), format_);
        return;
      default:
        return;  // an unknown code: dropped
    }
  }

  // The argument of a code up to its ';' (or the end of the text).
  std::string_view Argument() {
    const std::size_t end = text_.find(';', i_);
    const std::size_t stop = end == std::string_view::npos ? text_.size() : end;
    const std::string_view arg = text_.substr(i_, stop - i_);
    i_ = end == std::string_view::npos ? text_.size() : end + 1;
    return arg;
  }

  // The argument of a code that takes a number: the number (with the "x"
  // of a relative size) and the ';' after it, which writers sometimes leave
  // out ("\C1red"); what follows the number is text again. Without a
  // number, everything up to the ';' as for other codes.
  std::string_view NumericArgument(char code) {
    std::size_t k = i_;
    auto digits = [&] {
      const std::size_t from = k;
      while (k < text_.size() && std::isdigit(static_cast<unsigned char>(text_[k]))) ++k;
      return k > from;
    };
    if (k < text_.size() && (text_[k] == '+' || text_[k] == '-')) ++k;
    bool number = digits();
    if (k < text_.size() && text_[k] == '.') {
      ++k;
      number = digits() || number;
    }
    if (!number) return Argument();
    if (k + 1 < text_.size() && (text_[k] == 'e' || text_[k] == 'E')) {
      std::size_t e = k + 1;
      if (e < text_.size() && (text_[e] == '+' || text_[e] == '-')) ++e;
      if (e < text_.size() && std::isdigit(static_cast<unsigned char>(text_[e]))) {
        k = e;
        digits();
      }
    }
    const bool relative = code == 'H' || code == 'W' || code == 'T';
    if (relative && k < text_.size() && (text_[k] == 'x' || text_[k] == 'X')) ++k;
    const std::string_view arg = text_.substr(i_, k - i_);
    i_ = k < text_.size() && text_[k] == ';' ? k + 1 : k;
    return arg;
  }

  void Unicode() {  // "+XXXX" after \U
    if (i_ + 5 > text_.size() || text_[i_] != '+') return;
    char32_t cp = 0;
    for (std::size_t k = i_ + 1; k < i_ + 5; ++k) {
      const int v = HexDigitValue(text_[k]);
      if (v < 0) return;
      cp = cp * 16 + static_cast<char32_t>(v);
    }
    i_ += 5;
    if (cp >= 0xD800 && cp <= 0xDFFF) cp = kReplacement;
    if (cp != 0) AppendChar(cp);
  }

  void MultiByte() {  // "+NXXXX" after \M: a character of an Asian code page
    if (i_ + 6 > text_.size() || text_[i_] != '+') return;
    for (std::size_t k = i_ + 1; k < i_ + 6; ++k) {
      if (HexDigitValue(text_[k]) < 0) return;
    }
    i_ += 6;
    AppendChar(kReplacement);  // no code page tables: shown as a missing character
  }

  void Stack() {
    std::string parts[2];
    int part = 0;
    char kind = 0;
    while (i_ < text_.size() && text_[i_] != ';') {
      char c = text_[i_++];
      if (c == '\\' && i_ < text_.size()) {
        c = text_[i_++];
      } else if (part == 0 && (c == '^' || c == '/' || c == '#')) {
        kind = c;
        part = 1;
        continue;
      }
      parts[part].push_back(c);
    }
    if (i_ < text_.size()) ++i_;  // the ';'
    if (kind == 0) {              // nothing to stack: plain text
      std::string plain;
      AppendWithSpecialCodes(parts[0], plain);
      for (char c : plain) AppendByte(c);
      return;
    }
    Flush();
    MTextPiece piece;
    piece.kind = MTextPiece::Kind::Stack;
    AppendWithSpecialCodes(parts[0], piece.text);
    AppendWithSpecialCodes(parts[1], piece.bottom);
    piece.stackKind = kind;
    piece.format = format_;
    pieces_.push_back(std::move(piece));
  }

  bool Special() {  // %%c %%d %%p %%% %%nnn
    if (i_ + 2 >= text_.size() || text_[i_ + 1] != '%') return false;
    const char code = text_[i_ + 2];
    switch (code) {
      case 'c':
      case 'C':
        AppendChar(0xD8);
        break;
      case 'd':
      case 'D':
        AppendChar(0xB0);
        break;
      case 'p':
      case 'P':
        AppendChar(0xB1);
        break;
      case '%':
        AppendByte('%');
        break;
      default:
        if (i_ + 4 < text_.size() && std::isdigit(static_cast<unsigned char>(code)) &&
            std::isdigit(static_cast<unsigned char>(text_[i_ + 3])) &&
            std::isdigit(static_cast<unsigned char>(text_[i_ + 4]))) {
          const int n = (code - '0') * 100 + (text_[i_ + 3] - '0') * 10 + (text_[i_ + 4] - '0');
          if (n >= 32) AppendChar(static_cast<char32_t>(n));
          i_ += 5;
          return true;
        }
        return false;
    }
    i_ += 3;
    return true;
  }

  bool Caret() {  // ^J line break, ^I tab, "^ " a caret, other control characters ignored
    if (i_ + 1 >= text_.size()) return false;
    const std::optional<char> c = CaretCharacter(text_[i_ + 1]);
    if (!c) return false;
    if (*c == '\n') {
      Paragraph();
    } else if (*c == '\t') {
      AppendByte(' ');
    } else if (*c == '^') {
      AppendByte('^');
    }
    i_ += 2;
    return true;
  }

  void AppendChar(char32_t cp) {
    std::string bytes;
    AppendUtf8(bytes, cp);
    for (char b : bytes) AppendByte(b);
  }

  void AppendByte(char c) {
    if (!buffer_.empty() && !(bufferFormat_ == format_)) Flush();
    if (buffer_.empty()) bufferFormat_ = format_;
    buffer_.push_back(c);
  }

  void Flush() {
    if (buffer_.empty()) return;
    MTextPiece piece;
    piece.text = std::move(buffer_);
    piece.format = bufferFormat_;
    pieces_.push_back(std::move(piece));
    buffer_.clear();
  }

  void Paragraph(bool columnBreak = false) {
    Flush();
    if (!pieces_.empty()) {
      MTextPiece& last = pieces_.back();
      if (last.kind == MTextPiece::Kind::Paragraph && last.columnBreak == columnBreak &&
          last.breaks < UINT32_MAX && last.format == format_) {
        ++last.breaks;
        return;
      }
    }
    MTextPiece piece;
    piece.kind = MTextPiece::Kind::Paragraph;
    piece.format = format_;
    piece.columnBreak = columnBreak;
    pieces_.push_back(std::move(piece));
  }

  std::string_view text_;
  std::size_t i_ = 0;
  MTextFormat format_;
  std::vector<MTextFormat> groups_;
  std::size_t ignoredGroups_ = 0;
  std::string buffer_;
  MTextFormat bufferFormat_;
  std::vector<MTextPiece> pieces_;
};

}  // namespace

std::vector<MTextPiece> ParseMText(std::string_view text, const MTextFormat& base) {
  return Reader(text, base).Read();
}

}  // namespace sheafwork::embedded
