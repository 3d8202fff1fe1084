#include "embedded/pdf/content_stream.h"

#include <algorithm>

namespace sheafwork::embedded::pdf {

namespace {

// Most pages are small: the first chunk starts at this and grows as needed;
// a page that filled one chunk gets whole chunks from then on.
constexpr std::size_t kFirstReserve = 64 * 1024;

}  // namespace

ContentStream::ContentStream(ChunkSink sink, std::size_t chunkBytes)
    : sink_(std::move(sink)), chunkBytes_(std::max<std::size_t>(chunkBytes, 1)) {
  text_.reserve(std::min(chunkBytes_ + 256, kFirstReserve));
}

void ContentStream::Cut(bool more) {
  handedOn_ += text_.size();
  ++chunks_;
  std::string full;
  if (more) full.reserve(chunkBytes_ + 256);
  full.swap(text_);
  sink_(std::move(full));
}

void ContentStream::Finish() {
  if (!text_.empty() || chunks_ == 0) Cut(false);
}

}  // namespace sheafwork::embedded::pdf
