#include "types/lattice/lattice_files.h"

#include <cmath>
#include <optional>

#include "core/text.h"

namespace kalvex {
namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";

// Reads the words of a text line by line. Blank lines are skipped.
class LineReader {
 public:
  explicit LineReader(std::string_view text) : rest_(text) {}

  // Goes to the next line, which is empty at the end of the text.
  void NextLine() {
    line_ = {};
    while (!rest_.empty() && line_.find_first_not_of(kBlanks) == std::string_view::npos) {
      const std::size_t end = rest_.find('\n');
      line_ = rest_.substr(0, end);
      rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    }
  }

  std::optional<double> Real() {
    double value = 0;
    if (!Take(ParseReal(line_.data(), line_.data() + line_.size(), value)) || !std::isfinite(value))
      return std::nullopt;
    return value;
  }
  std::optional<int> Integer() {
    std::int32_t value = 0;
    if (!Take(ParseInteger(line_.data(), line_.data() + line_.size(), value))) return std::nullopt;
    return value;
  }
  std::string_view Word() {
    line_.remove_prefix(std::min(line_.find_first_not_of(kBlanks), line_.size()));
    const std::string_view word = line_.substr(0, line_.find_first_of(kBlanks));
    line_.remove_prefix(word.size());
    return word;
  }
  // Reads N numbers; returns false if one is missing.
  template <std::size_t N>
  bool Reals(std::array<double, N>& values) {
    for (double& value : values) {
      const auto read = Real();
      if (!read) return false;
      value = *read;
    }
    return true;
  }

 private:
  bool Take(const char* after) {
    const auto length = static_cast<std::size_t>(after - line_.data());
    line_.remove_prefix(length);
    return length > 0;
  }

