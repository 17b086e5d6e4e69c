// Threads do each part once, and what they share comes out bit for bit as from one.
#include "numeric/thread_pool.h"

#include <gtest/gtest.h>

#include <random>

#include "numeric/band_solver.h"
#include "numeric/rank_update.h"

namespace kalvex {
namespace {

TEST(ThreadPoolTest, DoesEachPartOnceByAThreadOfItsOwn) {
  for (const int threads : {1, 2, 7}) {
    ThreadPool pool(threads);
    EXPECT_EQ(pool.Threads(), static_cast<std::size_t>(threads));
    for (const std::size_t parts : {0, 1, 3, 1000}) {
      std::vector<std::atomic<int>> times(parts);
      std::atomic<bool> outside = false;
      pool.ForEach(parts, [&](std::size_t part, std::size_t thread) {
        ++times[part];
        if (thread >= pool.Threads()) outside = true;
      });
      for (const auto& count : times) EXPECT_EQ(count, 1);
      EXPECT_FALSE(outside);
    }
  }
}

TEST(ThreadPoolTest, WithoutAPoolGoesInOrder) {
  std::vector<std::size_t> order;
  ForEachPart(nullptr, 4, [&](std::size_t k) { order.push_back(k); });
  EXPECT_EQ(order, (std::vector<std::size_t>{0, 1, 2, 3}));
}

class SharedMatrices : public testing::TestWithParam<std::size_t> {
 protected:
  std::vector<double> Sum(ThreadPool* pool) const {
    const std::size_t size = GetParam();
    std::vector<double> data(size * size);
    std::mt19937 random(3);
    std::uniform_real_distribution<double> entry(-1, 1);
    VectorPanel panel(size);
    for (int round = 0; round < 8; ++round) {
      panel.Clear();
      while (!panel.IsFull()) {
        panel.Begin();
        for (std::size_t i = 0; i < size; ++i) panel[i] = entry(random);
      }
      AddOuterProducts(panel, {data.data(), size}, pool);
    }
    for (std::size_t i = 0; i < size; ++i) data[i * size + i] += 1;
    return data;
  }
};
INSTANTIATE_TEST_SUITE_P(Sizes, SharedMatrices, testing::Values(5, 161, 200, 333));

TEST_P(SharedMatrices, AreTheSameForAnyNumberOfThreads) {
  const std::size_t size = GetParam();
  const std::vector<double> one = Sum(nullptr);
  std::vector<double> b(size, 1.0), expected(size);
  std::vector<double> factor = one, inverse(size);
  ASSERT_EQ(SolveBanded({factor.data(), size}, inverse, b, expected, true), 0);
  for (const int threads : {2, 7}) {
    ThreadPool pool(threads);
    EXPECT_EQ(Sum(&pool), one) << threads;
    std::vector<double> shared = one, x(size), inverseShared(size);
    ASSERT_EQ(SolveBanded({shared.data(), size}, inverseShared, b, x, true, &pool), 0);
    EXPECT_EQ(x, expected) << threads;
    EXPECT_EQ(shared, factor) << threads;
  }
}

}  // namespace
}  // namespace kalvex
