// The platform for a program with windows.
#pragma once

#include "core/platform.h"

namespace kalvex {

class Keeper;

// Message boxes and dialogs are children of the main window. Waiting processes the events of the windows. The clock is
// that of the machine.
class QtPlatform : public HeadlessPlatform {
 public:
  explicit QtPlatform(Keeper& keeper) : keeper_(keeper) {}
  void ShowMessage(std::string_view title, std::string_view text) override;
  void PumpEvents() override;
  void Sleep(int milliseconds) override;
  SuspendAnswer AskSuspend() override;
  std::optional<std::string> AskFile(const FileQuestion& question, const std::string& folder) override;
  std::string ProgramFolder() override;
  void OpenDocument(const std::string& path) override;

 private:
  Keeper& keeper_;
};

}  // namespace kalvex
