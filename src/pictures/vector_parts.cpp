#include "pictures/vector_parts.h"

#include <algorithm>

#include "core/text.h"
#include "pictures/text_metrics.h"

namespace kalvex {

void AppendCoordinate(std::string& out, double value) {
  const double rounded = std::round(value * 100) / 100;
  AppendFixed(out, rounded == 0 ? 0 : rounded, 2);
  while (out.back() == '0') out.pop_back();
  if (out.back() == '.') out.pop_back();
}

TextLine TextLineOf(Point at, const TextPlace& place, const Font& font, std::string_view utf8) {
  return {BaselineStart(at, place, font, utf8), static_cast<double>(TextExtent(font, utf8).width)};
}

Box VisibleBox(double left, double top, double right, double bottom, const Box& picture) {
  if (!(left < right) || !(top < bottom)) return {picture.left, picture.top, picture.left, picture.top};
  return {std::clamp(left, picture.left, picture.right), std::clamp(top, picture.top, picture.bottom),
          std::clamp(right, picture.left, picture.right), std::clamp(bottom, picture.top, picture.bottom)};
}

bool IsWholePolygon(std::span<const Point> points, const Box& picture) {
  return points.size() > 2 && std::all_of(points.begin(), points.end(), [&](const Point& p) {
           return p.x >= picture.left && p.x <= picture.right && p.y >= picture.top && p.y <= picture.bottom;
         });
}

}  // namespace kalvex
