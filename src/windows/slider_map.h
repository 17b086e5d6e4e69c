// The scale of the parameter control's slider. It is linear near the present value and curved towards the limits, so
// that one slider allows fine changes and reaches the whole range.
#pragma once

namespace kalvex::slider {

// Positions of the slider: its top end, its bottom end and its centre.
inline constexpr int kTop = 0;
inline constexpr int kBottom = 80;
inline constexpr int kCentre = 40;
inline constexpr int kPage = 10;
inline constexpr int kTicks[] = {20, 40, 60};

// The value at step n, from 0 at the bottom to 80 at the top, for a slider centred on base. Steps 20 to 60 are linear:
// from 20 % of the distance to lo below base up to 20 % of the distance to hi above base. If base lies on a limit or
// outside, the whole range is swept exponentially.
double Map(int n, double base, double lo, double hi);

// The lower tail, from 0 at t = 0 to 1 at t = 1: exponential up to t = 0.3, then a smoothly joined cubic.
double H(double t);
// The upper tail, (L^t - 1)/(L - 1); t itself for L not above 1.
double E(double L, double t);
// The base L for which E(L, t) has slope r at t = 0; 1 for r of 1 or more, 0 for r not above 0.
double SlopeBase(double r);

}  // namespace kalvex::slider
