// Every reader of the program against thousands of damaged files: it must return soon, with a status. Under the
// sanitizers this detects accesses out of bounds. The damage is the same in every run.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "datasets/load_dataset.h"
#include "datasets/read_dataset.h"
#include "evaluation/eval_model.h"
#include "files/model_file.h"
#include "files/param_file.h"
#include "files/vdf_file.h"
#include "macro/clean.h"
#include "macro/loop_file.h"
#include "macro/parse.h"
#include "records/model_table.h"
#include "support/scratch_folder.h"
#include "support/tables.h"

namespace kalvex {
namespace {

constexpr int kRounds = 2000;

class Damage {
 public:
  explicit Damage(std::string dictionary) : dictionary_(std::move(dictionary)) {}

  // A copy of the text with a few bytes changed, removed, duplicated or inserted.
  std::string Of(std::string text) {
    for (int i = Below(6); i >= 0; --i) Once(text);
    return text;
  }

 private:
  int Below(std::size_t limit) { return static_cast<int>(random_() % limit); }

  void Once(std::string& text) {
    const auto at = static_cast<std::size_t>(Below(text.size() + 1));
    const auto length = 1 + static_cast<std::size_t>(Below(40));
    switch (Below(6)) {
      case 0:
        if (at < text.size()) text[at] = static_cast<char>(Below(256));
        break;
      case 1:
        text.erase(at, length);
        break;
      case 2:
        text.insert(at, text.substr(at, length));
        break;
      case 3:
        text.insert(at, 1, dictionary_[static_cast<std::size_t>(Below(dictionary_.size()))]);
        break;
      case 4:
        text.insert(at, std::string(length * 60, dictionary_[static_cast<std::size_t>(Below(dictionary_.size()))]));
        break;
      default:
        text.resize(at);
    }
  }

  std::string dictionary_;
  std::mt19937 random_{20260401};
};

const char* const kMacro =
    "# loads, fits and writes\n"
    "NewModel(XPos=10, YPos=20, VarDielFuncSeen=1);\n"
    "SetModelParam(ModelNo=1, ParamName=\"Wo\", LorNo=1, Value=268.7, MinLimit=1, MinOn=1, CoupledTo=3);\n"
    "LoadDataset(DatasetNo=%1, MasterFile=\"%2.dat\", XMethod=3, XMin=1e2, XMax=500., XPts=20, YVal=-.5);\n"
    "BeginLoop(LoopFile=\"loop file\");\nFit(NumIters=%3);\nEndLoop();\nExit(QuitApp=1);\n";

TEST(DamagedFiles, MacrosParseOrNameAFaultInsideTheText) {
  Damage damage("%\"#;(),=\n\t +-.eE09aZ");
  for (int i = 0; i < kRounds; ++i) {
    const std::string text = damage.Of(kMacro);
    std::vector<std::uint32_t> sources;
    const std::string compact = CleanMacro(text, &sources);
    ASSERT_EQ(sources.size(), compact.size());
    std::vector<MacroStatement> statements;
    MacroFault fault;
    if (!ParseMacro(compact, statements, fault)) {
      ASSERT_LE(fault.at, compact.size());
      ASSERT_FALSE(fault.description.empty());
    }
  }
}

TEST(DamagedFiles, DatasetsLoadSortedOrGiveAStatus) {
  const ScratchFolder folder;
  Damage damage("0123456789.eE+-xX \t\n\r,#ninfa");
  const std::string good = "Wavenumber R\n100 0.5 0.01\n200.5 4e-1\n3e2 .3 0.02 7\n\n400\n0x1p9 0.1\n500,0.2\n";
  for (int i = 0; i < kRounds; ++i) {
    const std::string path = folder.Write("R.dat", damage.Of(good));
    std::vector<DataRow> rows;
    if (ReadDatasetFile(path, rows) != ReadStatus::kRead) continue;
    ASSERT_FALSE(rows.empty());
    for (std::size_t k = 1; k < rows.size(); ++k) ASSERT_LE(rows[k - 1].x, rows[k].x);
  }
}

TEST(DamagedFiles, LoopFilesGiveRowsInsideTheirLimits) {
  const ScratchFolder folder;
  Damage damage("% \t\nabc019");
  for (int i = 0; i < kRounds; ++i) {
    const std::string path = folder.Write("loop", damage.Of("a 1 2.5\n\nlonger-than-twenty-characters b c\nlast 7"));
    std::vector<LoopRow> rows;
    if (!ReadLoopFile(path, rows)) continue;
    ASSERT_LE(rows.size(), kMaxLoopRows);
    for (const LoopRow& row : rows) {
      ASSERT_LE(row.TokenCount(), kMaxLoopTokens);
      for (std::size_t c = 0; c < row.TokenCount(); ++c) ASSERT_LE(LoopToken(row, c).size(), row.fields.size());
    }
  }
}

TEST(DamagedFiles, ModelFilesLoadOrLeaveTheModelAlone) {
  const ScratchFolder folder;
  Tables tables;
  Model& model = *CreateModel(tables.params);
  ASSERT_TRUE(SaveModel(tables.eval, model, 0, folder.Path("good.kvm")).Ok());
  const std::string good = folder.Read("good.kvm");
  Damage damage(std::string("\0\x01\x7f\xff", 4));
  for (int i = 0; i < kRounds; ++i) {
    const std::string path = folder.Write("bad.kvm", damage.Of(good));
    LoadModel(model, path).Ignore();  // whether it loads or not, the model stays usable
    ASSERT_LE(RowCount(model), 10000);
    ASSERT_EQ(model.rows.size() % kColumns, 0u);
  }
}

TEST(DamagedFiles, MeshAndParameterFilesLoadOrLeaveThingsAlone) {
  const ScratchFolder folder;
  Tables tables;
  Model& model = *CreateModel(tables.params);
  model.vdf.mesh.resize(6);
  for (std::size_t i = 0; i < 6; ++i) model.vdf.mesh[i].x = 100.0 * static_cast<double>(i + 1);
  model.vdf.On = model.vdf.KK = 1;
  ASSERT_TRUE(SaveVdf(model.vdf, folder.Path("good.kvv")).Ok());
  ASSERT_TRUE(SaveParams(tables.params, folder.Path("good.kvp")).Ok());
  Damage damage(std::string("\0\x01\x7f\xff", 4));
  for (int i = 0; i < kRounds; ++i) {
    LoadVdf(model.vdf, folder.Write("bad.kvv", damage.Of(folder.Read("good.kvv")))).Ignore();
    const auto loaded = LoadParams(tables.params, folder.Write("bad.kvp", damage.Of(folder.Read("good.kvp"))));
    ASSERT_TRUE(loaded.Ok());  // the reader stops at the first invalid record
    // With any mesh it must be possible to evaluate the model.
    EvalModel(tables.eval, model, 250, true);
    ASSERT_LE(model.vdf.mesh.size(), 400u);
  }
}

}  // namespace
}  // namespace kalvex
