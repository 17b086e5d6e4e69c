// The keys that the windows of parameters use while they are active. A new one is also added to model_keys.cpp,
// exp_params_window.cpp and the table of keys in qt/fields.cpp.
#pragma once

namespace kalvex {

enum class Key {
  kEnter,
  kUp,
  kDown,
  kLeft,
  kRight,
  kPageUp,
  kPageDown,
  kTab,
  kEscape,
  kF2,
  kF3,
  kF4,
  kF5,
  kF6,
  kF7,
  kF8,
  kF9,
  kF10,
  kSpace,
  kInsert,
  kDelete,
};

// These three keys go to the editor while it is open. All other keys always go to the window.
constexpr bool BelongsToEditor(Key key) { return key == Key::kSpace || key == Key::kInsert || key == Key::kDelete; }

}  // namespace kalvex
