#include <gtest/gtest.h>

#include <random>

#include "tests/fakes/killed_writers.h"

namespace kelvane {
namespace {

TEST(KilledWriters, LoseNothingThatWasOnTheDiskWheneverTheyAreKilled) {
  fakes::KilledWriters writers;
  std::mt19937 random(20'251'122);
  // A busy computer lets a process do little before it is killed.
  for (int kill = 0; kill < 20 || (kill < 200 && writers.written() <= 20); ++kill)
    writers.kill(milliseconds(20 + random() % 200));
  const auto found = writers.look();
  EXPECT_EQ(found.lost, 0);
  EXPECT_EQ(found.torn, 0);
  EXPECT_GT(writers.written(), 20);
}

}  // namespace
}  // namespace kelvane
