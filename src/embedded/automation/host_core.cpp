#include "embedded/automation/host_core.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <new>
#include <set>
#include <system_error>

#include "embedded/automation/default_seams.h"
#include "embedded/automation/dwg_converter.h"
#include "embedded/automation/variables.h"
#include "embedded/dxf/messages.h"
#include "embedded/model/referenced_files.h"
#include "embedded/model/xrefs.h"
#include "log/paths.h"
#include "log/wide_path.h"
#include "platform/program_folders.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"

namespace sheafwork::embedded {

namespace fs = std::filesystem;
namespace msg = host_messages;

namespace {

bool IsFile(const std::string& path) {
  std::error_code ec;
  return fs::is_regular_file(FsPath(path), ec);
}

// The host lists the model layout first, then the paper-space layouts in tab
// order; a drawing without any layout gets a model layout.
std::vector<std::size_t> TabOrder(Drawing& drawing) {
  if (drawing.layouts.empty()) {
    Layout model;
    model.name = "Model";
    model.blockName = "*Model_Space";
    model.settings.flags |= kModelType;
    drawing.layouts.push_back(model);
    drawing.activeLayout = 0;
  }
  std::vector<std::size_t> tabs(drawing.layouts.size());
  for (std::size_t i = 0; i < tabs.size(); ++i) tabs[i] = i;
  std::stable_sort(tabs.begin(), tabs.end(), [&](std::size_t a, std::size_t b) {
    const Layout& la = drawing.layouts[a];
    const Layout& lb = drawing.layouts[b];
    if (la.IsModel() != lb.IsModel()) return la.IsModel();
    return la.tabOrder < lb.tabOrder;
  });
  if (drawing.activeLayout >= drawing.layouts.size()) drawing.activeLayout = tabs.front();
  return tabs;
}

// The image definitions in the order of their stored paths.
std::vector<const ImageDefinition*> SortedImages(const Drawing& drawing) {
  std::vector<const ImageDefinition*> images;
  for (const auto& [handle, image] : drawing.images) images.push_back(&image);
  std::sort(images.begin(), images.end(),
            [](const auto* a, const auto* b) { return a->storedPath < b->storedPath; });
  return images;
}

// A drawing that several references share lists its own references under
// the first one only.
void WriteXrefLines(const Drawing& drawing, std::ofstream& out, const std::string& indent,
                    const XrefLimits& limits, std::set<const Drawing*>& listed) {
  const std::string& mark = CachedText<ids::kXrefNotFoundMark>();
  for (const ExternalReference& reference : drawing.xrefs) {
    std::string line;
    if (reference.resolvedPath.empty()) {
      line = msg::XrefNotFound(reference.blockName, reference.storedPath, mark);
    } else if (reference.beyond != XrefLimit::None) {
      line = msg::XrefLeftOut(reference.blockName, reference.storedPath, reference.resolvedPath,
                              CachedText<ids::kXrefLeftOutMark>(),
                              XrefLimitReason(reference.beyond, limits));
    } else {
      line = msg::XrefFound(reference.blockName, reference.storedPath, reference.resolvedPath);
    }
    out << indent << line << "\r\n";
    if (reference.drawing && listed.insert(reference.drawing.get()).second) {
      WriteXrefLines(*reference.drawing, out, indent + "  ", limits, listed);
    }
  }
  // Raster images are external files too: a missing one is listed with the
  // same mark.
  for (const ImageDefinition* image : SortedImages(drawing)) {
    const std::string& found = image->resolvedPath;
    out << indent << msg::ImageReference(image->storedPath, found.empty() ? mark : found) << "\r\n";
  }
}

}  // namespace

void DocumentState::Activate(std::size_t index) {
  drawing.activeLayout = index;
  if (!drawing.layouts.at(index).IsModel()) lastPaperLayout = index;
}

HostCore::HostCore(EmbeddedHostOptions given) : options(std::move(given)) {
  if (options.dataFolder.empty()) options.dataFolder = ProgramDataFolder();
  if (options.userFolder.empty()) options.userFolder = UserDataFolder();
  if (!options.printers) options.printers = SystemPrinterCatalog();
  if (!options.progress) options.progress = ConsoleProgressDisplay();
  if (!options.reader) options.reader = DefaultDrawingReader();
  if (!options.plotter) options.plotter = DefaultPlotter();
  if (!options.dwgConverter) {
    // The converter named in the environment, else the program's own when
    // it was installed beside the data.
    const char* fromEnvironment = std::getenv("SHEAFWORK_DWG_CONVERTER");
    const std::string bundled = BundledDwgConverter(options.dataFolder);
    if (fromEnvironment != nullptr && *fromEnvironment != '\0') {
      options.dwgConverter = fromEnvironment;
    } else {
      options.dwgConverter = IsFile(bundled) ? bundled : "";
    }
  }
  if (options.dwgTimeLimit <= std::chrono::milliseconds::zero()) {
    options.dwgTimeLimit = DefaultDwgTimeLimit();
  }
  if (options.sheetEntityLimit == 0) {
    // The environment's limit, for tests and for the rare drawing that
    // needs more.
    const char* fromEnvironment = std::getenv("SHEAFWORK_SHEET_LIMIT");
    std::uint64_t limit = 0;
    if (fromEnvironment != nullptr) {
      const char* end = fromEnvironment + std::strlen(fromEnvironment);
      const auto parsed = std::from_chars(fromEnvironment, end, limit);
      if (parsed.ec != std::errc() || parsed.ptr != end) limit = 0;
    }
    options.sheetEntityLimit = limit > 0 ? limit : kDefaultSheetEntityLimit;
  }
  if (!options.fallbackDevice) {
    const char* fromEnvironment = std::getenv("SHEAFWORK_FALLBACK_DEVICE");
    options.fallbackDevice =
        fromEnvironment && *fromEnvironment ? fromEnvironment : msg::kDefaultFallbackDevice;
  }
  const fs::path data = FsPath(options.dataFolder);
  const fs::path user = FsPath(options.userFolder);
  printerConfigPath = PathText(data / "plotters") + ";" + PathText(user / "plotters");
  plotStylePath = PathText(data / "plotstyles") + ";" + PathText(user / "plotstyles");
  // Shape fonts are found along the support path: the program's own and the
  // user's, beside the user's plotters and plot styles.
  supportPath =
      PathText(data / "support") + ";" + PathText(data / "fonts") + ";" + PathText(user / "fonts");
  logFilePath = options.userFolder;
  dwgConverter = *options.dwgConverter;
  fallbackDevice = *options.fallbackDevice;
  hostVariables = DefaultHostVariables();
  if (!options.conversionFolder.empty()) conversions.ShareThrough(options.conversionFolder);
  if (!options.combinedPdf.empty()) {
    combined = std::make_unique<CombinedPdf>(options.combinedPdf, options.combinedPdfClosed,
                                             options.progress);
  } else if (!options.combinedPageFolder.empty()) {
    combined = std::make_unique<CombinedPdf>(options.combinedPageFolder,
                                             options.combinedPageWritten, options.progress);
  }
}

void HostCore::CheckRunning() const {
  if (quit) throw host::Error(msg::kObjectClosed, msg::HostClosed());
}

const std::vector<PrinterInfo>& HostCore::Printers() {
  if (!printers_) printers_ = options.printers->Printers();
  return *printers_;
}

std::optional<PlotDevice> HostCore::FindDevice(const std::string& name) {
  return FindPlotDevice(name, printerConfigPath,
                        [this]() -> const std::vector<PrinterInfo>& { return Printers(); });
}

Drawing HostCore::ReadFile(const std::string& path) {
  try {
    return options.reader(path);
  } catch (const host::Error&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw host::Error(msg::kBadDrawing, msg::OutOfMemoryReading(path));
  } catch (const std::exception& error) {
    throw host::Error(msg::kBadDrawing, error.what());
  }
}

Drawing HostCore::LoadDrawing(const std::string& path) {
  auto readAny = [this](const std::string& file) -> Drawing {
    if (!IsFile(file)) throw host::Error(host::kFileNotFound, msg::FileNotFound(file));
    if (EndsWithIgnoreCase(file, ".dxf")) {
      Drawing drawing = ReadFile(file);
      drawing.path = file;
      ResolveImageFiles(drawing, supportPath);
      return drawing;
    }
    if (!EndsWithIgnoreCase(file, ".dwg") && !EndsWithIgnoreCase(file, ".dwt")) {
      throw host::Error(msg::kUnsupportedFile, msg::UnsupportedFile(file));
    }
    if (dwgConverter.empty()) throw host::Error(msg::kNoDwgConverter, msg::NoDwgConverter(file));
    const std::string converted = conversions.Convert(dwgConverter, file, options.dwgTimeLimit);
    Drawing drawing;
    try {
      drawing = ReadFile(converted);
    } catch (const host::Error& error) {
      // The reader names the converted file, a temporary the user never
      // saw: the message names the drawing instead, with the place.
      if (error.number() != msg::kBadDrawing) throw;
      std::string_view reason = error.description();
      for (const std::string_view temporary :
           {std::string_view(converted), dxfmsg::ShownName(converted)}) {
        if (reason.substr(0, temporary.size()) != temporary) continue;
        reason.remove_prefix(temporary.size());
        break;
      }
      while (!reason.empty() && (reason.front() == ',' || reason.front() == ' ')) {
        reason.remove_prefix(1);
      }
      throw host::Error(msg::kBadDrawing, msg::ConvertedDrawingUnreadable(file, reason));
    }
    drawing.path = file;
    ResolveImageFiles(drawing, supportPath);
    return drawing;
  };
  Drawing drawing = readAny(path);
  drawing.path = path;
  ResolveExternalReferences(
      drawing, supportPath,
      [&](const std::string& file) { return std::make_shared<const Drawing>(readAny(file)); },
      options.xrefLimits);
  return drawing;
}

void HostCore::WriteLog(const std::string& path, const std::string& line) {
  if (!logFileOn) return;
  std::error_code ec;
  fs::create_directories(FsPath(path).parent_path(), ec);
  const bool fresh = startedLogs_.insert(path).second;
  std::ofstream out(FsPath(path),
                    fresh ? std::ios::binary | std::ios::trunc : std::ios::binary | std::ios::app);
  out << line << "\r\n";
}

std::shared_ptr<DocumentState> HostCore::AddDocument(std::string fullName, Drawing drawing,
                                                     bool readOnly) {
  auto doc = std::make_shared<DocumentState>();
  doc->fullName = std::move(fullName);
  doc->readOnly = readOnly;
  doc->drawing = std::move(drawing);
  doc->tabs = TabOrder(doc->drawing);
  doc->variables = DefaultDocumentVariables();
  // The last paper layout shown is the one on "*Paper_Space"; without one,
  // the first in tab order.
  for (std::size_t index : doc->tabs) {
    const Layout& layout = doc->drawing.layouts[index];
    if (layout.IsModel()) continue;
    if (!doc->lastPaperLayout) doc->lastPaperLayout = index;
    if (EqualsIgnoreCase(layout.blockName, "*Paper_Space")) {
      doc->lastPaperLayout = index;
      break;
    }
  }
  doc->Activate(doc->drawing.activeLayout);
  documents.push_back(doc);
  return doc;
}

void HostCore::RemoveDocument(const std::shared_ptr<DocumentState>& doc) {
  doc->closed = true;
  std::erase(documents, doc);
  if (active == doc) active = documents.empty() ? nullptr : documents.front();
}

void CheckIndex(std::int32_t index, std::size_t count) {
  if (index < 0 || static_cast<std::size_t>(index) >= count) {
    throw host::Error(msg::kIndexOutOfRange,
                      msg::IndexOutOfRange(index, static_cast<std::int32_t>(count)));
  }
}

Drawing UntitledDrawing() {
  Drawing drawing;
  drawing.path = msg::kUntitledDrawing;
  drawing.header.acadVer = "AC1015";
  drawing.layers.push_back(embedded::Layer{});
  drawing.layers.back().name = "0";
  drawing.textStyles.push_back(embedded::TextStyle{});
  drawing.textStyles.back().name = "Standard";
  drawing.textStyles.back().fontFile = "txt";
  for (const char* name : {"*Model_Space", "*Paper_Space"}) {
    drawing.blocks.push_back(Block{});
    drawing.blocks.back().name = name;
  }
  Layout model;
  model.name = "Model";
  model.blockName = "*Model_Space";
  model.settings.flags |= kModelType;
  model.settings.plotType = kPlotDisplay;
  Layout paper;
  paper.name = msg::kFirstPaperLayout;
  paper.blockName = "*Paper_Space";
  paper.tabOrder = 1;
  drawing.layouts = {model, paper};
  drawing.activeLayout = 0;
  drawing.Reindex();
  return drawing;
}

void WriteXrefLog(const Drawing& drawing, const XrefLimits& limits) {
  std::ofstream out(FsPath(XrefLogName(drawing.path)), std::ios::binary | std::ios::trunc);
  out << msg::XrefLogTitle(drawing.path) << "\r\n";
  if (drawing.xrefs.empty() && drawing.images.empty()) out << msg::XrefNone() << "\r\n";
  std::set<const Drawing*> listed;
  WriteXrefLines(drawing, out, "", limits, listed);
}

std::string XrefLimitReason(XrefLimit limit, const XrefLimits& limits) {
  return limit == XrefLimit::Depth ? msg::XrefDepthLimit(limits.maxDepth)
                                   : msg::XrefSizeLimit(limits.maxTotalBytes);
}

}  // namespace sheafwork::embedded
