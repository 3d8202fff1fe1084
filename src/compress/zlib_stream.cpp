#include "compress/zlib_stream.h"

#include <libdeflate.h>

#include <algorithm>

namespace sheafwork {

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

std::uint32_t Adler32(std::string_view bytes) {
  return libdeflate_adler32(1, bytes.data(), bytes.size());
}

Inflated InflateZlib(std::span<const unsigned char> data, std::size_t room) {
  Inflated inflated;
  const std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)> d(
      libdeflate_alloc_decompressor(), &libdeflate_free_decompressor);
  if (!d) return inflated;
  inflated.bytes.resize(room);
  std::size_t produced = 0;
  switch (libdeflate_zlib_decompress(d.get(), data.data(), data.size(), inflated.bytes.data(),
                                     inflated.bytes.size(), &produced)) {
    case LIBDEFLATE_SUCCESS:
      inflated.status = Inflated::Status::Done;
      inflated.bytes.resize(produced);
      break;
    case LIBDEFLATE_INSUFFICIENT_SPACE:
      inflated.status = Inflated::Status::NoRoom;
      inflated.bytes.clear();
      break;
    default:
      inflated.bytes.clear();
      break;
  }
  return inflated;
}

}  // namespace sheafwork
