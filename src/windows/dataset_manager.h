// The dataset manager: a row of controls for each of the first ten datasets. Its fields contain what a person types.
// They are filled from the datasets only by the two Refresh functions.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "datasets/dataset.h"

namespace kalvex {

struct Desk;

inline constexpr int kManagerRows = 10;

struct ManagerRow {
  std::string button;  // its text: "Load" or "Unload"
  std::string name;
  std::optional<Quantity> quantity;  // that the list of short names shows
  std::string cutMin, cutMax;
  std::string points;
  bool enabled = false;  // of all controls except the button
};

struct DatasetManager {
  bool open = false;
  int x = 60;
  int y = 130;
  bool wantsFront = false;  // the screen brings the window to the front and clears this
  std::array<ManagerRow, kManagerRows> rows;
  bool unloadAll = false;  // "Unload ALL" is enabled
};

void OpenDatasetManager(Desk& desk);
// Also closes the load dialog; its entries are lost.
void CloseDatasetManager(Desk& desk);

// Fills all rows if the window is open.
void RefreshDatasetManager(DatasetManager& manager, const DatasetTable& datasets);
// Updates the number of points and the Quantity of any one slot. The fields of the range stay as typed.
void RefreshDatasetRow(DatasetManager& manager, const DatasetTable& datasets, int slot);

// The button of a slot: opens the load dialog for a free slot, unloads a loaded one.
void PressDatasetButton(Desk& desk, int slot);
void PressUnloadAll(Desk& desk);
// Curves and terms of the fit use the new Quantity after they are next rebuilt.
void ChooseQuantity(Desk& desk, int slot, Quantity quantity);
// Called at every change of the text, so for each character. A text that the field already shows is not a change. All
// changes until the field is left are one step of the history.
void TypeCutMin(Desk& desk, int slot, std::string_view text);
void TypeCutMax(Desk& desk, int slot, std::string_view text);
void LeaveCutField(Desk& desk);

}  // namespace kalvex
