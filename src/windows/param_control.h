// The parameter control: a small window for the one parameter that is selected in a model window or in the window of
// experimental parameters. It shows and edits all fields of the parameter and sweeps its value with a slider.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/session.h"
#include "windows/colours.h"
#include "windows/slider_map.h"

namespace kalvex {

struct Desk;

// The fields with numbers, and the text that a person is typing into one of them.
enum class ParamField { kValue, kMin, kMax };
struct TypedNumber {
  ParamField field;
  std::string text;
};

struct ParamControl {
  bool open = false;
  bool wantsFront = false;  // the screen brings the window to the front and clears this
  int x = 400;
  int y = 100;
  int width = 190;
  int height = 160;
  std::optional<ParamRef> selected;  // by number and place, because rows may move or be removed
  double baseValue = 0;              // the value at the centre of the slider
  int position = slider::kCentre;    // both as set by the last movement or selection
  bool marksShown = true;
  bool dragging = false;
  std::optional<TypedNumber> typed;
};

void OpenParamControl(Desk& desk);
// Commits the typed text. The window of the selected parameter clears its mark. The selection is kept for the next
// opening.
void CloseParamControl(Desk& desk);

// Selects a parameter. The typed text is committed to the previously selected parameter, and its window clears its
// mark. True if the parameter control is open; otherwise the selection is only stored.
bool SelectParam(Desk& desk, const ParamRef& param);
// Commits the typed text and drops the selection if it belongs to that model, or to the experimental parameters.
void DeselectModel(Desk& desk, std::uint32_t number);
void DeselectExpParams(Desk& desk);
// The selected parameter; null if there is none or if it does not exist any more.
const ModelParam* SelectedParam(const Desk& desk);

// The contents of the controls. Without a parameter everything except the header is empty and disabled.
struct ParamFields {
  std::string header;
  Colour headerColour;
  std::string value, min, max;  // the text of each field, or what is being typed there
  bool useMin = false, useMax = false, adjustable = false;
  int coupling = 0;  // entry in the list of groups
  int position = slider::kCentre;
  bool marksShown = true;  // the labels for 20 % below and above the centre
  bool enabled = false;
};
ParamFields ParamFieldsOf(const Desk& desk);
// The list of coupling groups: an empty entry, then one entry more than the number of groups. The last one acts as no
// group.
std::vector<std::string> CouplingChoices();

// The thumb was dragged to a position, from 0 at the top to 80. All positions of one drag are one step of the history.
void DragSlider(Desk& desk, int position);
// The thumb was released, or the slider was changed in another way: centres the slider on the present value.
void SettleSlider(Desk& desk);

// A person types into a field. The text takes effect when the field is left or another parameter is selected, but only
// for the parameter that was shown while typing.
void TypeIntoParamField(Desk& desk, ParamField field, std::string_view text);
void LeaveParamField(Desk& desk);

// Apply the text of a field. A text equal to the one shown is not an edit; a text that is not a number counts as 0. A
// new limit beyond the other limit is set to the other limit.
void CommitValue(Desk& desk, std::string_view text);
void CommitMin(Desk& desk, std::string_view text);
void CommitMax(Desk& desk, std::string_view text);

void CheckUseMin(Desk& desk, bool on);
void CheckUseMax(Desk& desk, bool on);
void CheckAdjustable(Desk& desk, bool on);
void ChooseCoupling(Desk& desk, int entry);

}  // namespace kalvex
