#include <gtest/gtest.h>

#include "tests/fakes/failing_steps.h"
#include "tests/fakes/sondrel_rig.h"

namespace kelvane::sondrel {
namespace {

namespace fs = std::filesystem;
using fakes::FailingSteps;
using fakes::SondrelRig;
using Lines = std::vector<std::string>;

constexpr std::string_view kReceivers =
    "[Receiver 1]\nName=A\nChannels=0-9\nChannelTime=10\nFrequency=23000000\n"
    "[Receiver 2]\nName=B\nChannels=1-5\nChannelSkip=no\nModes=AM USB\nAgc=none\nBfo=none\n"
    "Frequency=23000000\n"
    "[Receiver 3]\nName=C\nChannels=none\n";

class Channels : public testing::Test {
 protected:
  Channels() { start(rig); }

  static void start(SondrelRig& rig) {
    rig.configure(std::string(kReceivers));
    rig.open();
    rig.listener.clear();
  }
  Lines heard(std::string_view name = {}) {
    rig.pump();
    const Lines lines = rig.listener.lines(name);
    rig.listener.clear();
    return lines;
  }
  /// Channels of a whole reading, empty ones left out.
  static Lines readAll(SondrelRig& rig, Index rx) {
    rig.listener.clear();
    EXPECT_TRUE(rig.core.ReadRxChannels(rx).value());
    rig.run(milliseconds(500));
    Lines lines;
    for (const std::string& line : rig.listener.lines("RxChnStatus")) {
      if (!line.ends_with(" 0 0 0 0 0 0")) lines.push_back(line.substr(14));
    }
    return lines;
  }

  fs::path file() const { return rig.instanceFolder() / "Memories" / "A.txt"; }

