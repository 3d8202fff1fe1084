#include "host/error.h"

#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork::host {

std::string HostErrorLine(const Error& error) {
  return LoadResourceText(ids::kHostErrorNumber) + std::to_string(error.number()) + ", " +
         error.description();
}

}  // namespace sheafwork::host
