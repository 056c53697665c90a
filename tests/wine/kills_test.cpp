#include <gtest/gtest.h>

#include <random>

#include "tests/wine/killed_programs.h"

namespace kelvane::wine {
namespace {

TEST(KilledPrograms, LoseNothingThatWasKeptWheneverTheyAreKilled) {
  KilledPrograms programs("TestKilled");
  std::mt19937 random(20'261'122);
  for (int kill = 0; kill < 20; ++kill) ASSERT_TRUE(programs.kill(5 + random() % 120));
  const auto found = programs.look();
  EXPECT_EQ(found.lost, 0);
  EXPECT_EQ(found.torn, 0);
  EXPECT_GT(programs.written(), 100);
}

}  // namespace
}  // namespace kelvane::wine
