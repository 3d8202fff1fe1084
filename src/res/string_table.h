#pragma once
// The program's string table: every text the user sees, by numeric id.

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sheafwork {

using StringId = std::int16_t;

/// Asking for an id the table does not hold is a programming error.
class UnknownStringId : public std::logic_error {
 public:
  explicit UnknownStringId(int id);
  int id() const { return id_; }

 private:
  int id_;
};

/// A malformed table resource (a translation with a broken line).
class StringTableError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The text of `id` (UTF-8). Throws UnknownStringId for an id not in the table.
std::string LoadResourceText(int id);

/// The text of `Id`, read from the table once: the table is built into the
/// program and never changes while it runs. For texts compared often.
template <int Id>
const std::string& CachedText() {
  static const std::string text = LoadResourceText(Id);
  return text;
}

/// Parses a table in the resource format: "<id> \"<text>\"" per line, '#'
/// comments and blank lines skipped; the text runs from the first to the last
/// double quote. Throws StringTableError naming the line of a malformed row.
std::vector<std::pair<int, std::string>> ParseStringTable(std::string_view text);

/// Splits a file-dialog filter ("description|pattern|description|pattern")
/// into its (description, pattern) pairs.
std::vector<std::pair<std::string, std::string>> SplitFilter(std::string_view filter);

}  // namespace sheafwork
