#pragma once
// What the embedded host's objects share: the host's state and each open
// document's state. The objects handed out hold these by shared_ptr, so that
// they stay valid after their document was closed (and then throw).

#include <map>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "embedded/automation/combined_pdf.h"
#include "embedded/automation/dwg_converter.h"
#include "embedded/automation/embedded_host.h"
#include "embedded/automation/messages.h"
#include "embedded/devices/device.h"
#include "embedded/devices/plotter_config.h"
#include "embedded/dxf/reader.h"
#include "host/error.h"
#include "host/sysvar.h"

namespace sheafwork::embedded {

struct DocumentState {
  std::string fullName;
  bool readOnly = false;
  bool untitled = false;
  bool closed = false;
  /// The document's own copy: layer, layout and plot-setting changes live here.
  Drawing drawing;
  /// Indexes in drawing.layouts, as the host lists them: the model layout
  /// first, then the paper-space layouts in tab order.
  std::vector<std::size_t> tabs;
  /// The paper-space layout shown when the document switches to paper space.
  std::optional<std::size_t> lastPaperLayout;
  /// The document's own system variables.
  std::map<std::string, host::SysVarValue> variables;
  /// The plot object's number of copies, for printers.
  std::int16_t copies = 1;

  const Layout& ActiveLayout() const { return drawing.layouts.at(drawing.activeLayout); }
  /// Makes drawing.layouts[index] the active one.
  void Activate(std::size_t index);
};

/// The batch-mode state, one per host.
struct BatchState {
  bool started = false;
  bool going = true;
  int total = 0;
  int done = 0;
};

class HostCore {
 public:
  /// Fills in every option left empty.
  explicit HostCore(EmbeddedHostOptions options);

  EmbeddedHostOptions options;
  bool quit = false;
  bool visible = false;
  std::int32_t width = 1024;
  std::int32_t height = 768;

  std::vector<std::shared_ptr<DocumentState>> documents;
  std::shared_ptr<DocumentState> active;
  /// Variables every document shares (see variables.h).
  std::map<std::string, host::SysVarValue> hostVariables;

  std::string printerConfigPath;
  std::string plotStylePath;
  std::string supportPath;
  std::string logFilePath;
  bool logFileOn = false;
  std::string dwgConverter;
  /// The DWG drawings converted since the batch started (or the host did):
  /// forgotten, and their files removed, when the batch ends.
  DwgConversions conversions;
  /// Plots the layouts whose own device is "Aucun" or missing here.
  std::string fallbackDevice;
  BatchState batch;
  /// The combined PDF when the options name one (closed once the batch
  /// ends or the host quits).
  std::unique_ptr<CombinedPdf> combined;
  /// The files written into the options' output folder so far, each a
  /// sheet's own.
  std::set<std::string> outputsTaken;

  /// Throws host::Error once the host was quit.
  void CheckRunning() const;
  /// The installed printers, asked once.
  const std::vector<PrinterInfo>& Printers();
  /// The device of that name, nullopt when there is none. Throws
  /// DeviceError for a malformed configuration file.
  std::optional<PlotDevice> FindDevice(const std::string& name);

  /// Reads the drawing at `path` (DXF, or DWG through the converter) and
  /// resolves its external references. Throws host::Error.
  Drawing LoadDrawing(const std::string& path);

  /// Appends a line to the host's log file `path` when the log is on; the
  /// first line written to a file since the log was switched on empties it.
  void WriteLog(const std::string& path, const std::string& line);
  /// The log was switched on again: every log file starts afresh.
  void RestartLogs() { startedLogs_.clear(); }

  /// Adds a document and returns it; not active.
  std::shared_ptr<DocumentState> AddDocument(std::string fullName, Drawing drawing, bool readOnly);
  /// Removes the document; when it was active, the first other one becomes
  /// active.
  void RemoveDocument(const std::shared_ptr<DocumentState>& doc);

 private:
  Drawing ReadFile(const std::string& path);

  std::optional<std::vector<PrinterInfo>> printers_;
  std::set<std::string> startedLogs_;
};

/// Runs `body` for a member of a host object: refuses once the host was quit
/// and turns any exception but host::Error into one.
template <typename Body>
auto Guarded(const HostCore& core, Body&& body) -> decltype(body()) {
  core.CheckRunning();
  try {
    return body();
  } catch (const host::Error&) {
    throw;
  } catch (const DeviceError& error) {
    throw host::Error(host_messages::kUnknownDevice, error.what());
  } catch (const DxfError& error) {
    throw host::Error(host_messages::kBadDrawing, error.what());
  } catch (const PlotError& error) {
    throw host::Error(host_messages::kInternal, error.what());
  } catch (const std::bad_alloc&) {
    throw host::Error(host_messages::kInternal, host_messages::OutOfMemory());
  } catch (const std::exception& error) {
    throw host::Error(host_messages::kInternal, host_messages::Internal(error.what()));
  }
}

/// The same for a member of a document's object: also refuses once the
/// document was closed.
template <typename Body>
auto Guarded(const HostCore& core, const DocumentState& doc, Body&& body) -> decltype(body()) {
  return Guarded(core, [&]() -> decltype(body()) {
    if (doc.closed) {
      throw host::Error(host_messages::kObjectClosed, host_messages::DocumentClosed(doc.fullName));
    }
    return body();
  });
}

/// Throws host::Error unless 0 <= index < count.
void CheckIndex(std::int32_t index, std::size_t count);

/// The empty drawing of an untitled document: layer "0", style "Standard",
/// the model layout and one paper-space layout.
Drawing UntitledDrawing();

/// Writes the external-reference log beside `drawing` (see XrefLogName), one
/// line per reference, nested ones indented; those left out name the limit
/// of `limits` they were beyond.
void WriteXrefLog(const Drawing& drawing, const XrefLimits& limits);

/// Why a reference was left out, in French.
std::string XrefLimitReason(XrefLimit limit, const XrefLimits& limits);

}  // namespace sheafwork::embedded
