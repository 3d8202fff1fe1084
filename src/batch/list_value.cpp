#include "batch/list_value.h"

#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/windows1252.h"

namespace sheafwork {

namespace {

// Texts that are only shown; everything else is looked up again.
bool IsShownOnly(ListField field) {
  return field == ListField::JournalHeader || field == ListField::JournalComment ||
         field == ListField::ErrorHeader;
}

}  // namespace

ValueFault CheckListValue(ListField field, std::string_view value) {
  if (value.find_first_of("\r\n") != std::string_view::npos) return ValueFault::LineBreak;
  if (value.find('"') != std::string_view::npos) return ValueFault::Quote;
  if (Utf8ToWindows1252(value).replaced == 0) return ValueFault::None;
  return IsShownOnly(field) ? ValueFault::KeptWithMarks : ValueFault::NotWindows1252;
}

std::string ListFieldName(ListField field) {
  switch (field) {
    case ListField::Drawing:
      return LoadResourceText(ids::kFieldDrawing);
    case ListField::Layout:
      return LoadResourceText(ids::kFieldLayout);
    case ListField::PageSetup:
      return LoadResourceText(ids::kFieldPageSetup);
    case ListField::Device:
      return LoadResourceText(ids::kFieldDevice);
    case ListField::Layers:
      return LoadResourceText(ids::kSettingsLayersTab);
    case ListField::PlotArea:
      return LoadResourceText(ids::kSettingsAreaGroup);
    case ListField::PlotScale:
      return LoadResourceText(ids::kSettingsScaleGroup);
    case ListField::PlotFile:
      return LoadResourceText(ids::kFieldPlotFile);
    case ListField::JournalFile:
      return LoadResourceText(ids::kFieldJournalFile);
    case ListField::JournalHeader:
      return LoadResourceText(ids::kFieldJournalHeader);
    case ListField::JournalComment:
      return LoadResourceText(ids::kFieldJournalComment);
    case ListField::ErrorFile:
      return LoadResourceText(ids::kFieldErrorFile);
    case ListField::ErrorHeader:
      return LoadResourceText(ids::kFieldErrorHeader);
  }
  return {};
}

std::string ValueFaultMessage(ListField field, ValueFault fault) {
  int reason = 0;
  switch (fault) {
    case ValueFault::None:
      return {};
    case ValueFault::LineBreak:
      reason = ids::kValueHasLineBreak;
      break;
    case ValueFault::Quote:
      reason = ids::kValueHasQuote;
      break;
    case ValueFault::NotWindows1252:
      reason = ids::kValueNotWindows1252;
      break;
    case ValueFault::KeptWithMarks:
      reason = ids::kValueKeptWithMarks;
      break;
  }
  return ListFieldName(field) + " : " + LoadResourceText(reason);
}

}  // namespace sheafwork
