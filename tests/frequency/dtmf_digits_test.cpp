#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/noting_receivers.h"
#include "tests/fakes/panel_rig.h"

namespace kelvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr Colour kGrey = Colour::rgb(0x80, 0x80, 0x80);

/// A running panel whose servers of digits are asked for.
struct DdeDigits : testing::Test, fakes::PanelRig {
  DdeDigits() {
    settings.writeFlag("DDELink", true);
    start();
  }
  void keys(Index rx, std::string_view keys, int gap = 200) {
    for (const char key : keys)
      digitServers.send(rx, std::string(1, key) + "|" + std::to_string(gap));
    run(milliseconds(1500));
  }
  Hz tuned(Index rx) { return receiver().GetRxFrequency(rx, kTuned); }
};

TEST_F(DdeDigits, TuneAnyReceiverInKilohertzShownOrNot) {
  keys(0, "7123#");
  EXPECT_EQ(tuned(0), 7'123'000);
  EXPECT_EQ(digits(), "  7123000");
  keys(1, "71*5#");
  EXPECT_EQ(tuned(1), 71'500);
  keys(1, "600*0*5#");
  EXPECT_EQ(tuned(1), 600'050) << "a second point is no second point";
  EXPECT_EQ(view().TabStrip.selected, 0) << "the display stays";
}

TEST_F(DdeDigits, HashAndStarAloneAreAHundredHertz) {
  keys(0, "7000#");
  keys(0, "###");
  EXPECT_EQ(tuned(0), 7'000'300);
  keys(0, "*");
  EXPECT_EQ(tuned(0), 7'000'200);
}

TEST_F(DdeDigits, ALongPauseOrNoTimeBeginsANewEntry) {
  keys(0, "7000#");
  keys(0, "99", 200);
  keys(0, "6", 8001);
  keys(0, "055#", 8000);
  EXPECT_EQ(tuned(0), 6'055'000);
  keys(0, "99");
  digitServers.send(0, "#");
  run(milliseconds(1500));
  EXPECT_EQ(tuned(0), 6'055'100) << "without a time it stands alone";
}

TEST_F(DdeDigits, WhatIsNoKeyOrOutOfRangeLeavesTheReceiverAlone) {
  keys(0, "7000#");
  keys(0, "300001#");
  EXPECT_EQ(tuned(0), 7'000'000);
  for (const std::string text : {"", "|", "|5", " |5", "\x80|5", "\n"}) digitServers.send(0, text);
  for (const Index rx : {-1, 4, 7, 8, 99}) digitServers.send(rx, "#|5");
  digitServers.send(0, std::string(65536, '5'));
  keys(0, std::string(10'000, '1'));
  keys(0, "#");
  EXPECT_EQ(tuned(0), 7'000'000);
  keys(0, "5|99999999999#");
  digitServers.send(0, "8|99999999999");
  keys(0, "000#");
  EXPECT_EQ(tuned(0), 8'000'000);
}

TEST_F(DdeDigits, LinksFollowTheOptionAndTheReceiversAndAreSaidInColourAndWords) {
  EXPECT_THAT(digitServers.servers,
              ElementsAre("Kelvane_Harrow", "Kelvane_Quill", "Kelvane_Tern", "Kelvane_Loom"));
  run(milliseconds(1600));
  EXPECT_THAT(view().DDESts.tip, HasSubstr("Waiting for the DDE server Kelvane_Harrow"));
  EXPECT_EQ(view().DDESts.text, "DDE ?");
  digitServers.answer = DigitLink::Linked;
  const int before = digitServers.refreshes;
  run(milliseconds(1600));
  EXPECT_EQ(digitServers.refreshes, before + 1);
  EXPECT_EQ(view().DDESts.back, kGrey);
  EXPECT_EQ(view().DDESts.text, "DDE +");
  panel->tabClicked(2);
  EXPECT_THAT(view().DDESts.tip, HasSubstr("Kelvane_Tern"));
  EXPECT_GT(digitServers.refreshes, before + 1) << "a tab looks for its own server";

  dialogs.inConfig = [](Config& config) {
    config.typed(" Decoder ");
    config.cmdOK_Click();
  };
  click(id::ConfigButton);
  EXPECT_EQ(digitServers.servers.front(), "Decoder_Harrow");
  dialogs.inConfig = [](Config& config) {
    config.ticked(id::DDEOAct, false);
    config.cmdOK_Click();
  };
  click(id::ConfigButton);
  EXPECT_TRUE(digitServers.servers.empty());
  EXPECT_EQ(view().DDESts.back, kButtonFace);
  EXPECT_TRUE(view().DDESts.visible);
  EXPECT_EQ(view().DDESts.tip, "The DDE link is closed");
  const int closed = digitServers.refreshes;
  run(milliseconds(5000));
  EXPECT_EQ(digitServers.refreshes, closed);
}

TEST_F(DdeDigits, StepNoFurtherThanAFrequencyCanBe) {
  /// A radio whose server claims nonsense.
  class TooHigh : public fakes::PassingReceivers {
   public:
    using PassingReceivers::PassingReceivers;
    Answer<Hz> GetRxFrequency(Index, Long) override { return frequency; }
    Outcome SetRxFrequency(Index, Flag, Hz hertz) override {
      asked.push_back(hertz);
      return Outcome::Done;
    }
    Hz frequency = std::numeric_limits<Hz>::max();
    std::vector<Hz> asked;
  };
  TooHigh radio(receiver());
  DtmfDigits digits(radio);
  digits.Digits_Change(0, "#|100");
  EXPECT_TRUE(radio.asked.empty());
  digits.Digits_Change(0, "*|100");
  radio.frequency = 50;
  digits.Digits_Change(0, "*|100");
  ASSERT_EQ(radio.asked.size(), 1u);
  EXPECT_EQ(radio.asked[0], std::numeric_limits<Hz>::max() - 100);
}

TEST_F(DdeDigits, AnyTextsLeaveAShortEntryAndAFrequencyInRange) {
  DtmfDigits digits(receiver());
  std::mt19937 random(7);
  const std::string alphabet = "0123456789*#ABCD|. -e\x01\xff";
  for (int i = 0; i < 20'000; ++i) {
    std::string text;
    for (unsigned n = random() % 6; n > 0; --n) text += alphabet[random() % alphabet.size()];
    const auto rx = static_cast<Index>(random() % 4);
    digits.Digits_Change(rx, text);
    ASSERT_LE(digits.DtmfBuffer(rx).size(), 16u);
    ASSERT_GE(tuned(rx), receiver().GetRxFrqMin(rx) - 100);
    ASSERT_LE(tuned(rx), receiver().GetRxFrqMax(rx) + 100);
  }
}

}  // namespace
}  // namespace kelvane
