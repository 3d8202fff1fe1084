#pragma once
// The `sheafwork list ...` commands: build, edit and inspect list files from
// scripts. Each reads what it needs, changes it in memory and writes the list
// back only when everything succeeded.

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "app/command_io.h"
#include "app/row_options.h"

namespace sheafwork {

struct ListShowOptions {
  std::string list;
  bool json = false;
};

struct ListNewOptions {
  std::string list;
  std::vector<std::string> drawings;
  bool force = false;  ///< replace an existing file
};

struct ListAddOptions {
  std::string list;
  std::vector<std::string> drawings;
  EntryFieldOptions fields;
};

/// Changes the fields the options give on one row.
struct ListEditOptions {
  std::string list;
  int row = 0;  ///< from 1
  EntryFieldOptions fields;
};

struct ListRemoveOptions {
  std::string list;
  std::vector<int> rows;  ///< from 1
};

struct ListMoveOptions {
  std::string list;
  int from = 0;  ///< from 1
  int to = 0;
};

struct ListAppendOptions {
  std::string list;
  std::string other;
};

struct ListSetOptions {
  std::string list;
  std::optional<bool> journalOn;
  std::optional<std::string> journalFile;
  std::optional<std::string> journalHeader;
  std::optional<std::string> journalComment;
  std::optional<bool> journalAppend;
  std::optional<bool> errorOn;
  std::optional<std::string> errorFile;
  std::optional<std::string> errorHeader;
  std::optional<bool> errorAppend;
};

/// Appends a row for each drawing with the fields `fields` give; false
/// after reporting a value the rows cannot hold (before any row is added) or
/// a path without a folder or a file name.
bool AddDrawings(Session& session, const std::vector<std::string>& drawings,
                 const EntryFieldOptions& fields, const CommandIo& io, int& status);

int RunListShow(const ListShowOptions& options, const CommandIo& io);
int RunListNew(const ListNewOptions& options, const CommandIo& io);
int RunListAdd(const ListAddOptions& options, const CommandIo& io);
int RunListEdit(const ListEditOptions& options, const CommandIo& io);
int RunListRemove(const ListRemoveOptions& options, const CommandIo& io);
int RunListMove(const ListMoveOptions& options, const CommandIo& io);
int RunListAppend(const ListAppendOptions& options, const CommandIo& io);
int RunListSet(const ListSetOptions& options, const CommandIo& io);

}  // namespace sheafwork
