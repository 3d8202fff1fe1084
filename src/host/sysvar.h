#pragma once
// The value of a host system variable.

#include <cstdint>
#include <string>
#include <variant>

namespace sheafwork::host {

/// A system variable holds a 16-bit integer, a 32-bit integer, a real or a
/// text. The program sets its integer variables as 16-bit integers.
using SysVarValue = std::variant<std::int16_t, std::int32_t, double, std::string>;

/// The value as text: integers in decimal, reals in their shortest general
/// form ("1.5", "0.25", "1e+20"), texts as they stand.
std::string FormatSysVar(const SysVarValue& value);

/// The value as a number: integers as they are, a real rounded to the nearest
/// integer. Throws host::Error (number 13, type mismatch) for a text.
std::int32_t SysVarAsInteger(const SysVarValue& value);

}  // namespace sheafwork::host
