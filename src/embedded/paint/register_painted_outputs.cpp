// Puts this copy's painted outputs in place at start-up, for programs that
// paint in-process (the tests).

#include "embedded/paint/painted_files.h"

namespace sheafwork::embedded {
namespace {

[[maybe_unused]] const bool kRegistered = [] {
  SetPaintedOutputs(PaintOutputs());
  return true;
}();

}  // namespace
}  // namespace sheafwork::embedded
