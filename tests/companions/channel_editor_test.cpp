#include "companions/channel_editor.h"

#include <gtest/gtest.h>

#include "tests/fakes/channel_rig.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

using fakes::ChannelRig;
using Lines = std::vector<std::string>;

constexpr int kFrequency = 1, kBfo = 2, kMode = 3, kFilter = 4, kAgc = 5, kSkip = 6;

/// A window whose receiver has two channels stored.
class ChannelWindow : public testing::Test {
 protected:
  void SetUp() override {
    rig_.start();
    rig_.sondrel.core.SetRxChannel(0, 2, 6'070'000, -50, 2, 2400, 2, 1);
    rig_.sondrel.core.SetRxChannel(0, 3, 7'300'000, 0, 0, 6000, 0, 0);
    rig_.open(0);
  }
  Lines sent() {
    rig_.pressButton(id::ChnSave);
    return rig_.component->told("SetRxChannel");
  }
  bool buttonsEnabled() const {
    bool enabled = true;
    for (const ChannelButton& row : channelButtons())
      enabled = enabled && (rig_.channelView().*row.button).enabled;
    return enabled;
  }

  ChannelRig rig_;
};

TEST_F(ChannelWindow, SaveSendsOnlyWhatDiffersAndAgainTheSame) {
  EXPECT_EQ(sent(), Lines{});
  rig_.enter(3, kFrequency, "7350000");
  rig_.enter(5, kFrequency, "5000000");
  rig_.enter(2, kFrequency, "1");
  EXPECT_EQ(rig_.channelView().caption, "Channels [unsaved edits]");
  rig_.enter(2, kFrequency, "6070000");
  const Lines expected{"SetRxChannel 0 3 7350000 0 0 6000 0 0",
                       "SetRxChannel 0 5 5000000 0 0 0 0 0"};
  EXPECT_EQ(sent(), expected);
  EXPECT_EQ(rig_.words(), "2 channels saved.");
  EXPECT_EQ(rig_.channelView().caption, "Channels");
  EXPECT_TRUE(rig_.channelView().open);
  EXPECT_EQ(sent(), expected) << "the reference is what the receiver reported";
  rig_.pressButton(id::ChnReload);
  EXPECT_EQ(rig_.cell(5, kFrequency), "5000000");
  EXPECT_EQ(sent(), Lines{});
}

TEST_F(ChannelWindow, AnEditThatIsTakenBackAfterASaveIsSentToo) {
  rig_.enter(3, kFrequency, "7350000");
  sent();
  rig_.gridKey('Z', key::CtrlHeld);
  EXPECT_EQ(rig_.channelView().caption, "Channels [unsaved edits]");
  EXPECT_EQ(sent(), Lines{"SetRxChannel 0 3 7300000 0 0 6000 0 0"});
  EXPECT_EQ(rig_.channelView().caption, "Channels");
  rig_.pressButton(id::ChnReload);
  EXPECT_EQ(rig_.cell(3, kFrequency), "7300000");
  EXPECT_EQ(sent(), Lines{}) << "read again, nothing differs";
}

TEST_F(ChannelWindow, ACellThatIsOnlyLookedAtIsNoEdit) {
  for (const int column : {kFrequency, kBfo, kFilter}) {
    rig_.grid().select({5, column});
    rig_.gridKey(key::F2);
    ASSERT_TRUE(rig_.grid().editing());
    rig_.gridKey(key::Down);
  }
  EXPECT_EQ(rig_.row(5), "05 0 0 AM 0 Slow Keep");
  EXPECT_EQ(rig_.channelView().caption, "Channels");
}

TEST_F(ChannelWindow, AChannelThatTheReceiverRefusesIsSaidAndStaysUnsaved) {
  rig_.component->refused = {"SetRxChannel"};
  rig_.enter(3, kFrequency, "7350000");
  sent();
  EXPECT_EQ(rig_.words(), "0 channels saved. The receiver refused 1 channel, the first one 03.");
  EXPECT_EQ(rig_.channelView().caption, "Channels [unsaved edits]");
}

