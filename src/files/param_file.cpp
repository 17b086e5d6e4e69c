#include "files/param_file.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "core/bytes.h"
#include "core/files.h"
#include "core/text.h"
#include "records/model_table.h"

// Little-endian and packed, one record for each element: i32 table entry | i32 row | i32 column | f64 value

namespace kalvex {
namespace {

constexpr std::size_t kRecordSize = 20;
constexpr std::size_t kMostNameLength = 19;

// Takes words and whole numbers, separated by white space, off the front of a text.
class WordReader {
 public:
  explicit WordReader(std::string_view text) : rest_(text) {}

  std::optional<int> Integer() {
    std::int32_t value = 0;
    const char* const after = ParseInteger(rest_.data(), rest_.data() + rest_.size(), value);
    if (after == rest_.data()) return std::nullopt;
    rest_.remove_prefix(static_cast<std::size_t>(after - rest_.data()));
    return value;
  }

  std::optional<std::string> Word() {
    constexpr std::string_view kBlanks = " \t\n\r\v\f";
    rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
    const std::string_view word = rest_.substr(0, rest_.find_first_of(kBlanks));
    rest_.remove_prefix(word.size());
    if (word.empty() || word.size() > kMostNameLength) return std::nullopt;
    return std::string(word);
  }

 private:
  std::string_view rest_;
};

struct SpecialEntry {
  std::string file;
  std::string label;
  double value = 0;
  double error = 0;
};

std::optional<SpecialEntry> ReadEntry(const ParamTables& tables, WordReader& in) {
  const auto file = in.Word(), label = in.Word();
  const auto number = in.Integer(), row = in.Integer(), column = in.Integer();
  if (!file || !label || !number || !row || !column) return std::nullopt;
  const Model* const model = *number > 0 ? GetModelByNumber(tables, static_cast<std::uint32_t>(*number)) : nullptr;
  if (!model || *row < 1 || *row > RowCount(*model) || *column < 1 || *column > kColumns) return std::nullopt;
  const ModelParam& param = Cell(*model, *row - 1, *column - 1);
  return SpecialEntry{*file, *label, param.value, param.error};
}

bool ReadConfiguration(const ParamTables& tables, std::vector<SpecialEntry>& entries) {
  std::string text;
  if (!ReadTextFile("ParsSpecial.cfg", text)) return false;
  WordReader in(text);
  const auto count = in.Integer();
  if (!count || *count < 1) return false;
  for (int i = 0; i < *count; ++i) {
    auto entry = ReadEntry(tables, in);
    if (!entry) return false;
    entries.push_back(std::move(*entry));
  }
  return true;
}

std::string LineOf(const SpecialEntry& entry) {
  return entry.label + ' ' + TextG(entry.value) + ' ' + TextG(entry.error) + '\n';
}

}  // namespace

Status SaveParams(const ParamTables& tables, const std::string& path) {
  ByteWriter out;
  for (const Model& model : tables.models) {
    if (model.number == 0) continue;
    for (int row = 0; row < RowCount(model); ++row) {
      for (int column = 0; column < kColumns; ++column) {
        out.I32(SlotOf(tables, model));
        out.I32(row);
        out.I32(column);
        out.F64(Cell(model, row, column).value);
      }
    }
  }
  return WriteWholeFile(path, out.Content());
}

Result<std::vector<std::uint32_t>> LoadParams(ParamTables& tables, const std::string& path) {
  std::string content;
  if (!ReadWholeFile(path, content)) return CannotOpen(path);
  ByteReader in(content);
  const auto readModel = [&](Model& model) {
    for (int row = 0; row < RowCount(model); ++row) {
      for (int column = 0; column < kColumns; ++column) {
        if (in.Left() < kRecordSize) return false;
        const std::int32_t slot = in.I32(), savedRow = in.I32(), savedColumn = in.I32();
        if (slot != SlotOf(tables, model) || savedRow != row || savedColumn != column) return false;
        Cell(model, row, column).value = in.F64();
      }
    }
    return true;
  };
  std::vector<std::uint32_t> complete;
  for (Model& model : tables.models) {
    if (model.number == 0) continue;
    if (!readModel(model)) break;
    complete.push_back(model.number);
  }
  return complete;
}

Status SaveParamsSpecial(const ParamTables& tables) {
  std::vector<SpecialEntry> entries;
  if (!ReadConfiguration(tables, entries)) {
    return {StatusCode::kBadFormat, "'ParsSpecial.cfg' is missing or has a wrong entry", "ParsSpecial.cfg"};
  }
  std::stable_sort(entries.begin(), entries.end(),
                   [](const SpecialEntry& a, const SpecialEntry& b) { return a.file < b.file; });
  for (auto first = entries.begin(); first != entries.end();) {
    const auto end = std::find_if(first, entries.end(), [&](const SpecialEntry& e) { return e.file != first->file; });
    std::string text;
    for (auto entry = first; entry != end; ++entry) text += LineOf(*entry);
    if (Status written = WriteWholeFile(first->file, text); !written.Ok()) return written;
    first = end;
  }
  return {};
}

}  // namespace kalvex
