// The files of the lattice: their bytes, and the message of every error.
#include "types/lattice/lattice_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numbers>

#include "support/tolerances.h"

namespace kalvex {
namespace {

const BilayerEnergies kEnergies{3.1, 0.38, 0.3, 0.14, 0.02, 0.1, 0.05};

const char* const kBilayerText =
    "2.4595 2.4595 335\n90.0 90.0 60.0\n4\n"
    "A1 0.3333333 0.3333333 0.0  0.120000\nB1 0.6666667 0.6666667 0.0  0.100000\n"
    "A2 0.3333333 0.3333333 0.01 0.020000\nB2 0.0000000 0.0000000 0.01 0.000000\n"
    "6\n"
    "A1 B1 1.42 0.01 3.100000\nA2 B2 1.42 0.01 3.100000\nA1 A2 3.35 0.01 0.380000\n"
    "B1 B2 3.64 0.01 0.300000\nA1 B2 3.64 0.01 0.140000\nB1 A2 3.64 0.01 0.140000\n";

TEST(LatticeFile, IsWrittenAsLaidOut) { EXPECT_EQ(LatticeText(kEnergies), kBilayerText); }

Lattice Read(const std::string& text) {
  Lattice lattice;
  std::string fault;
  EXPECT_TRUE(ReadLattice(text, lattice, fault)) << fault;
  EXPECT_TRUE(SetReciprocalVectors(lattice));
  return lattice;
}

TEST(LatticeFile, IsReadBackAsItWasMeant) {
  const Lattice lattice = Read(kBilayerText);
  ASSERT_EQ(lattice.atoms.size(), 4u);
  ASSERT_EQ(lattice.types.size(), 6u);
  EXPECT_EQ(lattice.atoms[2].name, "A2");
  EXPECT_EQ(lattice.atoms[2].place[2], 0.01);
  EXPECT_EQ(lattice.atoms[0].energy, 0.12);
  EXPECT_EQ(lattice.types[4].first, 0);
  EXPECT_EQ(lattice.types[4].second, 3);
  EXPECT_EQ(lattice.types[4].size, 0.14);
  EXPECT_NEAR(lattice.volume, 2.4595 * 2.4595 * std::sqrt(0.75) * 335, kLongSum);
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      EXPECT_NEAR(Dot(lattice.vectors[i], lattice.reciprocal[j]), i == j ? 2 * std::numbers::pi : 0, kChain);
    }
  }
}

TEST(LatticeFile, MayHoldObliqueCells) {
  const Lattice lattice = Read("2 3 4\n70 80 100\n1\nX 0 0 0 0\n1\nX X 2 0.1 1\n");
  const double degree = std::numbers::pi / 180;
  const auto& a = lattice.vectors;
  EXPECT_CLOSE(Dot(a[1], a[2]), 3 * 4 * std::cos(70 * degree), kChain);
  EXPECT_CLOSE(Dot(a[0], a[2]), 2 * 4 * std::cos(80 * degree), kChain);
  EXPECT_CLOSE(Dot(a[0], a[1]), 2 * 3 * std::cos(100 * degree), kChain);
  EXPECT_CLOSE(Dot(a[2], a[2]), 16, kChain);
}

TEST(LatticeFile, PassesOverBlankLinesAndWhatFollowsTheLastField) {
  const Lattice lattice = Read("\n 1 1 1 one\r\n90 90 90\n\n1 atom\nX 0 0 0 7 eV\n1\nX X 1 0.1 2 end");
  EXPECT_EQ(lattice.atoms[0].energy, 7);
  EXPECT_EQ(lattice.types[0].size, 2);
}

TEST(Hops, OfABilayerAreItsNeighbours) {
  const Lattice lattice = Read(kBilayerText);
  std::vector<Hop> hops;
  ASSERT_TRUE(FindHops(lattice, hops));
  // In both orders: three neighbours in each layer, one above, three of each of the oblique kinds.
  const int expected[] = {6, 6, 2, 6, 6, 6};
  for (std::size_t type = 0; type < 6; ++type) {
    EXPECT_EQ(std::count_if(hops.begin(), hops.end(), [&](const Hop& hop) { return hop.type == type; }),
              expected[type]);
  }
  for (const Hop& hop : hops) {
    const bool back = std::any_of(hops.begin(), hops.end(), [&](const Hop& other) {
      return other.from == hop.to && other.to == hop.from && other.type == hop.type && other.cell[0] == -hop.cell[0] &&
             other.cell[1] == -hop.cell[1] && other.cell[2] == -hop.cell[2];
    });
    EXPECT_TRUE(back);
    const HopType& type = lattice.types[hop.type];
    EXPECT_NEAR(std::sqrt(Dot(hop.step, hop.step)), type.R, type.tolerance);
  }
}

