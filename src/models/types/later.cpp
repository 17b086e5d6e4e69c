// Types that stand in the table already, and do nothing yet.
#include "models/types/types.h"

namespace kalvex {
namespace {

int Fail(EvalContext&, Model&, double, bool) { return -1; }
int FailAfter(EvalContext&, Model&) { return -1; }
constexpr ModelType Later(int code, const char* name) {
  ModelType type;
  type.code = code;
  type.name = name;
  type.evaluate = Fail;
  type.after = FailAfter;
  return type;
}

}  // namespace

constinit const ModelType kDfBilayer = Later(34, "DF bilayer");
constinit const ModelType kDfBilayerDifference = Later(35, "DF bilayer");
constinit const ModelType kDfBilayer2 = Later(36, "DF bilayer - 2");
constinit const ModelType kDfBilayer2Difference = Later(37, "DF bilayer - 2");
constinit const ModelType kDfBilayerPhonon = Later(38, "DF bilayer + phonon");
constinit const ModelType kDfTrilayer = Later(66, "DF trilayer");

}  // namespace kalvex
