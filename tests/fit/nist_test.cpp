// The bounded fit on the 27 nonlinear problems of the NIST Statistical Reference Datasets, from both of their starts.
// The certified values are in the files.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "fit/bounded_fit.h"
#include "numeric/band_solver.h"
#include "numeric/dual.h"

namespace kalvex {
namespace {

using Num = Dual<9>;
using Nums = std::vector<Num>;
using Formula = std::function<Num(const Nums& b, const std::vector<double>& x)>;

Num Power(const Num& x, const Num& y) {
  const double power = std::pow(x.a, y.a);
  return Num::Along(power, y.a * std::pow(x.a, y.a - 1), x, power * std::log(x.a), y);
}
Num Power(const Num& x, double y) { return Num::Along(std::pow(x.a, y), y * std::pow(x.a, y - 1), x); }
Num Cosine(const Num& x) { return Num::Along(std::cos(x.a), -std::sin(x.a), x); }
Num Sine(const Num& x) { return Num::Along(std::sin(x.a), std::cos(x.a), x); }
Num ArcTangent(const Num& x) { return Num::Along(std::atan(x.a), 1 / (1 + x.a * x.a), x); }
Num Square(const Num& x) { return x * x; }

Num Polynomial(const Nums& b, std::size_t first, std::size_t count, double x) {
  Num sum;
  for (std::size_t k = count; k-- > 0;) sum = sum * Num(x) + b[first + k];
  return sum;
}
// The constant term of the denominator is 1.
Num Rational(const Nums& b, std::size_t above, std::size_t below, double x) {
  return Polynomial(b, 0, above, x) / (Num(1) + Num(x) * Polynomial(b, above, below, x));
}
Num Decay(const Num& amplitude, const Num& rate, double x) { return amplitude * Exp(-rate * Num(x)); }
Num Peak(const Num& height, const Num& centre, const Num& width, double x) {
  return height * Exp(-Square((Num(x) - centre) / width));
}
Num Wave(const Num& cosine, const Num& sine, const Num& period, double x) {
  const Num phase = Num(2 * std::numbers::pi * x) / period;
  return cosine * Cosine(phase) + sine * Sine(phase);
}

const Formula kChwirut = [](const Nums& b, const std::vector<double>& x) {
  return Decay(Num(1), b[0], x[0]) / (b[1] + b[2] * Num(x[0]));
};
const Formula kGauss = [](const Nums& b, const std::vector<double>& x) {
  return Decay(b[0], b[1], x[0]) + Peak(b[2], b[3], b[4], x[0]) + Peak(b[5], b[6], b[7], x[0]);
};
const Formula kLanczos = [](const Nums& b, const std::vector<double>& x) {
  return Decay(b[0], b[1], x[0]) + Decay(b[2], b[3], x[0]) + Decay(b[4], b[5], x[0]);
};
const Formula kSaturation = [](const Nums& b, const std::vector<double>& x) {
  return b[0] * (Num(1) - Exp(-b[1] * Num(x[0])));
};
const Formula kCubics = [](const Nums& b, const std::vector<double>& x) { return Rational(b, 4, 3, x[0]); };

const std::vector<std::pair<const char*, Formula>> kProblems = {
    {"Bennett5",
     [](const Nums& b, const std::vector<double>& x) { return b[0] * Power(b[1] + Num(x[0]), Num(-1) / b[2]); }},
    {"BoxBOD", kSaturation},
    {"Chwirut1", kChwirut},
    {"Chwirut2", kChwirut},
    {"DanWood", [](const Nums& b, const std::vector<double>& x) { return b[0] * Power(Num(x[0]), b[1]); }},
    {"ENSO",
     [](const Nums& b, const std::vector<double>& x) {
       return b[0] + Wave(b[1], b[2], Num(12), x[0]) + Wave(b[4], b[5], b[3], x[0]) + Wave(b[7], b[8], b[6], x[0]);
     }},
    {"Eckerle4",
     [](const Nums& b, const std::vector<double>& x) {
       return b[0] / b[1] * Exp(Num(-0.5) * Square((Num(x[0]) - b[2]) / b[1]));
     }},
    {"Gauss1", kGauss},
    {"Gauss2", kGauss},
    {"Gauss3", kGauss},
    {"Hahn1", kCubics},
    {"Kirby2", [](const Nums& b, const std::vector<double>& x) { return Rational(b, 3, 2, x[0]); }},
    {"Lanczos1", kLanczos},
    {"Lanczos2", kLanczos},
    {"Lanczos3", kLanczos},
    {"MGH09",
     [](const Nums& b, const std::vector<double>& x) {
       const Num t(x[0]);
       return b[0] * (t * t + t * b[1]) / (t * t + t * b[2] + b[3]);
     }},
    {"MGH10", [](const Nums& b, const std::vector<double>& x) { return b[0] * Exp(b[1] / (Num(x[0]) + b[2])); }},
    {"MGH17", [](const Nums& b,
                 const std::vector<double>& x) { return b[0] + Decay(b[1], b[3], x[0]) + Decay(b[2], b[4], x[0]); }},
    {"Misra1a", kSaturation},
    {"Misra1b",
     [](const Nums& b, const std::vector<double>& x) {
       return b[0] * (Num(1) - Power(Num(1) + b[1] * Num(x[0] / 2), -2));
     }},
    {"Misra1c",
     [](const Nums& b, const std::vector<double>& x) {
       return b[0] * (Num(1) - Power(Num(1) + b[1] * Num(2 * x[0]), -0.5));
     }},
    {"Misra1d",
     [](const Nums& b, const std::vector<double>& x) { return b[0] * b[1] * Num(x[0]) / (Num(1) + b[1] * Num(x[0])); }},
    {"Nelson",
     [](const Nums& b, const std::vector<double>& x) { return b[0] - b[1] * Num(x[0]) * Exp(-b[2] * Num(x[1])); }},
    {"Rat42",
     [](const Nums& b, const std::vector<double>& x) { return b[0] / (Num(1) + Exp(b[1] - b[2] * Num(x[0]))); }},
    {"Rat43",
     [](const Nums& b, const std::vector<double>& x) {
       return b[0] * Power(Num(1) + Exp(b[1] - b[2] * Num(x[0])), Num(-1) / b[3]);
     }},
    {"Roszman1",
     [](const Nums& b, const std::vector<double>& x) {
       return b[0] - b[1] * Num(x[0]) - ArcTangent(b[2] / (Num(x[0]) - b[3])) * Num(1 / std::numbers::pi);
     }},
    {"Thurber", kCubics},
};

struct Certified {
  std::vector<double> starts[2], values, deviations;
  double sum = 0;
  std::vector<std::vector<double>> x;
  std::vector<double> y;

