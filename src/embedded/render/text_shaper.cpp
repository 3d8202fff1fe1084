#include "embedded/render/text_shaper.h"

#include <algorithm>

#include "embedded/render/shape_font.h"

namespace sheafwork::embedded {

namespace {

// Proportions of stacked text and of the lines drawn beside characters, in
// cap heights of the text around them.
constexpr double kStackScale = 0.6;
constexpr double kStackGap = 0.15;
constexpr double kUnderline = -0.2;
constexpr double kOverline = 1.2;
constexpr double kStrike = 0.5;
constexpr double kPitch = 5.0 / 3.0;
// How thick the bar of a fraction in a TrueType face is: about a font's
// underline.
constexpr double kBarThickness = 0.07;

// A word, a run of blanks, or a stacked fraction, as the wrapping sees it.
struct Atom {
  enum class Kind { Word, Space, Stack, Break } kind;
  const MTextPiece* piece;
  std::string text;  ///< Word and Space
  double width = 0;
};

struct Line {
  std::vector<Atom> atoms;
  std::vector<double> xs;  ///< each atom's start
  double nominalHeight = 0;
  int paragraphAlign = -1;
  bool startsColumn = false;  ///< after \N
  std::size_t column = 0;     ///< the column it ends up in (its last copy)
  /// How many lines alike it stands for: empty lines in a row, made by
  /// breaks in a row, are one Line.
  std::uint32_t copies = 1;
};

bool IsStroke(const MTextFormat& f) { return f.strokeFont; }

MTextFormat StackPart(const MTextFormat& f) {
  MTextFormat part = f;
  part.height = f.height * kStackScale;
  part.underline = part.overline = part.strike = false;
  return part;
}

double StackWidth(const MTextPiece& p, TextMeasure& measure) {
  const MTextFormat part = StackPart(p.format);
  const double h = p.format.height;
  const double top = FormattedWidth(p.text, part, measure);
  const double bottom = FormattedWidth(p.bottom, part, measure);
  if (p.stackKind == '#') return top + 0.45 * h + bottom;
  return std::max(top, bottom) + (p.stackKind == '/' ? 0.2 : 0.1) * h;
}

class Shaper {
 public:
  Shaper(const TextBlock& block, TextMeasure& measure) : block_(block), measure_(measure) {}

  ShapedText Shape(std::span<const MTextPiece> pieces) {
    Split(pieces);
    Wrap(pieces.empty() ? 1.0 : pieces.front().format.height);
    Place();
    return std::move(out_);
  }

 private:
  // Text pieces into words and blanks; a stack is one atom.
  void Split(std::span<const MTextPiece> pieces) {
    for (const MTextPiece& p : pieces) {
      if (p.kind == MTextPiece::Kind::Paragraph) {
        atoms_.push_back({Atom::Kind::Break, &p, {}, 0});
        continue;
      }
      if (p.kind == MTextPiece::Kind::Stack) {
        atoms_.push_back({Atom::Kind::Stack, &p, {}, StackWidth(p, measure_)});
        continue;
      }
      std::size_t i = 0;
      while (i < p.text.size()) {
        const bool blank = p.text[i] == ' ';
        std::size_t j = i;
        while (j < p.text.size() && (p.text[j] == ' ') == blank) ++j;
        Atom a{blank ? Atom::Kind::Space : Atom::Kind::Word, &p, p.text.substr(i, j - i), 0};
        a.width = FormattedWidth(a.text, p.format, measure_);
        atoms_.push_back(std::move(a));
        i = j;
      }
    }
  }

  static bool IsBreak(const Atom& a) { return a.kind == Atom::Kind::Break; }

  void Wrap(double firstHeight) {
    lines_.emplace_back();
    lines_.back().nominalHeight = firstHeight;
    double x = 0;
    std::size_t i = 0;
    while (i < atoms_.size()) {
      const Atom& a = atoms_[i];
      if (IsBreak(a)) {
        // Of n breaks in a row, the first n - 1 make lines that stay empty.
        for (const std::uint32_t copies : {a.piece->breaks - 1, 1u}) {
          if (copies == 0) continue;
          lines_.emplace_back();
          lines_.back().nominalHeight = a.piece->format.height;
          lines_.back().startsColumn = a.piece->columnBreak;
          lines_.back().copies = copies;
        }
        x = 0;
        ++i;
        continue;
      }
      if (a.kind == Atom::Kind::Space) {
        Add(a, x);
        ++i;
        continue;
      }
      // A group of words and stacks with no blank between them.
      std::size_t j = i;
      double width = 0;
      while (j < atoms_.size() && !IsBreak(atoms_[j]) && atoms_[j].kind != Atom::Kind::Space) {
        width += atoms_[j].width;
        ++j;
      }
      if (block_.columnWidth > 0 && HasWords(lines_.back()) &&
          x + width > block_.columnWidth * (1 + 1e-9)) {
        lines_.emplace_back();
        lines_.back().nominalHeight = a.piece->format.height;
        x = 0;
      }
      for (; i < j; ++i) Add(atoms_[i], x);
    }
  }

