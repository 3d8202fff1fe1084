#pragma once
// A list file holds Windows-1252 paths only. On Windows a path with other
// characters (a folder named "Plans été Ω") still has a name the code page
// can hold: its short (8.3) form, which the system opens like the long one.

#include <string>

namespace sheafwork {

/// `path` as a list file can hold it: as it is when Windows-1252 holds it;
/// else, on Windows, the short form of its folder followed by the file's own
/// name (the short form of the whole path when the code page cannot hold
/// the name either). Elsewhere, or when the system has no short form that
/// the code page holds, `path` itself.
std::string CodePagePath(const std::string& path);

}  // namespace sheafwork
