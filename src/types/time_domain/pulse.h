// A measured pulse transmitted by a sample: the reference trace, its spectrum, the transfer function of the sample, and
// the transmitted trace with its derivatives by the parameters of the transfer function.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "datasets/dataset.h"
#include "evaluation/slopes.h"
#include "numeric/complex.h"
#include "numeric/fft.h"

namespace kalvex {

// The sampling of a trace: `size` points, a power of two, `step` apart, the first one at `from`.
struct PulseGrid {
  double from = 0;
  double step = 0;
  std::size_t size = 0;

  double TimeOf(std::size_t i) const { return from + static_cast<double>(i) * step; }
  // Frequencies from 0 to size/2, in cm-1 if the axis is the position in mm of a delay stage that is passed twice.
  double FrequencyStep() const { return 5 / step / static_cast<double>(size); }
};

// The transfer function of the sample at one frequency.
struct Transfer {
  Cplx value;
  std::vector<Cplx> slopes;  // by each of Pulse::params
};

struct Pulse {
  PulseGrid grid;
  Fft fft;
  std::vector<double> input;   // the reference trace
  std::vector<Cplx> spectrum;  // its Fourier transform divided by the number of points; size/2 + 1 values
  std::vector<Transfer> transfer;
  std::vector<double> output;                     // the transmitted trace
  std::vector<ParamSlopes*> params;               // the parameters of the transfer function
  std::vector<std::vector<double>> outputSlopes;  // of output by each of params

  std::uint64_t spectrumNumber = 0;  // number of the spectrum for which this was computed
  bool derivatives = false;
};

// A grid of at least `points` points between two times. size is 0 if there are too many.
PulseGrid MakePulseGrid(double from, double to, double points);
// Interpolates the reference to the grid, and computes its spectrum.
void ReadReference(const Dataset& reference, Pulse& pulse);
// Computes the transmitted trace, and with derivatives its slopes, from spectrum and transfer.
void SendThrough(Pulse& pulse, bool derivatives);

// The position of x between the points index and index + 1 of a grid of `count` points. False if x is outside.
struct GridPlace {
  std::size_t index = 0;
  double fraction = 0;
};
bool FindPlace(double x, double from, double step, std::size_t count, GridPlace& place);

}  // namespace kalvex
