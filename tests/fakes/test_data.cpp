#include "fakes/test_data.h"

#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fakes/log_lines.h"

namespace sheafwork::testing {

std::string TestData(std::string_view relative) {
#ifdef _WIN32
  // Under Wine the source tree is on drive Z:.
  return std::string("Z:") + SHEAFWORK_SOURCE_DIR + "/tests/data/" + std::string(relative);
#else
  return std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/" + std::string(relative);
#endif
}

std::string ReadTestData(std::string_view relative) {
  const std::string path = TestData(relative);
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    ADD_FAILURE() << "cannot read the fixture " << path;
    return {};
  }
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

namespace {

std::string Unescaped(std::string_view field) {
  if (field == "\"\"") return {};
  std::string out;
  for (std::size_t i = 0; i < field.size(); ++i) {
    const bool escape = field.substr(i, 2) == "\\x" && i + 3 < field.size() &&
                        std::isxdigit(static_cast<unsigned char>(field[i + 2])) &&
                        std::isxdigit(static_cast<unsigned char>(field[i + 3]));
    if (!escape) {
      out += field[i];
      continue;
    }
    out += static_cast<char>(std::stoi(std::string(field.substr(i + 2, 2)), nullptr, 16));
    i += 3;
  }
  return out;
}

}  // namespace

std::vector<std::string> TableRow::List(std::size_t i, std::string_view separator) const {
  std::vector<std::string> items;
  const std::string& field = fields.at(i);
  if (field == "-") return items;
  for (std::size_t from = 0;;) {
    const std::size_t end = field.find(separator, from);
    items.push_back(field.substr(from, end - from));
    if (end == std::string::npos) return items;
    from = end + separator.size();
  }
}

std::vector<TableRow> ReadTestTable(std::string_view relative) {
  const std::vector<std::string> lines = SplitLines(ReadTestData(relative));
  std::vector<TableRow> rows;
  for (std::size_t line = 0; line < lines.size(); ++line) {
    const std::string_view row = lines[line];
    if (row.empty() || row == "#" || row.starts_with("# ")) continue;
    TableRow& out = rows.emplace_back();
    out.where = std::string(relative) + ":" + std::to_string(line + 1);
    for (std::size_t from = 0;;) {
      const std::size_t tab = row.find('\t', from);
      out.fields.push_back(Unescaped(row.substr(from, tab - from)));
      if (tab == std::string_view::npos) break;
      from = tab + 1;
    }
  }
  if (rows.empty()) ADD_FAILURE() << "no cases in " << relative;
  return rows;
}

}  // namespace sheafwork::testing
