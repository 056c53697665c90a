#include "frequency/cls_frq_digit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/fakes/row_play.h"
#include "tests/frequency/frequency_row.h"

namespace kelvane {
namespace {

using fakes::RowWindow;

TEST_F(FrequencyRow, WrapsWithinTheDigitsThatMayBeSelected) {
  range(29'999'999, 0, 10);
  click(7);
  EXPECT_TRUE(press(key::Right));
  EXPECT_EQ(focused, id::FrqDigit + 1);
  EXPECT_TRUE(press(key::Left));
  EXPECT_EQ(focused, id::FrqDigit + 7);
  EXPECT_EQ(with(&Control::selected), "000000010");
  EXPECT_FALSE(press(key::F1));
  EXPECT_EQ(sent, Commits{});
}

TEST_F(FrequencyRow, StepsADigitUpAndDownWithCarryAndWithinBounds) {
  tuned(14'990'000);
  click(4);
  press(key::Up);
  EXPECT_EQ(digits(), " 15000000");
  press(key::PadMinus);
  press(key::Down);
  press(key::PadPlus);
  EXPECT_EQ(sent, (Commits{{15e6, false}, {14.99e6, false}, {14.98e6, false}, {14.99e6, false}}));
  tuned(29'500'000);
  click(2);
  EXPECT_TRUE(press(key::Up));
  EXPECT_EQ(digits(), " 29500000");
  range(29'999'999, 29'000'000, 1);
  click(2);
  press(key::Down);
  EXPECT_EQ(digits(), " 29500000");
}

TEST_F(FrequencyRow, TunesFromTheReceiversFrequencyByHomeAndPages) {
  tuned(7'123'456);
  click(8);
  row.SetValue(1);
  press(key::Home);
  EXPECT_EQ(sent.back(), (RowWindow::Sent{7'123'000, false}));
  press(key::Delete);
  EXPECT_EQ(sent.size(), 2u);
  tuned(29'999'000);
  click(8);
  press(key::PageUp);
  EXPECT_EQ(digits(), " 30002000");
  EXPECT_EQ(sent.back(), (RowWindow::Sent{30'002'000, false}));
  press(key::PageDown);
  EXPECT_EQ(sent.back(), (RowWindow::Sent{29'996'000, false}));
}

TEST_F(FrequencyRow, RefusesWhatNineDigitsCannotShow) {
  tuned(2'000);
  click(6);
  EXPECT_TRUE(press(key::PageDown));
  EXPECT_EQ(digits(), "     2000");
  receiver = 999'999'000;
  EXPECT_TRUE(press(key::PageUp));
  type(key::Escape);
  EXPECT_EQ(digits(), "999999000");
  type("3+");
  EXPECT_EQ(row.TypedText(), "3");
  receiver = 2'000;
  EXPECT_EQ(type('-'), 0);
  EXPECT_EQ(sent, Commits{});
  type('+');
  EXPECT_EQ(sent, (Commits{{5'000, false}}));
}

TEST_F(FrequencyRow, OverwritesDigitsAndSendsThemOnEnter) {
  click(2);
  type("79");
  EXPECT_EQ(digits(), " 17950000");
  EXPECT_EQ(focused, id::FrqDigit + 4);
  EXPECT_EQ(type(key::Backspace), '0');
  EXPECT_EQ(digits(), " 17900000");
  EXPECT_EQ(focused, id::FrqDigit + 3);
  EXPECT_EQ(type('k'), 0);
  EXPECT_TRUE(row.EntryInProgress());
  EXPECT_EQ(sent, Commits{});
  EXPECT_EQ(type(key::Enter), 0);
  EXPECT_EQ(sent, (Commits{{17'900'000, false}}));
  EXPECT_FALSE(row.EntryInProgress());
  EXPECT_EQ(focused, id::FrqFocus);
}

TEST_F(FrequencyRow, LimitsOverwrittenDigitsToTheRange) {
  range(20'000'000, 1'500'000, 1);
  click(1);
  type("9\r");
  EXPECT_EQ(sent.back().hertz, 20'000'000);
  EXPECT_EQ(digits(), " 20000000");
  click(1);
  type("00\r");
  EXPECT_EQ(sent.back().hertz, 1'500'000);
}

TEST_F(FrequencyRow, GivesOverwrittenDigitsUp) {
  click(2);
  type("7");
  type(key::Escape);
  EXPECT_EQ(digits(), " 14250000");
  click(2);
  type("7");
  focus(id::FrqFocus);
  EXPECT_FALSE(row.EntryInProgress());
  EXPECT_EQ(digits(), " 14250000");
  click(2);
  type("7");
  press(key::Delete);
  EXPECT_EQ(sent, (Commits{{17'050'000, false}}));
  EXPECT_FALSE(row.EntryInProgress());
}

TEST_F(FrequencyRow, TypesAFrequencyInKilohertz) {
  type("7.1234");
  EXPECT_EQ(row.TypedText(), "7.123");
  EXPECT_EQ(digits(), "     7123");
  EXPECT_TRUE(row.EntryInProgress());
  type("\r");
  EXPECT_EQ(sent, (Commits{{7'123, false}}));
  EXPECT_FALSE(row.EntryInProgress());
  EXPECT_EQ(type(key::Enter), key::Enter);

  type("1,5");
  EXPECT_EQ(digits(), "     1500");
  EXPECT_EQ(type('.'), '.');
  type(key::Escape);
  EXPECT_EQ(digits(), " 14250000");
  EXPECT_EQ(sent.size(), 1u);
}

TEST_F(FrequencyRow, TypesEveryHertzOfItsRange) {
  // Products with 1000 that miss the whole hertz, and the very end of the range.
  for (const char* typed : {"4.35", "1.001", "29999.999", "8191.117"}) {
    type(typed);
    type("\r");
    EXPECT_EQ(sent.back().hertz, std::round(std::stod(typed) * 1000)) << typed;
  }
  type("30000");
  EXPECT_EQ(row.TypedText(), "3000");
  range(16'777'205, 0, 1);
  type("16777.205\r");
  EXPECT_EQ(sent.back().hertz, 16'777'205);
  type(key::Escape);
  type(std::string(200, '0'));
  EXPECT_EQ(complaint(), "");
  EXPECT_EQ(digits(), "    00000");
}

TEST_F(FrequencyRow, ErasesATypedPointTogetherWithTheDigitBeforeIt) {
  type("145.\b");
  EXPECT_EQ(row.TypedText(), "14");
  EXPECT_EQ(digits(), "    14000");
  type("\b\b");
  EXPECT_EQ(digits(), "    00000");
  EXPECT_FALSE(row.EntryInProgress());
  EXPECT_EQ(type(key::Backspace), key::Backspace);
  type(".\b");
  EXPECT_EQ(row.TypedText(), "");
}

TEST_F(FrequencyRow, BringsATypedFrequencyIntoTheRangeOfNow) {
  type("20000");
  row.Boundary(9'999'999, 0, 1);
  type("\r");
  EXPECT_EQ(sent.back().hertz, 9'999'999);
  range(29'999'999, 500'000, 1);
  type("3\r");
  EXPECT_EQ(digits(), "   500000");
}

TEST_F(FrequencyRow, MarksChannelizedAndDrmFrequencies) {
  EXPECT_EQ(type(':'), 0);
  EXPECT_TRUE(row.ChnPending());
  type("6085\r");
  EXPECT_EQ(sent.back(), (RowWindow::Sent{6'085'000, true}));
  EXPECT_FALSE(row.ChnPending());
  EXPECT_EQ(type('D'), 0);
  EXPECT_TRUE(row.DrmPending());
  type("1440\r");
  EXPECT_EQ(sent.back(), (RowWindow::Sent{1'445'000, false}));
  EXPECT_FALSE(row.DrmPending());
  type(":d");
  EXPECT_EQ(type('\r'), '\r');
  EXPECT_TRUE(row.ChnPending() && row.DrmPending());
  EXPECT_EQ(type('K'), 'K');
  EXPECT_FALSE(row.ChnPending() || row.DrmPending());
}

TEST_F(FrequencyRow, ReadsATypedStepOnce) {
  EXPECT_EQ(row.Step(), -1);
  for (const auto& [typed, step] :
       {std::pair{"5000", 5000}, {"30000", 3000}, {"29999.6", 30'000}}) {
    type(typed);
    EXPECT_EQ(row.Step(), step) << typed;
  }
  range(99'999'999, 0, 1);
  type("40000");
  EXPECT_EQ(row.Step(), 1000);
  EXPECT_EQ(row.Step(), -1);
}

TEST_F(FrequencyRow, KeepsTheHandsDigitsWhenAKeyOnADigitEndsTyping) {
  type("7050");
  click(6);
  press(key::Left);
  EXPECT_EQ(row.TypedText(), "");
  EXPECT_TRUE(row.EntryInProgress());
  type("1\r");
  EXPECT_EQ(sent, (Commits{{7'051'000, false}}));
}

TEST_F(FrequencyRow, SendsOnlyAWholeFrequencyWhenNoneIsKnown) {
  receiver = -1;
  row.Value(-1);
  for (const int code : {key::Up, key::Down, key::PadPlus, key::PadMinus, key::Home, key::Delete,
                         key::PageUp, key::PageDown}) {
    click(4);
    EXPECT_TRUE(press(code)) << code;
    EXPECT_EQ(digits(), "xxxxxxxxx") << code;
  }
  type("\r");
  click(4);
  for (const char end : {'+', '-'}) {
    focus(id::FrqFocus);
    type("7050");
    EXPECT_EQ(type(end), 0);
    EXPECT_EQ(row.TypedText(), "7050");
    type(key::Escape);
    EXPECT_EQ(digits(), "xxxxxxxxx");
  }
  EXPECT_EQ(sent, Commits{});
  type("7050\r");
  click(4);
  row.Value(-1);
  type("7\r");
  EXPECT_EQ(sent, (Commits{{7'050'000, false}, {70'000, false}}));
}

TEST(FrequencyRowPlay, KeepsItsPromisesUnderAnyKeys) {
  std::mt19937 random(7);
  for (int run = 0; run < 300; ++run) {
    std::vector<std::uint8_t> bytes(400);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
    ASSERT_EQ(fakes::RowPlay().play(bytes), "") << "run " << run;
  }
}

}  // namespace
}  // namespace kelvane
