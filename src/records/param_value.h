// Writing to a ModelParam: limits, the clamp, and the coupling groups, whose members are one parameter in several
// places.
#pragma once

#include <cstdint>

#include "records/model.h"

namespace kalvex {

enum SetValueResult : int { kStored = 0, kClampedTo1e70 = -1, kRaisedToMin = -2, kLoweredToMax = -3 };

// Holds the value inside the limits in force, then inside [-1e70, 1e70], stores it in every case and copies the whole
// record over the other members of its coupling group.
SetValueResult SetValue(ParamTables& tables, ModelParam& param, double value);
void SetAdjustable(ParamTables& tables, ModelParam& param, std::uint32_t adjustable);

// Copies the record over every member of its coupling group and marks what was written to as dirty.
void Propagate(ParamTables& tables, const ModelParam& param);

// Puts the parameter into a group. If the group has another member, the first one found (models in table order, then
// the experimental parameters) is copied over the joining record. A group above 24 is stored as 0.
void SetCoupling(ParamTables& tables, ModelParam& param, int group);

}  // namespace kalvex
