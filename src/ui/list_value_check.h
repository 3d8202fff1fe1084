#pragma once
// The dialogs' side of the list's value check: a value the list file cannot
// hold is refused with a message naming the field, and the dialog stays open.

#include <string_view>

#include "batch/list_value.h"

class QWidget;

namespace sheafwork {
class Prompt;
}

namespace sheafwork::ui {

/// Whether `value` may be stored in `field`. A refused value is named in a
/// message and `focus` (when given) takes the focus; a shown text that keeps
/// "?" for characters the list file cannot hold is accepted after a warning.
bool AcceptListValue(Prompt& prompt, ListField field, std::string_view value,
                     QWidget* focus = nullptr);

}  // namespace sheafwork::ui