  static bool HasWords(const Line& line) {
    return std::any_of(line.atoms.begin(), line.atoms.end(),
                       [](const Atom& a) { return a.kind != Atom::Kind::Space; });
  }

  void Add(const Atom& a, double& x) {
    Line& line = lines_.back();
    if (line.atoms.empty()) line.paragraphAlign = a.piece->format.paragraphAlign;
    line.atoms.push_back(a);
    line.xs.push_back(x);
    x += a.width;
  }

  static double LineHeight(const Line& line) {
    double h = 0;
    for (const Atom& a : line.atoms) h = std::max(h, a.piece->format.height);
    return h > 0 ? h : line.nominalHeight;
  }

  static double LineWidth(const Line& line) {
    double w = 0;
    for (std::size_t k = 0; k < line.atoms.size(); ++k) {
      if (line.atoms[k].kind != Atom::Kind::Space) w = line.xs[k] + line.atoms[k].width;
    }
    return w;
  }

  // How deep column `k` may run before the text flows on; 0 for no limit.
  double ColumnLimit(std::size_t k) const {
    const TextColumns& c = block_.columns;
    if (c.type != 2) return 0;
    if (c.heights.empty()) return c.height;
    if (c.count > 0 && k + 1 >= static_cast<std::size_t>(c.count)) return 0;  // the last: the rest
    return c.heights[std::min(k, c.heights.size() - 1)];
  }

  void Place() {
    const std::size_t n = lines_.size();
    const TextColumns& c = block_.columns;
    const bool flowing = c.type == 1 || c.type == 2;
    std::vector<double> heights(n), widths(n), baselines(n);
    double boxWidth = block_.columnWidth;
    for (std::size_t k = 0; k < n; ++k) {
      heights[k] = LineHeight(lines_[k]);
      widths[k] = LineWidth(lines_[k]);
      if (block_.columnWidth <= 0) boxWidth = std::max(boxWidth, widths[k]);
    }
    // Baselines below the top of their column: a column ends at \N, or
    // (dynamic columns) where the next line would pass its height.
    // A Line of several copies gets the baseline of its last one.
    double depth = 0;
    std::vector<double> columnDepths;  // each column's lowest baseline, for its box
    std::size_t lastColumn = 0;
    for (std::size_t k = 0; k < n; ++k) {
      for (std::uint32_t copy = 0; copy < lines_[k].copies; ++copy) {
        if (k == 0 && copy == 0) {
          baselines[0] = -heights[0];
        } else {
          const double before = copy > 0 ? baselines[k] : baselines[k - 1];
          const double beforeHeight = copy > 0 ? heights[k] : heights[k - 1];
          const double next =
              before - block_.lineSpacing * kPitch * std::max(beforeHeight, heights[k]);
          const double limit = ColumnLimit(lastColumn);
          if (flowing && (lines_[k].startsColumn || (limit > 0 && -next > limit * (1 + 1e-9)))) {
            ++lastColumn;
            baselines[k] = -heights[k];
          } else {
            baselines[k] = next;
          }
        }
        depth = std::max(depth, -baselines[k]);
        if (block_.boxes && flowing) {
          if (columnDepths.size() <= lastColumn) columnDepths.resize(lastColumn + 1, 0);
          columnDepths[lastColumn] = std::max(columnDepths[lastColumn], -baselines[k]);
        }
      }
      lines_[k].column = lastColumn;
    }
    std::size_t columns = lastColumn + 1;
    if (c.type == 1 && c.count > 0) columns = std::max(columns, static_cast<std::size_t>(c.count));
    // The block runs from the top of its columns to their lowest baseline
    // (or their given height); the attachment point is on its box.
    if (flowing && c.heights.empty()) depth = std::max(depth, c.height);
    const double pitch = boxWidth + c.gutter;
    const double blockWidth = boxWidth + static_cast<double>(columns - 1) * pitch;
    const int attachment = std::clamp(block_.attachment, 1, 9);
    const int row = (attachment - 1) / 3, column = (attachment - 1) % 3;
    const double shift = row == 0 ? 0 : (row == 1 ? depth / 2 : depth);
    const double blockLeft = column == 0 ? 0 : (column == 1 ? -blockWidth / 2 : -blockWidth);
    auto columnLeft = [&](std::size_t k) {
      const std::size_t slot = c.reversed ? columns - 1 - k : k;
      return blockLeft + static_cast<double>(slot) * pitch;
    };
    for (std::size_t k = 0; k < n; ++k) {
      const int align = lines_[k].paragraphAlign >= 0 ? lines_[k].paragraphAlign : column;
      const double slack = boxWidth - widths[k];
      const double x =
          columnLeft(lines_[k].column) + (align == 0 ? 0 : (align == 1 ? slack / 2 : slack));
      EmitLine(lines_[k], x, baselines[k] + shift, heights[k]);
    }
    if (!block_.boxes) return;
    // Each column's box: down to its lowest baseline, or its given height.
    for (std::size_t k = 0; k < columns; ++k) {
      double bottom = depth;
      if (flowing) {
        bottom = c.heights.empty() ? c.height : ColumnLimit(k);
        if (k < columnDepths.size()) bottom = std::max(bottom, columnDepths[k]);
      }
      out_.columns.push_back(
          Box2::Of({columnLeft(k), shift - bottom}, {columnLeft(k) + boxWidth, shift}));
    }
  }

