#include "core/files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace kalvex {
namespace {

// The file at the end of a chain of symbolic links. Renaming to this path replaces the file and not the link.
std::string ResolvedPath(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr), &std::free);
  return resolved ? std::string(resolved.get()) : path;
}

}  // namespace

FileHandle OpenForReading(const std::string& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0 || !(S_ISREG(info.st_mode) || S_ISFIFO(info.st_mode))) return nullptr;
  return FileHandle(std::fopen(path.c_str(), "rb"));
}

bool ReadWholeFile(const std::string& path, std::string& content) {
  const FileHandle file = OpenForReading(path);
  if (!file) return false;
  content.clear();
  struct stat info {};
  if (::fstat(::fileno(file.get()), &info) == 0 && info.st_size > 0) {
    content.reserve(static_cast<std::size_t>(info.st_size) + 1);
  }
  std::array<char, 1 << 16> buffer;
  while (const std::size_t got = std::fread(buffer.data(), 1, buffer.size(), file.get())) {
    content.append(buffer.data(), got);
  }
  return std::ferror(file.get()) == 0;
}

bool ReadTextFile(const std::string& path, std::string& content) {
  if (!ReadWholeFile(path, content)) return false;
  std::size_t to = 0;
  for (std::size_t from = 0; from < content.size(); ++from) {
    const bool pair = content[from] == '\r' && from + 1 < content.size() && content[from + 1] == '\n';
    if (!pair) content[to++] = content[from];
  }
  content.resize(to);
  return true;
}

WholeFileWriter::WholeFileWriter(const std::string& path) : name_(path), path_(path) {
  if (path.empty()) return;
  struct stat info {};
  const bool exists = ::stat(path.c_str(), &info) == 0;
  if (exists && S_ISDIR(info.st_mode)) return;
  if (exists && ::access(path.c_str(), W_OK) != 0) return;
  if (!exists || S_ISREG(info.st_mode)) {
    if (exists) path_ = ResolvedPath(path);
    besidePath_ = path_ + ".part" + std::to_string(::getpid());
    file_.reset(std::fopen(besidePath_.c_str(), "wb"));
    if (file_ && exists) good_ = ::fchmod(::fileno(file_.get()), info.st_mode & 07777) == 0;
  }
  if (!file_) {
    besidePath_.clear();
    file_.reset(std::fopen(path_.c_str(), "wb"));
  }
}

WholeFileWriter::~WholeFileWriter() {
  if (file_ && !besidePath_.empty()) ::unlink(besidePath_.c_str());
}

void WholeFileWriter::Write(std::string_view text) {
  if (file_ && std::fwrite(text.data(), 1, text.size(), file_.get()) != text.size()) good_ = false;
}

Status WholeFileWriter::Commit() { return PutInPlace() ? Status() : CannotWrite(name_); }

bool WholeFileWriter::PutInPlace() {
  if (!file_) return false;
  if (std::fflush(file_.get()) != 0) good_ = false;
  if (!good_) return false;
  file_.reset();
  if (besidePath_.empty()) return true;
  if (std::rename(besidePath_.c_str(), path_.c_str()) == 0) return true;
  ::unlink(besidePath_.c_str());
  return false;
}

Status WriteWholeFile(const std::string& path, std::string_view content) {
  WholeFileWriter file(path);
  file.Write(content);
  return file.Commit();
}

Status AppendToFile(const std::string& path, std::string_view text) {
  const FileHandle file(std::fopen(path.c_str(), "ab"));
  if (!file) return CannotWrite(path);
  const bool written = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
  return std::fflush(file.get()) == 0 && written ? Status() : CannotWrite(path);
}

}  // namespace kalvex
