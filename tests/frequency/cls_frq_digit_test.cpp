#include "frequency/cls_frq_digit.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/frequency/frequency_row.h"

namespace kelvane {
namespace {

constexpr Colour kIdle = Colour::rgb(0xFF, 0xC0, 0x80);
constexpr Colour kGreen = Colour::rgb(0, 0xFF, 0);
constexpr Colour kRed = Colour::rgb(0xFF, 0, 0);

using fakes::RowWindow;

TEST_F(FrequencyRow, ShowsAFrequencyRightAlignedInNineDigits) {
  EXPECT_EQ(shown(7'050'000), "  7050000");
  EXPECT_EQ(shown(5), "        5");
  EXPECT_EQ(shown(0), "    00000");
  EXPECT_EQ(shown(999'999'999), "999999999");
  EXPECT_EQ(shown(4.35 * 1000 - 1e-12), "     4350");
  for (const double impossible : {1e9, -5., std::nan(""), 1e300})
    EXPECT_EQ(shown(impossible), "xxxxxxxxx") << impossible;
  EXPECT_EQ(row.Value(), 0);
}

TEST_F(FrequencyRow, WritesAValueOnlyWithinItsBounds) {
  range(20'000'000, 1'000'000, 1);
  for (const double outside : {20'000'001., 999'999., -2.}) {
    row.Value(outside);
    EXPECT_EQ(row.Value(), 14'250'000) << outside;
  }
  row.Value(20'000'000);
  EXPECT_EQ(digits(), " 20000000");
  range(2e9, -10, 1);
  row.Value(1.5e9);
  row.Value(-5);
  EXPECT_EQ(digits(), " 20000000");
  row.BFO(-700);
  EXPECT_EQ(FrqBfo.text, "-700");
  row.Value(-1);
  EXPECT_EQ(digits(), "xxxxxxxxx");
  EXPECT_EQ(FrqBfo.text, "");
  EXPECT_EQ(row.Value(), 0);
}

TEST_F(FrequencyRow, HidesWhatTheRangeDoesNotNeedAndLocksWhatTheReceiverCannotDo) {
  range(29'999'999, 0, 10);
  EXPECT_EQ(with(&Control::visible), "011111111");
  EXPECT_EQ(with(&Control::enabled), "011111110");
  range(9'999, 0, 1);
  EXPECT_EQ(with(&Control::visible), "000001111");
  range(2e9, 0, 1);
  EXPECT_EQ(with(&Control::enabled), "111111111");
  row.LockAll(true);
  EXPECT_EQ(with(&Control::enabled), "000000000");
  EXPECT_EQ(with(&Control::visible), "111111111");
  EXPECT_FALSE(FrqDotit.enabled);
  EXPECT_FALSE(FrqBfo.enabled);
  row.LockAll(false);
  EXPECT_TRUE(FrqDotit.enabled);
  EXPECT_TRUE(FrqBfo.enabled);
}

TEST_F(FrequencyRow, KeepsASensibleRangeWhenTheReceiverNamesNone) {
  for (const double max : {-1., 0., 5.}) {
    range(max, 100, 1);
    type("123\r");
    click(8);
    type("7\r");
    for (const auto& now : sent) EXPECT_LE(now.hertz, std::max(max, 0.));
    EXPECT_EQ(complaint(), "");
  }
}

TEST_F(FrequencyRow, ShowsByItsLampWhereTheKeysGo) {
  EXPECT_EQ(FrqDotit.fore, kRed);
  click(3);
  EXPECT_EQ(FrqDotit.fore, kGreen);
  EXPECT_TRUE(row.Processed());
  click(5);
  EXPECT_EQ(with(&Control::selected), "000001000");
  focus(id::TabStrip);
  EXPECT_EQ(FrqDotit.fore, kIdle);
  EXPECT_FALSE(row.Processed());
  click(5);
  type(key::Escape);
  EXPECT_EQ(FrqDotit.fore, kRed);
  EXPECT_EQ(focused, id::FrqFocus);
  row.Unselect(false);
  EXPECT_EQ(with(&Control::selected), "000000001");
  EXPECT_EQ(FrqDotit.fore, kGreen);
}

TEST_F(FrequencyRow, LocksWithoutLosingTheKeyboard) {
  type("70");
  row.LockAll(true);
  EXPECT_EQ(row.TypedText(), "");
  row.LockAll(false);
  click(4);
  type("1");
  row.LockAll(false);
  EXPECT_EQ(focused, id::FrqDigit + 5);
  EXPECT_FALSE(row.EntryInProgress());
  row.LockAll(true);
  EXPECT_EQ(focused, id::FrqFocus);
  EXPECT_FALSE(row.Processed());
  row.LockAll(false);
  click(8);
  range(29'999'999, 0, 10);
  EXPECT_EQ(focused, id::FrqFocus);
  click(1);
  row.Boundary(999'999, 0, 10);
  EXPECT_EQ(focused, id::FrqFocus);
  EXPECT_EQ(complaint(), "");
  // A key that was on its way when the lock came.
  row.LockAll(true);
  focused = id::FrqDigit + 4;
  EXPECT_FALSE(press(key::Up));
  type("1\r");
  EXPECT_EQ(sent, Commits{});
}

}  // namespace
}  // namespace kelvane
