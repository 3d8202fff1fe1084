#include "embedded/automation/image_report.h"

#include <set>

#include "embedded/automation/variables.h"
#include "embedded/render/raster_cache.h"

namespace sheafwork::embedded {

namespace msg = host_messages;

namespace {

// Calls `f` once for the drawing and once for each drawing it references,
// however many references share one.
template <typename F>
void ForEachDrawing(const Drawing& drawing, std::set<const Drawing*>& seen, const F& f) {
  if (!seen.insert(&drawing).second) return;
  f(drawing);
  for (const ExternalReference& reference : drawing.xrefs) {
    if (reference.drawing) ForEachDrawing(*reference.drawing, seen, f);
  }
}

template <typename F>
void ForEachDrawing(const Drawing& drawing, const F& f) {
  std::set<const Drawing*> seen;
  ForEachDrawing(drawing, seen, f);
}

void Report(HostCore& core, const DocumentState& doc, const std::set<std::string>& lines) {
  for (const std::string& line : lines) {
    core.WriteLog(HostLogFile(core, doc), line);
    core.options.progress->Notice(line);
  }
}

}  // namespace

void ReportUnusableImages(HostCore& core, const DocumentState& doc) {
  std::set<std::string> lines;
  ForEachDrawing(doc.drawing, [&](const Drawing& drawing) {
    for (const auto& [handle, image] : drawing.images) {
      if (image.resolvedPath.empty()) {
        lines.insert(msg::ImageNotFound(drawing.path, image.storedPath));
      } else if (!LoadRasterImage(image.resolvedPath)) {
        lines.insert(msg::ImageUnreadable(drawing.path, image.resolvedPath));
      }
    }
  });
  Report(core, doc, lines);
}

void ReportXrefsLeftOut(HostCore& core, const DocumentState& doc) {
  std::set<std::string> lines;
  ForEachDrawing(doc.drawing, [&](const Drawing& drawing) {
    for (const ExternalReference& reference : drawing.xrefs) {
      if (reference.beyond == XrefLimit::None) continue;
      lines.insert(msg::XrefNotLoaded(drawing.path, reference.blockName, reference.resolvedPath,
                                      XrefLimitReason(reference.beyond, core.options.xrefLimits)));
    }
  });
  Report(core, doc, lines);
}

}  // namespace sheafwork::embedded
