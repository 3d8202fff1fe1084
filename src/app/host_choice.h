#pragma once
// Which host `plot` and `check` drive: the one named with --host, else the
// COM host on Windows when a server is registered under its ProgID (--progid,
// else SHEAFWORK_PROGID, else the host's own), else the registry's default.

#include <string>

#include "host/registry.h"

namespace sheafwork {

/// The name under which the COM host is chosen.
inline constexpr const char* kComHostName = "com";

struct HostChoice {
  std::string name;
  /// Why it is the default (", car ..."), for --help; empty when there was
  /// nothing to choose between.
  std::string reason;
};

/// The host to drive for `requested` (empty: the default) and `progId`
/// (empty: the environment's or the host's own).
HostChoice ChooseHost(const std::string& requested, const std::string& progId,
                      const HostRegistry& hosts);

/// Why the host `name` cannot be driven on this system, in French; empty when
/// it can.
std::string UnavailableHost(const std::string& name);

/// Whether the program drives the COM host (Windows only).
bool HasComHost();
/// Whether a server is registered under `progId` (as ChooseHost reads it).
bool ComServerRegistered(const std::string& progId, std::string& chosenProgId);
/// Attaches to the server of `progId`; only where HasComHost().
HostFactory ComHostFactory(const std::string& progId);

}  // namespace sheafwork
