#include "embedded/dxf/reader.h"

#include <string>

#include "embedded/dxf/context.h"
#include "embedded/dxf/sections.h"
#include "log/regular_file.h"

namespace sheafwork::embedded {
namespace {

// The first tag must open a section: anything else is not a DXF file.
bool OpensSection(Context& ctx) {
  const Tag* first = nullptr;
  try {
    first = ctx.stream.Peek();
  } catch (const DxfError&) {
    return false;
  }
  return first == nullptr || (first->code == 0 && TrimSpaces(first->value) == "SECTION");
}

// A section whose 0/SECTION and 2/<name> tags were lost in a damaged file
// still shows what it is by its first record: a table, or a block
// definition.
bool ReadHeaderlessSection(Context& ctx) {
  const Tag* next = ctx.stream.Peek();
  if (next == nullptr || next->code != 0) return false;
  const std::string_view type = TrimSpaces(next->value);
  if (type != "TABLE" && type != "BLOCK") return false;
  const Tag start = *next;
  if (type == "TABLE") {
    ReadTablesSection(ctx, start);
  } else {
    ReadBlocksSection(ctx, start);
  }
  return true;
}

void ReadSections(Context& ctx) {
  Tag tag;
  for (;;) {
    if (ReadHeaderlessSection(ctx)) continue;
    if (!ctx.stream.Next(tag)) return;
    if (tag.code != 0 || TrimSpaces(tag.value) != "SECTION") {
      throw DxfError(dxfmsg::SectionExpected(ctx.stream.PlaceOf(tag), tag.binary ? "" : tag.value));
    }
    const Tag start = tag;
    const Tag* name = ctx.stream.Peek();
    if (name == nullptr || name->code != 2) {
      throw DxfError(dxfmsg::SectionNameExpected(ctx.stream.PlaceOf(start)));
    }
    const std::string section(TrimSpaces(name->value));
    ctx.stream.Next(tag);
    if (section == "HEADER") {
      ReadHeaderSection(ctx, start);
    } else if (section == "TABLES") {
      ReadTablesSection(ctx, start);
    } else if (section == "BLOCKS") {
      ReadBlocksSection(ctx, start);
    } else if (section == "ENTITIES") {
      ReadEntitiesSection(ctx, start);
    } else if (section == "OBJECTS") {
      ReadObjectsSection(ctx, start);
    } else {
      SkipSection(ctx, start, section);
    }
  }
}

}  // namespace

Drawing ReadDxf(std::string_view bytes, const std::string& name) {
  Drawing drawing;
  drawing.path = name;
  Context ctx(drawing, bytes, name);
  if (!OpensSection(ctx)) throw DxfError(dxfmsg::NotDxf(name));
  ReadSections(ctx);
  FinishDrawing(ctx);
  return drawing;
}

Drawing ReadDxfFile(const std::string& path) {
  // No limit on the size: a drawing can be very large.
  RegularFileRead file = ReadRegularFile(path, kNoSizeLimit);
  if (!file.ok) throw DxfError(dxfmsg::CannotRead(path, file.reason));
  return ReadDxf(file.bytes, path);
}

}  // namespace sheafwork::embedded
