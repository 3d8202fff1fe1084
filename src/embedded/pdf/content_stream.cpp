#include "embedded/pdf/content_stream.h"

#include <algorithm>

namespace sheafwork::embedded::pdf {

ContentStream::ContentStream(ChunkSink sink, std::size_t chunkBytes)
    : sink_(std::move(sink)), chunkBytes_(std::max<std::size_t>(chunkBytes, 1)) {
  text_.reserve(chunkBytes_ + 256);
}

void ContentStream::Cut() {
  handedOn_ += text_.size();
  ++chunks_;
  std::string full;
  full.reserve(chunkBytes_ + 256);
  full.swap(text_);
  sink_(std::move(full));
}

void ContentStream::Finish() {
  if (!text_.empty() || chunks_ == 0) Cut();
}

}  // namespace sheafwork::embedded::pdf
