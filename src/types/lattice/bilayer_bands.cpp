// Tight-binding bands as a model. The type writes a lattice file from its rows and reads it back, writes reciprocal
// vectors and hops for the user, and computes bands along a path or an interband conductivity on a mesh of energies.
//
// The interband part of the Kubo formula with two spins, in a bin of width step at the energy E:
//     sigma_ij = 50 2 pi (e^2/hbar) mean over k of |<i|dH/dk_x|j>|^2 (f_i - f_j)/(E_j - E_i)/(A c)/step,
// E_j - E_i in the bin, A c the volume of the cell. The cell of the file is 335 A high and contains one bilayer. The
// factor 50 = 335/6.7 gives the conductivity of a layer of 6.7 A.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/files.h"
#include "numeric/fermi.h"
#include "types/frame.h"
#include "types/lattice/lattice_files.h"
#include "types/types.h"

namespace kalvex {
namespace {

enum Input {
  kInPlane,
  kDimer,
  kTrigonal,
  kSkew,
  kSiteA,
  kLayers,
  kPotential,
  kSite,
  kTemperature,
  kNodes,  // three cells for each node
  kEnergyFrom = kNodes + 12,
  kEnergyTo,
  kBins,
  kMesh,  // centre, width, grid, twice
  kInputs = kMesh + 6
};
constexpr std::size_t kNodeCount = 4;
constexpr RowCell kHead[kInputs] = {Own(0, Wo, "in-plane hopping A1 B1, A2 B2, eV", 3.1),
                                    Own(0, Wp, "hopping A1 A2, eV", 0.38),
                                    Own(0, G, "hopping B1 B2, eV", 0.3),
                                    Own(1, Wo, "hopping A1 B2, B1 A2, eV", 0.1),
                                    Own(1, Wp, "extra site energy of the A atoms, eV", 0.02),
                                    Own(1, G, "energy difference of the two layers, eV", 0.1),
                                    Own(2, Wo, "chemical potential, eV", 0.05),
                                    Own(2, Wp, "common site energy, eV", 0.01),
                                    Own(2, G, "temperature, K", 100),
                                    Setting(3, Wo, "position of the first node on the axis", 0),
                                    Setting(3, Wp, "its wave vector along b1", 0),
                                    Setting(3, G, "its wave vector along b2", 0),
                                    Setting(4, Wo, "position of the second node", 1),
                                    Setting(4, Wp, "its wave vector along b1", 0.3333333),
                                    Setting(4, G, "its wave vector along b2", 0.6666667),
                                    Setting(5, Wo, "position of the third node", 1.6),
                                    Setting(5, Wp, "its wave vector along b1", 0.5),
                                    Setting(5, G, "its wave vector along b2", 0.5),
                                    Setting(6, Wo, "position of the fourth node", 2.5),
                                    Setting(6, Wp, "its wave vector along b1", 0),
                                    Setting(6, G, "its wave vector along b2", 0),
                                    Setting(7, Wo, "conductivity: energy from, eV", 0),
                                    Setting(7, Wp, "conductivity: energy to, eV", 3),
                                    Setting(7, G, "number of bins", 12),
                                    Setting(8, Wo, "mesh along b1: centre", 0.5),
                                    Setting(8, Wp, "width", 1),
                                    Setting(8, G, "number of cells", 8),
                                    Setting(9, Wo, "mesh along b2: centre", 0.5),
                                    Setting(9, Wp, "width", 1),
                                    Setting(9, G, "number of cells", 8)};
constexpr RowMap kMap{.rows = AtLeast(7), .head = kHead, .group = {}, .groupStart = 0, .groupRows = 1};
constexpr SlotUse kFills[] = {{kRefl, "lowest band at x on the path, eV"},
                              {kTrans, "second band"},
                              {kRp, "third band"},
                              {kRs, "fourth band"},
                              {kE1, "Re sigma between bands 1 and 2 at the energy x, Ohm^-1 cm^-1"},
                              {kE2, "between bands 1 and 3"},
                              {kS1, "between bands 1 and 4"},
                              {kS2, "between bands 2 and 3"},
                              {kN1, "between bands 2 and 4"},
                              {kN2, "between bands 3 and 4"},
                              {kDepth, "sum over all pairs of bands"}};

constexpr Quantity kPathBands[] = {kRefl, kTrans, kRp, kRs};
constexpr Quantity kPairs[] = {kE1, kE2, kS1, kS2, kN1, kN2};
constexpr std::size_t kBinNumbers = 7;  // the sum over all pairs, and the pairs
constexpr double kMostBins = 1e6;

using BinNumbers = std::array<double, kBinNumbers>;
using MeshNumbers = std::array<double, 6>;

// The numbers with which the shared files of this type's models were last written.
struct WrittenFiles {
  BilayerEnergies lattice{-1, -1, -1, -1, -1, -1, -1};
  MeshNumbers mesh = {-1, -1, -1, -1, -1, -1};
};

// The key of a cached result: the numbers from which it was computed. A failure is cached as well.
enum class Made { kNot, kDone, kFailed };
template <class Key>
struct Kept {
  Key key{};
  Made made = Made::kNot;
  std::uint64_t spectrum = 0;

