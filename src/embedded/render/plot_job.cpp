#include "embedded/render/plot_job.h"

#include "embedded/render/file_outputs.h"
#include "embedded/render/paint_sheet.h"
#include "embedded/render/painted_outputs.h"
#include "embedded/render/pdf_output.h"

namespace sheafwork::embedded {

void RunPlotJob(const PlotJob& job) {
  const SheetLayout sheet = PlanSheet(job);
  switch (job.output) {
    case OutputKind::Pdf:
      WritePdf(job, sheet);
      return;
    case OutputKind::Printer:
    case OutputKind::Png:
    case OutputKind::Svg:
      RunPaintedOutput(job, sheet);
      return;
    case OutputKind::Hpgl:
      WriteHpgl(job, sheet);
      return;
  }
}

}  // namespace sheafwork::embedded
