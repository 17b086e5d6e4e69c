// The pictures of the toolbar, drawn when they are asked for.
#pragma once

#include <QIcon>

namespace kalvex {

// number: 1 to 9, as the toolbar counts them.
QIcon ToolIcon(int number);

}  // namespace kalvex
