#include "pictures/pixel_surface.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "pictures/geometry.h"
#include "pictures/stroke_face.h"
#include "pictures/text_metrics.h"

namespace kalvex {
namespace {

PixelBox Whole(const PixelSurface& surface) { return {0, 0, surface.width, surface.height}; }

Box Bounds(const PixelSurface& surface) {
  return {0, 0, static_cast<double>(surface.width), static_cast<double>(surface.height)};
}

std::uint32_t Mixed(std::uint32_t below, std::uint32_t above, std::uint32_t coverage) {
  std::uint32_t mixed = 0;
  for (const int shift : {0, 8, 16}) {
    const std::uint32_t from = below >> shift & 0xFF, to = above >> shift & 0xFF;
    mixed |= (from * (kFullCoverage - coverage) + to * coverage + kFullCoverage / 2) / kFullCoverage << shift;
  }
  return mixed;
}

std::uint32_t* RowAt(PixelSurface& surface, int y) {
  return surface.pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(surface.width);
}

void Paint(PixelSurface& surface, const Coverage& coverage, std::uint32_t colour) {
  auto cell = coverage.cells.begin();
  for (int y = coverage.box.top; y < coverage.box.bottom; ++y) {
    std::uint32_t* row = RowAt(surface, y);
    for (int x = coverage.box.left; x < coverage.box.right; ++x, ++cell) {
      if (*cell != 0) row[x] = Mixed(row[x], colour, *cell);
    }
  }
}

void PaintStroke(PixelSurface& surface, const PenStroke& stroke, std::uint32_t colour) {
  Coverage coverage = NoCoverage(BoxAround(stroke.lines, stroke.width / 2 + 1, surface.clip));
  if (stroke.onPixels) {
    CoverPixels(coverage, stroke);
  } else {
    CoverLines(coverage, stroke.lines, stroke.width);
  }
  Paint(surface, coverage, colour);
}

// The pixels whose middles lie between the edges.
PixelBox PixelsWithin(const PixelSurface& surface, double left, double top, double right, double bottom) {
  const auto first = [](double edge, int end) {
    return std::isnan(edge) ? 0 : static_cast<int>(std::clamp<double>(std::ceil(edge - 0.5), 0, end));
  };
  return {first(left, surface.width), first(top, surface.height), first(right, surface.width),
          first(bottom, surface.height)};
}

}  // namespace

PixelSurface::PixelSurface(int wide, int high, std::uint32_t background)
    : width(std::clamp(wide, 0, kMaxPictureSide)),
      height(std::clamp(high, 0, kMaxPictureSide)),
      pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), background),
      clip(Whole(*this)) {}

void PixelSurface::DrawText(Point at, TextPlace place, const Font& font, std::uint32_t colour, std::string_view utf8) {
  if (!std::isfinite(at.x) || !std::isfinite(at.y)) return;
  const Point start = BaselineStart(at, place, font, utf8);
  const double x = std::floor(start.x + 0.5), y = std::floor(start.y + 0.5);
  TextStrokes text = StrokesOfText(font, utf8);
  for (std::vector<Point>& line : text.lines) {
    for (Point& point : line) {
      point = place.turned ? Point{x + point.y, y - point.x} : Point{x + point.x, y + point.y};
    }
  }
  Coverage coverage = NoCoverage(BoxAround(text.lines, text.width / 2 + 1, clip));
  CoverLines(coverage, text.lines, text.width);
  Paint(*this, coverage, colour);
}

void PixelSurface::DrawPolyline(std::span<const Point> points, const Pen& pen) {
  PaintStroke(*this, PenStrokeOf(points, pen, false, Bounds(*this)), pen.colour);
}

void PixelSurface::DrawPolygon(std::span<const Point> points, std::optional<std::uint32_t> fill,
                               const std::optional<Pen>& outline) {
  if (fill) {
    const std::vector<Point> polygon = VisiblePolygon(points, Bounds(*this));
    Coverage coverage = NoCoverage(BoxAround({&polygon, 1}, 1, clip));
    CoverPolygon(coverage, polygon);
    Paint(*this, coverage, *fill);
  }
  if (outline) PaintStroke(*this, PenStrokeOf(points, *outline, true, Bounds(*this)), outline->colour);
}

void PixelSurface::FillRectangle(double left, double top, double right, double bottom, std::uint32_t colour) {
  const PixelBox box = Intersection(PixelsWithin(*this, left, top, right, bottom), clip);
  for (int y = box.top; y < box.bottom; ++y) {
    std::uint32_t* row = RowAt(*this, y);
    for (int x = box.left; x < box.right; ++x) row[x] = colour;
  }
}

void PixelSurface::Clip(double left, double top, double right, double bottom) {
  clip = PixelsWithin(*this, left, top, right, bottom);
}

void PixelSurface::Unclip() { clip = Whole(*this); }

}  // namespace kalvex
