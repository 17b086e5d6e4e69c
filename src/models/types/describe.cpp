#include "models/types/describe.h"

#include <algorithm>
#include <vector>

#include "core/text.h"
#include "models/quantity.h"
#include "models/types/types.h"

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
    text += experimental ? "" : kColumnNames[static_cast<std::size_t>(cell.column)];
    text += std::string(" | ") + UseText(cell.use) + " | " + cell.meaning + " |\n";
  }
}

void AppendFills(const ModelType& type, std::string& text) {
  if (type.material) {
    text += "All 15 Quantities, those of the dielectric function above.\n";
    return;
  }
  text += "| number | `Quantity` | holds |\n|---|---|---|\n";
  for (const SlotUse& slot : type.fills) {
    text += "| " + std::to_string(slot.quantity) + " | " +
            kQuantityNames[static_cast<std::size_t>(slot.quantity)].shortName + " | " + slot.meaning + " |\n";
  }
  text += "\nThe other Quantities are 0.\n";
}

void AppendSetting(int model, const char* name, int row, double value, bool fixed, std::string& text) {
  text += "SetModelParam(ModelNo=" + std::to_string(model) + ",ParamName=\"" + name + "\"";
  if (row >= 0) text += ",LorNo=" + std::to_string(row + 1);
  text += ",Value=" + TextG(value) + (fixed ? ",FitActive=0" : "") + ");\n";
}

// The models that the cells name get the numbers from 1 on, in the order of the cells; the model itself comes last.
void AppendMacro(const ModelType& type, std::string& text) {
  const std::vector<PlacedCell> cells = PlacedCells(type.map);
  int partners = 0, datasets = 0;
  for (const PlacedCell& placed : cells) {
    const CellUse use = placed.cell->use;
    if (IsModel(use)) {
      text += "NewModel(); # " + std::to_string(++partners) + ": " + placed.cell->meaning + "\n";
    } else if (use == CellUse::kDataset) {
      const std::string number = std::to_string(++datasets);
      text += "LoadDataset(DatasetNo=" + number + ",MasterFile=\"data" + number + ".dat\"); # " + placed.cell->meaning +
              "\n";
    }
  }
  const int own = partners + 1, rows = TypicalRows(type.map);
  text += "NewModel();\n";
  if (rows == 0) text += "RemoveModelRow(ModelNo=" + std::to_string(own) + ",LorNo=1);\n";
  for (int row = 1; row < rows; ++row) text += "InsertModelRow(ModelNo=" + std::to_string(own) + ");\n";
  AppendSetting(own, "Einf", -1, -type.code, true, text);
  partners = datasets = 0;
  for (const auto& [row, cell] : cells) {
    const char* const name = kColumnNames[static_cast<std::size_t>(cell->column)];
    double value = cell->typical;
    if (IsModel(cell->use)) value = ++partners;
    if (cell->use == CellUse::kDataset) value = ++datasets;
    AppendSetting(own, name, row, value, cell->use != CellUse::kOwn, text);
  }
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

std::string PageOf(const ModelType& type) {
  std::string text = "# " + std::to_string(type.code) + ": " + type.name + "\n\n";
  if (!*type.page.sample) return text + "Not computed yet.\n";
  text += std::string("For ") + type.page.sample + ".\n\nx axis: " + type.page.axis +
          ". Rows: " + RowsText(type.map.rows) + ". " +
          (type.fitted ? "Its numbers and those of its models can be fitted."
                       : "It is for looking at: neither its numbers nor those of its models reach the fit.") +
          "\n\n## Rows\n\n| row | column | what | meaning |\n|---|---|---|---|\n";
  AppendCells(type.map, type.map.head, false, text);
  AppendCells(type.map, type.map.group, true, text);
  text += std::string("\n## Formula\n\n```\n") + type.page.formula + "\n```\n\nSource: " + type.page.source +
          ".\n\n## Results\n\n";
  AppendFills(type, text);
  text += "\n## Macro\n\n```\n";
  AppendMacro(type, text);
  return text + "```\n";
}

}  // namespace kalvex
