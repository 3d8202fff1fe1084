// The application, its documents, preferences and state.

#include "embedded/automation/embedded_host.h"
#include "embedded/automation/image_report.h"
#include "embedded/automation/objects.h"
#include "embedded/automation/variables.h"

namespace sheafwork::embedded {

namespace msg = host_messages;

namespace {

class DocumentsObject : public host::Documents {
 public:
  explicit DocumentsObject(std::shared_ptr<HostCore> core) : core_(std::move(core)) {}

  std::int32_t Count() override {
    return Guarded(*core_, [&] { return static_cast<std::int32_t>(core_->documents.size()); });
  }

  std::shared_ptr<host::Document> Item(std::int32_t index) override {
    return Guarded(*core_, [&] {
      CheckIndex(index, core_->documents.size());
      return MakeDocumentObject(core_, core_->documents[static_cast<std::size_t>(index)]);
    });
  }

  std::shared_ptr<host::Document> Open(const std::string& fileName, bool readOnly) override {
    return Guarded(*core_, [&] {
      Drawing drawing = LoadOrReport(fileName);
      // The external-reference log is written when the host-wide XREFCTL
      // asks for it at the time of opening.
      if (host::SysVarAsInteger(core_->hostVariables.at("XREFCTL")) > 0) {
        WriteXrefLog(drawing, core_->options.xrefLimits);
      }
      auto doc = core_->AddDocument(fileName, std::move(drawing), readOnly);
      ReportUnusableImages(*core_, *doc);
      ReportXrefsLeftOut(*core_, *doc);
      return MakeDocumentObject(core_, doc);
    });
  }

 private:
  // Loads a drawing; a drawing that is there but cannot be read is also
  // named, with the reason, on the progress display and in the host's log,
  // since the caller only logs that the open failed.
  Drawing LoadOrReport(const std::string& fileName) {
    try {
      return core_->LoadDrawing(fileName);
    } catch (const host::Error& error) {
      if (error.number() != host::kFileNotFound) {
        core_->options.progress->PlotFailed(error.description());
        core_->WriteLog(HostLogFile(*core_, fileName), error.description());
      }
      throw;
    }
  }

  std::shared_ptr<HostCore> core_;
};

class PreferencesObject : public EmbeddedPreferences {
 public:
  explicit PreferencesObject(std::shared_ptr<HostCore> core) : core_(std::move(core)) {}

  std::string PrinterConfigPath() override {
    return Guarded(*core_, [&] { return core_->printerConfigPath; });
  }
  void SetPrinterConfigPath(const std::string& path) override {
    Guarded(*core_, [&] { core_->printerConfigPath = path; });
  }
  std::string PlotStylePath() override {
    return Guarded(*core_, [&] { return core_->plotStylePath; });
  }
  void SetPlotStylePath(const std::string& path) override {
    Guarded(*core_, [&] { core_->plotStylePath = path; });
  }
  std::string SupportPath() override {
    return Guarded(*core_, [&] { return core_->supportPath; });
  }
  void SetSupportPath(const std::string& path) override {
    Guarded(*core_, [&] { core_->supportPath = path; });
  }
  std::string LogFilePath() override {
    return Guarded(*core_, [&] { return core_->logFilePath; });
  }
  void SetLogFilePath(const std::string& folder) override {
    Guarded(*core_, [&] { core_->logFilePath = folder; });
  }
  bool LogFileOn() override {
    return Guarded(*core_, [&] { return core_->logFileOn; });
  }
  void SetLogFileOn(bool on) override {
    Guarded(*core_, [&] {
      if (on && !core_->logFileOn) core_->RestartLogs();
      core_->logFileOn = on;
    });
  }
  std::string DwgConverter() override {
    return Guarded(*core_, [&] { return core_->dwgConverter; });
  }
  void SetDwgConverter(const std::string& converter) override {
    Guarded(*core_, [&] { core_->dwgConverter = converter; });
  }
  std::string FallbackDevice() override {
    return Guarded(*core_, [&] { return core_->fallbackDevice; });
  }
  void SetFallbackDevice(const std::string& device) override {
    Guarded(*core_, [&] { core_->fallbackDevice = device; });
  }

 private:
  std::shared_ptr<HostCore> core_;
};

class StateObject : public host::State {
 public:
  explicit StateObject(std::shared_ptr<HostCore> core) : core_(std::move(core)) {}
  // Every call runs to its end before it returns.
  bool IsQuiescent() override {
    return Guarded(*core_, [] { return true; });
  }

 private:
  std::shared_ptr<HostCore> core_;
};

class ApplicationObject : public host::Application {
 public:
  explicit ApplicationObject(std::shared_ptr<HostCore> core) : core_(std::move(core)) {}

  bool Visible() override {
    return Guarded(*core_, [&] { return core_->visible; });
  }
  void SetVisible(bool visible) override {
    Guarded(*core_, [&] { core_->visible = visible; });
  }
  std::string Path() override {
    return Guarded(*core_, [&] { return core_->options.dataFolder; });
  }
  std::int32_t Width() override {
    return Guarded(*core_, [&] { return core_->width; });
  }
  void SetWidth(std::int32_t width) override {
    Guarded(*core_, [&] { core_->width = width; });
  }
  std::int32_t Height() override {
    return Guarded(*core_, [&] { return core_->height; });
  }
  void SetHeight(std::int32_t height) override {
    Guarded(*core_, [&] { core_->height = height; });
  }

  std::shared_ptr<host::Document> ActiveDocument() override {
    return Guarded(*core_, [&] {
      if (!core_->active) throw host::Error(msg::kObjectClosed, msg::NoActiveDocument());
      return MakeDocumentObject(core_, core_->active);
    });
  }
  std::shared_ptr<host::Documents> GetDocuments() override {
    return Guarded(*core_, [&] { return std::make_shared<DocumentsObject>(core_); });
  }
  std::shared_ptr<host::Preferences> GetPreferences() override {
    return Guarded(*core_, [&] { return std::make_shared<PreferencesObject>(core_); });
  }
  std::shared_ptr<host::State> GetOrvaState() override {
    return Guarded(*core_, [&] { return std::make_shared<StateObject>(core_); });
  }

  void Update() override {
    Guarded(*core_, [] {});
  }

  void Quit() override {
    Guarded(*core_, [&] {
      while (!core_->documents.empty()) core_->RemoveDocument(core_->documents.front());
      if (core_->batch.started) core_->options.progress->Finish();
      core_->batch = BatchState{};
      if (core_->combined) core_->combined->Close();
      core_->conversions.Clear();
      core_->quit = true;
    });
  }

 private:
  std::shared_ptr<HostCore> core_;
};

}  // namespace

std::shared_ptr<host::Application> MakeEmbeddedHost(EmbeddedHostOptions options) {
  auto core = std::make_shared<HostCore>(std::move(options));
  auto untitled = core->AddDocument(msg::kUntitledDrawing, UntitledDrawing(), false);
  untitled->untitled = true;
  core->active = untitled;
  return std::make_shared<ApplicationObject>(core);
}

}  // namespace sheafwork::embedded
