#include "embedded/automation/image_report.h"

#include <set>

#include "embedded/automation/variables.h"
#include "embedded/render/raster_cache.h"

namespace sheafwork::embedded {

namespace msg = host_messages;

namespace {

void Collect(const Drawing& drawing, std::set<std::string>& lines) {
  for (const auto& [handle, image] : drawing.images) {
    if (image.resolvedPath.empty()) {
      lines.insert(msg::ImageNotFound(drawing.path, image.storedPath));
    } else if (!LoadRasterImage(image.resolvedPath)) {
      lines.insert(msg::ImageUnreadable(drawing.path, image.resolvedPath));
    }
  }
  for (const ExternalReference& reference : drawing.xrefs) {
    if (reference.drawing) Collect(*reference.drawing, lines);
  }
}

}  // namespace

void ReportUnusableImages(HostCore& core, const DocumentState& doc) {
  std::set<std::string> lines;
  Collect(doc.drawing, lines);
  for (const std::string& line : lines) {
    core.WriteLog(HostLogFile(core, doc), line);
    core.options.progress->Notice(line);
  }
}

}  // namespace sheafwork::embedded
