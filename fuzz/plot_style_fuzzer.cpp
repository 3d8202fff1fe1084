// Feeds arbitrary bytes to the plot style table reader: a whole file when
// they start like one, else the text inside a file. The only way out besides
// a table is a PlotStyleError; a table that is read must write out as text
// that reads back to the same table, and give a pen for every colour.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include "embedded/plotstyle/plot_style_file.h"

namespace {

namespace se = sheafwork::embedded;

[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "plot_style_fuzzer: %s\n", what);
  std::abort();
}

void Check(const se::PlotStyleTable& table) {
  const std::string text = se::PlotStyleTableText(table);
  se::PlotStyleTable back;
  try {
    back = se::ParsePlotStyleText(text, "fuzz-back.ctb");
  } catch (const se::PlotStyleError&) {
    Fail("a table we wrote cannot be read back");
  }
  if (se::PlotStyleTableText(back) != text) Fail("a table changed through writing and reading");
  for (int aci = 0; aci <= 256; ++aci) {
    const se::PlotStylePen pen = table.Apply(aci, 0x808080, 0.25);
    if (pen.rgb > 0xFFFFFFu) Fail("a pen colour beyond 24 bits");
    if (!(pen.lineweightMm >= 0)) Fail("a negative or undefined lineweight");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span<const unsigned char> bytes(data, size);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    if (text.starts_with("PIAFILE")) {
      Check(se::ReadPlotStyleTable(bytes, "fuzz.ctb"));
    } else {
      Check(se::ParsePlotStyleText(text, "fuzz.ctb"));
    }
  } catch (const se::PlotStyleError&) {
  }
  return 0;
}
