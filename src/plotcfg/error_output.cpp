#include "plotcfg/error_output.h"

#include <string>

#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {

void ErrorOutput::Report(std::string_view logLine, std::string_view boxText) const {
  if (log_ != nullptr) {
    log_->WriteLogLine(logLine);
  } else if (prompt_ != nullptr) {
    prompt_->Ask({std::string(boxText), LoadResourceText(ids::kErrorTitle), PromptIcon::Critical,
                  PromptButtons::Ok});
  }
}

}  // namespace sheafwork
