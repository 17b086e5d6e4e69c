#include "app/window_layer.h"

#include <dlfcn.h>
#include <elf.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

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

// Whether a library ends before its own list of parts does. The system would load it and fall over what is missing.
bool IsCutShort(const std::string& library) {
  Elf64_Ehdr head{};
  std::ifstream file(library, std::ios::binary);
  file.read(reinterpret_cast<char*>(&head), sizeof head);
  if (!file || std::memcmp(head.e_ident, ELFMAG, SELFMAG) != 0 || head.e_ident[EI_CLASS] != ELFCLASS64) return false;
  std::error_code unknown;
  return head.e_shoff + std::uint64_t{head.e_shnum} * head.e_shentsize > std::filesystem::file_size(library, unknown);
}

// The function of the library that opens the windows. Null, with the reason in fault, if it cannot be had.
LayerEntry EntryOf(const std::string& library, std::string& fault) {
  if (IsCutShort(library)) {
    fault = kNoWindows + library + " is cut short";
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
