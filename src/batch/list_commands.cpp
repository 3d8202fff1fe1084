#include "batch/list_commands.h"

#include <algorithm>
#include <vector>

#include "batch/list_file.h"
#include "batch/list_value.h"
#include "batch/session.h"
#include "log/paths.h"
#include "prompt/prompt.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"

namespace sheafwork {
namespace {

PromptAnswer Ask(Prompt& prompt, int textId, int titleId, PromptIcon icon, PromptButtons buttons) {
  return prompt.Ask({LoadResourceText(textId), LoadResourceText(titleId), icon, buttons});
}

void ShowFailure(Prompt& prompt, ListFileStatus status) {
  const int id = MessageIdFor(status);
  if (id == 0) return;
  const PromptIcon icon = status == ListFileStatus::WrongFirstLine ? PromptIcon::Question
                          : status == ListFileStatus::EmptyList    ? PromptIcon::Information
                                                                   : PromptIcon::Critical;
  const int title = icon == PromptIcon::Critical ? ids::kErrorTitle : ids::kAppTitle;
  Ask(prompt, id, title, icon, PromptButtons::Ok);
}

// A name from the open dialogs counts only when it ends in "qx3".
std::optional<std::string> AskListFileToOpen(Prompt& prompt, int titleId) {
  FileDialogRequest request;
  request.title = LoadResourceText(titleId);
  request.filter = LoadResourceText(ids::kListFilter);
  request.mustExist = true;
  auto name = prompt.OpenFileName(request);
  if (!name || !EndsWithIgnoreCase(*name, "qx3")) return std::nullopt;
  return name;
}

}  // namespace

std::string DrawingRowProblem(const Session& session, std::string_view fullPath) {
  if (FolderFromPath(fullPath).empty() || FileNameFromPath(fullPath).empty()) {
    return LoadResourceText(ids::kFileNameNotValid);
  }
  const ValueFault fault = CheckListValue(ListField::Drawing, fullPath);
  if (IsRefused(fault)) return ValueFaultMessage(ListField::Drawing, fault);
  if (session.List.EntryCount() >= BatchList::kMaxEntries) {
    return LoadResourceText(ids::kListTooManyEntries);
  }
  return {};
}

BatchEntry* AddDrawingToList(Session& session, std::string_view fullPath) {
  if (!DrawingRowProblem(session, fullPath).empty()) return nullptr;
  const std::string folder = FolderFromPath(fullPath);
  const std::string name = FileNameFromPath(fullPath);
  BatchEntry& entry = session.List.Append();
  entry.FileName = folder + name;
  session.ListModified = true;
  if (session.View) session.View->EntryAppended(session.List.EntryCount());
  return &entry;
}

namespace {

// The positions of `selected` that are in the list, in ascending order,
// each once.
std::vector<int> RowsInList(const Session& session, std::span<const int> selected) {
  std::vector<int> rows;
  for (int n : selected) {
    if (n >= 1 && n <= session.List.EntryCount()) rows.push_back(n);
  }
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

}  // namespace

int RemoveSelectedEntries(Session& session, Prompt& prompt, std::span<const int> selected) {
  const std::vector<int> rows = RowsInList(session, selected);
  if (rows.size() > 1 && Ask(prompt, ids::kConfirmRemove, ids::kConfirmRemoveTitle,
                             PromptIcon::Question, PromptButtons::YesNo) != PromptAnswer::Yes) {
    return 0;
  }
  return RemoveEntries(session, rows);
}

int RemoveEntries(Session& session, std::span<const int> selected) {
  const std::vector<int> rows = RowsInList(session, selected);
  for (auto it = rows.rbegin(); it != rows.rend(); ++it) {
    session.List.Remove(*it);
    session.ListModified = true;
    if (session.View) session.View->EntryRemoved(*it);
  }
  return static_cast<int>(rows.size());
}

bool MoveEntry(Session& session, int from, int to) {
  const int count = session.List.EntryCount();
  if (from < 1 || from > count || to < 1 || to > count) return false;
  if (from == to) return true;
  BatchEntry moved = session.List.Entry(from);
  const int step = from < to ? 1 : -1;
  for (int n = from; n != to; n += step) session.List.Entry(n) = session.List.Entry(n + step);
  session.List.Entry(to) = std::move(moved);
  session.ReloadMainListview(true, false);
  return true;
}

bool OfferToSaveList(Session& session, Prompt& prompt) {
  if (session.List.Empty()) return true;
  switch (Ask(prompt, ids::kSaveCurrentList, ids::kAppTitle, PromptIcon::Information,
              PromptButtons::YesNoCancel)) {
    case PromptAnswer::Yes:
      return SaveList(session, prompt);
    case PromptAnswer::No:
      return true;
    case PromptAnswer::Ok:
    case PromptAnswer::Cancel:
      return false;
  }
  return false;
}

bool NewList(Session& session, Prompt& prompt) {
  if (!OfferToSaveList(session, prompt)) return false;
  session.ResetLogSettings();
  session.Caption = Session::CaptionFor({});
  session.ReloadMainListview(false, false);
  return true;
}

bool OpenList(Session& session, Prompt& prompt) {
  if (!OfferToSaveList(session, prompt)) return false;
  const auto name = AskListFileToOpen(prompt, ids::kOpenListTitle);
  return name && LoadListFile(session, prompt, *name);
}

bool LoadListFile(Session& session, Prompt& prompt, const std::string& path) {
  const ListFileResult result = ReadListFile(session, path, false);
  if (result.status == ListFileStatus::WrongFirstLine) {
    ShowFailure(prompt, result.status);
    return false;
  }
  if (!result.ok()) {
    // What was read before the fault stays in the list.
    session.ReloadMainListview(true, false);
    ShowFailure(prompt, result.status);
    return false;
  }
  session.Caption = Session::CaptionFor(path);
  session.ReloadMainListview(false, false);
  return true;
}

bool AppendList(Session& session, Prompt& prompt) {
  const auto name = AskListFileToOpen(prompt, ids::kAppendListTitle);
  return name && AppendListFile(session, prompt, *name);
}

bool AppendListFile(Session& session, Prompt& prompt, const std::string& path) {
  const ListFileResult result = ReadListFile(session, path, true);
  if (result.status != ListFileStatus::WrongFirstLine) session.ReloadMainListview(true, false);
  ShowFailure(prompt, result.status);
  return result.ok();
}

bool SaveList(Session& session, Prompt& prompt) {
  FileDialogRequest request;
  request.title = LoadResourceText(ids::kSaveListTitle);
  request.filter = LoadResourceText(ids::kListFilter);
  request.fileName = session.ListName;
  request.confirmOverwrite = true;
  while (true) {
    const auto name = prompt.SaveFileName(request);
    if (!name) return false;
    const std::string base = StripExtension(*name);
    if (!base.empty() && IsValidFileName(*name)) {
      return SaveListFile(session, prompt, base + ".qx3");
    }
    Ask(prompt, ids::kFileNameNotValid, ids::kErrorTitle, PromptIcon::Exclamation,
        PromptButtons::Ok);
    request.fileName.clear();
  }
}

bool SaveListFile(Session& session, Prompt& prompt, const std::string& path) {
  const ListFileResult result = WriteListFile(session, path);
  ShowFailure(prompt, result.status);
  return result.ok();
}

}  // namespace sheafwork
