#pragma once
// The files the workers of a parallel run write for the run to put in place
// in row order: the sheets of an output folder, whose "-2", "-3" names
// depend on the sheets before them, and the pages of the combined PDF.
//
// A worker writes a sheet of the output folder under a name of its own in a
// folder of the run, and a page of the combined PDF as a PDF of its own; its
// record of the row says so (a RowEvent::WorkerFile). When the run writes
// the row, RunFiles gives the sheet its name and adds the page to the
// combined PDF.

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "embedded/automation/dwg_converter.h"
#include "embedded/automation/embedded_host.h"
#include "embedded/render/pdf_book.h"
#include "plotrun/row_record.h"

namespace sheafwork {

/// The run's side.
class RunFiles {
 public:
  /// Opens the combined PDF `combined` and makes a folder for the workers'
  /// sheets in `outputFolder` (empty: none of either). Null after putting
  /// in `error`, in French, why one of them cannot be.
  static std::unique_ptr<RunFiles> Prepare(const std::string& combined,
                                           const std::string& outputFolder, std::string& error);
  ~RunFiles();
  RunFiles(const RunFiles&) = delete;
  RunFiles& operator=(const RunFiles&) = delete;

  /// What a worker is told on its command line (WorkerFiles reads it).
  std::vector<std::string> WorkerArguments() const;
  /// For RunServices::placeWorkerFile. A file that cannot be put in its
  /// place is reported to `failed` (French); the row stands.
  void Place(const std::string& event, const std::function<void(const std::string&)>& failed);
  /// Writes the combined PDF: its pages, and why it could not be written
  /// (empty when it was, or when there was nothing to write).
  std::pair<int, std::string> CloseCombined();

 private:
  RunFiles() = default;

  std::optional<embedded::PdfBook> combined_;
  std::unique_ptr<embedded::ScratchFolder> pages_;
  std::string outputFolder_;
  std::string sheets_;  ///< in the output folder, removed at the end
  std::set<std::string> taken_;
};

/// The worker's side: sets its host, from the arguments the run gave it, to
/// write the files the run puts in place, each told to `recorder`. False
/// when a folder it needs cannot be made.
bool WorkerFiles(const std::vector<std::string>& args, RowRecorder& recorder,
                 embedded::EmbeddedHostOptions& host);

}  // namespace sheafwork
