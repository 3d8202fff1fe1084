#include "ui/list_value_check.h"

#include <QWidget>

#include "prompt/prompt.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork::ui {

bool AcceptListValue(Prompt& prompt, ListField field, std::string_view value, QWidget* focus) {
  const ValueFault fault = CheckListValue(field, value);
  if (fault == ValueFault::None) return true;
  const bool refused = IsRefused(fault);
  prompt.Ask({ValueFaultMessage(field, fault),
              LoadResourceText(refused ? ids::kInvalidFileTitle : ids::kAppTitle),
              refused ? PromptIcon::Exclamation : PromptIcon::Information, PromptButtons::Ok});
  if (refused && focus) focus->setFocus();
  return !refused;
}

}  // namespace sheafwork::ui
