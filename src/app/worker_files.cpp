#include "app/worker_files.h"

#include <filesystem>
#include <random>
#include <system_error>

#include "embedded/automation/messages.h"
#include "embedded/automation/output_names.h"
#include "host/error.h"
#include "log/wide_path.h"
#include "platform/process_id.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {

namespace fs = std::filesystem;

namespace {

constexpr const char* kPagesArgument = "--combined-pages";
constexpr const char* kOutputArgument = "--output-dir";
constexpr const char* kSheetsArgument = "--output-sheets";

// An event is a kind letter and its fields, one per line (a record escapes
// line breaks, and paths here have none).
std::string Event(char kind, std::initializer_list<std::string> fields) {
  std::string text(1, kind);
  for (const std::string& field : fields) text += "\n" + field;
  return text;
}

std::vector<std::string> Fields(const std::string& event) {
  std::vector<std::string> fields;
  std::size_t start = 0;
  for (std::size_t end; (end = event.find('\n', start)) != std::string::npos; start = end + 1) {
    fields.push_back(event.substr(start, end - start));
  }
  fields.push_back(event.substr(start));
  return fields;
}

// A new folder in `parent`, hidden from listings, or empty.
std::string NewHiddenFolder(const fs::path& parent, std::error_code& ec) {
  std::random_device random;
  for (int attempt = 0; attempt < 100; ++attempt) {
    const fs::path folder = parent / (".sheafwork-" + std::to_string(random() % 1000000));
    if (fs::create_directory(folder, ec)) return PathText(folder);
    if (ec) return {};
  }
  ec = std::make_error_code(std::errc::file_exists);
  return {};
}

}  // namespace

std::unique_ptr<RunFiles> RunFiles::Prepare(const std::string& combined,
                                            const std::string& outputFolder, std::string& error) {
  std::unique_ptr<RunFiles> files(new RunFiles);
  try {
    if (!combined.empty()) {
      files->combined_.emplace(combined);
      files->pages_ = std::make_unique<embedded::ScratchFolder>();
    }
  } catch (const embedded::PlotError& failure) {
    error = failure.what();
    return nullptr;
  } catch (const host::Error& failure) {
    error = failure.description();
    return nullptr;
  }
  if (!outputFolder.empty()) {
    std::error_code ec;
    files->outputFolder_ = outputFolder;
    files->sheets_ = NewHiddenFolder(FsPath(outputFolder), ec);
    if (files->sheets_.empty()) {
      error = outputFolder + " : " + ec.message();
      return nullptr;
    }
  }
  return files;
}

RunFiles::~RunFiles() {
  std::error_code ec;
  if (!sheets_.empty()) fs::remove_all(FsPath(sheets_), ec);
}

std::vector<std::string> RunFiles::WorkerArguments() const {
  std::vector<std::string> arguments;
  if (pages_) arguments.insert(arguments.end(), {kPagesArgument, pages_->path()});
  if (!sheets_.empty()) {
    arguments.insert(arguments.end(), {kOutputArgument, outputFolder_, kSheetsArgument, sheets_});
  }
  return arguments;
}

void RunFiles::Place(const std::string& event,
                     const std::function<void(const std::string&)>& failed) {
  const std::vector<std::string> fields = Fields(event);
  std::error_code ec;
  if (fields.size() == 4 && fields[0] == "O") {
    // The name is taken whether or not the sheet was written, as it is
    // when one host plots every row.
    const std::string name = embedded::TakeOutputName(taken_, fields[1], fields[2]);
    if (!fs::exists(FsPath(fields[3]), ec)) return;
    fs::rename(FsPath(fields[3]), FsPath(name), ec);
    if (ec) failed(name + " : " + LoadResourceText(ids::kSheetNotPlaced) + ec.message());
  } else if (fields.size() == 5 && fields[0] == "B") {
    if (combined_) {
      try {
        combined_->AddSheetFrom(fields[1], fields[2], fields[3], fields[4]);
      } catch (const std::exception& error) {
        failed(embedded::host_messages::CombinedPageFailed(error.what()));
      }
    }
    fs::remove(FsPath(fields[1]), ec);
  }
}

std::pair<int, std::string> RunFiles::CloseCombined() {
  if (!combined_) return {0, {}};
  std::string error;
  try {
    combined_->Close();
  } catch (const std::exception& failure) {
    error = failure.what();
  }
  return {combined_->Pages(), error};
}

bool WorkerFiles(const std::vector<std::string>& args, RowRecorder& recorder,
                 embedded::EmbeddedHostOptions& host) {
  std::string pages, sheets;
  for (std::size_t i = 0; i + 1 < args.size(); i += 2) {
    if (args[i] == kPagesArgument) pages = args[i + 1];
    if (args[i] == kOutputArgument) host.outputFolder = args[i + 1];
    if (args[i] == kSheetsArgument) sheets = args[i + 1];
  }
  const std::string own = std::to_string(CurrentProcessId());
  if (!sheets.empty()) {
    host.outputName = [&recorder, folder = FsPath(sheets), own, n = 0](
                          const std::string& base, const std::string& extension) mutable {
      const std::string written =
          PathText(folder / FsPath(own + "-" + std::to_string(++n) + extension));
      recorder.Add(RowEvent::WorkerFile, Event('O', {base, extension, written}));
      return written;
    };
  }
  if (!pages.empty()) {
    const fs::path folder = FsPath(pages) / FsPath(own);
    std::error_code ec;
    if (!fs::create_directories(folder, ec)) return false;
    host.combinedPageFolder = PathText(folder);
    host.combinedPageWritten = [&recorder](const embedded::CombinedPage& page) {
      recorder.Add(RowEvent::WorkerFile,
                   Event('B', {page.path, page.drawingKey, page.drawingName, page.layoutName}));
    };
  }
  return true;
}

}  // namespace sheafwork
