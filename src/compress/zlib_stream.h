#pragma once
// Whole buffers in the zlib format (deflate with its header and Adler-32):
// the /FlateDecode streams of PDF files, the text of plot style tables.
// libdeflate works on a whole buffer at once; at the fastest level it takes
// half zlib's time for a slightly smaller stream.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace sheafwork {

/// Compresses at a chosen level, the compressor kept from one buffer to the
/// next.
class Deflater {
 public:
  /// `level` 1 (fastest) to 12 (smallest).
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

struct Inflated {
  enum class Status { Done, BadData, NoRoom };
  Status status = Status::BadData;
  std::string bytes;  ///< the whole text when Done
};

/// The Adler-32 checksum of `bytes`.
std::uint32_t Adler32(std::string_view bytes);

/// `data`, one complete zlib stream, inflated into at most `room` bytes.
Inflated InflateZlib(std::span<const unsigned char> data, std::size_t room);

}  // namespace sheafwork
