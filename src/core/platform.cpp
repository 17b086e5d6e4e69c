#include "core/platform.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>

namespace kalvex {

Platform HeadlessPlatform() {
  Platform platform;
  platform.showMessage = [](void*, std::string_view title, std::string_view text) {
    std::fprintf(stderr, "%.*s: %.*s\n", static_cast<int>(title.size()), title.data(), static_cast<int>(text.size()),
                 text.data());
  };
  platform.pumpEvents = [](void*) {};
  platform.sleep = [](void*, int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
  };
  platform.askSuspend = [](void*) { return SuspendAnswer::kContinue; };
  platform.clockSeconds = [](void*) { return static_cast<std::int64_t>(std::time(nullptr)); };
  return platform;
}

}  // namespace kalvex
