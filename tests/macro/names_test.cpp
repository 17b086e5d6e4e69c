// Names of commands and parameters, their abbreviations, and the tables whose order resolves them.
#include <gtest/gtest.h>

#include "core/files.h"
#include "core/text.h"
#include "macro/command_table.h"
#include "macro/parse.h"
#include "support/scratch_folder.h"

namespace kalvex {
namespace {

struct Signature {
  const char* name;
  const char* params;  // name and type: i, r, or the capacity of a text
};

// The commands of the macro format, in the order that resolves abbreviations.
constexpr Signature kFormat[] = {
    {"BeginLoop", "LoopFile:200"},
    {"EndLoop", ""},
    {"MainWindow", "XPos:i YPos:i Width:i Height:i Title:200"},
    {"Wait", "Time:i"},
    {"Suspend", ""},
    {"Exit", "QuitApp:i"},
    {"DatasetManager", "XPos:i YPos:i"},
    {"LoadDataset",
     "DatasetNo:i Quantity:10 MasterFile:200 XMethod:i XFile:200 XMin:r XMax:r XPts:i XGrid:i YMethod:i YVal:r "
     "YErrMethod:i YErrFile:200 YErrVal:r Match:i"},
    {"UnloadDataset", "DatasetNo:i"},
    {"TransformDataset", "DatasetNo:i Scale:r Shift:r"},
    {"ExportDataset", "DatasetNo:i File:200 ExportFitted:i ExportErrorBars:i"},
    {"AddNoise", "DatasetNo:i Sigma:r"},
    {"CutDataset", "DatasetNo:i XMin:r XMax:r"},
    {"NewModel", "XPos:i YPos:i Width:i Height:i VarDielFuncSeen:i"},
    {"SaveModel", "ModelNo:i File:200"},
    {"LoadModel", "ModelNo:i File:200"},
    {"SaveVarDielFunc", "ModelNo:i File:200"},
    {"LoadVarDielFunc", "ModelNo:i File:200"},
    {"SetModelParam",
     "ModelNo:i ParamName:100 LorNo:i Value:r FitActive:i MinLimit:r MaxLimit:r MinOn:i MaxOn:i CoupledTo:i Update:i"},
    {"CopyModelParam", "DestModelNo:i DestParamName:100 DestLorNo:i SourceModelNo:i SourceParamName:100 SourceLorNo:i"},
    {"FixAllModelParams", "ModelNo:i"},
    {"FreeShape", "ModelNo:i Key:100"},
    {"VarDielFunc",
     "ModelNo:i Source1DatasetNo:i Source1Every2nd:i Source2DatasetNo:i Source2Every2nd:i Source3DatasetNo:i "
     "Source3Every2nd:i KK:i On:i FitActive:i"},
    {"NewGraph", "XPos:i YPos:i Width:i Height:i"},
    {"GraphProperties", "GraphNo:i Xmin:r Xmax:r Xlog:i XTitle:100 Ymin:r Ymax:r Ylog:i YTitle:100 ShowFitted:i"},
    {"AddDataCurve",
     "GraphNo:i DatasetNo:i nColor:i ShowLine:i ShowSymbol:i ShowError:i nSymbolSize:i nSymbolShape:i SymbolOpen:i "
     "Scale:r Shift:r"},
    {"AddModelCurve", "GraphNo:i ModelNo:i Quantity:10 nColor:i Scale:r Shift:r"},
    {"DeleteDataCurve", "GraphNo:i DatasetNo:i"},
    {"DeleteModelCurve", "GraphNo:i ModelNo:i Quantity:10"},
    {"ExportModelCurve", "File:200 ModelNo:i XMethod:i Quantity:10 XMin:r XMax:r XPts:i XGrid:i Deriv:i"},
    {"ExpParams", "XPos:i YPos:i"},
    {"SetExpParam", "ParamName:100 Value:r FitActive:i MinLimit:r MaxLimit:r MinOn:i MaxOn:i CoupledTo:i"},
    {"WindowFit", "XPos:i YPos:i"},
    {"AddChiSqTerm", "DatasetNo:i ModelNo:i Weight:r"},
    {"DeleteChiSqTerm", "DatasetNo:i ModelNo:i"},
    {"Fit", "NumIters:i Starts:i Seed:i"},
};

// Additional commands, for what a person could otherwise do only in windows.
constexpr Signature kOwn[] = {
    {"InsertModelRow", "ModelNo:i LorNo:i"},
    {"RemoveModelRow", "ModelNo:i LorNo:i"},
    {"MoveModelRow", "ModelNo:i LorNo:i Up:i"},
    {"SortModelRows", "ModelNo:i Key:i"},
    {"CloseModel", "ModelNo:i"},
    {"SetDatasetQuantity", "DatasetNo:i Quantity:10 Update:i"},
    {"FitOptions",
     "StopOnIterations:i MaxIterations:i StopOnTime:i MaxSeconds:i StopOnReduction:i ReductionIterations:i "
     "ReductionAmount:r StopOnLambda:i MaxLambda:r InitialLambda:r CalcConfidence:i DeltaChiSq:r LogFit:i "
     "Method:i RelativeReduction:i StandardErrors:i WrapAngles:i SkipInvalid:i NeedsWindow:i"},
    {"UndoFit", ""},
    {"QuantityErrorBars", ""},
    {"DumpDerivatives", ""},
    {"DumpSensitivity", ""},
    {"Echo", "Text:200"},
    {"MakeVarDielFuncPositive", "ModelNo:i"},
    {"SaveParams", "File:200"},
    {"LoadParams", "File:200"},
    {"SaveParamsSpecial", ""},
    {"TestDerivatives", ""},
    {"TestQuantityDerivatives", ""},
    {"WriteGapTable", ""},
    {"AddChiSqCurve", "GraphNo:i DatasetNo:i ModelNo:i nColor:i Scale:r Shift:r"},
    {"AddMultiCurve", "GraphNo:i ModelNo:i Quantity:10 nColor:i Scale:r Shift:r"},
    {"AddFreqCurve", "GraphNo:i ModelNo:i nColor:i"},
    {"ExportGraph", "GraphNo:i File:200"},
    {"DrawGraph", "GraphNo:i File:200 Width:i Height:i"},
    {"CloseGraph", "GraphNo:i"},
    {"StepBack", ""},
    {"StepForward", ""},
    {"Defaults", "Level:i OnError:20"},
    {"ExportResiduals", "File:200 DatasetNo:i ModelNo:i"},
};

const std::span<const Signature> kTables[] = {kFormat, kOwn};

std::string ParamsOf(const MacroCommand& command) {
  std::string params;
  for (const MacroParam& param : command.params) {
    const std::string type = param.type == ParamType::kInteger ? "i"
                             : param.type == ParamType::kReal  ? "r"
                                                               : std::to_string(param.length);
    params += (params.empty() ? "" : " ") + std::string(param.name) + ':' + type;
  }
  return params;
}

TEST(CommandTables, TheFormatHas36CommandsWithTheirParametersInOrder) {
  const auto table = MacroCommandTable();
  ASSERT_EQ(table.size(), 36u);
  ASSERT_EQ(std::size(kFormat), 36u);
  for (std::size_t i = 0; i < table.size(); ++i) {
    EXPECT_STREQ(table[i].name, kFormat[i].name) << "row " << i;
    EXPECT_EQ(ParamsOf(table[i]), kFormat[i].params) << kFormat[i].name;
  }
}

TEST(CommandTables, OurOwnCommandsStandInASecondTable) {
  const auto table = MacroExtraTable();
  ASSERT_EQ(table.size(), std::size(kOwn));
  for (std::size_t i = 0; i < std::size(kOwn); ++i) {
    EXPECT_STREQ(table[i].name, kOwn[i].name);
    EXPECT_EQ(ParamsOf(table[i]), kOwn[i].params) << kOwn[i].name;
  }
}

TEST(CommandTables, NamesAndBlocksKeepTheSizesOfTheFormat) {
  for (const auto table : {MacroCommandTable(), MacroExtraTable()}) {
    for (const MacroCommand& command : table) {
      EXPECT_LE(std::string(command.name).size(), 30u) << command.name;
      EXPECT_LE(command.params.size(), 30u) << command.name;
      EXPECT_NE(command.run, nullptr) << command.name;
      for (const MacroParam& param : command.params) EXPECT_LE(std::string(param.name).size(), 30u) << param.name;
    }
  }
}

// The meaning of a text, derived from the lists above: the first name that starts with it.
std::string Meaning(const std::string& text) {
  for (const std::span<const Signature> table : kTables) {
    for (const Signature& row : table) {
      const std::string name = row.name;
      if (name.size() >= text.size() && EqualsIgnoringCase(name.substr(0, text.size()), text)) return name;
    }
  }
  return "";
}

// One line for each name: how many of its letters are necessary for which meaning. "Fit: 1 FixAllModelParams, 3 Fit".
template <class Find>
std::string MeaningsOfBeginnings(const std::string& line, const std::string& name, Find find) {
  std::string text = line, last;
  for (std::size_t n = 1; n <= name.size(); ++n) {
    const auto* const found = find(name.substr(0, n));
    const std::string meaning = found ? found->name : "nothing";
    if (meaning != last) text += (n == 1 ? ": " : ", ") + std::to_string(n) + ' ' + meaning;
    last = meaning;
  }
  return text + '\n';
}

std::string MeaningsOfAllBeginnings() {
  std::string text;
  for (const auto table : {MacroCommandTable(), MacroExtraTable()}) {
    for (const MacroCommand& command : table) {
      const std::string name = command.name;
      text += MeaningsOfBeginnings(name, name, FindCommand);
      for (const MacroParam& param : command.params) {
        text += MeaningsOfBeginnings(name + '.' + param.name, param.name,
                                     [&](const std::string& begin) { return FindParam(command, begin); });
      }
    }
  }
  return text;
}

TEST(Names, EveryBeginningOfANameMeansTheFirstRowThatItBegins) {
  for (const std::span<const Signature> table : kTables) {
    for (const Signature& row : table) {
      const std::string name = row.name;
      for (std::size_t n = 1; n <= name.size(); ++n) {
        const MacroCommand* const found = FindCommand(name.substr(0, n));
        ASSERT_NE(found, nullptr) << name.substr(0, n);
        EXPECT_EQ(found->name, Meaning(name.substr(0, n))) << name.substr(0, n);
      }
    }
  }
}

TEST(Names, AbbreviationsMeanTheFirstOfTheTable) {
  const struct {
    const char* text;
    const char* name;
  } kMeanings[] = {{"Load", "LoadDataset"},
                   {"LoadM", "LoadModel"},
                   {"LoadV", "LoadVarDielFunc"},
                   {"E", "EndLoop"},
                   {"Ex", "Exit"},
                   {"Exp", "ExportDataset"},
                   {"ExpP", "ExpParams"},
                   {"Fi", "FixAllModelParams"},
                   {"Fit", "Fit"},
                   {"fit", "Fit"},
                   {"FitO", "FitOptions"},
                   {"F", "FixAllModelParams"},
                   {"S", "Suspend"},
                   {"SaveV", "SaveVarDielFunc"},
                   {"Set", "SetModelParam"},
                   {"SetE", "SetExpParam"},
                   {"SetD", "SetDatasetQuantity"},
                   {"W", "Wait"},
                   {"Win", "WindowFit"},
                   {"Delete", "DeleteDataCurve"},
                   {"Ec", "Echo"},
                   {"C", "CutDataset"},
                   {"Cl", "CloseModel"},
                   {"U", "UnloadDataset"},
                   {"Und", "UndoFit"},
                   {"Undo", "UndoFit"},
                   {"St", "StepBack"},
                   {"StepF", "StepForward"},
                   {"New", "NewModel"},
                   {"NewG", "NewGraph"}};
  for (const auto& c : kMeanings) {
    ASSERT_NE(FindCommand(c.text), nullptr) << c.text;
    EXPECT_STREQ(FindCommand(c.text)->name, c.name) << c.text;
  }
}

TEST(Names, ParametersAreShortenedByTheSameRule) {
  const MacroCommand& load = *FindCommand("LoadDataset");
  const struct {
    const char* text;
    const char* name;
  } kMeanings[] = {{"X", "XMethod"},     {"XF", "XFile"},    {"XMi", "XMin"},      {"xma", "XMax"},
                   {"XP", "XPts"},       {"XG", "XGrid"},    {"Y", "YMethod"},     {"YV", "YVal"},
                   {"M", "MasterFile"},  {"Mat", "Match"},   {"YE", "YErrMethod"}, {"YErrF", "YErrFile"},
                   {"YErrV", "YErrVal"}, {"D", "DatasetNo"}, {"Q", "Quantity"},    {"quantity", "Quantity"}};
  for (const auto& c : kMeanings) {
    ASSERT_NE(FindParam(load, c.text), nullptr) << c.text;
    EXPECT_STREQ(FindParam(load, c.text)->name, c.name) << c.text;
  }
  EXPECT_STREQ(FindParam(*FindCommand("SetModelParam"), "M")->name, "ModelNo");
  EXPECT_STREQ(FindParam(*FindCommand("SetModelParam"), "Mi")->name, "MinLimit");
  EXPECT_STREQ(FindParam(*FindCommand("SetModelParam"), "MinO")->name, "MinOn");
  EXPECT_STREQ(FindParam(*FindCommand("Fit"), "n")->name, "NumIters");
}

// Existing macros may contain any of these, so a new name must not change their meaning.
TEST(Names, EveryBeginningStillMeansWhatItMeant) {
  std::string text;
  ASSERT_TRUE(ReadWholeFile(ProjectFile("tests/macro/prefixes.txt"), text));
  EXPECT_EQ(MeaningsOfAllBeginnings(), text);
}

TEST(Names, ATextLongerThanANameDoesNotMeanIt) {
  EXPECT_EQ(FindCommand("Fitx"), nullptr);
  EXPECT_EQ(FindCommand("ExitNow"), nullptr);
  EXPECT_EQ(FindParam(*FindCommand("Fit"), "NumItersX"), nullptr);
  EXPECT_EQ(FindParam(*FindCommand("EndLoop"), "x"), nullptr);
}

TEST(Names, EveryWholeNameFindsItself) {
  for (const auto table : {MacroCommandTable(), MacroExtraTable()}) {
    for (const MacroCommand& command : table) {
      EXPECT_EQ(FindCommand(command.name), &command) << command.name;
      for (const MacroParam& param : command.params) {
        EXPECT_EQ(FindParam(command, param.name), &param) << command.name << ' ' << param.name;
      }
    }
  }
}

TEST(Names, NoneOfOursBeginsANameOfTheFormat) {
  for (const MacroCommand& own : MacroExtraTable()) {
    for (const Signature& row : kFormat) EXPECT_FALSE(StartsWithIgnoringCase(row.name, own.name)) << row.name;
  }
}

}  // namespace
}  // namespace kalvex
