// Writes to a ModelParam: limits, the range of values, and coupling groups, whose members share one value.
#pragma once

#include <cstdint>

#include "records/model.h"

namespace kalvex {

enum SetValueResult : int { kStored = 0, kClampedTo1e70 = -1, kRaisedToMin = -2, kLoweredToMax = -3 };

// Limits the value to the active limits and to [-1e70, 1e70], stores it, and copies the whole record to the other
// members of the coupling group. The result reports whether the value was changed.
SetValueResult SetValue(ParamTables& tables, ModelParam& param, double value);
void SetAdjustable(ParamTables& tables, ModelParam& param, std::uint32_t adjustable);

// Copies the record to every member of its coupling group and marks their models as dirty.
void Propagate(ParamTables& tables, const ModelParam& param);

// Puts the parameter into a group. If the group already has a member, the first one (models in table order, then the
// experimental parameters) is copied to the parameter. A group above 24 is stored as 0.
void SetCoupling(ParamTables& tables, ModelParam& param, int group);

}  // namespace kalvex
