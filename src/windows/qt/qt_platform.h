// What the program needs of the machine, where there is a screen.
#pragma once

#include "core/platform.h"

namespace kalvex {

class Keeper;

// The functions work on the keeper, which must outlive them.
Platform QtPlatform(Keeper& keeper);

}  // namespace kalvex
