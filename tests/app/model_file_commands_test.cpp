// Models saved and loaded by macros: the file, the summary and the table.
#include <filesystem>

#include "app/kalvex_run.h"
#include "app/saved_model.h"

namespace kalvex {
namespace {

class ModelFiles : public Kalvex {};

const char* const kLimitedModel =
    "NewModel();\nSetModelParam(ModelNo=1,ParamName=\"Einf\",Value=2.5,FitActive=0);\n"
    "SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=1,Value=321,MinLimit=1,MaxLimit=999,MinOn=1,MaxOn=1,CoupledTo=7);\n"
    "InsertModelRow(ModelNo=1);\nSetModelParam(ModelNo=1,ParamName=\"G\",LorNo=2,Value=-4,FitActive=0);\n";

TEST_F(ModelFiles, SaveThenLoadReproducesEveryElement) {
  Run(std::string(kLimitedModel) +
      "SaveModel(ModelNo=1,File=\"a.kvm\");NewModel();InsertModelRow(ModelNo=2);InsertModelRow(ModelNo=2);"
      "LoadModel(ModelNo=2,File=\"a.kvm\");SaveModel(ModelNo=2,File=\"b.kvm\");");
  EXPECT_EQ(folder.Read("a.kvm"), folder.Read("b.kvm"));
  EXPECT_EQ(Said("LoadModel"), "model 2 has 2 rows from 'a.kvm'");
  const SavedModel model = SavedModelOf(folder.Read("b.kvm"));
  EXPECT_EQ(model.epsInf.value, 2.5);
  EXPECT_EQ(model.At(0, 1).value, 321);
  EXPECT_EQ(model.At(0, 1).max, 999);
  EXPECT_EQ(model.At(0, 1).useMin, 1u);
  EXPECT_EQ(model.At(0, 1).coupling, 7u);
  EXPECT_EQ(model.At(1, 2).value, -4);
  EXPECT_EQ(model.At(1, 2).adjustable, 0u);
}

TEST_F(ModelFiles, TheSizeFollowsFromTheRows) {
  Run("NewModel();SaveModel(File=\"one.kvm\");RemoveModelRow(ModelNo=1,LorNo=1);SaveModel(File=\"none.kvm\");");
  EXPECT_EQ(folder.Read("none.kvm").size(), 218u + 4 + 4);
  EXPECT_EQ(folder.Read("one.kvm").size(), 218u + 4 + 3 * 218 + 4 + 3 * 12);
}

TEST_F(ModelFiles, ModelNoIsOneByDefaultAndFileHasNone) {
  Run("NewModel();NewModel();SetModelParam(ModelNo=1,ParamName=\"Einf\",Value=8);SaveModel(File=\"a.kvm\");"
      "SetModelParam(ModelNo=1,ParamName=\"Einf\",Value=9);LoadModel(File=\"a.kvm\");SaveModel(File=\"b.kvm\");");
  EXPECT_EQ(SavedModelOf(folder.Read("b.kvm")).epsInf.value, 8);
  EXPECT_EQ(SaidLast("NewModel();SaveModel();"), "nothing done: '' cannot be written");
  EXPECT_EQ(SaidLast("NewModel();LoadModel();"), "nothing done: '' cannot be opened");
}

TEST_F(ModelFiles, WithoutAModelNothingHappens) {
  EXPECT_EQ(SaidLast("SaveModel(File=\"a.kvm\");"), "nothing done: model 1 does not exist");
  EXPECT_EQ(SaidLast("NewModel();SaveModel(ModelNo=9,File=\"a.kvm\");"), "nothing done: model 9 does not exist");
  EXPECT_FALSE(folder.Has("a.kvm") || folder.Has("a.asc") || folder.Has("Par.dat"));
  EXPECT_EQ(SaidLast("NewModel();LoadModel(ModelNo=2,File=\"a.kvm\");"), "nothing done: model 2 does not exist");
}

TEST_F(ModelFiles, AFileThatCannotBeOpenedLeavesTheModelAsItWas) {
  folder.Write("short.kvm", std::string(100, '\1'));
  for (const std::string name : {"none.kvm", "no/where.kvm", ".", "short.kvm"}) {
    Run("NewModel();LoadModel(File=\"" + name + "\");SaveModel(File=\"b.kvm\");");
    const std::string why = name == "short.kvm" ? "is not a model file" : "cannot be opened";
    EXPECT_EQ(Said("LoadModel"), "nothing done: '" + name + "' " + why);
    EXPECT_EQ(SavedModelOf(folder.Read("b.kvm")).elements.size(), 3u);
  }
  EXPECT_EQ(SaidLast("NewModel();SaveModel(File=\"no/where.kvm\");"), "nothing done: 'no/where.kvm' cannot be written");
}

TEST_F(ModelFiles, AFileOfTheOlderFormHasNoLimitsAndNoGroups) {
  Run(std::string(kLimitedModel) + "SaveModel(File=\"new.kvm\");");
  const std::string newer = folder.Read("new.kvm");
  folder.Write("old.kvm", newer.substr(0, 218 + 4 + 6 * 218));
  Run("NewModel();LoadModel(File=\"old.kvm\");SaveModel(File=\"back.kvm\");");
  const SavedModel model = SavedModelOf(folder.Read("back.kvm"));
  ASSERT_EQ(model.elements.size(), 6u);
  EXPECT_EQ(model.At(0, 1).value, 321);
  for (const SavedParam& p : model.elements) EXPECT_EQ(p.useMin + p.useMax + p.coupling, 0u);
}

TEST_F(ModelFiles, TheGroupOfEinfStaysAsItWasBeforeTheLoad) {
  Run("NewModel();SaveModel(File=\"a.kvm\");SetModelParam(ModelNo=1,ParamName=\"Einf\",Value=7,CoupledTo=5);"
      "LoadModel(File=\"a.kvm\");SetModelParam(ModelNo=1,ParamName=\"Einf\");");
  EXPECT_EQ(Said("SetModelParam"), "model 1 Einf = 3, free, coupled to group 5");
}

TEST_F(ModelFiles, ALoadedGroupIsNotJoined) {
  Run("NewModel();NewModel();SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=1,Value=5,CoupledTo=2);"
      "SaveModel(File=\"a.kvm\");SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=1,Value=6);"
      "LoadModel(ModelNo=2,File=\"a.kvm\");SaveModel(ModelNo=2,File=\"b.kvm\");SaveModel(File=\"c.kvm\");");
  EXPECT_EQ(SavedModelOf(folder.Read("b.kvm")).At(0, 1).value, 5);
  EXPECT_EQ(SavedModelOf(folder.Read("b.kvm")).At(0, 1).coupling, 2u);
  EXPECT_EQ(SavedModelOf(folder.Read("c.kvm")).At(0, 1).value, 6);
}

TEST_F(ModelFiles, TheSummaryStandsBesideTheFile) {
  Run(std::string(kLimitedModel) + "SaveModel(File=\"a.b.kvm\");");
  EXPECT_EQ(folder.Read("a.b.asc"),
            "ChiSq = 0.0000E+00\n\nEinf = 2.500000 \xB1 0.000000\n\n"
            "Wo[0] = 100.000000 \xB1 0.000000\nWp[0] = 321.000000 \xB1 0.000000\nG [0] = 10.000000 \xB1 0.000000\n\n"
            "Wo[1] = 100.000000 \xB1 0.000000\nWp[1] = 100.000000 \xB1 0.000000\nG [1] = -4.000000 \xB1 0.000000\n\n");
}

TEST_F(ModelFiles, ANameWithoutADotHasItsSummaryUnderTheBareExtension) {
  Run("NewModel();SaveModel(File=\"x\");");
  EXPECT_TRUE(folder.Has("x"));
  EXPECT_TRUE(folder.Has("asc"));
  EXPECT_TRUE(folder.Has("Par.dat"));
}

TEST_F(ModelFiles, InAnotherFolderAllThreeFilesStandThere) {
  std::filesystem::create_directory(folder.Path("sub folder"));
  Run("NewModel();SaveModel(File=\"sub folder/x.kvm\");");
  for (const char* const name : {"sub folder/x.kvm", "sub folder/x.asc", "sub folder/Par.dat"}) {
    EXPECT_TRUE(folder.Has(name)) << name;
  }
  EXPECT_EQ(folder.Read("sub folder/Par.dat").substr(0, 6), "x.kvm ");
  EXPECT_FALSE(folder.Has("Par.dat"));
}

// The weight at zero frequency of free electrons without collisions, eps = epsInf - Wp^2/w^2, is Wp^2.
TEST_F(ModelFiles, EachSaveAddsALineToTheTable) {
  const std::string freeElectrons =
      "NewModel();SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=1,Value=0);"
      "SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=1,Value=300);"
      "SetModelParam(ModelNo=1,ParamName=\"G\",LorNo=1,Value=0);";
  Run(freeElectrons + "SaveModel(File=\"a.kvm\");RemoveModelRow(ModelNo=1,LorNo=1);SaveModel(File=\"b.kvm\");");
  const std::string table = folder.Read("Par.dat");
  const std::size_t second = table.find('\n') + 1;
  EXPECT_EQ(
      table.substr(0, second),
      "a.kvm 0.0000E+00 3.000000 0.0000E+00 0.0000E+00 3.0000E+02 0.0000E+00 0.0000E+00 0.0000E+00 9.0000E+04 \n");
  EXPECT_EQ(table.substr(second, 27), "b.kvm 0.0000E+00 3.000000 -");  // -epsInf (1e-5)^2
  EXPECT_CLOSE(std::stod(table.substr(second + 26)), -3e-10, kFiveDigits);
  EXPECT_EQ(table.back(), '\n');
}

TEST_F(ModelFiles, TheChiSqIsThatOfTheWholeFit) {
  folder.Write("R.dat", "100 0.5 0.1\n200 0.5 0.1\n");
  Run(FlatModel(1, 4) +
      "LoadDataset(MasterFile=\"R.dat\");AddChiSqTerm(DatasetNo=1,ModelNo=1);NewModel();"
      "SaveModel(ModelNo=2,File=\"other.kvm\");");
  const double d = (0.5 - 1.0 / 9) / 0.1;
  EXPECT_CLOSE(ChiSqIn("other.asc"), 2 * d * d, kFiveDigits);
}

}  // namespace
}  // namespace kalvex
