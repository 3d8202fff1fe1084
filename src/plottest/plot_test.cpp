#include "plottest/plot_test.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "batch/list_row.h"
#include "host/error.h"
#include "host/sysvar.h"
#include "log/paths.h"
#include "log/wide_path.h"
#include "plotcfg/devices.h"
#include "plotcfg/error_output.h"
#include "plotcfg/layout_setup.h"
#include "plotcfg/page_setup.h"
#include "plotcfg/plot_style_check.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"
#include "text/utf8.h"
#include "text/windows1252.h"

namespace sheafwork {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

// The characters of `s` with their letter case folded, for searching.
std::u32string Folded(std::string_view s) {
  std::u32string out;
  for (std::size_t pos = 0; pos < s.size();) {
    const DecodedChar d = DecodeUtf8(s, pos);
    out.push_back(d.valid ? FoldCase(d.codePoint) : kMalformedByte + d.codePoint);
    pos += d.length;
  }
  return out;
}

bool ContainsIgnoreCase(std::string_view s, std::string_view part) {
  return Folded(s).find(Folded(part)) != std::u32string::npos;
}

// A font file counts as TrueType when its last four characters, trimmed, are
// ".ttf"; a blank after the extension therefore makes it a shape file.
bool IsTrueTypeFont(std::string_view fontFile) {
  return EqualsIgnoreCase(TrimSpaces(LastChars(fontFile, 4)), ".ttf");
}

// The lines of a text file as UTF-8: a valid UTF-8 file (byte-order mark
// dropped) is taken as it stands, any other as Windows-1252. Lines may end in
// CR LF, LF or CR. Nullopt when the file cannot be read.
std::optional<std::vector<std::string>> ReadTextLines(const std::string& path) {
  std::ifstream in(FsPath(path), std::ios::binary);
  if (!in) return std::nullopt;
  std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (in.bad()) return std::nullopt;
  std::string text;
  if (IsValidUtf8(bytes)) {
    text = bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : std::move(bytes);
  } else {
    text = Windows1252ToUtf8(bytes);
  }
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = text.find_first_of("\r\n", start);
    if (end == std::string::npos) {
      lines.push_back(text.substr(start));
      break;
    }
    lines.push_back(text.substr(start, end - start));
    start = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
  }
  return lines;
}

// MM-DD-YYYY, HH:MM:SS
std::string FormatTitleTime(const LocalTime& t) {
  char buffer[96];
  std::snprintf(buffer, sizeof buffer, "%02d-%02d-%04d, %02d:%02d:%02d", t.month, t.day, t.year,
                t.hour, t.minute, t.second);
  return buffer;
}

// One host system variable the scan changes and puts back.
struct ScanVariable {
  const char* name;
  host::SysVarValue scanValue;
  std::optional<host::SysVarValue> saved;  ///< empty when it could not be read
};

// The scan of one list. Where it resumes after a host error: every host call
// sits in a guarded step; a failing step adds lines 149 and 150 and the scan
// goes on with the next step. The steps are
// - in the set-up and the restore: each single read or write of a variable or
//   preference (a value that could not be read is neither changed nor put
//   back), the device count, and the log-file switch before each drawing;
// - for one row: the drawing checks together (a failure ends the drawing
//   checks of that row; the device check still runs and the drawing is still
//   closed), then the device check.
// The device check runs before the drawing is closed, so that the devices of
// the row's own layouts are checked; a drawing that did not open has no
// layouts to check.
class PlotTestScan {
 public:
  PlotTestScan(Session& session, HostSession& host, const PlotTestServices& services)
      : session_(session), host_(host), services_(services) {}

  std::string Run() {
    WriteTitle();
    SetVariables();
    SetLogFile();
    Guard([&] { noDevices_ = NoDevicesAvailable(Preferences(), services_.printers); });
    Line(LoadResourceText(ids::kTestScanningDrawings));
    const int count = session_.List.EntryCount();
    if (count == 0) Line(LoadResourceText(ids::kTestNoDrawings));
    for (int row = 1; row <= count; ++row) {
      const BatchEntry& entry = session_.List.Entry(row);
      if (services_.progress) services_.progress(row, count, entry.FileName);
      ScanRow(entry);
    }
    RestoreLogFile();
    RestoreVariables();
    return std::move(results_);
  }

 private:
  void Line(std::string_view text) {
    results_ += text;
    results_ += kLineEnd;
  }

