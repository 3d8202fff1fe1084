#pragma once
// A page's content as the caller writes it: numbers and operators, one
// operator per line. The text is handed on in chunks of about `chunkBytes`,
// always cut at the end of a line, so that each chunk can be its own stream
// and the page's streams read as one.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "text/decimal.h"

namespace sheafwork::embedded::pdf {

class ContentStream {
 public:
  using ChunkSink = std::function<void(std::string chunk)>;

  ContentStream(ChunkSink sink, std::size_t chunkBytes);
  ContentStream(const ContentStream&) = delete;
  ContentStream& operator=(const ContentStream&) = delete;

  /// An operand, followed by a space.
  ContentStream& Int(std::int64_t value) {
    AppendInteger(text_, value);
    text_ += ' ';
    return *this;
  }
  ContentStream& Real(double value, int decimals) {
    AppendDecimal(text_, value, decimals);
    text_ += ' ';
    return *this;
  }
  /// An operand written as given (a name, a string, an array).
  ContentStream& Token(std::string_view token) {
    text_.append(token);
    text_ += ' ';
    return *this;
  }
  /// The operator that ends the line; a chunk that is full goes out here.
  void Op(std::string_view op) {
    text_.append(op);
    text_ += '\n';
    if (text_.size() >= chunkBytes_) Cut(true);
  }

  /// Whole lines written elsewhere (each ending with '\n'), as they are.
  void Lines(std::string_view lines) {
    text_.append(lines);
    if (text_.size() >= chunkBytes_) Cut(true);
  }

  /// Hands on what is left. Call once, when the page is done.
  void Finish();

  /// Bytes written so far, all chunks together.
  std::uint64_t Bytes() const { return handedOn_ + text_.size(); }
  /// Chunks handed on so far.
  std::size_t Chunks() const { return chunks_; }

 private:
  // Hands on the text so far; `more` when the page goes on.
  void Cut(bool more);

  ChunkSink sink_;
  std::size_t chunkBytes_;
  std::string text_;
  std::uint64_t handedOn_ = 0;
  std::size_t chunks_ = 0;
};

}  // namespace sheafwork::embedded::pdf