  // A failure is repeated only in the next spectrum. The message comes once a spectrum, not at every frequency, and a
  // corrected file is read.
  bool IsFor(const Key& wanted, std::uint64_t now) const {
    if (made == Made::kNot || !(key == wanted)) return false;
    return made == Made::kDone || (now != 0 && now == spectrum);
  }
  void Set(const Key& wanted, bool done, std::uint64_t now) {
    key = wanted;
    made = done ? Made::kDone : Made::kFailed;
    spectrum = now;
  }
};

struct BilayerCache {
  Kept<BilayerEnergies> lattice;
  Lattice cell;
  std::vector<Hop> hops;

  Kept<std::array<double, 18>> conductivity;
  std::vector<BinNumbers> bins;

  EigenScratch eigen;
  std::vector<Cplx> phases, matrix, slope, room;
};

void Tell(const EvalContext& ctx, const std::string& message) {
  if (ctx.platform) ctx.platform->ShowMessage("Error", message);
}

BilayerEnergies EnergiesOf(const TypeInputs<double>& in) {
  return {in.value(kInPlane), in.value(kDimer),  in.value(kTrigonal), in.value(kSkew),
          in.value(kSiteA),   in.value(kLayers), in.value(kSite)};
}

bool ReadFile(const EvalContext& ctx, const char* name, const char* end, std::string& text) {
  if (ReadTextFile(name, text)) return true;
  Tell(ctx, std::string("Cannot open file ") + name + end);
  return false;
}
bool WriteFile(const EvalContext& ctx, const char* name, const std::string& text) {
  if (WriteWholeFile(name, text).Ok()) return true;
  Tell(ctx, std::string("Cannot open file ") + name + "\n");
  return false;
}

// Writes the lattice file if the numbers have changed, and reads the lattice from it.
bool LoadLattice(EvalContext& ctx, const BilayerEnergies& energies, BilayerCache& cache) {
  BilayerEnergies& written = SharedOf<WrittenFiles>(ctx).lattice;
  if (!(written == energies)) {
    if (!WriteFile(ctx, kLatticeFile, LatticeText(energies))) return false;
    written = energies;
  }
  std::string text, fault;
  if (!ReadFile(ctx, kLatticeFile, "\n", text)) return false;
  if (!ReadLattice(text, cache.cell, fault)) {
    Tell(ctx, fault);
    return false;
  }
  if (!SetReciprocalVectors(cache.cell)) {
    Tell(ctx, "The unit cell volume is zero.\n");
    return false;
  }
  if (!FindHops(cache.cell, cache.hops)) {
    Tell(ctx, "Out of memory\n");
    return false;
  }
  return WriteFile(ctx, kReciprocalFile, ReciprocalText(cache.cell)) &&
         WriteFile(ctx, kHopsFile, HopsText(cache.cell, cache.hops));
}

// Computes the levels at a wave vector; with wantStates also the states, and dH/dk_x between them in cache.slope.
void SolveAt(const EvalContext& ctx, BilayerCache& cache, const Vector3& k, bool wantStates) {
  const std::size_t n = cache.cell.atoms.size();
  for (std::vector<Cplx>* const room : {&cache.matrix, &cache.slope, &cache.room}) room->resize(n * n);
  const auto sizeOf = [&](std::size_t type) { return cache.cell.types[type].size; };
  PhasesAt(cache.hops, k, cache.phases);
  AssembleBloch(
      n, cache.hops, cache.phases, sizeOf, [&](std::size_t i) { return cache.cell.atoms[i].energy; }, cache.matrix);
  if (!HermitianEigen(cache.matrix, n, wantStates, cache.eigen)) Tell(ctx, "Too many iterations in tqli\n");
  if (!wantStates) return;
  AssembleBlochSlope(n, cache.hops, cache.phases, sizeOf, cache.matrix);
  BetweenStates(n, cache.eigen.states, cache.matrix, cache.room, cache.slope);
}

void FillBands(const EvalContext& ctx, const TypeInputs<double>& in, BilayerCache& cache, Slots<double>& q) {
  const auto node = [&](std::size_t number, std::size_t column) { return in.value(kNodes + 3 * number + column); };
  for (std::size_t part = 0; part + 1 < kNodeCount; ++part) {
    const double from = node(part, Wo), to = node(part + 1, Wo);
    if (!((in.x - from) * (in.x - to) <= 0)) continue;
    const double t = to == from ? 0 : (in.x - from) / (to - from);
    const double u = node(part, Wp) + t * (node(part + 1, Wp) - node(part, Wp));
    const double v = node(part, G) + t * (node(part + 1, G) - node(part, G));
    Vector3 k{};
    for (std::size_t i = 0; i < 3; ++i) k[i] = u * cache.cell.reciprocal[0][i] + v * cache.cell.reciprocal[1][i];
    SolveAt(ctx, cache, k, false);
    const std::size_t bands = std::min(cache.cell.atoms.size(), std::size(kPathBands));
    for (std::size_t band = 0; band < bands; ++band) q[kPathBands[band]] = cache.eigen.levels[band];
    return;
  }
}

// Writes the mesh file if the numbers have changed, and reads the mesh of wave vectors from it.
bool LoadMesh(EvalContext& ctx, const TypeInputs<double>& in, WaveVectorMesh& mesh) {
  MeshNumbers numbers{};
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = in.value(kMesh + i);
  MeshNumbers& written = SharedOf<WrittenFiles>(ctx).mesh;
  if (written != numbers) {
    const auto& [centreX, widthX, gridX, centreY, widthY, gridY] = numbers;
    mesh.from = {centreX - widthX / 2, centreY - widthY / 2, 0};
    mesh.to = {centreX + widthX / 2, centreY + widthY / 2, 0};
    mesh.grid = {in.setting(kMesh + 2), in.setting(kMesh + 5), 1};
    if (!WriteFile(ctx, kMeshFile, MeshText(mesh))) return false;
    written = numbers;
  }
  std::string text, fault;
  if (!ReadFile(ctx, kMeshFile, ".\n", text)) return false;
  if (!ReadMesh(text, mesh, fault)) {
    Tell(ctx, fault);
    return false;
  }
  return true;
}

struct EnergyMesh {
  double from, to, step;
  int bins;

