// The BLOCKS and ENTITIES sections.

#include <string>

#include "embedded/dxf/entity_reader.h"
#include "embedded/dxf/reader.h"
#include "embedded/dxf/sections.h"

namespace sheafwork::embedded {
namespace {

// Fills the block a BLOCK record starts; returns its index in the drawing.
std::size_t StartBlock(Context& ctx, const Record& r) {
  std::string name;
  for (const DataTag& d : r.data) {
    if (d.tag.code == 2 || (d.tag.code == 3 && name.empty())) name = ctx.Text(d.tag);
  }
  Block& block = ctx.BlockNamed(name);
  if (!r.owner.empty()) {
    block.recordHandle = std::string(TrimSpaces(r.owner));
    // The block names its record too: layouts and entities still find their
    // block when the record itself was lost.
    // A record that some writers name otherwise ("*U" for model space) takes
    // the name of the layout block that points to it.
    std::string record = HandleKey(r.owner);
    if (record != "0") {
      const auto [it, added] = ctx.blockRecordNames.try_emplace(std::move(record), block.name);
      const bool layoutBlock = SameName(block.name, kModelSpace) || IsPaperSpaceName(block.name);
      if (!added && layoutBlock && !SameName(it->second, block.name)) it->second = block.name;
    }
  }
  for (const DataTag& d : r.data) {
    const Tag& t = d.tag;
    if (SetPoint(ctx, t, 10, block.base)) continue;
    switch (t.code) {
      case 8:
        block.layer = ctx.Text(t);
        break;
      case 70:
        block.flags = ctx.Short(t);
        break;
      case 1:
        block.xrefPath = ctx.Text(t);
        break;
      default:
        break;
    }
  }
  return static_cast<std::size_t>(&block - ctx.drawing.blocks.data());
}

}  // namespace

void ReadBlocksSection(Context& ctx, const Tag& start) {
  Record r;
  // A section that lost its ENDSEC ends where the next one starts.
  while (!ctx.stream.AtRecord("SECTION") && ReadRecord(ctx.stream, r)) {
    if (r.type == "ENDSEC") return;
    if (r.type != "BLOCK") continue;
    const std::size_t index = StartBlock(ctx, r);
    const Tag blockStart = r.start;
    const std::string_view stop =
        ReadEntities(ctx, {"ENDBLK", "ENDSEC", "BLOCK"}, [&](Entity&& e, std::string_view, bool) {
          ctx.drawing.blocks[index].entities.push_back(std::move(e));
        });
    if (stop == kNextSection) return;
    if (stop != "ENDBLK") {
      throw DxfError(
          dxfmsg::BlockWithoutEnd(ctx.stream.PlaceOf(blockStart), ctx.drawing.blocks[index].name));
    }
  }
  if (ctx.stream.AtRecord("SECTION")) return;
  throw DxfError(dxfmsg::SectionWithoutEnd(ctx.stream.PlaceOf(start), "BLOCKS"));
}

void ReadEntitiesSection(Context& ctx, const Tag& start) {
  // Entities go straight to their block when the block records (read with
  // the tables, which come first in every file) name their owner; the rest
  // wait for the end of the file.
  std::string lastOwner;
  std::size_t lastBlock = 0;
  bool haveLast = false;
  const auto place = [&](Entity&& e, std::string_view owner, bool paperSpace) {
    if (haveLast && !owner.empty() && owner == lastOwner) {
      ctx.drawing.blocks[lastBlock].entities.push_back(std::move(e));
      return;
    }
    std::string key = HandleKey(owner);
    std::string_view record;
    if (!key.empty()) {
      const auto it = ctx.blockRecordNames.find(key);
      if (it == ctx.blockRecordNames.end()) {
        ctx.pending.push_back({std::move(e), std::move(key), paperSpace});
        return;
      }
      record = it->second;
    }
    Block& block = ctx.BlockNamed(EntitiesSectionBlock(record, paperSpace));
    block.entities.push_back(std::move(e));
    haveLast = !owner.empty();
    lastOwner = owner;
    lastBlock = static_cast<std::size_t>(&block - ctx.drawing.blocks.data());
  };
  const std::string_view stop = ReadEntities(ctx, {"ENDSEC"}, place);
  // Stopping before the next section (this one lost its ENDSEC) is tolerated.
  if (stop.empty()) {
    throw DxfError(dxfmsg::SectionWithoutEnd(ctx.stream.PlaceOf(start), "ENTITIES"));
  }
}

void SkipSection(Context& ctx, const Tag& start, std::string_view name) {
  Tag tag;
  while (!ctx.stream.AtRecord("SECTION") && ctx.stream.Next(tag)) {
    if (tag.code == 0 && TrimSpaces(tag.value) == "ENDSEC") return;
  }
  if (ctx.stream.AtRecord("SECTION")) return;
  throw DxfError(dxfmsg::SectionWithoutEnd(ctx.stream.PlaceOf(start), name));
}

}  // namespace sheafwork::embedded
