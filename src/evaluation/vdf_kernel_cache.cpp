#include "evaluation/vdf_kernel_cache.h"

#include <algorithm>

#include "evaluation/vdf_eval.h"

namespace kalvex {

std::size_t VdfKernelCache::Bytes() const {
  std::size_t bytes = 0;
  for (const Entry& entry : entries_) bytes += entry.kernels.size() * sizeof(double);
  return bytes;
}

void VdfKernelCache::Forget(std::uint32_t model) {
  std::erase_if(entries_, [&](const Entry& entry) { return entry.model == model; });
  current_ = 0;
}

void VdfKernelCache::Prepare(std::uint32_t model, const VarDielFunc& vdf, std::span<const double> x) {
  current_ = 0;
  while (current_ < entries_.size() && entries_[current_].model != model) ++current_;
  if (current_ == entries_.size()) entries_.emplace_back().model = model;
  Entry& entry = entries_[current_];
  const bool sameMesh = std::equal(entry.mesh.begin(), entry.mesh.end(), vdf.mesh.begin(), vdf.mesh.end(),
                                   [](double known, const VdfMeshPoint& point) { return known == point.x; });
  if (sameMesh && std::equal(entry.x.begin(), entry.x.end(), x.begin(), x.end())) return;

  entry.x.assign(x.begin(), x.end());
  entry.mesh.clear();
  for (const VdfMeshPoint& point : vdf.mesh) entry.mesh.push_back(point.x);
  const std::size_t blockSize = entry.mesh.size() * kKernelBlock;
  const std::size_t blocks = (x.size() + kKernelBlock - 1) / kKernelBlock;
  const std::size_t ofOthers = Bytes() - entry.kernels.size() * sizeof(double);
  const bool keep = ofOthers + blocks * blockSize * sizeof(double) <= mostBytes;
  entry.kernels.assign(keep ? blocks * blockSize : 0, 0.0);
  entry.kernels.shrink_to_fit();
  entry.blockIsReady.assign(keep ? blocks : 0, 0);
}

const double* VdfKernelCache::Block(const VarDielFunc& vdf, std::size_t first, std::vector<double>& spare) {
  Entry& entry = entries_[current_];
  const std::size_t n = entry.mesh.size();
  const std::size_t block = first / kKernelBlock;
  const bool kept = !entry.blockIsReady.empty();
  if (kept && entry.blockIsReady[block]) return entry.kernels.data() + block * n * kKernelBlock;
  if (!kept) spare.resize(n * kKernelBlock);
  double* const kernels = kept ? entry.kernels.data() + block * n * kKernelBlock : spare.data();
  std::vector<double> one(n);
  const std::size_t count = std::min(kKernelBlock, entry.x.size() - first);
  for (std::size_t i = 0; i < count; ++i) {
    VdfKernel(vdf, entry.x[first + i], one.data());
    for (std::size_t j = 0; j < n; ++j) kernels[j * kKernelBlock + i] = one[j];
  }
  if (kept) entry.blockIsReady[block] = 1;
  return kernels;
}

}  // namespace kalvex
