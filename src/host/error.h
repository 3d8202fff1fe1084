#pragma once
// The one exception the host automation interface throws.

#include <cstdint>
#include <stdexcept>
#include <string>

namespace sheafwork::host {

/// Number of the error a host raises when a file does not exist.
inline constexpr std::int32_t kFileNotFound = 53;

/// A host call failed. `number` is the host's error number (kFileNotFound for
/// a missing file), `description` its own text, shown or logged as it stands.
class Error : public std::runtime_error {
 public:
  Error(std::int32_t number, std::string description)
      : std::runtime_error(description), number_(number), description_(std::move(description)) {}

  std::int32_t number() const { return number_; }
  const std::string& description() const { return description_; }

 private:
  std::int32_t number_;
  std::string description_;
};

/// The host is gone (its process ended or stopped answering): the row in
/// progress fails and the run ends, its logs complete.
class HostGone : public Error {
 public:
  using Error::Error;
};

/// "ERREUR: #<number>, <description>": how a log or a results text names a
/// host error.
std::string HostErrorLine(const Error& error);

}  // namespace sheafwork::host
