#pragma once
// The settings of the journal and the error log, kept in the list file.

#include <string>
#include <string_view>

namespace sheafwork {

struct LogSettings {
  bool JournalLogOn = true;
  std::string JournalLogFileName;
  std::string JournalHeader;
  std::string JournalUserComment;
  bool JournalAppend = false;
  bool ErrorLogOn = true;
  std::string ErrorLogFileName;
  std::string ErrorHeader;
  bool ErrorAppend = false;

  bool operator==(const LogSettings&) const = default;
};

/// The defaults: both logs on, overwrite mode, no headers, and the files
/// "QXJOURNL.LOG" and "QXERROR.LOG" in `folder`, joined by plain concatenation
/// with the native separator (no test for a separator already present).
LogSettings DefaultLogSettings(std::string_view folder);

}  // namespace sheafwork
