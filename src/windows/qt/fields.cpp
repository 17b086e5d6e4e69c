#include "windows/qt/fields.h"

#include <QApplication>
#include <QFontInfo>
#include <utility>

#include "windows/qt/show.h"

namespace kalvex {
namespace {

constexpr int kLetterHeight = 11;  // pixels of the em

constexpr std::pair<Qt::Key, Key> kKeys[] = {
    {Qt::Key_Return, Key::kEnter},  {Qt::Key_Enter, Key::kEnter},
    {Qt::Key_Up, Key::kUp},         {Qt::Key_Down, Key::kDown},
    {Qt::Key_Left, Key::kLeft},     {Qt::Key_Right, Key::kRight},
    {Qt::Key_PageUp, Key::kPageUp}, {Qt::Key_PageDown, Key::kPageDown},
    {Qt::Key_Tab, Key::kTab},       {Qt::Key_Escape, Key::kEscape},
    {Qt::Key_F2, Key::kF2},         {Qt::Key_F3, Key::kF3},
    {Qt::Key_F4, Key::kF4},         {Qt::Key_F5, Key::kF5},
    {Qt::Key_F6, Key::kF6},         {Qt::Key_F7, Key::kF7},
    {Qt::Key_F8, Key::kF8},         {Qt::Key_F9, Key::kF9},
    {Qt::Key_F10, Key::kF10},       {Qt::Key_Space, Key::kSpace},
    {Qt::Key_Insert, Key::kInsert}, {Qt::Key_Delete, Key::kDelete},
};

bool IsChord(const QKeyEvent& event) {
  return event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
}

}  // namespace

QColor ScreenColour(Colour colour) { return QColor(colour.red, colour.green, colour.blue); }

QFont SmallFont() {
  QFont font = QApplication::font();
  font.setPixelSize(std::min(QFontInfo(font).pixelSize(), kLetterHeight));
  return font;
}

QFont FontOf(const ParamCell& cell) {
  QFont font = SmallFont();
  font.setBold(cell.coupled);
  font.setItalic(cell.coupled);
  return font;
}

QPushButton* SmallButton(const char* text, const char* objectName) {
  constexpr int kPadding = 6, kHeightPadding = 8;
  auto* const button = new QPushButton(text);
  button->setObjectName(objectName);
  button->setFocusPolicy(Qt::NoFocus);
  const QFontMetrics metrics(SmallFont());
  button->setMinimumWidth(metrics.horizontalAdvance(text) + kPadding);
  button->setFixedHeight(metrics.height() + kHeightPadding);
  button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  return button;
}

QLabel* ValueField(const char* objectName) {
  auto* const field = new QLabel;
  field->setObjectName(objectName);
  field->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  field->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  field->setAutoFillBackground(true);
  field->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  field->setMinimumHeight(QFontMetrics(SmallFont()).height() + 4);
  return field;
}

void ShowCell(QLabel& field, const ParamCell& cell) {
  ShowText(field, cell.text);
  QPalette palette = field.palette();
  palette.setColor(QPalette::WindowText, ScreenColour(cell.colour));
  palette.setColor(QPalette::Window, ScreenColour(cell.marked ? kMarked : kWhite));
  if (field.palette() != palette) field.setPalette(palette);
  if (const QFont wanted = FontOf(cell); field.font() != wanted) field.setFont(wanted);
}

std::optional<Key> KeyOf(const QKeyEvent& event) {
  if (IsChord(event) || (event.modifiers() & Qt::ShiftModifier)) return std::nullopt;
  for (const auto& [onScreen, key] : kKeys) {
    if (event.key() == onScreen) return key;
  }
  return std::nullopt;
}

std::optional<char> DigitOf(const QKeyEvent& event) {
  // Uses the character, not the key: on some keyboards digits need Shift.
  if (IsChord(event) || event.text().size() != 1) return std::nullopt;
  const char letter = event.text().front().toLatin1();
  return letter >= '0' && letter <= '9' ? std::optional(letter) : std::nullopt;
}

}  // namespace kalvex
