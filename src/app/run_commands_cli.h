#pragma once
// `sheafwork plot` and `sheafwork check`: a plot run and a plot test over a
// list file, in a host chosen from the program's hosts.

#include <optional>
#include <string>
#include <vector>

#include "app/command_io.h"
#include "app/row_options.h"

namespace sheafwork {

struct PlotOptions {
  /// One list file ("-": standard input), or drawings (.dxf, .dwg, .dwt),
  /// each a row with the fields `fields` give.
  std::vector<std::string> inputs;
  std::string host;  ///< empty: the default host
  /// The COM host's server by its ProgID; empty: SHEAFWORK_PROGID, else the
  /// host's own.
  std::string progId;
  /// Also gather every sheet plotted into this one PDF file (embedded host
  /// only).
  std::optional<std::string> combine;
  /// Every sheet written into this folder as "<drawing>-<layout>.<ext>"
  /// (embedded host only); created when missing.
  std::optional<std::string> outputDir;
  /// The plot style table (.ctb) every sheet plots with.
  std::optional<std::string> plotStyle;
  bool quiet = false;  ///< only failures and the summary
  /// "K/N": plot only shard K of N of the list's rows (plotrun/shard.h),
  /// with the shard's own logs and record.
  std::optional<std::string> shard;
  /// How many worker processes plot the rows (embedded host only); 1: the
  /// run plots them itself; 0: one per core.
  int jobs = 1;
  /// The folder the processes of a parallel run keep DWG conversions in.
  std::string conversionFolder;
  EntryFieldOptions fields;
};

struct CheckOptions {
  std::string list;
  std::string host;
  std::string progId;               ///< as PlotOptions::progId
  std::optional<std::string> save;  ///< also write the results to this file
  bool appendJournal = false;       ///< also append the results to the list's journal
};

/// True for the name of a drawing the hosts open (.dxf, .dwg, .dwt).
bool IsDrawingName(const std::string& name);

/// Plots every row; progress and the summary on stderr. 0 when every row was
/// plotted, 1 when a row failed or the run ended early, 2 for unusable input
/// or no usable host.
int RunPlot(const PlotOptions& options, const CommandIo& io);

/// What a run did, as its summary says it: "N ligne(s) tracée(s), M en
/// échec".
std::string RowsSummary(int plotted, int failed);
/// A worker of a parallel run (`args` after the command's name: the run's
/// plot style table and conversion folder): reads the list and its rows from
/// descriptor 3 and writes their records to descriptor 4. Returns the exit
/// status.
int RunPlotWorker(const std::vector<std::string>& args, const CommandIo& io);

/// Runs the plot test and prints the results on stdout. 0 when it found no
/// error, 1 when it did (or the results could not be saved), 2 for unusable
/// input or no usable host.
int RunCheck(const CheckOptions& options, const CommandIo& io);

}  // namespace sheafwork
