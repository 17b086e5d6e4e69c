#include "core/shared_list.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

namespace kalvex {
namespace {

TEST(SharedList, BeforeItIsMadeIsEmpty) {
  const SharedList<int> list;
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(list.size(), 0u);
  EXPECT_TRUE(list.begin() == list.end());
  EXPECT_EQ(list.Get(), std::vector<int>{});
}

TEST(SharedList, HoldsWhatItWasMadeOf) {
  const SharedList<std::string> list = std::vector<std::string>{"a", "b", "c"};
  ASSERT_EQ(list.size(), 3u);
  EXPECT_FALSE(list.empty());
  EXPECT_EQ(list.front() + list[1] + list.back(), "abc");
  EXPECT_EQ(std::accumulate(list.begin(), list.end(), std::string()), "abc");
}

TEST(SharedList, ACopyIsTheSameList) {
  const SharedList<double> list = std::vector<double>(1000, 0.5);
  const SharedList<double> copy = list;
  EXPECT_EQ(&copy[0], &list[0]);
}

TEST(SharedList, ACopyKeepsItsElementsWhenTheListIsMadeAnew) {
  SharedList<int> list = std::vector<int>{1, 2};
  const SharedList<int> copy = list;
  list = std::vector<int>{3};
  EXPECT_EQ(copy.Get(), (std::vector<int>{1, 2}));
  EXPECT_EQ(list.Get(), std::vector<int>{3});
  list = {};
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(copy.size(), 2u);
}

}  // namespace
}  // namespace kalvex
