// The container of a table file: header and zlib-compressed text.

#include "embedded/plotstyle/plot_style_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

#include "compress/zlib_stream.h"
#include "embedded/plotstyle/messages.h"
#include "log/regular_file.h"
#include "log/wide_path.h"

namespace sheafwork::embedded {

namespace msg = plotstyle_messages;

namespace {

constexpr std::string_view kSignature = "PIAFILEVERSION_2.0,CTBVER1,compress\r\npmzlibcodec";
constexpr std::size_t kSignatureSize = 48;
constexpr std::size_t kHeaderSize = 60;
constexpr std::size_t kWideHeaderSize = 72;
// Far above any real table (a few kilobytes of text).
constexpr std::size_t kMaxTextSize = 16u << 20;

static_assert(kSignature.size() == kSignatureSize);

std::uint32_t Read32(std::span<const unsigned char> bytes, std::size_t at) {
  return static_cast<std::uint32_t>(bytes[at]) | (static_cast<std::uint32_t>(bytes[at + 1]) << 8) |
         (static_cast<std::uint32_t>(bytes[at + 2]) << 16) |
         (static_cast<std::uint32_t>(bytes[at + 3]) << 24);
}

void Put32(std::vector<unsigned char>& out, std::uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8) {
    out.push_back(static_cast<unsigned char>((value >> shift) & 0xFFu));
  }
}

// Any "PIAFILEVERSION_2.0,<kind>,compress\r\npmzlibcodec" of the usual length:
// colour-dependent and named tables share the container.
bool HasSignature(std::span<const unsigned char> bytes) {
  const auto text = [&](std::size_t at, std::string_view expected) {
    return std::equal(expected.begin(), expected.end(), bytes.begin() + static_cast<long>(at));
  };
  return text(0, "PIAFILEVERSION_2.0,") && text(kSignatureSize - 22, ",compress\r\npmzlibcodec");
}

}  // namespace

PlotStyleHeader ReadPlotStyleHeader(std::span<const unsigned char> bytes,
                                    const std::string& fileName) {
  if (bytes.size() >= kSignatureSize && !HasSignature(bytes)) {
    throw PlotStyleError(msg::InFile(fileName, msg::NotPlotStyleFile()));
  }
  if (bytes.size() < kHeaderSize)
    throw PlotStyleError(msg::InFile(fileName, msg::TooShort(bytes.size())));
  PlotStyleHeader header;
  // With 64-bit numbers the high halves are zero where the 32-bit layout
  // has the text size, which is never zero.
  const bool wide = bytes.size() >= kWideHeaderSize && Read32(bytes, 52) == 0 &&
                    Read32(bytes, 60) == 0 && Read32(bytes, 68) == 0;
  const std::size_t step = wide ? 8 : 4;
  header.checksum = Read32(bytes, kSignatureSize);
  header.textSize = Read32(bytes, kSignatureSize + step);
  header.compressedSize = Read32(bytes, kSignatureSize + 2 * step);
  header.headerSize = wide ? kWideHeaderSize : kHeaderSize;
  return header;
}

std::string PlotStyleText(std::span<const unsigned char> bytes, const std::string& fileName) {
  const PlotStyleHeader header = ReadPlotStyleHeader(bytes, fileName);
  const std::size_t present = bytes.size() - header.headerSize;
  if (header.compressedSize > present) {
    throw PlotStyleError(msg::InFile(fileName, msg::Truncated(header.compressedSize, present)));
  }
  if (header.textSize > kMaxTextSize) {
    throw PlotStyleError(msg::InFile(fileName, msg::TooLarge(header.textSize)));
  }
  const std::span<const unsigned char> body =
      bytes.subspan(header.headerSize, header.compressedSize);
  // Room for one byte more than announced, to see a longer text; a text
  // longer still is measured with more room, up to the largest accepted.
  std::size_t room = header.textSize + 1;
  Inflated inflated = InflateZlib(body, room);
  while (inflated.status == Inflated::Status::NoRoom) {
    if (room > kMaxTextSize) {
      throw PlotStyleError(msg::InFile(fileName, msg::TextSizeMismatch(header.textSize, room)));
    }
    room *= 2;
    inflated = InflateZlib(body, room);
  }
  if (inflated.status == Inflated::Status::BadData) {
    throw PlotStyleError(msg::InFile(fileName, msg::BadCompressedData("flux incorrect")));
  }
  std::string text = std::move(inflated.bytes);
  if (text.size() != header.textSize) {
    throw PlotStyleError(
        msg::InFile(fileName, msg::TextSizeMismatch(header.textSize, text.size())));
  }
  const std::size_t end = text.find('\0');
  if (end != std::string::npos) text.resize(end);
  return text;
}

PlotStyleTable ReadPlotStyleTable(std::span<const unsigned char> bytes,
                                  const std::string& fileName) {
  return ParsePlotStyleText(PlotStyleText(bytes, fileName), fileName);
}

PlotStyleTable ReadPlotStyleFile(const std::string& path) {
  // A table is a few kilobytes; its text is refused beyond kMaxTextSize.
  const RegularFileRead file = ReadRegularFile(path, kTextInputLimit);
  if (!file.ok) throw PlotStyleError(msg::InFile(path, msg::CannotRead(file.reason)));
  const auto* data = reinterpret_cast<const unsigned char*>(file.bytes.data());
  return ReadPlotStyleTable(std::span<const unsigned char>(data, file.bytes.size()), path);
}

std::vector<unsigned char> WritePlotStyleTable(const PlotStyleTable& table) {
  std::string text = PlotStyleTableText(table);
  text.push_back('\0');
  std::string compressed;
  if (!Deflater(9).Compress(text, compressed)) {
    throw PlotStyleError(msg::InFile("", msg::BadCompressedData("mémoire")));
  }

  std::vector<unsigned char> out(kSignature.begin(), kSignature.end());
  Put32(out, Adler32(compressed));
  Put32(out, static_cast<std::uint32_t>(text.size()));
  Put32(out, static_cast<std::uint32_t>(compressed.size()));
  out.insert(out.end(), compressed.begin(), compressed.end());
  return out;
}

void WritePlotStyleFile(const PlotStyleTable& table, const std::string& path) {
  const std::vector<unsigned char> bytes = WritePlotStyleTable(table);
  std::ofstream out(FsPath(path), std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (!out) throw PlotStyleError(msg::InFile(path, msg::CannotWrite(std::strerror(errno))));
}

}  // namespace sheafwork::embedded
