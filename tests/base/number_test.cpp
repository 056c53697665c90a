#include "base/number.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(Num, ReadsTheLongestPrefixThatFormsANumber) {
  EXPECT_EQ(num("7.123"), 7.123);
  EXPECT_EQ(num("  42kHz"), 42);
  EXPECT_EQ(num("1.5.3"), 1.5);
  EXPECT_EQ(num("-700"), -700);
  EXPECT_EQ(num(".5"), .5);
  EXPECT_EQ(num("5."), 5);
  EXPECT_EQ(num("1e9"), 1);
  for (const char* none : {"", " ", "abc", "-", ".", "inf", "nan", "x7"}) EXPECT_EQ(num(none), 0);
}

TEST(WholeNumber, RefusesAnythingElse) {
  EXPECT_EQ(wholeNumber(" 70000 "), 70000);
  EXPECT_EQ(wholeNumber("+5"), 5);
  EXPECT_EQ(wholeNumber("-5"), -5);
  for (const char* bad : {"", "5a", "5.0", "+-5", "99999999999999999999"})
    EXPECT_EQ(wholeNumber(bad), std::nullopt) << bad;
}

TEST(DecimalText, IsTheShortestThatReadsBack) {
  EXPECT_EQ(decimalText(7123.456), "7123.456");
  EXPECT_EQ(decimalText(29999999), "29999999");
  EXPECT_EQ(decimalText(1e15), "1000000000000000");
}

TEST(NearestLong, RoundsAndStaysWithin32Bits) {
  EXPECT_EQ(nearestLong(7050000.5), 7050001);
  EXPECT_EQ(nearestLong(-0.6), -1);
  EXPECT_EQ(nearestLong(1e30), 2147483647);
  EXPECT_EQ(nearestLong(-1e30), -2147483647 - 1);
}

}  // namespace
}  // namespace kelvane
