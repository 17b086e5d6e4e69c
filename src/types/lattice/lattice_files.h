// Writing and reading of the text files of a lattice and of its wave-vector mesh. The error messages keep their known
// texts: they call the lattice file "Lattice.dat", and some of their line numbers do not count from the top of the
// file.
#pragma once

#include <string>
#include <string_view>

#include "types/lattice/lattice.h"

namespace kalvex {

inline constexpr const char* kLatticeFile = "Bilayer.lat";
inline constexpr const char* kReciprocalFile = "b.dat";
inline constexpr const char* kHopsFile = "Hops.dat";
inline constexpr const char* kMeshFile = "Q.cfg";

// Hoppings and site energies of bilayer graphene, eV.
struct BilayerEnergies {
  double inPlane = 0;                      // A1 B1 and A2 B2
  double dimer = 0;                        // A1 A2
  double trigonal = 0;                     // B1 B2
  double skew = 0;                         // A1 B2 and B1 A2
  double siteA = 0, layers = 0, site = 0;  // extra energy of the A atoms, difference of the layers, common energy

  bool operator==(const BilayerEnergies&) const = default;
};

// Text of "Bilayer.lat": lengths, angles, one line for each atom, one line for each kind of hop.
std::string LatticeText(const BilayerEnergies& energies);
// Reads vectors, atoms and kinds of hops from such a text, which users may edit: blank lines and text after the last
// field of a line are skipped. On a failure returns false with the message in fault; the lattice is then incomplete.
bool ReadLattice(std::string_view text, Lattice& lattice, std::string& fault);

// Texts of "b.dat" and "Hops.dat".
std::string ReciprocalText(const Lattice& lattice);
std::string HopsText(const Lattice& lattice, std::span<const Hop> hops);

// Text of "Q.cfg" of a square mesh.
std::string MeshText(const WaveVectorMesh& mesh);
// Reads a square or radial mesh. On a failure returns false with the message in fault.
bool ReadMesh(std::string_view text, WaveVectorMesh& mesh, std::string& fault);

}  // namespace kalvex
