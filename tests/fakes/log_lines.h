#pragma once
// Reading back what the program wrote to a log or results file.

#include <string>
#include <string_view>
#include <vector>

namespace sheafwork::testing {

/// The lines of a Windows-1252 file with CR LF line ends, in UTF-8. A last
/// line without its CR LF fails the test. Empty when the file does not exist.
std::vector<std::string> ReadLogLines(const std::string& path);

/// The lines of `text` split at LF, a CR before it dropped.
std::vector<std::string> SplitLines(std::string_view text);

}  // namespace sheafwork::testing
