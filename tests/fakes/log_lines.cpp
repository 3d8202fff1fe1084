#include "fakes/log_lines.h"

#include <gtest/gtest.h>

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

}  // namespace sheafwork::testing
