// A platform for tests. It stores the messages, and its clock does not advance. A test can set the other functions.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/platform.h"

namespace kalvex {

class TestPlatform : public HeadlessPlatform {
 public:
  std::vector<std::string> messages;  // "title: text"
  std::function<std::int64_t()> clock = [] { return std::int64_t{0}; };
  std::function<void()> events = [] {};
  std::function<void(int)> sleep = [](int) {};
  std::function<SuspendAnswer()> suspend = [] { return SuspendAnswer::kContinue; };
  std::function<std::optional<std::string>(const FileQuestion&, const std::string&)> file =
      [](const FileQuestion&, const std::string&) { return std::nullopt; };
  std::function<std::string()> folder = [] { return std::string(); };
  std::function<void(const std::string&)> document = [](const std::string&) {};

  void ShowMessage(std::string_view title, std::string_view text) override {
    messages.push_back(std::string(title) + ": " + std::string(text));
  }
  void PumpEvents() override { events(); }
  void Sleep(int milliseconds) override { sleep(milliseconds); }
  SuspendAnswer AskSuspend() override { return suspend(); }
  std::optional<std::string> AskFile(const FileQuestion& question, const std::string& in) override {
    return file(question, in);
  }
  std::string ProgramFolder() override { return folder(); }
  void OpenDocument(const std::string& path) override { document(path); }
  std::int64_t ClockSeconds() override { return clock(); }
};

}  // namespace kalvex
