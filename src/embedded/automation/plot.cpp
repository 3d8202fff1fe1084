// The plot object of a document: batch mode and plotting the active layout.

#include <filesystem>
#include <system_error>

#include "embedded/automation/objects.h"
#include "embedded/automation/plot_configuration.h"
#include "embedded/automation/plot_styles.h"
#include "embedded/automation/variables.h"
#include "embedded/model/undrawn.h"
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
      // The batch is over: so is the combined PDF.
      if (core_->combined) core_->combined->Close();
    }
    batch.started = false;
    batch.going = false;
  }

  // Plots the active layout; the outcome, success or failure with its
  // reason, goes to the host's log.
  bool PlotActiveLayout(const std::optional<std::string>& file,
                        const std::optional<std::string>& deviceArgument) {
    DocumentState& doc = *doc_;
    const Layout& layout = doc.ActiveLayout();
    const std::string drawingName = fs::path(doc.fullName).filename().string();
    const std::string layoutName =
        layout.IsModel() ? CachedText<ids::kModelTabName>() : layout.name;
    const std::string deviceName =
        deviceArgument && !deviceArgument->empty() ? *deviceArgument : layout.settings.configName;
    const std::string shownDevice =
        IsNoDevice(deviceName) ? CachedText<ids::kNoDevice>() : deviceName;

    BatchState& batch = core_->batch;
    if (batch.started) {
      core_->options.progress->Step(drawingName, layoutName, ++batch.done, batch.total);
    }
    const auto fail = [&](const std::string& reason) {
      const std::string line = msg::PlotFailed(doc.fullName, layoutName, shownDevice, reason);
      core_->WriteLog(HostLogFile(*core_, doc), line);
      core_->options.progress->PlotFailed(line);
      return false;
    };

    if (IsNoDevice(deviceName)) return fail(msg::NoDeviceForLayout());
    std::optional<PlotDevice> device;
    try {
      device = core_->FindDevice(deviceName);
    } catch (const DeviceError& error) {
      return fail(error.what());
    }
    if (!device) return fail(msg::DeviceNotFound(deviceName));

    PlotJob job;
    job.drawing = &doc.drawing;
    job.layout = &layout;
    job.settings = layout.settings;
    job.resolutionDpi = device->config.resolutionDpi;
    job.title = drawingName + " - " + layoutName;
    job.copies = doc.copies;
    std::string output;
    if (device->WritesFiles() || file) {
      output = OutputFile(file, *device, layoutName);
      const fs::path folder = fs::path(output).parent_path();
      std::error_code ec;
      if (!folder.empty() && !fs::is_directory(folder, ec)) {
        return fail(msg::NoOutputFolder(folder.string()));
      }
      job.output = FileOutput(device->config.driver);
      job.outputPath = output;
    } else {
      job.output = OutputKind::Printer;
      job.printerName = device->PrinterName();
      output = msg::PrinterOutput(job.printerName);
    }

    job.plotStyles = LayoutPlotStyles(*core_, doc, layoutName, job.settings);
    try {
      core_->options.plotter(job);
    } catch (const std::exception& error) {
      return fail(error.what());
    }
    if (core_->combined) core_->combined->Add(job);
    core_->WriteLog(HostLogFile(*core_, doc),
                    msg::PlotDone(doc.fullName, layoutName, shownDevice, output));
    if (const auto undrawn = UndrawnEntities(doc.drawing, layout); !undrawn.empty()) {
      const std::string line =
          msg::UndrawnEntities(doc.fullName, layoutName, FormatUndrawn(undrawn));
      core_->WriteLog(HostLogFile(*core_, doc), line);
      core_->options.progress->PlotWarning(line);
    }
    return true;
  }

  // The file a plot writes: the name given, with the device's extension when
  // it has none; without a name "<drawing>-<layout>.<extension>" in the
  // device's output folder, else beside the drawing.
  std::string OutputFile(const std::optional<std::string>& file, const PlotDevice& device,
                         const std::string& layoutName) const {
    const std::string& extension = device.config.extension;
    if (file) {
      if (!fs::path(*file).extension().empty() || extension.empty()) return *file;
      return *file + "." + extension;
    }
    fs::path folder = device.config.outputFolder;
    if (folder.empty()) folder = fs::path(doc_->fullName).parent_path();
    if (folder.empty()) folder = core_->options.userFolder;
    const std::string stem = fs::path(doc_->fullName).stem().string();
    return (folder / (stem + "-" + FileNamePart(layoutName) + "." + extension)).string();
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
