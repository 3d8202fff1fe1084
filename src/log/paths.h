#pragma once
// File-name and path helpers. They work on the text of a path only, except
// GetFileStatus. Their exact rules decide what the dialogs accept and what the
// list shows, and they differ from each other on purpose in which separators
// they know.
//
// Windows rules: "\" separates folders and ":" ends a drive. POSIX rules: "/"
// takes the role of "\" and ":" is not a separator. Where a rule names both
// "/" and "\", both count on every system.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sheafwork {

enum class PathStyle {
  Windows,
  Posix,
#ifdef _WIN32
  Native = Windows,
#else
  Native = Posix,
#endif
};

/// The part after the last folder separator of the trimmed path (Windows: "\"
/// or ":"; POSIX: "/"); empty when the path ends with one; the whole trimmed
/// path when it has none.
std::string FileNameFromPath(std::string_view path, PathStyle style = PathStyle::Native);

/// The folder part of the trimmed path with its trailing separator; empty when
/// the path has no separator, and also when it ends with one.
std::string FolderFromPath(std::string_view path, PathStyle style = PathStyle::Native);

/// The part after the last "/" or "\", both separators on every system (a
/// name a drawing or a list brings may come from any system), untrimmed;
/// the whole name when it has neither.
std::string_view LastPathPart(std::string_view path);

/// The name without its last extension. Scans from the end for "." and stops
/// at "/" or "\" (a colon does not stop it). A name with an extension comes
/// back untrimmed; one without comes back trimmed; ".dwg" gives "".
std::string StripExtension(std::string_view name);

/// Codes of GetFileStatus.
enum FileStatus : std::int16_t {
  kFileNotFound = 0,
  kFileFound = 1,
  kDiskNotReady = 2,
  kDeviceUnavailable = 3,
  kFileStatusError = 4,
};

/// Whether `path` names an existing regular file; an error reads as no.
bool IsRegularFile(const std::filesystem::path& path);

/// Whether an ordinary file (not a folder, not hidden) matches `path`; the last
/// component may hold the wildcards "*" and "?". Callers test for kFileFound.
std::int16_t GetFileStatus(std::string_view path);

/// Whether a name the user typed may be used as a file name: trimmed, it is
/// 1 to 255 characters long, holds none of ? * < > |, does not end with "/"
/// or "\", and (Windows rules) holds no ":" other than a drive's second
/// character.
bool IsValidFileName(std::string_view name, PathStyle style = PathStyle::Native);

/// The folders of a ";"-separated search path: each trimmed, empty ones
/// skipped.
std::vector<std::string> SplitSearchPath(const std::string& searchPath);

/// The file `name` names: as given when it has a folder and that file
/// exists, else its file name in each folder of the ";"-separated
/// `searchPath` in turn (a file whose name differs only in letter case will
/// do; the first in name order). A name given with a folder of another
/// system ("C:\...\x.ctb") is looked up by its file name. nullopt when
/// found nowhere.
std::optional<std::string> FindFileAlongPath(const std::string& name,
                                             const std::string& searchPath);

/// The external-reference log a host writes beside a drawing: the drawing's
/// path less its last three characters, trimmed, with "xlg" added (a name of
/// fewer than three characters keeps all of them).
std::string XrefLogName(std::string_view drawing);

/// The folder separator of a style: "\" or "/".
char FolderSeparator(PathStyle style = PathStyle::Native);

}  // namespace sheafwork
