// The keys of a model's window while it is active.
#pragma once

#include "records/model.h"
#include "windows/keys.h"

namespace kalvex {

struct Desk;

// False if the window does not use the key. The key then goes to the editor if that is open.
bool PressModelKey(Desk& desk, const Model& model, Key key);
// A digit opens the editor if it is not open.
bool PressModelDigit(Desk& desk, const Model& model, char digit);

}  // namespace kalvex