  std::string_view rest_, line_;
};

std::string InLatticeLine(const char* which, const char* what) {
  return std::string("Error in the ") + which + " line of Lattice.dat (" + what + ")\n";
}
std::string InNumberedLine(int line, const std::string& what) {
  return "Error in the line #" + std::to_string(line) + " of Lattice.dat" + what;
}

bool ReadCell(LineReader& in, Lattice& lattice, std::string& fault) {
  Vector3 lengths{}, angles{};
  in.NextLine();
  fault = InLatticeLine("first", "must be 3 vector lengths");
  if (!in.Reals(lengths)) return false;
  fault = InLatticeLine("first", "all vector lenghts must be positive");
  for (const double length : lengths) {
    if (!(length > 0)) return false;
  }
  in.NextLine();
  fault = InLatticeLine("second", "must be 3 angles");
  if (!in.Reals(angles)) return false;
  fault = InLatticeLine("first", "all angles must be between 0 and 180 degrees");
  for (const double angle : angles) {
    if (!(angle > 0 && angle < 180)) return false;
  }
  fault = InLatticeLine("first", "the angles are incompatible");
  return SetLatticeVectors(lengths, angles, lattice);
}

bool ReadAtoms(LineReader& in, Lattice& lattice, std::string& fault) {
  in.NextLine();
  const auto count = in.Integer();
  fault = InLatticeLine("third", "expect the number atoms");
  if (!count) return false;
  fault = InLatticeLine("third", ("the number of atoms should between 1 and " + std::to_string(kMostAtoms)).c_str());
  if (*count < 1 || *count > kMostAtoms) return false;
  for (int i = 0; i < *count; ++i) {
    Atom atom;
    in.NextLine();
    atom.name = std::string(in.Word());
    const bool named = !atom.name.empty() && atom.name.size() <= kMostAtomName;
    const bool placed = in.Reals(atom.place);
    const auto energy = in.Real();
    fault = InNumberedLine(i + 3, " (expect: <AtomName> <RelCoord1> <RelCoord2> <RelCoord3> <Energy>)\n");
    if (!named || !placed || !energy) return false;
    atom.energy = *energy;
    fault = InNumberedLine(i + 3, " (relative atom coordinates must be between 0 and 1)\n");
    for (const double coordinate : atom.place) {
      if (!(coordinate >= 0 && coordinate < 1)) return false;
    }
    lattice.atoms.push_back(std::move(atom));
  }
  return true;
}

std::optional<std::size_t> AtomOfName(const Lattice& lattice, std::string_view name) {
  for (std::size_t i = 0; i < lattice.atoms.size(); ++i) {
    if (lattice.atoms[i].name == name) return i;
  }
  return std::nullopt;
}

bool ReadHopTypes(LineReader& in, Lattice& lattice, std::string& fault) {
  in.NextLine();
  const auto count = in.Integer();
  fault = InLatticeLine("first", "expect the number of hopping types");
  if (!count) return false;
  fault = InLatticeLine("first",
                        ("the number of hopping types should between 1 and " + std::to_string(kMostHopTypes)).c_str());
  if (*count < 1 || *count > kMostHopTypes) return false;
  for (int i = 0; i < *count; ++i) {
    in.NextLine();
    const std::string_view first = in.Word(), second = in.Word();
    Vector3 numbers{};
    fault = InNumberedLine(i + 2, " (expect: <Name1> <Name2> <R> <Rtol> <HoppingSize>)\n");
    if (second.empty() || !in.Reals(numbers)) return false;
    const auto firstAtom = AtomOfName(lattice, first), secondAtom = AtomOfName(lattice, second);
    fault = InNumberedLine(i + 2, " (atom name is not recognized)");
    if (!firstAtom || !secondAtom) return false;
    const HopType type{*firstAtom, *secondAtom, numbers[0], numbers[1], numbers[2]};
    fault = InNumberedLine(i + 2, "\n");
    if (!(type.R > 0 && type.tolerance > 0 && type.tolerance < type.R)) return false;
    lattice.types.push_back(type);
  }
  return true;
}

std::string InMeshLine(int line, const char* what) {
  return "Error in the line #" + std::to_string(line) + ", of the file " + kMeshFile + " (" + what + ".\n";
}

bool ReadGrid(LineReader& in, WaveVectorMesh& mesh) {
  for (long& cells : mesh.grid) {
    const auto read = in.Integer();
    if (!read) return false;
    cells = *read;
  }
  return true;
}

bool HasCells(const WaveVectorMesh& mesh, std::string& fault) {
  fault = InMeshLine(2, "should be Grid > 0)");
  return mesh.grid[0] > 0 && mesh.grid[1] > 0 && mesh.grid[2] > 0;
}

// True for a valid range. Equal ends with a single cell mean the whole axis.
bool IsRange(double from, double to, long cells) {
  return from >= 0 && to <= 1 && (from < to || (cells == 1 && from == to));
}

bool ReadSquareMesh(LineReader& in, WaveVectorMesh& mesh, std::string& fault) {
  fault = InMeshLine(2, "expect <QminX> <QminY> <QminZ> <QmaxX> <QmaxY> <QmaxZ> <GridX> <GridY> <GridZ>");
  if (!in.Reals(mesh.from) || !in.Reals(mesh.to) || !ReadGrid(in, mesh)) return false;
  fault = InMeshLine(2, "should be 0 <= Qmin < Qmax <= 1)");
  for (std::size_t i = 0; i < 3; ++i) {
    if (!IsRange(mesh.from[i], mesh.to[i], mesh.grid[i])) return false;
  }
  return HasCells(mesh, fault);
}

bool ReadRadialMesh(LineReader& in, WaveVectorMesh& mesh, std::string& fault) {
  std::array<double, 6> numbers{};
  fault = InMeshLine(2, "expect <QcenterX> <QcenterY> <Qradmin> <Qradmax> <QminZ> <QmaxZ> <GridRad> <GridPhi> <GridZ>");
  if (!in.Reals(numbers) || !ReadGrid(in, mesh)) return false;
  mesh.centre = {numbers[0], numbers[1]};
  mesh.radiusFrom = numbers[2];
  mesh.radiusTo = numbers[3];
  mesh.from[2] = numbers[4];
  mesh.to[2] = numbers[5];
  fault = InMeshLine(2, "should be 0 <= QrelCenter <= 1)");
  for (const double part : mesh.centre) {
    if (!(part >= 0 && part <= 1)) return false;
  }
  fault = InMeshLine(2, "should be 0 <= Qradmin < Qradmax <= 0.5)");
  if (!(mesh.radiusFrom >= 0 && mesh.radiusFrom < mesh.radiusTo && mesh.radiusTo <= 0.5)) return false;
  fault = InMeshLine(2, "should be 0 <= Qmin < Qmax <= 1)");
  if (!IsRange(mesh.from[2], mesh.to[2], mesh.grid[2])) return false;
  return HasCells(mesh, fault);
}

void AppendSpaced(std::string& out, double value) {
  AppendFixed(out, value);
  out += ' ';
}

}  // namespace

