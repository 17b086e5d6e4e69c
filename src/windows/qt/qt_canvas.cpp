#include "windows/qt/qt_canvas.h"

#include <QFontMetricsF>
#include <vector>

namespace kalvex {
namespace {

QColor ColorOf(std::uint32_t rgb) { return QColor::fromRgb(rgb | 0xFF000000u); }

// A font with the widths that the layout assumes, if the system has one.
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

}  // namespace

QtCanvas::QtCanvas(QImage& image) : painter_(&image) { painter_.setRenderHint(QPainter::Antialiasing, false); }

void QtCanvas::DrawText(Point at, TextPlace place, const Font& font, std::uint32_t colour, std::string_view utf8) {
  const QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
  painter_.save();
  painter_.setFont(FontOf(font));
  painter_.setPen(ColorOf(colour));
  painter_.translate(at.x, at.y);
  if (place.turned) painter_.rotate(-90);
  const double width = QFontMetricsF(painter_.font()).horizontalAdvance(text);
  const double x = place.horizontal == HorizontalAlign::kLeft     ? 0
                   : place.horizontal == HorizontalAlign::kCentre ? -width / 2
                                                                  : -width;
  const double y = place.vertical == VerticalAlign::kTop      ? 0
                   : place.vertical == VerticalAlign::kMiddle ? -font.height / 2
                                                              : -font.height;
  painter_.drawText(QRectF(x, y, width + 1, font.height), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, text);
  painter_.restore();
}

void QtCanvas::DrawPolyline(std::span<const Point> points, const Pen& pen) {
  painter_.setPen(QPen(ColorOf(pen.colour), pen.width));
  painter_.drawPolyline(PolygonOf(points));
}

void QtCanvas::DrawPolygon(std::span<const Point> points, std::optional<std::uint32_t> fill,
                           const std::optional<Pen>& outline) {
  painter_.setPen(outline ? QPen(ColorOf(outline->colour), outline->width) : QPen(Qt::NoPen));
  painter_.setBrush(fill ? QBrush(ColorOf(*fill)) : QBrush(Qt::NoBrush));
  painter_.drawPolygon(PolygonOf(points));
}

void QtCanvas::FillRectangle(double left, double top, double right, double bottom, std::uint32_t colour) {
  painter_.fillRect(QRectF(left, top, right - left, bottom - top), ColorOf(colour));
}

void QtCanvas::Clip(double left, double top, double right, double bottom) {
  painter_.setClipRect(QRectF(left, top, right - left, bottom - top));
}

void QtCanvas::Unclip() { painter_.setClipping(false); }

}  // namespace kalvex
