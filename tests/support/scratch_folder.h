// A separate folder for a test that works with files.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kalvex {

// Creates an empty folder with a blank in its name. The destructor removes the folder and its content.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  // The path of a file in the folder.
  std::string Path(std::string_view name) const;
  std::string Write(std::string_view name, std::string_view content) const;  // returns the path
  std::string Read(std::string_view name) const;                             // fails the test if there is no such file
  bool Has(std::string_view name) const;
  const std::string& Name() const { return name_; }

 private:
  std::string name_;
};

// Makes the folder the current directory during the lifetime of this object.
class InFolder {
 public:
  explicit InFolder(const std::string& folder);
  ~InFolder();
  InFolder(const InFolder&) = delete;
  InFolder& operator=(const InFolder&) = delete;

 private:
  std::string before_;
};

// The numbers of a text, line by line. A line that does not start with a number is skipped.
std::vector<std::vector<double>> NumbersOf(std::string_view text);

// The path of a file of the project, from its top folder.
std::string ProjectFile(std::string_view name);

}  // namespace kalvex
