#include "embedded/pdf/deflater.h"

#include <libdeflate.h>

#include <algorithm>

namespace sheafwork::embedded::pdf {

struct Deflater::State {
  libdeflate_compressor* compressor = nullptr;
};

Deflater::Deflater(int level) : state_(std::make_unique<State>()) {
  state_->compressor = libdeflate_alloc_compressor(std::clamp(level, 1, 12));
}

Deflater::~Deflater() {
  if (state_->compressor != nullptr) libdeflate_free_compressor(state_->compressor);
}

bool Deflater::Compress(std::string_view data, std::string& out) {
  libdeflate_compressor* c = state_->compressor;
  if (c == nullptr) return false;
  out.resize(libdeflate_zlib_compress_bound(c, data.size()));
  // The bound leaves room for everything: the call cannot run short.
  const std::size_t size =
      libdeflate_zlib_compress(c, data.data(), data.size(), out.data(), out.size());
  if (size == 0) return false;
  out.resize(size);
  return true;
}

}  // namespace sheafwork::embedded::pdf
