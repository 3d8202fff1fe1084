#pragma once
// MULTILEADER: its context data (leaders, their lines, the content) into
// the model's MultiLeader.

#include <span>

#include "embedded/dxf/context.h"

namespace sheafwork::embedded {

MultiLeader DecodeMultiLeader(Context& ctx, std::span<const DataTag* const> own);

}  // namespace sheafwork::embedded
