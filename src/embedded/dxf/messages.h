#pragma once
// Every message of the DXF reader, in one place. Each names the file and,
// where one is known, the line (the byte offset in a binary file).

#include <cstddef>
#include <string>
#include <string_view>

namespace sheafwork::embedded::dxfmsg {

/// Where something was found: the file and a line or byte offset.
struct Place {
  std::string_view file;
  std::size_t position = 0;
  bool binary = false;
};

std::string EmptyFile(std::string_view file);
std::string NotDxf(std::string_view file);
std::string CannotRead(std::string_view file, std::string_view reason);
std::string CodeExpected(const Place& at, std::string_view found);
std::string ValueMissing(const Place& at, int code);
std::string NumberExpected(const Place& at, int code, std::string_view found);
std::string UnknownBinaryCode(const Place& at, int code);
std::string SectionExpected(const Place& at, std::string_view found);
std::string SectionNameExpected(const Place& at);
std::string SectionWithoutEnd(const Place& at, std::string_view section);
std::string TableWithoutEnd(const Place& at, std::string_view table);
std::string BlockWithoutEnd(const Place& at, std::string_view block);
/// A layout whose block record `record` (a handle) is nowhere in the file.
std::string LayoutBlockMissing(std::string_view file, std::string_view layout,
                               std::string_view record);

/// The name the messages give a file: its path without the folders.
std::string_view ShownName(std::string_view path);

}  // namespace sheafwork::embedded::dxfmsg
