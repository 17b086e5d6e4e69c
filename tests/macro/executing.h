// A desk in this process that runs macros in its own folder and records their calls of the platform.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "macro/run_macro.h"
#include "records/model_table.h"
#include "support/open_session.h"
#include "support/scratch_folder.h"

namespace kalvex {

class Executing : public testing::Test, protected OpenDesk {
 protected:
  Executing() : inside(folder.Name()) {
    platform.sleep = [this](int ms) {
      slept.push_back(ms);
      happened += 's' + std::to_string(ms);
    };
    platform.events = [this] {
      happened += 'p';
      if (onPump) onPump();
    };
    platform.suspend = [this] {
      ++asked;
      return answer;
    };
  }

  int Run(const std::string& text) {
    folder.Write("m.kvs", text);
    return RunMacro(desk, "m.kvs");
  }
  int Models() { return CountModels(params); }
  Model& ModelNo(std::uint32_t number) { return *GetModelByNumber(params, number); }

  ScratchFolder folder;
  InFolder inside;
  std::vector<int> slept;
  std::string happened;
  int asked = 0;
  SuspendAnswer answer = SuspendAnswer::kContinue;
  std::function<void()> onPump;
};

}  // namespace kalvex
