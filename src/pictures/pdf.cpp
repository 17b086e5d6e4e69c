#include "pictures/pdf.h"

#include <vector>

#include "core/text.h"
#include "pictures/characters.h"
#include "pictures/deflate.h"
#include "pictures/text_metrics.h"
#include "pictures/vector_parts.h"

namespace kalvex {
namespace {

PdfPicture& Picture(void* self) { return *static_cast<PdfPicture*>(self); }
Box Bounds(const PdfPicture& picture) {
  return {0, 0, static_cast<double>(picture.width), static_cast<double>(picture.height)};
}

// Numbers, each with a blank behind it, then the operator.
void Append(std::string& out, std::initializer_list<double> numbers, const char* operation) {
  for (const double number : numbers) {
    AppendCoordinate(out, number);
    out += ' ';
  }
  out += operation;
  out += '\n';
}

void AppendColour(std::string& out, std::uint32_t colour, const char* operation) {
  for (const int shift : {16, 8, 0}) {
    AppendG(out, static_cast<double>(colour >> shift & 0xFF) / 255, 3);
    out += ' ';
  }
  out += operation;
  out += '\n';
}

// ---- texts

enum FontNumber { kTimes = 1, kHelvetica, kSymbol };

// Characters of one font and size that follow each other.
struct Run {
  FontNumber font;
  double size, rise;  // shares of the em
  std::string codes;
};

Run RunOf(char32_t character, Face face) {
  if (const SmallCharacter small = SmallCharacterOf(character); small.base != 0) {
    Run run = RunOf(small.base, face);
    run.size *= kSmallSize;
    run.rise = small.rise;
    return run;
  }
  if (const SymbolCharacter* const symbol = FindSymbol(character)) {
    return {kSymbol, 1, 0, std::string(1, static_cast<char>(symbol->code))};
  }
  const std::uint8_t code = WinAnsiCode(character);
  return {face == Face::kSerif ? kTimes : kHelvetica, 1, 0, std::string(1, code == 0 ? '?' : static_cast<char>(code))};
}

std::vector<Run> RunsOf(Face face, std::string_view utf8) {
  std::vector<Run> runs;
  for (const char32_t character : CharactersOf(utf8)) {
    const Run next = RunOf(character, face);
    const bool goesOn = !runs.empty() && runs.back().font == next.font && runs.back().size == next.size &&
                        runs.back().rise == next.rise;
    if (goesOn) {
      runs.back().codes += next.codes;
    } else {
      runs.push_back(next);
    }
  }
  return runs;
}

void AppendString(std::string& out, std::string_view codes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  out += '<';
  for (const char c : codes) {
    out += kDigits[static_cast<unsigned char>(c) >> 4];
    out += kDigits[static_cast<unsigned char>(c) & 15];
  }
  out += '>';
}

void DrawText(void* self, Point at, TextPlace place, const Font& font, std::uint32_t colour, std::string_view utf8) {
  if (!IsFinite(at) || utf8.empty()) return;
  const Point start = TextLineOf(at, place, font, utf8).start;
  const double em = EmOf(font);
  std::string& out = Picture(self).body;
  AppendColour(out, colour, "rg");
  out += "BT\n";
  // The page is turned upside down, which letters are not to be.
  if (place.turned) {
    Append(out, {0, -1, -1, 0, start.x, start.y}, "Tm");
  } else {
    Append(out, {1, 0, 0, -1, start.x, start.y}, "Tm");
  }
  for (const Run& run : RunsOf(font.face, utf8)) {
    out += "/F" + std::to_string(run.font) + ' ';
    Append(out, {em * run.size}, "Tf");
    Append(out, {em * run.rise}, "Ts");
    AppendString(out, run.codes);
    out += " Tj\n";
  }
  out += "ET\n";
}

// ---- shapes

void AppendPath(std::string& out, std::span<const Point> points) {
  const char* operation = "m";
  for (const Point& p : points) {
    Append(out, {p.x, p.y}, operation);
    operation = "l";
  }
}

void DrawStroke(std::string& out, const PenStroke& stroke, std::uint32_t colour) {
  if (stroke.lines.empty()) return;
  AppendColour(out, colour, "RG");
  Append(out, {stroke.width}, "w");
  out += stroke.onPixels ? "2 J 0 j\n" : "0 J 1 j\n";
  for (const std::vector<Point>& line : stroke.lines) {
    AppendPath(out, line);
    out += "S\n";
  }
}

void DrawPolyline(void* self, std::span<const Point> points, const Pen& pen) {
  DrawStroke(Picture(self).body, PenStrokeOf(points, pen, false, Bounds(Picture(self))), pen.colour);
}

void DrawPolygon(void* self, std::span<const Point> points, const std::uint32_t* fill, const Pen* outline) {
  PdfPicture& picture = Picture(self);
  if (fill && outline && IsWholePolygon(points, Bounds(picture))) {
    AppendColour(picture.body, *fill, "rg");
    AppendColour(picture.body, outline->colour, "RG");
    Append(picture.body, {std::fmax(outline->width, 1)}, "w");
    AppendPath(picture.body, points);
    picture.body += "b*\n";
    return;
  }
  if (fill) {
    const std::vector<Point> polygon = VisiblePolygon(points, Bounds(picture));
    if (!polygon.empty()) {
      AppendColour(picture.body, *fill, "rg");
      AppendPath(picture.body, polygon);
      picture.body += "f*\n";
    }
  }
  if (outline) DrawStroke(picture.body, PenStrokeOf(points, *outline, true, Bounds(picture)), outline->colour);
}

void AppendBox(std::string& out, const Box& box) {
  Append(out, {box.left, box.top, box.right - box.left, box.bottom - box.top}, "re");
}

void DrawRectangle(void* self, double left, double top, double right, double bottom, std::uint32_t colour) {
  PdfPicture& picture = Picture(self);
  const Box box = VisibleBox(left, top, right, bottom, Bounds(picture));
  if (box.right <= box.left) return;
  AppendColour(picture.body, colour, "rg");
  AppendBox(picture.body, box);
  picture.body += "f\n";
}

void Unclip(void* self) {
  PdfPicture& picture = Picture(self);
  if (picture.clipped) picture.body += "Q\n";
  picture.clipped = false;
}

void Clip(void* self, double left, double top, double right, double bottom) {
  Unclip(self);
  PdfPicture& picture = Picture(self);
  picture.body += "q\n";
  AppendBox(picture.body, VisibleBox(left, top, right, bottom, Bounds(picture)));
  picture.body += "W n\n";
  picture.clipped = true;
}

// ---- the file

// The numbered objects of a file, and where each begins.
struct Objects {
  std::string bytes = "%PDF-1.4\n";
  std::vector<std::size_t> begins;

