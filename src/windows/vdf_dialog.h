// The dialog that makes the mesh of a variational dielectric function from datasets.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kalvex {

struct Model;
struct Desk;

struct VdfDialog {
  bool open = false;
  std::uint32_t model = 0;  // number of the model
  std::vector<std::string> entries;
  std::vector<std::uint32_t> datasets;     // ids of the entries after the first entry, which is empty
  std::array<std::size_t, 3> choice = {};  // in each drop-down list; 0 is the empty entry
  std::array<bool, 3> every2nd = {};       // the check box beside it
  bool kk = true, on = true, active = true;
};

// Opens with the same defaults each time: the first list on the first dataset, the others empty, all switches on.
void OpenVdfDialog(Desk& desk, const Model& model);
// "OK" makes the mesh. Both buttons update the model's window and notify the fit of the model. During a fit the mesh
// must not change: "OK" does nothing.
void AcceptVdfDialog(Desk& desk);
void CancelVdfDialog(Desk& desk);

}  // namespace kalvex
