// The variational dielectric function and the tools, from macros.
#include "app/kalvex_run.h"

namespace kalvex {
namespace {

TEST_F(Kalvex, TheVariationalFunctionIsMadeSwitchedSavedAndLoaded) {
  folder.Write("R.dat", "100 .5\n200 .5\n300 .5\n400 .5\n");
  const std::string make = "NewModel();LoadDataset(MasterFile=\"R.dat\");VarDielFunc(ModelNo=1,Source1DatasetNo=1);";
  Run(make);
  EXPECT_EQ(Said("VarDielFunc"), "model 1 has a mesh of 4 points from 100 to 400, on, constrained, fitted");
  Run(make + "VarDielFunc(ModelNo=1,KK=0,On=1);");
  EXPECT_EQ(Said("VarDielFunc"), "model 1 has a mesh of 4 points from 100 to 400, on, free, fitted");
  Run(make + "FreeShape(ModelNo=1,Key=\"f5\");FreeShape(ModelNo=1,Key=\"F4\");FreeShape(ModelNo=1,Key=\"f7\");");
  EXPECT_EQ(Said("FreeShape"), "model 1 has a mesh of 4 points from 100 to 400, off, free, not fitted");
  Run("NewModel();LoadDataset(DatasetNo=3,MasterFile=\"R.dat\");FreeShape(ModelNo=1,Key=\"F6\");FreeShape(ModelNo=1,"
      "Key=\"F8\");");
  EXPECT_NE(run.err.find("FreeShape: model 1 has a mesh of 4 points"), std::string::npos);
  EXPECT_EQ(Said("FreeShape"), "nothing done: 'F8' is not one of F4, F5, F6, F7");
  Run(make +
      "SaveVarDielFunc(File=\"a.kvv\");NewModel();LoadVarDielFunc(ModelNo=2,File=\"a.kvv\");SaveVarDielFunc(ModelNo=2,"
      "File=\"b.kvv\");"
      "MakeVarDielFuncPositive(ModelNo=2);LoadVarDielFunc(ModelNo=2,File=\"none\");");
  EXPECT_EQ(folder.Read("a.kvv"), folder.Read("b.kvv"));
  EXPECT_EQ(Said("LoadVarDielFunc"), "nothing done: 'none' cannot be opened");
  Run("NewModel();VarDielFunc(ModelNo=1,Source2DatasetNo=5,Source2Every2nd=1);");
  EXPECT_EQ(Said("VarDielFunc"), "model 1 has no mesh");
  Run(make + "VarDielFunc(ModelNo=1,Source1DatasetNo=1,Source1Every2nd=1,KK=0,On=0,FitActive=0);");
  EXPECT_EQ(Said("VarDielFunc"), "model 1 has a mesh of 2 points from 100 to 300, off, free, not fitted");
}

TEST_F(Kalvex, ToolsWriteTheirFiles) {
  folder.Write("R.dat", "100 .5\n200 .5\n300 .5\n");
  folder.Write("ParsSpecial.cfg", "1\nout.txt width 1 1 3\n");
  Run("NewModel();LoadDataset(MasterFile=\"R.dat\");WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);SaveParams(File="
      "\"a.kvp\");"
      "SetModelParam(ModelNo=1,ParamName=\"G\",LorNo=1,Value=99);LoadParams(File=\"a.kvp\");SaveParamsSpecial();"
      "TestDerivatives();"
      "TestQuantityDerivatives();DumpDerivatives();DumpSensitivity();QuantityErrorBars();");
  EXPECT_EQ(folder.Read("out.txt"), "width 10 0\n");
  EXPECT_TRUE(folder.Has("TestDeriv1.txt"));
  EXPECT_TRUE(folder.Has("TestDeriv.txt"));
  for (const char* const name : {"DumpDerivatives", "DumpSensitivity", "QuantityErrorBars"}) {
    EXPECT_EQ(Said(name).substr(0, 16), "nothing done: it") << name;
  }
}

// Delta(T)/Delta(0) of weak coupling at T/Tc of 0.5 and 0.9, Muehlschlegel, Z. Physik 155, 313 (1959), table 1.
TEST_F(Kalvex, TheGapOfASuperconductorGoesIntoItsFileWhenAskedFor) {
  Run("NewModel();");
  EXPECT_FALSE(folder.Has("Tab.dat"));
  Run("WriteGapTable();");
  EXPECT_EQ(Said("WriteGapTable"), "written to 'Tab.dat'");
  const Table lines = Written("Tab.dat");
  ASSERT_EQ(lines.size(), 101u);
  EXPECT_EQ(lines[0], (std::vector<double>{0, 1}));
  EXPECT_EQ(lines[100], (std::vector<double>{1, 0}));
  constexpr double kFourPlaces = 5e-5;  // half a unit of the last place of the published table
  EXPECT_NEAR(lines[50][1], 0.9569, kFourPlaces);
  EXPECT_NEAR(lines[90][1], 0.5263, kFourPlaces);
}

}  // namespace
}  // namespace kalvex
