#pragma once
// This process's identifier, as the system numbers processes.

namespace sheafwork {

long CurrentProcessId();

}  // namespace sheafwork
