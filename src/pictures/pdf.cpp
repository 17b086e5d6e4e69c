#include "pictures/pdf.h"

#include <vector>

#include "core/text.h"
#include "pictures/characters.h"
#include "pictures/deflate.h"
#include "pictures/text_metrics.h"
#include "pictures/vector_parts.h"

namespace kalvex {
namespace {

// Numbers, each followed by a blank, then the operator.
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

// Consecutive characters of one font and size.
struct Run {
  FontNumber font;
  double size, rise;  // fractions of the em
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

// ---- shapes

void AppendPath(std::string& out, std::span<const Point> points) {
  const char* operation = "m";
  for (const Point& p : points) {
    Append(out, {p.x, p.y}, operation);
    operation = "l";
  }
}

void AppendStroke(std::string& out, const PenStroke& stroke, std::uint32_t colour) {
  if (stroke.lines.empty()) return;
  AppendColour(out, colour, "RG");
  Append(out, {stroke.width}, "w");
  out += stroke.onPixels ? "2 J 0 j\n" : "0 J 1 j\n";
  for (const std::vector<Point>& line : stroke.lines) {
    AppendPath(out, line);
    out += "S\n";
  }
}

void AppendBox(std::string& out, const Box& box) {
  Append(out, {box.left, box.top, box.right - box.left, box.bottom - box.top}, "re");
}

// ---- the file

// The numbered objects of a file and their offsets.
struct Objects {
  std::string bytes = "%PDF-1.4\n";
  std::vector<std::size_t> begins;

  void Add(const std::string& object) {
    begins.push_back(bytes.size());
    bytes += std::to_string(begins.size()) + " 0 obj\n" + object + "\nendobj\n";
  }
  // Appends the cross-reference table, whose entries have 20 bytes each, and the trailer.
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

void PdfPicture::DrawText(Point at, TextPlace place, const Font& font, std::uint32_t colour, std::string_view utf8) {
  if (!IsFinite(at) || utf8.empty()) return;
  const Point start = TextLineOf(at, place, font, utf8).start;
  const double em = EmOf(font);
  std::string& out = body_;
  AppendColour(out, colour, "rg");
  out += "BT\n";
  // The y axis of the page is flipped; the text matrix flips the letters back.
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

void PdfPicture::DrawPolyline(std::span<const Point> points, const Pen& pen) {
  AppendStroke(body_, PenStrokeOf(points, pen, false, Bounds()), pen.colour);
}

void PdfPicture::DrawPolygon(std::span<const Point> points, std::optional<std::uint32_t> fill,
                             const std::optional<Pen>& outline) {
  if (fill && outline && IsWholePolygon(points, Bounds())) {
    AppendColour(body_, *fill, "rg");
    AppendColour(body_, outline->colour, "RG");
    Append(body_, {std::fmax(outline->width, 1)}, "w");
    AppendPath(body_, points);
    body_ += "b*\n";
    return;
  }
  if (fill) {
    const std::vector<Point> polygon = VisiblePolygon(points, Bounds());
    if (!polygon.empty()) {
      AppendColour(body_, *fill, "rg");
      AppendPath(body_, polygon);
      body_ += "f*\n";
    }
  }
  if (outline) AppendStroke(body_, PenStrokeOf(points, *outline, true, Bounds()), outline->colour);
}

void PdfPicture::FillRectangle(double left, double top, double right, double bottom, std::uint32_t colour) {
  const Box box = VisibleBox(left, top, right, bottom, Bounds());
  if (box.right <= box.left) return;
  AppendColour(body_, colour, "rg");
  AppendBox(body_, box);
  body_ += "f\n";
}

void PdfPicture::Unclip() {
  if (clipped_) body_ += "Q\n";
  clipped_ = false;
}

void PdfPicture::Clip(double left, double top, double right, double bottom) {
  Unclip();
  body_ += "q\n";
  AppendBox(body_, VisibleBox(left, top, right, bottom, Bounds()));
  body_ += "W n\n";
  clipped_ = true;
}

std::string PdfPicture::Drawing() const {
  std::string drawing;
  Append(drawing, {kPointsPerPixel, 0, 0, -kPointsPerPixel, 0, height_ * kPointsPerPixel}, "cm");
  return drawing + body_ + (clipped_ ? "Q\n" : "");
}

std::string PdfPicture::Bytes() const {
  const std::string packed = ZlibOf(Drawing());

  std::string page = "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /MediaBox [0 0 ";
  AppendCoordinate(page, width_ * kPointsPerPixel);
  page += ' ';
  AppendCoordinate(page, height_ * kPointsPerPixel);
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
