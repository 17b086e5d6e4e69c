// The dataset manager: a row of controls for each of the first ten datasets. Its fields hold what a person types, so
// they are filled from the datasets only where that is told.
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
  std::string button;  // what it does to the slot
  std::string name;
  std::optional<Quantity> quantity;  // that the list of short names shows
  std::string cutMin, cutMax;
  std::string points;
  bool enabled = false;  // of all controls but the button
};

struct DatasetManager {
  bool open = false;
  int x = 60;
  int y = 130;
  bool wantsFront = false;  // a screen brings the window to the front, and clears this
  std::array<ManagerRow, kManagerRows> rows;
  bool unloadAll = false;  // that button answers
};

void OpenDatasetManager(Desk& desk);
// With it goes the load dialog, its entries lost.
void CloseDatasetManager(Desk& desk);

// Fills all rows, if the window is open.
void RefreshDatasetManager(DatasetManager& manager, const DatasetTable& datasets);
// Fills the number of points and the Quantity of one slot, which may be any. The fields of the range stay as typed.
void RefreshDatasetRow(DatasetManager& manager, const DatasetTable& datasets, int slot);

// The button of a slot: opens the load dialog for a free one, unloads the other.
void PressDatasetButton(Desk& desk, int slot);
void PressUnloadAll(Desk& desk);
// Curves and terms of the fit take the new Quantity when they are next rebuilt.
void ChooseQuantity(Desk& desk, int slot, Quantity quantity);
// Every change of the text, with each character typed. What the field shows already is no change. Until the field is
// left they are one step of the history.
void TypeCutMin(Desk& desk, int slot, std::string_view text);
void TypeCutMax(Desk& desk, int slot, std::string_view text);
void LeaveCutField(Desk& desk);

}  // namespace kalvex
