// Dielectric functions of two and three layers of graphene from their bands, and differences of two of them.
//
// Layers are stacked as in graphite, with the A atoms above each other; hoppings as in bilayer_bands.cpp. The Kubo sum
// (band_response.h) runs over the whole zone or over a disc about the zone's corner K. By the symmetry k -> -k half of
// the zone, or one corner, is enough; a factor of 2 stands for the other.
//     sheet = e^2/hbar (2/A) (a (interband part) + b (intraband part)),   sigma = sheet/d,
//     eps = eps_inf + 60 i sigma/x
// E. McCann, M. Koshino, Rep. Prog. Phys. 76, 056503 (2013); three layers: M. Koshino, E. McCann, Phys. Rev. B 79,
// 125443 (2009), with their g2/2 and g5/2 between the outer layers.
#include <algorithm>
#include <cmath>

#include "types/frame.h"
#include "types/lattice/band_response.h"
#include "types/lines/oscillator.h"
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
  kMesh,
  kBroadening,
  kEpsInf,
  kInterband,
  kIntraband,
  kSpacing,
  kRadius,
  kDirections,
  kCommonInputs,
  kNoIntraband = kCommonInputs,  // of the types with options
  kOuterB = kCommonInputs,       // of three layers
  kOuterA
};

constexpr std::array<RowCell, kCommonInputs> kCommonCells = {
    Own(0, Wo, "in-plane hopping A B, eV", 3.1),
    Own(0, Wp, "hopping A A between neighbouring layers, eV", 0.38),
    Own(0, G, "hopping B B between neighbouring layers, eV", 0.3),
    Own(1, Wo, "hopping A B between neighbouring layers, eV", 0.14),
    Own(1, Wp, "extra site energy of the A atoms, eV", 0.02),
    Own(1, G, "energy difference of the outermost layers, eV", 0.1),
    Own(2, Wo, "chemical potential, eV", 0.15),
    Own(2, Wp, "common site energy, eV", 0.02),
    Own(2, G, "temperature, K", 300),
    Setting(3, Wo, "number N of wave vectors along each side, or along the radius", 6),
    Own(3, Wp, "broadening, eV", 0.1),
    Own(3, G, "eps_inf", 2.5),
    Own(4, Wo, "weight of the interband part, 0 for 1", 1),
    Own(4, Wp, "weight of the intraband part, 0 for 1", 1),
    Own(4, G, "thickness of the layers, A, 0 for 3.35 each", 6.7),
    Setting(5, Wo, "radius of the disc about K, in lengths of a reciprocal vector, at most 0.28; 0: the whole zone",
            0.15),
    Setting(5, Wp, "number of directions in the disc, 0 for 24", 6)};

template <std::size_t kMore>
constexpr auto WithMore(const RowCell (&more)[kMore]) {
  std::array<RowCell, kCommonInputs + kMore> cells{};
  std::copy(kCommonCells.begin(), kCommonCells.end(), cells.begin());
  std::copy(std::begin(more), std::end(more), cells.begin() + kCommonInputs);
  return cells;
}

constexpr RowCell kOptionCells[] = {Setting(8, Wo, "1: without the intraband part", 0)};
constexpr RowCell kOuterCells[] = {Own(6, Wo, "g2: twice the hopping B B between the outer layers, eV", -0.02),
                                   Own(6, Wp, "g5: twice the hopping A A between the outer layers, eV", 0.04)};
constexpr auto kCellsWithOption = WithMore(kOptionCells);
constexpr auto kCellsOfThree = WithMore(kOuterCells);
constexpr RowCell kPhononCells[] = {
    Own(0, Wo, "first of a pair: phonon frequency, cm-1; second: electronic frequency, cm-1", 1600),
    Own(0, Wp, "first: plasma frequency of the phonon, cm-1; second: coupling", 30),
    Own(0, G, "first: width of the phonon, cm-1; second: electronic width, cm-1", 100)};

// ---- geometry

enum Hopping { kHopInPlane, kHopDimer, kHopTrigonal, kHopSkew, kHopOuterA, kHopOuterB, kHoppings };

