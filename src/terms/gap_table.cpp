#include "terms/gap_table.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/files.h"
#include "core/text.h"
#include "numeric/quadrature.h"

namespace kalvex {
namespace {

// kTc/Delta(0) of weak coupling, 0.5669.
const double kTcOfGap = std::exp(std::numbers::egamma) / std::numbers::pi;

// The gap equation is ln(1/d) = 2 g(y), y = Delta/kT, with
//     g(y) = integral from 0 of f(r)/r du,   r = sqrt(u^2 + y^2),   f the Fermi function.
Dual<1> PairBlocking(double ratio) {
  const Dual<1> y(ratio, 0);
  Dual<1> sum;
  OnHalfLine(std::min(1.0, ratio), std::max(1.0, ratio), [&](double u, double du) {
    const Dual<1> r = Sqrt(y * y + u * u);
    const Dual<1> q = Exp(-r);
    sum += du * q / ((1.0 + q) * r);
  });
  return sum;
}

// The root y of ln y + 2 g(y) + ln(kTcOfGap t) = 0. The left side increases from below 0 at y = 0 to above 0 at y =
// 1/(kTcOfGap t).
double GapOverTemperature(double t) {
  const double shift = std::log(kTcOfGap * t);
  double low = 0, high = 1 / (kTcOfGap * t), y = high;
  for (int step = 0; step < 100; ++step) {
    const Dual<1> g = PairBlocking(y);
    const double value = std::log(y) + 2 * g.a + shift;
    (value > 0 ? high : low) = y;
    double next = y - value / (1 / y + 2 * g.v[0]);
    if (!(next > low && next < high)) next = 0.5 * (low + high);
    const double change = std::fabs(next - y);
    y = next;
    if (change <= 1e-14 * y) break;
  }
  return y;
}

}  // namespace

GapTable MakeGapTable() {
  GapTable table;
  constexpr std::size_t kLast = GapTable::kPoints - 1;
  table.square[0] = 1;
  for (std::size_t i = 1; i < kLast; ++i) {
    const double t = static_cast<double>(i) * GapTable::kSpacing;
    const double y = GapOverTemperature(t), d = kTcOfGap * t * y;
    // ln d = -2 g(y) and y = d/(kTcOfGap t): d'/d = (2 g' y/t)/(1 + 2 g' y)
    const double rate = 2 * PairBlocking(y).v[0] * y;
    table.square[i] = d * d;
    table.slope[i] = 2 * d * d * (rate / t) / (1 + rate);
  }
  // d^2 = 8 pi^2/(7 zeta(3)) (kTc/Delta(0))^2 (1 - t) near t = 1
  constexpr double kZeta3 = 1.2020569031595943;
  table.slope[kLast] = -8 * std::pow(std::numbers::pi * kTcOfGap, 2) / (7 * kZeta3);
  return table;
}

Status WriteGapTable(const GapTable& table) {
  std::string text;
  for (std::size_t i = 0; i < GapTable::kPoints; ++i) {
    AppendG(text, static_cast<double>(i) * GapTable::kSpacing);
    text += ' ';
    AppendG(text, std::sqrt(table.square[i]));
    text += '\n';
  }
  return WriteWholeFile("Tab.dat", text);
}

}  // namespace kalvex