  void Add(const std::string& object) {
    begins.push_back(bytes.size());
    bytes += std::to_string(begins.size()) + " 0 obj\n" + object + "\nendobj\n";
  }
  // The table of the objects, whose entries are 20 bytes each, and what readers begin with.
  std::string Finish() {
    const std::size_t table = bytes.size();
    const std::string count = std::to_string(begins.size() + 1);
    bytes += "xref\n0 " + count + "\n0000000000 65535 f \n";
    for (const std::size_t at : begins) {
      const std::string digits = std::to_string(at);
      bytes += std::string(10 - digits.size(), '0') + digits + " 00000 n \n";
    }
    bytes += "trailer\n<< /Size " + count + " /Root 1 0 R >>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
    return std::move(bytes);
  }
};

std::string FontObject(const char* name, bool western) {
  return std::string("<< /Type /Font /Subtype /Type1 /BaseFont /") + name +
         (western ? " /Encoding /WinAnsiEncoding >>" : " >>");
}

constexpr double kPointsPerPixel = 0.75;

}  // namespace

Canvas CanvasOf(PdfPicture& picture) {
  return {&picture, DrawText, DrawPolyline, DrawPolygon, DrawRectangle, Clip, Unclip};
}

std::string PdfOf(const PdfPicture& picture) {
  std::string drawing;
  Append(drawing, {kPointsPerPixel, 0, 0, -kPointsPerPixel, 0, picture.height * kPointsPerPixel}, "cm");
  drawing += picture.body;
  if (picture.clipped) drawing += "Q\n";
  const std::string packed = ZlibOf(drawing);

  std::string page = "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /MediaBox [0 0 ";
  AppendCoordinate(page, picture.width * kPointsPerPixel);
  page += ' ';
  AppendCoordinate(page, picture.height * kPointsPerPixel);
  page += "] /Resources << /Font << /F1 5 0 R /F2 6 0 R /F3 7 0 R >> >> >>";

  Objects objects;
  objects.Add("<< /Type /Catalog /Pages 2 0 R >>");
  objects.Add("<< /Type /Pages /Kids [3 0 R] /Count 1 >>");
  objects.Add(page);
  objects.Add("<< /Length " + std::to_string(packed.size()) + " /Filter /FlateDecode >>\nstream\n" + packed +
              "\nendstream");
  objects.Add(FontObject("Times-Roman", true));
  objects.Add(FontObject("Helvetica", true));
  objects.Add(FontObject("Symbol", false));
  return objects.Finish();
}

}  // namespace kalvex
