// Graph: a plot of curves, with two axes and a list of curves. A curve shows a dataset, a model, or both. On the screen
// each curve is stored as strokes, vertical runs of pixels, so that an update repaints only the pixels that changed.
// This folder stands on floor 6: it uses datasets, models, the evaluation and src/pictures, and knows no window.
//
//   graph.h           the records: Graph, Axis, Curve, Stroke; tables of colours and symbols
//   graph_table.h     making graphs and changing them; AnswerGraphEvent marks what has become stale
//   axes.h            limits, ticks and labels; from values to pixels and back
//   curve_samples.h   the values that curves show
//   strokes.h         lines and symbols as strokes; curve_strokes.h: the strokes of each kind of curve
//   painting.h        drawing a graph on a canvas of pixels, whole or only what changed
//   vector_curves.h   drawing with lines instead of pixels; graph_picture.h: a picture as a file
//   graph_export.h    model curves as columns of text
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/enum_array.h"
#include "core/limits.h"
#include "datasets/quantity.h"

namespace kalvex {

// A run of rows in one column, both ends included. Rows count upwards from the bottom of the plot; first <= last.
struct Stroke {
  int column;
  int first;
  int last;
};

struct StrokeBuffer {
  std::vector<Stroke> strokes;
  std::size_t capacity = 0;      // upper bound for this curve; needing more is an internal error
  std::vector<int> firstStroke;  // of each column: its first stroke (-1: none), and the one after its last
  std::vector<int> endStroke;
};

enum class CurveKind : int { kData = 0, kModel = 1, kChiSq = 2, kMulti = 3, kFreq = 4, kReader = 5 };
inline constexpr int kCurveKinds = static_cast<int>(CurveKind::kReader);  // the kinds that a person can add
template <>
inline constexpr std::size_t kEnumCount<CurveKind> = kCurveKinds;

struct Curve {
  std::uint32_t order = 0;  // position in which the user chose the curve
  CurveKind kind = CurveKind::kData;
  Quantity quantity = kRefl;    // of all kinds but kFreq and kReader
  std::uint32_t datasetId = 0;  // for the kinds kData and kChiSq
  std::uint32_t modelId = 0;    // the model's number, for all kinds except kData
  int nColor = 0;               // row of the colour table, 0 for an automatic colour
  int colorIndex = 0;           // the row in use, 1 to 16
  bool ShowLine = false;
  bool ShowSymbol = false;
  bool ShowError = false;
  int nSymbolSize = 0;   // row of the size table
  int nSymbolShape = 0;  // row of the shape table
  bool SymbolOpen = false;
  double Scale = 1.0;
  double Shift = 0.0;

  StrokeBuffer strokes{};
  StrokeBuffer oldStrokes{};  // the strokes that were painted last, if `changed`
  bool changed = false;       // the strokes differ from those that were painted last
};

inline constexpr std::size_t kLongestTitle = 99;  // bytes of an axis title

struct Axis {
  double min = 0.0;
  double max = 1.0;
  double tick = 0.2;  // distance of the labelled ticks, in decades on a logarithmic axis
  double logMin = 0;
  double logMax = 0;
  bool log = false;
  std::string title;
  bool titleShown = true;
  int tickCount = 0;
  int labelGap = 0;  // smallest free distance of two neighbouring labels, pixels

  bool operator==(const Axis&) const = default;
};

// The frame is part of the plot. Window pixels, y downwards.
struct PlotFrame {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
};

// How much a screen must repaint to show the present state of the graph.
enum class Repaint { kNothing, kChanges, kEverything };

struct Graph {
  std::uint32_t number = 0;  // 0 marks a free slot
  std::string name;
  int Width = 400;  // of the window, pixels
  int Height = 300;

  PlotFrame frame;
  Axis X{0.0, 1000.0, 200.0, 0, 0, false, "Wavenumber (1/cm)"};
  Axis Y{0.0, 1.0, 0.2, 0, 0, false, "Reflectivity"};
  bool ShowFitted = false;  // show only the rows of a dataset that the fit uses

  std::vector<Curve> curves;
  unsigned staleKinds = 0;  // one bit for each kind of curve whose strokes must be rebuilt
  Repaint repaint = Repaint::kEverything;

  int plotWidth = 0;  // pixels
  int plotHeight = 0;
  std::vector<double> columnX;                     // value of each column of pixels
  std::vector<double> rowY;                        // value of each row of pixels, from the bottom
  std::vector<std::uint8_t> columnNew, columnOld;  // buffers for the colours of one column

  bool readerActive = false;
  int readerColumn = 0;
  int readerRow = 0;
  Curve readerCurve{.kind = CurveKind::kReader, .colorIndex = 1};
};

struct GraphTable {
  std::array<Graph, kMaxGraphs> slots;
  std::uint32_t nextNumber = 1;
};

struct CurveColor {
  const char* name;
  std::uint32_t rgb;  // 0xRRGGBB
};
inline constexpr auto kCurveColors = std::to_array<CurveColor>({{"= AUTO =", 0xFFFFFF},
                                                                {"Black", 0x000000},
                                                                {"Red", 0xFF0000},
                                                                {"Green", 0x00FF00},
                                                                {"Blue", 0x0000FF},
                                                                {"Cyan", 0x00FFFF},
                                                                {"Magenta", 0xFF00FF},
                                                                {"Yellow", 0xFFFF00},
                                                                {"Gray", 0x7F7F7F},
                                                                {"Grass", 0x009933},
                                                                {"Sky", 0x00CCFF},
                                                                {"Orange", 0xFF9933},
                                                                {"Chalk", 0xFFFF99},
                                                                {"Brown", 0x996633},
                                                                {"Sea", 0x33CC99},
                                                                {"Gold", 0xCC9933},
                                                                {"Khaki", 0x999966}});
inline constexpr int kAutomaticColors = static_cast<int>(kCurveColors.size()) - 1;
inline const CurveColor& ColorOf(const Curve& curve) {
  return kCurveColors[static_cast<std::size_t>(curve.colorIndex)];
}

inline constexpr std::array<const char*, 8> kSymbolSizeNames = {"1", "3", "5", "7", "9", "11", "13", "15"};
enum class SymbolShape : int { kSquare, kCircle, kUpTriangle, kDownTriangle, kDiamond };
template <>
inline constexpr std::size_t kEnumCount<SymbolShape> = static_cast<std::size_t>(SymbolShape::kDiamond) + 1;
inline constexpr auto kSymbolShapeNames =
    FullTable<SymbolShape, const char*>({"Square", "Circle", "Up triangle", "Down triangle", "Diamond"});
inline constexpr auto kCurveKindNames = FullTable<CurveKind, const char*>({"DATA", "MODEL", "CHI-SQ", "MULTI", "FREQ"});

// Size in pixels of a curve's symbols. 0 if it shows none, or if its size or shape is not in the tables.
inline int SymbolSizeOf(const Curve& curve) {
  const auto isRow = [](int row, std::size_t rows) { return row >= 0 && row < static_cast<int>(rows); };
  const bool shown = curve.ShowSymbol && isRow(curve.nSymbolSize, kSymbolSizeNames.size()) &&
                     isRow(curve.nSymbolShape, kSymbolShapeNames.size());
  return shown ? 2 * curve.nSymbolSize + 1 : 0;
}

}  // namespace kalvex
