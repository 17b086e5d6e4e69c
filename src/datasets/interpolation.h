// Values of a table between its rows.
#pragma once

#include <span>

#include "datasets/dataset.h"

namespace kalvex {

// All functions take at least one row, in ascending x.

// Index i with x[i] <= x < x[i+1]; -1 for x at or below the first row, n - 1 at or above the last.
int FindInterval(std::span<const DataRow> rows, double x);
// The same. The search begins with the interval `hint` from an earlier call and the next one: fast for ascending x.
int FindIntervalNear(std::span<const DataRow> rows, double x, int hint);

// Linear between the rows, constant outside the table. If two rows have the same x: the mean of their values.
double InterpolateY(std::span<const DataRow> rows, double x);
double InterpolateSigma(std::span<const DataRow> rows, double x);
double InterpolateAt(std::span<const DataRow> rows, double x, int interval, double DataRow::*column);

// Mean over [a, b]. The rows define a step function with steps midway between neighbours. Outside the table the value
// of the nearest end applies. 0 if b is not above a.
double AverageY(std::span<const DataRow> rows, double a, double b);
double AverageSigma(std::span<const DataRow> rows, double a, double b);
double AverageOver(std::span<const DataRow> rows, double a, double b, double DataRow::*column);

// InterpolateY for the rows of a dataset; 0 without rows.
double DatasetValueAt(const Dataset& dataset, double x);

}  // namespace kalvex