// A lattice with its hops; hoppings[t] is the hopping of the lattice's hop type t.
struct LayeredLattice {
  Lattice lattice;
  std::vector<Hopping> hoppings;
  std::vector<Hop> hops;
};

constexpr double kLayerDistance = 3.35;  // A

void AddKind(LayeredLattice& layered, std::size_t first, std::size_t second, double R, Hopping hopping) {
  constexpr double kTolerance = 0.01;
  layered.lattice.types.push_back({first, second, R, kTolerance, 0});
  layered.hoppings.push_back(hopping);
}

// Atoms 2l and 2l + 1 are A and B of layer l; the layers alternate: 1 2 1 ...
LayeredLattice MakeLayers(int layers) {
  constexpr double kInPlaneDistance = 1.42, kSlantDistance = 3.64, kHeight = 335;
  LayeredLattice layered;
  Lattice& lattice = layered.lattice;
  SetLatticeVectors({2.4595, 2.4595, kHeight}, {90, 90, 60}, lattice);
  SetReciprocalVectors(lattice);
  for (int l = 0; l < layers; ++l) {
    const double z = kLayerDistance * l / kHeight, b = l % 2 == 0 ? 2.0 / 3 : 0;
    const std::size_t A = lattice.atoms.size(), B = A + 1;
    lattice.atoms.push_back({"A", {1.0 / 3, 1.0 / 3, z}, 0});
    lattice.atoms.push_back({"B", {b, b, z}, 0});
    AddKind(layered, A, B, kInPlaneDistance, kHopInPlane);
    if (l + 1 < layers) {
      AddKind(layered, A, A + 2, kLayerDistance, kHopDimer);
      AddKind(layered, B, B + 2, kSlantDistance, kHopTrigonal);
      AddKind(layered, A, B + 2, kSlantDistance, kHopSkew);
      AddKind(layered, B, A + 2, kSlantDistance, kHopSkew);
    }
    if (l + 2 < layers) {
      AddKind(layered, A, A + 4, 2 * kLayerDistance, kHopOuterA);
      AddKind(layered, B, B + 4, 2 * kLayerDistance, kHopOuterB);
    }
  }
  FindHops(lattice, layered.hops);
  return layered;
}

template <class T>
WaveVectorMesh MeshOf(const TypeInputs<T>& in) {
  constexpr int kMostCells = 2000, kMostDirections = 720, kUsualDirections = 24;
  constexpr double kHalfWay = 0.28867513459481287;  // from K to the middle of the edge; beyond it K' is nearer
  const int cells = std::clamp(in.setting(kMesh), 1, kMostCells);
  WaveVectorMesh mesh;
  if (!(in.value(kRadius) > 0)) {
    const long half = (cells + 1) / 2;
    mesh.grid = {half, 2 * half, 1};
    mesh.to = {0.5, 1, 0};
    return mesh;
  }
  const int directions = in.setting(kDirections) > 0 ? in.setting(kDirections) : kUsualDirections;
  mesh.radial = true;
  mesh.grid = {cells, std::min(directions, kMostDirections), 1};
  mesh.centre = {1.0 / 3, 2.0 / 3};
  mesh.radiusTo = std::fmin(in.value(kRadius), kHalfWay);
  return mesh;
}

// ---- the response

constexpr double kCentimetrePerAngstrom = 1e-8;
constexpr std::uint64_t kOfStates =
    InputBits({kInPlane, kDimer, kTrigonal, kSkew, kSiteA, kLayers, kPotential, kSite, kTemperature});

