#pragma once
// The tag stream with one tag of look-ahead, and records: one object of the
// file (the 0 tag naming its type and every tag up to the next 0), split into
// its data tags, each with the subclass it belongs to, and its extended data.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/dxf/messages.h"
#include "embedded/dxf/tokenizer.h"

namespace sheafwork::embedded {

class TagStream {
 public:
  TagStream(std::string_view bytes, std::string name);

  /// The next tag without consuming it; null at the end.
  const Tag* Peek();
  bool Next(Tag& tag);
  /// Consumes the tag Peek returned, which stays readable until the next
  /// Peek or Next.
  void Drop() { hasAhead_ = false; }
  /// True when the next tag is 0/<type>.
  bool AtRecord(std::string_view type);

  const std::string& Name() const { return tokenizer_.Name(); }
  bool IsBinary() const { return tokenizer_.IsBinary(); }
  /// Where a tag is, for messages.
  dxfmsg::Place PlaceOf(const Tag& tag) const;

 private:
  Tokenizer tokenizer_;
  Tag ahead_;
  bool hasAhead_ = false;
  bool atEnd_ = false;
};

/// A data tag and the subclass (index into Record::subclasses) it is in.
struct DataTag {
  Tag tag;
  std::uint16_t subclass = 0;
};

struct Record {
  std::string_view type;  ///< spaces trimmed
  Tag start;              ///< the 0 tag
  /// [0] is "" (the part before the first subclass marker), then one entry
  /// per 100 marker in file order.
  std::vector<std::string_view> subclasses;
  /// 100, 102 groups and embedded objects left out; a lone 102 (naming a
  /// section of an XRECORD's data) is kept.
  std::vector<DataTag> data;
  std::vector<Tag> xdata;  ///< from the first 1001 on
  /// The tags after a 101 marker (an embedded object), up to the extended
  /// data.
  std::vector<Tag> embedded;
  std::string_view owner;  ///< the 330 before the first subclass marker
  /// The 360 of its {ACAD_XDICTIONARY group: its extension dictionary.
  std::string_view extensionDictionary;

  std::string_view SubclassOf(const DataTag& d) const { return subclasses[d.subclass]; }
  /// The extended data of `app` (after its 1001 tag), empty when absent.
  std::span<const Tag> XData(std::string_view app) const;
  /// The first data tag with `code`, null when absent.
  const Tag* Find(int code) const;
};

/// Reads the record starting at the 0 tag the stream is on into `record`
/// (whose storage is reused). Returns false at the end of the stream.
bool ReadRecord(TagStream& stream, Record& record);

/// Handles compared as numbers: upper case, no leading zeros.
std::string HandleKey(std::string_view handle);

}  // namespace sheafwork::embedded
