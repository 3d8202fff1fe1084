// The plot object of a document: batch mode and plotting the active layout.

#include <filesystem>
#include <new>
#include <system_error>

#include "embedded/automation/objects.h"
#include "embedded/automation/output_names.h"
#include "embedded/automation/plot_configuration.h"
#include "embedded/automation/plot_styles.h"
#include "embedded/automation/sheet_paper.h"
#include "embedded/automation/variables.h"
#include "embedded/model/undrawn.h"
#include "embedded/plotstyle/plot_style_file.h"
#include "log/wide_path.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork::embedded {

namespace fs = std::filesystem;
namespace msg = host_messages;

namespace {

// A layout's name as part of a file name.
std::string FileNamePart(std::string name) {
  for (char& c : name) {
    if (c == '/' || c == '\\') c = '_';
  }
  return name;
}

// The kind of file a device's driver writes; a printer's plot to a file is
// a PDF file.
OutputKind FileOutput(DeviceDriver driver) {
  switch (driver) {
    case DeviceDriver::Png:
      return OutputKind::Png;
    case DeviceDriver::Svg:
      return OutputKind::Svg;
    case DeviceDriver::Hpgl:
      return OutputKind::Hpgl;
    case DeviceDriver::Pdf:
    case DeviceDriver::Printer:
      break;
  }
  return OutputKind::Pdf;
}

class PlotObject : public host::Plot {
 public:
  PlotObject(std::shared_ptr<HostCore> core, std::shared_ptr<DocumentState> doc)
      : core_(std::move(core)), doc_(std::move(doc)) {}

  // The host never asks anything, quiet or not.
  void SetQuietErrorMode(bool) override {
    Guarded(*core_, *doc_, [] {});
  }

  void SetNumberOfCopies(std::int16_t copies) override {
    Guarded(*core_, *doc_, [&] {
      if (copies < 1) throw host::Error(msg::kInvalidArgument, msg::BadCopies(copies));
      doc_->copies = copies;
    });
  }

  void StartBatchMode(std::int16_t& count) override {
    Guarded(*core_, *doc_, [&] {
      BatchState& batch = core_->batch;
      batch = BatchState{true, true, count, 0};
      core_->options.progress->Start(count);
    });
  }

  bool SheafworkProgress() override {
    return Guarded(*core_, *doc_, [&] {
      BatchState& batch = core_->batch;
      if (batch.started && batch.going && core_->options.progress->Cancelled()) Stop();
      return batch.going;
    });
  }

  void SetSheafworkProgress(bool going) override {
    Guarded(*core_, *doc_, [&] {
      if (!going) {
        Stop();
      } else {
        core_->batch.going = true;
      }
    });
  }

  bool PlotToDevice(const std::optional<std::string>& device) override {
    return Guarded(*core_, *doc_, [&] { return PlotActiveLayout(std::nullopt, device); });
  }

  bool PlotToFile(const std::string& fileName, const std::optional<std::string>& device) override {
    return Guarded(*core_, *doc_, [&] { return PlotActiveLayout(fileName, device); });
  }

 private:
  void Stop() {
    BatchState& batch = core_->batch;
    if (batch.started) {
      core_->options.progress->Finish();
      // The batch is over: so are the combined PDF and the drawings
      // converted for it.
      if (core_->combined) core_->combined->Close();
      core_->conversions.Clear();
    }
    batch.started = false;
    batch.going = false;
  }

