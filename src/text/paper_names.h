#pragma once
// Paper names as devices and drawings write them. The same sheet is called
// "ISO_A4_(210.00_x_297.00_MM)" by one program, "ISO A4 (210.00 x 297.00 mm)"
// by another, and a page setup may carry only "ISO A4"; these routines tell
// that such names mean the same paper.

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace sheafwork {

/// `name` reduced to what tells papers apart: letters in lower case,
/// underscores as blanks, one blank between words, brackets as words of their
/// own, numbers without trailing decimal zeros ("8.50" is "8.5"), and
/// "inches", "inch", "pouces", "pouce" and '"' as "in".
std::string NormalisePaperName(std::string_view name);

/// True when `a` and `b` name the same paper once normalised, or when one of
/// them gives no size in brackets and both agree before the brackets
/// ("ISO A2" and "ISO A2 (594.00 x 420.00 mm)").
bool SamePaperName(std::string_view a, std::string_view b);

/// The position in `papers` of the paper `name` stands for: the first of
/// exactly that name, else the first of the same paper name (SamePaperName);
/// nullopt when none. `nameOf(paper)` gives a paper's name (the paper
/// itself by default).
template <typename Papers, typename NameOf = std::identity>
std::optional<std::size_t> FindPaperName(const Papers& papers, std::string_view name,
                                         NameOf nameOf = {}) {
  std::size_t i = 0;
  for (const auto& paper : papers) {
    if (std::string_view(nameOf(paper)) == name) return i;
    ++i;
  }
  i = 0;
  for (const auto& paper : papers) {
    if (SamePaperName(nameOf(paper), name)) return i;
    ++i;
  }
  return std::nullopt;
}

}  // namespace sheafwork
