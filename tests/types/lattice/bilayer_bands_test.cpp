// The tight-binding type: its files and when they are written, its bands compared with closed formulas, its
// conductivity with the universal value.
#include <algorithm>
#include <filesystem>

#include "evaluation/eval_spectrum.h"
#include "support/scratch_folder.h"
#include "support/tolerances.h"
#include "types/type_fixture.h"

namespace kalvex {
namespace {

namespace fs = std::filesystem;

class BilayerProgram : public TypeFixture {
 protected:
  // Path Gamma - K - M - Gamma; conductivity in bins of 0.1 eV up to 3 eV.
  Model& MakeBilayer(double g0, double g1, double cells = 24) {
    return Make(31, {{g0, g1, 0},
                     {0, 0, 0},
                     {0, 0, 0},
                     {0, 0, 0},
                     {1, 1.0 / 3, 2.0 / 3},
                     {2, 0.5, 0.5},
                     {3, 0, 0},
                     {0, 3, 30},
                     {0.5, 1, cells},
                     {0.5, 1, cells}});
  }

  // Removes all files: those found later have been written since.
  void RemoveFiles() {
    for (const char* const name : {"Bilayer.lat", "b.dat", "Hops.dat", "Q.cfg"}) fs::remove(folder.Path(name));
  }

