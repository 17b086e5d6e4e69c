#include "pictures/svg.h"

#include "core/text.h"
#include "pictures/characters.h"
#include "pictures/text_metrics.h"
#include "pictures/vector_parts.h"

namespace kalvex {
namespace {

SvgPicture& Picture(void* self) { return *static_cast<SvgPicture*>(self); }
Box Bounds(const SvgPicture& picture) {
  return {0, 0, static_cast<double>(picture.width), static_cast<double>(picture.height)};
}

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

// Markup is escaped; control characters, which no such file may hold, are drawn as '?'.
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

void DrawText(void* self, Point at, TextPlace place, const Font& font, std::uint32_t colour, std::string_view utf8) {
  if (!IsFinite(at) || utf8.empty()) return;
  const TextLine line = TextLineOf(at, place, font, utf8);
  // The viewer's font may be a little wider or narrower: the text stays where its alignment holds it.
  const double held = place.horizontal == HorizontalAlign::kLeft     ? 0
                      : place.horizontal == HorizontalAlign::kCentre ? line.width / 2
                                                                     : line.width;
  constexpr const char* kAnchors[] = {"start", "middle", "end"};
  std::string& out = Picture(self).body;
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

void AppendPen(std::string& out, std::uint32_t colour, double width) {
  out += " stroke=\"";
  AppendColour(out, colour);
  out += '"';
  AppendAttribute(out, "stroke-width", width);
}

void DrawStroke(SvgPicture& picture, const PenStroke& stroke, std::uint32_t colour) {
  for (const std::vector<Point>& line : stroke.lines) {
    picture.body += "<polyline";
    AppendPoints(picture.body, line);
    picture.body += " fill=\"none\"";
    AppendPen(picture.body, colour, stroke.width);
    picture.body += stroke.onPixels ? " stroke-linecap=\"square\"/>\n" : " stroke-linejoin=\"round\"/>\n";
  }
}

void DrawPolyline(void* self, std::span<const Point> points, const Pen& pen) {
  DrawStroke(Picture(self), PenStrokeOf(points, pen, false, Bounds(Picture(self))), pen.colour);
}

void AppendPolygon(std::string& out, std::span<const Point> points, std::uint32_t fill) {
  out += "<polygon";
  AppendPoints(out, points);
  out += " fill=\"";
  AppendColour(out, fill);
  out += "\" fill-rule=\"evenodd\"";
}

void DrawPolygon(void* self, std::span<const Point> points, const std::uint32_t* fill, const Pen* outline) {
  SvgPicture& picture = Picture(self);
  if (fill && outline && IsWholePolygon(points, Bounds(picture))) {
    AppendPolygon(picture.body, points, *fill);
    AppendPen(picture.body, outline->colour, std::fmax(outline->width, 1));
    picture.body += "/>\n";
    return;
  }
  if (fill) {
    const std::vector<Point> polygon = VisiblePolygon(points, Bounds(picture));
    if (!polygon.empty()) {
      AppendPolygon(picture.body, polygon, *fill);
      picture.body += "/>\n";
    }
  }
  if (outline) DrawStroke(picture, PenStrokeOf(points, *outline, true, Bounds(picture)), outline->colour);
}

void DrawRectangle(void* self, double left, double top, double right, double bottom, std::uint32_t colour) {
  SvgPicture& picture = Picture(self);
  const Box box = VisibleBox(left, top, right, bottom, Bounds(picture));
  if (box.right <= box.left) return;
  picture.body += "<rect";
  AppendAttribute(picture.body, "x", box.left);
  AppendAttribute(picture.body, "y", box.top);
  AppendAttribute(picture.body, "width", box.right - box.left);
  AppendAttribute(picture.body, "height", box.bottom - box.top);
  picture.body += " fill=\"";
  AppendColour(picture.body, colour);
  picture.body += "\"/>\n";
}

void Unclip(void* self) {
  SvgPicture& picture = Picture(self);
  if (picture.clipped) picture.body += "</g>\n";
  picture.clipped = false;
}

void Clip(void* self, double left, double top, double right, double bottom) {
  Unclip(self);
  SvgPicture& picture = Picture(self);
  const Box box = VisibleBox(left, top, right, bottom, Bounds(picture));
  const std::string name = "clip" + std::to_string(++picture.clips);
  picture.body += "<clipPath id=\"" + name + "\"><rect";
  AppendAttribute(picture.body, "x", box.left);
  AppendAttribute(picture.body, "y", box.top);
  AppendAttribute(picture.body, "width", box.right - box.left);
  AppendAttribute(picture.body, "height", box.bottom - box.top);
  picture.body += "/></clipPath>\n<g clip-path=\"url(#" + name + ")\">\n";
  picture.clipped = true;
}

}  // namespace

Canvas CanvasOf(SvgPicture& picture) {
  return {&picture, DrawText, DrawPolyline, DrawPolygon, DrawRectangle, Clip, Unclip};
}

std::string SvgOf(const SvgPicture& picture) {
  const std::string width = std::to_string(picture.width), height = std::to_string(picture.height);
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width + "\" height=\"" + height + "\" viewBox=\"0 0 " +
         width + ' ' + height + "\">\n" + picture.body + (picture.clipped ? "</g>\n" : "") + "</svg>\n";
}

}  // namespace kalvex