TEST_F(ChannelWindow, CellsTakeWhatTheirColumnHolds) {
  rig_.enter(0, kFrequency, "-1.2x3 4+5");
  EXPECT_EQ(rig_.cell(0, kFrequency), "12345");
  rig_.enter(0, kFrequency, "99999999999");
  EXPECT_EQ(rig_.cell(0, kFrequency), "29999999") << "the receiver's maximum";
  rig_.enter(0, kFrequency, "0");
  EXPECT_EQ(rig_.cell(0, kFrequency), "1") << "its minimum";
  rig_.enter(0, kFrequency, "\b");
  EXPECT_EQ(rig_.cell(0, kFrequency), "1") << "an empty one brings the old one back";
  rig_.enter(0, kBfo, "-99999");
  EXPECT_EQ(rig_.cell(0, kBfo), "-5000");
  rig_.enter(0, kBfo, "+a7b");
  EXPECT_EQ(rig_.cell(0, kBfo), "7");
  rig_.enter(0, kBfo, "\b");
  EXPECT_EQ(rig_.cell(0, kBfo), "");
  rig_.enter(0, kFilter, "-0099999");
  EXPECT_EQ(rig_.cell(0, kFilter), "99999") << "not limited";
  rig_.enter(0, kFilter, "\b");
  EXPECT_EQ(rig_.cell(0, kFilter), "99999");
  rig_.grid().select({0, 0});
  rig_.gridType("7");
  EXPECT_FALSE(rig_.grid().editing());
  EXPECT_EQ(sent(), Lines{"SetRxChannel 0 0 1 0 0 99999 0 0"}) << "an emptied BFO travels as 0";
}

TEST_F(ChannelWindow, NamesAreChosenFromTheReceiversOwnLists) {
  const auto list = [&](int column) {
    rig_.grid().select({1, column});
    rig_.gridKey(key::Return);
    return rig_.grid().items();
  };
  EXPECT_EQ(list(kMode).front(), "AM");
  EXPECT_EQ(list(kAgc), (Lines{"Slow", "Fast"}));
  EXPECT_EQ(list(kSkip), (Lines{"Keep", "Skip"}));
  rig_.gridKey(key::End);
  rig_.gridKey(key::Return);
  EXPECT_EQ(rig_.cell(1, kSkip), "Skip");
  rig_.grid().select({1, kMode});
  rig_.gridType("l");
  EXPECT_EQ(rig_.cell(1, kMode), "LSB");
  rig_.grid().select({1, kAgc});
  rig_.gridType("f");
  EXPECT_EQ(sent(), Lines{"SetRxChannel 0 1 0 0 3 0 2 1"});
}

TEST_F(ChannelWindow, SpaceAndGetTakeTheReceiversSettingDeleteEmptiesAndCtrlZTakesBack) {
  rig_.sondrel.core.SetRxFrequency(0, false, 4'321'000);
  rig_.sondrel.core.SetRxMode(0, 3);
  rig_.sondrel.core.SetRxAgc(0, 2);
  rig_.run(milliseconds(100));
  rig_.grid().select({2, kMode});
  rig_.gridKey(key::Space);
  EXPECT_EQ(rig_.row(2), "02 4321000 -50 LSB 2700 Fast Skip") << "a BFO of 0 is not written";
  rig_.sondrel.core.SetRxBfo(0, 300);
  rig_.run(milliseconds(100));
  rig_.pressButton(id::ChnGetIt);
  EXPECT_EQ(rig_.cell(2, kBfo), "300");
  rig_.gridKey(key::Delete);
  EXPECT_EQ(rig_.row(2), "02 0 0 AM 0 Slow Keep");
  rig_.gridKey('Z', key::CtrlHeld);
  rig_.gridKey('Z', key::CtrlHeld);
  EXPECT_EQ(rig_.row(2), "02 4321000 -50 LSB 2700 Fast Skip");
  rig_.gridKey('Z', key::CtrlHeld);
  EXPECT_EQ(rig_.channelView().caption, "Channels") << "nothing differs any more";
  rig_.gridKey(key::Delete);
  EXPECT_EQ(sent(), Lines{"SetRxChannel 0 2 0 0 0 0 0 0"});
  rig_.pressButton(id::ChnReload);
  EXPECT_EQ(rig_.cell(2, kFrequency), "0");
}

TEST(ChannelWindowOf, AReceiverThatDoesNotTellItsSettingsShowsAndKeepsNone) {
  ChannelRig rig(
      "[Receiver 1]\nName=A\nChannels=0-9\nChannelTime=1\nFrequency=7000000\n"
      "Untold=mode filter agc\n");
  rig.start();
  rig.sondrel.core.SetRxChannel(0, 2, 6'070'000, -50, 2, 2400, 2, 1);
  rig.open(0);
  rig.grid().select({2, kFrequency});
  rig.pressButton(id::ChnGetIt);
  EXPECT_EQ(rig.row(2), "02 7000000 -50    Skip") << "not those that the channel held before";
}

