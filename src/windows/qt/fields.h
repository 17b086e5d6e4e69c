// What the windows of parameters share: their font, buttons, fields that show a value, and how they take keys and their
// place.
#pragma once

#include <QColor>
#include <QFont>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <optional>

#include "windows/colours.h"
#include "windows/keys.h"

namespace kalvex {

QColor ScreenColour(Colour colour);

// Widths and heights of these windows are told in pixels, so their letters do not grow beyond what fits.
QFont SmallFont();
// The font of parameters that belong to a coupling group.
QFont CoupledFont(const QFont& normal);

// A button as narrow as its text. It leaves the keys to the window.
QPushButton* SmallButton(const char* text, const char* objectName);

// How a field shows a parameter. Text and ground come together, so that any theme leaves them readable.
struct FieldLook {
  std::string text;
  Colour colour;
  bool coupled = false;
  bool marked = false;
};
QLabel* ValueField(const char* objectName);
void ShowValue(QLabel& field, const FieldLook& look);

// The key, if it is one of those that windows take; the digit, if it is one. With Ctrl or Alt they mean something else.
std::optional<Key> KeyOf(const QKeyEvent& event);
std::optional<char> DigitOf(const QKeyEvent& event);

// The window goes to where its record says, which a macro may have changed.
template <class Place>
void TakePlace(QWidget& window, const Place& place) {
  // Another size is an event, in which the record takes over the place as it is then.
  const QPoint at(place.x, place.y);
  const QSize size = QSize(place.width, place.height).expandedTo(window.minimumSize());
  if (window.size() != size) window.resize(size);
  if (window.pos() != at) window.move(at);
}
// The record follows the window, which the user has moved or made larger.
template <class Place>
void NotePlace(const QWidget& window, Place& place) {
  place.x = window.x();
  place.y = window.y();
  place.width = window.width();
  place.height = window.height();
}
void BringToFront(QWidget& window);

}  // namespace kalvex
