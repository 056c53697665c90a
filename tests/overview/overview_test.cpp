#include "overview/overview.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "overview/traces.h"
#include "tests/fakes/noting_receivers.h"
#include "tests/fakes/panel_rig.h"
#include "tests/fakes/unlike_receivers.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

using fakes::PanelRig;
namespace unlike = fakes::unlike;

/// The panel with eight unlike receivers and its overview open.
class OverviewTest : public testing::Test {
 protected:
  OverviewTest() {
    rig.start(milliseconds(8000));
    rig.panel->tabClicked(0);
    rig.press(key::F7);
  }
  Overview& all() { return *rig.dialogs.overview; }
  void type(const std::string& characters) {
    for (const char c : characters) all().keyPress(c);
    rig.run(milliseconds(100));
  }
  OverviewRow row(Index rx) { return all().row(rx); }
  std::string movedBy(Index rx) {
    const std::string words = row(rx).movedBy;
    return words.substr(0, words.rfind(' '));
  }

  PanelRig rig{unlike::receivers()};
};

TEST_F(OverviewTest, ShowsEachReceiverWithWhatItTellsAndNothingMore) {
  ASSERT_EQ(all().rows(), 8);
  const OverviewRow full = row(unlike::kFull);
  EXPECT_TRUE(full.shown && full.online && full.remote);
  EXPECT_EQ(full.name, "Full");
  EXPECT_EQ(full.frequency, 6'070'000);
  EXPECT_EQ(full.mode, "AM 6000");
  EXPECT_EQ(full.settings, "AGC Slow");
  EXPECT_NE(full.station, "");
  EXPECT_EQ(full.squelch, "SQ open");
  EXPECT_TRUE(full.bar.live);
  EXPECT_NE(full.reading, "");
  EXPECT_TRUE(full.minute.back().known);
  EXPECT_EQ(full.movedBy, "") << "nobody has tuned it yet";
  const OverviewRow secretive = row(unlike::kSecretive), lost = row(unlike::kLost);
  EXPECT_EQ(secretive.mode + secretive.settings + secretive.reading + secretive.squelch, "");
  EXPECT_FALSE(secretive.bar.live);
  rig.panel->receiverEvents().RxSqlUpdated(unlike::kFull, 1, 0);
  EXPECT_EQ(row(unlike::kFull).bar.squelch, placeOnBar(-150))
      << "what the receiver answers: an event has 0 for a threshold that it does not know";
  EXPECT_EQ(row(unlike::kPlain).bar.squelch, placeOnBar(0)) << "of one that is not shown as well";
  EXPECT_FALSE(secretive.minute.back().known);
  EXPECT_EQ(lost.frequency, -1);
  rig.receiver().SetRxConnect(unlike::kPlain, false);
  rig.run(milliseconds(100));
  EXPECT_EQ(row(unlike::kPlain).link, "Rx: Not responding");
  EXPECT_EQ(row(unlike::kPlain).reading, "");
  EXPECT_NE(spokenRow(1, row(0)).find("1 Full, shown, 6070.000 kHz, AM 6000, AGC Slow, "),
            std::string::npos);
}

TEST_F(OverviewTest, DigitsConcernTheRowWithTheFocusAloneAndItSaysWhich) {
  all().focus(unlike::kScanner);
  type("145.5");
  EXPECT_EQ(row(unlike::kScanner).entry, "145.5");
  EXPECT_EQ(row(unlike::kFull).entry, "");
  EXPECT_NE(all().statusLine().find("Frequency for Scanner: 145.5 kHz"), std::string::npos);
  all().focus(unlike::kPlain);
  EXPECT_EQ(row(unlike::kScanner).entry, "") << "dropped with the focus";
  type("7000\r");
  EXPECT_EQ(row(unlike::kPlain).frequency, 2'182'000);
  EXPECT_NE(all().statusLine().find("from 1600.000 to 4200.000 kHz"), std::string::npos);
  type("99\b\b2000,5\r");
  EXPECT_EQ(row(unlike::kPlain).frequency, 2'000'500);
  EXPECT_EQ(rig.digits(), "  6070000") << "the panel shows another receiver";
  rig.receiver().SetRxRemote(unlike::kPlain, false);
  rig.run(milliseconds(100));
  type("3000\r");
  all().wheel(unlike::kPlain, 120);
  rig.run(milliseconds(100));
  EXPECT_EQ(row(unlike::kPlain).frequency, 2'000'500);
  EXPECT_NE(all().statusLine().find("Plain: not under remote control"), std::string::npos);
  all().focus(-1);
  EXPECT_FALSE(all().keyPress('7'));
}

TEST_F(OverviewTest, WheelArrowsAndKeysReachTheirReceiverWithoutShowingIt) {
  all().wheel(unlike::kScanner, -120);
  all().focus(unlike::kStubborn);
  all().keyDown(key::Right, 0);
  rig.run(milliseconds(100));
  EXPECT_EQ(row(unlike::kScanner).frequency, 14'200'500);
  EXPECT_EQ(row(unlike::kStubborn).frequency, 9'580'500);
  EXPECT_TRUE(row(unlike::kFull).shown);
  all().keyDown('4', key::CtrlHeld);
  EXPECT_TRUE(row(unlike::kSlow).shown);
  EXPECT_EQ(rig.view().TabStrip.selected, unlike::kSlow);
  type("\r");
  EXPECT_TRUE(row(unlike::kStubborn).shown) << "Enter without digits";
}

