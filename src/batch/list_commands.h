#pragma once
// The commands of the batch list, as the main window and the command line run
// them: adding and removing drawings, and new, open, append and save list.
// Questions and messages go through the Prompt.

#include <span>
#include <string>
#include <string_view>

namespace sheafwork {

class Prompt;
class Session;
struct BatchEntry;

/// Why a row for `fullPath` cannot be added, in French; empty when it can.
/// The path needs a folder and a name, must be one the list file holds, and
/// the list must have room.
std::string DrawingRowProblem(const Session& session, std::string_view fullPath);

/// Splits `fullPath` into folder and name and, when DrawingRowProblem finds
/// nothing, appends an entry for it (layout and page setup empty) and shows
/// its row. Returns the new entry, or null when the row cannot be added.
BatchEntry* AddDrawingToList(Session& session, std::string_view fullPath);

/// Removes the entries at the 1-based `selected` positions. Two or more ask
/// message 87 first (No keeps them); one is removed without a question.
/// Returns the number removed.
int RemoveSelectedEntries(Session& session, Prompt& prompt, std::span<const int> selected);

/// Removes the entries at the 1-based `rows` positions without a question;
/// positions outside the list and repeats are left out. Returns the number
/// removed.
int RemoveEntries(Session& session, std::span<const int> rows);

/// Moves entry `from` to position `to` (both 1-based and in the list), the
/// entries between shifting by one place. False when either is outside.
bool MoveEntry(Session& session, int from, int to);

/// Asks whether to save a list that holds entries (Yes/No/Cancel); Yes saves
/// first. False when the person cancelled or the save did not succeed.
bool OfferToSaveList(Session& session, Prompt& prompt);

/// New list: offers to save, then empties the list and resets the settings.
bool NewList(Session& session, Prompt& prompt);

/// Open list: offers to save, asks for a list file and reads it, replacing the
/// list. False when nothing was loaded.
bool OpenList(Session& session, Prompt& prompt);

/// Reads the list file `path`, replacing the current list, and shows the
/// message of a failure. Used by the open command and at start-up.
bool LoadListFile(Session& session, Prompt& prompt, const std::string& path);

/// Append list: asks for a list file and adds its entries behind the current
/// ones; the current settings and name stay.
bool AppendList(Session& session, Prompt& prompt);

/// Reads the list file `path` in append mode and shows the message of a failure.
bool AppendListFile(Session& session, Prompt& prompt, const std::string& path);

/// Save list: asks for a file name, makes it a ".qx3" name, and writes the list.
bool SaveList(Session& session, Prompt& prompt);

/// Writes the list to `path` and shows the message of a failure (89 for an
/// empty list, 98 when the file cannot be written).
bool SaveListFile(Session& session, Prompt& prompt, const std::string& path);

}  // namespace sheafwork
