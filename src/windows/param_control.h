// The parameter control: one small window for the one parameter that is selected in a model window or in the window of
// experimental parameters. It shows and edits all fields, and sweeps the value with a slider.
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

// The fields with numbers, and what a person has begun to type into one of them.
enum class ParamField { kValue, kMin, kMax };
struct TypedNumber {
  ParamField field;
  std::string text;
};

struct ParamControl {
  bool open = false;
  bool wantsFront = false;  // a screen brings the window to the front, and clears this
  int x = 400;
  int y = 100;
  int width = 190;
  int height = 160;
  std::optional<ParamRef> selected;  // by number and place: rows may move, or go, meanwhile
  double baseValue = 0;              // the value around which the slider is centred
  int position = slider::kCentre;    // these two as the last movement or selection left them
  bool marksShown = true;
  bool dragging = false;
  std::optional<TypedNumber> typed;
};

void OpenParamControl(Desk& desk);
// Takes what is typed. The window that had the selection drops its mark; the selection itself stays for the next
// opening.
void CloseParamControl(Desk& desk);

// Takes the parameter of a window; the window that had one before drops its mark, and what is typed still goes to the
// parameter before. True if the parameter control is open: otherwise the selection is only remembered.
bool SelectParam(Desk& desk, const ParamRef& param);
// Lets the selection go, with what is typed, if it is of that model or of the experimental parameters.
void DeselectModel(Desk& desk, std::uint32_t number);
void DeselectExpParams(Desk& desk);
// The selected parameter; null if there is none, or no longer.
const ModelParam* SelectedParam(const Desk& desk);

// What the controls show. Without a parameter all but the header is empty and disabled, the slider too.
struct ParamFields {
  std::string header;
  Colour headerColour;
  std::string value, min, max;  // or what is being typed there
  bool useMin = false, useMax = false, adjustable = false;
  int coupling = 0;  // entry of the list of groups
  int position = slider::kCentre;
  bool marksShown = true;  // the labels for 20 % below and above the centre
  bool enabled = false;
};
ParamFields ParamFieldsOf(const Desk& desk);
// The list of coupling groups: an empty entry, then one more than there are groups; the last acts as no group.
std::vector<std::string> CouplingChoices();

// The thumb has been dragged to a position, 0 at the top to 80. All of a drag is one step of the history.
void DragSlider(Desk& desk, int position);
// The thumb is let go, or anything else was done to the slider: it is centred on the present value.
void SettleSlider(Desk& desk);

// A person types into a field. The text takes effect when the field is left, or the parameter: never for another one.
void TypeIntoParamField(Desk& desk, ParamField field, std::string_view text);
void LeaveParamField(Desk& desk);

// What a field does with its text. A text that is as the field showed it is no edit, one that is no number is 0. A
// lower limit above the upper one becomes the upper one, and the other way round.
void CommitValue(Desk& desk, std::string_view text);
void CommitMin(Desk& desk, std::string_view text);
void CommitMax(Desk& desk, std::string_view text);

void CheckUseMin(Desk& desk, bool on);
void CheckUseMax(Desk& desk, bool on);
void CheckAdjustable(Desk& desk, bool on);
void ChooseCoupling(Desk& desk, int entry);

}  // namespace kalvex
