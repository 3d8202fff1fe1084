#pragma once
// The devices' own French texts, kept together.

#include <string>
#include <string_view>

namespace sheafwork::embedded::device_messages {

/// "<file>, ligne <n> : <what>"
std::string AtLine(const std::string& file, int line, std::string_view what);
/// "<file> : <what>"
std::string InFile(const std::string& file, std::string_view what);

std::string CannotRead(std::string_view reason);
std::string NotUtf8();
std::string NotKeyValue();
std::string UnknownKey(std::string_view key);
std::string RepeatedKey(std::string_view key);
std::string UnknownDriver(std::string_view value);
std::string BadResolution(std::string_view value);
std::string BadPaper(std::string_view value);
std::string BadPaperSize(std::string_view value);
std::string BadMargins(std::string_view value);
std::string RepeatedPaper(std::string_view name);
std::string MissingDriver();
std::string NoPaper();
std::string MissingPrinter();
std::string UnknownDefaultPaper(std::string_view name);

}  // namespace sheafwork::embedded::device_messages
