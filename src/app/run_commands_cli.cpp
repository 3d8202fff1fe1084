#include "app/run_commands_cli.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <system_error>
#include <thread>

#include "app/console_prompt.h"
#include "app/host_choice.h"
#include "app/list_commands_cli.h"
#include "app/run_progress.h"
#include "app/shard_run.h"
#include "app/worker_files.h"
#include "embedded/automation/dwg_converter.h"
#include "embedded/automation/embedded_host.h"
#include "embedded/plotstyle/lookup.h"
#include "embedded/plotstyle/plot_style_file.h"
#include "host/error.h"
#include "host/startup.h"
#include "platform/program_folders.h"
#include "plotrun/plot_run.h"
#include "plotrun/row_record.h"
#include "plotrun/shard.h"
#include "plotrun/worker_process.h"
#include "plottest/plot_test.h"
#include "plottest/results_actions.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"

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
    return LoadList(session_, FullPath(list), io_, status) && Attach(hostName, status, given);
  }

  /// Starts the host for the list already in the session.
  bool Attach(const std::string& hostName, int& status, const HostFactory* given = nullptr) {
    if (io_.env.dataFolder.empty()) {
      io_.err << "sheafwork: " << MissingDataFolder(io_.env.dataSearched) << '\n';
      status = kExitBadInput;
      return false;
    }
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

/// The host a command drives, or nothing after saying in French why this
/// system cannot drive it. `factory` gets the COM host's when it is chosen.
std::optional<HostChoice> ChosenHost(const std::string& requested, const std::string& progId,
                                     const CommandIo& io, HostFactory& factory) {
  const HostRegistry& hosts = io.env.hosts ? *io.env.hosts : ProgramHosts();
  HostChoice choice = ChooseHost(requested, progId, hosts);
  if (const std::string why = UnavailableHost(choice.name); !why.empty()) {
    io.err << "sheafwork: " << why << '\n';
    return std::nullopt;
  }
  if (choice.name == kComHostName) factory = ComHostFactory(progId);
  return choice;
}

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

/// The embedded host of a plot run: its failures and notices go to
/// `reports`, and it writes into the combined PDF and the output folder the
/// options name. An error that keeps it from starting is printed here, since
/// starting a host only says that it failed.
HostFactory RunHost(const PlotOptions& options, std::shared_ptr<CombinedOutcome> outcome,
                    std::shared_ptr<embedded::ConsoleReports> reports, const CommandIo& io,
                    embedded::EmbeddedHostOptions hostOptions = {}) {
  hostOptions.progress = embedded::ConsoleProgressDisplay(std::move(reports));
  if (options.combine) {
    hostOptions.combinedPdf = FullPath(*options.combine);
    hostOptions.combinedPdfClosed = [outcome](int pages, const std::string& error) {
      *outcome = CombinedOutcome{true, pages, error};
    };
  }
  if (options.outputDir) hostOptions.outputFolder = FullPath(*options.outputDir);
  hostOptions.conversionFolder = options.conversionFolder;
  return [hostOptions, &io] {
    try {
      return embedded::MakeEmbeddedHost(hostOptions);
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

bool IsDrawingName(const std::string& name) {
  for (const char* extension : {".dxf", ".dwg", ".dwt"}) {
    if (EndsWithIgnoreCase(name, extension) && name.size() > 4) return true;
  }
  return false;
}

namespace {

// The rows of the run: the list file named (or standard input), or a row per
// drawing with the row options. False after reporting the failure.
bool LoadPlotInput(Session& session, const PlotOptions& options, const CommandIo& io, int& status) {
  const std::vector<std::string>& inputs = options.inputs;
  if (std::all_of(inputs.begin(), inputs.end(), IsDrawingName)) {
    if (options.fields.plotFile && (inputs.size() > 1 || options.outputDir)) {
      status = Refuse(io, LoadResourceText(ids::kCliPlotFileOfOneDrawing));
      return false;
    }
    // A list made for the run only: nothing to offer to save.
    const bool added = AddDrawings(session, inputs, options.fields, io, status);
    session.ListModified = false;
    return added;
  }
  if (inputs.size() != 1) {
    status = Refuse(io, LoadResourceText(ids::kCliListOrDrawings));
    return false;
  }
  if (options.fields.Any()) {
    status = Refuse(io, LoadResourceText(ids::kCliRowOptionsNeedDrawings));
    return false;
  }
  if (inputs.front() != "-") return LoadList(session, FullPath(inputs.front()), io, status);
  std::istream& in = io.env.input ? *io.env.input : std::cin;
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  const ListFileResult read = ReadListBytes(session, bytes, false);
  if (read.ok()) return true;
  status = FailWith(io, LoadResourceText(ids::kCliStandardInput), read);
  return false;
}

// The table every sheet plots with, as the embedded host finds it (its full
// path); another host gets the name as given. False after reporting a table
// that cannot be used.
bool FindRunPlotStyle(HostSession& host, const std::string& name, const CommandIo& io,
                      std::string& found, int& status) {
  found = name;
  const auto preferences =
      std::dynamic_pointer_cast<embedded::EmbeddedPreferences>(host.App().GetPreferences());
  if (!preferences) return true;
  if (!EndsWithIgnoreCase(name, ".ctb")) {
    status = Fail(io, name, LoadResourceText(ids::kCliPlotStyleNotCtb));
    return false;
  }
  const std::string path = preferences->PlotStylePath();
  const auto file = embedded::FindPlotStyleFile(name, path);
  if (!file) {
    status = Fail(io, name, LoadResourceText(ids::kCliPlotStyleNotFound) + path);
    return false;
  }
  try {
    embedded::ReadPlotStyleFile(*file);
  } catch (const embedded::PlotStyleError& error) {
    status = Refuse(io, error.what());
    return false;
  }
  found = *file;
  return true;
}

// What the terminal shows, and how wide it is.
ProgressStyle ChooseProgressStyle(const PlotOptions& options, const CommandIo& io, int& width) {
  width = 80;
  if (options.quiet) return ProgressStyle::Quiet;
#ifdef _WIN32
  CONSOLE_SCREEN_BUFFER_INFO console{};
  if (&io.err != &std::cerr ||
      !GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &console))
    return ProgressStyle::Lines;
  const int columns = console.srWindow.Right - console.srWindow.Left + 1;
  if (columns > 0) width = columns;
#else
  if (&io.err != &std::cerr || isatty(STDERR_FILENO) != 1) return ProgressStyle::Lines;
  winsize size{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) width = size.ws_col;
#endif
  return ProgressStyle::Terminal;
}

// Passes what the worker's host reports to the row being recorded.
class RecordedReports : public embedded::ConsoleReports {
 public:
  explicit RecordedReports(RowRecorder& recorder) : recorder_(recorder) {}
  void PlotFailed(const std::string& reason) override {
    recorder_.Add(RowEvent::HostFailure, reason);
  }
  void Notice(const std::string& text) override { recorder_.Add(RowEvent::HostNotice, text); }
  bool AnnouncesStop() const override { return false; }

 private:
  RowRecorder& recorder_;
};

double SteadySeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

std::string RowsSummary(int plotted, int failed) {
  return std::to_string(plotted) + " ligne(s) tracée(s), " + std::to_string(failed) + " en échec";
}

int RunPlot(const PlotOptions& given, const CommandIo& io) {
  std::optional<Shard> shard;
  PlotOptions options = given;
  if (options.shard) {
    shard = ParseShard(*options.shard);
    if (!shard) {
      return Refuse(io, LoadResourceText(ids::kCliShardBad) + "« " + *options.shard + " »");
    }
    const auto& inputs = options.inputs;
    if (inputs.size() != 1 || inputs.front() == "-" || IsDrawingName(inputs.front())) {
      return Refuse(io, LoadResourceText(ids::kCliShardNeedsList));
    }
    // Each shard gathers its own sheets, named like its logs.
    if (options.combine) options.combine = ShardLogName(FullPath(*options.combine), *shard);
  }
  RunSession run(io);
  int status = kExitOk;
  if (!LoadPlotInput(run.session(), options, io, status)) return status;
  ShardRun shardRun;
  if (shard &&
      !shardRun.Prepare(run.session(), FullPath(options.inputs.front()), *shard, io, status)) {
    return status;
  }

  int width = 80;
  const ProgressStyle style = ChooseProgressStyle(options, io, width);
  const auto progress = std::make_shared<RunProgress>(io.err, style, SteadySeconds, width);

  HostFactory comFactory;
  const auto choice = ChosenHost(options.host, options.progId, io, comFactory);
  if (!choice) return kExitBadInput;
  const std::string& name = choice->name;
  const bool embeddedHost = name == kEmbeddedHostName;
  const int jobs = options.jobs == 0
                       ? std::max(1, static_cast<int>(std::thread::hardware_concurrency()))
                       : options.jobs;
  if (jobs > 1 && !embeddedHost) {
    io.err << "sheafwork: --jobs au-delà de 1 demande l'hôte embarqué (« " << kEmbeddedHostName
           << " ») : l'hôte « " << name << " » pilote un seul programme de CAO\n";
    return kExitBadInput;
  }
  for (const auto& [option, given] : {std::pair{"--combine", options.combine.has_value()},
                                      std::pair{"--output-dir", options.outputDir.has_value()}}) {
    if (given && !embeddedHost) {
      io.err << "sheafwork: " << option << " demande l'hôte embarqué (« " << kEmbeddedHostName
             << " »), pas « " << name << " »\n";
      return kExitBadInput;
    }
  }
  if (options.outputDir) {
    std::error_code ec;
    std::filesystem::create_directories(FullPath(*options.outputDir), ec);
    if (ec) return Fail(io, *options.outputDir, ec.message());
  }
  const auto combined = std::make_shared<CombinedOutcome>();
  // The drawings converted from DWG, the counting pass's included, are kept
  // for every process of a parallel run.
  std::unique_ptr<embedded::ScratchFolder> conversions;
  PlotOptions shared = options;
  // The workers' sheets and pages, put in place by this process.
  std::unique_ptr<RunFiles> files;
  if (jobs > 1) {
    try {
      conversions = std::make_unique<embedded::ScratchFolder>();
    } catch (const host::Error& error) {
      return Refuse(io, error.description());
    }
    shared.conversionFolder = conversions->path();
    std::string error;
    files = RunFiles::Prepare(options.combine ? FullPath(*options.combine) : "",
                              options.outputDir ? FullPath(*options.outputDir) : "", error);
    if (!files) return Refuse(io, error);
    shared.combine.reset();  // this process's host plots nothing
    shared.outputDir.reset();
  }
  const HostFactory embeddedFactory = RunHost(shared, combined, progress, io);
  const HostFactory* factory = embeddedHost ? &embeddedFactory : comFactory ? &comFactory : nullptr;
  if (!run.Attach(name, status, factory)) return status;
  // Once the host is attached: the default logs' folder exists then.
  if (shard && !shardRun.Begin(io, status)) return status;

  RunServices services;
  if (options.plotStyle &&
      !FindRunPlotStyle(run.host(), *options.plotStyle, io, services.plotStyle, status)) {
    return status;
  }
  if (io.env.clock) services.clock = io.env.clock;
  services.observer = progress.get();
  services.prompt = &run.prompt();
  if (shard) {
    services.plotsRow = [split = *shard](int row) { return split.Holds(row); };
    progress->PlanRows(shard->RowsOf(run.session().List.EntryCount()));
  }
  services.jobs = jobs;
  if (jobs > 1) {
    services.workerCommand = WorkerCommand(services.plotStyle, shared.conversionFolder);
    for (std::string& argument : files->WorkerArguments()) {
      services.workerCommand.push_back(std::move(argument));
    }
    services.placeWorkerFile = [&files, &progress](const std::string& event) {
      files->Place(event,
                   [&progress](const std::string& why) { progress->HostReported(why, true); });
    };
  }
  const RunResult result = PlotAllEntries(run.session(), run.host(), services);
  const bool recordOk = shardRun.End(result, io);
  run.End();  // the host writes the combined PDF at the latest when it quits
  if (files && options.combine) {
    const auto [pages, error] = files->CloseCombined();
    *combined = CombinedOutcome{true, pages, error};
  }
  progress->Finish();
  const std::string combinedPath = options.combine ? FullPath(*options.combine) : "";
  const bool combinedOk = !options.combine || ReportCombined(*combined, combinedPath, io.err);

  for (const std::string& problem : result.logProblems) io.err << "sheafwork: " << problem << '\n';
  io.err << "sheafwork: ";
  if (shard) io.err << LoadResourceText(ids::kCliShardWord) << " " << shard->Text() << " : ";
  io.err << RowsSummary(result.plotted, result.failed);
  if (result.cancelled) {
    io.err << ", traçage annulé";
  } else if (result.endedEarly) {
    io.err << ", traçage arrêté avant la fin";
  }
  io.err << LogSummary(run.session().Log, result) << '\n';
  const bool logsOk = result.logProblems.empty();
  return result.failed > 0 || result.endedEarly || !combinedOk || !logsOk || !recordOk ? kExitFailed
                                                                                       : kExitOk;
}

int RunPlotWorker(const std::vector<std::string>& args, const CommandIo& io) {
  PlotOptions options;
  std::string plotStyle;
  for (std::size_t i = 0; i + 1 < args.size(); i += 2) {
    if (args[i] == "--plot-style") plotStyle = args[i + 1];
    if (args[i] == "--conversions") options.conversionFolder = args[i + 1];
  }
  RowSource rows(3);
  std::string list;
  std::string total;
  if (!rows.ReadBlock(list) || !rows.ReadBlock(total)) return kExitBadInput;

  RunSession run(io);
  if (!ReadListBytes(run.session(), list, false).ok()) return kExitBadInput;
  RowRecorder recorder;
  auto reports = std::make_shared<RecordedReports>(recorder);
  const auto combined = std::make_shared<CombinedOutcome>();
  embedded::EmbeddedHostOptions hostOptions;
  if (!WorkerFiles(args, recorder, hostOptions)) return kExitFailed;
  const HostFactory factory = RunHost(options, combined, reports, io, std::move(hostOptions));
  int status = kExitOk;
  if (!run.Attach(kEmbeddedHostName, status, &factory)) return status;

  RunServices services;
  services.plotStyle = plotStyle;
  services.prompt = &run.prompt();
  if (io.env.clock) services.clock = io.env.clock;
  const bool written =
      ServeRows(run.session(), run.host(), services,
                static_cast<std::int16_t>(std::atoi(total.c_str())), rows, 4, recorder);
  return written ? kExitOk : kExitFailed;
}

int RunCheck(const CheckOptions& options, const CommandIo& io) {
  std::unique_ptr<PrinterCatalog> systemPrinters;
  std::unique_ptr<FontFolders> systemFonts;
  PrinterCatalog* printers = io.env.printers;
  FontFolders* fonts = io.env.fonts;
  if (!printers) printers = (systemPrinters = SystemPrinterCatalog()).get();
  if (!fonts) fonts = (systemFonts = SystemFontFolders()).get();

  HostFactory comFactory;
  const auto choice = ChosenHost(options.host, options.progId, io, comFactory);
  if (!choice) return kExitBadInput;
  RunSession run(io);
  int status = kExitOk;
  if (!run.Start(options.list, choice->name, status, comFactory ? &comFactory : nullptr)) {
    return status;
  }

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