std::string LatticeText(const BilayerEnergies& e) {
  std::string text = "2.4595 2.4595 335\n90.0 90.0 60.0\n4\n";
  const auto line = [&](const char* start, double value) {
    text += start;
    AppendFixed(text, value);
    text += '\n';
  };
  line("A1 0.3333333 0.3333333 0.0  ", 0.5 * e.layers + e.site + e.siteA);
  line("B1 0.6666667 0.6666667 0.0  ", 0.5 * e.layers + e.site);
  line("A2 0.3333333 0.3333333 0.01 ", e.site - 0.5 * e.layers + e.siteA);
  line("B2 0.0000000 0.0000000 0.01 ", e.site - 0.5 * e.layers);
  text += "6\n";
  line("A1 B1 1.42 0.01 ", e.inPlane);
  line("A2 B2 1.42 0.01 ", e.inPlane);
  line("A1 A2 3.35 0.01 ", e.dimer);
  line("B1 B2 3.64 0.01 ", e.trigonal);
  line("A1 B2 3.64 0.01 ", e.skew);
  line("B1 A2 3.64 0.01 ", e.skew);
  return text;
}

bool ReadLattice(std::string_view text, Lattice& lattice, std::string& fault) {
  lattice = {};
  LineReader in(text);
  if (!ReadCell(in, lattice, fault) || !ReadAtoms(in, lattice, fault) || !ReadHopTypes(in, lattice, fault))
    return false;
  fault.clear();
  return true;
}

std::string ReciprocalText(const Lattice& lattice) {
  std::string text;
  for (const Vector3& b : lattice.reciprocal) {
    for (const double part : b) {
      AppendFixed(text, part, 10);
      text += ' ';
    }
    text += '\n';
  }
  return text;
}

std::string HopsText(const Lattice& lattice, std::span<const Hop> hops) {
  std::string text;
  for (const Hop& hop : hops) {
    text += std::to_string(hop.from) + ' ' + std::to_string(hop.to) + ' ';
    for (const int cell : hop.cell) text += std::to_string(cell) + ' ';
    AppendFixed(text, lattice.types[hop.type].size);
    text += '\n';
  }
  return text;
}

std::string MeshText(const WaveVectorMesh& mesh) {
  std::string text = "0\n";
  for (const double q : mesh.from) AppendSpaced(text, q);
  for (const double q : mesh.to) AppendSpaced(text, q);
  return text + std::to_string(mesh.grid[0]) + ' ' + std::to_string(mesh.grid[1]) + ' ' + std::to_string(mesh.grid[2]);
}

bool ReadMesh(std::string_view text, WaveVectorMesh& mesh, std::string& fault) {
  mesh = {};
  LineReader in(text);
  in.NextLine();
  const auto method = in.Integer();
  fault = InMeshLine(1, "expect <SummationMethod> (0 - square, 1, radial)");
  if (!method || (*method != 0 && *method != 1)) return false;
  in.NextLine();
  mesh.radial = *method == 1;
  if (!(mesh.radial ? ReadRadialMesh(in, mesh, fault) : ReadSquareMesh(in, mesh, fault))) return false;
  fault.clear();
  return true;
}

}  // namespace kalvex
