#pragma once
// A session with a list, the scripted host, real log files and a clock that
// moves on 75 seconds at every reading.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "batch/session.h"
#include "fakes/fake_host.h"
#include "fakes/log_lines.h"
#include "fakes/scripted_prompt.h"
#include "fakes/temp_folder.h"
#include "host/host_session.h"
#include "plotrun/plot_run.h"
#include "res/string_table.h"

namespace sheafwork {

/// Remembers what a run told its observer, as short texts.
class RecordingObserver : public RunObserver {
 public:
  void RowsCleared() override { events.push_back("cleared"); }
  void RowStarted(int row, int count, const BatchEntry&) override {
    events.push_back("start " + std::to_string(row) + "/" + std::to_string(count));
  }
  void RowFinished(int row, RowStatus status) override {
    events.push_back(std::to_string(row) + (status == RowStatus::Plotted ? " plotted" : " failed"));
  }
  std::vector<std::string> events;
};

class PlotRunTest : public ::testing::Test {
 protected:
  PlotRunTest() {
    session.Log.JournalLogFileName = logs.File("QXJOURNL.LOG");
    session.Log.ErrorLogFileName = logs.File("QXERROR.LOG");
    session.Log.JournalHeader = "journal";
    session.Log.JournalUserComment = "comment";
    session.Log.ErrorHeader = "errors";
  }

  /// Appends a row plotting `drawing`'s `layout` with the defaults.
  BatchEntry& Row(const testing::FakeDrawing& drawing,
                  const std::string& layout = "*Onglet courant*") {
    return Row(drawing.path, layout);
  }
  BatchEntry& Row(const std::string& path, const std::string& layout = "*Onglet courant*") {
    BatchEntry& entry = session.List.Append();
    entry.FileName = path;
    entry.Layout = layout;
    entry.PlotSetup = Text(76);
    entry.PlotDevice = Text(76);
    return entry;
  }

  /// Plots the list; with a `worker`, in two stand-in worker processes
  /// (tests/data/parallel/workers).
  RunResult Run(const std::string& worker = "") {
    RunServices services;
    services.clock = [this] { return Tick(); };
    services.observer = &observer;
    services.prompt = &prompt;
    if (!worker.empty()) {
      services.jobs = 2;
      services.workerCommand = {"/bin/bash", std::string(SHEAFWORK_SOURCE_DIR) +
                                                 "/tests/data/parallel/workers/" + worker};
    }
    return PlotAllEntries(session, hostSession, services);
  }

  /// The clock: 75 seconds later at every reading.
  LocalTime Tick() {
    seconds += 75;
    return LocalTime{2026, 11, 22, seconds / 3600, seconds / 60 % 60, seconds % 60};
  }

  /// The journal's lines after its header and comment, and the error log's
  /// after its header.
  std::vector<std::string> Journal() const {
    return AfterHeader(session.Log.JournalLogFileName, {"journal", "comment"});
  }
  std::vector<std::string> Errors() const {
    return AfterHeader(session.Log.ErrorLogFileName, {"errors"});
  }
  static std::vector<std::string> AfterHeader(const std::string& log,
                                              const std::vector<std::string>& header) {
    const auto lines = testing::ReadLogLines(log);
    if (lines.size() < header.size() || !std::equal(header.begin(), header.end(), lines.begin())) {
      ADD_FAILURE() << log << " does not start with its header";
      return {};
    }
    return {lines.begin() + header.size(), lines.end()};
  }

  static std::string Text(int id) { return LoadResourceText(id); }

  testing::FakeHost host;
  testing::TempFolder logs;
  testing::ScriptedPrompt prompt;
  Session session{logs.path().string()};
  HostSession hostSession{host.App(), logs.path().string()};
  RecordingObserver observer;
  int seconds = 8 * 3600;
};

}  // namespace sheafwork
