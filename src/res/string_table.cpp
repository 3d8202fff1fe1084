#include "res/string_table.h"

#include <algorithm>
#include <charconv>

extern const unsigned char kStringTableText[];
extern const std::size_t kStringTableText_size;

namespace sheafwork {
namespace {

using Row = std::pair<int, std::string_view>;

// The rows of a table in the resource format, as views into `text`, in the
// order of the file.
std::vector<Row> ParseRows(std::string_view text) {
  std::vector<Row> rows;
  std::vector<std::pair<int, int>> lines;  // id and line of each row
  int lineNumber = 0;
  while (!text.empty()) {
    ++lineNumber;
    const auto eol = text.find('\n');
    std::string_view line = text.substr(0, eol);
    text = eol == std::string_view::npos ? std::string_view{} : text.substr(eol + 1);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.empty() || line.front() == '#') continue;

    auto fail = [&](const char* what) {
      throw StringTableError("string table line " + std::to_string(lineNumber) + ": " + what);
    };
    int id = 0;
    const auto [end, ec] = std::from_chars(line.data(), line.data() + line.size(), id);
    if (ec != std::errc{} || end == line.data()) fail("expected an id");
    const auto open = line.find('"');
    const auto close = line.rfind('"');
    if (open == std::string_view::npos || close == open) fail("expected a text between quotes");
    if (line.substr(end - line.data(), open - (end - line.data())).find_first_not_of(' ') !=
        std::string_view::npos) {
      fail("expected a blank between the id and the text");
    }
    rows.emplace_back(id, line.substr(open + 1, close - open - 1));
    lines.emplace_back(id, lineNumber);
  }
  // An id given twice is named on the line of its second row.
  std::sort(lines.begin(), lines.end());
  for (std::size_t i = 1; i < lines.size(); ++i) {
    if (lines[i].first == lines[i - 1].first) {
      throw StringTableError("string table line " + std::to_string(lines[i].second) +
                             ": id given twice");
    }
  }
  return rows;
}

// The table built into the program, sorted by id; its texts are views into
// the program's own copy of the file.
const std::vector<Row>& Table() {
  static const std::vector<Row> table = [] {
    std::vector<Row> rows = ParseRows(
        std::string_view(reinterpret_cast<const char*>(kStringTableText), kStringTableText_size));
    std::sort(rows.begin(), rows.end());
    return rows;
  }();
  return table;
}

}  // namespace

UnknownStringId::UnknownStringId(int id)
    : std::logic_error("no text with id " + std::to_string(id) + " in the string table"), id_(id) {}

std::string LoadResourceText(int id) {
  const auto& table = Table();
  const auto it = std::lower_bound(table.begin(), table.end(), id,
                                   [](const Row& row, int wanted) { return row.first < wanted; });
  if (it == table.end() || it->first != id) throw UnknownStringId(id);
  return std::string(it->second);
}

std::vector<std::pair<int, std::string>> ParseStringTable(std::string_view text) {
  std::vector<std::pair<int, std::string>> rows;
  for (const auto& [id, value] : ParseRows(text)) rows.emplace_back(id, std::string(value));
  return rows;
}

std::vector<std::pair<std::string, std::string>> SplitFilter(std::string_view filter) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  while (true) {
    const auto bar = filter.find('|', start);
    parts.emplace_back(filter.substr(start, bar - start));
    if (bar == std::string_view::npos) break;
    start = bar + 1;
  }
  std::vector<std::pair<std::string, std::string>> pairs;
  for (std::size_t i = 0; i + 1 < parts.size(); i += 2) pairs.emplace_back(parts[i], parts[i + 1]);
  return pairs;
}

}  // namespace sheafwork
