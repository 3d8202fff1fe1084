#pragma once
// Where a setup routine reports a host error: a line in the run's error log,
// a message box, or nowhere.

#include <string_view>

#include "log/log_file.h"
#include "prompt/prompt.h"

namespace sheafwork {

class ErrorOutput {
 public:
  /// Lines go to `errorLog` (nothing is written while it is closed).
  static ErrorOutput ToLog(LogFile& errorLog) { return ErrorOutput(&errorLog, nullptr); }
  /// A critical message box titled with the error title shows the text.
  static ErrorOutput ToPrompt(Prompt& prompt) { return ErrorOutput(nullptr, &prompt); }
  static ErrorOutput Nowhere() { return ErrorOutput(nullptr, nullptr); }

  /// Writes or shows `text`: a log line, or a box (for a box the caller
  /// passes the host's own description).
  void Report(std::string_view logLine, std::string_view boxText) const;

 private:
  ErrorOutput(LogFile* log, Prompt* prompt) : log_(log), prompt_(prompt) {}
  LogFile* log_;
  Prompt* prompt_;
};

}  // namespace sheafwork
