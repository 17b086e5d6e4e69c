#include "windows/qt/qt_canvas.h"

#include <QFontMetricsF>
#include <vector>

namespace kalvex {
namespace {

QColor ColorOf(std::uint32_t rgb) { return QColor::fromRgb(rgb | 0xFF000000u); }

// A font of the widths that the layout counts with, where the system has one.
QFont FontOf(const Font& font) {
  constexpr double kSerifLine = 1.107, kSansLine = 1.117;  // line height over em
  const bool serif = font.face == Face::kSerif;
  QFont qt;
  qt.setFamilies(serif ? QStringList{"Times New Roman", "Liberation Serif", "Nimbus Roman", "serif"}
                       : QStringList{"Arial", "Liberation Sans", "Nimbus Sans", "sans-serif"});
  qt.setStyleHint(serif ? QFont::Serif : QFont::SansSerif);
  qt.setPixelSize(std::max(1, qRound(font.height / (serif ? kSerifLine : kSansLine))));
  return qt;
}

QPolygonF PolygonOf(std::span<const Point> points) {
  QPolygonF polygon;
  for (const Point& p : points) polygon << QPointF(p.x, p.y);
  return polygon;
}

void DrawText(QPainter& painter, Point at, TextPlace place, const Font& font, std::uint32_t color,
              std::string_view utf8) {
  const QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
  painter.save();
  painter.setFont(FontOf(font));
  painter.setPen(ColorOf(color));
  painter.translate(at.x, at.y);
  if (place.turned) painter.rotate(-90);
  const double width = QFontMetricsF(painter.font()).horizontalAdvance(text);
  const double x = place.horizontal == HorizontalAlign::kLeft     ? 0
                   : place.horizontal == HorizontalAlign::kCentre ? -width / 2
                                                                  : -width;
  const double y = place.vertical == VerticalAlign::kTop      ? 0
                   : place.vertical == VerticalAlign::kMiddle ? -font.height / 2
                                                              : -font.height;
  painter.drawText(QRectF(x, y, width + 1, font.height), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, text);
  painter.restore();
}

}  // namespace

QtCanvas::QtCanvas(QImage& image) : painter_(&image) { painter_.setRenderHint(QPainter::Antialiasing, false); }

Canvas QtCanvas::Filled() {
  Canvas canvas{};
  canvas.self = this;
  canvas.text = [](void* self, Point at, TextPlace place, const Font& font, std::uint32_t color,
                   std::string_view text) { DrawText(PainterOf(self), at, place, font, color, text); };
  canvas.polyline = [](void* self, std::span<const Point> points, const Pen& pen) {
    PainterOf(self).setPen(QPen(ColorOf(pen.colour), pen.width));
    PainterOf(self).drawPolyline(PolygonOf(points));
  };
  canvas.polygon = [](void* self, std::span<const Point> points, const std::uint32_t* fill, const Pen* outline) {
    PainterOf(self).setPen(outline ? QPen(ColorOf(outline->colour), outline->width) : QPen(Qt::NoPen));
    PainterOf(self).setBrush(fill ? QBrush(ColorOf(*fill)) : QBrush(Qt::NoBrush));
    PainterOf(self).drawPolygon(PolygonOf(points));
  };
  canvas.rectangle = [](void* self, double left, double top, double right, double bottom, std::uint32_t color) {
    PainterOf(self).fillRect(QRectF(left, top, right - left, bottom - top), ColorOf(color));
  };
  canvas.clip = [](void* self, double left, double top, double right, double bottom) {
    PainterOf(self).setClipRect(QRectF(left, top, right - left, bottom - top));
  };
  canvas.unclip = [](void* self) { PainterOf(self).setClipping(false); };
  return canvas;
}

}  // namespace kalvex
