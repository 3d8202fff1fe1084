#pragma once
// Reading back what the program wrote to a log or results file.

#include <string>
#include <vector>

namespace sheafwork::testing {

/// The lines of a Windows-1252 file with CR LF line ends, in UTF-8. A last
/// line without its CR LF fails the test. Empty when the file does not exist.
std::vector<std::string> ReadLogLines(const std::string& path);

}  // namespace sheafwork::testing
