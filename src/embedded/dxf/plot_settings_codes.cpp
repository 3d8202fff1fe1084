#include "embedded/dxf/plot_settings_codes.h"

namespace sheafwork::embedded {
namespace {

// Enumerations out of their range fall back to their default.
std::int16_t InRange(std::int16_t v, std::int16_t low, std::int16_t high, std::int16_t fallback) {
  return v >= low && v <= high ? v : fallback;
}

}  // namespace

void ApplyPlotSettingsTag(const Context& ctx, const Tag& t, PlotSettings& s) {
  switch (t.code) {
    case 1:
      s.pageSetupName = ctx.Text(t);
      break;
    case 2:
      s.configName = ctx.Text(t);
      break;
    case 4:
      s.mediaName = ctx.Text(t);
      break;
    case 6:
      s.viewName = ctx.Text(t);
      break;
    case 7:
      s.styleSheet = ctx.Text(t);
      break;
    case 40:
      s.marginLeft = ctx.Real(t);
      break;
    case 41:
      s.marginBottom = ctx.Real(t);
      break;
    case 42:
      s.marginRight = ctx.Real(t);
      break;
    case 43:
      s.marginTop = ctx.Real(t);
      break;
    case 44:
      s.paperWidth = ctx.Real(t);
      break;
    case 45:
      s.paperHeight = ctx.Real(t);
      break;
    case 46:
      s.origin.x = ctx.Real(t);
      break;
    case 47:
      s.origin.y = ctx.Real(t);
      break;
    case 48:
      s.windowMin.x = ctx.Real(t);
      break;
    case 49:
      s.windowMin.y = ctx.Real(t);
      break;
    case 140:
      s.windowMax.x = ctx.Real(t);
      break;
    case 141:
      s.windowMax.y = ctx.Real(t);
      break;
    case 142:
      s.customNumerator = ctx.Real(t);
      break;
    case 143:
      s.customDenominator = ctx.Real(t);
      break;
    case 70:
      s.flags = ctx.Long(t);
      break;
    case 72:
      s.paperUnits = InRange(ctx.Short(t), 0, 2, 1);
      break;
    case 73:
      s.rotation = InRange(ctx.Short(t), 0, 3, 0);
      break;
    case 74:
      s.plotType = InRange(ctx.Short(t), kPlotDisplay, kPlotLayout, kPlotLayout);
      break;
    case 75:
      s.standardScale = InRange(ctx.Short(t), 0, 32, 16);
      break;
    default:
      break;
  }
}

}  // namespace sheafwork::embedded
