#include "embedded/pdf/content_stream.h"

#include <algorithm>
#include <cmath>

namespace sheafwork::embedded::pdf {

void AppendReal(std::string& out, double value, int decimals) {
  if (!std::isfinite(value)) {
    out += '0';
    return;
  }
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed,
                                    std::clamp(decimals, 0, 10));
  if (result.ec != std::errc()) {  // far beyond any page: written whole
    AppendInteger(out, value < 0 ? INT64_MIN : INT64_MAX);
    return;
  }
  char* end = result.ptr;
  if (std::find(buffer, end, '.') != end) {
    while (end[-1] == '0') --end;
    if (end[-1] == '.') --end;
  }
  if (end - buffer == 2 && buffer[0] == '-' && buffer[1] == '0') {
    out += '0';
    return;
  }
  out.append(buffer, end);
}

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
