// The Kramers-Kronig kernels of a mesh for a whole list of frequencies, kept as long as mesh and frequencies stay the
// same: between the iterations of a fit only the values change.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "records/var_diel_func.h"

namespace kalvex {

inline constexpr std::size_t kKernelBlock = 64;

class VdfKernelCache {
 public:
  // A model is closed: its kernels go, and what they took is free for others.
  void Forget(std::uint32_t model);
  // Gets ready for blocks of these frequencies and this mesh, of the model of that number.
  void Prepare(std::uint32_t model, const VarDielFunc& vdf, std::span<const double> x);
  // The kernels of the block of frequencies that starts at `first`, a multiple of kKernelBlock: that of mesh point j at
  // frequency first + i stands at [j*kKernelBlock + i]. What is not kept is made in `spare`. Several threads may ask at
  // the same time, for different blocks, each with a spare of its own.
  const double* Block(const VarDielFunc& vdf, std::size_t first, std::vector<double>& spare);

  std::size_t Bytes() const;                       // of the kernels that are kept
  std::size_t mostBytes = std::size_t{256} << 20;  // what is kept; beyond it blocks are computed anew each time

 private:
  struct Entry {
    std::uint32_t model = 0;
    std::vector<double> mesh, x;
    std::vector<double> kernels;     // of all blocks, empty where they are not kept
    std::vector<char> blockIsReady;  // of each block that is kept
  };
  std::vector<Entry> entries_;
  std::size_t current_ = 0;
};

}  // namespace kalvex
