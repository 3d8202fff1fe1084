#pragma once
// What the main list shows of an entry: five columns, the same in the window
// and in the command line's report.

#include <array>
#include <string>

namespace sheafwork {

struct BatchEntry;

inline constexpr int kListColumns = 5;

/// The entry as the list shows it and as a run uses it: an empty Layout is
/// the current tab ("*Onglet courant*"), an empty PlotSetup or PlotDevice is
/// "Par défaut".
BatchEntry EntryAsShown(const BatchEntry& entry);

/// The five texts of an entry's row: file name, folder, layout ("*Onglet
/// courant*" when empty), page setup and device ("Par défaut" when empty).
std::array<std::string, kListColumns> ListRowTexts(const BatchEntry& entry);

/// The heading of column 0 to 4.
std::string ListColumnTitle(int column);

}  // namespace sheafwork
