#include "plottest/results_actions.h"

#include <cerrno>
#include <cstring>

#include "log/log_file.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {

namespace {

// Writes the results and a line end in Windows-1252. False with the system's
// reason when the file cannot be opened, written or closed (a full disk may
// show only at the close).
bool WriteResults(const std::string& path, const std::string& results, bool append,
                  std::string& error) {
  LogFile file;
  if (!file.Open(path, append) || !file.WriteLogLine(results) || !file.Close()) {
    error = std::strerror(errno);
    return false;
  }
  return true;
}

void ShowCritical(Prompt& prompt, const std::string& text, int titleId) {
  prompt.Ask({text, LoadResourceText(titleId), PromptIcon::Critical, PromptButtons::Ok});
}

}  // namespace

bool AppendResultsToJournal(const LogSettings& settings, const std::string& results,
                            Prompt& prompt) {
  if (settings.JournalLogFileName.empty() || !settings.JournalLogOn) {
    ShowCritical(prompt, LoadResourceText(ids::kJournalNotOn), ids::kErrorTitle);
    return false;
  }
  if (results.empty()) {
    ShowCritical(prompt, LoadResourceText(ids::kNoResults), ids::kErrorTitle);
    return false;
  }
  std::string error;
  if (!WriteResults(settings.JournalLogFileName, results, true, error)) {
    // The journal is switched on but cannot be written: it is not accessible.
    ShowCritical(prompt, LoadResourceText(ids::kJournalNotOn), ids::kErrorTitle);
    return false;
  }
  return true;
}

bool WriteResultsFile(const std::string& path, const std::string& results, std::string& error) {
  return WriteResults(path, results, false, error);
}

bool SaveResultsAs(const std::string& results, Prompt& prompt) {
  if (results.empty()) {
    ShowCritical(prompt, LoadResourceText(ids::kNoResults), ids::kAppTitle);
    return false;
  }
  FileDialogRequest request;
  request.title = LoadResourceText(ids::kResultsSaveTitle);
  request.filter = LoadResourceText(ids::kTextFilter);
  request.confirmOverwrite = true;
  const auto path = prompt.SaveFileName(request);
  if (!path || path->empty()) return false;
  std::string error;
  if (!WriteResultsFile(*path, results, error)) {
    ShowCritical(prompt, LoadResourceText(ids::kResultsSaveFailed) + error, ids::kErrorTitle);
    return false;
  }
  return true;
}

}  // namespace sheafwork
