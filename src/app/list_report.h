#pragma once
// How `sheafwork list show` presents a list: as JSON for scripts, as text for
// people.

#include <string>

namespace sheafwork {

class Session;

/// {"name", "winSize", "log": {...}, "entries": [{...}]} with the field names
/// of the data model.
std::string ListToJson(const Session& session);

/// The settings and one block per row, with the main list's column titles.
std::string ListToText(const Session& session);

}  // namespace sheafwork
