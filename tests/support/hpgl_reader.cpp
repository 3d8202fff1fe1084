#include "support/hpgl_reader.h"

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>
#include <sstream>

namespace sheafwork::embedded::testing {

namespace {

constexpr double kUnits = 40;

// The numbers of a command's parameters, up to the first that is none.
std::vector<double> Numbers(std::string params) {
  std::replace(params.begin(), params.end(), ',', ' ');
  std::istringstream in(params);
  return {std::istream_iterator<double>(in), std::istream_iterator<double>()};
}

Vec2 Mm(double x, double y) { return {x / kUnits, y / kUnits}; }

}  // namespace

std::vector<std::string> HpglPlot::All(std::string_view mnemonic) const {
  std::vector<std::string> out;
  for (const std::string& c : commands) {
    if (c.starts_with(mnemonic)) out.push_back(c);
  }
  return out;
}

Box2 HpglPlot::InkExtents() const {
  Box2 box;
  for (const Stroke& s : strokes) {
    for (const Vec2& p : s.points) {
      box.Extend(Vec2{p.x - s.widthMm / 2, p.y - s.widthMm / 2});
      box.Extend(Vec2{p.x + s.widthMm / 2, p.y + s.widthMm / 2});
    }
  }
  for (const Fill& f : fills) {
    for (const auto& loop : f.loops) {
      for (const Vec2& p : loop) box.Extend(p);
    }
  }
  return box;
}

HpglPlot ReadHpgl(std::string_view text) {
  HpglPlot plot;
  // Split into commands; a quoted string may hold ';'.
  std::string current;
  bool quoted = false;
  for (const char c : text) {
    if (c == '"') quoted = !quoted;
    if (c == ';' && !quoted) {
      if (current.size() >= 2) plot.commands.push_back(current);
      current.clear();
      continue;
    }
    if (!(current.empty() && (c == '\n' || c == '\r' || c == ' '))) current += c;
  }

  std::map<int, double> widths;
  int pen = 0;
  Vec2 at;  // units
  bool down = false;
  bool polygon = false;
  Box2 window;
  std::vector<std::vector<Vec2>> loops;
  HpglPlot::Stroke* stroke = nullptr;
  const auto newStroke = [&](Vec2 from) {
    plot.strokes.push_back({pen, widths[pen], {Mm(from.x, from.y)}, window});
    stroke = &plot.strokes.back();
  };
  const auto lineTo = [&](Vec2 to) {
    if (polygon) {
      loops.back().push_back(Mm(to.x, to.y));
    } else {
      if (stroke == nullptr) newStroke(at);
      stroke->points.push_back(Mm(to.x, to.y));
    }
    at = to;
  };
  const auto arc = [&](Vec2 center, double startRad, double sweepRad) {
    const double r = std::hypot(at.x - center.x, at.y - center.y);
    const int n = std::max(8, static_cast<int>(std::fabs(sweepRad) * 32));
    for (int i = 1; i <= n; ++i) {
      const double a = startRad + sweepRad * i / n;
      lineTo({center.x + r * std::cos(a), center.y + r * std::sin(a)});
    }
  };

  for (const std::string& c : plot.commands) {
    const std::vector<double> v = Numbers(c.substr(2));
    const std::string m = c.substr(0, 2);
    if (m == "PS" && v.size() >= 2) {
      plot.plotSizeMm = Mm(v[0], v[1]);
    } else if (m == "PC" && v.size() >= 4) {
      plot.penColors[static_cast<int>(v[0])] = (static_cast<std::uint32_t>(v[1]) << 16) |
                                               (static_cast<std::uint32_t>(v[2]) << 8) |
                                               static_cast<std::uint32_t>(v[3]);
    } else if (m == "PW" && v.size() >= 2) {
      widths[static_cast<int>(v[1])] = v[0];
      stroke = nullptr;
    } else if (m == "SP" && !v.empty()) {
      pen = static_cast<int>(v[0]);
      stroke = nullptr;
    } else if (m == "IW") {
      window = v.size() >= 4 ? Box2::Of(Mm(v[0], v[1]), Mm(v[2], v[3])) : Box2{};
      stroke = nullptr;
    } else if (m == "PU") {
      down = false;
      stroke = nullptr;
      for (std::size_t i = 0; i + 1 < v.size(); i += 2) at = {v[i], v[i + 1]};
      if (polygon && loops.back().size() <= 1) {
        loops.back() = {Mm(at.x, at.y)};
      } else if (polygon) {
        loops.push_back({Mm(at.x, at.y)});
      }
    } else if (m == "PD") {
      down = true;
      if (v.empty() && !polygon) {
        newStroke(at);  // a dot
        stroke = nullptr;
      }
      for (std::size_t i = 0; i + 1 < v.size(); i += 2) lineTo({v[i], v[i + 1]});
    } else if (m == "AA" && v.size() >= 3 && down) {
      const Vec2 center{v[0], v[1]};
      arc(center, std::atan2(at.y - center.y, at.x - center.x), v[2] * std::numbers::pi / 180);
    } else if (m == "CI" && !v.empty()) {
      const Vec2 center = at;
      stroke = nullptr;
      at = {center.x + v[0], center.y};
      newStroke(at);
      arc(center, 0, 2 * std::numbers::pi);
      stroke = nullptr;
      at = center;
    } else if (m == "PM" && !v.empty() && v[0] == 0) {
      polygon = true;
      loops = {{Mm(at.x, at.y)}};
    } else if (m == "PM" && !v.empty() && v[0] == 1) {
      loops.push_back({Mm(at.x, at.y)});
    } else if (m == "PM" && !v.empty() && v[0] == 2) {
      polygon = false;
      stroke = nullptr;
    } else if (m == "FP") {
      HpglPlot::Fill fill{pen, {}, window};
      for (auto& loop : loops) {
        if (!loop.empty()) fill.loops.push_back(std::move(loop));
      }
      plot.fills.push_back(std::move(fill));
      loops.clear();
    }
  }
  return plot;
}

QImage RenderHpgl(const HpglPlot& plot, double k) {
  QImage image(static_cast<int>(std::lround(plot.plotSizeMm.x * k)),
               static_cast<int>(std::lround(plot.plotSizeMm.y * k)), QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setTransform(QTransform(k, 0, 0, -k, 0, plot.plotSizeMm.y * k));
  const auto color = [&](int pen) {
    const auto it = plot.penColors.find(pen);
    return QColor::fromRgb(it == plot.penColors.end() ? 0 : it->second);  // opaque
  };
  const auto clip = [&](const Box2& window) {
    if (window.Empty()) {
      painter.setClipping(false);
    } else {
      painter.setClipRect(QRectF(window.min.x, window.min.y, window.Width(), window.Height()));
    }
  };
  for (const auto& f : plot.fills) {
    clip(f.window);
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);
    for (const auto& loop : f.loops) {
      QPolygonF ring;
      for (const Vec2& p : loop) ring << QPointF(p.x, p.y);
      path.addPolygon(ring);
      path.closeSubpath();
    }
    painter.fillPath(path, color(f.pen));
  }
  for (const auto& s : plot.strokes) {
    clip(s.window);
    painter.setPen(QPen(color(s.pen), s.widthMm, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    if (s.points.size() == 1) {
      painter.drawPoint(QPointF(s.points[0].x, s.points[0].y));
      continue;
    }
    QPolygonF line;
    for (const Vec2& p : s.points) line << QPointF(p.x, p.y);
    painter.drawPolyline(line);
  }
  painter.end();
  return image;
}

}  // namespace sheafwork::embedded::testing
