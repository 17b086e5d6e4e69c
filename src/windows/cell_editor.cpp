#include "windows/cell_editor.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/limits.h"
#include "core/text.h"

namespace kalvex {

ParamCell CellOfParam(const ModelParam& param, std::string text, bool marked) {
  return {std::move(text), ColourOfParam(param.adjustable != 0), param.coupling > 0, marked};
}

void OpenEditor(CellEditor& editor, double value) { editor = {true, TextG(value, 10), 0}; }

void OpenEditorWith(CellEditor& editor, char digit) { editor = {true, std::string(1, digit), 1}; }

void TypeIntoEditor(CellEditor& editor, std::string_view text, std::size_t caret) {
  if (!editor.open) return;
  editor.text = text;
  editor.caret = std::min(caret, text.size());
}

bool MoveCaret(CellEditor& editor, bool right) {
  if (editor.caret == (right ? editor.text.size() : 0)) return false;
  right ? ++editor.caret : --editor.caret;
  return true;
}

std::optional<double> TakeNumber(CellEditor& editor) {
  // A person may also type the text that stands for a missing value; it is not a number.
  double number = kMissing;
  ParseReal(editor.text.data(), editor.text.data() + editor.text.size(), number);
  editor = {};
  return number == kMissing || std::isnan(number) ? std::nullopt : std::optional(number);
}

}  // namespace kalvex
