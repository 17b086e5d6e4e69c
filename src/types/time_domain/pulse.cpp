#include "types/time_domain/pulse.h"

#include <cmath>

#include "datasets/interpolation.h"

namespace kalvex {
namespace {

// The real trace whose spectrum has the given half.
template <class At>
void BackToTime(const Fft& fft, std::size_t half, At at, std::vector<Cplx>& buffer, std::vector<double>& trace) {
  buffer.assign(fft.Size(), {});
  for (std::size_t k = 0; k <= half; ++k) {
    const double times = k == 0 || k == half ? 1 : 2;
    buffer[k] = at(k) * times;
  }
  fft.Back(buffer);
  trace.resize(fft.Size());
  for (std::size_t i = 0; i < trace.size(); ++i) trace[i] = buffer[i].re;
}

}  // namespace

PulseGrid MakePulseGrid(double from, double to, double points) {
  constexpr double kMostPoints = 16777216;
  if (!(points <= kMostPoints)) return {};
  std::size_t size = 2;
  while (static_cast<double>(size) < std::trunc(points)) size *= 2;
  return {from, (to - from) / static_cast<double>(size - 1), size};
}

void ReadReference(const Dataset& reference, Pulse& pulse) {
  const std::size_t size = pulse.grid.size;
  if (pulse.fft.Size() != size) pulse.fft = Fft(size);
  pulse.input.resize(size);
  std::vector<Cplx> z(size);
  for (std::size_t i = 0; i < size; ++i) {
    pulse.input[i] = DatasetValueAt(reference, pulse.grid.TimeOf(i));
    z[i] = {pulse.input[i], 0};
  }
  pulse.fft.Forward(z);
  pulse.spectrum.resize(size / 2 + 1);
  for (std::size_t k = 0; k <= size / 2; ++k) pulse.spectrum[k] = z[k] / static_cast<double>(size);
}

void SendThrough(Pulse& pulse, bool derivatives) {
  const std::size_t half = pulse.grid.size / 2;
  std::vector<Cplx> buffer;
  BackToTime(
      pulse.fft, half, [&](std::size_t k) { return pulse.spectrum[k] * pulse.transfer[k].value; }, buffer,
      pulse.output);
  pulse.outputSlopes.resize(derivatives ? pulse.params.size() : 0);
  for (std::size_t p = 0; p < pulse.outputSlopes.size(); ++p) {
    BackToTime(
        pulse.fft, half, [&](std::size_t k) { return pulse.spectrum[k] * pulse.transfer[k].slopes[p]; }, buffer,
        pulse.outputSlopes[p]);
  }
}

bool FindPlace(double x, double from, double step, std::size_t count, GridPlace& place) {
  const double at = (x - from) / step;
  if (!(at >= 0 && at <= static_cast<double>(count - 1))) return false;
  place.index = std::min(static_cast<std::size_t>(at), count - 2);
  place.fraction = at - static_cast<double>(place.index);
  return true;
}

}  // namespace kalvex