// Hopping sizes and site energies of the bands, from the numbers of the rows.
template <class T>
void SetBands(const TypeInputs<T>& in, int layers, const LayeredLattice& layered, BandModel<T>& model) {
  std::array<T, kHoppings> sizes{};
  sizes[kHopInPlane] = in[kInPlane];
  sizes[kHopDimer] = in[kDimer];
  sizes[kHopTrigonal] = in[kTrigonal];
  sizes[kHopSkew] = in[kSkew];
  if (layers > 2) {
    sizes[kHopOuterA] = T(0.5) * in[kOuterA];
    sizes[kHopOuterB] = T(0.5) * in[kOuterB];
  }
  model.hops = &layered.hops;
  model.sizes.clear();
  model.energies.clear();
  for (const Hopping hopping : layered.hoppings) model.sizes.push_back(sizes[hopping]);
  for (int l = 0; l < layers; ++l) {
    const T energy = in[kSite] + T(0.5 - static_cast<double>(l) / (layers - 1)) * in[kLayers];
    model.energies.push_back(energy + in[kSiteA]);
    model.energies.push_back(energy);
  }
  model.mu = in[kPotential];
  model.kT = T(kElectronvoltPerKelvin) * in[kTemperature];
}

template <class T>
struct LayeredTable {
  BandTable<T> bands;
  LayeredLattice layered;
  BandModel<T> model;
  BandScratch scratch;
};

template <class T>
void PrepareLayers(const TypeInputs<T>& in, int layers, LayeredTable<T>& table) {
  if (table.layered.hops.empty()) table.layered = MakeLayers(layers);
  const Lattice& lattice = table.layered.lattice;
  SetBands(in, layers, table.layered, table.model);
  table.bands.Clear();
  if (in.setting(kMesh) < 1) return;
  const Vector3 area = Cross(lattice.vectors[0], lattice.vectors[1]);
  const double perArea = 2 / std::sqrt(Dot(area, area));
  BandPoint<T> point(table.model, table.scratch);
  ForEachWaveVector(MeshOf(in), lattice.reciprocal, [&](const Vector3& k, double share) {
    if (!point.SolveAt(k)) table.bands.unsolved = true;
    AddBandPoint(table.model, point, perArea, 2 * share, table.bands);
  });
}

template <class T>
struct LayeredResponse {
  Complex<T> interband, intraband;  // conductivities with their weights, Ohm^-1 cm^-1
};

// Weights and thickness, with the default for 0.
template <class T>
T NumberOr(const TypeInputs<T>& in, std::size_t input, double usual) {
  return in.value(input) == 0 ? T(usual) : in[input];
}

template <class T>
LayeredResponse<T> ResponseAt(const TypeInputs<T>& in, int layers, bool intraband, const BandTable<T>& bands) {
  const Complex<T> z{T(kElectronvoltPerWavenumber * in.x), in[kBroadening]};
  const T thickness = NumberOr(in, kSpacing, kLayerDistance * layers);
  const T scale = T(kConductance / kCentimetrePerAngstrom) / thickness;
  LayeredResponse<T> response;
  response.interband =
      -TimesI(z * SumLadder(bands.between, z, in.ahead()).diagonal) * (scale * NumberOr(in, kInterband, 1));
  if (intraband) {
    response.intraband = TimesI(Complex<T>{bands.within, T(0)} / z) * (scale * NumberOr(in, kIntraband, 1));
  }
  return response;
}

// Inputs without effect at the present settings.
std::uint64_t IdleOfLayers(const TypeInputs<double>& in, bool intraband) {
  std::uint64_t idle = 0;
  for (const std::size_t input : {kInterband, kIntraband, kSpacing}) {
    if (in.value(input) == 0) idle |= InputBits({input});
  }
  if (!intraband) idle |= InputBits({kIntraband});
  if (!(in.value(kTemperature) > 0)) idle |= InputBits({kTemperature});
  if (in.setting(kMesh) < 1) idle |= kOfStates | InputBits({kBroadening, kInterband, kIntraband, kSpacing});
  return idle;
}

template <class Type>
void TellOfUnsolved(TypeRun& run) {
  BandTable<double>& bands = TablesOf<Type>(run).values.bands;
  Platform* const platform = run.context().platform;
  if (bands.unsolved && platform) platform->ShowMessage("Error", "Too many iterations in tqli\n");
  bands.unsolved = false;
}

