#pragma once
// `sheafwork plot` and `sheafwork check`: a plot run and a plot test over a
// list file, in a host chosen from the program's hosts.

#include <optional>
#include <string>

#include "app/command_io.h"

namespace sheafwork {

struct PlotOptions {
  std::string list;
  std::string host;  ///< empty: the default host
  /// Also gather every sheet plotted into this one PDF file (embedded host
  /// only).
  std::optional<std::string> combine;
};

struct CheckOptions {
  std::string list;
  std::string host;
  std::optional<std::string> save;  ///< also write the results to this file
  bool appendJournal = false;       ///< also append the results to the list's journal
};

/// Plots every row; progress and the summary on stderr. 0 when every row was
/// plotted, 1 when a row failed or the run ended early, 2 for unusable input
/// or no usable host.
int RunPlot(const PlotOptions& options, const CommandIo& io);

/// Runs the plot test and prints the results on stdout. 0 when it found no
/// error, 1 when it did (or the results could not be saved), 2 for unusable
/// input or no usable host.
int RunCheck(const CheckOptions& options, const CommandIo& io);

}  // namespace sheafwork
