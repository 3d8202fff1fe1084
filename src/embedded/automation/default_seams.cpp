#include "embedded/automation/default_seams.h"

#include "embedded/dxf/reader.h"
#include "embedded/render/plot_job.h"

namespace sheafwork::embedded {

DrawingReader DefaultDrawingReader() {
  return [](const std::string& path) { return ReadDxfFile(path); };
}

Plotter DefaultPlotter() {
  return [](const PlotJob& job) { RunPlotJob(job); };
}

}  // namespace sheafwork::embedded
