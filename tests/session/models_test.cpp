// The failures of operations on models, their rows, parameters and files, and their texts.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

#include "session/session_state.h"
#include "support/scratch_folder.h"
#include "support/test_platform.h"

namespace kalvex {
namespace {

class Models : public testing::Test {
 protected:
  Models() : number(*session.NewModel()) {}
  const Model& model() const { return *session.FindModel(number); }

  ScratchFolder folder;
  InFolder inside{folder.Name()};
  TestPlatform platform;
  Session session{platform, 1, Defaults::kFormer};
  std::uint32_t number;
};

TEST_F(Models, RowsAreSortedByTheKeysOneToFiveOnly) {
  for (const int key : {0, 6, -1}) EXPECT_EQ(session.SortRows(number, key).Code(), StatusCode::kBadArgument) << key;
  for (int key = 1; key <= 5; ++key) EXPECT_TRUE(session.SortRows(number, key).Ok()) << key;
  ASSERT_TRUE(session.RemoveRow(number, 1).Ok());
  EXPECT_EQ(session.SortRows(number, 1).Code(), StatusCode::kNothingToDo);
}

TEST_F(Models, OfOtherNumbersAreNotThere) {
  const std::string before = StateOf(session);
  for (const std::uint32_t other : {0u, number + 1, 4294967295u}) {
    EXPECT_EQ(session.InsertRow(other, 1).Code(), StatusCode::kNotThere);
    EXPECT_EQ(session.RemoveRow(other, 1).Code(), StatusCode::kNotThere);
    EXPECT_EQ(session.MoveRow(other, 1, true).Code(), StatusCode::kNotThere);
    EXPECT_EQ(session.SortRows(other, 1).Code(), StatusCode::kNotThere);
    EXPECT_EQ(session.FixAllParams(other, true).Code(), StatusCode::kNotThere);
    EXPECT_EQ(session.FindParam(ParamRef::EpsInf(other)), nullptr);
    EXPECT_EQ(session.SetParam(ParamRef::EpsInf(other), {}).Code(), StatusCode::kNotThere);
  }
  EXPECT_EQ(StateOf(session), before);
}

TEST_F(Models, OnlyPlacesInsideTheirRowsAreParameters) {
  EXPECT_EQ(session.FindParam(ParamRef::EpsInf(number)), &model().epsInf);
  EXPECT_EQ(session.FindParam(ParamRef::Row(number, 1, G)), &Cell(model(), 0, G));
  const std::string before = StateOf(session);
  ParamEdit edit;
  edit.value = 1;
  for (const auto& [row, column] : {std::pair(0, 0), std::pair(2, 0), std::pair(1, 3), std::pair(1, -1)}) {
    EXPECT_EQ(session.FindParam(ParamRef::Row(number, row, column)), nullptr);
    EXPECT_EQ(session.SetParam(ParamRef::Row(number, row, column), edit).Code(), StatusCode::kNotThere);
  }
  for (const int index : {-1, kExpParamCount}) EXPECT_EQ(session.FindParam(ParamRef::Exp(index)), nullptr);
  EXPECT_EQ(StateOf(session), before);
}

TEST_F(Models, AFileThatIsNoneOfTheirsSaysSoAndChangesNothing) {
  folder.Write("short", "too short");
  const std::string before = StateOf(session);
  for (const char* const name : {"short", "none"}) {
    const StatusCode expected = folder.Has(name) ? StatusCode::kBadFormat : StatusCode::kCannotRead;
    for (const Status& status : {session.LoadModel(number, name), session.LoadMesh(number, name)}) {
      EXPECT_EQ(status.Code(), expected) << name;
      EXPECT_EQ(status.About(), name);
    }
  }
  EXPECT_EQ(StateOf(session), before);
}

TEST_F(Models, ASavedModelIsSavedThoughItsSummaryAndTableCannotBeWritten) {
  // A directory has the name of each of the two files.
  const ScratchFolder other;
  std::filesystem::create_directory(other.Path("a.asc"));
  std::filesystem::create_directory(other.Path("Par.dat"));
  EXPECT_TRUE(session.SaveModel(number, other.Path("a.kvm")).Ok());
  EXPECT_TRUE(session.LoadModel(number, other.Path("a.kvm")).Ok());
  const Status status = session.SaveModel(number, "no folder/a.kvm");
  EXPECT_EQ(status.Code(), StatusCode::kCannotWrite);
  EXPECT_EQ(status.Text(), "'no folder/a.kvm' cannot be written");
}

TEST_F(Models, WhatADumpNeedsStandsInItsFailure) {
  EXPECT_EQ(session.DumpDerivatives().Text(), "it needs dataset 1 and models 1 to 4");
  EXPECT_EQ(session.DumpSensitivity().Text(), "it needs dataset 1 and models 1 to 3");
  EXPECT_EQ(session.WriteQuantityErrorBars().Text(), "it needs three ChiSq terms");
}

}  // namespace
}  // namespace kalvex