template <class T>
void FillMaterial(const Complex<T>& eps, double x, const T& electrons, Slots<T>& q) {
  q[kE1] = eps.re;
  q[kE2] = eps.im;
  q[kS1] = eps.im * T(x / 60);
  q[kS2] = (T(1) - eps.re) * T(x / 60);
  q[kN1] = electrons;
}

constexpr std::uint64_t kNoEpsInf = ~InputBits({kEpsInf});
constexpr SlotUse kMaterialFills[] = {{kE1, "Re eps"},
                                      {kE2, "Im eps", kNoEpsInf},
                                      {kS1, "Re sigma, Ohm^-1 cm^-1", kNoEpsInf},
                                      {kS2, "Im sigma"},
                                      {kN1, "electrons in the cell, less those of half filled bands", kOfStates}};

// Two layers. With options row 9 can switch the intraband part off; with phonons the rows after it add oscillators.
template <bool kOptions, bool kPhonons>
struct DoubleLayer {
  static constexpr Hooks kHooks = hook::kKeep | hook::kIdle | hook::kPrepare;
  static constexpr int kLayerCount = 2;
  static constexpr std::span<const RowCell> kHead = [] {
    if constexpr (kOptions) return std::span<const RowCell>(kCellsWithOption);
    return std::span<const RowCell>(kCommonCells);
  }();
  static constexpr std::span<const RowCell> kGroup =
      kPhonons ? std::span<const RowCell>(kPhononCells) : std::span<const RowCell>();
  static constexpr int kGroupStart = 9, kGroupRows = 1;
  static constexpr std::span<const SlotUse> kFills = kMaterialFills;

  template <class T>
  using Table = LayeredTable<T>;

  template <class T>
  static bool HasIntraband(const TypeInputs<T>& in) {
    return !kOptions || in.setting(kNoIntraband) != 1;
  }
  static std::uint64_t Idle(const TypeInputs<double>& in) { return IdleOfLayers(in, HasIntraband(in)); }
  template <class T>
  static void Prepare(const TypeInputs<T>& in, Table<T>& table) {
    PrepareLayers(in, kLayerCount, table);
  }
  static void Keep(TypeRun& run, const TypeInputs<double>&) { TellOfUnsolved<DoubleLayer>(run); }

  template <class T>
  static void Fill(const TypeInputs<T>& in, const Table<T>& table, Slots<T>& q) {
    if (in.x == 0) return;
    const LayeredResponse<T> response = ResponseAt(in, kLayerCount, HasIntraband(in), table.bands);
    Complex<T> eps = TimesI(response.interband + response.intraband) * T(60 / in.x) + in[kEpsInf];
    if constexpr (kPhonons) eps += PhononSum(in);
    FillMaterial(eps, in.x, table.bands.electrons, q);
  }

 private:
  enum PhononCell { kFrequency, kStrength, kWidth };
  // Two rows for each phonon: the phonon and the transition that screens it. A single last row is an unscreened phonon.
  template <class T>
  static Complex<T> PhononSum(const TypeInputs<T>& in) {
    Complex<T> sum;
    for (std::size_t k = 0; k < in.groups(); k += 2) {
      const auto of = [&](std::size_t group, PhononCell cell) -> const T& { return in[in.Of(group, cell)]; };
      const T& plasma = of(k, kStrength);
      const Complex<T> phonon = Oscillator(plasma * plasma, of(k, kFrequency), of(k, kWidth), in.x);
      if (k + 1 == in.groups()) return sum + phonon;
      const T& W = of(k + 1, kFrequency);
      sum += ScreenedPhonon(phonon, Oscillator(W * W, W, of(k + 1, kWidth), in.x), of(k + 1, kStrength));
    }
    return sum;
  }
};

