#include "embedded/pdf/deflater.h"

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace sheafwork::embedded::pdf {

struct Deflater::State {
  z_stream z{};
  bool ready = false;
};

Deflater::Deflater(int level) : state_(std::make_unique<State>()) {
  state_->ready = deflateInit(&state_->z, std::clamp(level, 1, 9)) == Z_OK;
}

Deflater::~Deflater() {
  if (state_->ready) deflateEnd(&state_->z);
}

bool Deflater::Compress(std::string_view data, std::string& out) {
  if (!state_->ready || data.size() > std::numeric_limits<uInt>::max()) return false;
  z_stream& z = state_->z;
  if (deflateReset(&z) != Z_OK) return false;
  out.resize(deflateBound(&z, static_cast<uLong>(data.size())));
  z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
  z.avail_in = static_cast<uInt>(data.size());
  z.next_out = reinterpret_cast<Bytef*>(out.data());
  z.avail_out = static_cast<uInt>(out.size());
  // The bound leaves room for everything: one call finishes the stream.
  const int result = deflate(&z, Z_FINISH);
  if (result != Z_STREAM_END) return false;
  out.resize(out.size() - z.avail_out);
  return true;
}

}  // namespace sheafwork::embedded::pdf
