#include "embedded/devices/plotter_config.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>

#include "embedded/devices/messages.h"
#include "log/regular_file.h"
#include "text/paper_names.h"
#include "text/windows1252.h"

namespace sheafwork::embedded {

namespace msg = device_messages;

namespace {

std::string_view Trim(std::string_view s) {
  const auto first = s.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  const auto last = s.find_last_not_of(" \t");
  return s.substr(first, last - first + 1);
}

std::optional<double> ParseNumber(std::string_view text) {
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [ptr, ec] = std::from_chars(text.data(), end, value);
  if (text.empty() || ec != std::errc() || ptr != end || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

// The blank-separated words of `text`.
std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  std::size_t pos = 0;
  while (true) {
    pos = text.find_first_not_of(" \t", pos);
    if (pos == std::string_view::npos) break;
    const auto end = std::min(text.find_first_of(" \t", pos), text.size());
    words.push_back(text.substr(pos, end - pos));
    pos = end;
  }
  return words;
}

std::optional<DeviceDriver> ParseDriver(std::string_view name) {
  for (DeviceDriver driver : {DeviceDriver::Pdf, DeviceDriver::Png, DeviceDriver::Svg,
                              DeviceDriver::Hpgl, DeviceDriver::Printer}) {
    if (DriverName(driver) == name) return driver;
  }
  return std::nullopt;
}

std::string DefaultExtension(DeviceDriver driver) {
  switch (driver) {
    case DeviceDriver::Pdf:
      return "pdf";
    case DeviceDriver::Png:
      return "png";
    case DeviceDriver::Svg:
      return "svg";
    case DeviceDriver::Hpgl:
      return "plt";
    case DeviceDriver::Printer:
      return "pdf";  // a printer's plot to a file is a PDF file
  }
  return "pdf";
}

// "<width> x <height>", the "x" with or without blanks around it.
std::optional<std::pair<double, double>> ParseSize(std::string_view text) {
  const auto x = text.find_first_of("xX");
  if (x == std::string_view::npos) return std::nullopt;
  const auto width = ParseNumber(Trim(text.substr(0, x)));
  const auto height = ParseNumber(Trim(text.substr(x + 1)));
  if (!width || !height || *width <= 0 || *height <= 0) return std::nullopt;
  return std::make_pair(*width, *height);
}

class Parser {
 public:
  explicit Parser(const std::string& fileName) : file_(fileName) {}

  PlotterConfig Parse(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    if (!IsValidUtf8(text)) throw DeviceError(msg::InFile(file_, msg::NotUtf8()));
    int number = 0;
    std::size_t pos = 0;
    while (pos < text.size()) {
      const auto end = std::min(text.find('\n', pos), text.size());
      std::string_view line = text.substr(pos, end - pos);
      if (line.ends_with('\r')) line.remove_suffix(1);
      pos = end + 1;
      ++number;
      Line(Trim(line), number);
    }
    return Finish();
  }

 private:
  [[noreturn]] void Fail(int line, std::string_view what) const {
    throw DeviceError(msg::AtLine(file_, line, what));
  }

  void Line(std::string_view line, int number) {
    if (line.empty() || line.front() == '#' || line.front() == ';') return;
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) Fail(number, msg::NotKeyValue());
    const std::string key(Trim(line.substr(0, equals)));
    const std::string_view value = Trim(line.substr(equals + 1));
    if (key.empty()) Fail(number, msg::NotKeyValue());
    if (key == "paper") {
      Paper(value, number);
      return;
    }
    if (!seen_.insert(key).second && IsKnown(key)) Fail(number, msg::RepeatedKey(key));
    if (key == "driver") {
      const auto driver = ParseDriver(value);
      if (!driver) Fail(number, msg::UnknownDriver(value));
      config_.driver = *driver;
    } else if (key == "description") {
      config_.description = value;
    } else if (key == "resolution") {
      int dpi = 0;
      const char* end = value.data() + value.size();
      const auto [ptr, ec] = std::from_chars(value.data(), end, dpi);
      if (value.empty() || ec != std::errc() || ptr != end || dpi < 1 || dpi > 9600) {
        Fail(number, msg::BadResolution(value));
      }
      config_.resolutionDpi = dpi;
    } else if (key == "extension") {
      config_.extension = value.starts_with('.') ? value.substr(1) : value;
    } else if (key == "output-folder") {
      config_.outputFolder = value;
    } else if (key == "printer") {
      config_.printer = value;
    } else if (key == "default-paper") {
      config_.defaultPaper = value;
      defaultPaperLine_ = number;
    } else {
      Fail(number, msg::UnknownKey(key));
    }
  }

  static bool IsKnown(const std::string& key) {
    static const std::set<std::string> known = {"driver",       "description",   "resolution",
                                                "extension",    "output-folder", "printer",
                                                "default-paper"};
    return known.contains(key);
  }

  void Paper(std::string_view value, int number) {
    std::vector<std::string_view> parts;
    std::size_t pos = 0;
    while (true) {
      const auto bar = value.find('|', pos);
      parts.push_back(Trim(value.substr(pos, bar == std::string_view::npos ? bar : bar - pos)));
      if (bar == std::string_view::npos) break;
      pos = bar + 1;
    }
    if (parts.size() < 2 || parts.size() > 3 || parts[0].empty()) {
      Fail(number, msg::BadPaper(value));
    }
    embedded::Paper paper;
    paper.name = parts[0];
    const auto size = ParseSize(parts[1]);
    if (!size) Fail(number, msg::BadPaperSize(parts[1]));
    paper.width = size->first;
    paper.height = size->second;
    if (parts.size() == 3) {
      const auto words = Words(parts[2]);
      std::array<double, 4> margins{};
      if (words.size() != margins.size()) Fail(number, msg::BadMargins(parts[2]));
      for (std::size_t i = 0; i < margins.size(); ++i) {
        const auto margin = ParseNumber(words[i]);
        if (!margin || *margin < 0) Fail(number, msg::BadMargins(parts[2]));
        margins[i] = *margin;
      }
      if (margins[0] + margins[2] >= paper.width || margins[1] + margins[3] >= paper.height) {
        Fail(number, msg::BadMargins(parts[2]));
      }
      paper.marginLeft = margins[0];
      paper.marginBottom = margins[1];
      paper.marginRight = margins[2];
      paper.marginTop = margins[3];
    }
    // A set of the names so far: looking each new one up among the papers
    // made a file of many papers take quadratic time.
    if (!paperNames_.insert(paper.name).second) Fail(number, msg::RepeatedPaper(paper.name));
    config_.papers.push_back(std::move(paper));
  }

  PlotterConfig Finish() {
    if (!seen_.contains("driver")) throw DeviceError(msg::InFile(file_, msg::MissingDriver()));
    if (config_.driver == DeviceDriver::Printer) {
      if (config_.printer.empty()) throw DeviceError(msg::InFile(file_, msg::MissingPrinter()));
      if (config_.papers.empty()) config_.papers = StandardPrinterPapers();
    } else if (config_.papers.empty()) {
      throw DeviceError(msg::InFile(file_, msg::NoPaper()));
    }
    if (config_.defaultPaper.empty()) {
      config_.defaultPaper = config_.papers.front().name;
    } else if (!config_.FindPaper(config_.defaultPaper)) {
      Fail(defaultPaperLine_, msg::UnknownDefaultPaper(config_.defaultPaper));
    }
    if (config_.extension.empty()) config_.extension = DefaultExtension(config_.driver);
    return std::move(config_);
  }

  const std::string& file_;
  PlotterConfig config_;
  std::set<std::string> seen_;
  std::unordered_set<std::string> paperNames_;
  int defaultPaperLine_ = 0;
};

}  // namespace

const Paper* PlotterConfig::FindPaper(std::string_view name) const {
  const auto it =
      std::find_if(papers.begin(), papers.end(), [&](const Paper& p) { return p.name == name; });
  return it == papers.end() ? nullptr : &*it;
}

const Paper* PlotterConfig::MatchPaper(std::string_view name, double width, double height) const {
  if (const Paper* paper = FindPaper(name)) return paper;
  constexpr double kSizeTolerance = 0.5;  // mm
  const bool sized = width > 0 && height > 0;
  const auto fits = [&](const Paper& paper, bool turned) {
    const auto near = [](double a, double b) { return std::abs(a - b) <= kSizeTolerance; };
    return sized && near(paper.width, turned ? height : width) &&
           near(paper.height, turned ? width : height);
  };
  // Among papers of the same name, the one of the stored size and
  // orientation ("ISO A2" portrait is "ISO A2 (420.00 x 594.00 mm)").
  const Paper* sameName = nullptr;
  for (const Paper& paper : papers) {
    if (!SamePaperName(paper.name, name)) continue;
    if (fits(paper, false)) return &paper;
    if (sameName == nullptr) sameName = &paper;
  }
  if (sameName != nullptr) return sameName;
  for (const bool turned : {false, true}) {
    for (const Paper& paper : papers) {
      if (fits(paper, turned)) return &paper;
    }
  }
  return nullptr;
}

const Paper* PlotterConfig::DefaultPaper() const {
  if (const Paper* paper = FindPaper(defaultPaper)) return paper;
  return papers.empty() ? nullptr : &papers.front();
}

std::string_view DriverName(DeviceDriver driver) {
  switch (driver) {
    case DeviceDriver::Pdf:
      return "pdf";
    case DeviceDriver::Png:
      return "png";
    case DeviceDriver::Svg:
      return "svg";
    case DeviceDriver::Hpgl:
      return "hpgl";
    case DeviceDriver::Printer:
      return "printer";
  }
  return "pdf";
}

PlotterConfig ParsePlotterConfig(std::string_view text, const std::string& fileName) {
  return Parser(fileName).Parse(text);
}

PlotterConfig ReadPlotterConfigFile(const std::string& path) {
  const RegularFileRead file = ReadRegularFile(path, kTextInputLimit);
  if (!file.ok) throw DeviceError(msg::InFile(path, msg::CannotRead(file.reason)));
  return ParsePlotterConfig(file.bytes, path);
}

std::vector<Paper> StandardPrinterPapers() {
  struct Size {
    const char* name;
    double width;
    double height;
    const char* unit;
  };
  static const Size sizes[] = {
      {"ISO A4", 210, 297, "mm"},   {"ISO A3", 297, 420, "mm"},   {"ANSI A", 8.5, 11, "pouces"},
      {"ANSI B", 11, 17, "pouces"}, {"Legal", 8.5, 14, "pouces"},
  };
  std::vector<Paper> papers;
  for (const Size& size : sizes) {
    const double scale = std::string_view(size.unit) == "mm" ? 1 : 25.4;
    for (const bool portrait : {true, false}) {
      const double w = portrait ? size.width : size.height;
      const double h = portrait ? size.height : size.width;
      char name[96];
      std::snprintf(name, sizeof name, "%s (%.2f x %.2f %s)", size.name, w, h, size.unit);
      papers.push_back({name, w * scale, h * scale, 5, 5, 5, 5});
    }
  }
  return papers;
}

}  // namespace sheafwork::embedded
