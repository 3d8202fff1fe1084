#include "ui/icons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPixmapCache>
#include <initializer_list>

namespace sheafwork::ui {
namespace {

// Colours of the icon set.
const QColor kInk(0x33, 0x3a, 0x45);
const QColor kPaper(0xfb, 0xfc, 0xfe);
const QColor kBlue(0x2f, 0x6f, 0xc6);
const QColor kGreen(0x2e, 0x9a, 0x3e);
const QColor kRed(0xd0, 0x3b, 0x32);
const QColor kAmber(0xe9, 0xa4, 0x1c);
const QColor kFolder(0xf0, 0xc0, 0x4a);

QPen Pen(const QColor& colour, double width = 1.0) {
  QPen pen(colour, width);
  pen.setJoinStyle(Qt::RoundJoin);
  pen.setCapStyle(Qt::RoundCap);
  return pen;
}

// The closed outline through `corners`.
QPainterPath ClosedPath(std::initializer_list<QPointF> corners) {
  QPainterPath path;
  path.moveTo(*corners.begin());
  for (auto corner = corners.begin() + 1; corner != corners.end(); ++corner) path.lineTo(*corner);
  path.closeSubpath();
  return path;
}

// A sheet with a folded corner, in the 16 x 16 grid.
void Sheet(QPainter& p, const QRectF& r) {
  const double fold = r.width() * 0.32;
  p.setPen(Pen(kInk, 0.9));
  p.setBrush(kPaper);
  p.drawPath(ClosedPath({r.topLeft(), QPointF(r.right() - fold, r.top()),
                         QPointF(r.right(), r.top() + fold), r.bottomRight(), r.bottomLeft()}));
  p.drawLine(QPointF(r.right() - fold, r.top()), QPointF(r.right() - fold, r.top() + fold));
  p.drawLine(QPointF(r.right() - fold, r.top() + fold), QPointF(r.right(), r.top() + fold));
}

// A few strokes of a drawing on a sheet.
void DrawingStrokes(QPainter& p, const QRectF& r) {
  p.setPen(Pen(kBlue, 0.9));
  p.setBrush(Qt::NoBrush);
  p.drawRect(QRectF(r.left() + 1.8, r.top() + 4.5, r.width() - 3.6, r.height() - 6.5));
  p.drawLine(QPointF(r.left() + 1.8, r.bottom() - 2.0), QPointF(r.right() - 1.8, r.top() + 4.5));
}

void Badge(QPainter& p, const QPointF& centre, double radius, const QColor& colour) {
  p.setPen(Pen(colour.darker(130), 0.8));
  p.setBrush(colour);
  p.drawEllipse(centre, radius, radius);
}

void Plus(QPainter& p, const QPointF& c, double half) {
  p.setPen(Pen(Qt::white, 1.5));
  p.drawLine(QPointF(c.x() - half, c.y()), QPointF(c.x() + half, c.y()));
  p.drawLine(QPointF(c.x(), c.y() - half), QPointF(c.x(), c.y() + half));
}

void Cross(QPainter& p, const QPointF& c, double half, const QColor& colour, double width) {
  p.setPen(Pen(colour, width));
  p.drawLine(QPointF(c.x() - half, c.y() - half), QPointF(c.x() + half, c.y() + half));
  p.drawLine(QPointF(c.x() - half, c.y() + half), QPointF(c.x() + half, c.y() - half));
}

void Check(QPainter& p, const QPointF& c, double s, const QColor& colour, double width) {
  QPainterPath path;
  path.moveTo(c.x() - s, c.y());
  path.lineTo(c.x() - s * 0.3, c.y() + s * 0.7);
  path.lineTo(c.x() + s, c.y() - s * 0.7);
  p.setPen(Pen(colour, width));
  p.setBrush(Qt::NoBrush);
  p.drawPath(path);
}

void Folder(QPainter& p) {
  p.setPen(Pen(QColor(0xa8, 0x7a, 0x16), 0.9));
  p.setBrush(kFolder.darker(108));
  p.drawPath(ClosedPath({{1, 3.5}, {5.5, 3.5}, {7, 5}, {14, 5}, {14, 13.5}, {1, 13.5}}));
  p.setBrush(kFolder);
  p.drawPath(ClosedPath({{1, 13.5}, {3, 7}, {15.5, 7}, {14, 13.5}}));
}

void Printer(QPainter& p, bool withSheet) {
  if (withSheet) Sheet(p, QRectF(4, 1, 8, 6));
  p.setPen(Pen(kInk, 0.9));
  p.setBrush(QColor(0xc9, 0xd1, 0xdc));
  p.drawRoundedRect(QRectF(1, 6, 14, 6.5), 1.2, 1.2);
  p.setBrush(kPaper);
  p.drawRect(QRectF(4, 10.5, 8, 4.5));
  p.setPen(Pen(kBlue, 0.8));
  p.drawLine(QPointF(5.3, 12.2), QPointF(10.7, 12.2));
  p.drawLine(QPointF(5.3, 13.6), QPointF(9.0, 13.6));
  p.setPen(Qt::NoPen);
  p.setBrush(kGreen);
  p.drawEllipse(QPointF(12.8, 8.2), 0.7, 0.7);
}

void Paint(QPainter& p, IconId id) {
  switch (id) {
    case IconId::App: {
      Sheet(p, QRectF(4.5, 0.8, 10, 12));
      Sheet(p, QRectF(2.8, 2.0, 10, 12));
      Sheet(p, QRectF(1.0, 3.2, 10, 12));
      DrawingStrokes(p, QRectF(1.0, 3.2, 10, 12));
      Badge(p, QPointF(12.2, 12.2), 3.2, kBlue);
      Check(p, QPointF(12.2, 12.3), 1.6, Qt::white, 1.2);
      break;
    }
    case IconId::AddDrawing:
      Sheet(p, QRectF(1.5, 1, 10, 13));
      DrawingStrokes(p, QRectF(1.5, 1, 10, 13));
      Badge(p, QPointF(12, 11.8), 3.6, kGreen);
      Plus(p, QPointF(12, 11.8), 1.8);
      break;
    case IconId::Remove:
      Sheet(p, QRectF(1.5, 1, 10, 13));
      DrawingStrokes(p, QRectF(1.5, 1, 10, 13));
      Badge(p, QPointF(12, 11.8), 3.6, kRed);
      Cross(p, QPointF(12, 11.8), 1.5, Qt::white, 1.5);
      break;
    case IconId::NewList:
      Sheet(p, QRectF(2.5, 1, 11, 14));
      p.setPen(Pen(kInk.lighter(180), 0.8));
      for (double y : {6.0, 8.5, 11.0}) p.drawLine(QPointF(4.5, y), QPointF(11.5, y));
      break;
    case IconId::OpenList:
      Folder(p);
      break;
    case IconId::SaveList: {
      p.setPen(Pen(QColor(0x1d, 0x3f, 0x73), 0.9));
      p.setBrush(kBlue);
      p.drawPath(ClosedPath({{1.5, 1.5}, {12, 1.5}, {14.5, 4}, {14.5, 14.5}, {1.5, 14.5}}));
      p.setBrush(kPaper);
      p.drawRect(QRectF(4, 1.5, 7, 4.5));
      p.setBrush(QColor(0xe6, 0xec, 0xf5));
      p.drawRect(QRectF(3.5, 8.5, 9, 6));
      p.setPen(Pen(kBlue, 0.8));
      p.drawLine(QPointF(5, 10.5), QPointF(11, 10.5));
      p.drawLine(QPointF(5, 12.5), QPointF(11, 12.5));
      break;
    }
    case IconId::Plot:
      Printer(p, true);
      break;
    case IconId::PlotTest: {
      Sheet(p, QRectF(1, 1, 10, 13));
      p.setPen(Pen(kInk.lighter(170), 0.8));
      for (double y : {5.0, 7.5, 10.0}) p.drawLine(QPointF(3, y), QPointF(8.5, y));
      p.setPen(Pen(kInk, 1.6));
      p.drawLine(QPointF(12.2, 12.2), QPointF(15, 15));
      p.setPen(Pen(kInk, 1.1));
      p.setBrush(QColor(0xd8, 0xe8, 0xfa, 220));
      p.drawEllipse(QPointF(10, 10), 3.2, 3.2);
      break;
    }
    case IconId::Logging: {
      p.setPen(Pen(QColor(0x6b, 0x4a, 0x1d), 0.9));
      p.setBrush(QColor(0xc8, 0x8a, 0x3c));
      p.drawRoundedRect(QRectF(2, 1, 12, 14), 1.2, 1.2);
      p.setBrush(kPaper);
      p.drawRect(QRectF(4.5, 2.5, 8, 11));
      p.setPen(Pen(kInk.lighter(160), 0.8));
      for (double y : {5.0, 7.0, 9.0, 11.0}) p.drawLine(QPointF(6, y), QPointF(11, y));
      break;
    }
    case IconId::Layouts: {
      p.setPen(Pen(kInk, 0.9));
      p.setBrush(QColor(0xc9, 0xd1, 0xdc));
      p.drawRect(QRectF(7, 2, 4.5, 3));
      p.drawRect(QRectF(11.5, 2, 3.5, 3));
      p.setBrush(kPaper);
      p.drawRect(QRectF(1, 5, 14, 10));
      p.drawRect(QRectF(1, 2, 6, 3));
      DrawingStrokes(p, QRectF(2, 3, 12, 11));
      break;
    }
    case IconId::PageSetups: {
      Sheet(p, QRectF(1, 1, 10, 13));
      p.setPen(Pen(kInk.lighter(170), 0.8));
      p.drawRect(QRectF(2.8, 4.5, 6.4, 7.5));
      Badge(p, QPointF(11.8, 11.8), 3.7, kAmber);
      p.setPen(Pen(Qt::white, 1.2));
      p.setBrush(Qt::NoBrush);
      p.drawEllipse(QPointF(11.8, 11.8), 1.5, 1.5);
      break;
    }
    case IconId::Devices:
      Printer(p, false);
      p.setPen(Pen(kInk, 0.9));
      p.setBrush(Qt::NoBrush);
      p.drawLine(QPointF(8, 6), QPointF(8, 2.5));
      p.drawLine(QPointF(8, 2.5), QPointF(13.5, 2.5));
      break;
    case IconId::Settings: {
      p.setPen(Pen(kInk, 1.1));
      for (double y : {3.5, 8.0, 12.5}) p.drawLine(QPointF(1.5, y), QPointF(14.5, y));
      p.setPen(Pen(kInk, 0.9));
      p.setBrush(kBlue);
      p.drawRoundedRect(QRectF(9, 1.8, 2.6, 3.4), 0.6, 0.6);
      p.setBrush(kAmber);
      p.drawRoundedRect(QRectF(3.5, 6.3, 2.6, 3.4), 0.6, 0.6);
      p.setBrush(kGreen);
      p.drawRoundedRect(QRectF(7, 10.8, 2.6, 3.4), 0.6, 0.6);
      break;
    }
    case IconId::Layers: {
      const QColor colours[] = {kBlue, kGreen, kAmber};
      for (int i = 0; i < 3; ++i) {
        const double y = 10.5 - i * 3.6;
        QPolygonF diamond({QPointF(8, y - 3), QPointF(15, y), QPointF(8, y + 3), QPointF(1, y)});
        p.setPen(Pen(colours[i].darker(140), 0.9));
        p.setBrush(colours[i]);
        p.drawPolygon(diamond);
      }
      break;
    }
    case IconId::Help: {
      Badge(p, QPointF(8, 8), 6.8, kBlue);
      QFont font;
      font.setBold(true);
      font.setPixelSize(11);
      p.setFont(font);
      p.setPen(Qt::white);
      p.drawText(QRectF(0, 0.5, 16, 16), Qt::AlignCenter, QStringLiteral("?"));
      break;
    }
    case IconId::Good:
      Badge(p, QPointF(8, 8), 6.5, kGreen);
      Check(p, QPointF(8, 8.2), 3.6, Qt::white, 1.9);
      break;
    case IconId::Bad:
      Badge(p, QPointF(8, 8), 6.5, kRed);
      Cross(p, QPointF(8, 8), 2.8, Qt::white, 1.9);
      break;
    case IconId::Pending: {
      Badge(p, QPointF(8, 8), 6.5, kAmber);
      QPolygonF arrow({QPointF(6, 4.5), QPointF(11.5, 8), QPointF(6, 11.5)});
      p.setPen(Qt::NoPen);
      p.setBrush(Qt::white);
      p.drawPolygon(arrow);
      break;
    }
    case IconId::Drawing:
      Sheet(p, QRectF(3, 1, 10, 14));
      DrawingStrokes(p, QRectF(3, 1, 10, 14));
      break;
  }
}

class PaintedIconEngine : public QIconEngine {
 public:
  explicit PaintedIconEngine(IconId id) : id_(id) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const double side = std::min(rect.width(), rect.height());
    painter->translate(rect.x() + (rect.width() - side) / 2.0,
                       rect.y() + (rect.height() - side) / 2.0);
    painter->scale(side / 16.0, side / 16.0);
    if (mode == QIcon::Disabled) painter->setOpacity(0.35);
    Paint(*painter, id_);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return scaledPixmap(size, mode, state, 1.0);
  }

  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                       qreal scale) override {
    const QString key = QStringLiteral("sheafwork-icon-%1-%2x%3-%4-%5")
                            .arg(static_cast<int>(id_))
                            .arg(size.width())
                            .arg(size.height())
                            .arg(static_cast<int>(mode))
                            .arg(scale);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;
    pixmap = QPixmap(size * scale);
    pixmap.fill(Qt::transparent);
    {
      QPainter painter(&pixmap);
      paint(&painter, QRect(QPoint(0, 0), size * scale), mode, state);
    }
    pixmap.setDevicePixelRatio(scale);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
  }

  QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override { return size; }
  QIconEngine* clone() const override { return new PaintedIconEngine(id_); }

 private:
  IconId id_;
};

}  // namespace

QIcon MakeIcon(IconId id) { return QIcon(new PaintedIconEngine(id)); }

}  // namespace sheafwork::ui
