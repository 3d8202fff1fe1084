#pragma once
// Replacing a file without making the file system write it out at once.
//
// Several Linux file systems (ext4 among them) notice a file being emptied or
// renamed over an older one and start writing the new data out before the
// call returns, so that a crash of the machine leaves the old or the new
// content rather than nothing. A plot run replaces its logs and its plot
// files on every run; waiting for that write costs more than plotting a small
// drawing. These calls replace files in ways the file system does not treat
// so, while keeping what matters to a run: a target that is always complete
// (the old file or the new one) and no file that cannot be written made
// writable by the back door.

#include <string>
#include <system_error>

namespace sheafwork {

/// Puts the finished file `from` in place of `to`. An existing target is
/// swapped with `from` in one step and then removed; where the system cannot
/// swap, `from` is renamed over it. Errors come back in `ec`; on success
/// `from` no longer exists.
void PutInPlace(const std::string& from, const std::string& to, std::error_code& ec);

/// Before a file is opened to be written afresh: removes `path` when it is a
/// plain file (not a link, not linked elsewhere) that the program may write,
/// so that the open creates a new one instead of emptying the old. Anything
/// else is left for the open to deal with.
void RemoveBeforeRewrite(const std::string& path);

}  // namespace sheafwork
