// A program in this process that runs macros in a folder of its own and notes what they ask of the machine.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "macro/run_macro.h"
#include "records/model_table.h"
#include "support/scratch_folder.h"

namespace kalvex {

class Executing : public testing::Test {
 protected:
  Executing() : inside(folder.Name()) {
    program.platform.self = this;
    program.platform.sleep = [](void* self, int ms) { Of(self).slept.push_back(ms); };
    program.platform.pumpEvents = [](void* self) {
      ++Of(self).pumped;
      Of(self).happened += 'p';
      if (Of(self).onPump) Of(self).onPump();
    };
    program.platform.askSuspend = [](void* self) {
      ++Of(self).asked;
      return Of(self).answer;
    };
    program.platform.showMessage = [](void* self, std::string_view title, std::string_view text) {
      Of(self).messages.push_back(std::string(title) + ": " + std::string(text));
    };
  }

  int Run(const std::string& text) {
    folder.Write("m.kvs", text);
    return RunMacro(program, "m.kvs");
  }
  int Models() { return CountModels(program.params); }
  Model& ModelNo(std::uint32_t number) { return *GetModelByNumber(program.params, number); }

  ScratchFolder folder;
  InFolder inside;
  Program program;
  std::vector<int> slept;
  std::vector<std::string> messages;
  std::string happened;
  int pumped = 0, asked = 0;
  SuspendAnswer answer = SuspendAnswer::kContinue;
  std::function<void()> onPump;

 private:
  static Executing& Of(void* self) { return *static_cast<Executing*>(self); }
};

}  // namespace kalvex