  std::size_t FreedomOf() const { return y.size() - values.size(); }
};

Certified Read(const std::string& name) {
  Certified problem;
  std::ifstream in(KALVEX_SOURCE_DIR "/tests/data/nist/" + name + ".dat");
  bool inData = false;
  int lineNumber = 0;
  for (std::string line; std::getline(in, line);) {
    ++lineNumber;
    std::istringstream words(line);
    double start1 = 0, start2 = 0, value = 0, deviation = 0, y = 0;
    std::string label, equals;
    if (inData && words >> y) {
      problem.y.push_back(name == "Nelson" ? std::log(y) : y);
      problem.x.emplace_back();
      for (double x = 0; words >> x;) problem.x.back().push_back(x);
    } else if (line.starts_with("Data:") && lineNumber > 40) {
      inData = true;
    } else if (line.starts_with("Residual Sum of Squares:")) {
      problem.sum = std::stod(line.substr(line.find(':') + 1));
    } else if (lineNumber > 40 && words >> label >> equals >> start1 >> start2 >> value >> deviation && equals == "=") {
      problem.starts[0].push_back(start1);
      problem.starts[1].push_back(start2);
      problem.values.push_back(value);
      problem.deviations.push_back(deviation);
    }
  }
  return problem;
}

class Problem : public LeastSquares {
 public:
  Problem(const Certified& data, const Formula& formula)
      : data_(data),
        formula_(formula),
        curvature_(data.values.size() * data.values.size()),
        gradient_(data.values.size()) {}