  SondrelRig rig;
  SondrelCore& core = rig.core;
};

TEST_F(Channels, ReadingDeliversEveryChannelOneByOneAndEndsTheRow) {
  core.SetRxChannel(0, 3, 6'070'000, -50, 2, 2400, 1, 1);
  rig.pump();
  EXPECT_TRUE(core.ReadRxChannels(0));
  EXPECT_TRUE(heard().empty());
  rig.run(milliseconds(35));
  EXPECT_EQ(heard("RxChnStatus").size(), 3u) << "ten milliseconds each";
  rig.run(milliseconds(500));
  const Lines rest = heard("RxChnStatus");
  ASSERT_EQ(rest.size(), 8u);
  EXPECT_EQ(rest[0], "RxChnStatus 0 3 6070000 -50 2 2400 1 1");
  EXPECT_EQ(rest[1], "RxChnStatus 0 4 0 0 0 0 0 0");
  EXPECT_EQ(rest[7], "RxChnStatus 0 -1 0 0 0 0 0 0");
  EXPECT_TRUE(core.ReadRxChannels(1));
  rig.run(milliseconds(500));
  const Lines fromOne = heard("RxChnStatus");
  EXPECT_EQ(fromOne.size(), 6u);
  EXPECT_EQ(fromOne[0], "RxChnStatus 1 1 0 0 0 0 0 0");
  EXPECT_FALSE(core.ReadRxChannels(2));
  EXPECT_FALSE(core.ReadRxChannels(3));
}

TEST_F(Channels, AReadingCanBeStoppedAndStartedAgain) {
  core.ReadRxChannels(0);
  rig.run(milliseconds(25));
  core.StopRxChannels(0);
  core.StopRxChannels(0);
  EXPECT_EQ(heard("RxChnStatus"),
            (Lines{"RxChnStatus 0 0 0 0 0 0 0 0", "RxChnStatus 0 1 0 0 0 0 0 0",
                   "RxChnStatus 0 -1 0 0 0 0 0 0"}));
  rig.run(milliseconds(500));
  EXPECT_EQ(heard("RxChnStatus"), Lines{}) << "one end, and nothing after it";
  core.ReadRxChannels(0);
  rig.run(milliseconds(35));
  core.ReadRxChannels(0);
  rig.run(milliseconds(500));
  EXPECT_EQ(heard("RxChnStatus").size(), 3u + 11u) << "it began anew";
}

TEST_F(Channels, AReadingThatStallsOrNeverStarts) {
  SimulatedFaults faults;
  faults.reading = SimulatedFaults::Reading::NeverStarts;
  core.setFaults(0, faults);
  EXPECT_FALSE(core.ReadRxChannels(0));
  faults.reading = SimulatedFaults::Reading::Stalls;
  core.setFaults(0, faults);
  EXPECT_TRUE(core.ReadRxChannels(0));
  rig.run(milliseconds(10'000));
  EXPECT_EQ(heard("RxChnStatus").size(), 3u) << "and no end of the row";
  core.StopRxChannels(0);
  EXPECT_EQ(heard("RxChnStatus"), Lines{"RxChnStatus 0 -1 0 0 0 0 0 0"});
}

TEST_F(Channels, AReadingEndsWithTheLink) {
  core.ReadRxChannels(0);
  rig.run(milliseconds(25));
  core.SetRxConnect(0, false);
  rig.run(milliseconds(500));
  EXPECT_EQ(heard("RxChnStatus").size(), 2u) << "half a row must not pass for a whole one";
  EXPECT_FALSE(core.ReadRxChannels(0));
  EXPECT_EQ(core.StoreRxChannel(0, 1), Outcome::Failed);
  EXPECT_EQ(core.SetRxChannel(0, 1, 5'000'000, 0, 0, 0, 0, 0), Outcome::Failed);
}

TEST_F(Channels, WhatIsSetIsLimitedToTheReceiver) {
  core.SetRxChannel(0, 1, 99'000'000, 99'000, 2, 2500, 0, 7);
  core.SetRxChannel(0, 2, 5'000'000, 0, 4, 0, 2, 0);
  EXPECT_EQ(readAll(rig, 0), (Lines{"1 29999999 5000 2 2400 0 1", "2 5000000 0 4 500 2 0"}));
  core.SetRxChannel(1, 2, 5'000'000, 700, 2, 2400, 9, 1);
  EXPECT_EQ(readAll(rig, 1), Lines{"2 5000000 0 2 2400 0 0"});
  for (const Channel bad : {-1, 10, 32768, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(core.SetRxChannel(0, bad, 5'000'000, 0, 0, 0, 0, 0), Outcome::Failed);
    EXPECT_EQ(core.ClearRxChannel(0, bad), Outcome::Failed);
    EXPECT_EQ(core.StoreRxChannel(0, bad), Outcome::Failed);
    EXPECT_EQ(core.SelectRxChannel(0, bad), Outcome::Failed);
  }
  EXPECT_EQ(core.SetRxChannel(0, 3, 5'000'000, 0, 99, 0, 0, 0), Outcome::Failed);
  EXPECT_EQ(core.SetRxChannel(0, 3, 5'000'000, 0, 0, 0, 99, 0), Outcome::Failed);
  EXPECT_EQ(core.SetRxChannel(2, 0, 5'000'000, 0, 0, 0, 0, 0), Outcome::Failed);
}

TEST_F(Channels, ANewEntryNeedsNoMoreThanAFrequency) {
  SondrelRig other;
  other.configure("[Receiver 1]\nName=A\nModes=USB CW\nAgc=medium fast\nBfo=none\n");
  other.open();
  EXPECT_EQ(other.core.SetRxChannel(0, 3, 5'000'000, 0, 0, 0, 0, 0), Outcome::Done);
  EXPECT_EQ(readAll(other, 0), Lines{"3 5000000 0 2 2700 1 0"});
}

TEST_F(Channels, ChannelsAreClearedAlsoByAFrequencyOfZero) {
  for (const Channel n : {1, 2, 3}) core.SetRxChannel(0, n, 5'000'000, 0, 0, 6000, 0, 0);
  EXPECT_EQ(core.ClearRxChannel(0, 1), Outcome::Done);
  EXPECT_EQ(core.SetRxChannel(0, 2, 0, 0, 0, 0, 0, 0), Outcome::Done);
  EXPECT_EQ(readAll(rig, 0), Lines{"3 5000000 0 0 6000 0 0"});
  EXPECT_EQ(core.ClearRxChannel(1, 0), Outcome::Done) << "it counts from 1; nothing is said";
  EXPECT_EQ(core.SetRxChannel(1, 0, 5'000'000, 0, 0, 0, 0, 0), Outcome::Failed);
  EXPECT_EQ(core.StoreRxChannel(1, 0), Outcome::Failed);
}

TEST_F(Channels, RecallingTakesAllThatTheChannelHolds) {
  core.SetRxChannel(0, 7, 5'000'000, -300, 4, 300, 2, 0);
  EXPECT_EQ(core.SelectRxChannel(0, 7), Outcome::Done);
  EXPECT_EQ(core.GetRxChannel(0), 7);
  EXPECT_EQ(core.GetRxFrequency(0, kTuned), 5'000'000);
  EXPECT_EQ(core.GetRxMode(0), 4);
  EXPECT_EQ(core.GetRxFilter(0), 300);
  EXPECT_EQ(core.GetRxAgc(0), 2);
  EXPECT_EQ(core.GetRxBfo(0), -300);
  EXPECT_EQ(heard("RxChnUpdated"), Lines{"RxChnUpdated 0 7"});
  core.SelectRxChannel(0, 8);
  EXPECT_EQ(core.GetRxChannel(0), 8) << "an empty one, so that stepping goes past it";
  EXPECT_EQ(core.GetRxFrequency(0, kTuned), 5'000'000);
  core.SetRxMode(0, 0);
  EXPECT_EQ(core.GetRxChannel(0), 8);
  EXPECT_EQ(heard("RxChnUpdated"), Lines{"RxChnUpdated 0 8"});
}

TEST_F(Channels, AModeAndAnAgcThatAreNotKnownStaySoAndAreLeftAloneByARecall) {
  EXPECT_EQ(core.SetRxChannel(0, 3, 5'000'000, 0, -1, 0, -1, 0), Outcome::Done);
  EXPECT_EQ(readAll(rig, 0), Lines{"3 5000000 0 -1 0 -1 0"});
  core.SetRxMode(0, 3);
  core.SelectRxChannel(0, 3);
  EXPECT_EQ(core.GetRxFrequency(0, kTuned), 5'000'000);
  EXPECT_EQ(core.GetRxMode(0), 3);
}

TEST_F(Channels, StoringKeepsTheScanFlagAndPutsTheReceiverOnTheChannel) {
  core.SetRxChannel(0, 2, 5'000'000, 0, 0, 6000, 0, 1);
  core.SetRxFrequency(0, false, 4'321'000);
  core.SetRxMode(0, 3);
  EXPECT_EQ(core.StoreRxChannel(0, 2), Outcome::Done);
  EXPECT_EQ(core.GetRxChannel(0), 2);
  EXPECT_EQ(readAll(rig, 0), Lines{"2 4321000 0 3 2700 0 1"});
}

TEST_F(Channels, TuningAwayLeavesTheChannelWhoeverTunes) {
  for (const bool byKnob : {false, true}) {
    core.SelectRxChannel(0, 4);
    core.StoreRxChannel(0, 4);
    heard();
    if (byKnob) {
      core.turnKnob(0, Item::Frequency, 5'000'000);
    } else {
      core.SetRxFrequency(0, false, 5'000'000);
      core.SetRxFrequency(0, false, 5'001'000);
    }
    EXPECT_EQ(core.GetRxChannel(0), -1);
    EXPECT_EQ(heard("RxChnUpdated"), Lines{"RxChnUpdated 0 -1"}) << byKnob;
    core.SetRxFrequency(0, false, 23'000'000);
  }
  core.SelectRxChannel(0, 4);
  heard();
  core.SetRxConnect(0, false);
  EXPECT_EQ(core.GetRxChannel(0), -1);
  EXPECT_EQ(heard("RxChnUpdated"), Lines{"RxChnUpdated 0 -1"});
}

TEST_F(Channels, ASlowReceiverIsOnTheChannelUntilItIsTunedAway) {
  SimulatedFaults faults;
  faults.answerTime = milliseconds(100);
  core.setFaults(0, faults);
  core.SetRxChannel(0, 7, 5'000'000, 0, 4, 300, 2, 0);
  core.SetRxFrequency(0, false, 4'000'000);
  core.SelectRxChannel(0, 7);
  rig.run(milliseconds(3000));
  EXPECT_EQ(core.GetRxChannel(0), 7) << "the request before the recall does not count";
  EXPECT_EQ(core.GetRxFrequency(0, kTuned), 5'000'000);
  core.SetRxFrequency(0, false, 5'000'000);
  rig.run(milliseconds(300));
  EXPECT_EQ(core.GetRxChannel(0), 7);
  core.SetRxFrequency(0, false, 5'000'001);
  rig.run(milliseconds(300));
  EXPECT_EQ(core.GetRxChannel(0), -1);
}

TEST_F(Channels, AreKeptOverARestart) {
  core.SetRxChannel(0, 0, 5'000'000, -20, 2, 2400, 1, 1);
  core.SetRxChannel(0, 9, 6'000'000, 0, 8, 10'000, 0, 0);
  core.ClearRxChannel(0, 9);
  core.SetRxChannel(0, 8, 6'000'000, 0, 8, 10'000, 0, 0);
  rig.open();
  EXPECT_EQ(readAll(rig, 0), (Lines{"0 5000000 -20 2 2400 1 1", "8 6000000 0 8 10000 0 0"}));
  const std::string text = readFile(file(), 10'000).value();
  EXPECT_NE(text.find("0; 5000000; -20; USB; 2400; 1; 1\r\n"), std::string::npos) << text;
}

TEST_F(Channels, AHundredSetsAreAFewWritesNotAHundred) {
  class CountingSteps : public FileSteps {
   public:
    Result<> write(const fs::path& path, std::string_view content) override {
      if (path.parent_path().filename() == "Memories") ++writes;
      return FileSteps::write(path, content);
    }
    std::atomic<int> writes = 0;
  };
  const auto steps = std::make_shared<CountingSteps>();
  SondrelRig counted(steps);
  start(counted);
  for (int i = 0; i < 100; ++i) {
    counted.core.SetRxChannel(0, i % 10, 5'000'000 + i, 0, 0, 6000, 0, 0);
  }
  counted.pump();
  counted.core.finishWriting();
  EXPECT_EQ(steps->writes, 1);
}

TEST_F(Channels, LinesThatAreNoChannelStayInTheFile) {
  const std::string text =
      "2; 6000000; 0; AM; 6000; 0; 0\n# a remark\nnonsense\n3; 7000000; 0; 5; 500; 0; 0\r\n"
      "4; -5; 0; AM; 0; 0; 0\n5; 7000000; 0; AM; 0; 0\n99; 8000000; 0; AM; 6000; 0; 0\n"
      "6; 99999999999; 0; AM; 0; 0; 0\n";
  writeFileSafely(file(), text);
  rig.open();
  ASSERT_EQ(rig.windows.told.size(), 1u);
  EXPECT_TRUE(rig.windows.told[0].starts_with("4 lines")) << rig.windows.told[0];
  EXPECT_EQ(readAll(rig, 0), (Lines{"2 6000000 0 0 6000 0 0", "3 7000000 0 5 500 0 0"}));
  core.ClearRxChannel(0, 2);
  rig.pump();
  core.finishWriting();
  const std::string after = readFile(file(), 10'000).value();
  for (const char* kept : {"nonsense", "4; -5", "5; 7000000; 0; AM; 0; 0\r\n", "99; 8000000"}) {
    EXPECT_NE(after.find(kept), std::string::npos) << kept << " in\n" << after;
  }
}

TEST_F(Channels, ADamagedFileIsKeptAside) {
  for (const std::string& damaged : {std::string(), std::string("\0\0\0\0", 4),
                                     std::string(5 << 20, 'x'), std::string("half a chann")}) {
    SondrelRig other;
    other.configure(std::string(kReceivers));
    const fs::path path = other.instanceFolder() / "Memories" / "A.txt";
    writeFileSafely(path, damaged);
    other.open();
    ASSERT_EQ(other.windows.told.size(), 1u);
    EXPECT_NE(other.windows.told[0].find("A.damaged-1.txt"), std::string::npos);
    EXPECT_EQ(readFile(path.parent_path() / "A.damaged-1.txt", 6 << 20), damaged);
    EXPECT_EQ(readAll(other, 0), Lines{});
  }
}

TEST_F(Channels, ADiskThatFailsOrStopsLeavesTheOldOrTheNewFileWhole) {
  for (const auto how : {FailingSteps::How::Fail, FailingSteps::How::Stop}) {
    int reached = 0;
    for (int step = 1;; ++step) {
      const auto steps = std::make_shared<FailingSteps>(how);
      SondrelRig failing(steps);
      start(failing);
      const fs::path path = failing.instanceFolder() / "Memories" / "A.txt";
      const auto set = [&](Hz frequency) {
        failing.core.SetRxChannel(0, 1, frequency, 0, 0, 6000, 0, 0);
        failing.pump();
        failing.core.finishWriting();
        failing.pump();
      };
      set(5'000'000);
      const auto old = readFile(path, 10'000);
      ASSERT_TRUE(old);
      steps->arm(step);
      set(6'000'000);
      if (!steps->struck()) break;
      reached = step;
      EXPECT_EQ(readFile(path, 10'000), old) << "step " << step;
      ASSERT_EQ(failing.windows.told.size(), 1u);
      if (how == FailingSteps::How::Stop) continue;
      failing.run(milliseconds(6000));
      failing.core.finishWriting();
      EXPECT_NE(readFile(path, 10'000), old) << "tried again, and nothing lost";
    }
    EXPECT_EQ(reached, 5) << "reading, folder, content, flush and swap";
  }
}

TEST_F(Channels, TwoProcessesNeverUndoEachOthersChannels) {
  SondrelRig other(rig.folder.path());
  other.open();
  const auto finish = [](SondrelRig& one) {
    one.pump();
    one.core.finishWriting();
    one.pump();
  };
  for (Channel channel = 0; channel < 10; ++channel) {
    SondrelRig& one = channel % 2 ? rig : other;
    one.core.SetRxChannel(0, channel, 5'000'000 + channel, 0, 0, 6000, 0, 0);
    finish(one);
  }
  rig.core.ClearRxChannel(0, 4);
  finish(rig);
  other.core.SetRxChannel(0, 5, 6'000'000, 0, 0, 6000, 0, 0);
  finish(other);
  EXPECT_EQ(readAll(rig, 0).size(), 9u) << "what the other wrote is seen when it is read";
  rig.open();
  const Lines lines = readAll(rig, 0);
  ASSERT_EQ(lines.size(), 9u) << "ten, and one cleared";
  EXPECT_EQ(lines[4], "5 6000000 0 0 6000 0 0");
}

TEST_F(Channels, AFileThatCannotBeReadForAMomentIsReadThenAndNotTakenForDamaged) {
  core.SetRxChannel(0, 3, 5'000'000, 0, 0, 6000, 0, 0);
  rig.pump();
  core.finishWriting();
  const auto steps = std::make_shared<FailingSteps>(FailingSteps::How::Hold, 1000);
  SondrelRig held(rig.folder.path(), steps);
  // The configuration is read first.
  steps->arm(2);
  held.open();
  EXPECT_FALSE(held.core.ReadRxChannels(0)) << "unknown is not empty";
  EXPECT_EQ(held.core.SetRxChannel(0, 1, 6'000'000, 0, 0, 6000, 0, 0), Outcome::Failed);
  EXPECT_EQ(held.windows.asked, Lines{});
  held.run(milliseconds(1600));
  ASSERT_FALSE(held.windows.asked.empty());
  EXPECT_NE(held.windows.asked[0].find("another program uses it"), std::string::npos);
  steps->arm(1 << 30);
  held.windows.chooseRetry[0]();
  held.run(milliseconds(100));
  EXPECT_EQ(readAll(held, 0), Lines{"3 5000000 0 0 6000 0 0"});
  EXPECT_EQ(held.windows.told, Lines{});
}

TEST_F(Channels, TwoReceiversNeverShareAFile) {
  SondrelRig other;
  other.configure(
      "[Receiver 1]\nName=A\nMemories=same\n[Receiver 2]\nName=B\nMemories=SAME\n"
      "[Receiver 3]\nName=C\nMemories=..\\..\\receivers\n");
  other.open();
  for (Index rx = 0; rx < 3; ++rx) {
    other.core.SetRxChannel(rx, 1, 1'000'000 * (rx + 1), 0, 0, 6000, 0, 0);
  }
  other.open();
  for (Index rx = 0; rx < 3; ++rx) {
    EXPECT_EQ(readAll(other, rx),
              Lines{"1 " + std::to_string(1'000'000 * (rx + 1)) + " 0 0 6000 0 0"});
  }
  EXPECT_EQ(other.core.GetRxCount(), 3) << "the configuration was not written over";
}

}  // namespace
}  // namespace kelvane::sondrel
