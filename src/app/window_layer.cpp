#include "app/window_layer.h"

#include <dlfcn.h>
#include <sys/auxv.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <cstdlib>

#include "app/window_entry.h"

namespace kalvex {
namespace {

constexpr const char* kLibrary = "libkalvex_windows.so";

bool IsSet(const char* name) {
  const char* const value = std::getenv(name);
  return value && *value;
}

// The directory of the running program, ending with a separator.
std::string OwnFolder() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0) return {};
  const std::string whole(path, static_cast<std::size_t>(length));
  return whole.substr(0, whole.rfind('/') + 1);
}

// True if the file of a library is truncated. Loading it would end the process with a bus error. So another process
// tries first: the system's loader, run as a program, only maps the library.
bool IsCutShort(const std::string& library) {
  Dl_info loader{};
  const auto* const base = reinterpret_cast<const void*>(getauxval(AT_BASE));  // NOLINT(performance-no-int-to-ptr)
  if (dladdr(base, &loader) == 0) return false;
  const pid_t child = fork();
  if (child == 0) {
    close(STDERR_FILENO);  // dlopen reports any other fault
    const rlimit noCoreFile{};
    setrlimit(RLIMIT_CORE, &noCoreFile);
    execl(loader.dli_fname, loader.dli_fname, "--verify", library.c_str(), nullptr);
    _exit(0);
  }
  int status = 0;
  return child > 0 && waitpid(child, &status, 0) == child && WIFSIGNALED(status) && WTERMSIG(status) == SIGBUS;
}

// The function of the library that opens the windows. Null if it cannot be loaded; `fault` then contains the reason.
LayerEntry EntryOf(const std::string& library, std::string& fault) {
  if (IsCutShort(library)) {
    fault = kNoWindows + library + " is truncated";
    return nullptr;
  }
  void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  const auto entry = handle ? reinterpret_cast<LayerEntry>(dlsym(handle, kLayerEntry)) : nullptr;
  if (entry) return entry;
  const char* const reason = dlerror();
  fault = kNoWindows + std::string(reason ? reason : kLibrary);
  return nullptr;
}

}  // namespace

std::optional<int> RunInWindows(Desk& desk, const std::string& macroFile, int argc, char** argv, std::string& fault) {
  if (!IsSet("DISPLAY") && !IsSet("WAYLAND_DISPLAY")) return std::nullopt;
  const std::string library = OwnFolder() + kLibrary;
  if (access(library.c_str(), F_OK) != 0) return std::nullopt;
  const LayerEntry entry = EntryOf(library, fault);
  if (!entry) return std::nullopt;
  const int status = entry(desk, macroFile.c_str(), argc, argv, fault);
  if (status < 0) return std::nullopt;
  return status;
}

}  // namespace kalvex