  // Runs one step; a host error is reported and ends only that step.
  template <typename Step>
  void Guard(Step&& step) {
    try {
      step();
    } catch (const host::Error& error) {
      Line(LoadResourceText(ids::kTestHostFailure));
      Line(host::HostErrorLine(error));
    }
  }

  // The host's preferences, fetched once. Throws host::Error.
  host::Preferences& Preferences() {
    if (!preferences_) preferences_ = host_.App().GetPreferences();
    return *preferences_;
  }

  void WriteTitle() {
    const std::string list =
        session_.ListName.empty() ? LoadResourceText(ids::kUnnamedList) : session_.ListName;
    const LocalTime now = services_.clock ? services_.clock() : LocalTimeNow();
    Line(LoadResourceText(ids::kTestTitle) + list + LoadResourceText(ids::kTestTitleAt) +
         FormatTitleTime(now));
  }

  void SetVariables() {
    std::shared_ptr<host::Document> doc;
    Guard([&] { doc = host_.App().ActiveDocument(); });
    if (doc) {
      for (auto& variable : variables_) {
        Guard([&] { variable.saved = doc->GetVariable(variable.name); });
      }
    }
    std::string line = LoadResourceText(ids::kTestSettingVariables);
    bool first = true;
    for (const auto& variable : variables_) {
      if (variable.saved) Guard([&] { doc->SetVariable(variable.name, variable.scanValue); });
      line += first ? "" : ", ";
      line += variable.name;
      line += " <" + (variable.saved ? host::FormatSysVar(*variable.saved) : std::string()) + ">";
      first = false;
    }
    Line(line);
  }

  void RestoreVariables() {
    std::string line = LoadResourceText(ids::kTestRestoringVariables);
    bool first = true;
    for (const auto& variable : variables_) {
      line += first ? "" : ", ";
      line += variable.name;
      first = false;
    }
    Line(line);
    std::shared_ptr<host::Document> doc;
    for (const auto& variable : variables_) {
      if (!variable.saved) continue;
      Guard([&] {
        if (!doc) doc = host_.App().ActiveDocument();
        doc->SetVariable(variable.name, *variable.saved);
      });
    }
  }

  void SetLogFile() {
    Line(LoadResourceText(ids::kTestSettingLogFile));
    Guard([&] { savedLogFolder_ = Preferences().LogFilePath(); });
    Guard([&] { savedLogFileOn_ = Preferences().LogFileOn(); });
    if (savedLogFolder_) Guard([&] { Preferences().SetLogFilePath(host_.ProgramFolder); });
  }

  void RestoreLogFile() {
    if (savedLogFolder_) Guard([&] { Preferences().SetLogFilePath(*savedLogFolder_); });
    if (savedLogFileOn_) Guard([&] { Preferences().SetLogFileOn(*savedLogFileOn_); });
    Line(LoadResourceText(ids::kTestRestoringLogFile) + "<" +
         savedLogFolder_.value_or(std::string()) + ">");
  }

  void ScanRow(const BatchEntry& row) {
    // Empty fields mean what the list shows for them.
    const BatchEntry shown = EntryAsShown(row);
    const std::string& layout = shown.Layout;
    const std::string& plotSetup = shown.PlotSetup;
    const std::string& device = shown.PlotDevice;

    Line(LoadResourceText(ids::kTestChecking) + row.FileName);
    // A fresh host log for this drawing.
    Guard([&] {
      Preferences().SetLogFileOn(false);
      Preferences().SetLogFileOn(true);
    });
    const OpenResult opened = host_.OpenDrawing(row.FileName);
    if (opened.ok) {
      Guard([&] { CheckDrawing(row.FileName, layout, plotSetup); });
      // Before the drawing is closed, so that the layouts' own devices are
      // those of this drawing.
      Guard([&] { CheckDevice(device, layout, true); });
      Guard([&] { CheckPlotStyles(row.FileName, layout, plotSetup); });
      Guard([&] { CheckUndrawnEntities(); });
      host_.CloseDrawing(row.FileName);
    } else {
      Line(opened.errorNumber == host::kFileNotFound
               ? LoadResourceText(ids::kTestCannotOpen)
               : LoadResourceText(ids::kTestOpenError) + std::to_string(opened.errorNumber));
      Guard([&] { CheckDevice(device, layout, false); });
    }
  }

