// A parameter shown in its place, and typed into there, as the model window and that of the experimental parameters do.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "records/model_param.h"
#include "windows/colours.h"

namespace kalvex {

// The field in which a person types a parameter's value, in the parameter's own place.
struct CellEditor {
  bool open = false;
  std::string text;
  std::size_t caret = 0;
};

// What a field of these windows shows.
struct ParamCell {
  std::string text;
  Colour colour = kBlack;
  bool coupled = false;  // shown in a font of its own
  bool marked = false;   // on the marked background; an editor on it has black text
  friend bool operator==(const ParamCell&, const ParamCell&) = default;
};
ParamCell CellOfParam(const ModelParam& param, std::string text, bool marked);

// Opens on a value, shown with ten digits, with the caret before it.
void OpenEditor(CellEditor& editor, double value);
// Opens with one digit in the place of the value, and the caret after it.
void OpenEditorWith(CellEditor& editor, char digit);
// What the field holds after a person has typed into it.
void TypeIntoEditor(CellEditor& editor, std::string_view text, std::size_t caret);
// Moves the caret by one to the right or to the left. False, with nothing moved, at that end of the text.
bool MoveCaret(CellEditor& editor, bool right);
// Closes the editor and gives the number in it, nothing for a text that is none; the word for no number is none.
std::optional<double> TakeNumber(CellEditor& editor);

}  // namespace kalvex
