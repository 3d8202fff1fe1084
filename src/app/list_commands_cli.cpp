#include "app/list_commands_cli.h"

#include <filesystem>
#include <initializer_list>
#include <optional>
#include <system_error>

#include "app/command_io.h"
#include "app/list_report.h"
#include "batch/list_commands.h"
#include "batch/list_file.h"
#include "batch/list_value.h"
#include "batch/session.h"
#include "log/paths.h"
#include "log/wide_path.h"
#include "platform/code_page_path.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

namespace fs = std::filesystem;

int Save(Session& session, const std::string& path, const CommandIo& io) {
  const ListFileResult result = WriteListFile(session, path);
  if (!result.ok()) return FailWith(io, path, result);
  return kExitOk;
}

// A value given on the command line for a field of the list.
struct GivenValue {
  ListField field;
  const std::optional<std::string>& value;
};

// Checks the values given before anything is changed: false after reporting
// the first one a list file cannot hold; a shown text that loses characters
// to "?" is named on stderr and kept.
bool CheckGivenValues(std::initializer_list<GivenValue> values, const std::string& list,
                      const CommandIo& io, int& status) {
  for (const GivenValue& given : values) {
    if (!given.value) continue;
    const ValueFault fault = CheckListValue(given.field, *given.value);
    if (IsRefused(fault)) {
      status = Fail(io, list, ValueFaultMessage(given.field, fault));
      return false;
    }
    if (fault != ValueFault::None) {
      io.err << "sheafwork: " << list << ": " << ValueFaultMessage(given.field, fault) << '\n';
    }
  }
  return true;
}

// Tells on stderr which drawings do not exist: their rows are added all the
// same, since the drawing may be there when the list is plotted.
void WarnMissingDrawings(const std::vector<std::string>& drawings, const CommandIo& io) {
  for (const std::string& drawing : drawings) {
    std::error_code ec;
    if (!fs::exists(FsPath(FullPath(drawing)), ec)) {
      io.err << "sheafwork: " << drawing << ": " << LoadResourceText(ids::kCliDrawingMissing)
             << '\n';
    }
  }
}

// False after reporting a row number outside the list.
bool RowInList(const Session& session, int row, const std::string& path, const CommandIo& io,
               int& status) {
  const int count = session.List.EntryCount();
  if (row >= 1 && row <= count) return true;
  status = Fail(io, path,
                std::to_string(row) + " : " + LoadResourceText(ids::kCliNoSuchRow) +
                    std::to_string(count) + ")");
  return false;
}

bool ValidListName(const std::string& path, const CommandIo& io, int& status) {
  if (IsValidFileName(path)) return true;
  status = Fail(io, path, LoadResourceText(ids::kFileNameNotValid));
  return false;
}

// Reads the list, lets `change` work on it (false after reporting why it
// cannot) and writes it back.
template <typename Change>
int ChangeList(const std::string& list, const CommandIo& io, Change change) {
  const std::string path = FullPath(list);
  Session session(io.env.defaultLogFolder);
  int status = kExitOk;
  if (!LoadList(session, path, io, status) || !change(session, path, status)) return status;
  return Save(session, path, io);
}

}  // namespace

bool AddDrawings(Session& session, const std::vector<std::string>& drawings,
                 const EntryFieldOptions& fields, const CommandIo& io, int& status) {
  // The values are checked before any row is added.
  BatchEntry checked;
  if (std::string problem = ApplyRowOptions(fields, checked); !problem.empty()) {
    status = Refuse(io, problem);
    return false;
  }
  for (const std::string& drawing : drawings) {
    const std::string full = CodePagePath(FullPath(drawing));
    if (const std::string problem = DrawingRowProblem(session, full); !problem.empty()) {
      status = Fail(io, drawing, problem);
      return false;
    }
    BatchEntry* entry = AddDrawingToList(session, full);
    if (!entry) {
      status = Fail(io, drawing, LoadResourceText(ids::kFileNameNotValid));
      return false;
    }
    ApplyRowOptions(fields, *entry);
  }
  return true;
}

int RunListShow(const ListShowOptions& options, const CommandIo& io) {
  Session session(io.env.defaultLogFolder);
  int status = kExitOk;
  if (!LoadList(session, options.list, io, status)) return status;
  io.out << (options.json ? ListToJson(session) : ListToText(session));
  io.out.flush();
  return io.out ? kExitOk : kExitFailed;
}

