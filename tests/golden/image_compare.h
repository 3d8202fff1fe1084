#pragma once
// Comparing a rendered sheet with its reference image, with room for the
// small differences antialiasing makes, but not for a line that is missing,
// added or moved. Both images are first softened (each pixel the mean of its
// 3 × 3 neighbourhood), which evens out how antialiasing shares a line's ink
// between pixels; then each pixel's colour must lie within the shades the
// other image has within a pixel's distance.

#include <QImage>
#include <filesystem>
#include <string>

namespace sheafwork::golden {

/// Pixels per millimetre of paper in the images compared.
inline constexpr double kPixelsPerMm = 4;

struct CompareOptions {
  /// Two softened colours match when no channel differs by more than this
  /// (0 to 255). A 0.1 mm line at 4 px/mm darkens its softened band by
  /// about 30.
  int channelTolerance = 20;
  /// A pixel matches when its colour lies within the range of colours the
  /// other image has within this many pixels, both ways: lines may move by
  /// that much.
  int shiftTolerance = 1;
  /// How many pixels may fail to match.
  int maxDiffering = 40;
};

struct Comparison {
  bool sameSize = false;
  int differing = 0;  ///< pixels without a match within the shift tolerance
  /// Grey copy of the expected image with the differing pixels in red.
  QImage diff;

  bool Matches(const CompareOptions& options) const {
    return sameSize && differing <= options.maxDiffering;
  }
  /// A line for a failure message.
  std::string Describe() const;
};

Comparison CompareImages(const QImage& expected, const QImage& actual,
                         const CompareOptions& options = {});

/// Where a failed comparison's pictures were written.
struct FailureImages {
  std::filesystem::path actual;  ///< "<stem>-actual.png"
  std::filesystem::path diff;    ///< "<stem>-diff.png", when there is a diff
};

/// Writes the rendered sheet and the diff of a failed comparison to the
/// tests' failure folder, for a person to look at.
FailureImages SaveFailureImages(const std::string& stem, const QImage& actual,
                                const Comparison& comparison);

}  // namespace sheafwork::golden
