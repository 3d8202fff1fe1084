#pragma once
// Running the built programs from an end-to-end test, and reading what they
// leave behind.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "fakes/log_lines.h"
#include "fakes/shell.h"
#include "fakes/temp_folder.h"

namespace sheafwork::e2e {

struct ProgramRun {
  int status = -1;  ///< exit status; -1 when the program did not exit normally
  std::string out;
  std::string err;
};

/// Runs `sheafwork` (or the program at `exe`, a copy of the built one) with
/// `args` (words already quoted for the shell) in a setting like a server's:
/// no display, no input, the per-user data folder inside `folder`; `env` adds
/// words for env(1) ("TMPDIR=/x", "-u NAME").
ProgramRun Sheafwork(const std::string& args, const testing::TempFolder& folder,
                     const std::string& env = "", const std::string& exe = SHEAFWORK_EXE);

using testing::Quoted;

inline double Points(double mm) { return mm / 25.4 * 72; }

/// A sheet's width and height in millimetres.
using SheetSize = std::pair<double, double>;

/// Expects the PDF file `file` to have one page of each size, in order.
void ExpectPages(const std::string& file, const std::vector<SheetSize>& sheets);

/// The file a plot to `stem` produced: `stem` itself or `stem` with ".pdf"
/// added; empty when neither exists.
std::string PlotOutput(const std::string& stem);

/// A test over copies of the example drawings (in `folder_`/plans), with a
/// list file to build with `sheafwork list` and a folder for the plots.
class ExampleListTest : public ::testing::Test {
 protected:
  ExampleListTest();

  std::string Plan(const std::string& name) const { return plans_ + "/" + name; }
  std::string Out(const std::string& name) const { return out_ + "/" + name; }
  /// Copies tests/data/`relative` beside the example drawings and returns
  /// the copy's path: a plot writes files beside its drawing, and the source
  /// tree is not the place for them.
  std::string Fixture(const std::string& relative) const;
  /// Runs `sheafwork list <args>`, which must succeed.
  void List(const std::string& args);
  /// Runs `sheafwork <command>` on the list, `more` after it (each word after
  /// a blank), as Sheafwork does.
  ProgramRun RunList(const std::string& command, const std::string& more = "",
                     const std::string& env = "", const std::string& exe = SHEAFWORK_EXE) {
    return Sheafwork(command + " " + Quoted(list_) + more, folder_, env, exe);
  }
  /// Turns the list's error log on, into `file`, written afresh by each run.
  void SetErrorLog(const std::string& file) {
    List("set " + Quoted(list_) + " --error-log on --error-file " + Quoted(file) +
         " --error-mode overwrite");
  }
  /// Adds a row for `drawing` to the list, with the `sheafwork list add`
  /// options in `options` (each after a blank).
  void AddRow(const std::string& drawing, const std::string& options = "") {
    List("add " + Quoted(list_) + " " + Quoted(drawing) + options);
  }

  testing::TempFolder folder_;
  std::string plans_, out_, list_;
};

}  // namespace sheafwork::e2e
