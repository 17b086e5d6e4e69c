// Runs the real program on macros, in a folder with a blank in its name, and computes the expected values.
#pragma once

#include <gtest/gtest.h>

#include <complex>
#include <string>
#include <vector>

#include "support/run_program.h"
#include "support/tolerances.h"

namespace kalvex {

using Table = std::vector<std::vector<double>>;

struct Oscillator {
  double epsInf, wo, wp, g;
};

inline std::complex<double> EpsOf(const Oscillator& o, double w) {
  return o.epsInf + o.wp * o.wp / std::complex<double>(o.wo * o.wo - w * w, -w * o.g);
}

inline double ReflectivityOf(std::complex<double> eps) {
  return std::norm((1.0 - std::sqrt(eps)) / (1.0 + std::sqrt(eps)));
}

class Kalvex : public testing::Test {
 protected:
  const ProgramRun& Run(const std::string& macro) {
    run = RunMacroText(folder, macro);
    EXPECT_EQ(run.status, 0) << macro << '\n' << run.err;
    return run;
  }
  // The verbose texts of all statements with that name.
  std::vector<std::string> EverySaid(const std::string& command) const {
    const std::string mark = ": " + command + ": ";
    std::vector<std::string> said;
    for (std::size_t at = run.err.find(mark); at != std::string::npos; at = run.err.find(mark, at)) {
      at += mark.size();
      said.push_back(run.err.substr(at, run.err.find('\n', at) - at));
    }
    return said;
  }
  // The verbose text of the last of them.
  std::string Said(const std::string& command) const {
    const auto said = EverySaid(command);
    return said.empty() ? "" : said.back();
  }
  // The verbose text of the last statement of a macro.
  std::string SaidLast(const std::string& macro) {
    Run(macro);
    const std::size_t start = run.err.rfind('\n', run.err.size() - 2) + 1;
    const std::string line = run.err.substr(start, run.err.size() - start - 1);
    return line.substr(line.find(": ", line.find(": ") + 2) + 2);
  }
  Table Written(const std::string& name) const { return NumbersOf(folder.Read(name)); }
  // The fit's ChiSq in the summary of a saved model.
  double ChiSqIn(const std::string& summary) const {
    const std::string text = folder.Read(summary);
    EXPECT_EQ(text.substr(0, 8), "ChiSq = ");
    return NumbersOf(text.substr(8))[0][0];
  }

  ScratchFolder folder;
  ProgramRun run;
};

inline std::string Setting(int model, const std::string& name, int row, const std::string& items) {
  return "SetModelParam(ModelNo=" + std::to_string(model) + ",ParamName=\"" + name + "\",LorNo=" + std::to_string(row) +
         ',' + items + ");\n";
}

// Model 1 with one oscillator.
inline std::string OscillatorModel(const Oscillator& o) {
  const auto value = [](double v) { return "Value=" + std::to_string(v); };
  return "NewModel();\n" + Setting(1, "Einf", 1, value(o.epsInf)) + Setting(1, "Wo", 1, value(o.wo)) +
         Setting(1, "Wp", 1, value(o.wp)) + Setting(1, "G", 1, value(o.g));
}

// Model n without rows: the same dielectric constant everywhere, so that R = ((1 - sqrt(eps))/(1 + sqrt(eps)))^2.
inline std::string FlatModel(int number, double eps) {
  return "NewModel();\nRemoveModelRow(ModelNo=" + std::to_string(number) + ",LorNo=1);\n" +
         Setting(number, "Einf", 1, "Value=" + std::to_string(eps));
}

}  // namespace kalvex
