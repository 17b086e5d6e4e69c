// The keys of a model's window. It has them only while it is the active one.
#pragma once

#include "records/model.h"
#include "windows/keys.h"

namespace kalvex {

struct Desk;

// False if the window does not take the key, so that it goes to the editor, if that is open.
bool PressModelKey(Desk& desk, const Model& model, Key key);
// A digit opens the editor, unless it is open.
bool PressModelDigit(Desk& desk, const Model& model, char digit);

}  // namespace kalvex
