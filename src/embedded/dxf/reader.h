#pragma once
// Reads a DXF file, ASCII or binary, of release 12 up to the current one,
// into a Drawing: one pass over the bytes in memory.

#include <stdexcept>
#include <string>
#include <string_view>

#include "embedded/model/drawing.h"

namespace sheafwork::embedded {

/// Malformed or unreadable input. The message names the file, the line (the
/// byte offset for a binary file) and what was expected there.
class DxfError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the drawing in `bytes`; `name` is used in error messages and kept
/// as the drawing's path. Layouts are synthesised for releases that have
/// none. External references are left unresolved. Throws DxfError.
Drawing ReadDxf(std::string_view bytes, const std::string& name);

/// Reads the file at `path` (UTF-8). Throws DxfError, also when the file
/// cannot be read.
Drawing ReadDxfFile(const std::string& path);

}  // namespace sheafwork::embedded
