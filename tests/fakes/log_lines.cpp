#include "fakes/log_lines.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "fakes/temp_folder.h"
#include "text/windows1252.h"

namespace sheafwork::testing {

std::vector<std::string> ReadLogLines(const std::string& path) {
  const std::string text = Windows1252ToUtf8(TempFolder::Read(path));
  std::vector<std::string> lines;
  for (std::size_t pos = 0; pos < text.size();) {
    const auto end = text.find("\r\n", pos);
    if (end == std::string::npos) {
      ADD_FAILURE() << path << ": unterminated line: " << text.substr(pos);
      break;
    }
    lines.push_back(text.substr(pos, end - pos));
    pos = end + 2;
  }
  return lines;
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  for (std::size_t pos = 0; pos < text.size();) {
    const std::size_t end = std::min(text.find('\n', pos), text.size());
    std::string_view line = text.substr(pos, end - pos);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.emplace_back(line);
    pos = end + 1;
  }
  return lines;
}

}  // namespace sheafwork::testing
