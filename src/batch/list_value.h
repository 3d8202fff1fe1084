#pragma once
// Whether a value can be stored in a list file, and why not. The file is
// Windows-1252 lines of double-quoted items without escapes: no value can
// hold a line break or a double quote, and a path or a name that must be
// found again can hold only characters of that code page. Texts that are
// only shown (the logs' headers, the user comment) may lose such characters
// to "?", with a warning. Every place that sets a value of a list from
// outside (the list commands, the dialogs) asks here first.

#include <string>
#include <string_view>

namespace sheafwork {

/// The values of a list that a person sets.
enum class ListField {
  Drawing,
  Layout,
  PageSetup,
  Device,
  Layers,
  PlotArea,
  PlotScale,
  PlotFile,
  JournalFile,
  JournalHeader,
  JournalComment,
  ErrorFile,
  ErrorHeader,
};

enum class ValueFault {
  None,
  LineBreak,       ///< CR or LF: would end the line
  Quote,           ///< a double quote: would end the item
  NotWindows1252,  ///< a path or a name the code page cannot hold (or not UTF-8)
  KeptWithMarks,   ///< a shown text the code page cannot hold: stored with "?"
};

/// The fault of `value` for `field`; None when it is stored as it is.
ValueFault CheckListValue(ListField field, std::string_view value);

/// Whether the value must be refused (every fault but KeptWithMarks).
inline bool IsRefused(ValueFault fault) {
  return fault != ValueFault::None && fault != ValueFault::KeptWithMarks;
}

/// The field as the messages name it.
std::string ListFieldName(ListField field);

/// "<field> : <reason>", in French; empty for None.
std::string ValueFaultMessage(ListField field, ValueFault fault);

}  // namespace sheafwork
