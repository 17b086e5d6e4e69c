#include "types/describe.h"

#include <algorithm>
#include <vector>

#include "core/text.h"
#include "datasets/quantity.h"
#include "types/types.h"

namespace kalvex {
namespace {

const char* UseText(CellUse use) {
  switch (use) {
    case CellUse::kPartner:
      return "model";
    case CellUse::kReference:
      return "model, held fixed";
    case CellUse::kOptional:
      return "model, 0 for vacuum";
    case CellUse::kEvaluated:
      return "model, its Quantities";
    case CellUse::kEvaluatedIf:
      return "model, its Quantities; 0 for none";
    case CellUse::kMeshPartner:
      return "model, the mesh of its variational dielectric function";
    case CellUse::kDataset:
      return "dataset";
    case CellUse::kOwnMesh:
      return "switch";
    case CellUse::kOwn:
      return "number";
    case CellUse::kSetting:
      return "setting";
    case CellUse::kExperimental:
      return "experimental parameter";
  }
  return "";
}

bool HasNumber(CellUse use) { return use == CellUse::kOwn || use == CellUse::kSetting || use == CellUse::kOwnMesh; }

std::string RowsText(const RowRule& rule) {
  if (rule.least == rule.most) return std::to_string(rule.least);
  if (rule.most != kAnyNumber) return std::to_string(rule.least) + " to " + std::to_string(rule.most);
  if (rule.least == 0 && rule.step == 1) return "any number";
  std::string text = std::to_string(rule.least) + " or more";
  if (rule.step > 1) text += ", in steps of " + std::to_string(rule.step);
  return text;
}

bool IsModel(CellUse use) {
  return use == CellUse::kPartner || use == CellUse::kReference || use == CellUse::kOptional ||
         use == CellUse::kEvaluated || use == CellUse::kEvaluatedIf || use == CellUse::kMeshPartner;
}

// A cell of the rows that the page's macro sets up.
struct PlacedCell {
  int row;
  const RowCell* cell;
};

std::vector<PlacedCell> PlacedCells(const RowMap& map) {
  std::vector<PlacedCell> placed;
  for (int row = 0; row < TypicalRows(map); ++row) {
    for (int column = 0; column < kColumns; ++column) {
      if (const RowCell* const cell = CellAt(map, row, column)) placed.push_back({row, cell});
    }
  }
  return placed;
}

std::string RowLabel(const RowMap& map, const RowCell& cell, bool inGroup) {
  if (cell.use == CellUse::kExperimental) return "";
  if (!inGroup) return std::to_string(cell.row + 1);
  std::string label = std::to_string(map.groupStart + cell.row + 1);
  for (int k = 1; k <= 2; ++k) label += ", " + std::to_string(map.groupStart + cell.row + k * map.groupRows + 1);
  return label + ", ...";
}

void AppendCells(const RowMap& map, std::span<const RowCell> cells, bool inGroup, std::string& text) {
  for (const RowCell& cell : cells) {
    const bool experimental = cell.use == CellUse::kExperimental;
    text += "| " + RowLabel(map, cell, inGroup) + " | ";
    text += experimental ? "" : kColumnNames[cell.column];
    text += std::string(" | ") + UseText(cell.use) + " | " + cell.meaning + " | ";
    text += (HasNumber(cell.use) ? TextG(cell.typical) : "") + " |\n";
  }
}

void AppendFills(const ModelType& type, std::string& text) {
  if (type.material) {
    text += "All Quantities, those of the dielectric function above.\n";
    return;
  }
  text += "| number | `Quantity` | holds |\n|---|---|---|\n";
  for (const SlotUse& slot : type.fills) {
    text += "| " + std::to_string(NumberOf(slot.quantity)) + " | " + NamesOf(slot.quantity).shortName + " | " +
            slot.meaning + (slot.period > 0 ? "; period " + TextG(slot.period) : "") + " |\n";
  }
  text += "\nThe other Quantities are 0.\n";
}

void AppendSetting(int model, const char* name, int row, double value, bool fixed, std::string& text) {
  text += "SetModelParam(ModelNo=" + std::to_string(model) + ",ParamName=\"" + name + "\"";
  if (row >= 0) text += ",LorNo=" + std::to_string(row + 1);
  text += ",Value=" + TextG(value) + (fixed ? ",FitActive=0" : "") + ");\n";
}

// The numbers of the last model and dataset that the macro has made.
struct Numbers {
  int models = 0;
  int datasets = 0;
};

int AppendModel(const ModelType& type, const char* meaning, Numbers& numbers, std::string& text);

// Appends the statements that make the partner or dataset of a cell; returns its number, or the cell's typical value.
double AppendNamed(const RowCell& cell, Numbers& numbers, std::string& text) {
  if (cell.use == CellUse::kDataset) {
    const std::string number = std::to_string(++numbers.datasets);
    text += "LoadDataset(DatasetNo=" + number + ",MasterFile=\"data" + number + ".dat\"); # " + cell.meaning + "\n";
    return numbers.datasets;
  }
  if (!IsModel(cell.use)) return cell.typical;
  const bool evaluated = cell.use == CellUse::kEvaluated || cell.use == CellUse::kEvaluatedIf;
  if (const ModelType* const type = evaluated ? TypeOfCode(static_cast<int>(cell.typical)) : nullptr) {
    return AppendModel(*type, cell.meaning, numbers, text);
  }
  const std::string number = std::to_string(++numbers.models);
  text += "NewModel(); # " + number + ": " + cell.meaning + "\n";
  if (cell.use == CellUse::kMeshPartner) text += "LoadVarDielFunc(ModelNo=" + number + ",File=\"mesh.kvv\");\n";
  return numbers.models;
}

// Appends the statements that make a model of a type with its partners and datasets; returns its number.
int AppendModel(const ModelType& type, const char* meaning, Numbers& numbers, std::string& text) {
  const std::vector<PlacedCell> cells = PlacedCells(type.map);
  std::vector<double> values;
  values.reserve(cells.size());
  for (const PlacedCell& placed : cells) values.push_back(AppendNamed(*placed.cell, numbers, text));
  const int own = ++numbers.models, rows = TypicalRows(type.map);
  text += "NewModel(); # " + std::to_string(own) + ": " + meaning + "\n";
  if (rows == 0) text += "RemoveModelRow(ModelNo=" + std::to_string(own) + ",LorNo=1);\n";
  for (int row = 1; row < rows; ++row) text += "InsertModelRow(ModelNo=" + std::to_string(own) + ");\n";
  AppendSetting(own, "Einf", -1, -type.code, true, text);
  for (std::size_t k = 0; k < cells.size(); ++k) {
    const RowCell& cell = *cells[k].cell;
    const char* const name = kColumnNames[cell.column];
    AppendSetting(own, name, cells[k].row, values[k], cell.use != CellUse::kOwn, text);
  }
  return own;
}

}  // namespace

const ModelType* TypeOfCode(int code) {
  for (const ModelType* const type : ModelTypeTable) {
    if (type->code == code) return type;
  }
  return nullptr;
}

const RowCell* CellAt(const RowMap& map, int row, int column) {
  const auto find = [&](std::span<const RowCell> cells, int r) {
    const auto found = std::find_if(cells.begin(), cells.end(), [&](const RowCell& cell) {
      return cell.use != CellUse::kExperimental && cell.row == r && cell.column == column;
    });
    return found == cells.end() ? nullptr : &*found;
  };
  if (const RowCell* const cell = find(map.head, row)) return cell;
  if (map.group.empty() || row < map.groupStart) return nullptr;
  return find(map.group, (row - map.groupStart) % map.groupRows);
}

int TypicalRows(const RowMap& map) {
  int rows = map.rows.least;
  for (const RowCell& cell : map.head) {
    if (cell.use != CellUse::kExperimental) rows = std::max(rows, cell.row + 1);
  }
  if (!map.group.empty()) rows = std::max(rows, map.groupStart + 2 * map.groupRows);
  return std::min(rows, map.rows.most);
}

std::string ListOfTypes() {
  std::string text;
  for (const ModelType* const type : ModelTypeTable) {
    text += std::to_string(type->code) + '\t' + type->name;
    if (*type->page.sample) text += std::string("\t") + type->page.sample;
    text += '\n';
  }
  return text;
}

std::string IndexOfTypes() {
  std::string text =
      "# Special models\n\n"
      "A model becomes a special one when its `Einf` is the negative of a code and not free in the fit. The rows are\n"
      "then the arguments of the type. The program makes these pages: `kalvex --describe-type N` prints one,\n"
      "`kalvex --list-types` prints this list.\n\n| code | name | for |\n|---|---|---|\n";
  for (const ModelType* const type : ModelTypeTable) {
    const std::string code = std::to_string(type->code);
    const bool computed = *type->page.sample != 0;
    text.append("| ");
    computed ? text.append("[").append(code).append("](").append(code).append(".md)") : text.append(code);
    text.append(" | ").append(type->name);
    text.append(" | ").append(computed ? type->page.sample : "not computed yet").append(" |\n");
  }
  return text;
}

std::string PageOf(const ModelType& type) {
  std::string text = "# " + std::to_string(type.code) + ": " + type.name + "\n\n";
  if (!*type.page.sample) return text + "Not computed yet.\n";
  text += std::string("For ") + type.page.sample + ".\n\nx axis: " + type.page.axis +
          ". Rows: " + RowsText(type.map.rows) + ". " +
          (type.fitted ? "Its numbers and those of its models can be fitted."
                       : "It cannot be fitted: neither its numbers nor those of its models are fit parameters.") +
          "\n\n## Rows\n\n| row | column | what | meaning | for example |\n|---|---|---|---|---|\n";
  AppendCells(type.map, type.map.head, false, text);
  AppendCells(type.map, type.map.group, true, text);
  text += std::string("\n## Formula\n\n```\n") + type.page.formula + "\n```\n\nSource: " + type.page.source +
          ".\n\n## Results\n\n";
  AppendFills(type, text);
  return text + "\n## Macro\n\n```\n" + MacroOf(type) + "```\n";
}

std::string MacroOf(const ModelType& type) {
  std::string text;
  Numbers numbers;
  AppendModel(type, type.name, numbers, text);
  return text;
}

}  // namespace kalvex
