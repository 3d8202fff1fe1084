#pragma once
// Reading PDF objects back: the values of an object's text (numbers, names,
// strings, arrays, dictionaries, references) and where each reference
// stands in it, so that a copy can renumber them without touching anything
// else, strings that merely look like references included.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace sheafwork::embedded::pdf {

struct PdfValue {
  enum class Kind { Null, Boolean, Integer, Real, Name, String, Reference, Array, Dictionary };
  Kind kind = Kind::Null;
  double number = 0;  ///< of an Integer, a Real, a Boolean (1 true); a Reference's object
  std::string text;   ///< a Name without its slash; a String's bytes, decoded
  /// An Array's items; a Dictionary's keys (Names) and values, alternately.
  std::vector<PdfValue> items;

  bool IsNumber() const { return kind == Kind::Integer || kind == Kind::Real; }
  /// The value of `key` in a dictionary; null when absent or not one.
  const PdfValue* Find(std::string_view key) const;
  /// Whether a dictionary's `key` is the name `name`.
  bool NameIs(std::string_view key, std::string_view name) const;
};

/// Where a reference "N G R" stands in the text parsed.
struct ReferenceSpan {
  std::size_t begin = 0;
  std::size_t end = 0;
  int object = 0;
};

/// Reads values from `text` on from a position. Never reads past the text;
/// nesting deeper than a file of ours ever has is refused.
class PdfParser {
 public:
  PdfParser(std::string_view text, std::size_t position) : text_(text), at_(position) {}

  /// The value at the position, the position moved past it; false when the
  /// text there is not one. Its references are added to References().
  bool Value(PdfValue& out) { return ParseValue(out, 0); }
  /// Whether the next token is the keyword `word`; moves past it if so.
  bool Keyword(std::string_view word);
  /// Skips white space and comments.
  void SkipSpace();

  std::size_t Position() const { return at_; }
  const std::vector<ReferenceSpan>& References() const { return references_; }

 private:
  bool ParseValue(PdfValue& out, int depth);
  bool ParseString(PdfValue& out);
  bool ParseHexString(PdfValue& out);
  /// A run of regular characters: a number, a keyword or a name's letters.
  std::string_view Regular();
  /// An integer without sign at the position, skipping space before it; -1
  /// when none (the position is then unchanged).
  long long PeekUnsigned(std::size_t& after);

  std::string_view text_;
  std::size_t at_;
  std::vector<ReferenceSpan> references_;
};

/// `text` with every reference in `spans` (in order) written as
/// "<renumbered[object]> 0 R"; the rest as it is.
std::string RenumberReferences(std::string_view text, const std::vector<ReferenceSpan>& spans,
                               const std::vector<int>& renumbered);

}  // namespace sheafwork::embedded::pdf
