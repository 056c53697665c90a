#include "panel/key_commands.h"

#include <algorithm>
#include <functional>
#include <set>

#include <gtest/gtest.h>

#include "frequency/w_mouse.h"
#include "tests/fakes/panel_rig.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

using fakes::PanelRig;

/// A panel at 7 050 000 Hz.
class KeyCommandsTest : public testing::Test {
 protected:
  KeyCommandsTest() {
    rig.start();
    rig.type("7050\r");
  }
  Hz frequency(Index rx = 0) { return rig.sondrel.core.GetRxFrequency(rx, kTuned); }

  PanelRig rig;
};

TEST_F(KeyCommandsTest, ATypedNumberBeforeAnArrowIsTheLocalStep) {
  rig.type("5000");
  rig.press(key::Right);
  EXPECT_EQ(rig.view().VStep[0].text, "5000Hz");
  EXPECT_EQ(rig.digits(), "  7050000");
  EXPECT_EQ(frequency(), 7050000);
  rig.press(key::Right);
  EXPECT_EQ(frequency(), 7055000);
  for (const char* nothing : {"0", ".", "0.4"}) {
    rig.type(nothing);
    rig.press(key::Right);
    EXPECT_EQ(rig.view().VStep[0].text, "5000Hz") << nothing;
    EXPECT_EQ(rig.digits(), "  7055000") << nothing;
  }
  EXPECT_EQ(rig.window.beeps, 3);
  rig.panel->tabClicked(1);
  rig.type("40000");
  rig.press(key::Left);
  EXPECT_EQ(rig.view().VStep[0].text, "1000Hz");
}

TEST_F(KeyCommandsTest, ALetterAfterANumberThatIsOutOfRangeOrMissingChangesNothing) {
  rig.type("700b");
  EXPECT_EQ(rig.digits(), "  7050000");
  rig.type("20000b");
  EXPECT_EQ(rig.view().FrqBfo.text, "700");
  EXPECT_EQ(rig.window.beeps, 1);
  rig.type("b");
  EXPECT_EQ(rig.window.beeps, 2);
  rig.type("120c");
  EXPECT_EQ(rig.window.beeps, 3);
}

TEST_F(KeyCommandsTest, TheClipboardTakesAndGivesKilohertz) {
  rig.type("7123.456\r\x03");
  EXPECT_EQ(rig.clipboard.held, "7123.456");
  rig.type("9000\r\x16");
  EXPECT_EQ(frequency(), 7123456);
  for (const char* bad : {"", "abc", "1e9", "7.123.456", "-5", "0", "99999999"}) {
    rig.clipboard.held = bad;
    rig.window.beeps = 0;
    rig.type("\x16");
    EXPECT_EQ(rig.window.beeps, 1) << bad;
    EXPECT_EQ(frequency(), 7123456) << bad;
  }
  rig.clipboard.held = std::string(10'000'000, '7');
  rig.type("\x16");
  EXPECT_EQ(frequency(), 7123456);
  const struct {
    const char* text;
    Hz frequency;
  } rows[] = {{" 6070,5\r\n", 6070500},
              {" 7100 kHz", 7100000},
              {"7200 8000", 7200000},
              {"\t7300.5;Voice", 7300500}};
  for (const auto& row : rows) {
    rig.clipboard.held = row.text;
    rig.type("\x16");
    EXPECT_EQ(frequency(), row.frequency) << row.text;
  }
}

TEST_F(KeyCommandsTest, APrefixNeverOutlivesACommittedFrequencyOrEscape) {
  rig.type("c");
  rig.type("7100\r");
  const std::string channel = rig.view().VChn.text;
  rig.press(key::PadPlus);
  EXPECT_EQ(rig.view().VChn.text, channel);
  rig.type("c\x1b");
  rig.press(key::PadMinus);
  EXPECT_EQ(rig.view().VChn.text, channel);
}

TEST_F(KeyCommandsTest, APendingLetterIsEndedByWhateverIsNoSecondKey) {
  const std::string channel = rig.view().VChn.text;
  const std::function<void()> endings[] = {
      [this] {
        rig.click(id::LockImg);
        rig.type("\x1b");
        rig.click(id::LockImg + 1);
      },
      [this] { rig.type("\b"); },
      [this] { rig.press(key::Right); },
      [this] { rig.panel->wheel(120); },
      [this] {
        rig.panel->tabClicked(1);
        rig.panel->tabClicked(0);
      },
      [this] {
        rig.window.focus(id::FrqDigit + 4);
        rig.press(key::Up);
        rig.type("\x1b");
      },
  };
  for (const auto& end : endings) {
    rig.type("c");
    end();
    EXPECT_EQ(rig.panel->CommandPrefix(), "");
    const Setting mode = rig.sondrel.core.GetRxMode(0);
    rig.type("m");
    end();
    rig.type(mode == 2 ? "l" : "u");
    EXPECT_EQ(rig.sondrel.core.GetRxMode(0), mode) << "the receiver still waited for it";
    rig.type("u\x1b");
  }
  EXPECT_EQ(rig.view().VChn.text, channel);
  rig.type("500");
  rig.press(key::Right);
  const Setting mode = rig.sondrel.core.GetRxMode(0);
  rig.type("fmas");
  EXPECT_EQ(rig.sondrel.core.GetRxMode(0), mode) << "FM and AS, not F, MA and S";
  EXPECT_EQ(rig.sondrel.core.GetRxAgc(0), 0);
}

