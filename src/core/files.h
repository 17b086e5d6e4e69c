// Files: whole-file reading, writing that never leaves half a file behind, and appending.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "core/status.h"

namespace kalvex {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, CloseFile>;

// Opens a file for reading. Only regular files and pipes count: a directory or an endless device gives an empty handle.
FileHandle OpenForReading(const std::string& path);

// The content of a file, or false if it cannot be opened or read.
[[nodiscard]] bool ReadWholeFile(const std::string& path, std::string& content);

// The same, with a pair of carriage return and line feed read as one line feed.
[[nodiscard]] bool ReadTextFile(const std::string& path, std::string& content);

// A file to be written as a whole. The text goes to a new file beside the old one, which Commit puts in its place;
// until then, and if the writer is dropped without Commit, the old file stays untouched. Where no file can be made
// beside it, and for devices such as /dev/stdout, it writes straight to the name.
class WholeFileWriter {
 public:
  explicit WholeFileWriter(const std::string& path);
  WholeFileWriter(const WholeFileWriter&) = delete;
  WholeFileWriter& operator=(const WholeFileWriter&) = delete;
  ~WholeFileWriter();

  bool IsOpen() const { return file_ != nullptr; }
  void Write(std::string_view text);
  // Succeeds if every byte is in the file of the given name.
  Status Commit();

 private:
  bool PutInPlace();

  std::string name_;        // as it was given
  std::string path_;        // the file that it names
  std::string besidePath_;  // empty: writing straight to path_
  FileHandle file_;
  bool good_ = true;
};

// Writes the whole file in one go.
Status WriteWholeFile(const std::string& path, std::string_view content);

// Adds the text at the end of the file, which is made if it is not there.
Status AppendToFile(const std::string& path, std::string_view text);

}  // namespace kalvex
