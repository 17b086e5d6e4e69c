// The documentation for users agrees with the program.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "app/kalvex_run.h"
#include "core/files.h"
#include "datasets/quantity.h"
#include "macro/command_table.h"
#include "macro/parse.h"
#include "records/model.h"
#include "support/quantities.h"

namespace kalvex {
namespace {

using Lines = std::vector<std::string>;

std::string PageAt(const std::string& path) {
  std::string text;
  EXPECT_TRUE(ReadWholeFile(ProjectFile(path), text)) << path;
  return text;
}
std::string Page(const std::string& name) { return PageAt("docs/" + name); }

Lines LinesOf(const std::string& text) {
  Lines lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

bool StartsWith(const std::string& text, const std::string& start) { return text.compare(0, start.size(), start) == 0; }
bool Holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
bool Mentions(const std::string& page, const std::string& name) { return Holds(page, '`' + name + '`'); }

// The rows "| `Name` | type |" between the heading of a command and the next heading, in the same order.
Lines ParamRows(const Lines& page, const std::string& command) {
  Lines rows;
  bool inside = false;
  for (const std::string& line : page) {
    if (StartsWith(line, "#")) inside = line == "### `" + command + '`';
    if (!inside || !StartsWith(line, "| `")) continue;
    rows.push_back(line.substr(0, line.find('|', line.find('|', 1) + 1) + 1));
  }
  return rows;
}

std::string TypeOnThePage(const MacroParam& param) {
  if (param.type == ParamType::kInteger) return "integer";
  if (param.type == ParamType::kReal) return "number";
  return "text " + std::to_string(param.length);
}

TEST(Docs, EveryCommandHasAHeadingAndItsParametersInOrderWithTheirTypes) {
  const Lines page = LinesOf(Page("macro-language.md"));
  for (const auto table : {MacroCommandTable(), MacroExtraTable()}) {
    for (const MacroCommand& command : table) {
      EXPECT_EQ(std::count(page.begin(), page.end(), "### `" + std::string(command.name) + '`'), 1) << command.name;
      Lines expected;
      for (const MacroParam& param : command.params) {
        expected.push_back("| `" + std::string(param.name) + "` | " + TypeOnThePage(param) + " |");
      }
      EXPECT_EQ(ParamRows(page, command.name), expected) << command.name;
    }
  }
}

TEST(Docs, NoCommandStandsThereThatDoesNotExist) {
  for (const std::string& line : LinesOf(Page("macro-language.md"))) {
    if (!StartsWith(line, "### `")) continue;
    const std::string name = line.substr(5, line.size() - 6);
    const MacroCommand* const command = FindCommand(name);
    ASSERT_NE(command, nullptr) << name;
    EXPECT_EQ(name, command->name);
  }
}

TEST(Docs, TheOrderOfTheNamesIsThatOfTheTables) {
  const std::string page = Page("macro-language.md");
  std::size_t at = page.find("## The order of the names");
  ASSERT_NE(at, std::string::npos);
  for (const auto table : {MacroCommandTable(), MacroExtraTable()}) {
    for (const MacroCommand& command : table) {
      at = page.find('`' + std::string(command.name) + '`', at);
      ASSERT_NE(at, std::string::npos) << command.name;
    }
  }
}

TEST(Docs, EveryQuantityAndExperimentalParameterIsExplained) {
  const std::string page = Page("models-and-quantities.md");
  for (const Quantity quantity : kEveryQuantity) {
    EXPECT_TRUE(Mentions(page, NamesOf(quantity).shortName)) << quantity;
  }
  for (const ModelParam& param : DefaultExpParams()) {
    EXPECT_NE(page.find('"' + std::string(NameOf(param)) + '"'), std::string::npos) << NameOf(param);
  }
}

// Links [text](target): the target must exist in the project, and so must the heading after a #.
std::string AnchorOf(const std::string& heading) {
  std::string anchor;
  for (const char c : heading.substr(heading.find(' ') + 1)) {
    if (std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_') {
      anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    } else if (c == ' ') {
      anchor += '-';
    }
  }
  return anchor;
}

void ExpectLinksToLead(const std::string& folder, const std::string& name) {
  const std::string text = PageAt(folder + name);
  for (std::size_t at = text.find("]("); at != std::string::npos; at = text.find("](", at + 2)) {
    const std::string target = text.substr(at + 2, text.find(')', at) - at - 2);
    if (StartsWith(target, "http")) continue;
    const std::size_t hash = target.find('#');
    const std::string file = hash == 0 ? folder + name : folder + target.substr(0, hash);
    EXPECT_TRUE(std::filesystem::exists(ProjectFile(file))) << name << " links to " << target;
    if (hash == std::string::npos) continue;
    bool found = false;
    for (const std::string& line : LinesOf(PageAt(file))) {
      found = found || (StartsWith(line, "#") && AnchorOf(line) == target.substr(hash + 1));
    }
    EXPECT_TRUE(found) << name << " links to " << target;
  }
}

TEST(Docs, EveryLinkLeadsSomewhere) {
  ExpectLinksToLead("", "README.md");
  for (const auto& entry : std::filesystem::directory_iterator(ProjectFile("docs"))) {
    if (entry.path().extension() == ".md") ExpectLinksToLead("docs/", entry.path().filename().string());
  }
  for (const auto& entry : std::filesystem::directory_iterator(ProjectFile("examples"))) {
    if (entry.is_directory()) ExpectLinksToLead("examples/" + entry.path().filename().string() + '/', "README.md");
  }
}

// Compares word by word. Numbers may differ by 1 in 10^4, because their last digits depend on the machine.
constexpr double kOfMachine = 1e-4;
void ExpectSameWords(const std::string& line, const std::string& expected) {
  std::istringstream words(line), expectedWords(expected);
  for (std::string word, expectedWord; expectedWords >> expectedWord;) {
    ASSERT_TRUE(words >> word) << line;
    char* end = nullptr;
    const double number = std::strtod(expectedWord.c_str(), &end);
    if (end != expectedWord.c_str()) {
      EXPECT_TRUE(CloseTo(std::strtod(word.c_str(), nullptr), number, kOfMachine)) << line;
    } else {
      EXPECT_EQ(word, expectedWord) << line;
    }
  }
}

class DocsOnRuns : public Kalvex {};

TEST_F(DocsOnRuns, TheFirstFitOfTheReadmeSaysWhatTheReadmeShows) {
  std::string macro;
  Lines shown;
  for (const std::string& line : LinesOf(PageAt("README.md"))) {
    if (!StartsWith(line, "    ")) continue;
    const std::string text = line.substr(4);
    if (StartsWith(text, "first.kvs:")) {
      shown.push_back(text);
    } else if (shown.empty() && text.back() == ';') {
      macro += text + '\n';
    }
  }
  ASSERT_EQ(shown.size(), 17u);
  folder.Write("R_gaas.dat", PageAt("examples/gaas/R_gaas.dat"));
  folder.Write("first.kvs", macro);
  run = RunProgram(folder, {"--verbose", "first.kvs"});
  EXPECT_EQ(run.status, 0);
  const Lines said = LinesOf(run.err);
  ASSERT_EQ(said.size(), shown.size()) << run.err;
  for (std::size_t i = 0; i < said.size(); ++i) {
    const std::size_t seconds = shown[i].find(" 0.0");  // the machine's own, and last in their line
    ExpectSameWords(said[i], shown[i].substr(0, seconds));
  }
}

// The verbose texts that the page on fitting quotes: the program must print them in the described cases.
TEST_F(DocsOnRuns, TheTroublesOfAFitAreSaidInTheQuotedWords) {
  const std::string page = Page("fitting.md");
  const std::string data = "LoadDataset(MasterFile=\"d\",Quantity=\"R\");\n";
  folder.Write("d", "100 0.3\n200 0.4\n300 0.2\n400 0.1\n500 0.15\n");
  const std::string term = "WindowFit();\nAddChiSqTerm(DatasetNo=1,ModelNo=1);\n";
  const struct {
    std::string macro, command, quoted;
  } kTroubles[] = {
      {"Fit();\n", "Fit", "the fit window is not open"},
      {"NewModel();\nAddChiSqTerm(DatasetNo=1,ModelNo=1);\n", "AddChiSqTerm", "which is not loaded"},
      {data + "NewModel();\nFixAllModelParams(ModelNo=1);\n" + term, "AddChiSqTerm", "0 free parameters"},
      {data + "NewModel();\n" + term + "Fit();\nFixAllModelParams(ModelNo=1);\nFit();\n", "Fit", "no parameter to fit"},
      {data + "NewModel();\n" + Setting(1, "Wo", 1, "Value=0") + term + "Fit();\n", "Fit",
       "parameters without influence on ChiSq at their present values: model 1 row 1 Wo"},
      {data + "NewModel();\n" + term + "Fit();\n", "Fit", "ChiSq no longer falls"},
      {data + "NewModel();\n" + Setting(1, "G", 1, "MinLimit=10,MinOn=1") + term + "Fit();\n", "Fit",
       "Lambda above its limit: no step lowers ChiSq"},
  };
  for (const auto& trouble : kTroubles) {
    EXPECT_TRUE(Holds(page, trouble.quoted)) << trouble.quoted;
    Run(trouble.macro);
    EXPECT_TRUE(Holds(Said(trouble.command), trouble.quoted)) << trouble.quoted << "\n" << run.err;
  }
}

TEST_F(DocsOnRuns, AFitWithoutParametersCountsNoIterations) {
  folder.Write("d", "100 0.3\n200 0.4\n300 0.2\n400 0.1\n500 0.15\n");
  Run("LoadDataset(MasterFile=\"d\",Quantity=\"R\");\nNewModel();\nWindowFit();\n"
      "AddChiSqTerm(DatasetNo=1,ModelNo=1);\nFit();\nFixAllModelParams(ModelNo=1);\nFit();\n");
  EXPECT_FALSE(StartsWith(EverySaid("Fit").front(), "0 iterations"));
  EXPECT_TRUE(StartsWith(Said("Fit"), "0 iterations, ")) << run.err;
}

// A term keeps its points if its dataset is cut afterwards, as the page on the language says.
TEST_F(DocsOnRuns, ACutReachesTheFitWithTheNextTerm) {
  folder.Write("d", "100 0.3\n200 0.4\n300 0.2\n400 0.1\n500 0.15\n");
  const std::string add = "AddChiSqTerm(DatasetNo=1,ModelNo=1);\n";
  Run("LoadDataset(MasterFile=\"d\",Quantity=\"R\");\nNewModel();\nWindowFit();\n" + add +
      "CutDataset(XMin=200,XMax=400);\nWindowFit();\n" + Setting(1, "Wo", 1, "Value=150") +
      "SaveModel(File=\"a.kvm\");\n" + add + "SaveModel(File=\"b.kvm\");\n");
  // R of the model at the five points. Then come two terms with the two remaining points.
  const auto sum = [](std::initializer_list<std::pair<double, double>> points) {
    double chiSq = 0;
    for (const auto& [x, y] : points) {
      chiSq += std::pow((y - ReflectivityOf(EpsOf({3, 150, 100, 10}, x))) / 0.01, 2);
    }
    return chiSq;
  };
  const double all = sum({{100, 0.3}, {200, 0.4}, {300, 0.2}, {400, 0.1}, {500, 0.15}});
  EXPECT_TRUE(CloseTo(ChiSqIn("a.asc"), all, kFiveDigits));
  EXPECT_TRUE(CloseTo(ChiSqIn("b.asc"), 2 * sum({{200, 0.4}, {300, 0.2}}), kFiveDigits));
}

}  // namespace
}  // namespace kalvex
