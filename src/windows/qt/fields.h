// What the windows of parameters share: their font, buttons, fields that show a value, and how they take keys.
#pragma once

#include <QColor>
#include <QFont>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <optional>

#include "windows/cell_editor.h"
#include "windows/keys.h"

namespace kalvex {

QColor ScreenColour(Colour colour);

// Widths and heights of these windows are told in pixels, so their letters do not grow beyond what fits.
QFont SmallFont();
// Parameters of a coupling group have a font of their own.
QFont FontOf(const ParamCell& cell);

// A button as narrow as its text. It leaves the keys to the window.
QPushButton* SmallButton(const char* text, const char* objectName);

// A field that shows a parameter. Text and ground come together, so that any theme leaves them readable.
QLabel* ValueField(const char* objectName);
void ShowCell(QLabel& field, const ParamCell& cell);

// The key, if it is one of those that windows take; the digit, if it is one. With Ctrl or Alt they mean something else.
std::optional<Key> KeyOf(const QKeyEvent& event);
std::optional<char> DigitOf(const QKeyEvent& event);

}  // namespace kalvex
