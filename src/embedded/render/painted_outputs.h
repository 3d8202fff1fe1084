#pragma once
// The outputs painted with Qt (PNG, SVG, system printers) live outside the
// plot engine, in embedded/paint, which the program loads as a module only
// when a run needs one. The engine reaches them through this table; PDF and
// HP-GL/2 never load it.

#include <functional>
#include <string>

#include "embedded/render/page_geometry.h"
#include "embedded/render/plot_job.h"

namespace sheafwork::embedded {

/// Writes the job's sheet to one painted output. Returns true when done;
/// else false with the French message in `failure`. Never throws: it may
/// belong to another copy of the engine, loaded as a module, whose
/// exceptions this copy cannot catch.
using PaintedOutput = bool (*)(const PlotJob& job, const SheetLayout& sheet,
                               std::string& failure) noexcept;

struct PaintedOutputs {
  PaintedOutput png = nullptr;
  PaintedOutput svg = nullptr;
  PaintedOutput printer = nullptr;
};

/// What a loader found: the outputs, or why there are none.
struct PaintedOutputsLoad {
  PaintedOutputs outputs;  ///< used when `failure` is empty
  std::string module;      ///< where they were looked for, for the message
  std::string failure;     ///< why they could not be loaded
};
using PaintedOutputsLoader = std::function<PaintedOutputsLoad()>;

/// Uses `outputs` from now on (tests, and the module for its own copy of
/// the engine); forgets any loader.
void SetPaintedOutputs(const PaintedOutputs& outputs);

/// Uses what `loader` returns, calling it the first time a painted output
/// is needed and never again, whether it succeeded or not; forgets the
/// outputs set before.
void SetPaintedOutputsLoader(PaintedOutputsLoader loader);

/// The job's PNG, SVG or printer output (`job.output`). Throws PlotError,
/// also when nobody provided the outputs or loading them failed, naming the
/// module and the reason.
void RunPaintedOutput(const PlotJob& job, const SheetLayout& sheet);

}  // namespace sheafwork::embedded
