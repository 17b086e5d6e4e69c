// Macros with damaged numbers, run in this process. Under the sanitizers this detects accesses out of bounds. The
// damage is the same in every run.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "macro/run_macro.h"
#include "session/session.h"
#include "support/scratch_folder.h"
#include "support/test_platform.h"
#include "windows/desk.h"

namespace kalvex {
namespace {

// Statements that use no file, with damaged numbers: the program must continue.
TEST(DamagedMacros, StatementsWithAnyNumbersRun) {
  const ScratchFolder folder;
  const InFolder inside(folder.Name());
  const std::string text =
      "NewModel();NewModel();SetModelParam(ModelNo=1,ParamName=\"G\",LorNo=1,Value=1,MinOn=1,MaxOn=1,CoupledTo=1);"
      "SetModelParam(ModelNo=2,ParamName=\"Wo\",LorNo=1,Value=-1,FitActive=0,CoupledTo=2);"
      "InsertModelRow(ModelNo=1,LorNo=1);SortModelRows(ModelNo=1,Key=4);MoveModelRow(ModelNo=1,LorNo=1,Up=1);"
      "CopyModelParam(DestModelNo=1,DestParamName=\"Wo\",DestLorNo=1,SourceModelNo=2,SourceParamName=\"G\",SourceLorNo="
      "1);"
      "AddChiSqTerm(DatasetNo=1,ModelNo=1,Weight=1);WindowFit();FixAllModelParams(ModelNo=2);"
      "SetExpParam(ParamName=\"Angle of\",Value=45,FitActive=1,CoupledTo=1);CutDataset(DatasetNo=1,XMin=3,XMax=7);"
      "TransformDataset(DatasetNo=1,Scale=2,Shift=1);AddNoise(DatasetNo=1,Sigma=0.1);Fit(NumIters=2);"
      "RemoveModelRow(ModelNo=1,LorNo=1);CloseModel(ModelNo=2);UnloadDataset(DatasetNo=1);Fit(NumIters=2);";
  std::mt19937 random(7);
  for (int i = 0; i < 300; ++i) {
    std::string damaged = text;
    for (int k = 0; k < 12; ++k) {
      const std::size_t at = damaged.find_first_of("0123456789", random() % damaged.size());
      if (at != std::string::npos) damaged.replace(at, 1, std::to_string(random() % 200));
    }
    folder.Write("numbers.kvs", damaged);
    folder.Write("ten.dat", "1 .1\n2 .2\n3 .3\n4 .4\n5 .5\n6 .6\n7 .7\n8 .8\n9 .9\n10 1\n");
    TestPlatform platform;
    Session session(platform, 1, Defaults::kFormer);
    Desk desk(session);
    DatasetSource source;
    source.MasterFile = "ten.dat";
    ASSERT_TRUE(session.LoadDataset(1, source).Ok());
    ASSERT_EQ(RunMacro(desk, "numbers.kvs"), kMacroEnded) << desk.macro.fault;
  }
}

}  // namespace
}  // namespace kalvex
