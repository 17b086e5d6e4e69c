#include "datasets/read_dataset.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

#include "core/files.h"
#include "core/text.h"

namespace kalvex {
namespace {

constexpr std::size_t kMaxLine = 1023;
constexpr double kDefaultSigma = 0.01;

// Reads the number at p and moves p behind it. A word that only begins like "inf" or "nan" is no number.
bool TakeNumber(const char*& p, const char* end, double& value) {
  double number = 0;
  const char* const behind = ParseReal(p, end, number);
  if (behind == p) return false;
  if (!std::isfinite(number) && behind != end && IsAsciiLetter(*behind)) return false;
  p = behind;
  value = number;
  return true;
}

// An x that is not finite cannot be sorted: such a line is one that does not start with a number.
bool ScanRow(const char* p, const char* end, DataRow& row) {
  row = {0, 0, kDefaultSigma};
  if (!TakeNumber(p, end, row.x) || !std::isfinite(row.x)) return false;
  if (TakeNumber(p, end, row.y)) TakeNumber(p, end, row.sigma);
  return true;
}

ReadStatus ReadRows(const std::string& path, std::vector<DataRow>& rows) {
  std::string text;
  if (!ReadWholeFile(path, text)) return ReadStatus::kCannotOpen;
  rows.clear();
  const char* p = text.data();
  const char* const end = p + text.size();
  while (p != end) {
    const std::size_t room = std::min(kMaxLine, static_cast<std::size_t>(end - p));
    const auto* feed = static_cast<const char*>(std::memchr(p, '\n', room));
    const char* const lineEnd = feed ? feed : p + room;
    DataRow row;
    if (ScanRow(p, lineEnd, row)) rows.push_back(row);
    p = feed ? feed + 1 : lineEnd;
  }
  return rows.empty() ? ReadStatus::kNoUsableLine : ReadStatus::kRead;
}

}  // namespace

void SortAndDropDuplicates(std::vector<DataRow>& rows) {
  const auto byX = [](const DataRow& a, const DataRow& b) { return a.x < b.x; };
  if (!std::is_sorted(rows.begin(), rows.end(), byX)) std::stable_sort(rows.begin(), rows.end(), byX);
  // A dropped row no longer counts as the one before, so the third of three equal rows stays.
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
