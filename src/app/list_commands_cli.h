#pragma once
// The `sheafwork list ...` commands: build, edit and inspect list files from
// scripts. Each reads what it needs, changes it in memory and writes the list
// back only when everything succeeded.

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "app/command_io.h"

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

/// Values for the fields of each added row; an option not given leaves the
/// field at its default (empty or false).
struct EntryFieldOptions {
  std::optional<std::string> layout;
  std::optional<std::string> setup;
  std::optional<std::string> device;
  std::optional<std::string> layers;
  std::optional<std::string> area;
  std::optional<std::string> scale;
  std::optional<std::string> plotFile;
  bool customScale = false;
  bool scaleLineweights = false;
};

struct ListAddOptions {
  std::string list;
  std::vector<std::string> drawings;
  EntryFieldOptions fields;
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

int RunListShow(const ListShowOptions& options, const CommandIo& io);
int RunListNew(const ListNewOptions& options, const CommandIo& io);
int RunListAdd(const ListAddOptions& options, const CommandIo& io);
int RunListAppend(const ListAppendOptions& options, const CommandIo& io);
int RunListSet(const ListSetOptions& options, const CommandIo& io);

}  // namespace sheafwork
