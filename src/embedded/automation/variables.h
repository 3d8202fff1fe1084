#pragma once
// The system variables of the embedded host.
//
// Host-wide, shared by every document (a value set on one document is the
// value of all, as a host keeps them in its settings): SDI, EXPERT,
// PROXYNOTICE, XREFCTL, FILEDIA, CMDECHO, CMDDIA (16-bit integers) and
// SHPNAME (text). Each document's own: REGENMODE and TILEMODE (writing it
// switches between model and paper space); read only: LOGFILENAME (the
// host's log file for the drawing), DWGNAME and DWGPREFIX. Names are
// compared without regard to letter case.

#include <map>
#include <string>

#include "embedded/automation/host_core.h"
#include "host/sysvar.h"

namespace sheafwork::embedded {

/// The host-wide variables with the values the host starts with.
std::map<std::string, host::SysVarValue> DefaultHostVariables();
/// A document's own variables with their initial values.
std::map<std::string, host::SysVarValue> DefaultDocumentVariables();

/// Throws host::Error for an unknown name.
host::SysVarValue GetVariable(HostCore& core, DocumentState& doc, const std::string& name);
/// Throws host::Error for an unknown or read-only name, a value of the wrong
/// type (an integer variable takes a 16- or 32-bit integer within its range)
/// or out of range.
void SetVariable(HostCore& core, DocumentState& doc, const std::string& name,
                 const host::SysVarValue& value);

/// The host's log file for a document: "<LogFilePath>/<drawing>_sheafwork.log".
std::string HostLogFile(const HostCore& core, const DocumentState& doc);
/// The same for a drawing not open (yet).
std::string HostLogFile(const HostCore& core, const std::string& drawingPath);

/// Switches the document to model space (1) or to its last paper-space
/// layout (0). Throws host::Error for another value or when there is no
/// paper-space layout.
void SetSpace(DocumentState& doc, int space);

}  // namespace sheafwork::embedded
