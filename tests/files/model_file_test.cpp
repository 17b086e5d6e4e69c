#include "files/model_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "datasets/quantity.h"
#include "files/model_files.h"

namespace kalvex {
namespace {

TEST_F(ModelFiles, BytesAreAsLaidOut) {
  Cell(model, 0, Wp).error = 0.5;
  Cell(model, 0, Wp).useMax = 1;
  Cell(model, 0, G).coupling = 7;
  Cell(model, 0, G).adjustable = 0;
  Save("a.kvm");
  const std::string limits =
      Bytes(0) + Bytes(0) + Bytes(0) + Bytes(0) + Bytes(1) + Bytes(0) + Bytes(0) + Bytes(0) + Bytes(7);
  EXPECT_EQ(folder.Read("a.kvm"), Record(3, 0, 1, 0, 100, "Epsilon at infinity") + Bytes(1) +
                                      Record(100, 0, 1, 0, 100000, "TO frequency") +
                                      Record(100, 0.5, 1, 0, 100000, "Plasma frequency") +
                                      Record(10, 0, 0, 0, 100000, "Linewidth") + Bytes(1) + limits);
}

TEST_F(ModelFiles, WithoutRowsItHas226Bytes) {
  ClearRows(model);
  Save("a.kvm");
  EXPECT_EQ(folder.Read("a.kvm").size(), 226u);
  Model& other = *CreateModel(tables.params);
  EXPECT_TRUE(LoadModel(other, folder.Path("a.kvm")).Ok());
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
  Model& other = *CreateModel(tables.params);
  other.epsInf.useMax = 1;
  InsertRow(other, 0);
  ASSERT_TRUE(LoadModel(other, folder.Path("a.kvm")).Ok());
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
  ASSERT_TRUE(LoadModel(model, folder.Path("old.kvm")).Ok());
  EXPECT_EQ(RowCount(model), 1);
  EXPECT_EQ(Cell(model, 0, G).useMin + Cell(model, 0, G).coupling, 0u);
}

TEST_F(ModelFiles, WhatCannotBeOpenedFails) {
  EXPECT_EQ(SaveModel(tables.eval, model, 0, folder.Path("no folder/a.kvm")).Code(), StatusCode::kCannotWrite);
  EXPECT_EQ(LoadModel(model, folder.Path("none")).Code(), StatusCode::kCannotRead);
  EXPECT_EQ(LoadModel(model, "").Code(), StatusCode::kCannotRead);
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
  ASSERT_TRUE(SaveModel(tables.eval, model, 0, "x").Ok());
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

TEST_F(ModelFiles, EveryFieldHasItsPlace) {
  model.rows.resize(0);
  InsertRow(model, 0);
  InsertRow(model, 1);
  const auto fill = [](ModelParam& param, double seed) {
    param = ModelParam{};
    param.value = seed + 0.5;
    param.error = -seed;
    param.adjustable = static_cast<std::uint32_t>(seed);
    param.min = seed - 1e300;
    param.max = seed + 1e-300;
    SetName(param, "parameter");
    param.savedSlopes.dEpsRe = seed + 20;
    param.savedSlopes.dEpsIm = seed + 21;
    auto& dQuantity = param.savedSlopes.dQuantity;
    for (const Quantity q : kEveryQuantity) dQuantity[q] = seed + 22 + NumberOf(q);
    param.reserved = 0xA1B2C3D4;
    param.useMin = 5;
    param.useMax = 6;
    param.coupling = static_cast<std::uint32_t>(seed) + 7;
  };
  const auto record = [](double seed) {
    std::string name = "parameter";
    name.resize(50, '\0');
    std::string bytes = Bytes(seed + 0.5) + Bytes(-seed) + Bytes(static_cast<std::uint32_t>(seed)) +
                        Bytes(seed - 1e300) + Bytes(seed + 1e-300) + name;
    for (int i = 0; i < 16; ++i) bytes += Bytes(seed + 20 + i);  // the derivative of the last Quantity is not stored
    return bytes + "\xD4\xC3\xB2\xA1";
  };
  fill(model.epsInf, 1);
  std::string records, limits;
  for (int i = 0; i < 6; ++i) {
    const double seed = 10.0 * (i + 1);
    fill(model.rows[static_cast<std::size_t>(i)], seed);
    records += record(seed);
    limits += Limits(5, 6, static_cast<std::uint32_t>(seed) + 7);
  }
  // The weight of such rows at zero frequency is irrelevant for this test.
  Save("a.kvm");
  const std::string bytes = folder.Read("a.kvm");
  EXPECT_EQ(bytes.size(), 226u + 2 * 3 * (218 + 12));
  EXPECT_EQ(bytes, record(1) + std::string("\x02\0\0\0", 4) + records + std::string("\x01\0\0\0", 4) + limits);
}

TEST_F(ModelFiles, BytesWrittenByHandLoad) {
  folder.Write("a.kvm", Record(2.5, 0.25, 0, -1, 8, "constant", 3) + Bytes(1) + Record(50, 1, 1, 2, 3, "first", 4) +
                            Record(60, 2, 0, 4, 5, "second") + Record(70, 3, 7, 6, 8, "third") + Bytes(99) +
                            Limits(1, 0, 3) + Limits(0, 1, 0) + Limits(2, 2, 24));
  ASSERT_TRUE(LoadModel(model, folder.Path("a.kvm")).Ok());  // the value of the marker is not checked
  EXPECT_EQ(model.epsInf.value, 2.5);
  EXPECT_EQ(model.epsInf.error, 0.25);
  EXPECT_EQ(model.epsInf.adjustable, 0u);
  EXPECT_EQ(model.epsInf.min, -1);
  EXPECT_EQ(model.epsInf.max, 8);
  EXPECT_EQ(NameOf(model.epsInf), "constant");
  EXPECT_EQ(model.epsInf.savedSlopes.dQuantity[kDefringed], 3);
  ASSERT_EQ(RowCount(model), 1);
  EXPECT_EQ(Cell(model, 0, Wo).value, 50);
  EXPECT_EQ(Cell(model, 0, Wo).useMin, 1u);
  EXPECT_EQ(Cell(model, 0, Wo).coupling, 3u);
  EXPECT_EQ(Cell(model, 0, Wp).useMax, 1u);
  EXPECT_EQ(Cell(model, 0, Wp).adjustable, 0u);
  EXPECT_EQ(NameOf(Cell(model, 0, Wp)), "second");
  EXPECT_EQ(Cell(model, 0, G).adjustable, 7u);
  EXPECT_EQ(Cell(model, 0, G).useMin + Cell(model, 0, G).useMax, 4u);
  EXPECT_EQ(Cell(model, 0, G).coupling, 24u);
}

TEST_F(ModelFiles, NumberNameAndMeshOfTheModelStay) {
  Save("a.kvm");
  Model& other = *CreateModel(tables.params);
  other.name = "mine";
  other.vdf.On = 1;
  other.vdf.mesh.resize(4);
  ASSERT_TRUE(LoadModel(other, folder.Path("a.kvm")).Ok());
  EXPECT_EQ(other.number, 2u);
  EXPECT_EQ(other.name, "mine");
  EXPECT_EQ(other.vdf.mesh.size(), 4u);
}

TEST_F(ModelFiles, AGroupInAFileIsNotJoined) {
  Cell(model, 0, G).coupling = 2;
  Cell(model, 0, G).value = 5;
  Save("a.kvm");
  Model& other = *CreateModel(tables.params);
  Cell(model, 0, G).value = 9;
  ASSERT_TRUE(LoadModel(other, folder.Path("a.kvm")).Ok());
  EXPECT_EQ(Cell(other, 0, G).coupling, 2u);
  EXPECT_EQ(Cell(other, 0, G).value, 5);
  EXPECT_EQ(Cell(model, 0, G).value, 9);
  EXPECT_FALSE(model.dirty);
}

TEST_F(ModelFiles, TheSummaryNumbersItsRowsFromZero) {
  InsertRow(model, 1);
  Cell(model, 1, Wp).value = -1.5;
  Cell(model, 1, Wp).error = 1e7;
  Cell(model, 1, Wo).value = 1e-7;
  ASSERT_TRUE(SaveModel(tables.eval, model, -0.000123456, folder.Path("a.kvm")).Ok());
  EXPECT_EQ(folder.Read("a.asc"),
            "ChiSq = -1.2346E-04\n\nEinf = 3.000000 \xB1 0.000000\n\n"
            "Wo[0] = 100.000000 \xB1 0.000000\nWp[0] = 100.000000 \xB1 0.000000\nG [0] = 10.000000 \xB1 0.000000\n\n"
            "Wo[1] = 0.000000 \xB1 0.000000\nWp[1] = -1.500000 \xB1 10000000.000000\n"
            "G [1] = 10.000000 \xB1 0.000000\n\n");
}

TEST_F(ModelFiles, TheTableEndsWithTheWeightAtZeroFrequency) {
  // A carrier without width: eps1 = epsInf - Wp^2/w^2. At w = 1e-5, -eps1 w^2 is Wp^2 apart from epsInf 1e-10.
  const auto weight = [&] {
    folder.Write("Par.dat", "");
    Save("a.kvm");
    const std::string line = folder.Read("Par.dat");
    return line.substr(0, line.size() - 2).substr(line.size() - 12);
  };
  Cell(model, 0, Wo).value = Cell(model, 0, G).value = 0;
  Cell(model, 0, Wp).value = 1234;
  EXPECT_EQ(weight(), "1.5228E+06");
  // The weights of two carriers add.
  InsertRow(model, 1);
  Cell(model, 1, Wo).value = Cell(model, 1, G).value = 0;
  Cell(model, 1, Wp).value = 1000;
  EXPECT_EQ(weight(), "2.5228E+06");
  // With a width of 1e-5 half of the weight remains at that frequency: w^2/(w^2 + G^2) = 1/2.
  RemoveRow(model, 1);
  Cell(model, 0, G).value = 1e-5;
  EXPECT_EQ(weight(), "7.6138E+05");
  // An oscillator has no weight at zero frequency: -(epsInf + 1) 1e-10.
  Cell(model, 0, Wo).value = Cell(model, 0, Wp).value = 100;
  EXPECT_EQ(weight(), "4.0000E-10");
  EXPECT_EQ(folder.Read("Par.dat").substr(folder.Read("Par.dat").size() - 14), " -4.0000E-10 \n");
}

TEST_F(ModelFiles, LinesOfTheTableAreAsLongAsTheirModels) {
  Save("one.kvm");
  ClearRows(model);
  model.epsInf.value = -2.25;
  Save("none.kvm");
  const std::string text = folder.Read("Par.dat");
  EXPECT_EQ(text.substr(text.find('\n') + 1), "none.kvm 1.2500E+01 -2.250000 2.2500E-10 \n");
}

TEST_F(ModelFiles, ASaveReplacesTheFileAndTheSummary) {
  Save("a.kvm");
  ClearRows(model);
  Save("a.kvm");
  EXPECT_EQ(folder.Read("a.kvm").size(), 226u);
  EXPECT_EQ(folder.Read("a.asc"), "ChiSq = 1.2500E+01\n\nEinf = 3.000000 \xB1 0.000000\n\n");
}

TEST_F(ModelFiles, ASummaryOrTableThatCannotBeWrittenIsNoFailure) {
  std::filesystem::create_directory(folder.Path("a.asc"));
  std::filesystem::create_directory(folder.Path("Par.dat"));
  Save("a.kvm");
  EXPECT_TRUE(LoadModel(model, folder.Path("a.kvm")).Ok());
}

TEST(ModelFileNames, ADotInTheFolderAloneIsTheLastDotAllTheSame) {
  EXPECT_EQ(SummaryNameOf("out.d/x"), "out.asc");
  EXPECT_EQ(TableNameOf("out.d/x"), "out.d/Par.dat");
  EXPECT_EQ(SummaryNameOf(".kvm"), ".asc");
  EXPECT_EQ(SummaryNameOf("x."), "x.asc");
  EXPECT_EQ(SummaryNameOf(""), "asc");
}

TEST(ModelFileNames, ADriveAloneIsAFolder) {
  EXPECT_EQ(TableNameOf("C:x.kvm"), "C:Par.dat");
  EXPECT_EQ(TableNameOf("C:\\x"), "C:\\Par.dat");
}

}  // namespace
}  // namespace kalvex
