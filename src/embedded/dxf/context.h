#pragma once
// What the section readers share while one file is read: the drawing being
// filled, the tag stream, the text decoder and the handle maps that link
// objects to each other.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "embedded/dxf/records.h"
#include "embedded/dxf/text_decoder.h"
#include "embedded/model/drawing.h"

namespace sheafwork::embedded {

/// An entity of the ENTITIES section, placed into its block once every
/// section is read.
struct PendingEntity {
  Entity entity;
  std::string owner;  ///< handle key of the owning block record
  bool paperSpace = false;
};

struct LayoutObject {
  std::string handle;  ///< key
  Layout layout;
  std::string blockRecord;  ///< handle key, from the AcDbLayout part
};

/// A SPATIAL_FILTER object: the clip boundary of a block reference.
struct SpatialFilterObject {
  std::shared_ptr<BlockClip> clip;
  bool enabled = true;
  std::string extensionDictionary;  ///< handle key; where an inverted clip's hole hangs
};

/// A SORTENTSTABLE object: the draw order of one block's entities.
struct SortentsObject {
  std::string blockRecord;  ///< handle key
  /// Entity handle → sort handle, both as numbers.
  std::vector<std::pair<std::uint64_t, std::uint64_t>> sortHandles;
};

struct DictionaryObject {
  std::vector<std::pair<std::string, std::string>> entries;  ///< key, handle key
};

class Context {
 public:
  Context(Drawing& drawing, std::string_view bytes, const std::string& name);

  Drawing& drawing;
  TagStream stream;
  TextDecoder text;

  // Tables
  std::unordered_map<std::string, std::string> blockRecordNames;    ///< handle → name
  std::unordered_map<std::string, std::string> blockRecordLayouts;  ///< handle → layout handle
  std::unordered_map<std::string, std::string> layerNames;          ///< handle → name
  std::unordered_set<std::string> layerKeys;                        ///< NameKey of every layer read
  std::unordered_map<std::string, std::string> textStyleNames;      ///< handle → name
  // Entities
  std::vector<PendingEntity> pending;
  // Objects
  std::string rootDictionary;  ///< handle key of the first dictionary
  std::unordered_map<std::string, DictionaryObject> dictionaries;
  std::vector<LayoutObject> layoutObjects;  ///< in file order
  std::unordered_map<std::string, PlotSettings> plotSettings;
  std::unordered_map<std::string, SpatialFilterObject> spatialFilters;  ///< by handle key
  /// The holes of inverted clips, by the handle key of the record keeping them.
  std::unordered_map<std::string, std::vector<Vec2>> clipHoles;
  std::vector<SortentsObject> drawOrders;
  /// Handle key of a block reference → handle key of its extension
  /// dictionary, where a clip boundary may hang.
  std::unordered_map<std::string, std::string> insertDictionaries;
  // Header values kept until the end of the header
  Vec3 extMin{1e20, 1e20, 0};
  Vec3 extMax{-1e20, -1e20, 0};

  /// Value conversions; throw DxfError naming the tag when it is not a number.
  double Real(const Tag& tag) const;
  std::int16_t Short(const Tag& tag) const;
  std::int32_t Long(const Tag& tag) const;
  bool Flag(const Tag& tag) const { return Long(tag) != 0; }
  std::string Text(const Tag& tag) const { return text.Decode(tag.value); }

  /// The block named `name` (the names of release 12 spaces mapped to the
  /// later ones), created at the end of the list when missing. The reference
  /// is valid until the next block is created.
  Block& BlockNamed(std::string_view name);

  /// Counts an entity of a kind the reader skips.
  void Skip(std::string_view type);

 private:
  std::unordered_map<std::string, std::size_t> blockIndex_;
};

inline constexpr std::string_view kModelSpace = "*Model_Space";
inline constexpr std::string_view kPaperSpace = "*Paper_Space";

/// True for "*Paper_Space", "*Paper_Space0" ... (case ignored).
bool IsPaperSpaceName(std::string_view name);

/// The block an entity of the ENTITIES section goes to: its owner's, named
/// by `ownerRecord` (empty when unknown), when that is model or paper space;
/// otherwise code 67 decides. The section holds only those two, and some
/// writers give model space's record another name ("*U", its true name kept
/// in extended data).
std::string_view EntitiesSectionBlock(std::string_view ownerRecord, bool paperSpace);

/// Names compared as the drawing's indexes compare them.
inline bool SameName(std::string_view a, std::string_view b) { return NameKey(a) == NameKey(b); }

/// Sets the coordinate of `p` that `t` holds when `t` is one of the point's
/// codes: X `xCode`, Y xCode + 10, Z xCode + 20. False for any other code.
inline bool SetPoint(const Context& ctx, const Tag& t, int xCode, Vec3& p) {
  if (t.code == xCode) {
    p.x = ctx.Real(t);
  } else if (t.code == xCode + 10) {
    p.y = ctx.Real(t);
  } else if (t.code == xCode + 20) {
    p.z = ctx.Real(t);
  } else {
    return false;
  }
  return true;
}

/// The same for a point without Z: xCode + 20 is not one of its codes.
inline bool SetPoint(const Context& ctx, const Tag& t, int xCode, Vec2& p) {
  if (t.code == xCode) {
    p.x = ctx.Real(t);
  } else if (t.code == xCode + 10) {
    p.y = ctx.Real(t);
  } else {
    return false;
  }
  return true;
}

}  // namespace sheafwork::embedded