TEST_F(ChannelWindow, GoesOnWithItsReceiverWhereverThatIsNow) {
  rig_.enter(5, kFrequency, "5000000");
  sondrel::DriversModel drivers = rig_.sondrel.core.drivers();
  drivers.rename(0, "Renamed");
  drivers.move(0, 2);
  ASSERT_TRUE(rig_.sondrel.core.applyDrivers(drivers));
  rig_.run(milliseconds(50));
  EXPECT_EQ(sent(), Lines{"SetRxChannel 2 5 5000000 0 0 0 0 0"});
  rig_.pressButton(id::ChnReload);
  rig_.run(milliseconds(1000));
  EXPECT_EQ(rig_.words(), "10 channels of Renamed read.");
  EXPECT_EQ(rig_.cell(5, kFrequency), "5000000");
}

TEST_F(ChannelWindow, ASecondOpeningKeepsUnsavedEditsAndSaysWhose) {
  rig_.enter(5, kFrequency, "5000000");
  rig_.panel->tabClicked(1);
  rig_.type("s");
  EXPECT_EQ(rig_.dialogs.channelsShown, 2) << "it came to the front";
  EXPECT_EQ(rig_.cell(5, kFrequency), "5000000");
  EXPECT_EQ(rig_.words(), "There are unsaved edits for A: save them, or close this window first.");
  rig_.editor().escape();
  EXPECT_TRUE(rig_.channelView().open) << "Escape loses nothing";
  rig_.pressButton(id::ChnCancel);
  EXPECT_FALSE(rig_.channelView().open);
  EXPECT_EQ(rig_.component->told("SetRxChannel"), Lines{});
  rig_.type("s");
  rig_.run(milliseconds(3000));
  EXPECT_EQ(rig_.row(0), "001 0 0 AM 0 Slow Keep");
  EXPECT_EQ(rig_.row(119).substr(0, 3), "120");
  EXPECT_FALSE(rig_.grid().columns()[kSkip].visible);
  rig_.editor().escape();
  EXPECT_FALSE(rig_.channelView().open);
}

TEST_F(ChannelWindow, AReceiverThatCountsFromOneWithoutScanFlagsIsSavedByItsOwnNumbers) {
  rig_.panel->tabClicked(1);
  rig_.type("s");
  rig_.run(milliseconds(3000));
  rig_.component->told("");
  rig_.enter(0, kFrequency, "5000000");
  EXPECT_EQ(sent(), Lines{"SetRxChannel 1 1 5000000 0 0 0 0 0"});
  rig_.panel->tabClicked(2);
  rig_.type("s");
  EXPECT_EQ(rig_.dialogs.channelsShown, 2) << "a receiver without channels has no window";
}

TEST_F(ChannelWindow, AnEntryIsCommittedBeforeAButtonActs) {
  rig_.grid().select({4, kFrequency});
  rig_.gridType("5000000");
  EXPECT_EQ(sent(), Lines{"SetRxChannel 0 4 5000000 0 0 0 0 0"});
}

TEST_F(ChannelWindow, AReceiverThatGoesLeavesTheEditsToBeExported) {
  rig_.enter(5, kFrequency, "5000000");
  rig_.sondrel.windows.edit = [](sondrel::DriversModel& drivers, const auto& apply) {
    EXPECT_EQ(drivers.remove(0).reason(), "");
    EXPECT_TRUE(apply());
  };
  rig_.sondrel.core.OpenRxConfig("Kelvane", 1);
  rig_.run(milliseconds(1000));
  EXPECT_TRUE(rig_.channelView().open);
  EXPECT_FALSE(rig_.channelView().Save.enabled);
  EXPECT_FALSE(rig_.channelView().Clear.enabled);
  rig_.gridKey(key::Space);
  rig_.component->told("");
  rig_.gridKey(key::Down, key::ShiftHeld);
  EXPECT_EQ(rig_.component->told("SelectRxChannel"), Lines{}) << "another receiver has its number";
  rig_.exportTo("kept.txt");
  EXPECT_NE(ChannelRig::content(rig_.file("kept.txt")).find("005;    5000000;"), std::string::npos);
  EXPECT_TRUE(rig_.channelView().Cancel.enabled);
}

TEST(ChannelPlace, UnderTheMainWindowOrDirectlyAboveIt) {
  const Global::Area main{{100, 500}, {700, 300}};
  EXPECT_EQ(ChannelEditor::placed(main, {400, 260}, 1080, 144), (Global::Point{100, 804}));
  EXPECT_EQ(ChannelEditor::placed(main, {400, 276}, 1080, 144), (Global::Point{100, 804}));
  EXPECT_EQ(ChannelEditor::placed(main, {400, 277}, 1080, 144), (Global::Point{100, 223}));
}

}  // namespace
}  // namespace kelvane
