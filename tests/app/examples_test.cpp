// The examples as a new user runs them, on measured spectra. Two kinds of numbers check the results: the end of an
// independent Levenberg-Marquardt program from the same start, with its standard errors (written with numpy, without
// shared code), and published parameters of the material.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <filesystem>
#include <map>
#include <numbers>
#include <sstream>

#include "app/kalvex_run.h"
#include "app/saved_model.h"
#include "core/files.h"
#include "core/text.h"
#include "support/run_program.h"

namespace kalvex {
namespace {

class Example {
 public:
  explicit Example(const std::string& name) {
    std::filesystem::copy(ProjectFile("examples/" + name), folder.Name(), std::filesystem::copy_options::recursive);
    run = RunProgram(folder, {"fit.kvs"});
    EXPECT_EQ(run.status, 0) << run.err;
  }

  // Runs another macro on the example's data, with its own file names for the results.
  void RunBeside(const std::string& macro) { EXPECT_EQ(RunMacroText(folder, macro).status, 0); }

  // Values of a model file: epsInf, then the elements row by row.
  std::vector<double> Values(const std::string& file) const {
    const SavedModel model = SavedModelOf(folder.Read(file));
    std::vector<double> values = {model.epsInf.value};
    for (const SavedParam& param : model.elements) values.push_back(param.value);
    return values;
  }

  // The ChiSq in the summary of the model file.
  double ChiSq(const std::string& summary) const { return std::stod(folder.Read(summary).substr(8)); }

