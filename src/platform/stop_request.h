#pragma once
// The one "stop requested" state of the program: a run that is asked to stop
// ends after the work under way, with its summary and complete logs.
//
// Set by the first Ctrl+C, SIGTERM or SIGHUP while `StopSignals` is in place
// (a run on the command line), or by RequestStop (a Cancel button). Read by
// whatever can stop between two pieces of work, from any thread: the plot run
// between sheets, a sheet between two of its entities.

namespace sheafwork {

/// True once a stop was asked for and not cleared since.
bool StopRequested();
/// Asks the work under way to stop.
void RequestStop();
/// Forgets a stop asked for: a new run begins.
void ClearStopRequest();

/// From construction to destruction, SIGINT, SIGTERM and SIGHUP request a stop
/// the first time (writing `note` to stderr, once), and end the program the
/// second time, as they would have without it. Clears the request on both
/// ends. One at a time.
class StopSignals {
 public:
  explicit StopSignals(const char* note);
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;
};

}  // namespace sheafwork
