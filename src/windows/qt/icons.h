// The icons of the toolbar, drawn by the program.
#pragma once

#include <QIcon>

namespace kalvex {

// number: 1 to 9, as in kToolButtons. ground: the background colour of the icon.
QIcon ToolIcon(int number, const QColor& ground);

}  // namespace kalvex
