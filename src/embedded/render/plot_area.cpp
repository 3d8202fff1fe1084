#include "embedded/render/plot_area.h"

#include "embedded/render/extents_backend.h"
#include "embedded/render/frontend.h"

namespace sheafwork::embedded {

namespace {

Box2 Around(Vec2 center, double width, double height) {
  return Box2::Of({center.x - width / 2, center.y - height / 2},
                  {center.x + width / 2, center.y + height / 2});
}

Box2 Limits(const Drawing& drawing, const Layout& layout) {
  if (layout.IsModel()) return Box2::Of(drawing.header.limMin, drawing.header.limMax);
  return Box2::Of(layout.limMin, layout.limMax);
}

// The whole sheet in paper units, the paper origin at the plot origin.
PlotRegion SheetRegion(const PlotSettings& settings) {
  const SheetFrame frame = ComputeSheetFrame(settings);
  const double unit = PaperUnitMm(settings.paperUnits);
  const Vec2 origin{frame.uprightPrintable.min.x + settings.origin.x,
                    frame.uprightPrintable.min.y + settings.origin.y};
  PlotRegion region;
  region.area = Box2::Of({-origin.x / unit, -origin.y / unit},
                         {(frame.width - origin.x) / unit, (frame.height - origin.y) / unit});
  region.anchor = Vec2{0, 0};
  return region;
}

PlotRegion ExtentsRegion(const Drawing& drawing, const Layout& layout, const PlotSettings& settings,
                         const SheetWork* work) {
  PlotRegion region;
  region.area = ComputeLayoutExtents(drawing, layout, settings, work);
  if (region.area.Empty()) region.area = Limits(drawing, layout);
  return region;
}

}  // namespace

Box2 ComputeLayoutExtents(const Drawing& drawing, const Layout& layout,
                          const PlotSettings& settings, const SheetWork* work) {
  ExtentsBackend extents;
  FrontendOptions options;
  options.flattening = {0, 64};
  options.viewportContents = false;
  options.lineweights.plotLineweights = settings.Has(kPrintLineweights);
  options.work = work;
  Frontend frontend(drawing, extents, options);
  frontend.DrawLayout(layout, Affine2{});
  return extents.Extents();
}

PlotRegion ComputePlotRegion(const Drawing& drawing, const Layout& layout,
                             const PlotSettings& settings, const SheetWork* work) {
  PlotRegion region;
  switch (settings.plotType) {
    case kPlotDisplay:
      if (!layout.IsModel()) return SheetRegion(settings);
      if (drawing.activeView && drawing.activeView->height > 0) {
        const ActiveView& v = *drawing.activeView;
        region.area = Around({v.center.x + v.target.x, v.center.y + v.target.y},
                             v.height * (v.aspect > 0 ? v.aspect : 1.0), v.height);
        return region;
      }
      return ExtentsRegion(drawing, layout, settings, work);
    case kPlotExtents:
      return ExtentsRegion(drawing, layout, settings, work);
    case kPlotLimits:
      region.area = Limits(drawing, layout);
      return region;
    case kPlotView:
      if (const View* view = drawing.FindView(settings.viewName)) {
        region.area = Around({view->center.x + view->target.x, view->center.y + view->target.y},
                             view->width, view->height);
        return region;
      }
      return ExtentsRegion(drawing, layout, settings, work);
    case kPlotWindow:
      region.area = Box2::Of(settings.windowMin, settings.windowMax);
      return region;
    case kPlotLayout:
      if (!layout.IsModel()) return SheetRegion(settings);
      region.area = Limits(drawing, layout);
      return region;
    default:
      break;
  }
  return ExtentsRegion(drawing, layout, settings, work);
}

}  // namespace sheafwork::embedded
