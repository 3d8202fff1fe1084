#include "batch/plot_values.h"

#include <charconv>
#include <cmath>
#include <system_error>

#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"

namespace sheafwork {

namespace {

struct AreaWord {
  std::string_view word;
  std::string_view code;
};
constexpr AreaWord kAreaWords[] = {
    {"extents", "#E"}, {"display", "#D"}, {"limits", "#L"}, {"layout", "#O"}};

constexpr std::string_view kViewPrefix = "view:";
constexpr std::string_view kWindowPrefix = "window:";
constexpr std::string_view kWindowCode = "#W";
constexpr std::string_view kFit = "fit";

// The text without blanks, for names such as `1/4" = 1'0"`.
std::string WithoutBlanks(std::string_view text) {
  std::string out;
  for (char c : text) {
    if (c != ' ' && c != '\t') out.push_back(c);
  }
  return out;
}

std::optional<int> WholeNumber(std::string_view text) {
  int value = 0;
  const char* end = text.data() + text.size();
  const auto [ptr, ec] = std::from_chars(text.data(), end, value);
  if (text.empty() || ec != std::errc() || ptr != end) return std::nullopt;
  return value;
}

// "N:M" or "N#M" with two numbers above zero, as the list holds it ("N#M").
std::optional<std::string> CustomRatio(std::string_view text) {
  const auto split = text.find_first_of(":#");
  if (split == std::string_view::npos) return std::nullopt;
  const std::string_view plotted = TrimSpaces(text.substr(0, split));
  const std::string_view units = TrimSpaces(text.substr(split + 1));
  const auto p = ParseScaleNumber(plotted);
  const auto u = ParseScaleNumber(units);
  if (!p || !u || *p <= 0 || *u <= 0) return std::nullopt;
  return std::string(plotted) + "#" + std::string(units);
}

// The standard scale called `name`, spaces and letter case aside.
std::optional<int> StandardScaleNamed(std::string_view name) {
  const std::string wanted = WithoutBlanks(name);
  for (const StandardScale& scale : StandardScales()) {
    if (EqualsIgnoreCase(WithoutBlanks(LoadResourceText(scale.nameId)), wanted)) {
      return scale.number;
    }
  }
  return std::nullopt;
}

// The standard-scale number of a code the run applies as a standard scale:
// "S#<n>" with a number the host knows, or "0#..." (fit).
std::optional<int> StandardScaleCode(std::string_view code) {
  const auto hash = code.find('#');
  if (hash == std::string_view::npos) return std::nullopt;
  const std::string_view first = TrimSpaces(code.substr(0, hash));
  if (first == "0") return 0;
  if (first != "S") return std::nullopt;
  const auto number = WholeNumber(TrimSpaces(code.substr(hash + 1)));
  if (!number || *number < 0 || *number > kLastStandardScale) return std::nullopt;
  return number;
}

}  // namespace

const std::vector<StandardScale>& StandardScales() {
  // The metric scales first (numbers 16 to 31), then the imperial ones.
  static const std::vector<StandardScale> scales = [] {
    std::vector<StandardScale> list;
    for (int id = ids::kScaleNameFirst; id <= ids::kScaleNameFirst + 15; ++id) {
      list.push_back({id, 16 + id - ids::kScaleNameFirst});
    }
    const int imperial[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 12, 13, 14, 15};
    for (int i = 0; i < 14; ++i) list.push_back({ids::kScaleNameFirst + 16 + i, imperial[i]});
    return list;
  }();
  return scales;
}

std::optional<double> ParseScaleNumber(std::string_view text) {
  if (text.empty()) return std::nullopt;
  std::string number(text);
  for (char& c : number) {
    if (c == ',') c = '.';
  }
  double value = 0;
  const char* end = number.data() + number.size();
  const auto [ptr, ec] = std::from_chars(number.data(), end, value);
  if (ec != std::errc() || ptr != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::optional<std::array<double, 4>> ParseWindowCode(std::string_view code) {
  if (!code.starts_with(kWindowCode)) return std::nullopt;
  std::string_view rest = code.substr(kWindowCode.size());
  std::array<double, 4> corners{};
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const auto comma = rest.find(',');
    const bool last = i + 1 == corners.size();
    if (last != (comma == std::string_view::npos)) return std::nullopt;
    const std::string_view item = TrimSpaces(rest.substr(0, comma));
    // A comma separates the numbers: only a point may be a decimal one.
    if (item.find(',') != std::string_view::npos) return std::nullopt;
    const auto value = ParseScaleNumber(item);
    if (!value) return std::nullopt;
    corners[i] = *value;
    if (!last) rest.remove_prefix(comma + 1);
  }
  if (corners[0] == corners[2] || corners[1] == corners[3]) return std::nullopt;
  return corners;
}

std::optional<std::string> PlotAreaCode(std::string_view value) {
  if (value.empty()) return std::string();
  for (const AreaWord& area : kAreaWords) {
    if (EqualsIgnoreCase(value, area.word) || value == area.code) return std::string(area.code);
  }
  if (StartsWithIgnoreCase(value, kViewPrefix)) {
    const std::string_view name = value.substr(kViewPrefix.size());
    // A view named like a code would be read as that code.
    if (name.empty() || name.front() == '#') return std::nullopt;
    return std::string(name);
  }
  std::string window;
  if (StartsWithIgnoreCase(value, kWindowPrefix)) {
    window = std::string(kWindowCode) + std::string(value.substr(kWindowPrefix.size()));
  } else if (value.starts_with(kWindowCode)) {
    window = value;
  }
  if (!window.empty() && ParseWindowCode(window)) return WithoutBlanks(window);
  return std::nullopt;
}

std::optional<ScaleCode> PlotScaleCode(std::string_view value, bool custom) {
  value = TrimSpaces(value);
  if (value.empty()) return ScaleCode{};
  if (custom) {
    const auto ratio = CustomRatio(value);
    if (!ratio) return std::nullopt;
    return ScaleCode{*ratio, true};
  }
  if (EqualsIgnoreCase(value, kFit)) return ScaleCode{"S#0", false};
  if (const auto number = StandardScaleNamed(value)) {
    return ScaleCode{"S#" + std::to_string(*number), false};
  }
  if (StandardScaleCode(value)) return ScaleCode{std::string(value), false};
  return std::nullopt;
}

bool IsUsableScale(std::string_view plotScale, bool custom) {
  if (plotScale.empty()) return true;
  return custom ? CustomRatio(plotScale).has_value() && plotScale.find(':') == plotScale.npos
                : StandardScaleCode(plotScale).has_value();
}

std::string PlotAreaName(std::string_view code) {
  if (code.empty()) return {};
  for (const AreaWord& area : kAreaWords) {
    if (code == area.code) return std::string(area.word);
  }
  if (code.starts_with(kWindowCode) && ParseWindowCode(code)) {
    return std::string(kWindowPrefix) + std::string(code.substr(kWindowCode.size()));
  }
  return std::string(kViewPrefix) + std::string(code);
}

std::string PlotScaleName(std::string_view plotScale, bool custom) {
  if (plotScale.empty() || !IsUsableScale(plotScale, custom)) return {};
  if (custom) {
    std::string ratio(plotScale);
    ratio[ratio.find('#')] = ':';
    return ratio;
  }
  const int number = *StandardScaleCode(plotScale);
  if (number == 0) return std::string(kFit);
  for (const StandardScale& scale : StandardScales()) {
    if (scale.number == number) return LoadResourceText(scale.nameId);
  }
  return {};
}

std::string AcceptedPlotAreas() {
  std::string text;
  for (const AreaWord& area : kAreaWords) text += std::string(area.word) + ", ";
  return text + "view:NOM, window:X1,Y1,X2,Y2 (" + LoadResourceText(ids::kCliRawCodes) +
         " : #E, #D, #L, #O, #WX1,Y1,X2,Y2)";
}

std::string AcceptedPlotScales() {
  std::string text(kFit);
  for (const StandardScale& scale : StandardScales()) {
    text += ", " + LoadResourceText(scale.nameId);
  }
  return text + " (" + LoadResourceText(ids::kCliRawCodes) + " : S#n ; " +
         LoadResourceText(ids::kCliCustomScaleHint) + " : --custom-scale N:M)";
}

}  // namespace sheafwork
