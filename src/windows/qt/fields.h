// Helpers of the windows of parameters: their font, buttons, value fields and keys.
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

// The sizes of these windows are fixed in pixels, so the letters have a fixed size too.
QFont SmallFont();
// Coupled parameters have a different font.
QFont FontOf(const ParamCell& cell);

// A button as narrow as its text. It never takes the focus, so keys go to the window.
QPushButton* SmallButton(const char* text, const char* objectName);

// A field for a parameter's value. Text and background colours are set together, so that every theme is readable.
QLabel* ValueField(const char* objectName);
void ShowCell(QLabel& field, const ParamCell& cell);

// The key, if windows use it; the digit, if the key is one. Nothing together with Ctrl or Alt.
std::optional<Key> KeyOf(const QKeyEvent& event);
std::optional<char> DigitOf(const QKeyEvent& event);

}  // namespace kalvex
