#pragma once
// Running a command through the shell from a test, and quoting its words.

#include <string>

namespace sheafwork::testing {

/// `text` as one word for the shell, in single quotes.
std::string Quoted(const std::string& text);

/// Runs a shell command; its standard output and error together, and its
/// exit status in `status`.
std::string RunCommand(const std::string& command, int& status);

}  // namespace sheafwork::testing
