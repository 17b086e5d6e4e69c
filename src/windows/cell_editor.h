// A parameter that is shown in a cell and can be typed there, in the model window and in the window of the experimental
// parameters.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "records/model_param.h"
#include "windows/colours.h"

namespace kalvex {

// The field over a cell in which a person types the parameter's value.
struct CellEditor {
  bool open = false;
  std::string text;
  std::size_t caret = 0;
};

// The content of a cell.
struct ParamCell {
  std::string text;
  Colour colour = kBlack;
  bool coupled = false;  // shown in a different font
  bool marked = false;   // shown on the marked background; an editor on it has black text
  friend bool operator==(const ParamCell&, const ParamCell&) = default;
};
ParamCell CellOfParam(const ModelParam& param, std::string text, bool marked);

// Opens the editor with a value of ten digits and the caret in front of it.
void OpenEditor(CellEditor& editor, double value);
// Opens the editor with one digit instead of the value, and the caret after it.
void OpenEditorWith(CellEditor& editor, char digit);
// Stores the text after a person has typed.
void TypeIntoEditor(CellEditor& editor, std::string_view text, std::size_t caret);
// Moves the caret by one character to the right or to the left. False, and moves nothing, at that end of the text.
bool MoveCaret(CellEditor& editor, bool right);
// Closes the editor and returns its number. Nothing if the text is not a number, or is the text for a missing value.
std::optional<double> TakeNumber(CellEditor& editor);

}  // namespace kalvex
