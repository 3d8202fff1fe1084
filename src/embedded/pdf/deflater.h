#pragma once
// Deflate in the zlib format (the /FlateDecode filter) at a chosen level,
// the compressor kept from one stream to the next. libdeflate compresses a
// whole buffer at once, which is how pages are handed over; at the fastest
// level it takes half zlib's time for a slightly smaller stream.

#include <memory>
#include <string>
#include <string_view>

namespace sheafwork::embedded::pdf {

class Deflater {
 public:
  /// `level` 1 (fastest) to 9 (smallest).
  explicit Deflater(int level);
  ~Deflater();
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;

  /// `data` as one complete zlib stream, into `out` (replaced). False when
  /// the compressor could not be made (out of memory).
  bool Compress(std::string_view data, std::string& out);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace sheafwork::embedded::pdf
