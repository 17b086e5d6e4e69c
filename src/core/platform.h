// What the program needs of the machine it runs on, as a record of functions. HeadlessPlatform is the built-in filling:
// messages go to standard error, and whoever would be asked is taken to have answered "go on", or to have
// chosen no file.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kalvex {

enum class SuspendAnswer { kContinue, kContinueAndNeverAskAgain, kExitMacro };

// A row of a file dialog's list of file kinds: what it says, and the names that it lets through.
struct FileFilter {
  const char* text = "";
  const char* pattern = "";
};

// What a file dialog asks. One that is not for saving takes only files that exist; none asks before overwriting.
struct FileQuestion {
  const char* title = "";
  std::span<const FileFilter> filters;
  const char* defaultExtension = "";
  bool forSaving = false;
};

struct Platform {
  void* self = nullptr;
  // A message box with an exclamation icon and one button.
  void (*showMessage)(void* self, std::string_view title, std::string_view text) = nullptr;
  // Delivers all pending window events.
  void (*pumpEvents)(void* self) = nullptr;
  void (*sleep)(void* self, int milliseconds) = nullptr;
  // The dialog of the macro command Suspend; returns when it is answered.
  SuspendAnswer (*askSuspend)(void* self) = nullptr;
  // A file dialog that opens in the folder, or wherever it likes if that is empty. Nothing if the user cancels.
  std::optional<std::string> (*askFile)(void* self, const FileQuestion& question, const std::string& folder) = nullptr;
  // Where the program's own file lies, with a separator at the end; empty if that is not known.
  std::string (*programFolder)(void* self) = nullptr;
  // Shows a document with whatever the system has for it. A failure is not told.
  void (*openDocument)(void* self, const std::string& path) = nullptr;
  // The clock, in whole seconds.
  std::int64_t (*clockSeconds)(void* self) = nullptr;
};

Platform HeadlessPlatform();

}  // namespace kalvex