  std::size_t Unknowns() const override { return data_.values.size(); }
  double SumAt(std::span<const double> x) override {
    const Nums b(x.begin(), x.end());
    double sum = 0;
    for (std::size_t k = 0; k < data_.y.size(); ++k) sum += std::pow(formula_(b, data_.x[k]).a - data_.y[k], 2);
    return sum;
  }
  Linearised LineariseAt(std::span<const double> x) override {
    const std::size_t n = Unknowns();
    Nums b;
    for (std::size_t i = 0; i < n; ++i) b.emplace_back(x[i], i);
    const SquareMatrix curvature{curvature_.data(), n};
    std::fill(curvature_.begin(), curvature_.end(), 0.0);
    std::fill(gradient_.begin(), gradient_.end(), 0.0);
    double sum = 0;
    for (std::size_t k = 0; k < data_.y.size(); ++k) {
      const Num value = formula_(b, data_.x[k]);
      const double residual = value.a - data_.y[k];
      sum += residual * residual;
      for (std::size_t i = 0; i < n; ++i) {
        gradient_[i] += 2 * residual * value.v[i];
        for (std::size_t j = i; j < n; ++j) curvature(i, j) += 2 * value.v[i] * value.v[j];
      }
    }
    return {sum, curvature, gradient_};
  }

 private:
  const Certified& data_;
  const Formula& formula_;
  std::vector<double> curvature_, gradient_;
};

// The number of digits in which two numbers agree.
double Digits(double number, double certified) {
  const double difference = std::fabs(number - certified) / std::fabs(certified);
  return difference == 0 ? 16 : -std::log10(difference);
}

// The standard deviations from the curvature H = 2 J^T J: the covariance is 2 sum/freedom H^-1.
std::vector<double> DeviationsAt(Problem& problem, const std::vector<double>& x, std::size_t freedom) {
  const auto at = problem.LineariseAt(x);
  BandFactor factor;
  std::vector<double> deviations(x.size()), unit(x.size()), column(x.size());
  for (std::size_t i = 0; i < x.size(); ++i) {
    unit.assign(x.size(), 0);
    unit[i] = 1;
    if (SolveBanded(at.curvature, factor, unit, column, i == 0) != 0) return deviations;
    deviations[i] = std::sqrt(2 * at.sum / static_cast<double>(freedom) * column[i]);
  }
  return deviations;
}

class ReferenceProblems : public testing::TestWithParam<std::pair<const char*, Formula>> {};

TEST_P(ReferenceProblems, AreSolvedFromBothStarts) {
  // The certified sum of Lanczos1 is below the rounding of its data.
  const bool isLanczos1 = std::string(GetParam().first) == "Lanczos1";
  const double ofParameters = 6, ofSum = isLanczos1 ? 2.5 : 6, ofDeviations = isLanczos1 ? 2.5 : 4;
  const Certified certified = Read(GetParam().first);
  ASSERT_GT(certified.y.size(), certified.values.size());
  for (const auto& start : certified.starts) {
    Problem problem(certified, GetParam().second);
    std::vector<double> x = start;
    const std::vector<double> lower(x.size(), -HUGE_VAL), upper(x.size(), HUGE_VAL);
    const BoundedFitResult result =
        FitWithinLimits(problem, x, lower, upper, {}, [](const BoundedFitProgress&) { return true; });
    EXPECT_TRUE(IsConverged(result.end)) << static_cast<int>(result.end);
    EXPECT_GE(Digits(result.sum, certified.sum), ofSum);
    const std::vector<double> deviations = DeviationsAt(problem, x, certified.FreedomOf());
    for (std::size_t i = 0; i < x.size(); ++i) {
      EXPECT_GE(Digits(x[i], certified.values[i]), ofParameters) << "b" << i + 1;
      EXPECT_GE(Digits(deviations[i], certified.deviations[i]), ofDeviations) << "b" << i + 1;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Nist, ReferenceProblems, testing::ValuesIn(kProblems),
                         [](const auto& problem) { return std::string(problem.param.first); });

}  // namespace
}  // namespace kalvex
