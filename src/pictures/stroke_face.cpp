#include "pictures/stroke_face.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string>

#include "core/text.h"
#include "pictures/characters.h"
#include "pictures/glyph_shapes.h"
#include "pictures/text_metrics.h"

namespace kalvex {
namespace {

// One command of a path; `bend` is the control point of a parabola.
struct Step {
  char command;
  Point bend, to;
};

double TakeNumber(const char*& at, const char* end) {
  std::int32_t value = 0;
  at = ParseInteger(at, end, value);
  if (at != end && *at == ',') ++at;
  return value;
}

std::vector<Step> StepsOf(std::string_view path) {
  std::vector<Step> steps;
  const char* const end = path.data() + path.size();
  Point to{0, 0};
  for (const char* at = path.data(); at != end;) {
    const char command = *at++;
    if (command == ' ') continue;
    const bool isSerif = command == 's' || command == '<' || command == '>';
    Point bend = to;
    if (command == 'q') {
      bend.x = TakeNumber(at, end);
      bend.y = TakeNumber(at, end);
    }
    if (!isSerif) {
      to.x = TakeNumber(at, end);
      to.y = TakeNumber(at, end);
    }
    steps.push_back({command, bend, to});
  }
  return steps;
}

// One fixed point of the map from the units of a shape to pixels along one axis. The map is linear between fixed points
// and is extrapolated beyond the outermost.
struct Fixed {
  double shape, pixel;
};
using Fixes = std::vector<Fixed>;

double PixelOf(const Fixes& fixes, double shape) {
  std::size_t i = 1;
  while (i + 1 < fixes.size() && fixes[i].shape < shape) ++i;
  const Fixed &a = fixes[i - 1], &b = fixes[i];
  return a.pixel + (shape - a.shape) * (b.pixel - a.pixel) / (b.shape - a.shape);
}

void SortedOnce(std::vector<double>& values) {
  std::sort(values.begin(), values.end());
  values.erase(std::unique(values.begin(), values.end()), values.end());
}

// Coordinates where a shape runs straight along an axis or turns back. They must lie on the pixel grid.
struct Landmarks {
  std::vector<double> x, y;
  bool stemInTheMiddle = false;  // and stems beside it
};

Landmarks LandmarksOf(std::span<const Step> steps) {
  Landmarks marks;
  bool stemAtFifty = false;
  Point from{0, 0};
  double least = 100, greatest = 0;
  for (const Step& step : steps) {
    const Point to = step.to;
    if (step.command == 'l' && from.x == to.x) marks.x.push_back(to.x);
    if (step.command == 'l' && from.y == to.y) marks.y.push_back(to.y);
    if (step.command == 'l' && from.x == to.x && to.x == 50) stemAtFifty = true;
    if (step.command == 'h') {
      marks.x.push_back(to.x);
      marks.y.push_back(from.y);
    }
    if (step.command == 'v') {
      marks.x.push_back(from.x);
      marks.y.push_back(to.y);
    }
    if (step.command == 'd') {
      marks.x.push_back(to.x);
      marks.y.push_back(to.y);
    }
    least = std::min(least, to.x);
    greatest = std::max(greatest, to.x);
    from = to;
  }
  marks.x.push_back(least);
  marks.x.push_back(greatest);
  SortedOnce(marks.x);
  SortedOnce(marks.y);
  marks.stemInTheMiddle = stemAtFifty && marks.x.size() > 2;
  return marks;
}

// The em in pixels, and what follows from it for all characters.
struct Size {
  Face face;
  double em, pen;  // pen: the width of strokes, whole pixels
  bool serifs;
};

// Heights of the letters, and the space left and right of the middles of the outermost strokes, in em.
struct Proportions {
  double xHeight, capHeight, descender, bearing;
};
constexpr Proportions ProportionsOf(Face face) {
  return face == Face::kSerif ? Proportions{0.455, 0.67, 0.21, 0.105} : Proportions{0.525, 0.72, 0.205, 0.105};
}

Fixes FixesAlongY(const Size& size, const Landmarks& marks) {
  const Proportions proportions = ProportionsOf(size.face);
  const double low = size.pen / 2;
  // Small letters have three strokes above each other and need enough height in small fonts.
  const double xHeight = std::round(proportions.xHeight * size.em + 0.3);
  const double capHeight = std::max(xHeight + 1, std::round(proportions.capHeight * size.em));
  const double descender = std::round(proportions.descender * size.em);
  const Fixes zones = {{-28, low - descender}, {0, low}, {66, xHeight - low}, {100, capHeight - low}};
  Fixes fixes = zones;
  for (const double mark : marks.y) {
    if (mark == -28 || mark == 0 || mark == 66 || mark == 100) continue;
    fixes.push_back({mark, low + std::round(PixelOf(zones, mark) - low)});
  }
  std::sort(fixes.begin(), fixes.end(), [](const Fixed& a, const Fixed& b) { return a.shape < b.shape; });
  return fixes;
}

// Pixels from the left end of the advance. The character as a whole may still lie between pixels.
Fixes FixesAlongX(const Size& size, const Landmarks& marks, double advance) {
  const double bearing = std::min(ProportionsOf(size.face).bearing * size.em, advance * 0.3);
  const double scale = (advance - 2 * bearing) / 100;
  const double first = marks.x.front(), last = marks.x.back();
  const double middle = advance / 2 + ((first + last) / 2 - 50) * scale;
  if (first == last) return {{first, middle}, {first + 1, middle + scale}};
  const double step = marks.stemInTheMiddle ? 2 : 1;
  // Keeps one pixel of space to the next letter.
  const double room = std::max(step, std::floor((advance - size.pen - 0.5) / step) * step);
  double inside = std::round((last - first) * scale / step) * step;
  if (first >= 0 && last <= 100) inside = std::min(inside, room);
  inside = std::max(inside, step);
  Fixes fixes;
  for (const double mark : marks.x) {
    fixes.push_back({mark, middle - inside / 2 + std::round((mark - first) / (last - first) * inside)});
  }
  return fixes;
}

// Appends a quarter of an ellipse, or a parabola, as straight segments.
void AppendCurve(std::vector<Point>& line, char command, Point from, Point bend, Point to) {
  // Sines of the multiples of 90/8 degrees. They are constants because libraries differ in the last digit.
  constexpr std::array<double, 9> kSine = {
      0, 0.1950903220, 0.3826834324, 0.5555702330, 0.7071067812, 0.8314696123, 0.9238795325, 0.9807852804, 1};
  for (std::size_t i = 1; i < kSine.size(); ++i) {
    const double fast = kSine[i], slow = 1 - kSine[8 - i], t = static_cast<double>(i) / 8;
    if (command == 'q') {
      const double a = (1 - t) * (1 - t), b = 2 * t * (1 - t), c = t * t;
      line.push_back({a * from.x + b * bend.x + c * to.x, a * from.y + b * bend.y + c * to.y});
    } else {
      const double x = command == 'h' ? fast : slow, y = command == 'h' ? slow : fast;
      line.push_back({from.x + x * (to.x - from.x), from.y + y * (to.y - from.y)});
    }
  }
}

// Draws a character with its baseline at the height `rise` and its advance starting at `left`, in pixels.
void AppendGlyph(TextStrokes& text, char32_t character, const Size& size, double advance, double left, double rise) {
  const std::vector<Step> steps = StepsOf(GlyphPath(character));
  if (steps.empty()) return;
  const Landmarks marks = LandmarksOf(steps);
  const Fixes alongX = FixesAlongX(size, marks, advance), alongY = FixesAlongY(size, marks);
  const double half = size.pen / 2;
  const double firstStem = left + alongX.front().pixel;
  const double shift = half + std::round(firstStem - half) - firstStem + left;
  const auto place = [&](Point point) {
    return Point{shift + PixelOf(alongX, point.x), -(rise + PixelOf(alongY, point.y))};
  };
  Point from{0, 0};
  for (const Step& step : steps) {
    const Point to = place(step.to);
    switch (step.command) {
      case 'm':
        text.lines.push_back({to});
        break;
      case 'd':
        text.lines.push_back({to, to});
        break;
      case 'l':
        text.lines.back().push_back(to);
        break;
      case 's':
      case '<':
      case '>': {
        if (!size.serifs) break;
        const double serif = std::max(1.0, std::round(0.07 * size.em));
        const Point serifLeft{to.x - (step.command == '>' ? 0 : serif), to.y};
        const Point serifRight{to.x + (step.command == '<' ? 0 : serif), to.y};
        text.lines.insert(text.lines.end() - 1, std::vector<Point>{serifLeft, serifRight});
        break;
      }
      default:
        AppendCurve(text.lines.back(), step.command, from, place(step.bend), to);
    }
    from = to;
  }
}

}  // namespace

TextStrokes StrokesOfText(const Font& font, std::string_view utf8) {
  const double em = EmOf(font);
  TextStrokes text{{}, std::max(1.0, std::round(0.07 * em))};
  int advanced = 0;
  for (const char32_t character : CharactersOf(utf8)) {
    const int advance = AdvanceOf(font.face, character);
    const SmallCharacter small = SmallCharacterOf(character);
    const bool isSmall = small.base != 0;
    const Size size{font.face, isSmall ? kSmallSize * em : em, text.width,
                    font.face == Face::kSerif && !isSmall && em > 11};
    AppendGlyph(text, isSmall ? small.base : character, size, advance * em / 1000, advanced * em / 1000,
                std::round(small.rise * em));
    advanced += advance;
  }
  return text;
}

}  // namespace kalvex
