#pragma once
// The fixtures under tests/data/ of the source tree: drawings, lists,
// plotter configurations, tables of cases and other files the tests read.

#include <string>
#include <string_view>
#include <vector>

namespace sheafwork::testing {

/// The full path of tests/data/`relative`.
std::string TestData(std::string_view relative);

/// The bytes of tests/data/`relative`; fails the test that asks when the
/// file cannot be read.
std::string ReadTestData(std::string_view relative);

/// One line of a table of cases.
struct TableRow {
  std::string where;  ///< "file:line", for SCOPED_TRACE
  std::vector<std::string> fields;
  /// Field `i`; throws std::out_of_range (failing the test) when missing.
  const std::string& operator[](std::size_t i) const { return fields.at(i); }
  /// Field `i` cut at each `separator`; "-" is the empty list.
  std::vector<std::string> List(std::size_t i, std::string_view separator = " ") const;
};

/// The rows of the table tests/data/`relative`: one case a line, fields
/// separated by tabs; blank lines and comments (lines starting with "# ")
/// are skipped.
/// In a field \xHH (two hex digits) stands for that byte, and "" alone for
/// the empty text; nothing else is escaped.
std::vector<TableRow> ReadTestTable(std::string_view relative);

}  // namespace sheafwork::testing
