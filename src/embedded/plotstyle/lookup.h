#pragma once
// Finding the plot style table a layout names.

#include <optional>
#include <string>
#include <vector>

namespace sheafwork::embedded {

/// Whether `name` is a named plot style table (.stb), which is not applied.
bool IsNamedPlotStyleTable(const std::string& name);

/// The file of table `name`: as given when that file exists, else its file
/// name in each folder of the ";"-separated `searchPath` in turn (a file
/// whose name differs only in letter case will do). A name given with a
/// folder of another system ("C:\...\x.ctb") is looked up by its file name.
/// nullopt when found nowhere.
std::optional<std::string> FindPlotStyleFile(const std::string& name,
                                             const std::string& searchPath);

/// The file names of the plot style tables (.ctb, .stb) in the folders of
/// `searchPath`, in name order, each name once (letter case aside).
std::vector<std::string> PlotStyleFileNames(const std::string& searchPath);

}  // namespace sheafwork::embedded
