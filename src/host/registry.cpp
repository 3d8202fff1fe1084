#include "host/registry.h"

namespace sheafwork {

void HostRegistry::Register(const std::string& name, HostFactory factory, bool makeDefault) {
  factories_[name] = std::move(factory);
  if (makeDefault || default_.empty()) default_ = name;
}

const HostFactory* HostRegistry::Find(const std::string& name) const {
  auto found = factories_.find(name.empty() ? default_ : name);
  return found == factories_.end() ? nullptr : &found->second;
}

std::vector<std::string> HostRegistry::Names() const {
  std::vector<std::string> names;
  for (const auto& [name, factory] : factories_) names.push_back(name);
  return names;
}

}  // namespace sheafwork
