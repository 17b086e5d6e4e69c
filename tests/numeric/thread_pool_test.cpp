// The pool runs every task exactly once, on any thread.
#include "numeric/thread_pool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <new>
#include <random>
#include <vector>

#include "numeric/band_solver.h"
#include "numeric/rank_update.h"
#include "support/program_state.h"

namespace kalvex {
namespace {

TEST(ThreadPool, EveryTaskIsDoneOnceByAThreadOfThePool) {
  for (const int threads : {1, 2, 7}) {
    ThreadPool pool(threads);
    for (const std::size_t count : {0U, 1U, 2U, 100U, 1000U}) {
      std::vector<int> done(count);
      std::atomic<bool> known{true};
      pool.Run(count, [&](std::size_t task, std::size_t thread) {
        ++done[task];
        if (thread >= pool.Threads()) known = false;
      });
      EXPECT_EQ(done, std::vector<int>(count, 1)) << threads;
      EXPECT_TRUE(known);
    }
  }
}

TEST(ThreadPool, ManyShortRoundsOneAfterTheOther) {
  ThreadPool pool(3);
  std::vector<double> sums(10);
  for (int round = 0; round < 5000; ++round) {
    pool.Run(sums.size(), [&](std::size_t task, std::size_t) { sums[task] += 1; });
  }
  EXPECT_EQ(sums, std::vector<double>(10, 5000.0));
}

TEST(ThreadPool, NoThreadWorksForTwoTasksAtATime) {
  ThreadPool pool(4);
  std::vector<std::atomic<int>> busy(pool.Threads());
  std::atomic<bool> clash{false};
  for (int round = 0; round < 200; ++round) {
    pool.Run(40, [&](std::size_t, std::size_t thread) {
      if (busy[thread]++ != 0) clash = true;
      --busy[thread];
    });
  }
  EXPECT_FALSE(clash);
}

TEST(ThreadPool, WhatATaskThrowsReachesTheCallerAndThePoolGoesOn) {
  ThreadPool pool(3);
  for (int round = 0; round < 20; ++round) {
    EXPECT_THROW(pool.Run(50,
                          [](std::size_t task, std::size_t) {
                            if (task % 7 == 3) throw std::bad_alloc();
                          }),
                 std::bad_alloc);
    std::atomic<int> done{0};
    pool.Run(50, [&](std::size_t, std::size_t) { ++done; });
    EXPECT_EQ(done, 50);
  }
}

TEST(ThreadPool, WithoutOneTheTasksAreDoneInOrder) {
  std::vector<std::size_t> order;
  ParallelFor(nullptr, 4, [&](std::size_t task, std::size_t thread) {
    EXPECT_EQ(thread, 0u);
    order.push_back(task);
  });
  EXPECT_EQ(order, (std::vector<std::size_t>{0, 1, 2, 3}));
}

// ---- matrix operations in the pool

std::vector<double> RandomNumbers(std::size_t count) {
  std::mt19937 random(4);
  std::uniform_real_distribution<double> value(-1, 1);
  std::vector<double> numbers(count);
  for (double& number : numbers) number = value(random);
  return numbers;
}

TEST(Threads, OuterProductsAreTheSameToTheLastBit) {
  constexpr std::size_t kSize = 350;
  const std::vector<double> numbers = RandomNumbers(3 * VectorPanel::kMost * (kSize + 1));
  std::vector<double> first, firstSum;
  for (const int threads : {1, 2, 7}) {
    ThreadPool pool(threads);
    std::vector<VectorPanel> panels(3, VectorPanel(kSize));
    const double* next = numbers.data();
    for (VectorPanel& panel : panels) {
      while (!panel.IsFull()) {
        panel.Begin(*next++);
        for (std::size_t i = 0; i < kSize; ++i) panel[i] = *next++;
      }
    }
    const VectorPanel* const pointers[] = {&panels[0], &panels[1], &panels[2]};
    std::vector<double> matrix(kSize * kSize), sum(kSize);
    AddOuterProducts(pointers, {matrix.data(), kSize}, sum, &pool);
    if (first.empty()) first = matrix, firstSum = sum;
    EXPECT_TRUE(SameBits(matrix, first)) << threads;
    EXPECT_TRUE(SameBits(sum, firstSum)) << threads;
  }
}

TEST(Threads, SolutionsAreTheSameToTheLastBit) {
  constexpr std::size_t kSize = 521;
  std::vector<double> upper = RandomNumbers(kSize * kSize);
  for (std::size_t i = 0; i < kSize; ++i) upper[i * kSize + i] = 600;
  const std::vector<double> b = RandomNumbers(kSize);
  std::vector<double> first, firstMatrix;
  for (const int threads : {1, 2, 7}) {
    ThreadPool pool(threads);
    std::vector<double> matrix = upper, x(kSize);
    BandFactor factor;
    ASSERT_EQ(SolveBanded({matrix.data(), kSize}, factor, b, x, true, &pool), 0);
    if (first.empty()) first = x, firstMatrix = matrix;
    EXPECT_TRUE(SameBits(x, first)) << threads;
    EXPECT_TRUE(SameBits(matrix, firstMatrix)) << threads;
  }
  upper[400 * kSize + 400] = -1;
  for (const int threads : {1, 2, 7}) {
    ThreadPool pool(threads);
    std::vector<double> matrix = upper, x(kSize);
    BandFactor factor;
    EXPECT_EQ(SolveBanded({matrix.data(), kSize}, factor, b, x, true, &pool), -1) << threads;
  }
}

}  // namespace
}  // namespace kalvex
