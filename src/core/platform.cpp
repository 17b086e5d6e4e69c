#include "core/platform.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <system_error>
#include <thread>

namespace kalvex {

void HeadlessPlatform::ShowMessage(std::string_view title, std::string_view text) {
  std::fprintf(stderr, "%.*s: %.*s\n", static_cast<int>(title.size()), title.data(), static_cast<int>(text.size()),
               text.data());
}

void HeadlessPlatform::Sleep(int milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }

std::string HeadlessPlatform::ProgramFolder() {
  std::error_code failure;
  const std::filesystem::path file = std::filesystem::read_symlink("/proc/self/exe", failure);
  return failure ? std::string() : (file.parent_path() / "").string();
}

std::int64_t HeadlessPlatform::ClockSeconds() { return static_cast<std::int64_t>(std::time(nullptr)); }

}  // namespace kalvex
