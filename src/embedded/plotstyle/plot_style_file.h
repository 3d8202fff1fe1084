#pragma once
// Plot style table files (.ctb): a 60-byte header, then the table as text
// compressed with zlib.
//
// The header is the 48-byte signature
// "PIAFILEVERSION_2.0,CTBVER1,compress\r\npmzlibcodec" and three 32-bit
// little-endian numbers: a checksum of the compressed data (Adler-32), the
// size of the text once decompressed (its closing NUL included) and the
// size of the compressed data. Some writers store the three numbers on 64
// bits each (a 72-byte header); those files are read too.
//
// The text is lines of `key=value` and `name{` ... `}` blocks; a string
// value starts with a `"` that is never closed.

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/plotstyle/plot_style_table.h"

namespace sheafwork::embedded {

/// A table file that cannot be read; the message names the file and says
/// what is wrong, in French.
class PlotStyleError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The numbers of a table file's header.
struct PlotStyleHeader {
  std::uint32_t checksum = 0;
  std::uint32_t textSize = 0;        ///< decompressed, closing NUL included
  std::uint32_t compressedSize = 0;  ///< of the data after the header
  std::size_t headerSize = 0;        ///< 60, or 72 with 64-bit numbers
};

/// Reads the header of `bytes`. Throws PlotStyleError naming `fileName`.
PlotStyleHeader ReadPlotStyleHeader(std::span<const unsigned char> bytes,
                                    const std::string& fileName);
/// The table's text, decompressed, without its closing NUL.
std::string PlotStyleText(std::span<const unsigned char> bytes, const std::string& fileName);
/// The table a text describes.
PlotStyleTable ParsePlotStyleText(std::string_view text, const std::string& fileName);

/// Reads a colour-dependent table from the bytes of file `fileName`.
PlotStyleTable ReadPlotStyleTable(std::span<const unsigned char> bytes,
                                  const std::string& fileName);
/// Reads the table file at `path`.
PlotStyleTable ReadPlotStyleFile(const std::string& path);

/// The text of `table`, without the closing NUL.
std::string PlotStyleTableText(const PlotStyleTable& table);
/// The bytes of a table file holding `table`.
std::vector<unsigned char> WritePlotStyleTable(const PlotStyleTable& table);
/// Writes `table` to `path`. Throws PlotStyleError.
void WritePlotStyleFile(const PlotStyleTable& table, const std::string& path);

}  // namespace sheafwork::embedded
