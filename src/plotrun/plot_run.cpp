#include "plotrun/plot_run.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <deque>
#include <map>
#include <memory>
#include <new>

#include "batch/list_file.h"
#include "batch/list_row.h"
#include "host/error.h"
#include "log/log_file.h"
#include "log/paths.h"
#include "plotcfg/layout_setup.h"
#include "plotcfg/page_setup.h"
#include "plotrun/plot_layout.h"
#include "plotrun/row_record.h"
#include "plotrun/worker_process.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {

namespace {

std::string TwoDigits(int value, const char* separator, const char* separatorWithZero) {
  return (value < 10 ? separatorWithZero : separator) + std::to_string(value);
}

int SecondsOfDay(const LocalTime& t) { return t.hour * 3600 + t.minute * 60 + t.second; }

/// One run: its logs, its host, and what it has done so far.
class Run {
 public:
  Run(Session& session, HostSession& host, const RunServices& services)
      : session_(session),
        host_(host),
        services_(services),
        context_{host,
                 logs_.errorLog,
                 PaperChangeReport{logs_.errorLog, session.Log, services.prompt},
                 record_,
                 services.clock ? services.clock : Clock(LocalTimeNow),
                 services.plotStyle} {}

  RunResult Go();
  /// A worker's run: see ServeRows.
  bool Serve(std::int16_t totalPlots, RowSource& rows, int recordsFd, RowRecorder& recorder);

 private:
  void PlotAll();
  void PlotRowsInWorkers(int count);
  /// Writes what a worker did with a row as if this run had done it.
  void Replay(const RowRecord& record);
  RowRecord LostRow(int row, const std::string& reason) const;
  void ReportLogs();
  bool CountPlots();
  void PlotRow(int row);
  void PlotRowOrFail(int row);
  bool ReadExternalSetup(const NpsInfo& nps);
  void PlotAllLayouts(int row, const BatchEntry& entry, bool planFound);
  void OpenFailed(const OpenResult& open, const std::string& fileName);
  void MarkEntryFailed(int row, const BatchEntry& entry);
  /// The plot of the row failed: marks it failed, or cancelled when the
  /// user stopped the run while it was under way. False once cancelled.
  bool MarkEntryFailedOrCancelled(int row, const BatchEntry& entry);
  void MarkEntryCancelled(int row, const BatchEntry& entry);
  void MarkEntryPlotted(int row, const BatchEntry& entry, const std::string& elapsed);
  void LogHostError(const host::Error& error);
  void SheetPlotted(int row) {
    if (services_.observer) services_.observer->SheetPlotted(row);
  }
  bool StillGoing(host::Plot& plot);
  bool Plots(int row) const { return !services_.plotsRow || services_.plotsRow(row); }