TEST_F(KeyCommandsTest, ASignStepsNoBandWhileALetterWaitsForAnotherKey) {
  for (const char* prefix : {"m", "x", ":"}) {
    rig.type(prefix);
    rig.press(key::PadPlus);
    rig.type("+");  // the same key's character
    EXPECT_EQ(frequency(), 7050000);
    rig.press(key::PadPlus);
    EXPECT_NE(frequency(), 7050000) << "the second one does";
    rig.type("7050\r");
    rig.type(prefix);
    rig.type("-");
    EXPECT_EQ(frequency(), 7050000);
    EXPECT_EQ(rig.panel->CommandPrefix(), "");
  }
}

TEST_F(KeyCommandsTest, TheWheelTunesTheOtherWayAndFineTurnsAddUp) {
  rig.panel->wheel(120);
  EXPECT_EQ(frequency(), 7049500);
  rig.panel->wheel(-360);
  EXPECT_EQ(frequency(), 7050000) << "one message is one step";
  for (int i = 0; i < 4; ++i) rig.panel->wheel(-40);
  EXPECT_EQ(frequency(), 7050500);
  rig.run(milliseconds(20));
  rig.window.focus(id::FrqDigit + 4);
  rig.panel->wheel(-120);
  EXPECT_EQ(frequency(), 7060500);
  rig.click(id::LockImg);
  rig.panel->wheel(-120);
  EXPECT_EQ(frequency(), 7060500);
}

TEST_F(KeyCommandsTest, FlagsOfTheNumberToComeShowOnTheLampAndGoWithIt) {
  const Control& lamp = rig.view().FrqDotit;
  const std::string bare = lamp.text;
  rig.type(":");
  EXPECT_EQ(lamp.text, ":");
  EXPECT_NE(lamp.tip.find("channelized"), std::string::npos);
  EXPECT_EQ(lamp.spoken, lamp.tip);
  rig.type("d");
  EXPECT_EQ(lamp.text, ":D");
  rig.type("6085\r");
  EXPECT_EQ(lamp.text, bare);
  EXPECT_EQ(lamp.tip, "");
  const std::function<void()> clearing[] = {
      [this] { rig.type("\x1b"); },
      [this] {
        rig.type("l");
        rig.type("u");
      },
      [this] { rig.panel->tabClicked(1); },
      [this] { rig.panel->tabClicked(0); },
  };
  for (const auto& clear : clearing) {
    rig.type(":d");
    clear();
    EXPECT_EQ(lamp.text, bare);
    rig.type("6070\r");
    EXPECT_EQ(frequency(rig.view().TabStrip.selected), 6070000) << "the flags went unseen";
  }
}

TEST(KeyCommandsOnASlowLink, ABurstOfTheWheelAddsUpAndAsksTheLinkFewTimes) {
  PanelRig rig;
  rig.start();
  rig.type("7050\r100");
  rig.press(key::Right);
  sondrel::SimulatedFaults slow;
  slow.answerTime = milliseconds(20);
  rig.sondrel.core.setFaults(0, slow);
  rig.sondrel.listener.heard.clear();
  for (int i = 0; i < 1000; ++i) rig.panel->wheel(-120);
  EXPECT_EQ(rig.digits(), "  7050000") << "the row follows what arrives";
  rig.run(milliseconds(60));
  EXPECT_EQ(rig.digits(), "  7150000");
  const auto answers = std::ranges::count_if(
      rig.sondrel.listener.heard, [](const auto& event) { return event.name == "RxFrqUpdated"; });
  EXPECT_LE(answers, 3) << "steps that waited were sent one by one";
  for (int i = 0; i < 50; ++i) rig.press(key::Left);
  rig.run(milliseconds(60));
  EXPECT_EQ(rig.digits(), "  7145000");
}

TEST(CommandRows, AreOnePerKeyAndAllCanBeReached) {
  std::set<std::tuple<int, int, int, std::string_view>> keys;
  for (const CommandRow& row : commandRows()) {
    EXPECT_TRUE(keys.insert({int(row.input), row.code, row.shift, row.prefix}).second)
        << row.keys << " " << row.action;
    EXPECT_FALSE(row.keys.empty() || row.action.empty());
    EXPECT_LE(row.prefix.size(), 1u);
  }
}

}  // namespace
}  // namespace kelvane
