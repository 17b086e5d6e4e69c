// What the program needs of the machine it runs on.
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

class Platform {
 public:
  virtual ~Platform() = default;
  // A message box with an exclamation icon and one button.
  virtual void ShowMessage(std::string_view title, std::string_view text) = 0;
  // Delivers all pending window events.
  virtual void PumpEvents() = 0;
  virtual void Sleep(int milliseconds) = 0;
  // The dialog of the macro command Suspend; returns when it is answered.
  virtual SuspendAnswer AskSuspend() = 0;
  // A file dialog that opens in the folder, or wherever it likes if that is empty. Nothing if the user cancels.
  virtual std::optional<std::string> AskFile(const FileQuestion& question, const std::string& folder) = 0;
  // Where the program's own file lies, with a separator at the end; empty if that is not known.
  virtual std::string ProgramFolder() = 0;
  // Shows a document with whatever the system has for it. A failure is not told.
  virtual void OpenDocument(const std::string& path) = 0;
  // The clock, in whole seconds.
  virtual std::int64_t ClockSeconds() = 0;
};

// Without a screen: messages go to standard error; whoever would be asked answers "go on", or chooses no file.
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
