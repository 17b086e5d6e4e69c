// Spectra for fits with a known result.
#pragma once

#include <array>
#include <cstdio>

#include "app/kalvex_run.h"

namespace kalvex {

inline constexpr Oscillator kTrueMode = {4, 120, 250, 8};

// Writes the reflectivity of kTrueMode as "R.dat", and defines an oscillator that starts near it.
class Fitting : public Kalvex {
 protected:
  Fitting() {
    std::string data;
    for (int x = 40; x <= 300; x += 2) {
      std::array<char, 64> line;
      std::snprintf(line.data(), line.size(), "%d %.12g\n", x, ReflectivityOf(EpsOf(kTrueMode, x)));
      data += line.data();
    }
    folder.Write("R.dat", data);
  }
  // The number of iterations in the summary of a fit.
  static int IterationsOf(const std::string& summary) { return std::stoi(summary); }

  const std::string start =
      "LoadDataset(MasterFile=\"R.dat\",YErrMethod=3,YErrVal=0.001);\n" + OscillatorModel({3, 115, 230, 10});
  const std::string term = "WindowFit();\nAddChiSqTerm(DatasetNo=1,ModelNo=1);\n";
};

}  // namespace kalvex
