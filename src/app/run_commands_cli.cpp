#include "app/run_commands_cli.h"

#include <filesystem>
#include <memory>
#include <system_error>

#include "app/console_prompt.h"
#include "embedded/automation/embedded_host.h"
#include "host/error.h"
#include "host/startup.h"
#include "platform/program_folders.h"
#include "plotrun/plot_run.h"
#include "plottest/plot_test.h"
#include "plottest/results_actions.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

/// A list loaded and a host attached, ended properly however the command
/// ends.
class RunSession {
 public:
  explicit RunSession(const CommandIo& io)
      : io_(io), prompt_(io.err), session_(io.env.defaultLogFolder) {}
  ~RunSession() { End(); }

  /// Loads the list and starts the host (through `given` when there is one);
  /// false with `status` set otherwise.
  bool Start(const std::string& list, const std::string& hostName, int& status,
             const HostFactory* given = nullptr) {
    if (io_.env.dataFolder.empty()) {
      io_.err << "sheafwork: " << MissingDataFolder(io_.env.dataSearched) << '\n';
      status = kExitBadInput;
      return false;
    }
    if (!LoadList(session_, FullPath(list), io_, status)) return false;
    const HostRegistry& hosts = io_.env.hosts ? *io_.env.hosts : ProgramHosts();
    const HostFactory* factory = given ? given : hosts.Find(hostName);
    if (!factory) {
      status = NoHost(hosts, hostName);
      return false;
    }
    // The default logs and the scratch drawing live in the program's own
    // folder, created on first use.
    std::error_code ec;
    std::filesystem::create_directories(io_.env.defaultLogFolder, ec);

    AttachResult attached =
        AttachHost(*factory, ProgramFiles{io_.env.dataFolder, io_.env.defaultLogFolder}, prompt_);
    host_ = std::move(attached.host);
    if (!attached.ok) {
      status = kExitBadInput;
      return false;
    }
    return true;
  }

  /// Ends the session and lets the host go; the destructor does it otherwise.
  void End() {
    if (host_) EndSession(session_, host_.get(), prompt_);
    host_.reset();
  }

  Session& session() { return session_; }
  HostSession& host() { return *host_; }
  Prompt& prompt() { return prompt_; }

 private:
  int NoHost(const HostRegistry& hosts, const std::string& name) {
    std::string known;
    for (const auto& each : hosts.Names()) known += (known.empty() ? "" : ", ") + each;
    if (known.empty()) {
      io_.err << "sheafwork: aucun hôte CAO n'est disponible dans cette version\n";
    } else {
      io_.err << "sheafwork: hôte inconnu « " << name << " » (hôtes disponibles : " << known
              << ")\n";
    }
    return kExitBadInput;
  }

  const CommandIo& io_;
  ConsolePrompt prompt_;
  Session session_;
  std::unique_ptr<HostSession> host_;
};

/// Row-by-row progress of a plot run on stderr.
class ProgressLines : public RunObserver {
 public:
  explicit ProgressLines(std::ostream& err) : err_(err) {}
  void RowStarted(int row, int count, const BatchEntry& entry) override {
    count_ = count;
    err_ << Prefix(row) << entry.FileName << '\n';
  }
  void RowFinished(int row, RowStatus status) override {
    err_ << Prefix(row) << (status == RowStatus::Plotted ? "tracé" : "échec") << '\n';
  }
  void RowCancelled(int row) override { err_ << Prefix(row) << "annulé" << '\n'; }

 private:
  std::string Prefix(int row) const {
    return "ligne " + std::to_string(row) + "/" + std::to_string(count_) + " : ";
  }
  std::ostream& err_;
  int count_ = 0;
};

/// The text with LF line ends, as a terminal and a pipe expect it.
std::string WithNewlines(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    out += text[i];
  }
  return out;
}

bool HasErrorLine(const std::string& results) {
  for (std::size_t pos = 0; pos < results.size();) {
    if (results.compare(pos, 6, "ERREUR") == 0) return true;
    const auto end = results.find('\n', pos);
    if (end == std::string::npos) break;
    pos = end + 1;
  }
  return false;
}

// The logs that hold the whole run; one that was not written is not named.
std::string LogSummary(const LogSettings& log, const RunResult& result) {
  std::string text;
  if (result.journalWritten) text += " ; journal : " + log.JournalLogFileName;
  if (result.errorLogWritten) text += " ; erreurs : " + log.ErrorLogFileName;
  return text;
}

/// How the combined PDF of a run went, as the embedded host tells it.
struct CombinedOutcome {
  bool closed = false;
  int pages = 0;
  std::string error;
};

