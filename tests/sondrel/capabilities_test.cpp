#include "components/sondrel/capabilities.h"

#include <gtest/gtest.h>

namespace kelvane::sondrel {
namespace {

TEST(Capabilities, TheNearestFrequencyLiesInTheRangeAndOnTheRaster) {
  Capabilities can;
  can.minimum = 14;
  can.maximum = 96;
  can.finest = 10;
  EXPECT_EQ(can.nearestFrequency(0), 20) << "10 lies below the range";
  EXPECT_EQ(can.nearestFrequency(44), 40);
  EXPECT_EQ(can.nearestFrequency(45), 50);
  EXPECT_EQ(can.nearestFrequency(1000), 90) << "100 lies above it";
  can.maximum = 18;
  EXPECT_EQ(can.nearestFrequency(16), 16) << "no frequency of the raster lies in the range";
  can.finest = 0;
  EXPECT_EQ(can.nearestFrequency(15), 15) << "the raster is not known";
  can.maximum = 2'147'483'647;
  can.finest = 1000;
  EXPECT_EQ(can.nearestFrequency(2'147'483'647), 2'147'483'000);
}

TEST(Capabilities, TheNearestFilterIsTheNarrowerOfTwo) {
  Capabilities can;
  can.modes.resize(2);
  can.modes[0].value = 2;
  can.modes[0].filters = {1800, 2400, 3000};
  can.modes[1].value = 3;
  EXPECT_EQ(can.nearestFilter(2, 2700), 2400);
  EXPECT_EQ(can.nearestFilter(2, 2701), 3000);
  EXPECT_EQ(can.nearestFilter(2, -2'147'483'647), 1800);
  EXPECT_EQ(can.nearestFilter(2, 2'147'483'647), 3000);
  EXPECT_EQ(can.nearestFilter(3, 2700), 0);
  EXPECT_EQ(can.nearestFilter(9, 2700), 0);
}

}  // namespace
}  // namespace kelvane::sondrel