  Session& session_;
  HostSession& host_;
  const RunServices& services_;
  RunLogs logs_;
  PlotSetupRecord record_;
  LayoutPlotContext context_;
  RunResult result_;
};

RunResult Run::Go() {
  if (!OpenLogFiles(session_.Log, logs_)) {
    result_.endedEarly = true;
    ReportLogs();
    return result_;
  }
  if (RunObserver* observer = services_.observer) {
    logs_.errorLog.SetEcho(
        [observer](std::string_view line) { observer->ErrorLogged(std::string(line)); });
  }
  PlotAll();
  CloseLogFiles(session_.Log, logs_);
  ReportLogs();
  return result_;
}

void Run::PlotAll() {
  try {
    if (!CountPlots()) {
      result_.endedEarly = true;
      return;
    }
    auto plot = host_.App().ActiveDocument()->GetPlot();
    plot->StartBatchMode(result_.totalPlots);
    if (!StillGoing(*plot)) {
      result_.endedEarly = true;
      return;
    }
    if (services_.observer) services_.observer->RowsCleared();
    const int count = session_.List.EntryCount();
    result_.logBytesBeforeRows = {0, logs_.journal.BytesWritten(), logs_.errorLog.BytesWritten()};
    if (services_.jobs > 1) {
      PlotRowsInWorkers(count);
    } else {
      for (int row = 1; row <= count && !result_.cancelled; ++row) {
        if (!Plots(row)) continue;
        const std::uint64_t journal = logs_.journal.BytesWritten();
        const std::uint64_t errorLog = logs_.errorLog.BytesWritten();
        PlotRowOrFail(row);
        result_.rowLogBytes.push_back({row, logs_.journal.BytesWritten() - journal,
                                       logs_.errorLog.BytesWritten() - errorLog});
      }
    }
    if (result_.cancelled) result_.endedEarly = true;
    host_.App().ActiveDocument()->GetPlot()->SetSheafworkProgress(false);
  } catch (const host::Error& error) {
    LogHostError(error);
    result_.endedEarly = true;
  }
}

// Says which logs hold the whole run and, for each other log asked for, why
// not: never opened, a failed write, or held by another run.
void Run::ReportLogs() {
  const LogSettings& settings = session_.Log;
  const auto check = [this](const LogFile& log, bool asked, int notWritten, int incomplete) {
    if (!asked || log.Path().empty()) return false;  // not even tried: another log was held
    if (log.Busy()) {
      std::string line = log.Path() + ": " + LoadResourceText(ids::kLogHeldByOtherRun);
      if (log.LockHolder() > 0) {
        line += LoadResourceText(ids::kLogHolderProcess) + std::to_string(log.LockHolder()) + ")";
      }
      result_.logProblems.push_back(line + LoadResourceText(ids::kRunNotStarted));
      return false;
    }
    if (log.Opened() && log.Failure().empty()) return true;
    const int id = log.Opened() ? incomplete : notWritten;
    result_.logProblems.push_back(log.Path() + ": " + LoadResourceText(id) + log.Failure());
    return false;
  };
  result_.errorLogWritten =
      check(logs_.errorLog, settings.ErrorLogOn && !settings.ErrorLogFileName.empty(),
            ids::kErrorLogNotWritten, ids::kErrorLogIncomplete);
  result_.journalWritten =
      check(logs_.journal, settings.JournalLogOn && !settings.JournalLogFileName.empty(),
            ids::kJournalNotWritten, ids::kJournalIncomplete);
}

// The host is told beforehand how many layouts follow. A drawing that cannot
// be opened here ends the run before anything is plotted.
bool Run::CountPlots() {
  auto plot = host_.App().ActiveDocument()->GetPlot();
  plot->SetQuietErrorMode(true);
  result_.totalPlots = 0;
  const int count = session_.List.EntryCount();
  for (int row = 1; row <= count; ++row) {
    if (!Plots(row)) continue;
    const BatchEntry entry = EntryAsShown(session_.List.Entry(row));
    if (!IsAllLayouts(entry.Layout)) {
      ++result_.totalPlots;
      continue;
    }
    const OpenResult open = host_.OpenDrawing(entry.FileName);
    if (!open.ok) {
      OpenFailed(open, entry.FileName);
      return false;
    }
    auto layouts = host_.Doc().GetLayouts();
    const std::int32_t layoutCount = layouts->Count();
    for (std::int32_t i = 0; i < layoutCount; ++i) {
      if (layouts->Item(i)->Name() != ModelTabName()) ++result_.totalPlots;
    }
    host_.CloseDrawing(entry.FileName);
  }
  return true;
}

void Run::PlotRow(int row) {
  // Empty fields mean what the list shows for them; the journal writes the
  // row's own.
  const BatchEntry entry = EntryAsShown(session_.List.Entry(row));
  if (services_.observer) {
    services_.observer->RowStarted(row, session_.List.EntryCount(), entry);
  }
  const NpsInfo nps = GetNPSInfoForEntry(entry.PlotSetup, entry.FileName);
  bool planFound = false;
  if (nps.isExternal) {
    if (!ReadExternalSetup(nps)) {
      MarkEntryFailed(row, entry);
      return;
    }
    planFound = true;
  }

  const OpenResult open = host_.OpenDrawing(entry.FileName);
  if (!open.ok) {
    OpenFailed(open, entry.FileName);
    MarkEntryFailed(row, entry);
    // A host gone ends the run, as at any other call.
    if (open.hostGone) throw host::HostGone(open.errorNumber, open.description);
    return;
  }
  try {
    auto plot = host_.App().ActiveDocument()->GetPlot();
    plot->SetQuietErrorMode(true);
    plot->SetNumberOfCopies(1);
    if (!StillGoing(*plot)) return;  // the drawing stays open

    if (IsAllLayouts(entry.Layout)) {
      PlotAllLayouts(row, entry, planFound);
      if (result_.cancelled) return;  // stopped between two layouts; the drawing stays open
    } else {
      std::string elapsed;
      if (PlotLayout(context_, entry, entry.Layout, planFound, elapsed)) {
        SheetPlotted(row);
        MarkEntryPlotted(row, entry, elapsed);
      } else if (!MarkEntryFailedOrCancelled(row, entry)) {
        return;  // the drawing stays open
      }
    }
    if (!StillGoing(*host_.App().ActiveDocument()->GetPlot())) return;
  } catch (const host::HostGone&) {
    // Nothing more can be asked of the host: the row is lost and the run
    // ends, saying why.
    MarkEntryFailed(row, entry);
    throw;
  } catch (const host::Error& error) {
    // The host failed outside the plot of a layout: the row is lost, the run
    // goes on with the next one.
    LogHostError(error);
    MarkEntryFailed(row, entry);
  }
  host_.CloseDrawing(entry.FileName);
}

// A row that runs out of memory fails with its reason; the memory it held is
// given back as the exception unwinds, and the run goes on.
void Run::PlotRowOrFail(int row) {
  try {
    PlotRow(row);
  } catch (const std::bad_alloc&) {
    const std::string& fileName = session_.List.Entry(row).FileName;
    logs_.errorLog.WriteLogLine(LoadResourceText(ids::kPlotFailed) + fileName + " : " +
                                LoadResourceText(ids::kOutOfMemory));
    ++result_.failed;
    if (services_.observer) services_.observer->RowFinished(row, RowStatus::Failed);
    host_.CloseDrawing(fileName);
  }
}

void Run::PlotAllLayouts(int row, const BatchEntry& entry, bool planFound) {
  bool allLayoutsOk = true;
  const LocalTime start = context_.clock();
  auto layouts = host_.Doc().GetLayouts();
  const std::int32_t count = layouts->Count();
  bool first = true;
  for (std::int32_t i = 0; i < count; ++i) {
    const std::string name = layouts->Item(i)->Name();
    if (name == ModelTabName()) continue;
    // The user may stop the run between two layouts; the row is then left
    // as it is, like a row stopped before its plot.
    if (!first && !StillGoing(*host_.App().ActiveDocument()->GetPlot())) return;
    first = false;
    std::string elapsed;
    if (PlotLayout(context_, entry, name, planFound, elapsed)) {
      SheetPlotted(row);
    } else {
      if (!StillGoing(*host_.App().ActiveDocument()->GetPlot())) {
        MarkEntryCancelled(row, entry);
        return;
      }
      logs_.errorLog.WriteLogLine(LoadResourceText(ids::kPlotFailed) + entry.FileName + ", " +
                                  LoadResourceText(ids::kLayoutWord) + name);
      allLayoutsOk = false;
    }
  }
  const LocalTime end = context_.clock();
  if (!allLayoutsOk) {
    MarkEntryFailed(row, entry);
    return;
  }
  MarkEntryPlotted(row, entry, FormatElapsedTime(start, end));
}

// Reads the row's page setup from the other drawing into the run's record.
bool Run::ReadExternalSetup(const NpsInfo& nps) {
  const OpenResult open = host_.OpenDrawing(nps.drawing);
  if (!open.ok) {
    logs_.errorLog.WriteLogLine(LoadResourceText(ids::kExternalSetupUnreadable) + nps.drawing);
    return false;
  }
  bool found = false;
  try {
    auto setups = host_.Doc().GetPlotConfigurations();
    const std::int32_t count = setups->Count();
    std::int32_t match = -1;
    for (std::int32_t i = 0; i < count; ++i) {
      if (setups->Item(i)->Name() == nps.name) match = i;  // the last match wins
    }
    if (match >= 0) {
      record_ = ReadPlotSetup(*setups->Item(match));
      found = true;
    } else {
      logs_.errorLog.WriteLogLine(LoadResourceText(ids::kExternalSetupMissing) + nps.name);
    }
  } catch (const host::Error&) {
    logs_.errorLog.WriteLogLine(LoadResourceText(ids::kExternalSetupUnreadable) + nps.drawing);
  }
  host_.CloseDrawing(nps.drawing);
  return found;
}

void Run::OpenFailed(const OpenResult& open, const std::string& fileName) {
  const int id = open.errorNumber == host::kFileNotFound ? ids::kCannotOpenDrawing
                                                         : ids::kProblemOpeningDrawing;
  logs_.errorLog.WriteLogLine(LoadResourceText(id) + fileName);
}

bool Run::MarkEntryFailedOrCancelled(int row, const BatchEntry& entry) {
  if (StillGoing(*host_.App().ActiveDocument()->GetPlot())) {
    MarkEntryFailed(row, entry);
    return true;
  }
  MarkEntryCancelled(row, entry);
  return false;
}

void Run::MarkEntryCancelled(int row, const BatchEntry& entry) {
  logs_.errorLog.WriteLogLine(LoadResourceText(ids::kPlotCancelled) + entry.FileName);
  if (services_.observer) services_.observer->RowCancelled(row);
}

void Run::MarkEntryFailed(int row, const BatchEntry& entry) {
  logs_.errorLog.WriteLogLine(LoadResourceText(ids::kPlotFailed) + entry.FileName);
  ++result_.failed;
  if (services_.observer) services_.observer->RowFinished(row, RowStatus::Failed);
}

// The journal line of a plotted row: drawing, folder, layout, page setup,
// device and elapsed time, the fields as the row holds them (an empty one
// stays empty), not as the list shows them.
void Run::MarkEntryPlotted(int row, const BatchEntry& entry, const std::string& elapsed) {
  const BatchEntry& own = session_.List.Entry(row);
  WriteJournalLine(logs_.journal, logs_.errorLog,
                   FileNameFromPath(entry.FileName) + ", " + FolderFromPath(entry.FileName) + ", " +
                       own.Layout + ", " + own.PlotSetup + ", " + own.PlotDevice + ", " + elapsed);
  ++result_.plotted;
  if (services_.observer) services_.observer->RowFinished(row, RowStatus::Plotted);
}

void Run::LogHostError(const host::Error& error) {
  logs_.errorLog.WriteLogLine(host::HostErrorLine(error));
}

// The rows go to worker processes, a few at a time each so that none waits
// for the next; their records come back in any order and are written in row
// order, a row that finished early waiting for those before it. A stop asked
// for here is passed on to every worker, which ends after its sheet; the rows
// it was not handed are not plotted, as in a run that plots them itself. A
// worker that dies fails the row it was plotting, and another one takes the
// rows it had not begun.
void Run::PlotRowsInWorkers(int count) {
  constexpr std::size_t kRowsAhead = 2;
  const PipeSignalIgnored pipeSignal;
  const std::string greeting =
      Block(ListForWorkers(session_)) + Block(std::to_string(result_.totalPlots));
  std::vector<int> planned;  // the rows of this run, in order
  for (int row = 1; row <= count; ++row) {
    if (Plots(row)) planned.push_back(row);
  }
  std::deque<int> todo(planned.begin(), planned.end());
  std::vector<std::unique_ptr<WorkerProcess>> workers;
  std::map<int, RowRecord> done;
  std::size_t next = 0;  // in `planned`: the first row not yet written
  bool stopping = false;
  const auto stopAll = [&] {
    stopping = true;
    for (const auto& worker : workers) worker->Stop();
  };

  for (;;) {
    if (!stopping && !StillGoing(*host_.App().ActiveDocument()->GetPlot())) stopAll();
    while (!stopping && !todo.empty() &&
           workers.size() < static_cast<std::size_t>(services_.jobs) &&
           workers.size() < todo.size()) {
      std::string error;
      auto worker = WorkerProcess::Start(services_.workerCommand, greeting, error);
      if (!worker) {
        logs_.errorLog.WriteLogLine(LoadResourceText(ids::kWorkerNotStarted) + error);
        if (workers.empty()) {
          result_.endedEarly = true;
          stopping = true;
        }
        break;
      }
      workers.push_back(std::move(worker));
    }
    for (auto it = workers.begin(); it != workers.end();) {
      WorkerProcess& worker = **it;
      while (!stopping && !todo.empty() && worker.rows.size() < kRowsAhead) {
        const int row = todo.front();
        todo.pop_front();
        if (!worker.SendRow(row)) break;  // its end fails the row
      }
      if (worker.rows.empty()) {
        worker.WaitForEnd();  // nothing more for it
        it = workers.erase(it);
      } else {
        ++it;
      }
    }
    if (workers.empty()) break;

    std::vector<int> fds;
    for (const auto& worker : workers) fds.push_back(worker->RecordsFd());
    const std::vector<int> ready = WaitForReadable(fds, 100);
    for (auto it = workers.begin(); it != workers.end();) {
      WorkerProcess& worker = **it;
      if (std::find(ready.begin(), ready.end(), worker.RecordsFd()) == ready.end()) {
        ++it;
        continue;
      }
      std::vector<RowRecord> records;
      const bool alive = worker.ReadRecords(records);
      for (RowRecord& record : records) {
        std::erase(worker.rows, record.row);
        if ((record.cancelled || record.ended || record.skipped) && !stopping) stopAll();
        const int row = record.row;
        done[row] = std::move(record);
      }
      if (alive) {
        ++it;
        continue;
      }
      std::string reason = worker.WaitForEnd();
      // A worker ending by itself while the run stops leaves its rows as
      // they are, like the rows not handed out.
      if (!worker.rows.empty() && !(stopping && reason.empty())) {
        if (reason.empty()) reason = LoadResourceText(ids::kWorkerExited) + "0";
        done[worker.rows.front()] = LostRow(worker.rows.front(), reason);
        for (auto row = worker.rows.rbegin(); row + 1 != worker.rows.rend(); ++row) {
          todo.push_front(*row);
        }
      }
      it = workers.erase(it);
    }
    for (; next < planned.size(); ++next) {
      const auto found = done.find(planned[next]);
      if (found == done.end()) break;
      Replay(found->second);
      done.erase(found);
    }
  }
  // Rows after one that was never plotted (the run was stopped).
  for (const auto& [row, record] : done) Replay(record);
}

void Run::Replay(const RowRecord& record) {
  if (record.skipped) return;
  const int row = record.row;
  const std::uint64_t journal = logs_.journal.BytesWritten();
  const std::uint64_t errorLog = logs_.errorLog.BytesWritten();
  RunObserver* observer = services_.observer;
  if (observer) {
    observer->RowStarted(row, session_.List.EntryCount(), EntryAsShown(session_.List.Entry(row)));
  }
  for (const RowEvent& event : record.events) {
    switch (event.kind) {
      case RowEvent::ErrorLine:
        logs_.errorLog.WriteLogLine(event.text);
        break;
      case RowEvent::JournalLine:
        WriteJournalLine(logs_.journal, logs_.errorLog, event.text);
        break;
      case RowEvent::HostFailure:
      case RowEvent::HostNotice:
        if (observer) observer->HostReported(event.text, event.kind == RowEvent::HostFailure);
        break;
      case RowEvent::Sheet:
        SheetPlotted(row);
        break;
      case RowEvent::Plotted:
        ++result_.plotted;
        if (observer) observer->RowFinished(row, RowStatus::Plotted);
        break;
      case RowEvent::Failed:
        ++result_.failed;
        if (observer) observer->RowFinished(row, RowStatus::Failed);
        break;
      case RowEvent::Cancelled:
        if (observer) observer->RowCancelled(row);
        break;
      case RowEvent::WorkerFile:
        if (services_.placeWorkerFile) services_.placeWorkerFile(event.text);
        break;
    }
  }
  result_.rowLogBytes.push_back(
      {row, logs_.journal.BytesWritten() - journal, logs_.errorLog.BytesWritten() - errorLog});
  if (record.cancelled) result_.cancelled = true;
  if (record.ended) result_.endedEarly = true;
}

// The row a worker was plotting when it died: failed, saying how it died.
RowRecord Run::LostRow(int row, const std::string& reason) const {
  const std::string& fileName = EntryAsShown(session_.List.Entry(row)).FileName;
  return RowRecord{row,
                   false,
                   false,
                   false,
                   {{RowEvent::ErrorLine, reason},
                    {RowEvent::ErrorLine, LoadResourceText(ids::kPlotFailed) + fileName},
                    {RowEvent::Failed, {}}}};
}

// For tests: a worker handed this row ends abnormally, as a crash would.
int WorkerAbortRow() {
  const char* value = std::getenv("SHEAFWORK_WORKER_ABORT_ROW");
  return value ? std::atoi(value) : 0;
}

bool Run::Serve(std::int16_t totalPlots, RowSource& rows, int recordsFd, RowRecorder& recorder) {
  logs_.journal.SetEcho([&recorder](std::string_view line) {
    recorder.Add(RowEvent::JournalLine, std::string(line));
  });
  logs_.errorLog.SetEcho(
      [&recorder](std::string_view line) { recorder.ErrorLogged(std::string(line)); });
  const int abortRow = WorkerAbortRow();
  try {
    auto plot = host_.App().ActiveDocument()->GetPlot();
    plot->SetQuietErrorMode(true);
    plot->StartBatchMode(totalPlots);
    // The run asks a worker to stop with SIGINT (WorkerProcess::Stop); a
    // SIGTERM from anyone else ends the worker, and the run fails its row
    // and goes on.
    std::signal(SIGTERM, SIG_DFL);
  } catch (const host::Error&) {
    return true;  // the run fails the rows handed out when this worker ends
  }
  // Once the run is stopped or the host failed, the rows still sent are
  // answered as not begun, until the run closes the stream.
  bool finished = false;
  for (int row; (row = rows.NextRow()) > 0;) {
    recorder.Begin(row);
    bool going = false;
    bool ended = false;
    try {
      going = !finished && StillGoing(*host_.App().ActiveDocument()->GetPlot());
      if (going) {
        if (row == abortRow) std::abort();
        PlotRowOrFail(row);
      }
    } catch (const host::Error& error) {
      LogHostError(error);
      ended = true;
    }
    RowRecord record = recorder.Take();
    record.skipped = !going && !ended;
    record.cancelled = going && result_.cancelled;
    record.ended = ended;
    if (!WriteAllTo(recordsFd, EncodeRecord(record))) return false;
    finished = finished || !going || record.cancelled || ended;
  }
  try {
    host_.App().ActiveDocument()->GetPlot()->SetSheafworkProgress(false);
  } catch (const host::Error&) {
  }
  return true;
}

bool Run::StillGoing(host::Plot& plot) {
  if (plot.SheafworkProgress()) return true;
  result_.cancelled = true;
  return false;
}

}  // namespace

std::string FormatElapsedTime(const LocalTime& start, const LocalTime& end) {
  const std::int32_t diff = SecondsOfDay(end) - SecondsOfDay(start);
  const std::int32_t hours = diff / 3600;
  const std::int32_t rest = diff - hours;
  const std::int32_t minutes = rest / 60;
  const std::int32_t seconds = rest % 60;
  return (hours < 10 ? "0" : "") + std::to_string(hours) + TwoDigits(minutes, ":", ":0") +
         TwoDigits(seconds, ":", ":0");
}

RunResult PlotAllEntries(Session& session, HostSession& host, const RunServices& services) {
  return Run(session, host, services).Go();
}

bool ServeRows(Session& session, HostSession& host, const RunServices& services,
               std::int16_t totalPlots, RowSource& rows, int recordsFd, RowRecorder& recorder) {
  RunServices own = services;
  own.observer = &recorder;
  return Run(session, host, own).Serve(totalPlots, rows, recordsFd, recorder);
}

std::string ListForWorkers(const Session& session) {
  return FormatListFile(session, session.ListName, session.WinSize);
}

}  // namespace sheafwork