TEST(Hops, ReachAcrossCellsWhereTheDistanceIsLonger) {
  const Lattice lattice = Read("1 1 1\n90 90 90\n1\nX 0 0 0 0\n2\nX X 1 0.01 1\nX X 3 0.01 1\n");
  std::vector<Hop> hops;
  ASSERT_TRUE(FindHops(lattice, hops));
  EXPECT_EQ(hops.size(), 6u + 30u);  // (3,0,0) and (2,2,1) with all signs and orders
}

TEST(Hops, BeyondAllRoomAreRefused) {
  const Lattice lattice = Read("1 1 1\n90 90 90\n1\nX 0 0 0 0\n1\nX X 1e9 0.01 1\n");
  std::vector<Hop> hops;
  EXPECT_FALSE(FindHops(lattice, hops));
}

TEST(LatticeFile, TellsEveryFaultInItsWords) {
  const std::string cell = "1 1 1\n90 90 90\n", atoms = cell + "2\nA 0 0 0 0\nB 0.5 0.5 0.5 1\n";
  const std::string manyAtoms = cell + "11\n", manyTypes = atoms + "101\n";
  const struct {
    std::string text, fault;
  } kFaults[] = {
      {"", "Error in the first line of Lattice.dat (must be 3 vector lengths)\n"},
      {"1 2\n90 90 90\n", "Error in the first line of Lattice.dat (must be 3 vector lengths)\n"},
      {"1 2 inf\n90 90 90\n", "Error in the first line of Lattice.dat (must be 3 vector lengths)\n"},
      {"1 0 1\n90 90 90\n", "Error in the first line of Lattice.dat (all vector lenghts must be positive)\n"},
      {"1 1 1\n90 90\n1\n", "Error in the second line of Lattice.dat (must be 3 angles)\n"},
      {"1 1 1\n90 90 180\n", "Error in the first line of Lattice.dat (all angles must be between 0 and 180 degrees)\n"},
      {"1 1 1\n0 90 90\n", "Error in the first line of Lattice.dat (all angles must be between 0 and 180 degrees)\n"},
      {"1 1 1\n150 90 30\n", "Error in the first line of Lattice.dat (the angles are incompatible)\n"},
      {cell + "many\n", "Error in the third line of Lattice.dat (expect the number atoms)\n"},
      {cell, "Error in the third line of Lattice.dat (expect the number atoms)\n"},
      {cell + "0\n", "Error in the third line of Lattice.dat (the number of atoms should between 1 and 10)\n"},
      {manyAtoms, "Error in the third line of Lattice.dat (the number of atoms should between 1 and 10)\n"},
      {cell + "1\nA 0 0 0\n",
       "Error in the line #3 of Lattice.dat (expect: <AtomName> <RelCoord1> <RelCoord2> <RelCoord3> <Energy>)\n"},
      {cell + "2\nA 0 0 0 0\nTenLetters 0 0 0 0\n",
       "Error in the line #4 of Lattice.dat (expect: <AtomName> <RelCoord1> <RelCoord2> <RelCoord3> <Energy>)\n"},
      {cell + "2\nA 0 0 0 0\nB 0 1 0 0\n",
       "Error in the line #4 of Lattice.dat (relative atom coordinates must be between 0 and 1)\n"},
      {cell + "1\nA 0 -0.1 0 0\n",
       "Error in the line #3 of Lattice.dat (relative atom coordinates must be between 0 and 1)\n"},
      {atoms, "Error in the first line of Lattice.dat (expect the number of hopping types)\n"},
      {atoms + "0\n",
       "Error in the first line of Lattice.dat (the number of hopping types should between 1 and 100)\n"},
      {manyTypes, "Error in the first line of Lattice.dat (the number of hopping types should between 1 and 100)\n"},
      {atoms + "1\nA B 1 0.1\n",
       "Error in the line #2 of Lattice.dat (expect: <Name1> <Name2> <R> <Rtol> <HoppingSize>)\n"},
      {atoms + "2\nA B 1 0.1 1\nA C 1 0.1 1\n", "Error in the line #3 of Lattice.dat (atom name is not recognized)"},
      {atoms + "1\nA B 0 0.1 1\n", "Error in the line #2 of Lattice.dat\n"},
      {atoms + "1\nA B 1 0 1\n", "Error in the line #2 of Lattice.dat\n"},
      {atoms + "1\nA B 1 1 1\n", "Error in the line #2 of Lattice.dat\n"},
  };
  for (const auto& expected : kFaults) {
    Lattice lattice;
    std::string fault;
    EXPECT_FALSE(ReadLattice(expected.text, lattice, fault)) << expected.text;
    EXPECT_EQ(fault, expected.fault) << expected.text;
  }
}

