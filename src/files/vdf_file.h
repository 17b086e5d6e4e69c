// The file of a variational dielectric function (KVV).
#pragma once

#include <string>

#include "core/status.h"
#include "records/var_diel_func.h"

namespace kalvex {

Status SaveVdf(const VarDielFunc& vdf, const std::string& path);
// Reads the switches and the mesh from a file; the points keep the order of the file. After a load the imaginary part
// is not fitted until it is switched on again, whatever FitActive in the file says; its stored bounds are 0. A
// truncated file leaves zeros in its last points. Fails, and changes nothing, if the file cannot be opened or its head
// is incomplete.
Status LoadVdf(VarDielFunc& vdf, const std::string& path);

}  // namespace kalvex
