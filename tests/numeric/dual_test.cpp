// Square roots of dual numbers at 0, where the slope is infinite, and below 0.
#include "numeric/dual.h"

#include <gtest/gtest.h>

namespace kalvex {
namespace {

TEST(DualRoot, At0HasNoSlope) {
  const Dual<2> x(0, 0), root = Sqrt(x);
  EXPECT_EQ(root.a, 0);
  EXPECT_EQ(root.v[0], 0);
  EXPECT_EQ(root.v[1], 0);
  const Complex<Dual<2>> z{Dual<2>(0, 0), Dual<2>(0, 1)}, rootOfZ = Sqrt(z);
  for (const Dual<2>& part : {rootOfZ.re, rootOfZ.im}) EXPECT_EQ(std::abs(part.v[0]) + std::abs(part.v[1]), 0);
}

TEST(DualRoot, Below0IsThatOfTheMagnitude) {
  EXPECT_EQ(Sqrt(-4.0), 2);
  const Dual<1> below = Sqrt(Dual<1>(-4, 0)), above = Sqrt(Dual<1>(4, 0));
  EXPECT_EQ(below.a, 2);
  EXPECT_EQ(below.v[0], -0.25);
  EXPECT_EQ(above.v[0], 0.25);
}

}  // namespace
}  // namespace kalvex
