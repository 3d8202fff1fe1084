#include "host/sysvar.h"

#include <charconv>
#include <cmath>

#include "host/error.h"

namespace sheafwork::host {

namespace {

std::string FormatReal(double value) {
  char buffer[32];
  auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
  return ec == std::errc() ? std::string(buffer, end) : std::string();
}

}  // namespace

std::string FormatSysVar(const SysVarValue& value) {
  struct Formatter {
    std::string operator()(std::int16_t v) const { return std::to_string(v); }
    std::string operator()(std::int32_t v) const { return std::to_string(v); }
    std::string operator()(double v) const { return FormatReal(v); }
    std::string operator()(const std::string& v) const { return v; }
  };
  return std::visit(Formatter{}, value);
}

std::int32_t SysVarAsInteger(const SysVarValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    throw Error(13, "Type incompatible: la variable contient le texte \"" + *text + "\"");
  }
  if (const auto* real = std::get_if<double>(&value)) {
    return static_cast<std::int32_t>(std::lround(*real));
  }
  return std::holds_alternative<std::int16_t>(value) ? std::get<std::int16_t>(value)
                                                     : std::get<std::int32_t>(value);
}

}  // namespace sheafwork::host