TEST_F(OverviewTest, CopiesASettingAndTakesItBack) {
  all().focus(unlike::kFull);
  all().keyDown('C', key::CtrlHeld);
  EXPECT_EQ(rig.clipboard.held, "6070");
  all().focus(unlike::kScanner);
  all().keyDown('V', key::CtrlHeld);
  rig.run(milliseconds(100));
  OverviewRow scanner = row(unlike::kScanner);
  EXPECT_EQ(scanner.frequency, 6'070'000);
  EXPECT_EQ(scanner.mode, "AM 9000") << "the nearest filter that it has";
  EXPECT_NE(all().statusLine().find("without AGC Slow"), std::string::npos) << all().statusLine();
  all().dragOver(unlike::kFull, unlike::kPlain);
  EXPECT_EQ(all().statusLine(), "Let go to give Plain the setting of Full");
  all().dragEnded();
  all().copy(unlike::kFull, unlike::kPlain);
  EXPECT_NE(all().statusLine().find("from 1600.000"), std::string::npos);
  all().keyDown('Z', key::CtrlHeld);
  rig.run(milliseconds(100));
  scanner = row(unlike::kScanner);
  EXPECT_EQ(scanner.frequency, 14'200'000);
  EXPECT_EQ(scanner.mode, "FM 15000");
  EXPECT_FALSE(all().canTakeBack());
}

TEST_F(OverviewTest, SaysWhoTunedLast) {
  rig.turnKnob(unlike::kScanner, 7'000'000);
  rig.run(milliseconds(6000));
  EXPECT_EQ(movedBy(unlike::kScanner), "radio or program");
  rig.panel->tabClicked(0);
  rig.click(id::GenEvent);
  rig.type("3600\r");
  rig.run(milliseconds(3000));
  EXPECT_EQ(movedBy(unlike::kFull), "operator");
  EXPECT_EQ(movedBy(unlike::kScanner), "follows Full");
  EXPECT_EQ(movedBy(unlike::kSlow), "follows Full");
  all().wheel(unlike::kScanner, 120);
  rig.run(milliseconds(6000));
  EXPECT_EQ(movedBy(unlike::kScanner), "operator");
  rig.click(id::GenEvent + 1);
  rig.turnKnob(unlike::kPlain, 2'500'000);
  rig.run(milliseconds(3000));
  EXPECT_EQ(movedBy(unlike::kPlain), "radio or program");
  EXPECT_EQ(movedBy(unlike::kFull), "follows Plain");
}

TEST(OverviewAndSet, EventsOfAReceiverThatIsGoneBelongToNoneThatComes) {
  PanelRig rig("[Receiver]\nName=A\nMemories=a\n[Receiver]\nName=B\nMemories=b\n");
  rig.start();
  rig.press(key::F7);
  Overview& all = *rig.dialogs.overview;
  ReceiverListener& events = rig.panel->receiverEvents();
  const auto change = [&](const std::string& receivers) {
    rig.sondrel.configure(receivers);
    events.DrvUpdated(rig.sondrel.core.OpenRxConfig("Kelvane", 0));
    rig.run(milliseconds(100));
  };
  change("[Receiver]\nName=A\nMemories=a\n");
  for (const Index rx : {1, 7, 8, -1, 32767}) {
    events.RxSMtUpdated(rx, 0, 0, -30, "S9+43");
    events.RxFrqUpdated(rx, 6'070'000, 1);
    events.RxFrqUpdated(rx, 7'070'000, 1);
    events.RxSqlUpdated(rx, 1, -90);
    events.RxConnState(rx, 1003);
  }
  rig.run(milliseconds(2000));
  EXPECT_EQ(all.rows(), 1);
  change("[Receiver]\nName=A\nMemories=a\n[Receiver]\nName=New\nMemories=n\nUntold=meter\n");
  rig.run(milliseconds(2000));
  ASSERT_EQ(all.rows(), 2);
  const OverviewRow fresh = all.row(1);
  EXPECT_TRUE(fresh.online);
  EXPECT_EQ(fresh.reading + fresh.movedBy, "");
  EXPECT_FALSE(fresh.bar.live);
  EXPECT_FALSE(std::ranges::any_of(fresh.minute, &OverviewRow::Second::known));
}

TEST(OverviewAndSet, WhatIsKeptStaysWithItsReceiver) {
  PanelRig rig("[Receiver]\nName=A\nMemories=a\n[Receiver]\nName=B\nMemories=b\nGain=20\n");
  rig.start();
  rig.press(key::F7);
  Overview& all = *rig.dialogs.overview;
  all.focus(1);
  all.keyPress('7');
  all.wheel(1, 120);
  rig.run(milliseconds(2000));
  const OverviewRow before = all.row(1);
  rig.sondrel.configure(
      "[Receiver]\nName=New\nMemories=n\n[Receiver]\nName=Now C\nMemories=b\nGain=20\n");
  rig.panel->receiverEvents().DrvUpdated(rig.sondrel.core.OpenRxConfig("Kelvane", 0));
  rig.run(milliseconds(100));
  EXPECT_EQ(all.rows(), 2);
  EXPECT_EQ(all.row(0).movedBy, "");
  EXPECT_FALSE(all.row(0).minute[50].known);
  EXPECT_EQ(all.row(1).name, "Now C");
  EXPECT_EQ(all.row(1).movedBy, before.movedBy);
  EXPECT_EQ(all.focused(), 1);
  EXPECT_EQ(all.row(1).entry, "");
}

}  // namespace
}  // namespace kelvane
