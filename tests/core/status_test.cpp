#include "core/status.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

namespace kalvex {
namespace {

TEST(Statuses, OfSuccessAreOkAndSayNothing) {
  const Status status;
  EXPECT_TRUE(status.Ok());
  EXPECT_EQ(status.Code(), StatusCode::kOk);
  EXPECT_TRUE(status.Text().empty());
  EXPECT_TRUE(status.About().empty());
}

TEST(Statuses, OfAFailureTellWhatFailedAndWhatItIsAbout) {
  const Status status(StatusCode::kBadFormat, "'a.kvm' is no model", "a.kvm");
  EXPECT_FALSE(status.Ok());
  EXPECT_EQ(status.Code(), StatusCode::kBadFormat);
  EXPECT_EQ(status.Text(), "'a.kvm' is no model");
  EXPECT_EQ(status.About(), "a.kvm");
  EXPECT_TRUE(Status(StatusCode::kBusy, "a fit runs").About().empty());
}

TEST(Statuses, OfSharedFailuresNameWhatIsMissing) {
  struct Failure {
    Status status;
    StatusCode code;
    std::string text, about;
  };
  const Failure failures[] = {
      {NoSuchModel(3), StatusCode::kNotThere, "model 3 does not exist", "model 3"},
      {NoSuchGraph(-1), StatusCode::kNotThere, "graph -1 does not exist", "graph -1"},
      {NotLoaded(12), StatusCode::kNotThere, "dataset 12 is not loaded", "dataset 12"},
      {CannotWrite("x/y.dat"), StatusCode::kCannotWrite, "'x/y.dat' cannot be written", "x/y.dat"},
  };
  for (const Failure& failure : failures) {
    EXPECT_EQ(failure.status.Code(), failure.code);
    EXPECT_EQ(failure.status.Text(), failure.text);
    EXPECT_EQ(failure.status.About(), failure.about);
  }
}

// A function as a caller sees it: it returns a value, or the reason why there is none.
Result<int> Half(int number) {
  if (number % 2 != 0) return {StatusCode::kBadArgument, std::to_string(number) + " is odd", "the number"};
  return number / 2;
}

TEST(Results, AreTheValueOrTheReasonWhyThereIsNone) {
  const Result<int> half = Half(14);
  ASSERT_TRUE(half.Ok());
  EXPECT_EQ(*half, 7);
  EXPECT_TRUE(half.GetStatus().Ok());
  EXPECT_TRUE(half.Text().empty());

  const Result<int> none = Half(7);
  EXPECT_FALSE(none.Ok());
  EXPECT_EQ(none.GetStatus().Code(), StatusCode::kBadArgument);
  EXPECT_EQ(none.Text(), "7 is odd");
  EXPECT_EQ(none.GetStatus().About(), "the number");
}

TEST(Results, CarryAFailureFromBelowAsItIs) {
  const Result<std::string> result = NoSuchModel(5);
  EXPECT_FALSE(result.Ok());
  EXPECT_EQ(result.GetStatus().Code(), StatusCode::kNotThere);
  EXPECT_EQ(result.Text(), "model 5 does not exist");
}

TEST(Results, HandOverAValueThatCannotBeCopied) {
  Result<std::unique_ptr<std::string>> result = std::make_unique<std::string>("kept");
  ASSERT_TRUE(result.Ok());
  EXPECT_EQ((*result)->size(), 4u);
  const std::unique_ptr<std::string> taken = std::move(*result);
  EXPECT_EQ(*taken, "kept");
}

}  // namespace
}  // namespace kalvex
