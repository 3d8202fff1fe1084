// The HP-GL/2 plot: the frontend draws into an HpglBackend, whose text goes
// to the file in one write.

#include <cstdio>
#include <fstream>
#include <string>

#include "embedded/render/file_outputs.h"
#include "embedded/render/frontend.h"
#include "embedded/render/hpgl_backend.h"
#include "embedded/render/messages.h"
#include "embedded/render/paint_sheet.h"
#include "log/wide_path.h"

namespace sheafwork::embedded {

void WriteHpgl(const PlotJob& job, const SheetLayout& sheet) {
  const std::string& path = job.outputPath;
  std::ofstream file;
  if (!path.empty()) file.open(FsPath(path), std::ios::binary | std::ios::trunc);
  if (!file.is_open()) throw PlotError(render_messages::FileCannotCreate("HP-GL/2", path));
  const auto removeFile = [&] {
    file.close();
    std::remove(path.c_str());
  };
  HpglBackend backend(sheet.frame.width, sheet.frame.height, job.title);
  try {
    const Box2 whole = Box2::Of({0, 0}, {sheet.frame.width, sheet.frame.height});
    DrawSheet(backend, job, sheet, whole, HpglBackend::kUnitsPerMm);
  } catch (...) {
    removeFile();
    throw;
  }
  const std::string text = backend.Finish();
  file.write(text.data(), static_cast<std::streamsize>(text.size()));
  file.close();
  if (file.fail()) {
    std::remove(path.c_str());
    throw PlotError(render_messages::FileCannotWrite("HP-GL/2", path));
  }
}

}  // namespace sheafwork::embedded
