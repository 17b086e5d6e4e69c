#include "windows/qt/fields.h"

#include <QApplication>
#include <QFontInfo>

namespace kalvex {
namespace {

constexpr int kLetterHeight = 11;  // pixels of the em

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

QFont CoupledFont(const QFont& normal) {
  QFont font = normal;
  font.setBold(true);
  font.setItalic(true);
  return font;
}

QPushButton* SmallButton(const char* text, const char* objectName) {
  constexpr int kPadding = 12, kHeightPadding = 8;
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

void ShowValue(QLabel& field, const FieldLook& look) {
  const QString text = QString::fromStdString(look.text);
  if (field.text() != text) field.setText(text);
  QPalette palette = field.palette();
  palette.setColor(QPalette::WindowText, ScreenColour(look.colour));
  palette.setColor(QPalette::Window, ScreenColour(look.marked ? kMarked : kWhite));
  if (field.palette() != palette) field.setPalette(palette);
  if (field.font().bold() != look.coupled) field.setFont(look.coupled ? CoupledFont(SmallFont()) : SmallFont());
}

std::optional<Key> KeyOf(const QKeyEvent& event) {
  if (IsChord(event) || (event.modifiers() & Qt::ShiftModifier)) return std::nullopt;
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return Key::kEnter;
    case Qt::Key_Up:
      return Key::kUp;
    case Qt::Key_Down:
      return Key::kDown;
    case Qt::Key_Left:
      return Key::kLeft;
    case Qt::Key_Right:
      return Key::kRight;
    case Qt::Key_PageUp:
      return Key::kPageUp;
    case Qt::Key_PageDown:
      return Key::kPageDown;
    case Qt::Key_Tab:
      return Key::kTab;
    case Qt::Key_Escape:
      return Key::kEscape;
    case Qt::Key_F2:
      return Key::kF2;
    case Qt::Key_F3:
      return Key::kF3;
    case Qt::Key_F4:
      return Key::kF4;
    case Qt::Key_F5:
      return Key::kF5;
    case Qt::Key_F6:
      return Key::kF6;
    case Qt::Key_F7:
      return Key::kF7;
    case Qt::Key_F8:
      return Key::kF8;
    case Qt::Key_F9:
      return Key::kF9;
    case Qt::Key_F10:
      return Key::kF10;
    case Qt::Key_Space:
      return Key::kSpace;
    case Qt::Key_Insert:
      return Key::kInsert;
    case Qt::Key_Delete:
      return Key::kDelete;
    default:
      return std::nullopt;
  }
}

std::optional<char> DigitOf(const QKeyEvent& event) {
  // By the character, not by the key: some keyboards have the digits behind Shift.
  if (IsChord(event) || event.text().size() != 1) return std::nullopt;
  const char letter = event.text().front().toLatin1();
  return letter >= '0' && letter <= '9' ? std::optional(letter) : std::nullopt;
}

void BringToFront(QWidget& window) {
  window.show();
  window.raise();
  window.activateWindow();
}

}  // namespace kalvex
