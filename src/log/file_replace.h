#pragma once
// Putting a finished file in place of an older one without making the file
// system write it out at once.
//
// ext4 notices a file renamed over an older one and writes the new data out
// before the rename returns, so that a crash of the machine leaves the old or
// the new content rather than nothing; the removal of the old file then waits
// for the write of the run before. A plot run replaces its plot files at every
// run, and that wait cost more than plotting a small drawing. Swapping the two
// files and removing the old one is not noticed, and the target is still
// complete at every moment: the old file or the new one.

#include <string>
#include <system_error>

namespace sheafwork {

/// Puts the finished file `from` in place of `to`. An existing target is
/// swapped with `from` in one step and then removed; where the system cannot
/// swap, `from` is renamed over it. Errors come back in `ec`; on success
/// `from` no longer exists.
void PutInPlace(const std::string& from, const std::string& to, std::error_code& ec);

}  // namespace sheafwork
