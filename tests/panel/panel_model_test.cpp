#include <gtest/gtest.h>

#include "tests/fakes/panel_model.h"

namespace kelvane {
namespace {

/// Four operators of 25,000 steps each; two of them have monitoring on.
TEST(PanelModel, HoldsWhateverHandsRadiosAndLinksDo) {
  for (const std::uint32_t seed : {1u, 2u, 3u, 4u}) {
    EXPECT_EQ(fakes::PanelModel(seed).play(25'000), "") << "with seed " << seed;
  }
}

}  // namespace
}  // namespace kelvane
