// Reading a table of rows between its points.
#pragma once

#include <span>

#include "datasets/dataset.h"

namespace kalvex {

// All of them take rows in ascending x, at least one.

// Index i with x[i] <= x < x[i+1]; -1 for x at or below the first row, n - 1 at or above the last.
int FindInterval(std::span<const DataRow> rows, double x);
// The same, looking first at the interval of an earlier answer and at the one after it: cheap for ascending x.
int FindIntervalNear(std::span<const DataRow> rows, double x, int hint);

// Linear between the rows, constant beyond the ends; the mean of the two values where two rows share the x.
double InterpolateY(std::span<const DataRow> rows, double x);
double InterpolateSigma(std::span<const DataRow> rows, double x);
double InterpolateAt(std::span<const DataRow> rows, double x, int interval, double DataRow::*column);

// Mean over [a, b] of the rows read as a step function with its steps midway between neighbours; beyond the ends the
// end values hold. 0 if b is not above a.
double AverageY(std::span<const DataRow> rows, double a, double b);
double AverageSigma(std::span<const DataRow> rows, double a, double b);
double AverageOver(std::span<const DataRow> rows, double a, double b, double DataRow::*column);

// InterpolateY on the dataset's rows; 0 for a dataset without rows.
double DatasetValueAt(const Dataset& dataset, double x);

}  // namespace kalvex
