#pragma once
// Builds small DXF texts for the tests: tags as "code\nvalue\n".

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace sheafwork::embedded::testing {

using TagList = std::initializer_list<std::pair<int, std::string_view>>;

inline std::string Tags(TagList tags) {
  std::string out;
  for (const auto& [code, value] : tags) {
    out += std::to_string(code);
    out += '\n';
    out += value;
    out += '\n';
  }
  return out;
}

inline std::string Section(std::string_view name, const std::string& body) {
  return Tags({{0, "SECTION"}, {2, name}}) + body + Tags({{0, "ENDSEC"}});
}

inline std::string EndOfFile() { return Tags({{0, "EOF"}}); }

inline std::string Header(TagList vars) { return Section("HEADER", Tags(vars)); }

}  // namespace sheafwork::embedded::testing
