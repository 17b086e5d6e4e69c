#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "core/files.h"
#include "core/text.h"

namespace kalvex {

ScratchFolder::ScratchFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "kalvex test XXXXXX").string();
  name_ = mkdtemp(pattern.data());
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(name_, ignored);
}

std::string ScratchFolder::Path(std::string_view name) const { return name_ + '/' + std::string(name); }

std::string ScratchFolder::Write(std::string_view name, std::string_view content) const {
  std::ofstream(Path(name), std::ios::binary) << content;
  return Path(name);
}

std::string ScratchFolder::Read(std::string_view name) const {
  std::string content;
  EXPECT_TRUE(ReadWholeFile(Path(name), content)) << "no file " << name;
  return content;
}

bool ScratchFolder::Has(std::string_view name) const { return std::filesystem::exists(Path(name)); }

InFolder::InFolder(const std::string& folder) : before_(std::filesystem::current_path().string()) {
  std::filesystem::current_path(folder);
}

InFolder::~InFolder() { std::filesystem::current_path(before_); }

std::vector<std::vector<double>> NumbersOf(std::string_view text) {
  std::vector<std::vector<double>> lines;
  std::istringstream stream{std::string(text)};
  for (std::string line; std::getline(stream, line);) {
    std::vector<double> numbers;
    const char* p = line.data();
    const char* const end = p + line.size();
    double number = 0;
    for (const char* after; (after = ParseReal(p, end, number)) != p; p = after) numbers.push_back(number);
    if (!numbers.empty()) lines.push_back(numbers);
  }
  return lines;
}

std::string ProjectFile(std::string_view name) { return std::string(KALVEX_SOURCE_DIR) + '/' + std::string(name); }

}  // namespace kalvex
