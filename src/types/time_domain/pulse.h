// A measured pulse that goes through a sample: the trace before it, its spectrum, the sample's transfer function, and
// the trace behind it, with derivatives by everything that the transfer depends on.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "datasets/dataset.h"
#include "evaluation/slopes.h"
#include "numeric/complex.h"
#include "numeric/fft.h"

namespace kalvex {

// The sampling of a trace: `size` points, a power of two, from the first one on.
struct PulseGrid {
  double from = 0;
  double step = 0;
  std::size_t size = 0;

  double TimeOf(std::size_t i) const { return from + static_cast<double>(i) * step; }
  // Frequencies from 0 to size/2, in cm-1 if the axis is the position in mm of a delay stage that is passed twice.
  double FrequencyStep() const { return 5 / step / static_cast<double>(size); }
};

// What the sample does at one frequency.
struct Transfer {
  Cplx value;
  std::vector<Cplx> slopes;  // by each of the pulse's parameters
};

struct Pulse {
  PulseGrid grid;
  Fft fft;
  std::vector<double> input;   // the trace before the sample
  std::vector<Cplx> spectrum;  // its transform over the number of points, size/2 + 1
  std::vector<Transfer> transfer;
  std::vector<double> output;                     // the trace behind the sample
  std::vector<ParamSlopes*> params;               // by which there are slopes
  std::vector<std::vector<double>> outputSlopes;  // by each of params

  std::uint64_t spectrumNumber = 0;  // the evaluation of a spectrum for which this was made
  bool derivatives = false;
};

// A grid of at least `points` between two times; size 0 if there are too many.
PulseGrid MakePulseGrid(double from, double to, double points);
// The reference read on the grid, and its spectrum.
void ReadReference(const Dataset& reference, Pulse& pulse);
// The trace behind the sample from spectrum and transfer, and its slopes.
void SendThrough(Pulse& pulse, bool derivatives);

// The place of x on a grid of `count` points: between index and index + 1; false outside.
struct GridPlace {
  std::size_t index = 0;
  double fraction = 0;
};
bool FindPlace(double x, double from, double step, std::size_t count, GridPlace& place);

}  // namespace kalvex
