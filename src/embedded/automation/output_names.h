#pragma once
// The names sheets take in a run's output folder: the first sheet of a
// drawing and layout gets "<drawing>-<layout>.<extension>", a later one that
// would take the same name "-2", "-3"... before the extension.

#include <set>
#include <string>

namespace sheafwork::embedded {

/// `base` + `extension` (the extension with its dot, or empty), or the first
/// of `base`-2 + `extension`, `base`-3 + `extension`... not in `taken`;
/// adds the name returned to `taken`.
std::string TakeOutputName(std::set<std::string>& taken, const std::string& base,
                           const std::string& extension);

}  // namespace sheafwork::embedded
