#include "app/host_choice.h"

#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {

HostChoice ChooseHost(const std::string& requested, const std::string& progId,
                      const HostRegistry& hosts) {
  if (!requested.empty()) return {requested, {}};
  if (!HasComHost()) return {hosts.DefaultName(), {}};
  std::string chosen;
  if (ComServerRegistered(progId, chosen)) {
    return {kComHostName, LoadResourceText(ids::kDefaultHostRegistered) + "« " + chosen + " »"};
  }
  return {hosts.DefaultName(),
          LoadResourceText(ids::kDefaultHostUnregistered) + "« " + chosen + " »"};
}

std::string UnavailableHost(const std::string& name) {
  return name == kComHostName && !HasComHost() ? LoadResourceText(ids::kComHostWindowsOnly)
                                               : std::string();
}

#ifndef _WIN32
// Elsewhere than on Windows there is no COM host (host_choice_win.cpp).
bool HasComHost() { return false; }
bool ComServerRegistered(const std::string&, std::string&) { return false; }
HostFactory ComHostFactory(const std::string&) { return {}; }
#endif

}  // namespace sheafwork
