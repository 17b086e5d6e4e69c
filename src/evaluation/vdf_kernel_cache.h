// A cache of the Kramers-Kronig kernels of a mesh for a list of frequencies. It is valid while mesh and frequencies
// stay the same: between the iterations of a fit only the values change.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "records/var_diel_func.h"

namespace kalvex {

inline constexpr std::size_t kKernelBlock = 64;

class VdfKernelCache {
 public:
  // Drops the kernels of a closed model and frees their memory.
  void Forget(std::uint32_t model);
  // Prepares for blocks of these frequencies and this mesh, of the model with that number.
  void Prepare(std::uint32_t model, const VarDielFunc& vdf, std::span<const double> x);
  // The kernels of the block of frequencies that starts at `first`, a multiple of kKernelBlock. The kernel of mesh
  // point j at frequency first + i is at [j*kKernelBlock + i]. A block that is not cached is computed in `spare`.
  // Several threads may call this at the same time for different blocks, each with its own spare.
  const double* Block(const VarDielFunc& vdf, std::size_t first, std::vector<double>& spare);

  std::size_t Bytes() const;                       // size of the cached kernels
  std::size_t mostBytes = std::size_t{256} << 20;  // limit of the cache; further blocks are computed at each call

 private:
  struct Entry {
    std::uint32_t model = 0;
    std::vector<double> mesh, x;
    std::vector<double> kernels;     // of all blocks, empty if they are not cached
    std::vector<char> blockIsReady;  // one per cached block
  };
  std::vector<Entry> entries_;
  std::size_t current_ = 0;
};

}  // namespace kalvex
