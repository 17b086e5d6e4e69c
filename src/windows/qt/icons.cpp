#include "windows/qt/icons.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace kalvex {
namespace {

constexpr int kSide = 24;

struct Inks {
  QColor line, red, blue;
};
// Colours for a light background, and for a dark background.
const Inks kDark = {{60, 70, 85}, {205, 60, 50}, {50, 105, 190}};
const Inks kLight = {{205, 212, 222}, {245, 125, 110}, {115, 170, 245}};
const QColor kPaper(250, 250, 247);

const Inks& InksOn(const QColor& ground) { return ground.lightness() < 128 ? kLight : kDark; }

QPainterPath Curve(double top, double centre, double width) {
  QPainterPath path;
  for (int x = 4; x <= 20; ++x) {
    const double u = (x - centre) / width, y = 19 - top / (1 + u * u);
    x == 4 ? path.moveTo(x, y) : path.lineTo(x, y);
  }
  return path;
}

void Stroke(QPainter& painter, const QPainterPath& path, const QColor& color, double width = 1.6) {
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(path);
}

void Sheet(QPainter& painter) {
  painter.setPen(QPen(kDark.line, 1.2));
  painter.setBrush(kPaper);
  painter.drawRoundedRect(QRectF(2.5, 2.5, 19, 19), 2, 2);
}

void Lines(QPainter& painter, int columns) {
  painter.setPen(QPen(kDark.line, 1));
  for (int y = 7; y <= 17; y += 5) painter.drawLine(QPointF(3, y), QPointF(21, y));
  for (int k = 1; k < columns; ++k)
    painter.drawLine(QPointF(2 + 20.0 * k / columns, 3), QPointF(2 + 20.0 * k / columns, 21));
}

void Axes(QPainter& painter, const Inks& inks) {
  QPainterPath path;
  path.moveTo(5, 5);
  path.lineTo(5, 19);
  path.lineTo(20, 19);
  Stroke(painter, path, inks.line, 1.2);
}

void Points(QPainter& painter, const Inks& inks) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(inks.line);
  for (int x = 6; x <= 18; x += 3) {
    const double u = (x - 12) / 3.0;
    painter.drawEllipse(QPointF(x, 18 - 11 / (1 + u * u) + (x % 2 ? 0.8 : -0.8)), 1.1, 1.1);
  }
}

void Circle(QPainter& painter, const Inks& inks, bool whole) {
  QPainterPath arc;
  arc.arcMoveTo(QRectF(5, 5, 14, 14), 60);
  arc.arcTo(QRectF(5, 5, 14, 14), 60, whole ? 300 : 240);
  Stroke(painter, arc, inks.blue, 2);
  painter.setPen(Qt::NoPen);
  painter.setBrush(inks.blue);
  painter.drawPolygon(QPolygonF{QPointF(14, 2), QPointF(20, 6), QPointF(13.5, 9.5)});
}

void Draw(QPainter& painter, const Inks& inks, int number) {
  switch (number) {
    case 1:  // model: a table
      Sheet(painter);
      Lines(painter, 3);
      return;
    case 2:  // graph
      Sheet(painter);
      Axes(painter, kDark);
      return Stroke(painter, Curve(12, 12, 2.6), kDark.red);
    case 3:  // fit: points and a curve
      Axes(painter, inks);
      Points(painter, inks);
      return Stroke(painter, Curve(11, 12, 3), inks.red);
    case 4: {  // parameter control: a slider
      painter.setPen(QPen(inks.line, 2));
      painter.drawLine(QPointF(12, 3), QPointF(12, 21));
      painter.setPen(QPen(inks.line, 1));
      for (int y = 4; y <= 20; y += 4) painter.drawLine(QPointF(5, y), QPointF(8, y));
      painter.setBrush(inks.blue);
      painter.drawRoundedRect(QRectF(8, 9, 8, 5), 1, 1);
      return;
    }
    case 5:  // datasets: a list of points
      Sheet(painter);
      return Points(painter, kDark);
    case 6: {  // experimental parameters: a beam on a surface
      QPainterPath beam;
      beam.moveTo(4, 4);
      beam.lineTo(12, 17);
      beam.lineTo(20, 4);
      Stroke(painter, beam, inks.red);
      painter.setPen(QPen(inks.line, 2.5));
      painter.drawLine(QPointF(3, 19), QPointF(21, 19));
      return;
    }
    case 7:  // update the screen now
      return Circle(painter, inks, false);
    case 8: {  // auto screen update
      Circle(painter, inks, true);
      painter.setBrush(inks.red);
      painter.drawEllipse(QPointF(12, 12), 2.5, 2.5);
      return;
    }
    case 9: {  // graph reader: a cross on a curve
      Stroke(painter, Curve(12, 12, 3), inks.red);
      painter.setPen(QPen(inks.line, 1, Qt::DashLine));
      painter.drawLine(QPointF(15, 3), QPointF(15, 21));
      painter.drawLine(QPointF(3, 12), QPointF(21, 12));
      return;
    }
  }
}

}  // namespace

QIcon ToolIcon(int number, const QColor& ground) {
  QIcon icon;
  for (const int scale : {1, 2, 3}) {
    QPixmap pixmap(kSide * scale, kSide * scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    Draw(painter, InksOn(ground), number);
    painter.end();
    pixmap.setDevicePixelRatio(scale);
    icon.addPixmap(pixmap);
  }
  return icon;
}

}  // namespace kalvex