  void CheckDrawing(const std::string& drawing, const std::string& layout,
                    const std::string& plotSetup) {
    host::Document& doc = host_.Doc();
    CheckXrefLog(drawing);
    doc.GetVariable("LOGFILENAME");  // read as the host expects; its log is not read
    CheckFonts(doc);
    CheckLayout(doc, layout);
    CheckPageSetup(doc, drawing, plotSetup);
  }

  void CheckXrefLog(const std::string& drawing) {
    const std::string logName = XrefLogName(drawing);
    std::optional<std::vector<std::string>> lines;
    if (GetFileStatus(logName) == kFileFound) lines = ReadTextLines(logName);
    if (!lines) {
      Line(LoadResourceText(ids::kTestXrefLogStart) + logName +
           LoadResourceText(ids::kTestXrefLogEnd));
      return;
    }
    const std::string mark = LoadResourceText(ids::kXrefNotFoundMark);
    const std::string leftOut = LoadResourceText(ids::kXrefLeftOutMark);
    for (const auto& line : *lines) {
      if (ContainsIgnoreCase(line, mark)) {
        Line(LoadResourceText(ids::kTestMissingXref) + std::string(TrimSpaces(line)));
      } else if (ContainsIgnoreCase(line, leftOut)) {
        Line(LoadResourceText(ids::kTestXrefLeftOut) + std::string(TrimSpaces(line)));
      }
    }
  }

  // A font is missing when no file of it is found and the host has no way
  // of its own to draw it (a stand-in for a standard shape font). Each style
  // is checked on its own: two styles of one missing font give two lines.
  void CheckFonts(host::Document& doc) {
    auto styles = doc.GetTextStyles();
    const std::int32_t count = styles->Count();
    std::optional<std::string> supportPath;
    for (std::int32_t i = 0; i < count; ++i) {
      auto style = styles->Item(i);
      const std::string fontFile = style->FontFile();
      if (EqualsIgnoreCase(fontFile, "txt")) continue;
      const std::string trimmed(TrimSpaces(fontFile));
      bool found = false;
      if (IsTrueTypeFont(fontFile)) {
        found = services_.fonts.HasFontFile(trimmed);
      } else {
        if (!supportPath) supportPath = Preferences().SupportPath();
        found = FindFileWithExtendedPaths(fontFile, *supportPath);
      }
      if (found || style->FontAvailable()) continue;
      Line(LoadResourceText(ids::kTestMissingFont) + trimmed);
    }
  }

  void CheckLayout(host::Document& doc, const std::string& layout) {
    if (IsSpecialLayout(layout)) return;
    auto layouts = doc.GetLayouts();
    const std::int32_t count = layouts->Count();
    for (std::int32_t i = 0; i < count; ++i) {
      if (layouts->Item(i)->Name() == layout) return;
    }
    Line(LoadResourceText(ids::kTestMissingLayoutStart) + layout +
         LoadResourceText(ids::kTestMissingLayoutEnd));
  }

  // The drawing's page setup named `name`; null when it has none.
  static std::shared_ptr<host::PlotConfiguration> NamedPageSetup(host::Document& doc,
                                                                 const std::string& name) {
    auto setups = doc.GetPlotConfigurations();
    const std::int32_t count = setups->Count();
    for (std::int32_t i = 0; i < count; ++i) {
      auto item = setups->Item(i);
      if (item->Name() == name) return item;
    }
    return nullptr;
  }

  void CheckPageSetup(host::Document& doc, const std::string& drawing,
                      const std::string& plotSetup) {
    if (GetNPSInfoForEntry(plotSetup, drawing).isExternal) return;
    if (IsDefaultPageSetup(plotSetup)) return;
    if (NamedPageSetup(doc, plotSetup)) return;
    Line(LoadResourceText(ids::kTestMissingPageSetupStart) + plotSetup +
         LoadResourceText(ids::kTestMissingPageSetupEnd));
  }

  // What the host will leave out of the drawing's plots, by kind.
  void CheckUndrawnEntities() {
    std::string kinds;
    for (const auto& [kind, count] : host_.Doc().UndrawnEntities()) {
      if (!kinds.empty()) kinds += ", ";
      kinds += kind + " (" + std::to_string(count) + ")";
    }
    if (!kinds.empty()) Line(LoadResourceText(ids::kTestUndrawnEntities) + kinds);
  }

