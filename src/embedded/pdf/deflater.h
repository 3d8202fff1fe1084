#pragma once
// zlib's deflate (the /FlateDecode filter) at a chosen level, its state kept
// from one stream to the next.

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
  /// zlib fails (out of memory).
  bool Compress(std::string_view data, std::string& out);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace sheafwork::embedded::pdf
