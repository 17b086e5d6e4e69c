#include "files/model_file.h"

#include <gtest/gtest.h>

#include "files/bytes_of.h"
#include "files/curve_file.h"
#include "models/model_rows.h"
#include "models/model_table.h"
#include "models/quantity.h"
#include "program/program.h"
#include "support/scratch_folder.h"

namespace kalvex {
namespace {

std::string Record(double value, double error, std::uint32_t free, double min, double max, std::string name,
                   double slope = 0) {
  name.resize(50, '\0');
  std::string bytes = Bytes(value) + Bytes(error) + Bytes(free) + Bytes(min) + Bytes(max) + name;
  for (int i = 0; i < 16; ++i) bytes += Bytes(slope);
  return bytes + Bytes(std::uint32_t{0});
}

class ModelFiles : public testing::Test {
 protected:
  ModelFiles() : model(*CreateModel(program.params)) {}
  int Save(const std::string& name) { return SaveModel(program.eval, model, 12.5, folder.Path(name)); }
  ScratchFolder folder;
  Program program;
  Model& model;
};

TEST_F(ModelFiles, BytesAreAsLaidOut) {
  Cell(model, 0, Wp).error = 0.5;
  Cell(model, 0, Wp).useMax = 1;
  Cell(model, 0, G).coupling = 7;
  Cell(model, 0, G).adjustable = 0;
  ASSERT_EQ(Save("a.kvm"), 0);
  const std::string limits =
      Bytes(0) + Bytes(0) + Bytes(0) + Bytes(0) + Bytes(1) + Bytes(0) + Bytes(0) + Bytes(0) + Bytes(7);
  EXPECT_EQ(folder.Read("a.kvm"), Record(3, 0, 1, 0, 100, "Epsilon at infinity") + Bytes(1) +
                                      Record(100, 0, 1, 0, 100000, "TO frequency") +
                                      Record(100, 0.5, 1, 0, 100000, "Plasma frequency") +
                                      Record(10, 0, 0, 0, 100000, "Linewidth") + Bytes(1) + limits);
}

TEST_F(ModelFiles, WithoutRowsItHas226Bytes) {
  ClearRows(&model);
  Save("a.kvm");
  EXPECT_EQ(folder.Read("a.kvm").size(), 226u);
  Model& other = *CreateModel(program.params);
  EXPECT_EQ(LoadModel(other, folder.Path("a.kvm")), 0);
  EXPECT_EQ(RowCount(other), 0);
}

TEST_F(ModelFiles, LoadingRestoresTheRowsButNotTheLimitsOfEpsInf) {
  ModelParam& wp = Cell(model, 0, Wp);
  wp.value = -1.5;
  wp.error = 0.25;
  wp.adjustable = 0;
  wp.min = -3;
  wp.max = 4;
  wp.useMin = 1;
  wp.coupling = 30;
  SetName(wp, std::string(60, 'n'));
  model.epsInf.value = 9;
  model.epsInf.useMin = model.epsInf.coupling = 5;
  Save("a.kvm");
  Model& other = *CreateModel(program.params);
  other.epsInf.useMax = 1;
  InsertRow(&other, 0);
  ASSERT_EQ(LoadModel(other, folder.Path("a.kvm")), 0);
  ASSERT_EQ(RowCount(other), 1);
  const ModelParam& read = Cell(other, 0, Wp);
  EXPECT_EQ(read.value, -1.5);
  EXPECT_EQ(read.error, 0.25);
  EXPECT_EQ(read.adjustable, 0u);
  EXPECT_EQ(read.min, -3);
  EXPECT_EQ(read.max, 4);
  EXPECT_EQ(read.useMin, 1u);
  EXPECT_EQ(read.useMax, 0u);
  EXPECT_EQ(read.coupling, 30u);
  EXPECT_EQ(NameOf(read), std::string(50, 'n'));
  EXPECT_EQ(other.epsInf.value, 9);
  EXPECT_EQ(other.epsInf.useMin + other.epsInf.coupling, 0u);
  EXPECT_EQ(other.epsInf.useMax, 1u);
}

TEST_F(ModelFiles, TheOlderFormHasNoLimits) {
  Cell(model, 0, G).useMin = Cell(model, 0, G).coupling = 1;
  Save("a.kvm");
  folder.Write("old.kvm", folder.Read("a.kvm").substr(0, 222 + 654));
  ASSERT_EQ(LoadModel(model, folder.Path("old.kvm")), 0);
  EXPECT_EQ(RowCount(model), 1);
  EXPECT_EQ(Cell(model, 0, G).useMin + Cell(model, 0, G).coupling, 0u);
}

TEST_F(ModelFiles, ACutFileRepeatsItsLastRecordOrIsRefusedWithoutAHead) {
  InsertRow(&model, 1);
  Cell(model, 1, Wo).value = 555;
  Save("a.kvm");
  const std::string whole = folder.Read("a.kvm");
  for (std::size_t size = 0; size < whole.size(); size += 3) {
    folder.Write("cut.kvm", whole.substr(0, size));
    Model& other = *CreateModel(program.params);
    EXPECT_EQ(LoadModel(other, folder.Path("cut.kvm")), size < 222 ? -1 : 0) << size;
    EXPECT_EQ(RowCount(other), size < 222 ? 1 : 2) << size;
    CloseModelRecord(other);
  }
  folder.Write("cut.kvm", whole.substr(0, 222 + 4 * 218));  // ends behind the first element of the second row
  LoadModel(model, folder.Path("cut.kvm"));
  EXPECT_EQ(Cell(model, 1, Wo).value, 555);
  EXPECT_EQ(Cell(model, 1, G).value, 555);
}

TEST_F(ModelFiles, HostileCountsEndSoon) {
  Save("a.kvm");
  std::string bytes = folder.Read("a.kvm");
  for (const std::int32_t count : {-1, -2147483647, 0, 5000, 2147483647}) {
    bytes.replace(218, 4, Bytes(count));
    folder.Write("b.kvm", bytes);
    ASSERT_EQ(LoadModel(model, folder.Path("b.kvm")), 0);
    EXPECT_EQ(RowCount(model), count == 5000 ? 5000 : count > 0 ? 2 : 0) << count;
  }
}

TEST_F(ModelFiles, WhatCannotBeOpenedFails) {
  EXPECT_EQ(Save("no folder/a.kvm"), -1);
  EXPECT_EQ(LoadModel(model, folder.Path("none")), -1);
  EXPECT_EQ(LoadModel(model, ""), -1);
  EXPECT_EQ(RowCount(model), 1);
}

TEST_F(ModelFiles, TheSummaryIsForReading) {
  model.epsInf.error = 0.125;
  Cell(model, 0, G).error = 2;
  Save("a.b.kvm");
  EXPECT_EQ(folder.Read("a.b.asc"),
            "ChiSq = 1.2500E+01\n\nEinf = 3.000000 \xB1 0.125000\n\nWo[0] = 100.000000 \xB1 0.000000\n"
            "Wp[0] = 100.000000 \xB1 0.000000\nG [0] = 10.000000 \xB1 2.000000\n\n");
}

TEST_F(ModelFiles, TheTableGrowsByALineASave) {
  model.epsInf.value = 1;
  Cell(model, 0, Wo).value = Cell(model, 0, G).value = 0;
  Cell(model, 0, Wp).value = 500;
  Save("a.kvm");
  Save("b.kvm");
  const std::string rest =
      " 1.2500E+01 1.000000 0.0000E+00 0.0000E+00 5.0000E+02 0.0000E+00 0.0000E+00 0.0000E+00 2.5000E+05 \n";
  EXPECT_EQ(folder.Read("Par.dat"), "a.kvm" + rest + "b.kvm" + rest);
}

TEST_F(ModelFiles, ANameWithoutADotMakesABareSummary) {
  const InFolder inside(folder.Name());
  ASSERT_EQ(SaveModel(program.eval, model, 0, "x"), 0);
  EXPECT_TRUE(folder.Has("asc"));
  EXPECT_TRUE(folder.Has("Par.dat"));
}

TEST(ModelFileNames, FollowTheFolderAndTheLastDot) {
  EXPECT_EQ(SummaryNameOf("C:\\a.b\\x.kvm"), "C:\\a.b\\x.asc");
  EXPECT_EQ(TableNameOf("C:\\a.b\\x.kvm"), "C:\\a.b\\Par.dat");
  EXPECT_EQ(SummaryNameOf("out/x.1.kvm"), "out/x.1.asc");
  EXPECT_EQ(TableNameOf("out/x.1.kvm"), "out/Par.dat");
  EXPECT_EQ(SummaryNameOf("x"), "asc");
  EXPECT_EQ(TableNameOf("x"), "Par.dat");
}

TEST_F(ModelFiles, CurvesWalkTheirGridByARunningSum) {
  ClearRows(&model);
  CurveExport what;
  what.quantity = kE1;
  what.xMin = 0;
  what.xMax = 1;
  what.points = 11;
  ASSERT_EQ(ExportModelCurve(program.eval, &model, what, folder.Path("a")), 0);
  std::size_t expected = 0;
  for (double x = 0; x <= 1; x += 1.0 / 10) ++expected;  // ten steps of 0.1 end beside 1
  EXPECT_EQ(NumbersOf(folder.Read("a")).size(), expected);
  EXPECT_EQ(folder.Read("a").substr(0, 10), "0 3\n0.1 3\n");
  what.points = 1;
  ExportModelCurve(program.eval, &model, what, folder.Path("a"));
  EXPECT_EQ(folder.Read("a"), "0 3\n");
  what.points = 5;
  what.grid = 3;
  ExportModelCurve(program.eval, &model, what, folder.Path("a"));
  EXPECT_EQ(folder.Read("a"), "");
}

TEST_F(ModelFiles, AStepTooSmallToMoveEndsToo) {
  CurveExport what;
  what.quantity = kE1;
  what.xMin = 1;
  what.xMax = 1 + 2.3e-16;
  what.points = 1000;
  ASSERT_EQ(ExportModelCurve(program.eval, &model, what, folder.Path("a")), 0);
  EXPECT_LE(NumbersOf(folder.Read("a")).size(), 1001u);
}

TEST_F(ModelFiles, CurvesOnTheMeshTakeItsPoints) {
  ClearRows(&model);
  model.vdf.mesh.resize(3);
  for (std::size_t i = 0; i < 3; ++i) {
    model.vdf.mesh[i].x = 10.0 * static_cast<double>(i + 1);
    model.vdf.mesh[i].e1.value = static_cast<double>(i);
  }
  CurveExport what;
  what.quantity = kE1;
  what.onMesh = true;
  ExportModelCurve(program.eval, &model, what, folder.Path("a"));
  EXPECT_EQ(folder.Read("a"), "");  // the function is off
  model.vdf.On = 1;
  ExportModelCurve(program.eval, &model, what, folder.Path("a"));
  EXPECT_EQ(folder.Read("a"), "10 3\n20 4\n30 5\n");
}

}  // namespace
}  // namespace kalvex