struct TripleLayer {
  static constexpr Hooks kHooks = hook::kKeep | hook::kIdle | hook::kPrepare;
  static constexpr int kLayerCount = 3;
  static constexpr std::span<const RowCell> kHead = kCellsOfThree;
  static constexpr std::uint64_t kOfOuter = kOfStates | InputBits({kOuterA, kOuterB});
  static constexpr std::uint64_t kOfInterband = kOfOuter | InputBits({kBroadening, kInterband, kSpacing}),
                                 kOfIntraband = kOfOuter | InputBits({kBroadening, kIntraband, kSpacing});
  static constexpr SlotUse kFills[] = {{kRefl, "Re sigma, interband part, Ohm^-1 cm^-1", kOfInterband},
                                       {kTrans, "Im sigma, interband part", kOfInterband},
                                       {kRp, "Re sigma, intraband part", kOfIntraband},
                                       {kRs, "Im sigma, intraband part", kOfIntraband},
                                       {kE1, "Re eps"},
                                       {kE2, "Im eps", kNoEpsInf},
                                       {kS1, "Re sigma, Ohm^-1 cm^-1", kNoEpsInf},
                                       {kS2, "Im sigma"},
                                       {kN1, "electrons in the cell, less those of half filled bands", kOfOuter},
                                       {kLoss, "loss function Im(-1/eps)"}};

  template <class T>
  using Table = LayeredTable<T>;
  static std::uint64_t Idle(const TypeInputs<double>& in) {
    return IdleOfLayers(in, true) | (in.setting(kMesh) < 1 ? InputBits({kOuterA, kOuterB}) : 0);
  }
  template <class T>
  static void Prepare(const TypeInputs<T>& in, Table<T>& table) {
    PrepareLayers(in, kLayerCount, table);
  }
  static void Keep(TypeRun& run, const TypeInputs<double>&) { TellOfUnsolved<TripleLayer>(run); }

  template <class T>
  static void Fill(const TypeInputs<T>& in, const Table<T>& table, Slots<T>& q) {
    if (in.x == 0) return;
    const LayeredResponse<T> response = ResponseAt(in, kLayerCount, true, table.bands);
    const Complex<T> eps = TimesI(response.interband + response.intraband) * T(60 / in.x) + in[kEpsInf];
    FillMaterial(eps, in.x, table.bands.electrons, q);
    q[kRefl] = response.interband.re;
    q[kTrans] = response.interband.im;
    q[kRp] = response.intraband.re;
    q[kRs] = response.intraband.im;
    q[kLoss] = Quotient(Complex<T>{T(-1), T(0)}, eps).im;
  }
};

// ---- differences

template <int kCode>
struct WeightedDifference {
  static constexpr Hooks kHooks = hook::kAsked;
  enum Cell { kFirst, kSecond, kWeightOfRe, kWeightOfIm, kFactor, kOffset };
  static constexpr RowCell kHead[] = {EvaluatedLike(0, Wo, "first model", kCode),
                                      EvaluatedLike(0, Wp, "second model", kCode),
                                      DatasetSlot(1, Wo, "weight a(x) of the real part"),
                                      DatasetSlot(1, Wp, "weight b(x) of the imaginary part"),
                                      Own(2, Wo, "factor", 1),
                                      Own(2, Wp, "offset", 0.1)};
  static constexpr Quantity kAsked[] = {kE1, kE2};
  static constexpr std::uint64_t kOfModels = InputBits({kFirst, kSecond});
  static constexpr SlotUse kFills[] = {{kRefl, "factor (a Re D + b Im D) + offset, D = eps1 - eps2"},
                                       {kE1, "Re D", kOfModels, 0, 1},
                                       {kE2, "Im D", kOfModels, 0, 2}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    q[kE1] = in.quantity(kFirst, kE1) - in.quantity(kSecond, kE1);
    q[kE2] = in.quantity(kFirst, kE2) - in.quantity(kSecond, kE2);
    q[kRefl] = in[kFactor] * (T(in.data(kWeightOfRe)) * q[kE1] + T(in.data(kWeightOfIm)) * q[kE2]) + in[kOffset];
  }
};

