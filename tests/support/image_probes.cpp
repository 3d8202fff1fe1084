#include "support/image_probes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace sheafwork::embedded::testing {

bool InkNear(const QImage& image, double k, Vec2 at, double radiusMm) {
  const int cx = static_cast<int>(std::floor(at.x * k));
  const int cy = static_cast<int>(std::floor(image.height() - at.y * k));
  const int r = std::max(0, static_cast<int>(std::ceil(radiusMm * k)));
  for (int y = cy - r; y <= cy + r; ++y) {
    for (int x = cx - r; x <= cx + r; ++x) {
      if (x < 0 || y < 0 || x >= image.width() || y >= image.height()) continue;
      if (qGray(image.pixel(x, y)) < 200) return true;
    }
  }
  return false;
}

std::uint32_t ColorAt(const QImage& image, double k, Vec2 at) {
  const int x = static_cast<int>(std::floor(at.x * k));
  const int y = static_cast<int>(std::floor(image.height() - at.y * k));
  return image.pixel(x, y) & 0xFFFFFFu;
}

double InkShare(const QImage& image, double k, const Box2& box, std::optional<std::uint32_t> rgb) {
  const bool whole = box.Empty();
  const int x0 = whole ? 0 : std::max(0, static_cast<int>(box.min.x * k));
  const int x1 = whole ? image.width() : std::min(image.width(), static_cast<int>(box.max.x * k));
  const int y0 = whole ? 0 : std::max(0, static_cast<int>(image.height() - box.max.y * k));
  const int y1 = whole ? image.height()
                       : std::min(image.height(), static_cast<int>(image.height() - box.min.y * k));
  int inked = 0, all = 0;
  for (int y = y0; y < y1; ++y) {
    for (int x = x0; x < x1; ++x) {
      ++all;
      const QRgb p = image.pixel(x, y);
      if (!rgb) {
        inked += qGray(p) < 160 ? 1 : 0;
        continue;
      }
      const auto channel = [&](int shift) { return static_cast<int>((*rgb >> shift) & 0xFF); };
      const int distance = std::abs(qRed(p) - channel(16)) + std::abs(qGreen(p) - channel(8)) +
                           std::abs(qBlue(p) - channel(0));
      inked += distance < 120 ? 1 : 0;
    }
  }
  return all > 0 ? static_cast<double>(inked) / all : 0;
}

double DarkCovered(const QImage& a, const QImage& b) {
  const auto dark = [](const QImage& image, int x, int y) {
    return x >= 0 && y >= 0 && x < image.width() && y < image.height() &&
           qGray(image.pixel(x, y)) < 160;
  };
  long long total = 0, covered = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      if (!dark(a, x, y)) continue;
      ++total;
      bool near = false;
      for (int dy = -1; dy <= 1 && !near; ++dy) {
        for (int dx = -1; dx <= 1 && !near; ++dx) near = dark(b, x + dx, y + dy);
      }
      covered += near ? 1 : 0;
    }
  }
  return total == 0 ? 0 : static_cast<double>(covered) / static_cast<double>(total);
}

}  // namespace sheafwork::embedded::testing
