#include "files/model_file.h"

#include <algorithm>
#include <array>

#include "core/bytes.h"
#include "core/files.h"
#include "core/text.h"
#include "evaluation/eval_model.h"
#include "records/model_rows.h"

// Little-endian and packed, n rows:
//     0            218       record of epsInf
//     218          4         i32 n
//     222          654 n     records of the elements, row by row
//     222 + 654 n  4         i32 marker 1
//     226 + 654 n  36 n      limits of the elements; a file of the older form ends before the marker
// A record, 218 bytes:
//     0 f64 value | 8 f64 error | 16 u32 adjustable | 20 f64 min | 28 f64 max | 36 char[50] name | 86 f64 dEpsRe |
//     94 f64 dEpsIm | 102 f64[14] dQuantity 0 to 13 | 214 u32 reserved
// Limits, 12 bytes:
//     0 u32 useMin | 4 u32 useMax | 8 u32 coupling

namespace kalvex {
namespace {

constexpr std::size_t kRecordSize = 218;
constexpr std::size_t kLimitsSize = 12;
// Told by the layout: those up to kDefringed.
constexpr QuantitySet kStoredSlopes = {kRefl, kTrans, kRp, kRs, kRps,   kE1,   kE2,
                                       kS1,   kS2,    kN1, kN2, kDepth, kLoss, kDefringed};
constexpr std::int32_t kMarker = 1;

// Up to this count, rows that are missing in the file repeat its last record. A larger count is probably damaged; then
// only the rows in the file are made.
constexpr std::int32_t kMostMissingRows = 10000;

void WriteRecord(ByteWriter& out, const ModelParam& param) {
  out.F64(param.value);
  out.F64(param.error);
  out.U32(param.adjustable);
  out.F64(param.min);
  out.F64(param.max);
  out.Bytes(param.name);
  out.F64(param.savedSlopes.dEpsRe);
  out.F64(param.savedSlopes.dEpsIm);
  for (const Quantity q : kStoredSlopes) out.F64(param.savedSlopes.dQuantity[q]);
  out.U32(param.reserved);
}

void ReadRecord(std::string_view bytes, ModelParam& param) {
  ByteReader in(bytes);
  param.value = in.F64();
  param.error = in.F64();
  param.adjustable = in.U32();
  param.min = in.F64();
  param.max = in.F64();
  in.Bytes(param.name);
  param.savedSlopes.dEpsRe = in.F64();
  param.savedSlopes.dEpsIm = in.F64();
  for (const Quantity q : kStoredSlopes) param.savedSlopes.dQuantity[q] = in.F64();
  param.reserved = in.U32();
}

std::string ModelBytes(const Model& model) {
  ByteWriter out;
  WriteRecord(out, model.epsInf);
  out.I32(RowCount(model));
  for (const ModelParam& param : model.rows) WriteRecord(out, param);
  out.I32(kMarker);
  for (const ModelParam& param : model.rows) {
    out.U32(param.useMin);
    out.U32(param.useMax);
    out.U32(param.coupling);
  }
  return std::string(out.Content());
}

void AppendValueAndError(std::string& text, const ModelParam& param) {
  AppendFixed(text, param.value);
  text += " \xB1 ";  // the plus-minus sign as one byte, as the readers of these files expect it
  if (param.error == kNotDetermined) {
    text += "not determined";
  } else {
    AppendFixed(text, param.error);
  }
  text += '\n';
}

std::string SummaryOf(const Model& model, double totalChiSq) {
  std::string text = "ChiSq = ";
  AppendScientific(text, totalChiSq, 4, 10);
  text += "\n\nEinf = ";
  AppendValueAndError(text, model.epsInf);
  text += '\n';
  for (int row = 0; row < RowCount(model); ++row) {
    constexpr std::array<const char*, kColumns> kNames = {"Wo", "Wp", "G "};
    for (int column = 0; column < kColumns; ++column) {
      text += kNames[static_cast<std::size_t>(column)];
      text += '[' + std::to_string(row) + "] = ";
      AppendValueAndError(text, Cell(model, row, column));
    }
    text += '\n';
  }
  return text;
}

std::string TableLineOf(EvalContext& ctx, const Model& model, double totalChiSq, std::string_view fileName) {
  std::string line(fileName);
  const auto field = [&](double value) {
    AppendScientific(line, value, 4, 10);
    line += ' ';
  };
  line += ' ';
  field(totalChiSq);
  AppendFixed(line, model.epsInf.value);
  line += ' ';
  for (const ModelParam& param : model.rows) {
    field(param.value);
    field(param.error == kNotDetermined ? std::nan("") : param.error);
  }
  field(ZeroFrequencyWeight(ctx, model));
  return line + '\n';
}

std::int32_t RowsToMake(std::int32_t count, std::size_t bytesLeft) {
  if (count <= kMostMissingRows) return std::max(count, 0);
  const std::size_t rowSize = kColumns * kRecordSize;
  return static_cast<std::int32_t>(
      std::min<std::size_t>(static_cast<std::size_t>(count), (bytesLeft + rowSize - 1) / rowSize));
}

}  // namespace

std::string SummaryNameOf(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  return std::string(dot == std::string_view::npos ? "" : path.substr(0, dot + 1)) + "asc";
}

std::string TableNameOf(std::string_view path) { return std::string(DirectoryOf(path)) + "Par.dat"; }

Status SaveModel(EvalContext& ctx, const Model& model, double totalChiSq, const std::string& path) {
  if (Status written = WriteWholeFile(path, ModelBytes(model)); !written.Ok()) return written;
  // Only the model file decides about success. The summaries for people are not checked.
  WriteWholeFile(SummaryNameOf(path), SummaryOf(model, totalChiSq)).Ignore();
  AppendToFile(TableNameOf(path), TableLineOf(ctx, model, totalChiSq, FileNameOf(path))).Ignore();
  return {};
}

Status LoadModel(Model& model, const std::string& path) {
  std::string content;
  if (!ReadWholeFile(path, content)) return CannotOpen(path);
  if (content.size() < kRecordSize + sizeof(std::int32_t)) {
    return {StatusCode::kBadFormat, "'" + path + "' is not a model file", path};
  }
  ByteReader in(content);
  std::array<char, kRecordSize> record{};
  const std::string_view recordBytes(record.data(), record.size());
  in.Bytes(record);
  ReadRecord(recordBytes, model.epsInf);
  const std::int32_t count = in.I32();
  ClearRows(model);
  const std::int32_t rows = RowsToMake(count, in.Left());
  for (std::int32_t row = 0; row < rows; ++row) {
    InsertRow(model, row);
    for (int column = 0; column < kColumns; ++column) {
      in.Bytes(record);  // at the end of a truncated file the rest of the previous record stays
      ReadRecord(recordBytes, Cell(model, row, column));
    }
  }
  if (in.Left() < sizeof(std::int32_t)) return {};
  in.I32();
  for (ModelParam& param : model.rows) {
    if (in.Left() < kLimitsSize) break;
    param.useMin = in.U32();
    param.useMax = in.U32();
    param.coupling = in.U32();
  }
  return {};
}

}  // namespace kalvex