constexpr const char* kLayerFormula =
    "sheet = i (e^2/hbar) (2/A) mean over k, sum over i, j of |<i|dH/dkx|j>|^2 phi_ij/(E - D + ig), D = E_j - E_i,\n"
    "phi_ij = (f_i - f_j)/D, -df/dE for i = j; weights a for i other than j, b for i = j and for equal levels;\n"
    "sigma = sheet/d, eps = eps_inf + 60 i sigma/x. With a radius the mean is over N rings of a disc about K, with\n"
    "weight 2; without a radius, over N by N wave vectors of the zone. The broadening should be larger than the\n"
    "steps of the energies between neighbouring wave vectors. In the usual notation the hoppings are -g0, g1,\n"
    "-g3 and g4.\n";
constexpr const char* kLayerSource =
    "E. McCann, M. Koshino, Rep. Prog. Phys. 76, 056503 (2013), with the Kubo formula; steps at mu and at the A A "
    "hopping: E. J. Nicol, J. P. Carbotte, Phys. Rev. B 77, 155409 (2008); the order of the rows from the fourth on is "
    "a "
    "choice of this program";

struct FormulaText {
  char text[1000] = {};
};
constexpr FormulaText LayerFormulaAnd(const char* more) {
  FormulaText joined;
  std::size_t at = 0;
  for (const char* const part : {kLayerFormula, more}) {
    for (const char* c = part; *c; ++c) joined.text[at++] = *c;
  }
  return joined;
}
constexpr FormulaText kPlainFormula = LayerFormulaAnd("Rows 7 to 9 are free.");
constexpr FormulaText kOptionFormula = LayerFormulaAnd("Rows 7 and 8 are free.");
constexpr FormulaText kPhononFormula = LayerFormulaAnd(
    "Rows from 10 on: L = Wp^2/(W^2 - x^2 - iGx) of a phonon adds L/(1 - k L Le) to eps. The next row gives its\n"
    "Le = W1^2/(W1^2 - x^2 - iG1 x) and coupling k. A single last row adds L. Rows 7 and 8 are free.");
constexpr FormulaText kTripleFormula = LayerFormulaAnd("Any number of rows; missing ones count as 0.");

constexpr TypePage LayerPage(const char* sample, const FormulaText& formula) {
  return {.sample = sample, .formula = formula.text, .source = kLayerSource, .from = 500, .to = 5000};
}
constexpr TypePage DifferencePage(const char* sample) {
  return {.sample = sample,
          .formula = "Q0 = factor (a(x) Re D + b(x) Im D) + offset, D = eps1 - eps2",
          .source =
              "first order of a reflectivity in a change of the dielectric function: B. O. Seraphin, N. Bottka, Phys. "
              "Rev. 145, 628 (1966); the order of the rows is a choice of this program",
          .from = 500,
          .to = 5000};
}

}  // namespace

constinit const ModelType kDfBilayer = FittedType<DoubleLayer<false, false>, Exactly(9)>(
    34, "DF bilayer", LayerPage("bilayer graphene: its dielectric function from its bands", kPlainFormula));
constinit const ModelType kDfBilayer2 = FittedType<DoubleLayer<true, false>, AtLeast(9)>(
    36, "DF bilayer - 2",
    LayerPage("bilayer graphene: its dielectric function from its bands, with or without free carriers",
              kOptionFormula));
constinit const ModelType kDfBilayerPhonon = FittedType<DoubleLayer<true, true>, AtLeast(9)>(
    38, "DF bilayer + phonon",
    LayerPage("bilayer graphene: its dielectric function from its bands, with phonons", kPhononFormula));
constinit const ModelType kDfTrilayer = FittedType<TripleLayer, AtLeast(0)>(
    66, "DF trilayer",
    LayerPage("trilayer graphene in the stacking A B A: its dielectric function from its bands", kTripleFormula));
constinit const ModelType kDfBilayerDifference = FittedType<WeightedDifference<34>, AtLeast(3)>(
    35, "DF bilayer",
    DifferencePage("the change of bilayer graphene between two states, weighted with measured spectra"));
constinit const ModelType kDfBilayer2Difference = FittedType<WeightedDifference<36>, AtLeast(3)>(
    37, "DF bilayer - 2",
    DifferencePage("the change of bilayer graphene of type 36 between two states, weighted with measured spectra"));

}  // namespace kalvex
