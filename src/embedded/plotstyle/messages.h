#pragma once
// The plot style tables' own French texts, kept together.

#include <cstddef>
#include <string>
#include <string_view>

namespace sheafwork::embedded::plotstyle_messages {

/// "Table de styles de tracé <file> : <what>"
std::string InFile(std::string_view file, std::string_view what);
/// "Table de styles de tracé <file>, ligne <n> : <what>"
std::string AtLine(std::string_view file, int line, std::string_view what);

std::string CannotRead(std::string_view reason);
std::string CannotWrite(std::string_view reason);
std::string TooShort(std::size_t size);
std::string NotPlotStyleFile();
std::string Truncated(std::size_t declared, std::size_t present);
std::string TooLarge(std::size_t size);
std::string BadCompressedData(std::string_view detail);
std::string TextSizeMismatch(std::size_t declared, std::size_t found);
std::string UnclosedBlock(std::string_view name);
std::string UnexpectedClose();
std::string NotKeyValue();
std::string TooDeep();
std::string BadNumber(std::string_view key, std::string_view value);
std::string BadBoolean(std::string_view key, std::string_view value);
std::string BadEntryNumber(std::string_view key);
std::string BadLineweightIndex(std::string_view key);
std::string MissingStyles();
std::string NamedStyles();
std::string ExpectedBlock(std::string_view key);
std::string ExpectedValue(std::string_view key);

}  // namespace sheafwork::embedded::plotstyle_messages
