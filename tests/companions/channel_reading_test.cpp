#include <gtest/gtest.h>

#include "tests/fakes/channel_rig.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

using fakes::ChannelRig;
using Reading = sondrel::SimulatedFaults::Reading;

class ChannelReadingTest : public testing::Test {
 protected:
  ChannelReadingTest() {
    rig_.start();
    rig_.panel->tabClicked(0);
  }

  void faults(Reading reading, milliseconds channelTime = milliseconds(10)) {
    sondrel::SimulatedFaults faults;
    faults.reading = reading;
    faults.channelTime = channelTime;
    rig_.sondrel.core.setFaults(0, faults);
  }
  const std::string& label() const { return rig_.view().LChn.text; }
  bool anyEnabled() const {
    bool any = false;
    for (const ChannelButton& row : channelButtons())
      any = any || (rig_.channelView().*row.button).enabled;
    return any;
  }

  ChannelRig rig_;
};

TEST_F(ChannelReadingTest, WhileItRunsEverythingIsOffAndTheProgressIsInWords) {
  rig_.type("s");
  EXPECT_TRUE(rig_.channelView().hourglass);
  EXPECT_FALSE(anyEnabled());
  rig_.enter(0, 1, "5000000");
  rig_.gridKey(key::Space);
  rig_.run(milliseconds(40));
  EXPECT_NE(rig_.words().find(" of 10 ..."), std::string::npos) << rig_.words();
  rig_.run(milliseconds(200));
  EXPECT_FALSE(rig_.channelView().hourglass);
  EXPECT_EQ(rig_.cell(0, 1), "0") << "nothing is edited while values stream in";
}

TEST_F(ChannelReadingTest, TheLabelCountsAtItsPaceWhileTheReadingIsAsFastAsTheReceiver) {
  rig_.type("s");
  rig_.run(milliseconds(120));
  EXPECT_EQ(rig_.words(), "10 channels of A read.");
  EXPECT_EQ(label(), "02");
  rig_.run(milliseconds(200));
  EXPECT_EQ(label(), "06");
  rig_.run(milliseconds(300));
  EXPECT_EQ(label(), "09");
  rig_.run(milliseconds(2000));
  EXPECT_EQ(label(), "");
}

TEST_F(ChannelReadingTest, AStallIsSaidAfterAWatchAndWhatCameStays) {
  rig_.sondrel.core.SetRxChannel(0, 1, 5'000'000, 0, 0, 6000, 0, 0);
  faults(Reading::Stalls);
  rig_.type("s");
  rig_.run(milliseconds(3900));
  EXPECT_TRUE(rig_.channelView().hourglass);
  rig_.run(milliseconds(200));
  EXPECT_EQ(label(), "Err");
  EXPECT_EQ(rig_.words(), "The receiver stopped reading after 3 channels.");
  EXPECT_FALSE(rig_.channelView().hourglass);
  EXPECT_TRUE(rig_.channelView().open);
  EXPECT_EQ(rig_.cell(1, 1), "5000000");
  EXPECT_EQ(rig_.row(5), "05      ") << "never reported: empty";
  rig_.run(milliseconds(2000));
  EXPECT_EQ(label(), "");
  rig_.enter(5, 1, "6000000");
  rig_.component->told("");
  rig_.pressButton(id::ChnSave);
  EXPECT_TRUE(rig_.component->told("SetRxChannel").empty());
  EXPECT_NE(rig_.words().find("1 channel that the receiver has not reported"), std::string::npos);
}

TEST_F(ChannelReadingTest, AReadingThatIsSlowButGoesOnIsNoStall) {
  faults(Reading::Normal, milliseconds(1500));
  rig_.type("s");
  rig_.run(milliseconds(17'000));
  EXPECT_EQ(rig_.words(), "10 channels of A read.");
}

TEST_F(ChannelReadingTest, AReloadThatFailsClosesTheWindowAndKeepsUnsavedEditsInAFile) {
  for (const Reading fault : {Reading::NeverStarts, Reading::Stalls}) {
    faults(Reading::Normal);
    rig_.type("s");
    rig_.run(milliseconds(3000));
    rig_.enter(5, 1, fault == Reading::Stalls ? "5000000" : "6000000");
    faults(fault);
    rig_.pressButton(id::ChnReload);
    rig_.run(milliseconds(4500));
    // The hand clock runs faster than the disk.
    rig_.finishWriting();
    EXPECT_FALSE(rig_.channelView().open);
  }
  ASSERT_EQ(rig_.fileDialogs.boxes.size(), 2u);
  EXPECT_NE(rig_.fileDialogs.boxes[0].find("A_Mem 2026-03-15 18-05-09.txt"), std::string::npos);
  EXPECT_EQ(ChannelRig::content(rig_.folder() / "Backups" / "A_Mem 2026-03-15 18-05-09.txt"),
            "005;    6000000;    0;   AM;    0;Slow;0;\r\n");
  EXPECT_EQ(ChannelRig::content(rig_.folder() / "Backups" / "A_Mem 2026-03-15 18-05-09 2.txt"),
            "005;    5000000;    0;   AM;    0;Slow;0;\r\n");
  faults(Reading::Normal);
  rig_.type("s");
  rig_.run(milliseconds(3000));
  faults(Reading::NeverStarts);
  rig_.pressButton(id::ChnReload);
  EXPECT_FALSE(rig_.channelView().open);
  EXPECT_EQ(rig_.fileDialogs.boxes.size(), 2u) << "nothing was lost: nothing is said";
}

TEST_F(ChannelReadingTest, ClosingInTheMiddleEndsItCleanlyAndTheNextOneIsWhole) {
  rig_.type("s");
  rig_.run(milliseconds(30));
  rig_.editor().close();
  EXPECT_EQ(rig_.component->told("StopRxChannels").size(), 1u);
  EXPECT_EQ(label(), "");
  EXPECT_FALSE(rig_.channelView().open);
  rig_.editor().Receiver(0);
  rig_.run(milliseconds(1000));
  EXPECT_EQ(rig_.words(), "10 channels of A read.") << "the stopped row's end is not this one's";
}

TEST_F(ChannelReadingTest, EndingTheProgramInTheMiddleOfASaveSavesTheRest) {
  rig_.type("s");
  rig_.run(milliseconds(1000));
  for (GridRow row = 0; row < 10; ++row) rig_.enter(row, 1, "5000000");
  rig_.editor().clicked(id::ChnSave);
  rig_.panel->unload({});
  EXPECT_FALSE(rig_.channelView().open);
  EXPECT_EQ(rig_.component->told("SetRxChannel").size(), 10u);
  EXPECT_TRUE(rig_.fileDialogs.boxes.empty()) << "nothing is unsaved then";
  rig_.run(milliseconds(1000));
  EXPECT_TRUE(rig_.component->told("SetRxChannel").empty());
}

}  // namespace
}  // namespace kelvane
