#pragma once
// Clipped block references and draw order: the objects that carry them
// (SPATIAL_FILTER, the record holding an inverted clip's hole,
// SORTENTSTABLE) and their linking once every section is read.

#include "embedded/dxf/context.h"

namespace sheafwork::embedded {

void ReadSpatialFilter(Context& ctx, const Record& r);
/// An XRECORD: kept only when it holds the hole of an inverted clip.
void ReadClipHoleRecord(Context& ctx, const Record& r);
void ReadSortentsTable(Context& ctx, const Record& r);

/// Gives each block reference with an enabled filter (extension dictionary
/// → ACAD_FILTER → SPATIAL) its clip.
void LinkClipBoundaries(Context& ctx);
/// Gives each block with a draw order table its order: ascending sort
/// handles, an entity missing from the table sorting by its own handle,
/// equal ones in file order.
void ApplyDrawOrders(Context& ctx);

}  // namespace sheafwork::embedded
