#include "datasets/load_dataset.h"

#include <cmath>
#include <new>
#include <span>
#include <vector>

#include "core/text.h"
#include "datasets/interpolation.h"
#include "datasets/quantity.h"
#include "datasets/read_dataset.h"

namespace kalvex {
namespace {

// A larger table would exceed the memory of an ordinary machine.
constexpr std::size_t kMostRows = 50'000'000;

struct FileMessages {
  const char* cannotOpen;
  const char* outOfMemory;
  const char* noUsableLine;
};
constexpr FileMessages kMasterMessages = {"Cannot open master file.", "Not enough memory to load master file.",
                                          "Master file is empty or of improper format."};
constexpr FileMessages kXMessages = {"Cannot open file for X.", "Not enough memory to load file for X.",
                                     "File for X is empty or of improper format."};
constexpr FileMessages kYErrMessages = {"Cannot open file for Yerr.", "Not enough memory to load file for Yerr.",
                                        "File for Yerr is empty or of improper format."};

Status Read(const std::string& path, const FileMessages& messages, std::vector<DataRow>& rows) {
  switch (ReadDatasetFile(path, rows)) {
    case ReadStatus::kCannotOpen:
      return {StatusCode::kCannotRead, messages.cannotOpen, path};
    case ReadStatus::kOutOfMemory:
      return {StatusCode::kOutOfMemory, messages.outOfMemory, path};
    case ReadStatus::kNoUsableLine:
      return {StatusCode::kBadFormat, messages.noUsableLine, path};
    case ReadStatus::kRead:
      break;
  }
  return {};
}

Status CheckGrid(const Dataset& dataset) {
  if (dataset.XMin > dataset.XMax) return {StatusCode::kBadArgument, "Xmax should be larger, than Xmin."};
  if (dataset.XPts < 2) return {StatusCode::kBadArgument, "# pts should be more than 1."};
  if (dataset.XGrid == Grid::kLogarithmic && !(dataset.XMin > 0 && dataset.XMax > 0)) {
    return {StatusCode::kBadArgument, "For logarithmic grid Xmin and Xmax should be positive."};
  }
  return {};
}

Status NotEnoughMemory() { return {StatusCode::kOutOfMemory, "Not enough memory for the dataset."}; }

double GridPoint(const Dataset& dataset, std::size_t i) {
  const double t = static_cast<double>(i) / (dataset.XPts - 1);
  return dataset.XGrid == Grid::kLinear ? dataset.XMin + (dataset.XMax - dataset.XMin) * t
                                        : dataset.XMin * std::pow(dataset.XMax / dataset.XMin, t);
}

// The interval of x that belongs to a row. It ends midway to the neighbours; at an end of the table it ends at the row
// itself.
struct Cell {
  double from;
  double to;
};
Cell CellOf(std::span<const DataRow> rows, std::size_t i) {
  const double x = rows[i].x;
  return {i == 0 ? x : 0.5 * (rows[i - 1].x + x), i + 1 == rows.size() ? x : 0.5 * (x + rows[i + 1].x)};
}

// Reads a column of one table at the rows of another, in ascending order.
class ColumnReader {
 public:
  ColumnReader(std::span<const DataRow> table, double DataRow::*column, Matching match)
      : table_(table), column_(column), match_(match) {}

  double At(std::span<const DataRow> rows, std::size_t i) {
    if (match_ == Matching::kAveraging) {
      const Cell cell = CellOf(rows, i);
      return AverageOver(table_, cell.from, cell.to, column_);
    }
    interval_ = FindIntervalNear(table_, rows[i].x, interval_);
    return InterpolateAt(table_, rows[i].x, interval_, column_);
  }

