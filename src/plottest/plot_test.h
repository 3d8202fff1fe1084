#pragma once
// The plot test: a dry run over the list that reports, as one text, what a
// plot run would stumble on.

#include <functional>
#include <string>

#include "batch/session.h"
#include "host/host_session.h"
#include "platform/clock.h"
#include "platform/fonts.h"
#include "platform/printers.h"

namespace sheafwork {

/// What the plot test needs from the system besides the host.
struct PlotTestServices {
  PrinterCatalog& printers;
  FontFolders& fonts;
  Clock clock = LocalTimeNow;
  /// Told before each row is checked (row from 1, row count, drawing); may be
  /// empty.
  std::function<void(int row, int count, const std::string& drawing)> progress;
};

/// Opens every drawing of the list without plotting and returns the results
/// text, every line ended by CR LF. The host's system variables and log-file
/// options are put back before it returns.
std::string RunPlotTest(Session& session, HostSession& host, const PlotTestServices& services);

}  // namespace sheafwork
