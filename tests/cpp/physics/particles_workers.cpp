#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "particles/WorkerPool.h"

using zorParticles::WorkerPool;

namespace {

/** How often each task of a run was done. */
std::vector<int> countOf(WorkerPool& pool, uint32_t tasks, uint32_t threads) {
  std::vector<std::atomic<int>> done(tasks);
  pool.run(tasks, threads, [&](uint32_t index) { ++done[index]; });
  return {done.begin(), done.end()};
}

TEST(WorkerPools, DoEachTaskOnce) {
  WorkerPool pool;
  for (uint32_t const threads : {0u, 1u, 2u, 7u, 1000u})
    for (uint32_t const tasks : {0u, 1u, 2u, 63u, 5000u})
      EXPECT_EQ(countOf(pool, tasks, threads), std::vector<int>(tasks, 1)) << tasks << " by " << threads;
}

TEST(WorkerPools, ThrowWhatTheFirstTaskThrewWhenAllAreDone) {
  WorkerPool pool;
  for (uint32_t const threads : {2u, 4u}) {
    for (int round = 0; round < 200; ++round) { // who does which task is left to chance
      std::atomic<int> done = 0;
      std::string text;
      try {
        pool.run(64, threads, [&](uint32_t index) {
          ++done;
          if (index % 16 == 5)
            throw std::runtime_error("task " + std::to_string(index));
        });
      } catch (std::runtime_error const& error) {
        text = error.what();
      }
      ASSERT_EQ(text, "task 5") << "with " << threads << " threads";
      ASSERT_EQ(done, 64) << "a task that fails leaves none behind that is still at work";
    }
    EXPECT_EQ(countOf(pool, 100, threads), std::vector<int>(100, 1)) << "goes on after an error";
  }
}

TEST(WorkerPools, SeveralCallersAtOnce) {
  WorkerPool pool;
  std::atomic<int> together = 0;
  {
    std::vector<std::jthread> callers;
    for (int i = 0; i < 3; ++i)
      callers.emplace_back([&] {
        for (int round = 0; round < 200; ++round)
          pool.run(16, 2, [&](uint32_t) { ++together; });
      });
  }
  EXPECT_EQ(together, 3 * 200 * 16);
}

} // namespace