  // The bin of an energy; -1 if it is outside the mesh.
  int BinOf(double energy) const {
    if (bins < 1 || !(energy >= from && energy < to)) return -1;
    return std::min(static_cast<int>((energy - from) / step), bins - 1);
  }
};

EnergyMesh EnergyMeshOf(const TypeInputs<double>& in) {
  const double from = in.value(kEnergyFrom), to = in.value(kEnergyTo);
  const int bins = in.setting(kBins);
  return {from, to, (to - from) / bins, bins};
}

// Adds the transitions of one wave vector to the bins: weight |<i|dH/dk_x|j>|^2 (f_i - f_j)/(E_j - E_i).
void AddTransitions(const EnergyMesh& mesh, double weight, double mu, double kT, BilayerCache& cache) {
  const std::size_t n = cache.cell.atoms.size();
  std::size_t pair = 0;
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = i + 1; j < n; ++j, ++pair) {
      const double low = cache.eigen.levels[i], high = cache.eigen.levels[j];
      const int bin = mesh.BinOf(high - low);
      if (bin < 0) continue;
      const double part = weight * Norm(cache.slope[i * n + j]) * FermiQuotient(low - mu, high - mu, kT);
      BinNumbers& numbers = cache.bins[static_cast<std::size_t>(bin)];
      numbers[0] += part;
      if (pair < std::size(kPairs)) numbers[pair + 1] += part;
    }
  }
}

bool MakeConductivity(EvalContext& ctx, const TypeInputs<double>& in, BilayerCache& cache) {
  constexpr double kRoundedElectronvoltPerKelvin = 8.6173467e-05;
  constexpr double kCubicAngstromPerSquare = 1e-8;  // A^3 to A^2 cm
  const EnergyMesh energies = EnergyMeshOf(in);
  cache.bins.clear();
  if (energies.bins < 1 || !(energies.step > 0)) return true;
  WaveVectorMesh mesh;
  if (!LoadMesh(ctx, in, mesh)) return false;
  if (energies.bins > kMostBins || CountOf(mesh) > kMostWaveVectors) {
    Tell(ctx, "Out of memory.\n");
    return false;
  }
  cache.bins.assign(static_cast<std::size_t>(energies.bins), {});
  const double scale = 50 * 2 * std::numbers::pi * kConductance /
                       (std::fabs(cache.cell.volume) * kCubicAngstromPerSquare * energies.step);
  const double kT = kRoundedElectronvoltPerKelvin * in.value(kTemperature);
  ForEachWaveVector(mesh, cache.cell.reciprocal, [&](const Vector3& k, double share) {
    SolveAt(ctx, cache, k, true);
    AddTransitions(energies, scale * share, in.value(kPotential), kT, cache);
  });
  return true;
}