  void EmitLine(const Line& line, double x0, double baseline, double lineHeight) {
    // Trailing blanks are not drawn.
    std::size_t end = line.atoms.size();
    while (end > 0 && line.atoms[end - 1].kind == Atom::Kind::Space) --end;
    ShapedRun current;
    bool open = false;
    auto close = [&] {
      if (open && !current.text.empty()) Emit(std::move(current));
      current = ShapedRun{};
      open = false;
    };
    for (std::size_t k = 0; k < end; ++k) {
      const Atom& a = line.atoms[k];
      const MTextFormat& f = a.piece->format;
      const double raise = f.lineAlign == 1   ? (lineHeight - f.height) / 2
                           : f.lineAlign == 2 ? lineHeight - f.height
                                              : 0;
      if (a.kind == Atom::Kind::Stack) {
        close();
        EmitStack(*a.piece, {x0 + line.xs[k], baseline + raise});
        continue;
      }
      if (open && current.format == f) {
        current.text += a.text;
        current.width += a.width;
        continue;
      }
      close();
      current.text = a.text;
      current.format = f;
      current.origin = {x0 + line.xs[k], baseline + raise};
      current.width = a.width;
      current.stroke = IsStroke(f);
      open = true;
    }
    close();
  }

  void Emit(ShapedRun run) {
    const MTextFormat& f = run.format;
    const double h = f.height;
    auto line = [&](double y) {
      out_.lines.push_back({{run.origin.x, run.origin.y + y * h},
                            {run.origin.x + run.width, run.origin.y + y * h},
                            f.rgb,
                            f.aci});
    };
    if (f.underline) line(kUnderline);
    if (f.overline) line(kOverline);
    if (f.strike) line(kStrike);
    out_.runs.push_back(std::move(run));
  }

  void EmitPart(const std::string& text, const MTextFormat& part, Vec2 at) {
    if (text.empty()) return;
    ShapedRun run;
    run.text = text;
    run.format = part;
    run.origin = at;
    run.width = FormattedWidth(text, part, measure_);
    run.stroke = IsStroke(part);
    out_.runs.push_back(std::move(run));
  }

  void EmitStack(const MTextPiece& p, Vec2 at) {
    const MTextFormat part = StackPart(p.format);
    const double h = p.format.height;
    const double sh = part.height;
    const double top = FormattedWidth(p.text, part, measure_);
    const double bottom = FormattedWidth(p.bottom, part, measure_);
    // A pen line beside stroke-font digits, a thin band beside TrueType
    // ones (the pen would be as thick as the digits are small).
    const double thickness = IsStroke(part) ? 0 : kBarThickness * h;
    if (p.stackKind == '#') {  // top, a slash, bottom
      EmitPart(p.text, part, {at.x, at.y + 0.45 * h});
      out_.lines.push_back({{at.x + top + 0.05 * h, at.y - 0.05 * h},
                            {at.x + top + 0.35 * h, at.y + h},
                            part.rgb,
                            part.aci,
                            thickness});
      EmitPart(p.bottom, part, {at.x + top + 0.4 * h, at.y});
      return;
    }
    if (p.stackKind == '^') {  // tolerances: left aligned, no bar
      EmitPart(p.text, part, {at.x + 0.05 * h, at.y + 0.55 * h});
      EmitPart(p.bottom, part, {at.x + 0.05 * h, at.y - 0.2 * h});
      return;
    }
    const double width = std::max(top, bottom) + 0.2 * h;
    const double bar = at.y + 0.5 * h;
    EmitPart(p.text, part, {at.x + (width - top) / 2, bar + kStackGap * h});
    EmitPart(p.bottom, part, {at.x + (width - bottom) / 2, bar - kStackGap * h - sh});
    out_.lines.push_back(
        {{at.x + 0.05 * h, bar}, {at.x + width - 0.05 * h, bar}, part.rgb, part.aci, thickness});
  }

  const TextBlock& block_;
  TextMeasure& measure_;
  std::vector<Atom> atoms_;
  std::vector<Line> lines_;
  ShapedText out_;
};

}  // namespace

double FormattedWidth(std::string_view text, const MTextFormat& f, TextMeasure& measure) {
  if (text.empty()) return 0;
  const double scale = f.height * f.widthFactor;
  if (IsStroke(f)) {
    const ShapeFace& face = f.shapeFace != nullptr ? *f.shapeFace : ShapeFace::Builtin();
    return face.Advance(text, f.tracking) * scale;
  }
  return measure.Advance({f.family, f.file, f.bold, f.italic}, text) * f.tracking * scale;
}

ShapedText ShapeText(std::span<const MTextPiece> pieces, const TextBlock& block,
                     TextMeasure& measure) {
  return Shaper(block, measure).Shape(pieces);
}

}  // namespace sheafwork::embedded
