#include "ui/drawing_reader.h"

#include <QLocale>

#include "host/error.h"
#include "plotcfg/layout_setup.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "ui/qt_text.h"

namespace sheafwork::ui {
namespace {

template <typename Collection, typename Read>
bool ReadNames(const std::shared_ptr<Collection>& collection, std::vector<std::string>& out,
               Read read) {
  try {
    const std::int32_t count = collection->Count();
    for (std::int32_t i = 0; i < count; ++i) out.push_back(read(*collection->Item(i)));
    return true;
  } catch (const host::Error&) {
    return false;
  }
}

void ReadSettings(HostSession& host, const std::string& layout, DrawingInfo& info) {
  if (IsAllLayouts(layout)) {
    // All layouts share no one setting: the standard 1:1 stands for them.
    info.settings = {"", "S#16", false, false};
    info.scaleOk = true;
    info.areaOk = false;
    return;
  }
  try {
    if (!SetupLayout(host, layout.empty() ? CachedText<ids::kLayoutCurrentTab>() : layout,
                     ErrorOutput::Nowhere())) {
      return;
    }
    auto active = host.App().ActiveDocument()->ActiveLayout();
    try {
      const int type = active->PlotType();
      info.settings.plotArea = PlotAreaFor(type, type == 3 ? active->ViewToPlot() : std::string());
      info.areaOk = !info.settings.plotArea.empty();
    } catch (const host::Error&) {
      info.areaOk = false;
    }
    try {
      if (active->UseStandardScale()) {
        info.settings.plotScale = "S#" + std::to_string(active->StandardScale());
        info.settings.scaleCustom = false;
      } else {
        double numerator = 1;
        double denominator = 1;
        active->GetCustomScale(numerator, denominator);
        info.settings.plotScale =
            FormatScaleNumber(numerator) + "#" + FormatScaleNumber(denominator);
        info.settings.scaleCustom = true;
      }
      info.settings.scaleLW = active->ScaleLineweights();
      info.scaleOk = true;
    } catch (const host::Error&) {
      info.scaleOk = false;
    }
  } catch (const host::Error&) {
  }
}

}  // namespace

std::string PlotAreaFor(int plotType, const std::string& view) {
  switch (plotType) {
    case 0:
      return "#D";
    case 1:
      return "#E";
    case 2:
      return "#L";
    case 3:
      return view.empty() ? "#D" : view;
    case 5:
      return "#O";
    default:
      return {};  // a window: no row encoding
  }
}

std::string FormatScaleNumber(double value) { return S(QLocale().toString(value, 'g', 12)); }

DrawingInfo ReadDrawing(HostSession& host, const std::string& path, unsigned parts,
                        const std::string& layout) {
  DrawingInfo info;
  const OpenResult opened = host.OpenDrawing(path, true);
  if (!opened.ok) {
    info.error = opened.description;
    return info;
  }
  info.opened = true;
  try {
    host::Document& doc = host.Doc();
    if (parts & kReadLayouts) {
      ReadNames(doc.GetLayouts(), info.layouts, [](host::Layout& l) { return l.Name(); });
    }
    if (parts & kReadPageSetups) {
      info.pageSetupsOk = ReadNames(doc.GetPlotConfigurations(), info.pageSetups,
                                    [](host::PlotConfiguration& c) { return c.Name(); });
    }
    if (parts & kReadViews) {
      info.viewsOk = ReadNames(doc.GetViews(), info.views, [](host::View& v) { return v.Name(); });
    }
    if (parts & kReadLayers) {
      try {
        auto layers = doc.GetLayers();
        const std::int32_t count = layers->Count();
        for (std::int32_t i = 0; i < count; ++i) {
          auto layer = layers->Item(i);
          info.layers.push_back(
              {layer->Name(), layer->LayerOn() && !layer->Freeze() && layer->Plottable()});
        }
      } catch (const host::Error&) {
        info.layersOk = false;
        info.layers.clear();
      }
    }
  } catch (const host::Error&) {
    info.pageSetupsOk = info.viewsOk = info.layersOk = false;
  }
  if (parts & kReadSettings) ReadSettings(host, layout, info);
  host.CloseDrawing(path);
  return info;
}

}  // namespace sheafwork::ui
