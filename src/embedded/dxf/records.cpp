#include "embedded/dxf/records.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {

std::string HandleKey(std::string_view handle) {
  handle = TrimSpaces(handle);
  while (handle.size() > 1 && handle.front() == '0') handle.remove_prefix(1);
  return NameKey(handle);
}

TagStream::TagStream(std::string_view bytes, std::string name)
    : tokenizer_(bytes, std::move(name)) {}

const Tag* TagStream::Peek() {
  if (!hasAhead_ && !atEnd_) {
    hasAhead_ = tokenizer_.Next(ahead_);
    atEnd_ = !hasAhead_;
  }
  return hasAhead_ ? &ahead_ : nullptr;
}

bool TagStream::Next(Tag& tag) {
  if (Peek() == nullptr) return false;
  tag = ahead_;
  hasAhead_ = false;
  return true;
}

bool TagStream::AtRecord(std::string_view type) {
  const Tag* t = Peek();
  return t != nullptr && t->code == 0 && TrimSpaces(t->value) == type;
}

dxfmsg::Place TagStream::PlaceOf(const Tag& tag) const { return {Name(), tag.line, tag.binary}; }

std::span<const Tag> Record::XData(std::string_view app) const {
  std::size_t i = 0;
  while (i < xdata.size() && !(xdata[i].code == 1001 && TrimSpaces(xdata[i].value) == app)) ++i;
  if (i == xdata.size()) return {};
  const std::size_t first = ++i;
  while (i < xdata.size() && xdata[i].code != 1001) ++i;
  return std::span<const Tag>(xdata).subspan(first, i - first);
}

const Tag* Record::Find(int code) const {
  for (const DataTag& d : data) {
    if (d.tag.code == code) return &d.tag;
  }
  return nullptr;
}

bool ReadRecord(TagStream& stream, Record& record) {
  record.subclasses.assign(1, std::string_view());
  record.data.clear();
  record.xdata.clear();
  record.embedded.clear();
  record.owner = {};
  record.extensionDictionary = {};
  if (!stream.Next(record.start)) return false;
  record.type = TrimSpaces(record.start.value);

  bool inXDictionary = false;
  bool inGroup = false;   // inside 102 {NAME ... 102 }
  bool embedded = false;  // after 101: an embedded object, kept apart
  bool inXData = false;
  for (const Tag* t = stream.Peek(); t != nullptr && t->code != 0; t = stream.Peek()) {
    // Read in place: copying the tag through a temporary costs more than
    // the rest of the loop.
    const Tag& tag = *t;
    stream.Drop();
    if (inXData || tag.code == 1001) {
      inXData = true;
      record.xdata.push_back(tag);
      continue;
    }
    if (tag.code == 102) {
      const std::string_view v = TrimSpaces(tag.value);
      const bool opens = !v.empty() && v.front() == '{';
      if (opens || v == "}" || inGroup) {
        inGroup = opens;
        inXDictionary = v == "{ACAD_XDICTIONARY";
        continue;
      }
      // Otherwise a section name inside the data (an XRECORD's): kept.
    }
    if (inXDictionary && tag.code == 360 && record.extensionDictionary.empty()) {
      record.extensionDictionary = tag.value;
    }
    if (inGroup) continue;
    if (embedded) {
      record.embedded.push_back(tag);
      continue;
    }
    if (tag.code == 101) {
      embedded = true;
      continue;
    }
    if (tag.code == 100) {
      record.subclasses.push_back(TrimSpaces(tag.value));
      continue;
    }
    const auto subclass =
        static_cast<std::uint16_t>(std::min<std::size_t>(record.subclasses.size() - 1, UINT16_MAX));
    if (tag.code == 330 && subclass == 0 && record.owner.empty()) record.owner = tag.value;
    DataTag& d = record.data.emplace_back();
    d.tag.code = tag.code;
    d.tag.value = tag.value;
    d.tag.line = tag.line;
    d.tag.binary = tag.binary;
    d.subclass = subclass;
  }
  return true;
}

}  // namespace sheafwork::embedded
