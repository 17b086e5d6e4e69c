#include "core/platform.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <system_error>
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
  platform.askFile = [](void*, const FileQuestion&, const std::string&) { return std::optional<std::string>(); };
  platform.programFolder = [](void*) {
    std::error_code failure;
    const std::filesystem::path file = std::filesystem::read_symlink("/proc/self/exe", failure);
    return failure ? std::string() : (file.parent_path() / "").string();
  };
  platform.openDocument = [](void*, const std::string&) {};
  platform.clockSeconds = [](void*) { return static_cast<std::int64_t>(std::time(nullptr)); };
  return platform;
}

}  // namespace kalvex
