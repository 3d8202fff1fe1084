#include "plotcfg/plot_settings.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>

#include "batch/plot_values.h"
#include "host/error.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"

namespace sheafwork {

namespace {

// Host plot-area codes.
constexpr std::int16_t kPlotDisplay = 0;
constexpr std::int16_t kPlotExtents = 1;
constexpr std::int16_t kPlotLimits = 2;
constexpr std::int16_t kPlotView = 3;
constexpr std::int16_t kPlotWindow = 4;
constexpr std::int16_t kPlotLayout = 5;

// A standard-scale number: a whole number in the 16-bit range.
std::optional<std::int16_t> ParseStandardScale(std::string_view text) {
  std::int16_t value = 0;
  const char* end = text.data() + text.size();
  const auto [ptr, ec] = std::from_chars(text.data(), end, value);
  if (text.empty() || ec != std::errc() || ptr != end) return std::nullopt;
  return value;
}

// The plot area of the row; `model` tells whether the drawing is in model
// space, where there is no sheet to plot.
void ApplyPlotArea(HostSession& host, host::Layout& layout, const BatchEntry& entry, bool model,
                   LogFile& errorLog) {
  const std::string& area = entry.PlotArea;
  if (area == "#O") {
    if (model) {
      errorLog.WriteLogLine(LoadResourceText(ids::kDisplayInModelSpace) + entry.FileName);
      layout.SetPlotType(kPlotDisplay);
    } else {
      layout.SetPlotType(kPlotLayout);
    }
  } else if (area == "#D") {
    layout.SetPlotType(kPlotDisplay);
  } else if (area == "#L") {
    layout.SetPlotType(kPlotLimits);
  } else if (area == "#E") {
    layout.SetPlotType(kPlotExtents);
  } else if (const auto window = ParseWindowCode(area)) {
    // Corners in drawing units; a window cannot be the name of a view,
    // whose names hold no comma.
    const auto [x1, y1, x2, y2] = *window;
    layout.SetWindowToPlot({std::min(x1, x2), std::min(y1, y2)},
                           {std::max(x1, x2), std::max(y1, y2)});
    layout.SetPlotType(kPlotWindow);
  } else {
    auto views = host.Doc().GetViews();
    const std::int32_t count = views->Count();
    for (std::int32_t i = 0; i < count; ++i) {
      if (views->Item(i)->Name() == area) {
        layout.SetPlotType(kPlotView);
        layout.SetViewToPlot(area);
        return;
      }
    }
    errorLog.WriteLogLine(LoadResourceText(ids::kViewNotFoundStart) + area +
                          LoadResourceText(ids::kViewNotFoundEnd) + entry.FileName);
    layout.SetPlotType(model ? kPlotDisplay : kPlotLayout);
  }
}

// The row's scale. Text that does not convert is logged and replaced: a
// custom scale by 1:1, a standard scale by scale to fit (number 0).
void ApplyScale(host::Layout& layout, const BatchEntry& entry, LogFile& errorLog) {
  auto log = [&](int id) { errorLog.WriteLogLine(LoadResourceText(id) + entry.FileName); };

  std::string first = "0";
  std::string second = "0";
  const std::string_view scale = entry.PlotScale;
  if (const auto hash = scale.find('#'); hash != std::string_view::npos) {
    first = TrimSpaces(scale.substr(0, hash));
    second = TrimSpaces(scale.substr(hash + 1));
  } else {
    log(ids::kBadScaleToFit);
  }
  if (first == "0") {
    first = "S";
    second = "0";
  }

  if (entry.ScaleCustom) {
    double numerator = 1;
    double denominator = 1;
    const auto n = ParseScaleNumber(first);
    const auto d = n ? ParseScaleNumber(second) : std::nullopt;
    if (n && d) {
      numerator = *n;
      denominator = *d;
    } else {
      log(ids::kBadCustomScale);
    }
    layout.SetUseStandardScale(false);
    layout.SetCustomScale(numerator, denominator);
  } else {
    if (first != "S") {
      log(ids::kBadScaleToFit);
      second = "0";
    }
    std::int16_t number = 0;
    if (const auto parsed = ParseStandardScale(second)) {
      number = *parsed;
    } else {
      log(ids::kBadScaleToFit);
    }
    layout.SetUseStandardScale(true);
    layout.SetStandardScale(number);
  }
}

}  // namespace

bool ApplyPlotSettings(HostSession& host, const BatchEntry& entry, LogFile& errorLog) {
  try {
    auto layout = host.App().ActiveDocument()->ActiveLayout();
    if (!entry.PlotArea.empty()) {
      const bool model = host.Doc().ActiveSpace() != 0;
      ApplyPlotArea(host, *layout, entry, model, errorLog);
    }
    // Without a scale the layout keeps its own, lineweight scaling included.
    if (entry.PlotScale.empty()) return true;
    ApplyScale(*layout, entry, errorLog);
    layout->SetScaleLineweights(entry.ScaleLW);
    return true;
  } catch (const host::Error&) {
    errorLog.WriteLogLine(LoadResourceText(ids::kPlotSettingsProblem) + entry.FileName);
    return false;
  }
}

}  // namespace sheafwork
