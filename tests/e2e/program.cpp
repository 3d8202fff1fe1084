#include "e2e/program.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include <sys/wait.h>

namespace sheafwork::e2e {

namespace fs = std::filesystem;

std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (char c : text) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}

ProgramRun Sheafwork(const std::string& args, const testing::TempFolder& folder) {
  const std::string out = folder.File("stdout.txt");
  const std::string err = folder.File("stderr.txt");
  const std::string command =
      "env -u DISPLAY -u WAYLAND_DISPLAY XDG_DATA_HOME=" + Quoted(folder.File("xdg")) + " " +
      Quoted(SHEAFWORK_EXE) + " " + args + " </dev/null >" + Quoted(out) + " 2>" + Quoted(err);
  ProgramRun run;
  const int raw = std::system(command.c_str());
  run.status = raw != -1 && WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  run.out = testing::TempFolder::Read(out);
  run.err = testing::TempFolder::Read(err);
  return run;
}

std::string CopyExamplePlans(const testing::TempFolder& folder) {
  const fs::path plans = folder.path() / "plans";
  fs::create_directories(plans);
  for (const auto& entry :
       fs::directory_iterator(fs::path(SHEAFWORK_SOURCE_DIR) / "examples/plans")) {
    fs::copy_file(entry.path(), plans / entry.path().filename());
  }
  return plans.string();
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(std::move(line));
    start = end + 1;
  }
  return lines;
}

namespace {

// The number after `pos`, skipping blanks; advances `pos`.
double NumberAt(const std::string& s, std::size_t& pos) {
  while (pos < s.size() && (s[pos] == ' ' || s[pos] == '\n' || s[pos] == '\r')) ++pos;
  const char* start = s.c_str() + pos;
  char* end = nullptr;
  const double value = std::strtod(start, &end);
  pos += static_cast<std::size_t>(end - start);
  return value;
}

}  // namespace

PdfPages ReadPdfPages(const std::string& path) {
  const std::string bytes = testing::TempFolder::Read(path);
  PdfPages pages;
  for (std::string_view type : {"/Type /Page", "/Type/Page"}) {
    for (std::size_t pos = bytes.find(type); pos != std::string::npos;
         pos = bytes.find(type, pos + 1)) {
      const std::size_t after = pos + type.size();
      if (after < bytes.size() && bytes[after] != 's') ++pages.count;
    }
  }
  for (std::size_t pos = bytes.find("/MediaBox"); pos != std::string::npos;
       pos = bytes.find("/MediaBox", pos + 1)) {
    std::size_t p = bytes.find('[', pos);
    if (p == std::string::npos) break;
    ++p;
    const double x0 = NumberAt(bytes, p);
    const double y0 = NumberAt(bytes, p);
    const double x1 = NumberAt(bytes, p);
    const double y1 = NumberAt(bytes, p);
    pages.mediaBoxes.emplace_back(x1 - x0, y1 - y0);
  }
  return pages;
}

std::string PlotOutput(const std::string& stem) {
  if (fs::is_regular_file(stem)) return stem;
  if (fs::is_regular_file(stem + ".pdf")) return stem + ".pdf";
  return {};
}

}  // namespace sheafwork::e2e
