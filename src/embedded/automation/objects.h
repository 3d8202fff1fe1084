#pragma once
// The embedded host's objects, made for one another.

#include <memory>

#include "embedded/automation/host_core.h"
#include "host/automation.h"

namespace sheafwork::embedded {

std::shared_ptr<host::Document> MakeDocumentObject(std::shared_ptr<HostCore> core,
                                                   std::shared_ptr<DocumentState> doc);
std::shared_ptr<host::Plot> MakePlotObject(std::shared_ptr<HostCore> core,
                                           std::shared_ptr<DocumentState> doc);

}  // namespace sheafwork::embedded
