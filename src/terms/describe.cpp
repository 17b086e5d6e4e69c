#include "terms/describe.h"

#include <algorithm>
#include <vector>

#include "core/text.h"
#include "records/row_code.h"
#include "terms/term_table.h"

namespace kalvex {
namespace {

// "9", "25, 26", "600 to 640"
std::string CodesOf(const TermRecord& record) {
  const int last = record.firstId + record.nIds - 1;
  std::string codes = std::to_string(record.firstId);
  if (record.nIds > 1) codes += (record.nIds == 2 ? ", " : " to ") + std::to_string(last);
  return codes;
}

std::string CausalText(const TermRecord& record) { return record.page.causal ? "causal" : "not causal"; }

// The same function of the same inputs, under other codes.
bool SameTerm(const TermRecord& a, const TermRecord& b) { return a.inputs.data() == b.inputs.data(); }

std::string LinkTo(const TermRecord& record) {
  return '[' + CodesOf(record) + "](" + std::to_string(record.firstId) + ".md)";
}

template <class Holds>
std::string LinksTo(Holds holds) {
  std::string text;
  for (const TermRecord* const record : TermTable) {
    if (holds(*record)) text += (text.empty() ? "" : "; ") + LinkTo(*record);
  }
  return text;
}

const TermCell* CellAt(std::span<const TermCell> cells, int idIndex, int column) {
  const auto found = std::find_if(cells.begin(), cells.end(), [&](const TermCell& cell) {
    return cell.idIndex == idIndex && cell.column == column;
  });
  return found == cells.end() ? nullptr : &*found;
}

// ---- The content of the rows of a record, with one row for each kind of factors

struct TermRow {
  std::int32_t code;
  const TermCell* Wp;
  const TermCell* G;
  bool factor;
};

std::vector<TermRow> RowsOf(const TermRecord& record) {
  std::vector<TermRow> rows;
  rows.reserve(static_cast<std::size_t>(record.nIds) + record.factors.size());
  for (int i = 0; i < record.nIds; ++i) {
    rows.push_back({record.firstId + i, CellAt(record.inputs, i, Wp), CellAt(record.inputs, i, G), false});
  }
  for (const FactorRow& factor : record.factors)
    rows.push_back({factor.code, &factor.cells[0], &factor.cells[1], true});
  return rows;
}

std::string UseText(TermUse use) {
  switch (use) {
    case TermUse::kNumber:
      return "number";
    case TermUse::kSetting:
      return "setting";
    case TermUse::kDataset:
      return "dataset";
    case TermUse::kIdle:
      return "no influence";
  }
  return "";
}

void AppendCell(const TermRow& row, int column, std::string& text) {
  const TermCell* const cell = column == Wp ? row.Wp : row.G;
  if (!cell) return;
  text += "| " + std::to_string(row.code) + (row.factor ? ", any number of rows" : "") + " | " + kColumnNames[column] +
          " | " + UseText(cell->use) + " | " + MeaningOf(*cell) + " | " + TextG(cell->typical) + " |\n";
}

void AppendSetting(const char* name, int row, const char* items, double value, std::string& text) {
  text += std::string("SetModelParam(ModelNo=1,ParamName=\"") + name + '"';
  if (row > 0) text += ",LorNo=" + std::to_string(row);
  text += ",Value=" + TextG(value) + items + ");\n";
}

void AppendColumn(int column, int row, const TermCell* cell, std::string& text) {
  const bool fitted = cell && cell->use == TermUse::kNumber;
  AppendSetting(kColumnNames[column], row, fitted ? "" : ",FitActive=0", cell ? cell->typical : 0, text);
}

void AppendExport(const TermRecord& record, const char* quantity, std::string& text) {
  text += std::string("ExportModelCurve(ModelNo=1,Quantity=\"") + quantity + "\",XMin=" + TextG(record.page.from) +
          ",XMax=" + TextG(record.page.to) + ",XPts=" + std::to_string(kPagePoints) + ",File=\"" + quantity +
          ".dat\");\n";
}

constexpr const char* kFixed = ",FitActive=0";

// The columns Wp and G of a row with one of the record's codes.
std::string MeaningIn(const TermRecord& record, std::int32_t code, int column) {
  const auto rows = RowsOf(record);
  const auto row = std::find_if(rows.begin(), rows.end(), [&](const TermRow& of) { return of.code == code; });
  if (row == rows.end()) return "";
  if (column == Wo) return std::string(record.name);
  const TermCell* const cell = column == Wp ? row->Wp : row->G;
  return cell ? MeaningOf(*cell) : "not used";
}

}  // namespace

const TermRecord* TermOfCode(int code) {
  const TermRecord* found = nullptr;
  for (const TermRecord* const record : TermTable) {
    if (record->firstId == code) return record;
    const bool factor = std::any_of(record->factors.begin(), record->factors.end(),
                                    [&](const FactorRow& row) { return row.code == code; });
    if (!found && (factor || record->HasId(code))) found = record;
  }
  return found;
}

std::string MeaningOf(const TermCell& cell) {
  std::string text = cell.meaning;
  if (cell.line > 0) text += " of line " + std::to_string(cell.line);
  if (*cell.unit) text += std::string(", ") + cell.unit;
  return text;
}

std::string TermMeaningAt(const Model& model, int row, int column) {
  if (row < 0 || row >= RowCount(model) || column < 0 || column >= kColumns) return "";
  const std::int32_t code = RowCode(Cell(model, row, Wo));
  if (code == kPlainRow) return "";
  std::string text;
  for (const TermRecord* const record : TermTable) {
    const std::string meaning = MeaningIn(*record, code, column);
    if (!meaning.empty()) text += (text.empty() ? "" : "; ") + meaning;
  }
  return text.empty() ? "no term has the code " + std::to_string(code) : text;
}

std::string ListOfTerms() {
  std::string text;
  for (const TermRecord* const record : TermTable) {
    text += CodesOf(*record) + '\t' + record->name + '\t' + CausalText(*record) + '\n';
  }
  return text;
}

std::string IndexOfTerms() {
  std::string text =
      "# Terms with a code\n\n"
      "A row whose `Wo` is the negated code, held fixed (`FitActive=0`), is part of a term. A term needs a row for "
      "each\n"
      "of its codes; the order of the rows does not matter. Its parameters are in the columns `Wp` and `G` of those\n"
      "rows. A kind of term has several sets of codes: a model can contain it more than once. A term whose "
      "rows\n"
      "are incomplete adds nothing. Of two rows with the same code only the later one is used. A row without a code "
      "is\n"
      "the plain Lorentzian Wp^2/D(Wo, G).\n\n"
      "w is the frequency in cm-1, D(W, G) = W^2 - w^2 - i w G. A conductivity sigma in ohm-1 cm-1 adds i 60 sigma/w.\n"
      "Where a denominator vanishes the result is 1e30 in both parts. Every Quantity then has its limiting value.\n\n"
      "Real and imaginary part of a causal term are Kramers-Kronig transforms of each other; free carriers also have a "
      "pole\n"
      "at w = 0. The widths and rates must not be negative. A term that is not causal describes one "
      "of\n"
      "the two parts, or a narrow range; the rest of it is not physical.\n\n"
      "The special model \"Spectral Weight\" needs the partial spectral weight of each term of its model; it gives 0 "
      "where\n"
      "a term has none.\n\n"
      "The terms are added in the order of this list. The program makes the pages: `kalvex --describe-term N`\n"
      "prints the page of the code N, `kalvex --list-terms` prints this list.\n\n"
      "| codes | term | causal |\n|---|---|---|\n";
  for (const TermRecord* const record : TermTable) {
    text += "| " + LinkTo(*record) + " | " + record->name + " | " + (record->page.causal ? "yes" : "no") + " |\n";
  }
  return text;
}

std::string PageOf(const TermRecord& record) {
  const TermPage& page = record.page;
  std::string text = "# " + CodesOf(record) + ": " + record.name +
                     "\n\n| code | column | what | meaning | for example |\n|---|---|---|---|---|\n";
  for (const TermRow& row : RowsOf(record)) {
    AppendCell(row, Wp, text);
    AppendCell(row, G, text);
  }
  text += std::string("\n## Formula\n\n```\n") + page.formula +
          "\n```\n\nw is the frequency in cm-1, D(W, G) = W^2 - " + "w^2 - i w G.\n\nSource: " + page.source + ".\n\n" +
          page.limits + "\n\n";
  text += std::string(page.causal ? "Causal." : "Not causal.") + (*page.causality ? " " : "") + page.causality;
  text += record.scalarCalc ? " It has a partial spectral weight.\n" : " It has no partial spectral weight.\n";
  if (record.replacesRealPart) text += "\nThe real part of this term replaces the real part of the sum so far.\n";
  const std::string same =
      LinksTo([&](const TermRecord& other) { return &other != &record && SameTerm(other, record); });
  if (!same.empty()) text += "\nThe same term under other codes: " + same + ".\n";
  if (record.sharesCodes) {
    const std::string others = LinksTo([&](const TermRecord& other) {
      return &other != &record && other.firstId < record.firstId + record.nIds &&
             record.firstId < other.firstId + other.nIds;
    });
    text += "\nIt has a code in common with " + others + ": a row with such a code belongs to each of these terms.\n";
  }
  return text + "\n## Macro\n\nThe term alone, without the 1 of the vacuum.\n\n```\n" + MacroOf(record) + "```\n";
}

std::string MacroOf(const TermRecord& record) {
  std::string text;
  int datasets = 0;
  for (const TermCell& cell : record.inputs) {
    if (cell.use != TermUse::kDataset) continue;
    const std::string number = std::to_string(++datasets);
    text.append("LoadDataset(DatasetNo=").append(number).append(",MasterFile=\"data").append(number);
    text.append(".dat\"); # ").append(cell.meaning).append("\n");
  }
  const std::vector<TermRow> rows = RowsOf(record);
  text += "NewModel();\n";
  for (std::size_t row = 1; row < rows.size(); ++row) text += "InsertModelRow(ModelNo=1);\n";
  AppendSetting("Einf", 0, kFixed, 0, text);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const int row = static_cast<int>(i) + 1;
    AppendSetting("Wo", row, kFixed, -rows[i].code, text);
    AppendColumn(Wp, row, rows[i].Wp, text);
    AppendColumn(G, row, rows[i].G, text);
  }
  AppendExport(record, "E1", text);
  AppendExport(record, "E2", text);
  return text;
}

}  // namespace kalvex
