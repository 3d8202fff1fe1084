// Plot jobs as a whole: the PDF file of a sheet, a printer that is not
// there, and what bounds one sheet's walk (the entities it may draw, the
// user's cancel; the nested blocks come from tests/data/dxf/fan-out/blocks.dxf,
// B0 one line, each Bn ten references to B(n-1)).

#include "embedded/render/plot_job.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "embedded/render/extents_backend.h"
#include "embedded/render/frontend.h"
#include "embedded/render/render_test_support.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;

using ::testing::HasSubstr;

// Draws block `name` of `drawing` with `work`; the PlotError's message, or
// empty when it was drawn.
std::string DrawBlock(const Drawing& drawing, const std::string& name, const SheetWork& work) {
  ExtentsBackend backend;
  FrontendOptions options;
  options.work = &work;
  Frontend frontend(drawing, backend, options);
  try {
    frontend.DrawBlockEntities(*drawing.FindBlock(name), Transform3{});
  } catch (const PlotError& error) {
    return error.what();
  }
  return "";
}

TEST(SheetBoundsTest, AWalkStopsPastTheEntityLimitNamingItOrOnACancel) {
  const Drawing drawing = testing::ReadTestDrawing("dxf/fan-out/blocks.dxf");
  // B4 draws 10 + 100 + 1000 + 10 000 references and 10 000 lines.
  struct Case {
    const char* block;
    std::uint64_t limit;
    const char* error;
  };
  const Case cases[] = {
      {"B4", 21110, ""},
      {"B4", 21109, "plus de 21109 entités"},
      {"B8", 100000, "plus de 100000 entités"},
      {"B1", 0, "plus de 0 entités"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.block) + " " + std::to_string(c.limit));
    SheetWork work;
    work.entityLimit = c.limit;
    const std::string error = DrawBlock(drawing, c.block, work);
    EXPECT_EQ(error.empty(), *c.error == '\0') << error;
    EXPECT_THAT(error, HasSubstr(c.error));
  }

  int asked = 0;
  SheetWork work;
  work.cancelled = [&] { return ++asked == 2; };
  // 10^9 lines: only a cancel ends this walk before the limit.
  EXPECT_EQ(DrawBlock(drawing, "*Model_Space", work),
            "tracé interrompu à la demande de l'utilisateur");
  EXPECT_EQ(asked, 2);
}

}  // namespace
}  // namespace sheafwork::embedded