/// The embedded host writing every sheet also into `path`. An error that
/// keeps it from starting is printed here, since starting a host only says
/// that it failed.
HostFactory CombiningHost(const std::string& path, std::shared_ptr<CombinedOutcome> outcome,
                          const CommandIo& io) {
  return [path, outcome, &io] {
    embedded::EmbeddedHostOptions hostOptions;
    hostOptions.combinedPdf = path;
    hostOptions.combinedPdfClosed = [outcome](int pages, const std::string& error) {
      *outcome = CombinedOutcome{true, pages, error};
    };
    try {
      return embedded::MakeEmbeddedHost(std::move(hostOptions));
    } catch (const host::Error& error) {
      io.err << "sheafwork: " << error.description() << '\n';
      throw;
    }
  };
}

/// Names the combined PDF after the run; false when it was not written
/// although sheets were plotted.
bool ReportCombined(const CombinedOutcome& outcome, const std::string& path, std::ostream& err) {
  if (!outcome.closed || !outcome.error.empty()) {
    // The host already said why, when it could.
    err << "sheafwork: " << path << " : PDF combiné non écrit\n";
    return false;
  }
  if (outcome.pages == 0) {
    err << "sheafwork: " << path << " : aucune feuille tracée, PDF combiné non écrit\n";
    return true;
  }
  err << "sheafwork: PDF combiné : " << path << " (" << outcome.pages << " page(s))\n";
  return true;
}

}  // namespace

int RunPlot(const PlotOptions& options, const CommandIo& io) {
  RunSession run(io);
  int status = kExitOk;
  HostFactory combining;
  const auto combined = std::make_shared<CombinedOutcome>();
  std::string combinedPath;
  if (options.combine) {
    const HostRegistry& hosts = io.env.hosts ? *io.env.hosts : ProgramHosts();
    const std::string& name = options.host.empty() ? hosts.DefaultName() : options.host;
    if (name != kEmbeddedHostName) {
      io.err << "sheafwork: --combine demande l'hôte embarqué (« " << kEmbeddedHostName
             << " »), pas « " << name << " »\n";
      return kExitBadInput;
    }
    combinedPath = FullPath(*options.combine);
    combining = CombiningHost(combinedPath, combined, io);
  }
  if (!run.Start(options.list, options.host, status, options.combine ? &combining : nullptr)) {
    return status;
  }

  ProgressLines progress(io.err);
  RunServices services;
  if (io.env.clock) services.clock = io.env.clock;
  services.observer = &progress;
  services.prompt = &run.prompt();
  const RunResult result = PlotAllEntries(run.session(), run.host(), services);
  run.End();  // the host writes the combined PDF at the latest when it quits
  const bool combinedOk = !options.combine || ReportCombined(*combined, combinedPath, io.err);

  for (const std::string& problem : result.logProblems) io.err << "sheafwork: " << problem << '\n';
  io.err << "sheafwork: " << result.plotted << " ligne(s) tracée(s), " << result.failed
         << " en échec";
  if (result.cancelled) {
    io.err << ", traçage annulé";
  } else if (result.endedEarly) {
    io.err << ", traçage arrêté avant la fin";
  }
  io.err << LogSummary(run.session().Log, result) << '\n';
  const bool logsOk = result.logProblems.empty();
  return result.failed > 0 || result.endedEarly || !combinedOk || !logsOk ? kExitFailed : kExitOk;
}

int RunCheck(const CheckOptions& options, const CommandIo& io) {
  std::unique_ptr<PrinterCatalog> systemPrinters;
  std::unique_ptr<FontFolders> systemFonts;
  PrinterCatalog* printers = io.env.printers;
  FontFolders* fonts = io.env.fonts;
  if (!printers) printers = (systemPrinters = SystemPrinterCatalog()).get();
  if (!fonts) fonts = (systemFonts = SystemFontFolders()).get();

  RunSession run(io);
  int status = kExitOk;
  if (!run.Start(options.list, options.host, status)) return status;

  PlotTestServices services{*printers, *fonts, LocalTimeNow, {}};
  if (io.env.clock) services.clock = io.env.clock;
  services.progress = [&io](int row, int count, const std::string& drawing) {
    io.err << "ligne " << row << "/" << count << " : " << drawing << '\n';
  };
  const std::string results = RunPlotTest(run.session(), run.host(), services);
  io.out << WithNewlines(results);

  status = HasErrorLine(results) ? kExitFailed : kExitOk;
  if (options.save) {
    std::string error;
    if (!WriteResultsFile(*options.save, results, error)) {
      io.err << "sheafwork: " << *options.save << ": " << LoadResourceText(ids::kResultsSaveFailed)
             << error << '\n';
      status = kExitFailed;
    }
  }
  if (options.appendJournal && !AppendResultsToJournal(run.session().Log, results, run.prompt())) {
    status = kExitFailed;
  }
  return status;
}

}  // namespace sheafwork
