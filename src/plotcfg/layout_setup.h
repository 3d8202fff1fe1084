#pragma once
// Which layout of a drawing a row plots, and making it the active one.

#include <string>

#include "host/host_session.h"
#include "plotcfg/error_output.h"

namespace sheafwork {

/// The four special values of a row's Layout, as the string table has them.
bool IsAllLayouts(const std::string& layout);        ///< "Toutes les présentations"
bool IsCurrentTab(const std::string& layout);        ///< "*Onglet courant*"
bool IsModelTab(const std::string& layout);          ///< "Onglet Objet"
bool IsLastActiveLayout(const std::string& layout);  ///< "Onglet Dernière présentation active"
/// True for any of the four.
bool IsSpecialLayout(const std::string& layout);

/// The host's name of the model tab, "Objet".
const std::string& ModelTabName();

/// Makes the layout `layoutName` (a special value or an exact layout name) the
/// active one in the session's current document. False when no layout has
/// that name or the host failed; a host failure is reported to `out` with
/// message 114 and the host's description.
bool SetupLayout(HostSession& host, const std::string& layoutName, ErrorOutput out);

}  // namespace sheafwork
