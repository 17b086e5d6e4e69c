#include "datasets/read_dataset.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <new>

#include "core/files.h"
#include "core/text.h"

namespace kalvex {
namespace {

constexpr std::size_t kMaxLine = 1023;
constexpr double kDefaultSigma = 0.01;

// Reads the number at p and moves p past it. A word that begins with "inf" or "nan" but continues with a letter is not
// a number.
bool TakeNumber(const char*& p, const char* end, double& value) {
  double number = 0;
  const char* const after = ParseReal(p, end, number);
  if (after == p) return false;
  if (!std::isfinite(number) && after != end && IsAsciiLetter(*after)) return false;
  p = after;
  value = number;
  return true;
}

// A line whose x is not finite counts as a line without a number, because such rows cannot be sorted.
bool ScanRow(const char* p, const char* end, DataRow& row) {
  row = {0, 0, kDefaultSigma};
  if (!TakeNumber(p, end, row.x) || !std::isfinite(row.x)) return false;
  if (TakeNumber(p, end, row.y)) TakeNumber(p, end, row.sigma);
  return true;
}

// Appends the rows of all complete lines of a text. An incomplete last line is used only if the file ends there.
// Returns the position of the unread rest.
const char* TakeRows(const char* p, const char* end, bool endsHere, std::vector<DataRow>& rows) {
  while (p != end) {
    const std::size_t room = std::min(kMaxLine, static_cast<std::size_t>(end - p));
    const auto* feed = static_cast<const char*>(std::memchr(p, '\n', room));
    if (!feed && room < kMaxLine && !endsHere) return p;
    const char* const lineEnd = feed ? feed : p + room;
    DataRow row;
    if (ScanRow(p, lineEnd, row)) rows.push_back(row);
    p = feed ? feed + 1 : lineEnd;
  }
  return end;
}

// Reads the file in pieces: even for a large file, memory is needed only for the rows.
ReadStatus ReadRows(const std::string& path, std::vector<DataRow>& rows) {
  constexpr std::size_t kPiece = std::size_t{1} << 16;
  const FileHandle file = OpenForReading(path);
  if (!file) return ReadStatus::kCannotOpen;
  rows.clear();
  std::array<char, kPiece> text;
  std::size_t left = 0;
  bool endsHere = false;
  while (!endsHere) {
    const std::size_t got = std::fread(text.data() + left, 1, text.size() - left, file.get());
    const char* const end = text.data() + left + got;
    endsHere = end != text.data() + text.size();
    const char* const rest = TakeRows(text.data(), end, endsHere, rows);
    left = static_cast<std::size_t>(end - rest);
    std::memmove(text.data(), rest, left);
  }
  if (std::ferror(file.get()) != 0) return ReadStatus::kCannotOpen;
  return rows.empty() ? ReadStatus::kNoUsableLine : ReadStatus::kRead;
}

}  // namespace

void SortAndDropDuplicates(std::vector<DataRow>& rows) {
  const auto byX = [](const DataRow& a, const DataRow& b) { return a.x < b.x; };
  if (!std::is_sorted(rows.begin(), rows.end(), byX)) std::stable_sort(rows.begin(), rows.end(), byX);
  // A row is compared with the previous one only if that was kept: the third of three equal rows stays.
  std::size_t kept = 0;
  bool dropped = false;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    dropped = i > 0 && !dropped && rows[i].x == rows[i - 1].x;
    if (!dropped) rows[kept++] = rows[i];
  }
  rows.resize(kept);
}

ReadStatus ReadDatasetFile(const std::string& path, std::vector<DataRow>& rows) {
  try {
    const ReadStatus status = ReadRows(path, rows);
    if (status == ReadStatus::kRead) SortAndDropDuplicates(rows);
    return status;
  } catch (const std::bad_alloc&) {
    return ReadStatus::kOutOfMemory;
  }
}

}  // namespace kalvex
