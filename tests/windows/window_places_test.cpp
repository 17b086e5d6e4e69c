// The initial position and size of each window.
#include <gtest/gtest.h>

#include "support/test_platform.h"
#include "windows/desk.h"

namespace kalvex {
namespace {

class WindowPlaces : public testing::Test {
 protected:
  TestPlatform platform;
  Session session{platform, 1, Defaults::kFormer};
  Desk desk{session};
};

TEST_F(WindowPlaces, OfANewModel) {
  const ModelWindow& window = desk.models.at(*session.NewModel());
  EXPECT_EQ(window.x, 50);
  EXPECT_EQ(window.y, 100);
  EXPECT_EQ(window.width, 293);
  EXPECT_EQ(window.height, 250);
}

TEST_F(WindowPlaces, OfANewGraph) {
  const GraphWindow& window = desk.graphs.at(*session.NewGraph());
  EXPECT_EQ(window.x, 200);
  EXPECT_EQ(window.y, 200);
}

}  // namespace
}  // namespace kalvex
