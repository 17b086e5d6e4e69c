#include "datasets/interpolation.h"

#include <algorithm>

namespace kalvex {
namespace {

const DataRow& RowAt(std::span<const DataRow> rows, int i) { return rows[static_cast<std::size_t>(i)]; }

double OverlapOf(double a, double b, double from, double to) {
  return std::max(0.0, std::min(b, to) - std::max(a, from));
}

}  // namespace

int FindInterval(std::span<const DataRow> rows, double x) {
  const int last = static_cast<int>(rows.size()) - 1;
  if (x <= rows.front().x) return -1;
  if (x >= rows.back().x) return last;
  int lo = 0, hi = last;
  while (hi - lo > 1) {
    const int middle = lo + (hi - lo) / 2;
    (RowAt(rows, middle).x <= x ? lo : hi) = middle;
  }
  return lo;
}

int FindIntervalNear(std::span<const DataRow> rows, double x, int hint) {
  const int last = static_cast<int>(rows.size()) - 1;
  for (int i = std::max(hint, 0); i < std::min(hint + 2, last); ++i) {
    const bool inside = RowAt(rows, i).x <= x && x < RowAt(rows, i + 1).x;
    if (inside && x > rows.front().x) return i;
  }
  return FindInterval(rows, x);
}

double InterpolateAt(std::span<const DataRow> rows, double x, int interval, double DataRow::*column) {
  const int last = static_cast<int>(rows.size()) - 1;
  if (interval < 0) return rows.front().*column;
  if (interval >= last) return rows.back().*column;
  const DataRow& a = RowAt(rows, interval);
  const DataRow& b = RowAt(rows, interval + 1);
  if (a.x == b.x) return 0.5 * (a.*column + b.*column);
  return a.*column + (b.*column - a.*column) * ((x - a.x) / (b.x - a.x));
}

double InterpolateY(std::span<const DataRow> rows, double x) {
  return InterpolateAt(rows, x, FindInterval(rows, x), &DataRow::y);
}

double InterpolateSigma(std::span<const DataRow> rows, double x) {
  return InterpolateAt(rows, x, FindInterval(rows, x), &DataRow::sigma);
}

double AverageOver(std::span<const DataRow> rows, double a, double b, double DataRow::*column) {
  if (!(b > a)) return 0;
  const int last = static_cast<int>(rows.size()) - 1;
  double sum = 0;
  const int end = FindInterval(rows, b);
  for (int i = FindInterval(rows, a); i <= end; ++i) {
    const double leftX = i < 0 ? a : RowAt(rows, i).x;
    const double leftValue = RowAt(rows, std::max(i, 0)).*column;
    const double rightX = i == last ? b : RowAt(rows, i + 1).x;
    const double rightValue = RowAt(rows, std::min(i + 1, last)).*column;
    const double middle = 0.5 * (leftX + rightX);
    sum += leftValue * OverlapOf(a, b, leftX, middle) + rightValue * OverlapOf(a, b, middle, rightX);
  }
  return sum / (b - a);
}

double AverageY(std::span<const DataRow> rows, double a, double b) { return AverageOver(rows, a, b, &DataRow::y); }
double AverageSigma(std::span<const DataRow> rows, double a, double b) {
  return AverageOver(rows, a, b, &DataRow::sigma);
}

double DatasetValueAt(const Dataset& dataset, double x) {
  return dataset.points.empty() ? 0 : InterpolateY(dataset.points, x);
}

}  // namespace kalvex
