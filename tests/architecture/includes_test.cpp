// The layers of the program: a file includes only files of its own floor or of a lower one.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/scratch_folder.h"

namespace kalvex {
namespace {

// The floor of a path is that of the first entry that is a prefix of it.
const std::vector<std::pair<std::string, int>> kFloors = {
    {"core/", 1},       {"numeric/", 1}, {"datasets/", 2}, {"records/", 2}, {"terms/", 3},
    {"evaluation/", 4}, {"types/", 5},   {"fit/", 6},      {"files/", 6},   {"graphs/", 6},
    {"pictures/", 6},   {"session/", 7}, {"store/", 8},    {"series/", 8},  {"windows/qt/", 10},
    {"windows/", 9},    {"macro/", 9},   {"app/", 10},     {"manual/", 10},
};

int FloorOf(const std::string& path) {
  for (const auto& [prefix, floor] : kFloors) {
    if (path.compare(0, prefix.size(), prefix) == 0) return floor;
  }
  return 0;
}

using Includes = std::map<std::string, std::set<std::string>>;

Includes ReadIncludes() {
  const std::filesystem::path top = ProjectFile("src");
  Includes includes;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(top)) {
    const std::string extension = entry.path().extension().string();
    if (extension != ".h" && extension != ".cpp") continue;
    auto& names = includes[std::filesystem::relative(entry.path(), top).generic_string()];
    std::ifstream file(entry.path());
    for (std::string line; std::getline(file, line);) {
      if (line.compare(0, 10, "#include \"") == 0) names.insert(line.substr(10, line.find('"', 10) - 10));
    }
  }
  return includes;
}

TEST(Architecture, EveryFileHasAFloor) {
  for (const auto& [path, names] : ReadIncludes()) EXPECT_GT(FloorOf(path), 0) << path;
}

TEST(Architecture, IncludesRunDownwards) {
  for (const auto& [path, names] : ReadIncludes()) {
    for (const std::string& name : names) {
      EXPECT_LE(FloorOf(name), FloorOf(path)) << path << " includes " << name << " of a higher floor";
    }
  }
}

TEST(Architecture, NoIncludeCycle) {
  const Includes includes = ReadIncludes();
  std::set<std::string> open, done;
  const std::function<void(const std::string&)> visit = [&](const std::string& path) {
    ASSERT_FALSE(open.contains(path)) << "cycle through " << path;
    const auto found = includes.find(path);
    if (done.contains(path) || found == includes.end()) return;
    open.insert(path);
    for (const std::string& name : found->second) visit(name);
    open.erase(path);
    done.insert(path);
  };
  for (const auto& [path, names] : includes) visit(path);
  EXPECT_EQ(done.size(), includes.size());
}

}  // namespace
}  // namespace kalvex
