// Feeds arbitrary bytes to the DXF reader. The only way out besides a
// drawing is a DxfError; a drawing that is read must hold together: at
// least one layout, the model layout first, the active layout one of them,
// and the block of every layout present, but for a paper layout whose block
// was lost, which says so.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "embedded/dxf/reader.h"

namespace {

using sheafwork::embedded::Drawing;
using sheafwork::embedded::DxfError;
using sheafwork::embedded::Layout;

[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "dxf_fuzzer: %s\n", what);
  std::abort();
}

void Check(const Drawing& d) {
  if (d.layouts.empty()) Fail("no layout");
  if (!d.layouts.front().IsModel()) Fail("the first layout is not the model");
  if (d.activeLayout >= d.layouts.size()) Fail("the active layout is out of range");
  for (const Layout& layout : d.layouts) {
    // A paper layout whose block was lost says why and plots nothing.
    if (!layout.blockError.empty()) {
      if (layout.IsModel()) Fail("the model layout without its block");
      continue;
    }
    if (d.LayoutBlock(layout) == nullptr) Fail("a layout without its block");
  }
  if (d.FindLayer("0") == nullptr) Fail("no layer 0");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  try {
    Check(sheafwork::embedded::ReadDxf(bytes, "fuzz.dxf"));
  } catch (const DxfError&) {
  }
  return 0;
}
