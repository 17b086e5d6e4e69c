// What the program needs of the machine it runs on, as a record of functions. HeadlessPlatform is the built-in filling:
// messages go to standard error, and whoever would be asked is taken to have answered "go on".
#pragma once

#include <cstdint>
#include <string_view>

namespace kalvex {

enum class SuspendAnswer { kContinue, kContinueAndNeverAskAgain, kExitMacro };

struct Platform {
  void* self = nullptr;
  // A message box with an exclamation icon and one button.
  void (*showMessage)(void* self, std::string_view title, std::string_view text) = nullptr;
  // Delivers all pending window events.
  void (*pumpEvents)(void* self) = nullptr;
  void (*sleep)(void* self, int milliseconds) = nullptr;
  // The dialog of the macro command Suspend; returns when it is answered.
  SuspendAnswer (*askSuspend)(void* self) = nullptr;
  // The clock, in whole seconds.
  std::int64_t (*clockSeconds)(void* self) = nullptr;
};

Platform HeadlessPlatform();

}  // namespace kalvex
