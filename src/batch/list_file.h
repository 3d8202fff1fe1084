#pragma once
// The list file: the log settings, the host window size and every entry of a
// batch list, as Windows-1252 text lines ended by CR LF.

#include <string>
#include <string_view>

namespace sheafwork {

class Session;

inline constexpr std::string_view kListFileMagic = "Orvane 2000 Sheafwork List File";
inline constexpr std::string_view kListFileMagicR15 = "Orvane R15 Sheafwork List File";

enum class ListFileStatus {
  Done,            ///< read or written
  WrongFirstLine,  ///< not a list file; nothing was changed
  Malformed,       ///< a line is not a key and a value, or a value has the wrong type
  CannotOpen,      ///< the file could not be opened or read
  CannotWrite,     ///< the file could not be written; the previous file is intact
  EmptyList,       ///< a list without entries is never written
  TooManyEntries,  ///< the file names more entries than a list holds
};

struct ListFileResult {
  ListFileStatus status = ListFileStatus::Done;
  int line = 0;        ///< the line at fault (1-based), for Malformed and TooManyEntries
  std::string reason;  ///< the system's description, for CannotOpen and CannotWrite

  bool ok() const { return status == ListFileStatus::Done; }
};

/// The string-table id of the message that goes with a result (89, 91, 92,
/// 98 or the list's limit), or 0 for Done.
int MessageIdFor(ListFileStatus status);

/// Reads `path` into the session. With append false the log settings, the
/// list name and the list are reset first and then replaced by the file's;
/// with append true the file's entries are added behind the current ones and
/// the current settings stay. A wrong first line changes nothing. On a
/// malformed line reading stops and what was read before stays.
/// The file is Windows-1252; a file that is valid UTF-8 is read as UTF-8.
ListFileResult ReadListFile(Session& session, const std::string& path, bool append);

/// Reads the bytes of a list file (standard input, for one) as ReadListFile
/// reads a file's.
ListFileResult ReadListBytes(Session& session, std::string_view bytes, bool append);

/// Writes the whole list to `path`, replacing any file there only once the new
/// file is complete. Stores `path` as the list name; on success marks the list
/// unmodified and sets the caption. A list without entries writes nothing.
ListFileResult WriteListFile(Session& session, const std::string& path);

/// The bytes of the list file for the session, with `path` as list name and
/// `winSize` ("width,height") as the host window size.
std::string FormatListFile(const Session& session, const std::string& path,
                           const std::string& winSize);

}  // namespace sheafwork
