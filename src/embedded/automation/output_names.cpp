#include "embedded/automation/output_names.h"

namespace sheafwork::embedded {

std::string TakeOutputName(std::set<std::string>& taken, const std::string& base,
                           const std::string& extension) {
  std::string name = base + extension;
  for (int n = 2; taken.count(name) != 0; ++n) name = base + "-" + std::to_string(n) + extension;
  taken.insert(name);
  return name;
}

}  // namespace sheafwork::embedded
