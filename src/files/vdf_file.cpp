#include "files/vdf_file.h"

#include <algorithm>

#include "core/bytes.h"
#include "core/files.h"
#include "records/vdf_mesh.h"

// Little-endian and packed: u32 On | u32 KK | u32 FitActive | i32 n | n times f64 x, f64 e1, f64 e2

namespace kalvex {
namespace {

constexpr std::size_t kHeadSize = 16;
constexpr std::size_t kPointSize = 24;

}  // namespace

Status SaveVdf(const VarDielFunc& vdf, const std::string& path) {
  ByteWriter out;
  out.U32(vdf.On);
  out.U32(vdf.KK);
  out.U32(vdf.FitActive);
  out.I32(static_cast<std::int32_t>(vdf.mesh.size()));
  for (const VdfMeshPoint& point : vdf.mesh) {
    out.F64(point.x);
    out.F64(point.e1.value);
    out.F64(point.e2.value);
  }
  return WriteWholeFile(path, out.Content());
}

Status LoadVdf(VarDielFunc& vdf, const std::string& path) {
  std::string content;
  if (!ReadWholeFile(path, content)) return CannotOpen(path);
  if (content.size() < kHeadSize) {
    return {StatusCode::kBadFormat, "'" + path + "' is not a file of a variational dielectric function", path};
  }
  ByteReader in(content);
  vdf.On = in.U32();
  vdf.KK = in.U32();
  vdf.FitActive = in.U32();
  const std::int32_t count = in.I32();
  // The count is trusted only as far as the file reaches: points beyond its end would all lie at x = 0.
  const std::size_t held = (in.Left() + kPointSize - 1) / kPointSize;
  vdf.mesh.assign(std::min(static_cast<std::size_t>(std::max(count, 0)), held), VdfMeshPoint{});
  for (VdfMeshPoint& point : vdf.mesh) {
    point.x = in.F64();
    point.e1.value = in.F64();
    point.e2.value = in.F64();
    point.e1.adjustable = !vdf.KK && vdf.FitActive ? 1 : 0;
    point.e1.min = -kVdfE1Bound;
    point.e1.max = kVdfE1Bound;
  }
  if (vdf.KK) FixVdfEnds(vdf);
  return {};
}

}  // namespace kalvex