std::array<double, 18> ConductivityKey(const TypeInputs<double>& in) {
  std::array<double, 18> key{};
  for (std::size_t i = 0; i < kNodes; ++i) key[i] = in.value(i);
  for (std::size_t i = kEnergyFrom; i < kInputs; ++i) key[kNodes + i - kEnergyFrom] = in.value(i);
  return key;
}

bool IsWanted(const EvalContext& ctx, Quantity quantity) { return ctx.quantities[quantity].wanted != 0; }

template <class Quantities>
bool AnyWanted(const EvalContext& ctx, const Quantities& quantities) {
  return std::any_of(std::begin(quantities), std::end(quantities), [&](Quantity q) { return IsWanted(ctx, q); });
}

int Evaluate(EvalContext& ctx, const Model& model, double x, bool) {
  TypeRun run(ctx, model, kMap, kFills);
  if (const int status = run.ReadRows()) return status;
  const TypeInputs<double> in(run.scratch(), kMap, x);
  auto& cache = CacheOf<BilayerCache>(ctx, model);
  const BilayerEnergies energies = EnergiesOf(in);
  if (!cache.lattice.IsFor(energies, ctx.spectrum)) {
    cache.lattice.Set(energies, LoadLattice(ctx, energies, cache), ctx.spectrum);
    cache.conductivity.made = Made::kNot;
  }
  if (cache.lattice.made == Made::kFailed) return -1;
  Slots<double> q{};
  if (AnyWanted(ctx, kPathBands)) FillBands(ctx, in, cache, q);
  if (AnyWanted(ctx, kPairs) || IsWanted(ctx, kDepth)) {
    const auto key = ConductivityKey(in);
    if (!cache.conductivity.IsFor(key, ctx.spectrum)) {
      cache.conductivity.Set(key, MakeConductivity(ctx, in, cache), ctx.spectrum);
    }
    if (cache.conductivity.made == Made::kFailed) return -1;
    if (const int bin = EnergyMeshOf(in).BinOf(x); bin >= 0) {
      const BinNumbers& numbers = cache.bins[static_cast<std::size_t>(bin)];
      q[kDepth] = numbers[0];
      for (std::size_t pair = 0; pair < std::size(kPairs); ++pair) q[kPairs[pair]] = numbers[pair + 1];
    }
  }
  run.Store(q);
  return 0;
}

}  // namespace

constinit const ModelType kBandsCondBilayer = {
    .code = 31,
    .name = "Bands+Cond Bilayer",
    .evaluate = Evaluate,
    .after = AfterNothing,
    .fitted = false,
    .material = false,
    .map = kMap,
    .fills = kFills,
    .page =
        {.sample = "bands of bilayer graphene along a path, and its interband conductivity against the energy",
         .formula =
             "H(k) = site energies + sum over hops of size exp(i k R), R from atom to atom; in the usual notation the\n"
             "hoppings are -g0, g1, -g3 and g4\n"
             "sigma_ij = 50 2 pi (e^2/hbar) mean over k |<i|dH/dkx|j>|^2 (f_i - f_j)/(E_j - E_i)/(A 335e-8 cm)/step\n"
             "in the bin of E_j - E_i; the mean is over the whole zone; the mesh covers a part of it, with points at\n"
             "the middles of its cells. Outside the path and the bins the results are 0. The lattice is written to\n"
             "Bilayer.lat and the mesh to Q.cfg in the current directory, and both are read from there. b.dat and\n"
             "Hops.dat are output only. An edited file is used until the numbers of its rows change.",
         .source =
             "tight binding, E. McCann, M. Koshino, Rep. Prog. Phys. 76, 056503 (2013), and the Kubo formula; the "
             "conductivity is that of a layer of 6.7 A; which Quantity holds which pair of bands is a choice of "
             "this program",
         .from = 0.05,
         .to = 2.4,
         .axis = "position on the path for the bands, energy in eV for the conductivity"},
    .whole = true};

}  // namespace kalvex
