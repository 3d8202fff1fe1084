#include "golden/image_compare.h"

#include <algorithm>
#include <cstdlib>

namespace sheafwork::golden {

namespace {

// True when each channel of `colour` lies within what the pixels of `image`
// around (x, y) span, give or take the tolerance: a line that moved by up to
// the shift tolerance, whole pixels or a fraction, still finds its shades.
bool InNeighbourhood(const QImage& image, int x, int y, QRgb colour,
                     const CompareOptions& options) {
  const int r = options.shiftTolerance;
  int low[3] = {255, 255, 255};
  int high[3] = {0, 0, 0};
  for (int ny = std::max(0, y - r); ny <= std::min(image.height() - 1, y + r); ++ny) {
    const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(ny));
    for (int nx = std::max(0, x - r); nx <= std::min(image.width() - 1, x + r); ++nx) {
      const int channels[3] = {qRed(line[nx]), qGreen(line[nx]), qBlue(line[nx])};
      for (int c = 0; c < 3; ++c) {
        low[c] = std::min(low[c], channels[c]);
        high[c] = std::max(high[c], channels[c]);
      }
    }
  }
  const int wanted[3] = {qRed(colour), qGreen(colour), qBlue(colour)};
  for (int c = 0; c < 3; ++c) {
    if (wanted[c] < low[c] - options.channelTolerance) return false;
    if (wanted[c] > high[c] + options.channelTolerance) return false;
  }
  return true;
}

// Each pixel the mean of the 3 × 3 pixels around it (those inside the image).
QImage Soften(const QImage& image) {
  QImage soft(image.size(), QImage::Format_RGB32);
  for (int y = 0; y < image.height(); ++y) {
    auto* out = reinterpret_cast<QRgb*>(soft.scanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      int r = 0, g = 0, b = 0, n = 0;
      for (int ny = std::max(0, y - 1); ny <= std::min(image.height() - 1, y + 1); ++ny) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(ny));
        for (int nx = std::max(0, x - 1); nx <= std::min(image.width() - 1, x + 1); ++nx) {
          r += qRed(line[nx]);
          g += qGreen(line[nx]);
          b += qBlue(line[nx]);
          ++n;
        }
      }
      out[x] = qRgb(r / n, g / n, b / n);
    }
  }
  return soft;
}

}  // namespace

std::string Comparison::Describe() const {
  if (!sameSize) return "the images differ in size";
  return std::to_string(differing) + " pixel(s) differ";
}

Comparison CompareImages(const QImage& expectedImage, const QImage& actualImage,
                         const CompareOptions& options) {
  Comparison result;
  result.sameSize = expectedImage.size() == actualImage.size() && !expectedImage.isNull();
  if (!result.sameSize) return result;
  const QImage expected = Soften(expectedImage.convertToFormat(QImage::Format_RGB32));
  const QImage actual = Soften(actualImage.convertToFormat(QImage::Format_RGB32));
  result.diff = expectedImage.convertToFormat(QImage::Format_Grayscale8)
                    .convertToFormat(QImage::Format_RGB32);
  for (int y = 0; y < expected.height(); ++y) {
    const auto* e = reinterpret_cast<const QRgb*>(expected.constScanLine(y));
    const auto* a = reinterpret_cast<const QRgb*>(actual.constScanLine(y));
    auto* d = reinterpret_cast<QRgb*>(result.diff.scanLine(y));
    for (int x = 0; x < expected.width(); ++x) {
      const int t = options.channelTolerance;
      const bool near = std::abs(qRed(e[x]) - qRed(a[x])) <= t &&
                        std::abs(qGreen(e[x]) - qGreen(a[x])) <= t &&
                        std::abs(qBlue(e[x]) - qBlue(a[x])) <= t;
      if (near || (InNeighbourhood(actual, x, y, e[x], options) &&
                   InNeighbourhood(expected, x, y, a[x], options))) {
        continue;
      }
      ++result.differing;
      d[x] = qRgb(255, 0, 0);
    }
  }
  return result;
}

FailureImages SaveFailureImages(const std::string& stem, const QImage& actual,
                                const Comparison& comparison) {
  const std::filesystem::path out(SHEAFWORK_GOLDEN_OUTPUT);
  std::filesystem::create_directories(out);
  FailureImages files{out / (stem + "-actual.png"), out / (stem + "-diff.png")};
  actual.save(QString::fromStdString(files.actual.string()), "PNG");
  if (!comparison.diff.isNull()) comparison.diff.save(QString::fromStdString(files.diff.string()));
  return files;
}

}  // namespace sheafwork::golden