 private:
  std::span<const DataRow> table_;
  double DataRow::*column_;
  Matching match_;
  int interval_ = -1;
};

struct SourceTables {
  std::vector<DataRow> master, x, yErr;
};

Status ReadSources(const Dataset& dataset, SourceTables& tables) {
  if (Status read = Read(dataset.MasterFile, kMasterMessages, tables.master); !read.Ok()) return read;
  if (dataset.XMethod == XSource::kFile) {
    if (Status read = Read(dataset.XFile, kXMessages, tables.x); !read.Ok()) return read;
  }
  if (dataset.YErrMethod == ErrorSource::kFile) return Read(dataset.YErrFile, kYErrMessages, tables.yErr);
  return {};
}

void FillX(const Dataset& dataset, const SourceTables& tables, std::span<DataRow> rows) {
  const auto& source = dataset.XMethod == XSource::kFile ? tables.x : tables.master;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i].x = dataset.XMethod == XSource::kGenerated ? GridPoint(dataset, i) : source[i].x;
  }
}

Status FillValues(const Dataset& dataset, const SourceTables& tables, std::span<DataRow> rows) {
  ColumnReader y(tables.master, &DataRow::y, dataset.Match);
  ColumnReader masterSigma(tables.master, &DataRow::sigma, dataset.Match);
  ColumnReader fileSigma(tables.yErr, &DataRow::y, dataset.Match);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i].y = dataset.YMethod == YSource::kFixed ? dataset.YVal : y.At(rows, i);
    switch (dataset.YErrMethod) {
      case ErrorSource::kMaster:
        rows[i].sigma = masterSigma.At(rows, i);
        break;
      case ErrorSource::kFile:
        rows[i].sigma = fileSigma.At(rows, i);
        break;
      case ErrorSource::kFixed:
        if (!(dataset.YErrVal > 0)) return {StatusCode::kBadArgument, "YErr should be larger than 0."};
        rows[i].sigma = dataset.YErrVal;
        break;
    }
  }
  return {};
}

std::size_t RowsOf(const Dataset& dataset, const SourceTables& tables) {
  switch (dataset.XMethod) {
    case XSource::kMaster:
      return tables.master.size();
    case XSource::kFile:
      return tables.x.size();
    case XSource::kGenerated:
      break;
  }
  return static_cast<std::size_t>(dataset.XPts);
}

Status MakeRows(Dataset& dataset, const SourceTables& tables) {
  const std::size_t count = RowsOf(dataset, tables);
  if (count > kMostRows) return NotEnoughMemory();
  dataset.points.assign(count, DataRow{});
  FillX(dataset, tables, dataset.points);
  return FillValues(dataset, tables, dataset.points);
}

void StoreSource(const DatasetSource& source, Dataset& dataset) {
  dataset.MasterFile = source.MasterFile;
  dataset.XFile = source.XFile;
  dataset.YErrFile = source.YErrFile;
  dataset.XMethod = source.XMethod;
  dataset.YMethod = source.YMethod;
  dataset.YErrMethod = source.YErrMethod;
  dataset.XGrid = source.XGrid;
  dataset.Match = source.Match;
  dataset.XMin = source.XMin;
  dataset.XMax = source.XMax;
  dataset.XPts = source.XPts;
  dataset.YVal = source.YVal;
  dataset.YErrVal = source.YErrVal;
}

Status LoadRows(Dataset& dataset) {
  SourceTables tables;
  if (Status read = ReadSources(dataset, tables); !read.Ok()) return read;
  if (dataset.XMethod == XSource::kGenerated) {
    if (Status grid = CheckGrid(dataset); !grid.Ok()) return grid;
  }
  try {
    return MakeRows(dataset, tables);
  } catch (const std::bad_alloc&) {
    return NotEnoughMemory();
  }
}

}  // namespace

Status LoadDataset(Dataset& dataset, const DatasetSource& source, std::uint32_t& nextId) {
  StoreSource(source, dataset);
  if (Status loaded = LoadRows(dataset); !loaded.Ok()) return loaded;
  const std::string_view fileName = FileNameOf(dataset.MasterFile);
  dataset.Quantity = source.Quantity.value_or(QuantityOfFileName(fileName));
  dataset.id = nextId++;
  dataset.name = CutToBytes(fileName, kDatasetNameSize);
  dataset.XMin = dataset.CutMin = dataset.points.front().x;
  dataset.XMax = dataset.CutMax = dataset.points.back().x;
  dataset.nActive = static_cast<int>(dataset.points.size());
  dataset.firstActive = 0;
  dataset.lastActive = dataset.nActive - 1;
  return {};
}

}  // namespace kalvex