int RunListNew(const ListNewOptions& options, const CommandIo& io) {
  const std::string path = FullPath(options.list);
  int status = kExitOk;
  if (!ValidListName(path, io, status)) return status;
  if (options.drawings.empty()) return Fail(io, path, LoadResourceText(ids::kEmptyList));
  std::error_code ec;
  if (!options.force && fs::exists(FsPath(path), ec)) {
    return Fail(io, path, "le fichier existe déjà ; --force le remplace");
  }
  Session session(io.env.defaultLogFolder);
  if (!AddDrawings(session, options.drawings, {}, io, status)) return status;
  WarnMissingDrawings(options.drawings, io);
  return Save(session, path, io);
}

int RunListAdd(const ListAddOptions& options, const CommandIo& io) {
  const std::string path = FullPath(options.list);
  int status = kExitOk;
  if (!ValidListName(path, io, status)) return status;
  Session session(io.env.defaultLogFolder);
  std::error_code ec;
  if (fs::exists(FsPath(path), ec) && !LoadList(session, path, io, status)) return status;
  if (!AddDrawings(session, options.drawings, options.fields, io, status)) return status;
  WarnMissingDrawings(options.drawings, io);
  return Save(session, path, io);
}

int RunListEdit(const ListEditOptions& options, const CommandIo& io) {
  return ChangeList(options.list, io, [&](Session& session, const std::string& path, int& status) {
    if (!RowInList(session, options.row, path, io, status)) return false;
    std::string problem = options.fields.Any()
                              ? ApplyRowOptions(options.fields, session.List.Entry(options.row))
                              : LoadResourceText(ids::kCliNothingToEdit);
    if (problem.empty()) return true;
    status = Refuse(io, problem);
    return false;
  });
}

int RunListRemove(const ListRemoveOptions& options, const CommandIo& io) {
  return ChangeList(options.list, io, [&](Session& session, const std::string& path, int& status) {
    for (int row : options.rows) {
      if (!RowInList(session, row, path, io, status)) return false;
    }
    RemoveEntries(session, options.rows);
    return true;
  });
}

int RunListMove(const ListMoveOptions& options, const CommandIo& io) {
  return ChangeList(options.list, io, [&](Session& session, const std::string& path, int& status) {
    return RowInList(session, options.from, path, io, status) &&
           RowInList(session, options.to, path, io, status) &&
           MoveEntry(session, options.from, options.to);
  });
}

int RunListAppend(const ListAppendOptions& options, const CommandIo& io) {
  const std::string path = FullPath(options.list);
  Session session(io.env.defaultLogFolder);
  int status = kExitOk;
  if (!LoadList(session, path, io, status)) return status;
  const ListFileResult appended = ReadListFile(session, options.other, true);
  if (!appended.ok()) return FailWith(io, options.other, appended);
  return Save(session, path, io);
}

int RunListSet(const ListSetOptions& given, const CommandIo& io) {
  ListSetOptions options = given;
  for (std::optional<std::string>* file : {&options.journalFile, &options.errorFile}) {
    if (*file) *file = CodePagePath(**file);
  }
  const std::string path = FullPath(options.list);
  Session session(io.env.defaultLogFolder);
  int status = kExitOk;
  if (!CheckGivenValues({{ListField::JournalFile, options.journalFile},
                         {ListField::JournalHeader, options.journalHeader},
                         {ListField::JournalComment, options.journalComment},
                         {ListField::ErrorFile, options.errorFile},
                         {ListField::ErrorHeader, options.errorHeader}},
                        path, io, status)) {
    return status;
  }
  if (!LoadList(session, path, io, status)) return status;
  LogSettings& log = session.Log;
  if (options.journalOn) log.JournalLogOn = *options.journalOn;
  if (options.journalFile) log.JournalLogFileName = *options.journalFile;
  if (options.journalHeader) log.JournalHeader = *options.journalHeader;
  if (options.journalComment) log.JournalUserComment = *options.journalComment;
  if (options.journalAppend) log.JournalAppend = *options.journalAppend;
  if (options.errorOn) log.ErrorLogOn = *options.errorOn;
  if (options.errorFile) log.ErrorLogFileName = *options.errorFile;
  if (options.errorHeader) log.ErrorHeader = *options.errorHeader;
  if (options.errorAppend) log.ErrorAppend = *options.errorAppend;
  // The same checks as the logging dialog: a name is tested only when its log
  // is on, the journal's first.
  if (log.JournalLogOn && !IsValidFileName(log.JournalLogFileName)) {
    return Fail(io, path, LoadResourceText(ids::kJournalNameNotValid));
  }
  if (log.ErrorLogOn && !IsValidFileName(log.ErrorLogFileName)) {
    return Fail(io, path, LoadResourceText(ids::kErrorLogNameNotValid));
  }
  return Save(session, path, io);
}

}  // namespace sheafwork
