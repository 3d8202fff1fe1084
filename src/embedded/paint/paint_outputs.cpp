// The painted outputs as the plot engine's table: each call's exceptions
// become its message, since the caller may be another copy of the engine.

#include <exception>
#include <new>

#include "embedded/paint/painted_files.h"
#include "embedded/render/messages.h"

namespace sheafwork::embedded {

namespace {

template <void (*Write)(const PlotJob&, const SheetLayout&)>
bool Guarded(const PlotJob& job, const SheetLayout& sheet, std::string& failure) noexcept {
  try {
    Write(job, sheet);
    return true;
  } catch (const std::bad_alloc&) {
    failure = render_messages::PaintedOutputOutOfMemory();
  } catch (const std::exception& e) {
    failure = e.what();
  } catch (...) {
    failure = render_messages::PaintedOutputUnknownFailure();
  }
  return false;
}

}  // namespace

PaintedOutputs PaintOutputs() {
  PaintedOutputs outputs;
  outputs.png = &Guarded<WritePng>;
  outputs.svg = &Guarded<WriteSvg>;
  outputs.printer = &Guarded<Print>;
  return outputs;
}

}  // namespace sheafwork::embedded
