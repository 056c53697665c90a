#include <gtest/gtest.h>

#include "tests/fakes/failing_steps.h"
#include "tests/fakes/sondrel_rig.h"

namespace kelvane::sondrel {
namespace {

using fakes::FailingSteps;
using fakes::SondrelRig;
using Lines = std::vector<std::string>;

/// Three receivers A, B, C that are up, nothing heard yet.
class Drivers : public testing::Test {
 protected:
  Drivers() {
    rig.configure("[Receiver 1]\nName=A\n[Receiver 2]\nName=B\nLines=2\n[Receiver 3]\nName=C\n");
    rig.open();
    rig.listener.clear();
  }
  std::string names() {
    std::string result;
    for (Index rx = 0; rx < rig.core.GetRxCount(); ++rx) {
      result += (rx > 0 ? "," : "") + rig.core.GetRxName(rx).value();
    }
    return result;
  }

  SondrelRig rig;
  SondrelCore& core = rig.core;
};

TEST_F(Drivers, RefusesInWordsAndChangesNothing) {
  DriversModel model = core.drivers();
  const auto before = model.receivers();
  EXPECT_EQ(model.rename(0, "").reason(), "A receiver needs a name.");
  EXPECT_EQ(model.rename(0, "  ").reason(), "A receiver needs a name.");
  EXPECT_EQ(model.rename(0, "b").reason(), "Another receiver is called b already.");
  EXPECT_NE(model.rename(0, std::string(61, 'x')).reason(), "");
  EXPECT_EQ(model.rename(0, "\xC3\xA4" + std::string(59, 'x')).reason(), "") << "60 characters";
  EXPECT_EQ(model.rename(0, " A ").reason(), "");
  EXPECT_NE(model.rename(0, "A\nName=Z").reason(), "");
  EXPECT_EQ(model.setParameter(0, "Lines", "99").reason(),
            "Lines must be a whole number from -16 to 16.");
  EXPECT_NE(model.setParameter(0, "Type", "x\r\n[Receiver 9]").reason(), "");
  EXPECT_NE(model.setKind(0, "telepathic").reason(), "");
  EXPECT_NE(model.add("telepathic").reason(), "");
  EXPECT_NE(model.remove(3).reason(), "");
  EXPECT_NE(model.move(0, 3).reason(), "");
  EXPECT_NE(model.setParameter(7, "Lines", "1").reason(), "");
  EXPECT_EQ(model.parameter(7, "Lines"), "");
  EXPECT_EQ(model.receivers(), before);
  for (int i = 3; i < 8; ++i) EXPECT_EQ(model.add("simulated").reason(), "");
  EXPECT_EQ(model.add("simulated").reason(), "There can be eight receivers at most.");
}

TEST_F(Drivers, TwoRadiosAtOnePortAreSaid) {
  rig.configure(
      "[Receiver]\nName=Attic\nKind=radio\nDevice=COM5\n[Receiver]\nName=Shed\nKind=Radio\n"
      "Device=\\\\.\\com5\n[Receiver]\nName=Mast\nKind=radio\nDevice=COM6\n");
  rig.open();
  const std::string words = "\\\\.\\com5 is the port of Attic already.";
  EXPECT_NE(core.configurationNote().find("Shed: " + words + " Only one of them can open it."),
            std::string::npos)
      << core.configurationNote();
  EXPECT_EQ(core.configurationNote().find("Mast: COM6"), std::string::npos);
  const auto entries = core.drivers().receivers();
  EXPECT_EQ(samePortWords(entries, 0), "COM5 is the port of Shed already.");
  EXPECT_EQ(samePortWords(entries, 1), words);
  EXPECT_EQ(samePortWords(entries, 2), "");
}

TEST_F(Drivers, ShowsEachKeysTextOrItsStandard) {
  DriversModel model = core.drivers();
  EXPECT_EQ(model.parameter(1, "lines"), "2");
  EXPECT_EQ(model.parameter(0, "Lines"), "4");
  EXPECT_EQ(model.setParameter(1, "Lines", " ").reason(), "");
  EXPECT_EQ(model.parameter(1, "Lines"), "4");
  EXPECT_EQ(model.parameter(1, "NoSuchKey"), "");
  EXPECT_EQ(model.kindOf(0).name, "simulated");
}

TEST_F(Drivers, AppliesWhatWasEditedAndSaysTheNewCount) {
  DriversModel model = core.drivers();
  model.add("simulated");
  model.rename(3, "D");
  model.setParameter(3, "Frequency", "23000000");
  model.move(3, 0);
  model.remove(2);
  ASSERT_TRUE(core.applyDrivers(model));
  rig.pump();
  EXPECT_EQ(names(), "D,A,C");
  EXPECT_EQ(core.GetRxFrequency(0, kTuned), 23'000'000);
  EXPECT_EQ(rig.listener.lines(), (Lines{"DrvUpdated 3", "RxConnState 0 1000", "RxRmtState 0 1"}))
      << "the receivers that stay keep their links";
  rig.open();
  EXPECT_EQ(names(), "D,A,C") << "also after a restart";
}

TEST_F(Drivers, KeepsLinkAndStateOfReceiversThatAreOnlyRenamedOrMoved) {
  core.SetRxFrequency(0, false, 3'333'000);
  DriversModel model = core.drivers();
  model.rename(0, "Attic");
  model.move(0, 2);
  ASSERT_TRUE(core.applyDrivers(model));
  EXPECT_EQ(names(), "B,C,Attic");
  EXPECT_TRUE(core.IsRxOnline(2));
  EXPECT_EQ(core.GetRxFrequency(2, kTuned), 3'333'000);
  rig.pump();
  rig.listener.clear();
  core.SetRxFrequency(2, false, 3'334'000);
  rig.pump();
  EXPECT_EQ(rig.listener.lines(), Lines{"RxFrqUpdated 2 3334000 0"}) << "under its new index";
}

TEST_F(Drivers, AReceiverWithOtherParametersIsMadeAnew) {
  core.SetRxFrequency(1, false, 3'333'000);
  DriversModel model = core.drivers();
  model.setParameter(1, "Lines", "1");
  ASSERT_TRUE(core.applyDrivers(model));
  EXPECT_FALSE(core.IsRxOnline(1));
  rig.pump();
  EXPECT_TRUE(core.IsRxOnline(1));
  EXPECT_EQ(core.GetRxOutCount(1), 1);
}

TEST_F(Drivers, ChannelsStayWithTheirReceiver) {
  core.SetRxChannel(0, 5, 6'000'000, 0, 0, 6000, 0, 0);
  DriversModel model = core.drivers();
  model.rename(0, "Attic");
  model.setParameter(0, "Lines", "1");
  model.move(0, 1);
  ASSERT_TRUE(core.applyDrivers(model));
  rig.pump();
  core.SelectRxChannel(1, 5);
  EXPECT_EQ(core.GetRxFrequency(1, kTuned), 6'000'000) << "written before it was read again";
  model = core.drivers();
  model.add("simulated");
  model.rename(3, "A");
  ASSERT_TRUE(core.applyDrivers(model));
  rig.pump();
  core.SelectRxChannel(3, 5);
  EXPECT_EQ(core.GetRxFrequency(3, kTuned), 7'100'000) << "the former A's are not the new one's";
}

TEST_F(Drivers, ForwardingIsOffAfterwards) {
  core.SetRxForward(1);
  DriversModel model = core.drivers();
  model.move(1, 2);
  ASSERT_TRUE(core.applyDrivers(model));
  core.SetRxFrequency(1, false, 3'000'000);
  EXPECT_EQ(core.GetRxFrequency(0, kTuned), 7'100'000);
}

TEST_F(Drivers, AllCanBeTakenAway) {
  DriversModel model = core.drivers();
  while (!model.receivers().empty()) model.remove(0);
  ASSERT_TRUE(core.applyDrivers(model));
  rig.pump();
  EXPECT_EQ(rig.listener.lines().back(), "DrvUpdated 0");
  EXPECT_EQ(core.GetRxCount(), 0);
  EXPECT_EQ(rig.open(), 0);
  EXPECT_EQ(core.configurationNote(), "");
}

TEST_F(Drivers, TheDialogEditsAndAppliesWhileEventsGoOn) {
  rig.windows.edit = [&](DriversModel& model, const auto& apply) {
    EXPECT_EQ(core.OpenRxConfig("Kelvane", 1), 3) << "a second dialog is not opened";
    EXPECT_FALSE(core.OpenRxConfig("Other", 0).ok()) << "the edited list would go to another file";
    EXPECT_FALSE(core.OpenRxConfig("Other", 1).ok());
    core.SetRxFrequency(0, false, 4'000'000);
    rig.pump();
    EXPECT_EQ(rig.listener.lines(), Lines{"RxFrqUpdated 0 4000000 0"});
    model.remove(0);
    EXPECT_TRUE(apply());
    rig.pump();
  };
  EXPECT_EQ(core.OpenRxConfig("Kelvane", 1), 2);
  EXPECT_EQ(rig.windows.edits, 1);
  EXPECT_EQ(rig.listener.lines().back(), "DrvUpdated 2");
  rig.windows.edit = {};
  EXPECT_EQ(core.OpenRxConfig("Kelvane", 1), 2) << "closed with Cancel";
}

TEST_F(Drivers, AHandlerMayTakeAwayTheReceiverWhoseEventItHears) {
  rig.listener.meanwhile = [&](const auto& heard) {
    if (heard.name != "RxFrqUpdated" || core.GetRxCount() == 0) return;
    DriversModel model = core.drivers();
    while (!model.receivers().empty()) model.remove(0);
    core.applyDrivers(model);
    rig.pump();
  };
  core.SetRxFrequency(2, false, 3'000'000);
  core.SetRxFrequency(1, false, 3'000'000);
  rig.pump();
  EXPECT_EQ(core.GetRxCount(), 0);
  EXPECT_EQ(rig.listener.lines().back(), "DrvUpdated 0");
}

TEST(DriversDialog, OpensTheInstanceItIsAskedFor) {
  SondrelRig rig;
  std::size_t offered = 0;
  rig.windows.edit = [&](DriversModel& model, const auto&) { offered = model.receivers().size(); };
  EXPECT_EQ(rig.core.OpenRxConfig("Other", 1), 4);
  EXPECT_EQ(offered, 4u);
  EXPECT_TRUE(std::filesystem::exists(rig.instanceFolder("Other") / "receivers.txt"));
}

TEST(DriversDialog, ADiskThatFailsOrStopsLeavesTheOldListWhole) {
  for (const auto how : {FailingSteps::How::Fail, FailingSteps::How::Stop}) {
    int reached = 0;
    for (int step = 1;; ++step) {
      const auto steps = std::make_shared<FailingSteps>(how);
      SondrelRig rig(steps);
      ASSERT_EQ(rig.open(), 4);
      const auto before = readFile(rig.configPath(), 1 << 20);
      DriversModel model = rig.core.drivers();
      model.remove(0);
      steps->arm(step);
      const Result<> result = rig.core.applyDrivers(model);
      if (!steps->struck() || result) break;
      reached = step;
      EXPECT_NE(result.reason(), "");
      EXPECT_EQ(readFile(rig.configPath(), 1 << 20), before);
      EXPECT_EQ(rig.core.GetRxCount(), 4) << "nothing was applied";
      EXPECT_EQ(rig.core.drivers().receivers().size(), 4u);
    }
    EXPECT_EQ(reached, 5) << "reading, folder, content, flush and swap";
  }
}

TEST(DriversDialog, DoesNotWaitForWhoeverHoldsTheList) {
  const auto steps = std::make_shared<FailingSteps>(FailingSteps::How::Hold, 60);
  SondrelRig rig(steps);
  rig.open();
  DriversModel model = rig.core.drivers();
  model.rename(0, "Attic");
  steps->arm(1);
  const Result<> first = rig.core.applyDrivers(model);
  EXPECT_TRUE(!first && first.held()) << first.reason();
  for (int i = 0; i < 60 && !rig.core.applyDrivers(model); ++i) continue;
  EXPECT_EQ(rig.core.GetRxName(0).value(), "Attic");
  rig.core.SetRxOwner(4711);
  rig.windows.edit = [](const DriversModel& shown, const auto&) {
    EXPECT_EQ(shown.receivers()[0].name, "Attic") << "what was read last";
  };
  steps->arm(1);
  rig.core.OpenRxConfig("Kelvane", 1);
  EXPECT_EQ(rig.windows.edits, 1);
  EXPECT_TRUE(rig.windows.asked.empty()) << "the edits are joined with the file all the same";
  EXPECT_EQ(steps->waited(), milliseconds(0)) << "the window's timer tries again";
}

TEST_F(Drivers, ListsThatTwoProcessesEditAreJoinedAndNoReceiverIsLost) {
  SondrelRig other(rig.folder.path());
  other.open();
  DriversModel mine = core.drivers(), theirs = other.core.drivers();
  mine.add("simulated");
  mine.remove(2);
  theirs.add("simulated");
  theirs.setParameter(3, "Lines", "1");
  theirs.rename(0, "Attic");
  ASSERT_TRUE(other.core.applyDrivers(theirs));
  ASSERT_TRUE(core.applyDrivers(mine));
  EXPECT_EQ(names(), "Attic,B,Receiver 4 (2),Receiver 4") << "C removed; each added one";
  theirs = other.core.drivers();
  theirs.setParameter(1, "Lines", "3");
  EXPECT_TRUE(other.core.applyDrivers(theirs));
  mine = core.drivers();
  mine.setParameter(1, "Lines", "5");
  const Result<> refused = core.applyDrivers(mine);
  EXPECT_FALSE(refused);
  EXPECT_EQ(refused.reason().substr(0, 36), "Another program changed B meanwhile.");
  EXPECT_EQ(other.open(), 4);
  EXPECT_EQ(other.core.GetRxOutCount(1), 3);
}

}  // namespace
}  // namespace kelvane::sondrel