  const ScratchFolder folder;
  const InFolder inside{folder.Name()};
  const std::vector<std::string>& messages = program.platform.messages;  // "title: text"
};

TEST_F(BilayerProgram, WritesItsFilesOnce) {
  Model& model = MakeBilayer(3.1, 0.38);
  At(model, kRefl, 0.5);
  EXPECT_TRUE(folder.Has("Bilayer.lat"));
  EXPECT_TRUE(folder.Has("b.dat"));
  EXPECT_TRUE(folder.Has("Hops.dat"));
  EXPECT_FALSE(folder.Has("Q.cfg"));
  EXPECT_NE(folder.Read("Bilayer.lat").find("A1 A2 3.35 0.01 0.380000\n"), std::string::npos);
  At(model, kDepth, 0.5);
  EXPECT_EQ(folder.Read("Q.cfg"), "0\n0.000000 0.000000 0.000000 1.000000 1.000000 0.000000 24 24 1");
  RemoveFiles();
  for (const double x : {0.5, 0.6, 2.9}) {
    for (const Quantity q : {kRefl, kDepth}) EXPECT_NE(At(model, q, x), 0);
  }
  EXPECT_TRUE(fs::is_empty(folder.Name()));
  EXPECT_TRUE(messages.empty());
}

TEST_F(BilayerProgram, WithAnotherChemicalPotentialRebuildsTheConductivityAlone) {
  Model& model = MakeBilayer(3.1, 0.38);
  At(model, kDepth, 0.5);
  fs::rename(folder.Path("Q.cfg"), folder.Path("mesh"));
  RemoveFiles();
  fs::rename(folder.Path("mesh"), folder.Path("Q.cfg"));
  const auto written = fs::last_write_time(folder.Path("Q.cfg"));
  Cell(model, 2, Wo).value = 10;  // every state is filled
  EXPECT_NEAR(At(model, kDepth, 0.5), 0, kRound);
  EXPECT_FALSE(folder.Has("Bilayer.lat"));
  EXPECT_FALSE(folder.Has("Hops.dat"));
  EXPECT_EQ(fs::last_write_time(folder.Path("Q.cfg")), written);
}

TEST_F(BilayerProgram, WritesTheLatticeAnewWhenOneOfItsNumbersChanges) {
  Model& model = MakeBilayer(3.1, 0.38);
  for (const auto& [row, column] : {std::pair(0, 0), {0, 1}, {0, 2}, {1, 0}, {1, 1}, {1, 2}, {2, 1}}) {
    At(model, kRefl, 0.5);
    RemoveFiles();
    Cell(model, row, column).value += 0.25;
    At(model, kRefl, 0.5);
    EXPECT_TRUE(folder.Has("Bilayer.lat")) << row << ' ' << column;
    EXPECT_TRUE(folder.Has("Hops.dat")) << row << ' ' << column;
  }
  RemoveFiles();
  Cell(model, 2, G).value = 300;
  At(model, kRefl, 0.5);
  EXPECT_TRUE(fs::is_empty(folder.Name()));
}

TEST_F(BilayerProgram, WritesTheMeshAnewWhenOneOfItsNumbersChanges) {
  Model& model = MakeBilayer(3.1, 0.38, 6);
  for (int i = 0; i < 6; ++i) {
    At(model, kDepth, 0.5);
    RemoveFiles();
    Cell(model, 8 + i / 3, i % 3).value *= 0.9;
    At(model, kDepth, 0.5);
    EXPECT_TRUE(folder.Has("Q.cfg")) << i;
    EXPECT_FALSE(folder.Has("Bilayer.lat")) << i;
  }
}

TEST_F(BilayerProgram, TakesAMeshMadeByHandUntilItsOwnChanges) {
  constexpr double kHalves = 1e-6;  // the coordinates in the file have seven digits, which breaks their symmetry
  Model& model = MakeBilayer(3.1, 0, 60);
  const double all = At(model, kDepth, 2);
  folder.Write("Q.cfg", "0\n0 0 0 0.5 1 0 30 60 1");  // half of the zone is enough by k -> -k
  Cell(model, 2, Wo).value = 0.001;
  EXPECT_NEAR(At(model, kDepth, 2), 0.5 * all, kHalves * all);
  Cell(model, 9, G).value = 58;
  EXPECT_GT(At(model, kDepth, 2), 0.7 * all);  // a whole zone again, with another coarse mesh
  EXPECT_EQ(folder.Read("Q.cfg"), "0\n0.000000 0.000000 0.000000 1.000000 1.000000 0.000000 60 58 1");
}

TEST_F(BilayerProgram, TwoModelsDoNotTakeEachOthersFiles) {
  Model& one = MakeBilayer(3.1, 0.38);
  const double bands = At(one, kRefl, 0.4), sum = At(one, kDepth, 1);
  Model& two = MakeBilayer(2.5, 0.2, 10);
  Model& again = MakeBilayer(3.1, 0.38);
  EXPECT_NE(At(two, kRefl, 0.4), bands);
  EXPECT_NE(At(two, kDepth, 1), sum);
  EXPECT_EQ(At(again, kRefl, 0.4), bands);
  EXPECT_EQ(At(again, kDepth, 1), sum);
  EXPECT_EQ(At(one, kRefl, 0.4), bands);
}

TEST_F(BilayerProgram, HasTheClosedBandsAtItsSymmetricPoints) {
  constexpr double kPlaces = 1e-5;  // of the atoms in the file: seven digits
  const double g0 = 3.1, g1 = 0.38;
  Model& model = MakeBilayer(g0, g1);
  const auto bands = [&](double x) {
    std::vector<double> levels;
    for (const Quantity q : {kRefl, kTrans, kRp, kRs}) levels.push_back(At(model, q, x));
    return levels;
  };
  // With the in-plane sum f: E = +-(root(g1^2/4 + |f|^2) +- g1/2). |f| is 3 g0, 0 and g0.
  for (const auto& [x, f] : {std::pair(0.0, 3 * g0), {1.0, 0.0}, {2.0, g0}, {3.0, 3 * g0}}) {
    const double root = std::sqrt(g1 * g1 / 4 + f * f);
    const double expected[] = {-root - g1 / 2, -root + g1 / 2, root - g1 / 2, root + g1 / 2};
    const auto levels = bands(x);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(levels[i], expected[i], kPlaces) << x << ' ' << i;
  }
  for (const double x : {-0.001, 3.001}) {
    for (const double level : bands(x)) EXPECT_EQ(level, 0) << x;
  }
}

TEST_F(BilayerProgram, ShiftsItsLevelsWithItsSiteEnergies) {
  constexpr double kPlaces = 1e-5;  // of the atoms in the file: seven digits
  Model& model = MakeBilayer(3.1, 0);
  Cell(model, 1, Wp).value = 0.3;   // A atoms
  Cell(model, 1, G).value = 0.2;    // between the layers
  Cell(model, 2, Wp).value = -0.1;  // all
  // At K without hopping the levels are the site energies.
  std::vector<double> expected = {0.1 - 0.1 + 0.3, 0.1 - 0.1, -0.1 - 0.1 + 0.3, -0.1 - 0.1};
  std::sort(expected.begin(), expected.end());
  for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(At(model, Quantity{static_cast<int>(i)}, 1), expected[i], kPlaces);
}

TEST_F(BilayerProgram, WithoutCouplingConductsAsTwoLayersOfGraphene) {
  constexpr double kBeyondCone = 0.01;
  Model& model = MakeBilayer(3.1, 0, 300);
  Cell(model, 2, G).value = 10;
  double sum = 0;
  for (const double x : {0.55, 0.65, 0.75, 0.85, 0.95}) sum += At(model, kDepth, x) / 5;
  // (e^2/4hbar) per layer, with the rise of the density of states beyond the cone: 1 + E^2/(36 g0^2) and so on.
  EXPECT_NEAR(sum, 1816.5, kBeyondCone * 1816.5);
}

TEST_F(BilayerProgram, AbsorbsNothingBelowTwiceTheChemicalPotential) {
  constexpr double kTails = 1e-6;  // of Fermi functions
  Model& model = MakeBilayer(3.1, 0, 200);
  Cell(model, 2, Wo).value = 0.5;
  Cell(model, 2, G).value = 10;
  for (const double x : {0.25, 0.55, 0.85}) EXPECT_NEAR(At(model, kDepth, x), 0, kTails) << x;
  EXPECT_GT(At(model, kDepth, 1.25), 1000);
}

TEST_F(BilayerProgram, ThePairsOfBandsAddUpToTheSum) {
  Model& model = MakeBilayer(3.1, 0.4, 40);
  Cell(model, 2, Wo).value = 0.2;
  Cell(model, 2, G).value = 1000;
  double all = 0;
  for (double x = 0.05; x < 3; x += 0.1) {
    double sum = 0;
    for (const Quantity q : {kE1, kE2, kS1, kS2, kN1, kN2}) sum += At(model, q, x);
    EXPECT_CLOSE(sum, At(model, kDepth, x), kChain);
    all += sum;
  }
  EXPECT_GT(all, 0);
}

// The Kubo sum over a small mesh, with the closed bands of a single sheet.
TEST_F(BilayerProgram, HasTheSumOfTheClosedMatrixElements) {
  constexpr double kSixDigits = 1e-5;  // of e^2/hbar above; coordinates of atoms have seven
  constexpr int kCells = 5;
  const double g0 = 3.0, length = 2.4595, kT = 8.6173467e-05 * 2000, mu = 0.3;
  Model& model = MakeBilayer(g0, 0, kCells);
  Cell(model, 2, Wo).value = mu;
  Cell(model, 2, G).value = 2000;
  Cell(model, 7, Wp).value = 24;
  Cell(model, 7, G).value = 1;
  const auto fermi = [&](double e) { return 1 / (std::exp((e - mu) / kT) + 1); };
  double sum = 0;
  for (int i = 0; i < kCells; ++i) {
    for (int j = 0; j < kCells; ++j) {
      const double p = 2 * std::numbers::pi * (i + 0.5) / kCells, q = 2 * std::numbers::pi * (j + 0.5) / kCells;
      // From A to its three B: the middle of the cell, and the same less a1 or a2.
      const C waves[] = {1, std::polar(1.0, -p), std::polar(1.0, -q)};
      const double steps[] = {length / 2, -length / 2, 0};
      C f = 0, slope = 0;
      for (int s = 0; s < 3; ++s) {
        f += g0 * waves[s];
        slope += kI * steps[s] * g0 * waves[s];
      }
      const double e = std::abs(f), across = std::imag(slope * std::conj(f)) / e;
      sum += 2 * across * across * (fermi(-e) - fermi(e)) / (2 * e) / (kCells * kCells);  // two layers
    }
  }
  const double area = length * length * std::sqrt(0.75);
  const double expected = 50 * 2 * std::numbers::pi * 2.43413e-4 * sum / (area * 335e-8) / 24;
  EXPECT_NEAR(At(model, kDepth, 3), expected, kSixDigits * expected);
}

TEST_F(BilayerProgram, OutsideItsEnergiesConductsNothing) {
  Model& model = MakeBilayer(3.1, 0.38, 6);
  Cell(model, 7, Wo).value = 5;
  Cell(model, 7, Wp).value = 7;
  Cell(model, 7, G).value = 2.9;  // two bins
  for (const double x : {4.999, 7.0, 7.001, -1.0}) {
    for (const Quantity q : {kE1, kE2, kS1, kS2, kN1, kN2, kDepth}) EXPECT_EQ(At(model, q, x), 0) << x;
  }
  EXPECT_GT(At(model, kDepth, 5), 0);
  EXPECT_EQ(At(model, kDepth, 5), At(model, kDepth, 5.999));
}

TEST_F(BilayerProgram, WithoutItsLastRowsHasBandsAndNoConductivity) {
  Model& model = Make(31, {{3.1, 0.38, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {1, 0.3, 0.6}, {2, 0.5, 0.5}, {3, 0, 0}});
  EXPECT_EQ(Status(model, 0.5), 0);
  EXPECT_LT(Left(kRefl), -1);
  for (const Quantity q : {kE1, kE2, kS1, kS2, kN1, kN2, kDepth}) EXPECT_EQ(Left(q), 0) << q;
  EXPECT_TRUE(messages.empty());
}

TEST_F(BilayerProgram, WithABadFileTellsSoAndLeavesTheQuantities) {
  Model& model = MakeBilayer(3.1, 0.38, 6);
  At(model, kRefl, 0.5);
  Cell(model, 8, Wp).value = 3;  // the mesh goes beyond the zone
  EXPECT_EQ(Status(model, 0.5), -1);
  EXPECT_EQ(Left(kRefl), 77);
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0], "Error: Error in the line #2, of the file Q.cfg (should be 0 <= Qmin < Qmax <= 1).\n");
  folder.Write("Q.cfg", "0\n0 0 0 1 1 0 6 6 1\n");  // corrected by the user
  EXPECT_EQ(Status(model, 0.5), 0);
  fs::remove(folder.Path("Q.cfg"));
  Cell(model, 2, Wo).value = 0.1;
  EXPECT_EQ(Status(model, 0.5), -1);
  EXPECT_EQ(messages.back(), "Error: Cannot open file Q.cfg.\n");
}

TEST_F(BilayerProgram, TakesALatticeMadeByHandWhereItHasWrittenNone) {
  // A square lattice. The numbers of the rows count as written already.
  Model& model = Make(31, {{-1, -1, -1}, {-1, -1, -1}, {0, -1, 0}, {0, 0, 0}, {1, 0.5, 0}, {2, 0.5, 0.5}, {3, 0, 0}});
  EXPECT_EQ(Status(model, 0.5), -1);
  ASSERT_FALSE(messages.empty());
  EXPECT_EQ(messages[0], "Error: Cannot open file Bilayer.lat\n");
  folder.Write("Bilayer.lat", "3 3 9\n90 90 90\n1\nX 0 0 0 0.5\n1\nX X 3 0.1 -0.25\n");
  EXPECT_NEAR(At(model, kRefl, 0), 0.5 - 0.25 * 4, kRound);
  EXPECT_NEAR(At(model, kRefl, 1), 0.5, kRound);
  EXPECT_NEAR(At(model, kRefl, 2), 0.5 + 0.25 * 4, kFormula);
  EXPECT_EQ(At(model, kTrans, 2), 0);
}

TEST_F(BilayerProgram, TellsAFaultOnceForASpectrum) {
  Model& model = MakeBilayer(3.1, 0.38, 6);
  Cell(model, 8, G).value = 0;
  std::vector<double> x(300);
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = 0.01 * static_cast<double>(i);
  const std::vector<QuantitySet> wanted(x.size(), QuantitySet{kDepth});
  SpectrumRequest request;
  request.x = x;
  request.wanted = wanted;
  EXPECT_EQ(EvalSpectrum(program.eval, model, request, [](const SpectrumBlock&) {}), -1);
  EXPECT_EQ(messages.size(), 1u);
  EXPECT_EQ(EvalSpectrum(program.eval, model, request, [](const SpectrumBlock&) {}), -1);
  EXPECT_EQ(messages.size(), 2u);
}

TEST_F(BilayerProgram, RefusesMoreBinsThanThereIsRoomFor) {
  Model& model = MakeBilayer(3.1, 0.38, 6);
  Cell(model, 7, G).value = 1e9;
  EXPECT_EQ(Status(model, 0.5), -1);
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0], "Error: Out of memory.\n");
}

}  // namespace
}  // namespace kalvex
