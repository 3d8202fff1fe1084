#include "embedded/automation/sheet_paper.h"

#include <cstdio>

namespace sheafwork::embedded {

void UsePaper(PlotSettings& settings, const Paper& paper) {
  settings.mediaName = paper.name;
  settings.paperWidth = paper.width;
  settings.paperHeight = paper.height;
  settings.marginLeft = paper.marginLeft;
  settings.marginBottom = paper.marginBottom;
  settings.marginRight = paper.marginRight;
  settings.marginTop = paper.marginTop;
}

PaperFit FitPaperToDevice(PlotSettings& settings, const PlotterConfig& config) {
  const bool usable = settings.HasUsablePaper();
  const Paper* paper = config.MatchPaper(settings.mediaName, usable ? settings.paperWidth : 0,
                                         usable ? settings.paperHeight : 0);
  if (paper != nullptr) {
    UsePaper(settings, *paper);
    return PaperFit::Matched;
  }
  if (usable) return PaperFit::Kept;
  paper = config.DefaultPaper();
  if (paper == nullptr) return PaperFit::None;
  UsePaper(settings, *paper);
  return PaperFit::Default;
}

std::string PaperForLog(const PlotSettings& settings) {
  if (!settings.mediaName.empty()) return settings.mediaName;
  char size[64];
  std::snprintf(size, sizeof size, "%g x %g mm", settings.paperWidth, settings.paperHeight);
  return size;
}

}  // namespace sheafwork::embedded
