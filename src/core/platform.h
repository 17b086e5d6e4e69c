// The program's interface to the machine: message box, file dialog, window events, sleep, the clock.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kalvex {

enum class SuspendAnswer { kContinue, kContinueAndNeverAskAgain, kExitMacro };

// An entry in a file dialog's list of file kinds: its text, and the pattern of the file names.
struct FileFilter {
  const char* text = "";
  const char* pattern = "";
};

// What a file dialog shows. A dialog for opening accepts only files that exist. No dialog asks for confirmation when a
// file would be overwritten.
struct FileQuestion {
  const char* title = "";
  std::span<const FileFilter> filters;
  const char* defaultExtension = "";
  bool forSaving = false;
};

class Platform {
 public:
  virtual ~Platform() = default;
  // A message box with an exclamation icon and one button.
  virtual void ShowMessage(std::string_view title, std::string_view text) = 0;
  // Delivers all pending window events.
  virtual void PumpEvents() = 0;
  virtual void Sleep(int milliseconds) = 0;
  // The dialog of the macro command Suspend. Returns when the user has answered.
  virtual SuspendAnswer AskSuspend() = 0;
  // A file dialog that opens in the folder; if the folder is empty, the platform chooses one. No value if the user
  // cancels.
  virtual std::optional<std::string> AskFile(const FileQuestion& question, const std::string& folder) = 0;
  // The folder of the program's own file, with a separator at the end. Empty if it is not known.
  virtual std::string ProgramFolder() = 0;
  // Opens a document with the system's default application. A failure is not reported.
  virtual void OpenDocument(const std::string& path) = 0;
  // Seconds since the epoch of the system clock.
  virtual std::int64_t ClockSeconds() = 0;
};

// A platform without a screen. Messages go to standard error. AskSuspend returns kContinue, and no file is chosen.
class HeadlessPlatform : public Platform {
 public:
  void ShowMessage(std::string_view title, std::string_view text) override;
  void PumpEvents() override {}
  void Sleep(int milliseconds) override;
  SuspendAnswer AskSuspend() override { return SuspendAnswer::kContinue; }
  std::optional<std::string> AskFile(const FileQuestion&, const std::string&) override { return std::nullopt; }
  std::string ProgramFolder() override;
  void OpenDocument(const std::string&) override {}
  std::int64_t ClockSeconds() override;
};

}  // namespace kalvex