TEST(LatticeFile, TakesTenAtomsAndAHundredKindsOfHops) {
  std::string text = "1 1 1\n90 90 90\n10\n";
  for (int i = 0; i < 10; ++i) text += "A" + std::to_string(i) + " 0." + std::to_string(i) + " 0 0 0\n";
  text += "100\n";
  for (int i = 0; i < 100; ++i) text += "A0 A9 1 0.5 1\n";
  const Lattice lattice = Read(text);
  EXPECT_EQ(lattice.atoms.size(), 10u);
  EXPECT_EQ(lattice.types.size(), 100u);
}

TEST(LatticeFile, OfACellWithoutVolumeHasNoReciprocalVectors) {
  Lattice lattice;
  lattice.vectors = {{{1, 0, 0}, {2, 0, 0}, {0, 0, 1}}};
  EXPECT_FALSE(SetReciprocalVectors(lattice));
}

TEST(LatticeFile, ItsReciprocalVectorsAndHopsAreWrittenAsLaidOut) {
  const Lattice lattice = Read("2 2 2\n90 90 90\n1\nX 0 0 0 0\n1\nX X 2 0.1 -1.5\n");
  std::vector<Hop> hops;
  ASSERT_TRUE(FindHops(lattice, hops));
  EXPECT_EQ(HopsText(lattice, hops),
            "0 0 -1 0 0 -1.500000\n0 0 0 -1 0 -1.500000\n0 0 0 0 -1 -1.500000\n"
            "0 0 0 0 1 -1.500000\n0 0 0 1 0 -1.500000\n0 0 1 0 0 -1.500000\n");
  std::string text = ReciprocalText(lattice);
  std::string::size_type sign;
  while ((sign = text.find("-0.0000000000")) != std::string::npos) text.erase(sign, 1);
  EXPECT_EQ(text,
            "3.1415926536 0.0000000000 0.0000000000 \n0.0000000000 3.1415926536 0.0000000000 \n"
            "0.0000000000 0.0000000000 3.1415926536 \n");
}

TEST(MeshFile, IsWrittenAsLaidOutAndReadBack) {
  WaveVectorMesh mesh;
  mesh.from = {0.25, 0, 0};
  mesh.to = {0.75, 1, 0};
  mesh.grid = {40, 30, 1};
  EXPECT_EQ(MeshText(mesh), "0\n0.250000 0.000000 0.000000 0.750000 1.000000 0.000000 40 30 1");
  WaveVectorMesh read;
  std::string fault;
  ASSERT_TRUE(ReadMesh(MeshText(mesh), read, fault)) << fault;
  EXPECT_FALSE(read.radial);
  EXPECT_EQ(read.from, mesh.from);
  EXPECT_EQ(read.to, mesh.to);
  EXPECT_EQ(read.grid, mesh.grid);
}

TEST(MeshFile, MayBeRadial) {
  WaveVectorMesh mesh;
  std::string fault;
  ASSERT_TRUE(ReadMesh("1\n0.333 0.667 0 0.1 0 0 50 24 1\n", mesh, fault)) << fault;
  EXPECT_TRUE(mesh.radial);
  EXPECT_EQ(mesh.centre[1], 0.667);
  EXPECT_EQ(mesh.radiusTo, 0.1);
  EXPECT_EQ(mesh.grid[1], 24);
}

