// The text files of a lattice and of its wave-vector mesh: how they are written, and how they are read. Their faults
// are told in the words that users know, where the lattice's own file is called "Lattice.dat" and some lines are not
// counted from its top.
#pragma once

#include <string>
#include <string_view>

#include "types/lattice/lattice.h"

namespace kalvex {

inline constexpr const char* kLatticeFile = "Bilayer.lat";
inline constexpr const char* kReciprocalFile = "b.dat";
inline constexpr const char* kHopsFile = "Hops.dat";
inline constexpr const char* kMeshFile = "Q.cfg";

// What a bilayer of graphene is made of, eV.
struct BilayerEnergies {
  double inPlane = 0;                      // A1 B1 and A2 B2
  double dimer = 0;                        // A1 A2
  double trigonal = 0;                     // B1 B2
  double skew = 0;                         // A1 B2 and B1 A2
  double siteA = 0, layers = 0, site = 0;  // extra energy of the A atoms, difference of the layers, common energy

  bool operator==(const BilayerEnergies&) const = default;
};

// "Bilayer.lat": lengths, angles, the atoms, one a line, and the hops, one kind a line.
std::string LatticeText(const BilayerEnergies& energies);
// Vectors, atoms and kinds of hops of such a text, and what a user makes of it: blank lines are passed over, and what
// follows the last field of a line. False with the message if it cannot be read; the lattice is then of no use.
bool ReadLattice(std::string_view text, Lattice& lattice, std::string& fault);

// "b.dat" and "Hops.dat".
std::string ReciprocalText(const Lattice& lattice);
std::string HopsText(const Lattice& lattice, std::span<const Hop> hops);

// "Q.cfg" of a square mesh.
std::string MeshText(const WaveVectorMesh& mesh);
// Either kind of mesh.
bool ReadMesh(std::string_view text, WaveVectorMesh& mesh, std::string& fault);

}  // namespace kalvex
