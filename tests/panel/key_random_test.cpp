#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/fakes/panel_play.h"

namespace kelvane {
namespace {

TEST(KeyCommandsRandom, KeepsItsPromisesWhateverIsPressed) {
  for (std::uint32_t seed = 1; seed <= 3; ++seed) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes(2400);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
    EXPECT_EQ(fakes::PanelPlay().play(bytes), "") << "seed " << seed;
  }
}

}  // namespace
}  // namespace kelvane
