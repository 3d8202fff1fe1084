// The same whole-buffer zlib calls over zlib itself, where libdeflate is not
// packaged (the Windows build, with mingw-w64's zlib).
#include "compress/zlib_stream.h"

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace sheafwork {

struct Deflater::State {
  int level = Z_DEFAULT_COMPRESSION;
};

// zlib's levels stop at 9; libdeflate's 10 to 12 are its slowest, smallest.
Deflater::Deflater(int level) : state_(std::make_unique<State>()) {
  state_->level = std::clamp(level, 1, 9);
}

Deflater::~Deflater() = default;

bool Deflater::Compress(std::string_view data, std::string& out) {
  if (data.size() > std::numeric_limits<uLong>::max()) return false;
  uLongf size = compressBound(static_cast<uLong>(data.size()));
  out.resize(size);
  if (compress2(reinterpret_cast<Bytef*>(out.data()), &size,
                reinterpret_cast<const Bytef*>(data.data()), static_cast<uLong>(data.size()),
                state_->level) != Z_OK) {
    return false;
  }
  out.resize(size);
  return true;
}

std::uint32_t Adler32(std::string_view bytes) {
  uLong sum = adler32(0L, Z_NULL, 0);
  const auto* p = reinterpret_cast<const Bytef*>(bytes.data());
  std::size_t left = bytes.size();
  while (left > 0) {
    const auto step = static_cast<uInt>(std::min<std::size_t>(left, 1u << 30));
    sum = adler32(sum, p, step);
    p += step;
    left -= step;
  }
  return static_cast<std::uint32_t>(sum);
}

Inflated InflateZlib(std::span<const unsigned char> data, std::size_t room) {
  Inflated inflated;
  if (data.size() > std::numeric_limits<uLong>::max() || room > std::numeric_limits<uLong>::max()) {
    return inflated;
  }
  // One byte more than the room: a stream that fills it has no room.
  std::string probe(room + 1, '\0');
  uLongf produced = static_cast<uLongf>(probe.size());
  uLong consumed = static_cast<uLong>(data.size());
  const int rc =
      uncompress2(reinterpret_cast<Bytef*>(probe.data()), &produced, data.data(), &consumed);
  if (rc == Z_OK && produced <= room) {
    inflated.status = Inflated::Status::Done;
    probe.resize(produced);
    inflated.bytes = std::move(probe);
  } else if ((rc == Z_OK || rc == Z_BUF_ERROR) && produced == probe.size()) {
    inflated.status = Inflated::Status::NoRoom;
  }
  return inflated;
}

}  // namespace sheafwork