  // The row's device; with `opened`, also the devices of the layouts the row
  // plots when it uses the default device.
  void CheckDevice(const std::string& device, const std::string& layout, bool opened) {
    if (IsPlotterConfigFile(device)) {
      if (!OnThisMachine(device)) Line(LoadResourceText(ids::kMissingPlotterConfig) + device);
      return;
    }
    if (!IsDefaultDevice(device)) {
      if (!OnThisMachine(device)) Line(LoadResourceText(ids::kMissingPrinter) + device);
      return;
    }
    if (noDevices_) Line(LoadResourceText(ids::kNoDeviceAtAll));
    if (opened) CheckLayoutDevices(layout);
  }

  // True when `device`, a plotter configuration or a printer, is here.
  bool OnThisMachine(const std::string& device) {
    if (IsPlotterConfigFile(device)) {
      return FolderFromPath(device).empty()
                 ? FindFileWithExtendedPaths(device, Preferences().PrinterConfigPath())
                 : GetFileStatus(device) == kFileFound;
    }
    for (const auto& printer : UsablePrinters(services_.printers)) {
      if (printer.name == device) return true;
    }
    return false;
  }

  // Calls `visit(name, layout)` for each layout the row plots.
  template <typename Visit>
  void ForEachPlottedLayout(const std::string& layout, Visit&& visit) {
    if (IsAllLayouts(layout)) {
      auto layouts = host_.Doc().GetLayouts();
      const std::int32_t count = layouts->Count();
      for (std::int32_t i = 0; i < count; ++i) {
        auto item = layouts->Item(i);
        const std::string name = item->Name();
        if (name != ModelTabName()) visit(name, *item);
      }
    } else {
      if (!SetupLayout(host_, layout, ErrorOutput::Nowhere())) return;
      auto active = host_.Doc().ActiveLayout();
      visit(active->Name(), *active);
    }
  }

  // Warns about each layout the row plots whose own device is "Aucun", then
  // about each whose own device is not on this machine, which the host
  // replaces with a device of its own.
  void CheckLayoutDevices(const std::string& layout) {
    const std::string none = LoadResourceText(ids::kNoDevice);
    std::vector<std::pair<std::string, std::string>> missing;  // layout, device
    ForEachPlottedLayout(layout, [&](const std::string& name, host::Layout& item) {
      const std::string device = item.ConfigName();
      if (device == none) {
        Line(LoadResourceText(ids::kNoneDeviceStart) + name +
             LoadResourceText(ids::kNoneDeviceEnd));
      } else if (!device.empty() && !OnThisMachine(device)) {
        missing.emplace_back(name, device);
      }
    });
    for (const auto& [name, device] : missing) {
      Line(LoadResourceText(ids::kStandInDeviceStart) + device +
           LoadResourceText(ids::kStandInDeviceLayout) + name +
           LoadResourceText(ids::kStandInDeviceEnd));
    }
  }

  // Warns about each layout the row plots with a plot style table the host
  // does not have: the row's page setup's table when the drawing has that
  // page setup, else the layout's own.
  void CheckPlotStyles(const std::string& drawing, const std::string& layout,
                       const std::string& plotSetup) {
    std::shared_ptr<host::PlotConfiguration> setup;
    if (!IsDefaultPageSetup(plotSetup) && !GetNPSInfoForEntry(plotSetup, drawing).isExternal) {
      setup = NamedPageSetup(host_.Doc(), plotSetup);
    }
    ForEachPlottedLayout(layout, [&](const std::string& name, host::Layout& item) {
      if (const auto missing = MissingPlotStyleTable(setup ? *setup : item)) {
        Line(MissingPlotStyleWarning(*missing, name, drawing));
      }
    });
  }

  Session& session_;
  HostSession& host_;
  const PlotTestServices& services_;
  std::string results_;
  std::shared_ptr<host::Preferences> preferences_;
  std::optional<std::string> savedLogFolder_;
  std::optional<bool> savedLogFileOn_;
  bool noDevices_ = false;
  std::vector<ScanVariable> variables_ = {
      {"XREFCTL", std::int16_t{1}, std::nullopt}, {"FILEDIA", std::int16_t{0}, std::nullopt},
      {"CMDECHO", std::int16_t{1}, std::nullopt}, {"CMDDIA", std::int16_t{0}, std::nullopt},
      {"SHPNAME", std::string(), std::nullopt},
  };
};

}  // namespace

std::string RunPlotTest(Session& session, HostSession& host, const PlotTestServices& services) {
  return PlotTestScan(session, host, services).Run();
}

}  // namespace sheafwork