  ScratchFolder folder;
  ProgramRun run;
};

// The place of the minimum or the maximum of a curve.
double MinimumOf(const ScratchFolder& folder, const std::string& file) {
  const Table curve = NumbersOf(folder.Read(file));
  return (*std::min_element(curve.begin(), curve.end(), [](auto& a, auto& b) { return a[1] < b[1]; }))[0];
}

double MaximumBetween(const Table& curve, double from, double to) {
  double at = from, highest = -1e300;
  for (const auto& line : curve) {
    if (line[0] < from || line[0] > to || line[1] <= highest) continue;
    highest = line[1];
    at = line[0];
  }
  return at;
}

std::string ShortNumber(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

// Relative: the precision to which the independent program prints ChiSq of an example.
constexpr double kAsTold = 0.0098;

void ExpectWithin(double value, double expected, double allowed, const char* what) {
  EXPECT_NEAR(value, expected, allowed) << what;
}

// The picture at the top of the README is the output of the example.
TEST(Examples, GalliumArsenideDrawsThePictureOfTheReadme) {
  const Example example("gaas");
  std::string shown;
  ASSERT_TRUE(ReadWholeFile(ProjectFile("docs/pictures/gaas.svg"), shown));
  const std::string drawn = example.folder.Read("gaas.svg");
  const auto numbersIn = [](std::string svg) {
    std::replace_if(
        svg.begin(), svg.end(), [](char c) { return !IsAsciiDigit(c) && c != '.' && c != '-' && c != '\n'; }, ' ');
    return NumbersOf(svg);
  };
  constexpr double kTwoUnits = 0.02;  // of the last printed place
  const Table was = numbersIn(shown), is = numbersIn(drawn);
  ASSERT_EQ(is.size(), was.size());
  for (std::size_t i = 0; i < is.size(); ++i) {
    ASSERT_EQ(is[i].size(), was[i].size()) << "line " << i;
    for (std::size_t k = 0; k < is[i].size(); ++k) EXPECT_NEAR(is[i][k], was[i][k], kTwoUnits) << "line " << i;
  }
}

TEST(Examples, GalliumArsenideHasItsPhonon) {
  const Example example("gaas");
  EXPECT_CLOSE(example.ChiSq("gaas.asc"), 30.12, kAsTold);
  const auto v = example.Values("gaas.kvm");
  ExpectWithin(v[0], 10.8744, 3 * 0.0021, "epsInf");
  ExpectWithin(v[1], 268.095, 3 * 0.005, "TO frequency");
  ExpectWithin(v[2], 377.21, 3 * 0.05, "plasma frequency");
  ExpectWithin(v[3], 2.281, 3 * 0.003, "linewidth");
  // Handbook of Optical Constants (E. D. Palik, ed.): 11.0, TO 268.7, LO 292.1, width 2.4
  const double lo = std::sqrt(v[1] * v[1] + v[2] * v[2] / v[0]);
  ExpectWithin(v[1], 268.7, 0.003 * 268.7, "published TO");
  ExpectWithin(lo, 292.1, 0.003 * 292.1, "published LO");
  ExpectWithin(v[0], 11.0, 0.015 * 11.0, "published epsInf");
  ExpectWithin(v[3], 2.4, 0.08 * 2.4, "published width");
}

TEST(Examples, TheLossFunctionOfTheReflectivityFitPeaksWhereTheMeasuredOneDoes) {
  const Example example("gaas");
  const Oscillator independent = {10.8744, 268.095, 377.21, 2.281};
  double peak = 0, at = 0;
  const Table curve = NumbersOf(example.folder.Read("model_LF.dat"));
  EXPECT_NEAR(static_cast<double>(curve.size()), 801, 1);
  for (const auto& line : curve) {
    constexpr double kThreeErrors = 0.01;  // three standard errors outside the peak
    const double expected = std::imag(-1.0 / EpsOf(independent, line[0]));
    EXPECT_NEAR(line[1], expected, kThreeErrors * expected) << line[0];
    if (line[1] <= peak) continue;
    peak = line[1];
    at = line[0];
  }
  constexpr double kStepOfCurve = 0.5;
  EXPECT_NEAR(at, 291.4, kStepOfCurve);  // the measured peak
}

TEST(Examples, GalliumArsenideExportsTheDataWithTheErrorBarsOfTheFit) {
  const Example example("gaas");
  const Table measured = NumbersOf(example.folder.Read("R_gaas.dat"));
  const Table exported = NumbersOf(example.folder.Read("data_R.dat"));
  ASSERT_EQ(exported.size(), measured.size());
  for (std::size_t i = 0; i < measured.size(); ++i) {
    ASSERT_EQ(exported[i].size(), 3u);
    EXPECT_TRUE(CloseTo(exported[i][0], measured[i][0], kSixDigits));
    EXPECT_TRUE(CloseTo(exported[i][1], measured[i][1], kSixDigits));
    EXPECT_EQ(exported[i][2], 0.01);  // the file has no third column
  }
}

// Rows with codes in the factorised form: code, frequency, width.
struct Factor {
  double code, frequency, width;
};

std::string FactorisedModel(double base, const std::vector<Factor>& factors) {
  std::string macro = "NewModel();\n" + Setting(1, "Einf", 1, "Value=0,FitActive=0") +
                      Setting(1, "Wo", 1, "Value=-1000,FitActive=0") +
                      Setting(1, "Wp", 1, "Value=" + std::to_string(base)) + Setting(1, "G", 1, "FitActive=0");
  int row = 1;
  for (const Factor& factor : factors) {
    ++row;
    macro += "InsertModelRow(ModelNo=1);\n" +
             Setting(1, "Wo", row, "Value=" + std::to_string(factor.code) + ",FitActive=0") +
             Setting(1, "Wp", row, "Value=" + std::to_string(factor.frequency)) +
             Setting(1, "G", row, "Value=" + std::to_string(factor.width));
  }
  return macro;
}

TEST(Examples, AWidthForEachModeOfGalliumArsenideFitsBetterThanOneForBoth) {
  Example example("gaas");
  example.RunBeside("LoadDataset(MasterFile=\"R_gaas.dat\");\n" +
                    FactorisedModel(10.5, {{-1002, 290, 3}, {-1001, 270, 3}}) +
                    "WindowFit();\nAddChiSqTerm(DatasetNo=1,ModelNo=1);\nFit();\nSaveModel(File=\"pair.kvm\");\n");
  EXPECT_CLOSE(example.ChiSq("pair.asc"), 28.28, kAsTold);
  const auto v = example.Values("pair.kvm");
  ExpectWithin(v[2], 10.8725, 3 * 0.0020, "A");
  ExpectWithin(v[5], 291.460, 3 * 0.003, "LO frequency");
  ExpectWithin(v[6], 2.232, 3 * 0.006, "LO width");
  ExpectWithin(v[8], 268.069, 3 * 0.005, "TO frequency");
  ExpectWithin(v[9], 2.353, 3 * 0.008, "TO width");
}

TEST(Examples, SapphireHasFourPairsOfModes) {
  const Example example("sapphire");
  EXPECT_CLOSE(example.ChiSq("sapphire.asc"), 59.16, kAsTold);
  const auto v = example.Values("sapphire.kvm");
  const auto frequency = [&](std::size_t row) { return v[1 + 3 * row + 1]; };
  const auto width = [&](std::size_t row) { return v[1 + 3 * row + 2]; };
  EXPECT_EQ(v[0], 0);
  ExpectWithin(frequency(0), 3.130, 3 * 0.027, "A");
  const struct {
    double frequency, frequencyError, width, widthError, published;
  } kModes[] = {{385.95, 0.40, 3.1, 0, 387.60},   {480.83, 0.21, 2.08, 0.43, 481.68}, {630.71, 0.69, 13.6, 0.7, 629.50},
                {905.31, 0.34, 16.7, 0.4, 906.6}, {383.43, 0.38, 3.3, 0, 384.99},     {437.13, 0.38, 8.2, 0.5, 439.1},
                {566.33, 0.46, 16.2, 0.7, 569.0}, {635.00, 0.61, 10.4, 0.7, 633.63}};
  for (std::size_t i = 0; i < std::size(kModes); ++i) {
    ExpectWithin(frequency(i + 1), kModes[i].frequency, 3 * kModes[i].frequencyError, "frequency");
    ExpectWithin(width(i + 1), kModes[i].width, 3 * kModes[i].widthError + 0.05, "width");
    // Schubert et al., Phys. Rev. B 61, 8187 (2000)
    ExpectWithin(frequency(i + 1), kModes[i].published, 0.006 * kModes[i].published, "published frequency");
  }
  ExpectWithin(frequency(0), 3.077, 0.02 * 3.077, "published A");
}

TEST(Examples, FourOscillatorsFitSapphireHalfAsWellAsZerosAndPoles) {
  Example example("sapphire");
  // Start: A. S. Barker, Phys. Rev. 132, 1474 (1963), 3.2 and four rows of frequency, plasma frequency, width.
  const double start[4][3] = {{385, 210.87, 5.775}, {442, 726.28, 4.42}, {569, 985.54, 11.38}, {635, 347.80, 12.70}};
  std::string macro =
      "LoadDataset(MasterFile=\"R_sapphire_o.dat\");\nNewModel();\n" + Setting(1, "Einf", 1, "Value=3.2");
  for (int row = 1; row <= 4; ++row) {
    if (row > 1) macro += "InsertModelRow(ModelNo=1);\n";
    const char* const names[] = {"Wo", "Wp", "G"};
    for (int c = 0; c < 3; ++c) macro += Setting(1, names[c], row, "Value=" + std::to_string(start[row - 1][c]));
  }
  example.RunBeside(macro + Setting(1, "G", 1, "FitActive=0") +
                    "WindowFit();\nAddChiSqTerm(DatasetNo=1,ModelNo=1);\nFit();\nSaveModel(File=\"sum.kvm\");\n");
  const double chiSq = example.ChiSq("sum.asc");
  EXPECT_CLOSE(chiSq, 125.17, kAsTold);
  EXPECT_GT(chiSq, 2 * example.ChiSq("sapphire.asc"));
  const struct {
    double value, error;
  } kExpected[] = {{3.144, 0.039}, {382.5, 1.0}, {217.7, 9.8},   {5.775, 0},   {439.61, 0.33},
                   {756.8, 4.5},   {3.84, 0.35}, {565.51, 0.62}, {999.3, 7.1}, {21.2, 5},
                   {631.88, 0.54}, {256.2, 9.2}, {10.1, 0.9}};
  const auto v = example.Values("sum.kvm");
  ASSERT_EQ(v.size(), std::size(kExpected));
  for (std::size_t i = 0; i < v.size(); ++i)
    EXPECT_NEAR(v[i], kExpected[i].value, 3 * kExpected[i].error + kRound) << i;
}

TEST(Examples, GoldHasItsFreeElectrons) {
  const Example example("gold");
  EXPECT_CLOSE(example.ChiSq("gold.asc"), 434.16, kAsTold);
  const auto v = example.Values("gold.kvm");
  EXPECT_EQ(v[0], 1);  // fixed, as is the frequency
  EXPECT_EQ(v[1], 0);
  ExpectWithin(v[2], 68920, 3 * 33, "plasma frequency");
  ExpectWithin(v[3], 341.0, 3 * 1.5, "relaxation rate");
  // R. L. Olmon et al., Phys. Rev. B 86, 235147 (2012): 8.45 eV, relaxation time 14 +- 3 fs
  ExpectWithin(v[2], 68153.8, 0.012 * 68153.8, "published plasma frequency");
  const double relaxationFs = 1e15 / (2 * std::numbers::pi * 2.99792458e10 * v[3]);
  ExpectWithin(relaxationFs, 14, 3, "published relaxation time");
}

TEST(Examples, TheErrorBarsAreTheUsualStandardErrors) {
  const Example example("gold");
  const std::string text = example.folder.Read("Params.dat");
  const auto lastNumber = [&](std::size_t lineStart) {
    const std::size_t end = text.find('\n', lineStart);
    return std::stod(text.substr(text.rfind(' ', end)));
  };
  const std::size_t first = text.find('\n') + 1, second = text.find('\n', first) + 1;
  // The independent program gives 33 and 1.5, scaled by the residual, the square root of 434.16/634.
  const double scale = std::sqrt(434.16 / 634), kUnit = 1, kHalfTenth = 0.05;  // of the last printed digits
  EXPECT_NEAR(lastNumber(first) * scale, 33, kUnit);
  EXPECT_NEAR(lastNumber(second) * scale, 1.5, kHalfTenth);
}

TEST(Examples, CalciumFluorideFindsItsMinimumFromThreeOfFourStarts) {
  const Example example("caf2");
  for (const char* const start : {"near", "far", "narrow"}) {
    // The independent program ends at 0.0026. The tolerance is half a unit of the last digit, and 1 %.
    constexpr double kHalfUnit = 0.00005;  // of that digit
    EXPECT_NEAR(example.ChiSq(std::string(start) + ".asc"), 0.0026, kHalfUnit + kAsTold * 0.0026) << start;
    const auto v = example.Values(std::string(start) + ".kvm");
    // W. Kaiser et al., Phys. Rev. 127, 1950 (1962): strengths 4.20 and 0.40, relative widths 0.018 and 0.35
    const double published[] = {2.045, 257, 526.69, 4.626, 328, 207.45, 114.8};
    for (std::size_t i = 0; i < v.size(); ++i) ExpectWithin(v[i], published[i], 0.0002 * published[i], start);
  }
  EXPECT_GT(example.ChiSq("broad.asc"), 1000);
  EXPECT_EQ(example.run.out,
            "start near is done, see near.asc\nstart far is done, see far.asc\n"
            "start narrow is done, see narrow.asc\nstart broad is done, see broad.asc\n");
}

TEST(Examples, ATerahertzPulseIsFittedAsTransmissionAndAsTrace) {
  const Example example("terahertz");
  EXPECT_CLOSE(example.ChiSq("transmission.asc"), 313.0, kAsTold);
  struct Expected {
    double value, error;
  };
  const Expected kTransmission[] = {{1.987, 0.016}, {53.60, 0.24}, {9.59, 0.38}, {10.5, 1.0},
                                    {1000, 0},      {573.4, 5.8},  {22270, 610}};
  const auto v = example.Values("transmission.kvm");
  ASSERT_EQ(v.size(), std::size(kTransmission));
  for (std::size_t i = 0; i < v.size(); ++i) ExpectWithin(v[i], kTransmission[i].value, kTransmission[i].error, "T");
  ExpectWithin(v[1], 53, 0.02 * 53, "lattice mode of alpha-PVDF");
  // Result of the independent program for the same plate and trace.
  const double kTrace[] = {2.109, 52.94, 8.38, 8.36, 1000, 598.7, 19777};
  const auto pulse = example.Values("pulse.kvm");
  for (std::size_t i = 0; i < pulse.size(); ++i) ExpectWithin(pulse[i], kTrace[i], 0.001 * kTrace[i], "trace");
  const Table model = NumbersOf(example.folder.Read("model_trace.dat"));
  const Table measured = [&] {
    const std::string text = example.folder.Read("Rp_thz_sam.dat");
    return NumbersOf(text.substr(text.find("\n-0.92") + 1));
  }();
  ASSERT_EQ(model.size(), 2048u);
  ASSERT_EQ(measured.size(), 2048u);
  double sum = 0, largest = 0, peak = 0;
  for (std::size_t i = 0; i < model.size(); ++i) {
    const double difference = model[i][1] - measured[i][1];
    sum += difference * difference;
    largest = std::fmax(largest, std::fabs(difference));
    peak = std::fmax(peak, measured[i][1]);
  }
  constexpr double kHalfUnit = 0.0005, kTwentieth = 0.002;  // of the figures in the README: 1.1 %, about 4 %
  EXPECT_NEAR(std::sqrt(sum / 2048) / peak, 0.011, kHalfUnit);
  EXPECT_NEAR(largest / peak, 0.04, kTwentieth);
}

TEST(Examples, ACoatedWaferShowsItsFilm) {
  const Example example("coated");
  EXPECT_CLOSE(example.ChiSq("silicon.asc"), 0.0275, kAsTold);
  const auto silicon = example.Values("silicon.kvm");
  ExpectWithin(silicon[1], 32886, 39, "silicon, frequency");
  ExpectWithin(silicon[2], 107339, 130, "silicon, plasma frequency");
  // 1812 points with noise of the size of their error bars, one free parameter; five standard deviations.
  EXPECT_NEAR(example.ChiSq("coated.asc"), 1811, 5 * std::sqrt(2 * 1811.0));
  ExpectWithin(example.Values("coated.kvm")[2], 1e-4, 5 * 1.2e-9, "thickness");
  // Far above the phonons the film is a lossless layer. Its fringes lie between the bare wafer and the quarter wave.
  const Table R = NumbersOf(example.folder.Read("R_coated.dat")), T = NumbersOf(example.folder.Read("T_coated.dat"));
  ASSERT_EQ(R.size(), 453u);
  for (std::size_t i = 0; i < R.size(); ++i) {
    EXPECT_LE(R[i][1] + T[i][1], 1 + 1e-6) << R[i][0];
    EXPECT_GE(T[i][1], 0) << R[i][0];
  }
}

TEST(Examples, ACrystalsExtraordinaryModesAreFoundFromPsi) {
  const Example example("crystal");
  const auto v = example.Values("extraordinary.kvm");
  // M. Schubert, T. E. Tiwald, C. M. Herzinger, Phys. Rev. B 61, 8187 (2000); five standard errors of the fit.
  const struct {
    std::size_t at;
    double value, error;
  } kPublished[] = {
      {2, 3.072, 0.0012}, {5, 510.87, 0.0028}, {8, 881.1, 0.047}, {11, 397.52, 0.022}, {14, 582.41, 0.015}};
  for (const auto& p : kPublished) ExpectWithin(v[p.at], p.value, 5 * p.error, "mode");
  EXPECT_NEAR(example.ChiSq("extraordinary.asc"), 1293, 5 * std::sqrt(2 * 1293.0));
}

// The sheet in the field: the data were computed with 0.34 eV, 1e6 m/s and 0.01 eV.
TEST(Examples, GrapheneInAFieldShowsItsFermiEnergyAndItsCyclotronMass) {
  const Example example("graphene_field");
  EXPECT_NEAR(example.ChiSq("graphene.asc"), 187, 5 * std::sqrt(2 * 187.0));
  const auto v = example.Values("graphene.kvm");
  const double mu = v[3], velocity = v[4], broadening = v[6];
  ExpectWithin(mu, 0.34, 3 * 0.0018, "chemical potential");
  ExpectWithin(velocity, 1e6, 3 * 2200, "velocity");
  ExpectWithin(broadening, 0.01, 3 * 5.2e-5, "broadening");
  constexpr double kElectronMass = 510998.95 / (299792458.0 * 299792458.0);  // eV s2/m2
  ExpectWithin(mu / (velocity * velocity) / kElectronMass, 0.0598, 0.0003, "cyclotron mass");
  // Density of electrons of a cone at kT << mu, Sommerfeld expansion; cm-2.
  const double kF = mu / (6.582119569e-16 * velocity) * 0.01, kT = 8.617333e-5 * 300;
  const double expected = kF * kF / std::numbers::pi * (1 + std::pow(std::numbers::pi * kT / mu, 2) / 3);
  ExpectWithin(NumbersOf(example.folder.Read("density.dat"))[0][1], expected, 0.01 * expected, "density");
  // Filled states block the absorption below 2 mu: e^2/4hbar appears only above.
  for (const auto& line : NumbersOf(example.folder.Read("sigma_xx.dat"))) {
    if (line[0] > 1000 && line[0] < 4000) {
      EXPECT_LT(line[1], 0.3 * 1816.5) << line[0];
    }
  }
}

// The film: 2e16 electrons per cm3 with 0.016 electron masses and a mobility of 4 m2/Vs, 8 um thick, at 0.5 T.
TEST(Examples, FaradayRotationTellsDensityMassAndMobility) {
  const Example example("faraday");
  EXPECT_NEAR(example.ChiSq("sample.asc"), 288, 5 * std::sqrt(2 * 288.0));
  const auto v = example.Values("electrons.kvm");
  const double plasma = v[5], rate = v[6], cyclotron = v[7];
  constexpr double kTwoPiC = 2 * std::numbers::pi * 2.99792458e10, kCharge = 1.602176634e-19;
  constexpr double kElectronMass = 9.1093837e-31, kVacuum = 8.8541878128e-12;
  const double mass = kCharge * 0.5 / (kTwoPiC * cyclotron);
  ExpectWithin(mass / kElectronMass, 0.016, 3 * 0.00003, "mass");
  ExpectWithin(kVacuum * mass * std::pow(kTwoPiC * plasma, 2) / (kCharge * kCharge) * 1e-6, 2e16, 0.01 * 2e16,
               "density");
  ExpectWithin(kCharge / (mass * kTwoPiC * rate), 4, 0.01 * 4, "mobility, m2/Vs");
  ExpectWithin(example.Values("sample.kvm")[4], 8e-4, 3 * 3.2e-6, "thickness");
  // After each plasma edge there is a minimum. To first order in the field their distance is the cyclotron frequency.
  const double apart = MinimumOf(example.folder, "R_minus.dat") - MinimumOf(example.folder, "R_plus.dat");
  ExpectWithin(apart, cyclotron, 0.05 * cyclotron, "distance of the edges");
}

// The semimetal: nodes with 4e5 m/s.
TEST(Examples, LandauLevelsOfAWeylSemimetalGrowAsTheRootOfTheField) {
  const Example example("weyl");
  // The scan: a parabola through the ChiSq of three velocities.
  const double step = 0.05e5;
  const double below = example.ChiSq("v_3.95e5.asc"), middle = example.ChiSq("v_4e5.asc"),
               above = example.ChiSq("v_4.05e5.asc");
  EXPECT_NEAR(middle, 151, 5 * std::sqrt(2 * 151.0));
  const double curvature = below + above - 2 * middle, error = step / std::sqrt(curvature / 2);
  ExpectWithin(4e5 + 0.5 * step * (below - above) / curvature, 4e5, 5 * error, "velocity");
  // The line 1 -> 2. The broadening shifts its maximum up a little.
  const double line = (1 + std::sqrt(2.0)) * 4e5 * std::sqrt(2 * 6.582119569e-16) * 8065.544;
  for (const double field : {2.5, 5.0, 10.0, 20.0}) {
    const Table curve = NumbersOf(example.folder.Read("sigma_" + ShortNumber(field) + "T.dat"));
    const double expected = line * std::sqrt(field);
    ExpectWithin(MaximumBetween(curve, 0.9 * expected, 1.1 * expected), 1.013 * expected, 0.007 * expected, "line");
  }
  // One level crosses the node with the velocity; the neighbouring levels are even in k.
  const Table chiral = NumbersOf(example.folder.Read("level_40.dat")),
              next = NumbersOf(example.folder.Read("level_41.dat"));
  ASSERT_GT(next.size(), 75u);  // the middle of the path, k = 0, is line 50
  const double slope = (chiral.back()[1] - chiral.front()[1]) / (chiral.back()[0] - chiral.front()[0]);
  ExpectWithin(std::fabs(slope), 6.582119569e-16 * 4e5 * 1e9, 1e-4, "slope, eV nm");
  EXPECT_TRUE(CloseTo(next[25][1], next[75][1], kSixDigits));
  ExpectWithin(next[50][1], line * std::sqrt(20.0) / 8065.544 / (1 + std::sqrt(2.0)), 1e-4, "first level");
}

// The harmonic of a point dipole above a surface that oscillates with an amplitude equal to its lowest height.
std::complex<double> ScatteredHarmonic(std::complex<double> eps, int harmonic, double height) {
  constexpr int kPhases = 4096;
  const std::complex<double> image = (eps - 1.0) / (eps + 1.0);
  std::complex<double> sum;
  for (int i = 0; i < kPhases; ++i) {
    const double phase = 2 * std::numbers::pi * i / kPhases, h = height * (2 - std::cos(phase));
    sum += std::polar(1.0, harmonic * phase) / (1.0 - image / (4 * h * h * h));
  }
  return sum;
}

TEST(Examples, SiliconCarbideResonatesWithTheTipBelowItsSurfacePhonon) {
  const Example example("near_field");
  const auto siliconCarbide = [](double x) {
    const std::complex<double> loss(0, 5 * x);
    return 6.56 * (970.0 * 970.0 - x * x - loss) / (797.0 * 797.0 - x * x - loss);
  };
  // The free electrons of the gold example.
  const auto gold = [](double x) { return 1.0 - 68920.0 * 68920.0 / (x * std::complex<double>(x, 341)); };
  constexpr double kMeshOfTip = 0.001;     // discrete momenta
  constexpr double kCosineOfPhase = 1e-5;  // a phase of 4.5 mrad
  const double surfacePhonon = 948.9;
  double before = 0;
  for (const char* const height : {"1.02", "1.2", "1.5"}) {
    for (const char* const harmonic : {"2", "3"}) {
      const std::string which = std::string(harmonic) + '_' + height + ".dat";
      const Table contrast = NumbersOf(example.folder.Read("contrast_" + which)),
                  phase = NumbersOf(example.folder.Read("phase_" + which));
      ASSERT_EQ(contrast.size(), phase.size());
      ASSERT_GT(contrast.size(), 490u);
      for (std::size_t i = 0; i < contrast.size(); i += 10) {
        const double x = contrast[i][0], z0 = std::stod(height);
        const int n = std::stoi(harmonic);
        const auto expected = ScatteredHarmonic(siliconCarbide(x), n, z0) / ScatteredHarmonic(gold(x), n, z0);
        EXPECT_NEAR(contrast[i][1], std::abs(expected), kMeshOfTip * std::abs(expected)) << which << ' ' << x;
        EXPECT_NEAR(std::cos(phase[i][1] - std::arg(expected)), 1, kCosineOfPhase) << which << ' ' << x;
      }
    }
    const Table contrast = NumbersOf(example.folder.Read(std::string("contrast_2_") + height + ".dat"));
    const double peak = MaximumBetween(contrast, 800, 1050);
    EXPECT_GT(peak, before);  // it rises with the height of the tip and stays below
    EXPECT_LT(peak, surfacePhonon);
    before = peak;
  }
  const Table close = NumbersOf(example.folder.Read("contrast_2_1.02.dat"));
  // R. Hillenbrand, T. Taubner, F. Keilmann, Nature 418, 159 (2002): near 930
  ExpectWithin(MaximumBetween(close, 800, 1050), 930, 0.012 * 930, "published resonance");
  ExpectWithin(MinimumOf(example.folder, "contrast_2_1.02.dat"), 997.9, 0.5, "eps = 1");
}

// Eigenvalues of the real matrix ((a, b), (b, d)), the lower one first.
std::array<double, 2> LevelsOfTwo(double a, double b, double d) {
  const double middle = 0.5 * (a + d), half = std::hypot(0.5 * (a - d), b);
  return {middle - half, middle + half};
}

double MeanBetween(const Table& curve, double from, double to) {
  double sum = 0, count = 0;
  for (const auto& line : curve) {
    if (line[0] < from || line[0] > to) continue;
    sum += line[1];
    ++count;
  }
  return sum / count;
}

TEST(Examples, BandsOfBilayerGrapheneOpenAGapUnderVoltage) {
  const Example example("bands");
  const auto curve = [&](const char* name) { return NumbersOf(example.folder.Read(name)); };
  // At Gamma the states are even or odd under the exchange of the layers. Hoppings -3, 0.4, -0.3, 0.15, site energy
  // 0.018.
  const auto even = LevelsOfTwo(0.018 + 0.4, 3 * (-3 + 0.15), 3 * -0.3),
             odd = LevelsOfTwo(0.018 - 0.4, 3 * (-3 - 0.15), 3 * 0.3);
  constexpr double kFourPlaces = 1e-4;  // printed decimal places
  const double expected[] = {odd[0], even[0], even[1], odd[1]};
  for (int band = 1; band <= 4; ++band) {
    const Table path = curve(("flat_band" + std::to_string(band) + ".dat").c_str());
    EXPECT_NEAR(path[0][1], expected[band - 1], kFourPlaces) << band;
  }
  const auto gapOf = [&](const std::string& state) {
    const Table below = curve((state + "_K2.dat").c_str()), above = curve((state + "_K3.dat").c_str());
    double gap = 1e300;
    for (std::size_t i = 0; i < below.size(); ++i) gap = std::fmin(gap, above[i][1] - below[i][1]);
    return gap;
  };
  EXPECT_LT(gapOf("flat"), 0.001);
  // Without the skew hoppings, which reduce the gap by a few hundredths of the voltage.
  const double gap = gapOf("biased"), simple = 0.2 * 0.4 / std::hypot(0.2, 0.4);
  EXPECT_LT(gap, simple);
  EXPECT_GT(gap, simple - 0.02);
  // One corner of the zone: half of e^2/4hbar of two layers, over a thickness of 6.7 A.
  const Table flat = curve("flat_sigma.dat"), biased = curve("biased_sigma.dat"), doped = curve("doped_sigma.dat");
  ExpectWithin(MeanBetween(flat, 0.9, 1.2), 908, 0.02 * 908, "universal conductivity");
  EXPECT_EQ(MeanBetween(biased, 0, 0.15), 0);
  ExpectWithin(MaximumBetween(biased, 0, 1.2), gap, 0.03, "the largest bin lies above the gap");
  ExpectWithin(MaximumBetween(doped, 0, 1.2), 0.4, 0.02, "from band 3 to band 4");
  EXPECT_GT(MeanBetween(curve("doped_upper.dat"), 0.38, 0.42), 0.7 * MeanBetween(doped, 0.38, 0.42));
  const std::string hops = example.folder.Read("Hops.dat");
  EXPECT_EQ(std::count(hops.begin(), hops.end(), '\n'), 32);
}

// The gated state: 0.18 eV, 0.15 eV; both states: 0.4 eV, 0.025 eV.
TEST(Examples, AGatedBilayerTellsItsFermiEnergyAndItsVoltage) {
  const Example example("bilayer_gate");
  EXPECT_NEAR(example.ChiSq("gated.asc"), 67, 5 * std::sqrt(2 * 67.0));
  const auto v = example.Values("gated.kvm");
  ExpectWithin(v[2], 0.4, 3 * 0.00023, "hopping between the layers");
  ExpectWithin(v[6], 0.15, 3 * 0.00135, "voltage");
  ExpectWithin(v[7], 0.18, 3 * 0.00054, "chemical potential");
  ExpectWithin(v[11], 0.025, 3 * 0.00017, "broadening");
  const Table gated = NumbersOf(example.folder.Read("sigma_gated.dat")),
              neutral = NumbersOf(example.folder.Read("sigma_neutral.dat"));
  ExpectWithin(MaximumBetween(gated, 1500, 5000), 0.4 * 8065.544, 0.05 * 3226, "peak near the hopping");
  // Absorption is blocked below 2 mu, where the neutral state has e^2/4hbar in each layer. The free carriers lie at
  // lower frequencies.
  EXPECT_LT(MeanBetween(gated, 1500, 2000), 0.3 * MeanBetween(neutral, 1500, 2000));
  ExpectWithin(MeanBetween(neutral, 1000, 2000), 1816.5, 0.2 * 1816.5, "neutral, before the step");
  EXPECT_GT(gated[0][1], 3 * neutral[0][1]);
}

// Parameters of the spectrum: -130.5 meV, 12 meV, 0.1.
TEST(Examples, ATunnellingSpectrumTellsWhereItsSaddlePointIs) {
  const Example example("tunnelling");
  EXPECT_NEAR(example.ChiSq("spectrum.asc"), 98, 5 * std::sqrt(2 * 98.0));
  const auto v = example.Values("spectrum.kvm");
  ExpectWithin(v[12], -130.5, 3 * 0.32, "chemical potential");
  ExpectWithin(v[16], 12, 3 * 0.23, "broadening");
  ExpectWithin(v[17], 0.1, 3 * 0.0064, "its linear part");
  // The saddle point is a maximum between (0, 0) and (1/2, 0) and a minimum between (1/2, 0) and (1/2, 1/2). Its
  // published energy is 34 meV below the Fermi energy.
  const Table band = NumbersOf(example.folder.Read("band.dat"));
  ASSERT_GT(band.size(), 200u);
  EXPECT_NEAR(band[100][0], 0.5, kRound);
  ExpectWithin(band[100][1], -34, 3 * 0.32, "saddle point");
  for (std::size_t i = 0; i < 100; ++i) EXPECT_LE(band[i][1], band[100][1]) << band[i][0];
  for (std::size_t i = 101; i < 200; ++i) EXPECT_GE(band[i][1], band[100][1]) << band[i][0];
  // States far from the Fermi energy are broader and shift the maximum up.
  const double maximum = MaximumBetween(NumbersOf(example.folder.Read("model_stm.dat")), -200, 200);
  EXPECT_GT(maximum, band[100][1]);
  EXPECT_LT(maximum, 0);
}

TEST(Examples, PlasmonsOfRibbonsRiseAsTheirWidthsRootFalls) {
  const Example example("ribbons");
  const auto plasmon = [&](const std::string& name) { return example.Values(name + ".kvm")[1]; };
  const double widths[] = {4, 2, 1, 0.5, 0.25};
  for (const double width : widths) {
    const double at = plasmon(ShortNumber(width) + "um");
    ExpectWithin(at * std::sqrt(width), plasmon("1um"), 0.002 * at * std::sqrt(width), "1/sqrt(W)");
    ExpectWithin(MinimumOf(example.folder, "T_" + ShortNumber(width) + "um.dat"), at, 1, "the transmission's minimum");
  }
  // s = i a/x of free electrons, a = 4 alpha mu. A wave vector q has x^2 = a q/(4 pi e), e the mean of the two sides.
  const double a = 4 * 7.2973526e-3 * 0.2 * 8065.544, e = 0.5 * (1 + 3.9);
  const auto wavesInAWidth = [&](const std::string& name) {
    return std::pow(plasmon(name), 2) * 4 * std::numbers::pi * e / a * 1e-4;
  };
  // A single strip: the lowest eigenvalue of its integral equation, solved with 200 to 800 elements and extrapolated.
  ExpectWithin(wavesInAWidth("far"), 2.3156, 0.005 * 2.3156, "single strip");
  EXPECT_LT(wavesInAWidth("near"), wavesInAWidth("1um"));
  EXPECT_LT(wavesInAWidth("1um"), wavesInAWidth("far"));
  // Equivalent circuit of ribbons and gaps of the same width: L. B. Whitbourn, R. C. Compton, Appl. Opt. 24, 217 (1985)
  const double circuit = 0.5 * std::numbers::pi / std::log(std::sqrt(2.0));
  ExpectWithin(wavesInAWidth("1um"), 0.5 * circuit, 0.1 * 0.5 * circuit, "circuit");
}

// Every twenty-fifth spot of the map, computed and fitted as in the example.
TEST(Examples, AMapOfSpectraShowsWhereTheCrystalIsDamaged) {
  const ScratchFolder folder;
  std::filesystem::copy(ProjectFile("examples/map"), folder.Name(), std::filesystem::copy_options::recursive);
  const std::string whole = "XMin=1, XMax=1000, XPts=1000";
  std::string make = folder.Read("make.kvs");
  ASSERT_NE(make.find(whole), std::string::npos);
  folder.Write("make.kvs", make.replace(make.find(whole), whole.size(), "XMin=25, XMax=1000, XPts=40"));
  ASSERT_EQ(RunProgram(folder, {"make.kvs"}).status, 0);
  ASSERT_EQ(RunProgram(folder, {"fit.kvs"}).status, 0);

  std::map<std::string, double> made;  // the true frequency of each spot
  for (char line = 'a'; line <= 'j'; ++line) {
    for (const auto& spot : NumbersOf(folder.Read(std::string(1, line) + ".loop"))) {
      made[std::string(1, line) + '_' + std::to_string(std::lround(spot[0])) + ".kvm"] = spot[1];
    }
  }
  std::istringstream map(folder.Read("Par.dat"));
  int spots = 0;
  double squares = 0, chiSqs = 0;
  for (std::string name, rest; map >> name && std::getline(map, rest);) {
    if (made.count(name) == 0) continue;
    const std::vector<double> values = NumbersOf(rest)[0];  // ChiSq, then each parameter and its error
    ++spots;
    chiSqs += values[0];
    squares += std::pow(values[2] - made[name], 2);
  }
  EXPECT_EQ(spots, 400);
  EXPECT_NEAR(chiSqs / spots, 122, 122 * 5 * std::sqrt(2 / (122.0 * 400)));
  // Noise of 0.005 in 126 points gives the frequency an uncertainty of 0.1 to 0.25.
  EXPECT_LT(std::sqrt(squares / spots), 0.25);
  EXPECT_GT(std::sqrt(squares / spots), 0.05);
  EXPECT_NE(folder.Read("line.svg").find("position, 0.1 mm"), std::string::npos);
}

}  // namespace
}  // namespace kalvex
