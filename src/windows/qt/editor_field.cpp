#include "windows/qt/editor_field.h"

#include <QKeyEvent>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>

#include "windows/qt/fields.h"
#include "windows/qt/show.h"

namespace kalvex {

EditorField::EditorField(QWidget* window, std::function<CellEditor*()> record,
                         std::function<bool(const QKeyEvent&)> press)
    : QLineEdit(window), record_(std::move(record)), press_(std::move(press)) {
  setObjectName("editor");
  setFont(SmallFont());
  setTextMargins(0, 0, 0, 0);
  // The record counts the caret in bytes, so only ASCII can be typed.
  setValidator(new QRegularExpressionValidator(QRegularExpression("[ -~]*"), this));
  QPalette own = palette();
  own.setColor(QPalette::Base, ScreenColour(kMarked));
  own.setColor(QPalette::Text, ScreenColour(kBlack));
  setPalette(own);
  hide();
  QObject::connect(this, &QLineEdit::textEdited, this, [this] { TakeTyped(); });
  QObject::connect(this, &QLineEdit::cursorPositionChanged, this, [this] { TakeTyped(); });
}

void EditorField::TakeTyped() {
  CellEditor* const editor = record_();
  if (editor) TypeIntoEditor(*editor, text().toStdString(), static_cast<std::size_t>(cursorPosition()));
}

void EditorField::Refresh(const CellEditor& editor, const QRect& place) {
  if (!editor.open) {
    if (isHidden()) return;
    const bool hadKeys = hasFocus();
    hide();
    if (hadKeys) window()->setFocus();
    return;
  }
  const QSignalBlocker filling(this);
  ShowText(*this, editor.text);
  if (cursorPosition() != static_cast<int>(editor.caret)) setCursorPosition(static_cast<int>(editor.caret));
  // Ten digits are wider than most cells. The field covers its neighbours, but stays inside the window.
  constexpr int kRoom = 12;
  QRect grown = place;
  grown.setWidth(std::max(place.width(), fontMetrics().horizontalAdvance(text()) + kRoom));
  if (grown.right() > window()->width()) grown.moveRight(std::max(window()->width() - 1, place.right()));
  if (geometry() != grown) setGeometry(grown);
  if (!isHidden()) return;
  show();
  raise();
  setFocus();
}

void EditorField::keyPressEvent(QKeyEvent* event) {
  if (!press_(*event)) QLineEdit::keyPressEvent(event);
}

}  // namespace kalvex
