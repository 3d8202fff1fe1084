#pragma once
// Conversion between the program's UTF-8 text and the Windows-1252 bytes of
// list files, logs and results files.

#include <cstddef>
#include <string>
#include <string_view>

namespace sheafwork {

/// Decodes Windows-1252 bytes. Never fails: the five bytes the code page leaves
/// undefined (0x81 0x8D 0x8F 0x90 0x9D) become the C1 control of the same value,
/// so every byte sequence survives a round trip.
std::string Windows1252ToUtf8(std::string_view bytes);

struct Windows1252Text {
  std::string bytes;
  std::size_t replaced = 0;  ///< characters the code page cannot hold, written as '?'
};

/// Encodes UTF-8 text. A character outside the code page, and every byte of a
/// malformed UTF-8 sequence, becomes '?'.
Windows1252Text Utf8ToWindows1252(std::string_view utf8);

/// True when `bytes` is well-formed UTF-8 (no overlong forms, no surrogates).
bool IsValidUtf8(std::string_view bytes);

}  // namespace sheafwork
