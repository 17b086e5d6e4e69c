// The file of a variational dielectric function (KVV).
#pragma once

#include <string>

#include "core/status.h"
#include "records/var_diel_func.h"

namespace kalvex {

Status SaveVdf(const VarDielFunc& vdf, const std::string& path);
// Takes the switches and the mesh from a file, in the order in which they stand there. The imaginary part is not fitted
// after a load, whatever FitActive says, until it is switched on anew; its stored bounds are 0. A cut file leaves zeros
// in its last points. Fails with nothing changed if the file cannot be opened or holds no head.
Status LoadVdf(VarDielFunc& vdf, const std::string& path);

}  // namespace kalvex
