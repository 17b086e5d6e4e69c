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

// More rows than this would fill the memory of an ordinary machine.
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

const char* ReadOrExplain(const std::string& path, const FileMessages& messages, std::vector<DataRow>& rows) {
  switch (ReadDatasetFile(path, rows)) {
    case ReadStatus::kCannotOpen:
      return messages.cannotOpen;
    case ReadStatus::kOutOfMemory:
      return messages.outOfMemory;
    case ReadStatus::kNoUsableLine:
      return messages.noUsableLine;
    case ReadStatus::kRead:
      break;
  }
  return nullptr;
}

const char* FaultOfGrid(const Dataset& dataset) {
  if (dataset.XMin > dataset.XMax) return "Xmax should be larger, than Xmin.";
  if (dataset.XPts < 2) return "# pts should be more than 1.";
  if (dataset.XGrid == Grid::kLogarithmic && !(dataset.XMin > 0 && dataset.XMax > 0)) {
    return "For logarithmic grid Xmin and Xmax should be positive.";
  }
  return nullptr;
}

double GridPoint(const Dataset& dataset, std::size_t i) {
  const double t = static_cast<double>(i) / (dataset.XPts - 1);
  return dataset.XGrid == Grid::kLinear ? dataset.XMin + (dataset.XMax - dataset.XMin) * t
                                        : dataset.XMin * std::pow(dataset.XMax / dataset.XMin, t);
}

// The stretch of x that belongs to a row: up to the midpoints to its neighbours, ending at the row itself at the ends.
struct Cell {
  double from;
  double to;
};
Cell CellOf(std::span<const DataRow> rows, std::size_t i) {
  const double x = rows[i].x;
  return {i == 0 ? x : 0.5 * (rows[i - 1].x + x), i + 1 == rows.size() ? x : 0.5 * (x + rows[i + 1].x)};
}

// A column of one table, read at the rows of another in ascending order.
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

const char* ReadSources(const Dataset& dataset, SourceTables& tables) {
  if (const char* fault = ReadOrExplain(dataset.MasterFile, kMasterMessages, tables.master)) return fault;
  if (dataset.XMethod == XSource::kFile) {
    if (const char* fault = ReadOrExplain(dataset.XFile, kXMessages, tables.x)) return fault;
  }
  if (dataset.YErrMethod == ErrorSource::kFile) {
    if (const char* fault = ReadOrExplain(dataset.YErrFile, kYErrMessages, tables.yErr)) return fault;
  }
  return nullptr;
}

void FillX(const Dataset& dataset, const SourceTables& tables, std::span<DataRow> rows) {
  const auto& source = dataset.XMethod == XSource::kFile ? tables.x : tables.master;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i].x = dataset.XMethod == XSource::kGenerated ? GridPoint(dataset, i) : source[i].x;
  }
}

const char* FillValues(const Dataset& dataset, const SourceTables& tables, std::span<DataRow> rows) {
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
        if (!(dataset.YErrVal > 0)) return "YErr should be larger than 0.";
        rows[i].sigma = dataset.YErrVal;
        break;
    }
  }
  return nullptr;
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

const char* MakeRows(Dataset& dataset, const SourceTables& tables) {
  const std::size_t count = RowsOf(dataset, tables);
  if (count > kMostRows) return "Not enough memory for the dataset.";
  dataset.points.assign(count, DataRow{});
  FillX(dataset, tables, dataset.points);
  return FillValues(dataset, tables, dataset.points);
}

template <class Method>
Method MethodOf(std::optional<int> number) {
  return static_cast<Method>(number.value_or(1) - 1);
}

bool InRange(std::optional<int> number, int methods) { return !number || (*number >= 1 && *number <= methods); }

const char* FaultOfMethods(const LoadDatasetArgs& args) {
  if (!InRange(args.XMethod, 3)) return "XMethod should be 1, 2 or 3.";
  if (!InRange(args.XGrid, 2)) return "XGrid should be 1 or 2.";
  if (!InRange(args.YMethod, 2)) return "YMethod should be 1 or 2.";
  if (!InRange(args.YErrMethod, 3)) return "YErrMethod should be 1, 2 or 3.";
  if (!InRange(args.Match, 2)) return "Match should be 1 or 2.";
  return nullptr;
}

}  // namespace

const char* LoadDatasetRecord(Dataset& dataset, std::uint32_t& nextId) {
  SourceTables tables;
  if (const char* fault = ReadSources(dataset, tables)) return fault;
  if (dataset.XMethod == XSource::kGenerated) {
    if (const char* fault = FaultOfGrid(dataset)) return fault;
  }
  try {
    if (const char* fault = MakeRows(dataset, tables)) return fault;
  } catch (const std::bad_alloc&) {
    return "Not enough memory for the dataset.";
  }
  const std::string_view fileName = FileNameOf(dataset.MasterFile);
  dataset.Quantity = QuantityOfFileName(fileName);
  dataset.id = nextId++;
  dataset.name = CutToBytes(fileName, kDatasetNameSize);
  dataset.XMin = dataset.CutMin = dataset.points.front().x;
  dataset.XMax = dataset.CutMax = dataset.points.back().x;
  dataset.nActive = static_cast<int>(dataset.points.size());
  dataset.firstActive = 0;
  dataset.lastActive = dataset.nActive - 1;
  return nullptr;
}

const char* LoadDatasetFromMacro(DatasetTable& table, const LoadDatasetArgs& args) {
  Dataset* const dataset = DatasetInSlot(table, args.DatasetNo.value_or(1));
  if (!dataset) return "DatasetNo should be 1 to 100.";
  if (const char* fault = FaultOfMethods(args)) return fault;
  dataset->MasterFile = args.MasterFile.value_or("");
  dataset->XFile = args.XFile.value_or("");
  dataset->YErrFile = args.YErrFile.value_or("");
  dataset->XMethod = MethodOf<XSource>(args.XMethod);
  dataset->YMethod = MethodOf<YSource>(args.YMethod);
  dataset->YErrMethod = MethodOf<ErrorSource>(args.YErrMethod);
  dataset->XGrid = MethodOf<Grid>(args.XGrid);
  dataset->Match = MethodOf<Matching>(args.Match);
  dataset->XMin = args.XMin.value_or(1.0);
  dataset->XMax = args.XMax.value_or(1000.0);
  dataset->XPts = args.XPts.value_or(1000);
  dataset->YVal = args.YVal.value_or(0.0);
  dataset->YErrVal = args.YErrVal.value_or(0.01);
  if (const char* fault = LoadDatasetRecord(*dataset, table.nextId)) return fault;
  if (args.Quantity) {
    if (const auto quantity = QuantityOfShortName(*args.Quantity)) dataset->Quantity = *quantity;
  }
  return nullptr;
}

}  // namespace kalvex