  // Plots the active layout; the outcome, success or failure with its
  // reason, goes to the host's log.
  //
  // The device is the one given, else the layout's own. "Aucun", and a
  // layout's own device that this machine does not have, give way to the
  // host's fallback device; which one stood in for which goes to the log
  // (and, for a missing device, to the display). A device given that does
  // not exist fails the plot.
  bool PlotActiveLayout(const std::optional<std::string>& file,
                        const std::optional<std::string>& deviceArgument) {
    DocumentState& doc = *doc_;
    const Layout& layout = doc.ActiveLayout();
    const std::string drawingName = PathText(FsPath(doc.fullName).filename());
    const std::string layoutName =
        layout.IsModel() ? CachedText<ids::kModelTabName>() : layout.name;
    const bool given = deviceArgument && !deviceArgument->empty();
    const std::string deviceName = given ? *deviceArgument : layout.settings.configName;
    std::string shownDevice = IsNoDevice(deviceName) ? CachedText<ids::kNoDevice>() : deviceName;

    BatchState& batch = core_->batch;
    if (batch.started) {
      core_->options.progress->Step(drawingName, layoutName, ++batch.done, batch.total);
    }
    const std::string logFile = HostLogFile(*core_, doc);
    const auto fail = [&](const std::string& reason) {
      const std::string line = msg::PlotFailed(doc.fullName, layoutName, shownDevice, reason);
      core_->WriteLog(logFile, line);
      core_->options.progress->PlotFailed(line);
      return false;
    };

    if (!layout.blockError.empty()) return fail(layout.blockError);
    std::optional<PlotDevice> device;
    bool standsIn = false;
    try {
      if (!IsNoDevice(deviceName)) device = core_->FindDevice(deviceName);
      if (!device && given && !IsNoDevice(deviceName)) {
        return fail(msg::DeviceNotFound(deviceName));
      }
      if (!device) {
        const std::string& fallback = core_->fallbackDevice;
        if (!IsNoDevice(fallback)) device = core_->FindDevice(fallback);
        if (!device) return fail(msg::NoFallbackDevice(fallback));
        standsIn = true;
      }
    } catch (const DeviceError& error) {
      return fail(error.what());
    }
    if (standsIn) {
      const bool missing = !IsNoDevice(deviceName);
      const std::string line =
          msg::DeviceStandsIn(doc.fullName, layoutName, shownDevice, device->name, missing);
      core_->WriteLog(logFile, line);
      if (missing) core_->options.progress->Notice(line);
      shownDevice = device->name;
    }

    PlotJob job;
    job.settings = layout.settings;
    // The layout's own sheet on its own device; on another device the
    // device's paper of that name or size. A layout never set up gets the
    // default paper of the device it ends up with.
    if (standsIn || deviceName != layout.settings.configName || !job.settings.HasUsablePaper()) {
      const std::string stored = PaperForLog(job.settings);
      if (FitPaperToDevice(job.settings, device->config) == PaperFit::Default) {
        core_->WriteLog(logFile, msg::DefaultPaperUsed(doc.fullName, layoutName, stored,
                                                       shownDevice, job.settings.mediaName));
      }
    }
    job.drawing = &doc.drawing;
    job.layout = &layout;
    job.resolutionDpi = device->config.resolutionDpi;
    job.title = drawingName + " - " + layoutName;
    job.drawingName = drawingName;
    job.layoutName = layoutName;
    job.copies = doc.copies;
    job.fontSearchPath = core_->supportPath;
    std::string output;
    if (device->WritesFiles() || file) {
      output = OutputFile(file, *device, layoutName);
      const fs::path folder = FsPath(output).parent_path();
      std::error_code ec;
      if (!folder.empty() && !fs::is_directory(folder, ec)) {
        return fail(msg::NoOutputFolder(PathText(folder)));
      }
      job.output = FileOutput(device->config.driver);
      job.outputPath = output;
    } else {
      job.output = OutputKind::Printer;
      job.printerName = device->PrinterName();
      output = msg::PrinterOutput(job.printerName);
    }

    try {
      job.plotStyles = LayoutPlotStyles(*core_, doc, layoutName, job.settings);
    } catch (const PlotStyleError& error) {
      return fail(error.what());
    }
    job.work.entityLimit = core_->options.sheetEntityLimit;
    job.work.cancelled = [progress = core_->options.progress] { return progress->Cancelled(); };
    try {
      core_->options.plotter(job);
    } catch (const std::bad_alloc&) {
      return fail(msg::OutOfMemory());
    } catch (const std::exception& error) {
      // Stopped by the user: not a failure of the sheet; the caller learns
      // it from SheafworkProgress.
      if (batch.started && core_->options.progress->Cancelled()) {
        core_->WriteLog(logFile, msg::PlotCancelled(doc.fullName, layoutName, shownDevice));
        return false;
      }
      return fail(error.what());
    }
    if (core_->combined) core_->combined->Add(job);
    core_->WriteLog(logFile, msg::PlotDone(doc.fullName, layoutName, shownDevice, output));
    if (const auto undrawn = UndrawnEntities(doc.drawing, layout); !undrawn.empty()) {
      const std::string line =
          msg::UndrawnEntities(doc.fullName, layoutName, FormatUndrawn(undrawn));
      core_->WriteLog(logFile, line);
      core_->options.progress->Notice(line);
    }
    return true;
  }

  // The file a plot writes: with an output folder in the options
  // "<drawing>-<layout>.<extension>" there, a name of its own; else the name
  // given, with the device's extension when it has none; without a name
  // "<drawing>-<layout>.<extension>" in the device's output folder, else
  // beside the drawing.
  std::string OutputFile(const std::optional<std::string>& file, const PlotDevice& device,
                         const std::string& layoutName) const {
    const std::string& extension = device.config.extension;
    if (file && core_->options.outputFolder.empty()) {
      if (!FsPath(*file).extension().empty() || extension.empty()) return *file;
      return *file + "." + extension;
    }
    const std::string stem =
        PathText(FsPath(doc_->fullName).stem()) + "-" + FileNamePart(layoutName);
    const std::string dot = extension.empty() ? "" : "." + extension;
    if (!core_->options.outputFolder.empty()) {
      const std::string base = PathText(FsPath(core_->options.outputFolder) / FsPath(stem));
      if (core_->options.outputName) return core_->options.outputName(base, dot);
      return TakeOutputName(core_->outputsTaken, base, dot);
    }
    fs::path folder = device.config.outputFolder;
    if (folder.empty()) folder = FsPath(doc_->fullName).parent_path();
    if (folder.empty()) folder = core_->options.userFolder;
    return PathText(folder / FsPath(stem + dot));
  }

  std::shared_ptr<HostCore> core_;
  std::shared_ptr<DocumentState> doc_;
};

}  // namespace

std::shared_ptr<host::Plot> MakePlotObject(std::shared_ptr<HostCore> core,
                                           std::shared_ptr<DocumentState> doc) {
  return std::make_shared<PlotObject>(std::move(core), std::move(doc));
}

}  // namespace sheafwork::embedded