TEST(MeshFile, TellsEveryFaultInItsWords) {
  const struct {
    const char *text, *fault;
  } kFaults[] = {
      {"", "Error in the line #1, of the file Q.cfg (expect <SummationMethod> (0 - square, 1, radial).\n"},
      {"2\n0 0 0 1 1 0 9 9 1\n",
       "Error in the line #1, of the file Q.cfg (expect <SummationMethod> (0 - square, 1, radial).\n"},
      {"0\n0 0 0 1 1 0 9 9\n",
       "Error in the line #2, of the file Q.cfg (expect <QminX> <QminY> <QminZ> <QmaxX> <QmaxY> <QmaxZ> <GridX> "
       "<GridY> "
       "<GridZ>.\n"},
      {"1\n0 0 0 1 1 0 9\n",
       "Error in the line #2, of the file Q.cfg (expect <QcenterX> <QcenterY> <Qradmin> <Qradmax> <QminZ> <QmaxZ> "
       "<GridRad> <GridPhi> <GridZ>.\n"},
      {"0\n0 0 0 1 1.1 0 9 9 1\n", "Error in the line #2, of the file Q.cfg (should be 0 <= Qmin < Qmax <= 1).\n"},
      {"0\n-0.1 0 0 1 1 0 9 9 1\n", "Error in the line #2, of the file Q.cfg (should be 0 <= Qmin < Qmax <= 1).\n"},
      {"0\n0 0 0 1 1 0 9 9 2\n", "Error in the line #2, of the file Q.cfg (should be 0 <= Qmin < Qmax <= 1).\n"},
      {"0\n0 0.5 0 1 0.4 0 9 9 1\n", "Error in the line #2, of the file Q.cfg (should be 0 <= Qmin < Qmax <= 1).\n"},
      {"1\n0 1.2 0 0.1 0 0 9 9 1\n", "Error in the line #2, of the file Q.cfg (should be 0 <= QrelCenter <= 1).\n"},
      {"1\n0 0 0.2 0.1 0 0 9 9 1\n",
       "Error in the line #2, of the file Q.cfg (should be 0 <= Qradmin < Qradmax <= 0.5).\n"},
      {"1\n0 0 0 0.6 0 0 9 9 1\n",
       "Error in the line #2, of the file Q.cfg (should be 0 <= Qradmin < Qradmax <= 0.5).\n"},
      {"0\n0 0 0 1 1 0 9 0 1\n", "Error in the line #2, of the file Q.cfg (should be Grid > 0).\n"},
      {"1\n0 0 0 0.5 0 0 9 -3 1\n", "Error in the line #2, of the file Q.cfg (should be Grid > 0).\n"},
  };
  for (const auto& expected : kFaults) {
    WaveVectorMesh mesh;
    std::string fault;
    EXPECT_FALSE(ReadMesh(expected.text, mesh, fault)) << expected.text;
    EXPECT_EQ(fault, expected.fault) << expected.text;
  }
}

// The shares add up to the part of the zone that the mesh covers. A plane wave averages to 0.
TEST(WaveVectors, OfTheWholeZoneShareIt) {
  const Lattice lattice = Read(kBilayerText);
  WaveVectorMesh mesh;
  mesh.to = {1, 1, 0};
  mesh.grid = {6, 5, 1};
  double sum = 0, wave = 0;
  int count = 0;
  ForEachWaveVector(mesh, lattice.reciprocal, [&](const Vector3& k, double share) {
    sum += share;
    wave += share * std::cos(Dot(k, lattice.vectors[0]));
    ++count;
  });
  EXPECT_EQ(count, 30);
  EXPECT_NEAR(sum, 1, kChain);
  EXPECT_NEAR(wave, 0, kChain);
}

TEST(WaveVectors, OfARingLieAtTheirDistanceAndShareItsArea) {
  const Lattice lattice = Read(kBilayerText);
  WaveVectorMesh mesh;
  mesh.radial = true;
  mesh.centre = {1.0 / 3, 2.0 / 3};
  mesh.radiusFrom = 0.1;
  mesh.radiusTo = 0.2;
  mesh.grid = {7, 12, 1};
  const auto& b = lattice.reciprocal;
  const double length = std::sqrt(Dot(b[0], b[0]));
  Vector3 centre{}, mean{};
  for (std::size_t i = 0; i < 3; ++i) centre[i] = b[0][i] / 3 + 2 * b[1][i] / 3;
  double sum = 0;
  ForEachWaveVector(mesh, b, [&](const Vector3& k, double share) {
    Vector3 from{};
    for (std::size_t i = 0; i < 3; ++i) from[i] = k[i] - centre[i];
    const double radius = std::sqrt(Dot(from, from)) / length;
    EXPECT_GT(radius, 0.1);
    EXPECT_LT(radius, 0.2);
    sum += share;
    for (std::size_t i = 0; i < 3; ++i) mean[i] += share * from[i];
  });
  const Vector3 zone = Cross(b[0], b[1]);
  const double area = std::numbers::pi * (0.2 * 0.2 - 0.1 * 0.1) * length * length / std::sqrt(Dot(zone, zone));
  EXPECT_CLOSE(sum, area, kChain);
  for (const double part : mean) EXPECT_NEAR(part, 0, kChain);
}

}  // namespace
}  // namespace kalvex
