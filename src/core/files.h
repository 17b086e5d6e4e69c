// Files: read as a whole, written as a whole (never a half-written file), appended to.
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

// Opens a file for reading. Only regular files and pipes are accepted: a directory or an endless device gives an empty
// handle.
FileHandle OpenForReading(const std::string& path);

// Reads the content of a file. False if it cannot be opened or read.
[[nodiscard]] bool ReadWholeFile(const std::string& path, std::string& content);

// The same, but each pair of carriage return and line feed becomes one line feed.
[[nodiscard]] bool ReadTextFile(const std::string& path, std::string& content);

// A file that is written as a whole. The text goes to a new file in the same folder. Commit renames it to the given
// name. Without Commit an old file of that name stays untouched. The writer writes directly to the given name if no new
// file can be made in that folder, and for devices such as /dev/stdout.
class WholeFileWriter {
 public:
  explicit WholeFileWriter(const std::string& path);
  WholeFileWriter(const WholeFileWriter&) = delete;
  WholeFileWriter& operator=(const WholeFileWriter&) = delete;
  ~WholeFileWriter();

  bool IsOpen() const { return file_ != nullptr; }
  void Write(std::string_view text);
  // Succeeds if every byte has reached the file of the given name.
  Status Commit();

 private:
  bool PutInPlace();

  std::string name_;        // as given by the caller
  std::string path_;        // after symbolic links
  std::string besidePath_;  // empty: the text goes directly to path_
  FileHandle file_;
  bool good_ = true;
};

// Writes the whole file at once.
Status WriteWholeFile(const std::string& path, std::string_view content);

// Adds the text at the end of the file. A missing file is created.
Status AppendToFile(const std::string& path, std::string_view text);

}  // namespace kalvex
