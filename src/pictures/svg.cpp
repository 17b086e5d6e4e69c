#include "pictures/svg.h"

#include "core/text.h"
#include "pictures/characters.h"
#include "pictures/text_metrics.h"
#include "pictures/vector_parts.h"

namespace kalvex {
namespace {

void AppendColour(std::string& out, std::uint32_t colour) {
  constexpr char kDigits[] = "0123456789abcdef";
  out += '#';
  for (int shift = 20; shift >= 0; shift -= 4) out += kDigits[colour >> shift & 15];
}

void AppendAttribute(std::string& out, const char* name, double value) {
  out += std::string(" ") + name + "=\"";
  AppendCoordinate(out, value);
  out += '"';
}

void AppendUtf8(std::string& out, char32_t c) {
  const auto byte = [&](char32_t bits) { out += static_cast<char>(bits); };
  if (c < 0x80) return byte(c);
  if (c < 0x800) {
    byte(0xC0 | c >> 6);
  } else if (c < 0x10000) {
    byte(0xE0 | c >> 12);
    byte(0x80 | (c >> 6 & 0x3F));
  } else {
    byte(0xF0 | c >> 18);
    byte(0x80 | (c >> 12 & 0x3F));
    byte(0x80 | (c >> 6 & 0x3F));
  }
  byte(0x80 | (c & 0x3F));
}

// Escapes markup. Control characters are not allowed in such a file and are drawn as '?'.
void AppendEscaped(std::string& out, std::string_view utf8) {
  for (const char32_t c : CharactersOf(utf8)) {
    if (c == '&') {
      out += "&amp;";
    } else if (c == '<') {
      out += "&lt;";
    } else if (c == '>') {
      out += "&gt;";
    } else if (c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0xFFFE || c == 0xFFFF) {
      out += '?';
    } else {
      AppendUtf8(out, c);
    }
  }
}

void AppendPoints(std::string& out, std::span<const Point> points) {
  out += " points=\"";
  const char* separator = "";
  for (const Point& p : points) {
    out += separator;
    AppendCoordinate(out, p.x);
    out += ',';
    AppendCoordinate(out, p.y);
    separator = " ";
  }
  out += '"';
}

void AppendPen(std::string& out, std::uint32_t colour, double width) {
  out += " stroke=\"";
  AppendColour(out, colour);
  out += '"';
  AppendAttribute(out, "stroke-width", width);
}

void AppendStroke(std::string& out, const PenStroke& stroke, std::uint32_t colour) {
  for (const std::vector<Point>& line : stroke.lines) {
    out += "<polyline";
    AppendPoints(out, line);
    out += " fill=\"none\"";
    AppendPen(out, colour, stroke.width);
    out += stroke.onPixels ? " stroke-linecap=\"square\"/>\n" : " stroke-linejoin=\"round\"/>\n";
  }
}

void AppendPolygon(std::string& out, std::span<const Point> points, std::uint32_t fill) {
  out += "<polygon";
  AppendPoints(out, points);
  out += " fill=\"";
  AppendColour(out, fill);
  out += "\" fill-rule=\"evenodd\"";
}

void AppendBox(std::string& out, const Box& box) {
  AppendAttribute(out, "x", box.left);
  AppendAttribute(out, "y", box.top);
  AppendAttribute(out, "width", box.right - box.left);
  AppendAttribute(out, "height", box.bottom - box.top);
}

}  // namespace

void SvgPicture::DrawText(Point at, TextPlace place, const Font& font, std::uint32_t colour, std::string_view utf8) {
  if (!IsFinite(at) || utf8.empty()) return;
  const TextLine line = TextLineOf(at, place, font, utf8);
  // The viewer's font may be a little wider or narrower. The text is anchored at the point of its alignment.
  const double held = place.horizontal == HorizontalAlign::kLeft     ? 0
                      : place.horizontal == HorizontalAlign::kCentre ? line.width / 2
                                                                     : line.width;
  constexpr const char* kAnchors[] = {"start", "middle", "end"};
  std::string& out = body_;
  out += "<text";
  if (place.turned) {
    out += " transform=\"translate(";
    AppendCoordinate(out, line.start.x);
    out += ',';
    AppendCoordinate(out, line.start.y - held);
    out += ") rotate(-90)\"";
  } else {
    AppendAttribute(out, "x", line.start.x + held);
    AppendAttribute(out, "y", line.start.y);
  }
  out += std::string(" text-anchor=\"") + kAnchors[static_cast<int>(place.horizontal)] + "\" font-family=\"" +
         (font.face == Face::kSerif ? "Times, 'Times New Roman', 'Liberation Serif', serif"
                                    : "Helvetica, Arial, 'Liberation Sans', sans-serif") +
         '"';
  AppendAttribute(out, "font-size", EmOf(font));
  out += " fill=\"";
  AppendColour(out, colour);
  out += "\">";
  AppendEscaped(out, utf8);
  out += "</text>\n";
}

void SvgPicture::DrawPolyline(std::span<const Point> points, const Pen& pen) {
  AppendStroke(body_, PenStrokeOf(points, pen, false, Bounds()), pen.colour);
}

void SvgPicture::DrawPolygon(std::span<const Point> points, std::optional<std::uint32_t> fill,
                             const std::optional<Pen>& outline) {
  if (fill && outline && IsWholePolygon(points, Bounds())) {
    AppendPolygon(body_, points, *fill);
    AppendPen(body_, outline->colour, std::fmax(outline->width, 1));
    body_ += "/>\n";
    return;
  }
  if (fill) {
    const std::vector<Point> polygon = VisiblePolygon(points, Bounds());
    if (!polygon.empty()) {
      AppendPolygon(body_, polygon, *fill);
      body_ += "/>\n";
    }
  }
  if (outline) AppendStroke(body_, PenStrokeOf(points, *outline, true, Bounds()), outline->colour);
}

void SvgPicture::FillRectangle(double left, double top, double right, double bottom, std::uint32_t colour) {
  const Box box = VisibleBox(left, top, right, bottom, Bounds());
  if (box.right <= box.left) return;
  body_ += "<rect";
  AppendBox(body_, box);
  body_ += " fill=\"";
  AppendColour(body_, colour);
  body_ += "\"/>\n";
}

void SvgPicture::Unclip() {
  if (clipped_) body_ += "</g>\n";
  clipped_ = false;
}

void SvgPicture::Clip(double left, double top, double right, double bottom) {
  Unclip();
  const Box box = VisibleBox(left, top, right, bottom, Bounds());
  const std::string name = "clip" + std::to_string(++clips_);
  body_ += "<clipPath id=\"" + name + "\"><rect";
  AppendBox(body_, box);
  body_ += "/></clipPath>\n<g clip-path=\"url(#" + name + ")\">\n";
  clipped_ = true;
}

std::string SvgPicture::Text() const {
  const std::string width = std::to_string(width_), height = std::to_string(height_);
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width + "\" height=\"" + height + "\" viewBox=\"0 0 " +
         width + ' ' + height + "\">\n" + body_ + (clipped_ ? "</g>\n" : "") + "</svg>\n";
}

}  // namespace kalvex
