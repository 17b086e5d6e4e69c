// The places of the fit parameters as texts: the kind, then model, row, column, experimental parameter, mesh point and
// part as one digit each.
#pragma once

#include <string>
#include <vector>

#include "fit/fit_state.h"

namespace kalvex {

using Texts = std::vector<std::string>;

inline Texts Places(const FitState& fit) {
  Texts places;
  for (const FitParam& p : fit.params) {
    std::string text = KindText(p.place.Where);
    text += ' ';
    for (const int digit : {p.place.nm, p.place.nl, p.place.nc, p.place.nep, p.place.nen, p.place.isIm}) {
      text += std::to_string(digit);
    }
    places.push_back(text);
  }
  return places;
}

}  // namespace kalvex
