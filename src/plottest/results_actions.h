#pragma once
// What the plot test's results can be used for: appended to the journal or
// saved as a text file.

#include <string>

#include "log/log_settings.h"
#include "prompt/prompt.h"

namespace sheafwork {

/// Appends `results` and a line end to the journal file. Refused with a
/// message (296 when the journal is off or has no name, 198 when there are no
/// results) and false.
bool AppendResultsToJournal(const LogSettings& settings, const std::string& results,
                            Prompt& prompt);

/// Writes `results` and a line end to `path` in Windows-1252, replacing the
/// file. False with the system's reason in `error` when it cannot.
bool WriteResultsFile(const std::string& path, const std::string& results, std::string& error);

/// Asks for a file name (title 199, filter 200) and writes the results there.
/// Refused with message 198 when there are no results; a write failure shows
/// message 197 with the reason. False when nothing was written.
bool SaveResultsAs(const std::string& results, Prompt& prompt);

}  // namespace sheafwork
