#pragma once
// The program's plot run over the embedded host: rows of a list, the run's
// logs, and the host session the run drives.

#include <memory>
#include <string>

#include "batch/session.h"
#include "embedded/automation/embedded_fixture.h"
#include "fakes/log_lines.h"
#include "host/host_session.h"
#include "plotrun/plot_run.h"

namespace sheafwork::embedded {

class EmbeddedRunTest : public EmbeddedHostTest {
 protected:
  EmbeddedRunTest() {
    session.Log.JournalLogFileName = logs.File("journal.log");
    session.Log.ErrorLogFileName = logs.File("erreurs.log");
    session.Log.JournalHeader = "journal";
    session.Log.JournalUserComment = "commentaire";
    session.Log.ErrorHeader = "erreurs";
  }

  /// Appends a row plotting `layout` of the drawing at `path`.
  BatchEntry& Row(const std::string& path, const std::string& layout) {
    BatchEntry& entry = session.List.Append();
    entry.FileName = path;
    entry.Layout = layout;
    return entry;
  }

  /// The host session the runs share, made on first use.
  HostSession& Attach() {
    if (!hostSession) {
      hostSession = std::make_unique<HostSession>(Host(), logs.path().string());
      hostSession->objOrvaDoc = Host()->ActiveDocument();
    }
    return *hostSession;
  }

  RunResult Run(const RunServices& services = {}) {
    return PlotAllEntries(session, Attach(), services);
  }

  testing::TempFolder logs;
  Session session{logs.path().string()};
  std::unique_ptr<HostSession> hostSession;
};

}  // namespace sheafwork::embedded
