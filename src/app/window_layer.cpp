#include "app/window_layer.h"

#include <dlfcn.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>

#include "app/window_entry.h"

namespace kalvex {
namespace {

constexpr const char* kLibrary = "libkalvex_windows.so";

bool IsSet(const char* name) {
  const char* const value = std::getenv(name);
  return value && *value;
}

// The folder of the running program, with a separator at the end.
std::string OwnFolder() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0) return {};
  const std::string whole(path, static_cast<std::size_t>(length));
  return whole.substr(0, whole.rfind('/') + 1);
}

}  // namespace

std::optional<int> RunInWindows(Program& program, const std::string& macroFile, int argc, char** argv,
                                std::string& fault) {
  if (!IsSet("DISPLAY") && !IsSet("WAYLAND_DISPLAY")) return std::nullopt;
  const std::string library = OwnFolder() + kLibrary;
  if (access(library.c_str(), F_OK) != 0) return std::nullopt;
  void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  const auto entry = handle ? reinterpret_cast<LayerEntry>(dlsym(handle, kLayerEntry)) : nullptr;
  if (!entry) {
    const char* const reason = dlerror();
    fault = std::string("no windows: ") + (reason ? reason : kLibrary);
    return std::nullopt;
  }
  const int status = entry(program, macroFile.c_str(), argc, argv);
  if (status < 0) return std::nullopt;
  return status;
}

}  // namespace kalvex
