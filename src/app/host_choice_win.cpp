// The COM host of the Windows program.
#ifdef _WIN32

#include "app/host_choice.h"
#include "com/attach.h"
#include "com/com_host.h"

namespace sheafwork {

bool HasComHost() { return true; }

bool ComServerRegistered(const std::string& progId, std::string& chosenProgId) {
  chosenProgId = com::ChooseProgId(progId);
  return com::IsProgIdRegistered(chosenProgId);
}

HostFactory ComHostFactory(const std::string& progId) {
  return [progId] { return com::AttachComHost(com::ChooseProgId(progId)); };
}

}  // namespace sheafwork

#endif
