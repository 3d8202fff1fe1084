#include "embedded/render/painted_outputs.h"

#include <mutex>
#include <utility>

#include "embedded/render/messages.h"

namespace sheafwork::embedded {

namespace {

struct Registry {
  std::mutex mutex;
  PaintedOutputsLoader loader;
  bool loaded = false;  // `load` holds the outputs or the loader's failure
  PaintedOutputsLoad load;
};

Registry& TheRegistry() {
  static Registry registry;
  return registry;
}

// The outputs as they stand, calling the loader the first time.
PaintedOutputsLoad CurrentOutputs() {
  Registry& r = TheRegistry();
  std::lock_guard lock(r.mutex);
  if (!r.loaded && r.loader) {
    PaintedOutputsLoader loader = std::exchange(r.loader, nullptr);
    r.load = loader();
    if (!r.load.failure.empty()) r.load.outputs = {};
    r.loaded = true;
  }
  return r.load;
}

std::string OutputName(OutputKind kind) {
  switch (kind) {
    case OutputKind::Png:
      return "la sortie PNG";
    case OutputKind::Svg:
      return "la sortie SVG";
    default:
      return "l'impression";
  }
}

}  // namespace

void SetPaintedOutputs(const PaintedOutputs& outputs) {
  Registry& r = TheRegistry();
  std::lock_guard lock(r.mutex);
  r.loader = nullptr;
  r.load = {outputs, {}, {}};
  r.loaded = true;
}

void SetPaintedOutputsLoader(PaintedOutputsLoader loader) {
  Registry& r = TheRegistry();
  std::lock_guard lock(r.mutex);
  r.loader = std::move(loader);
  r.load = {};
  r.loaded = false;
}

void RunPaintedOutput(const PlotJob& job, const SheetLayout& sheet) {
  const PaintedOutputsLoad current = CurrentOutputs();
  PaintedOutput output = nullptr;
  switch (job.output) {
    case OutputKind::Png:
      output = current.outputs.png;
      break;
    case OutputKind::Svg:
      output = current.outputs.svg;
      break;
    case OutputKind::Printer:
      output = current.outputs.printer;
      break;
    default:
      break;
  }
  if (output == nullptr) {
    if (!current.failure.empty()) {
      throw PlotError(render_messages::PaintedOutputNotLoaded(OutputName(job.output),
                                                              current.module, current.failure));
    }
    throw PlotError(render_messages::PaintedOutputMissing(OutputName(job.output)));
  }
  std::string failure;
  if (!output(job, sheet, failure)) throw PlotError(failure);
}

}  // namespace sheafwork::embedded
