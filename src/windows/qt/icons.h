// The pictures of the toolbar, drawn when they are asked for.
#pragma once

#include <QIcon>

namespace kalvex {

// number: 1 to 9, as the toolbar counts them. ground: the colour on which it is to be seen.
QIcon ToolIcon(int number, const QColor& ground);

}  // namespace kalvex
