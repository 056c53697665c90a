#include <gtest/gtest.h>

#include "tests/fakes/sondrel_rig.h"

namespace kelvane::sondrel {
namespace {

using fakes::SondrelRig;
using Lines = std::vector<std::string>;

/// Four receivers that are up, and nothing heard yet.
class Tuning : public testing::Test {
 protected:
  Tuning() {
    rig.open();
    rig.run(milliseconds(1100));
    rig.listener.clear();
  }
  /// Makes the receiver take its time for each request.
  void slow(Index rx, milliseconds time) {
    SimulatedFaults faults;
    faults.answerTime = time;
    rig.core.setFaults(rx, faults);
  }
  Lines tuned() const { return rig.listener.lines("RxFrqUpdated"); }

  SondrelRig rig;
};

TEST_F(Tuning, IsLimitedToTheRangeAndRoundedToTheFinestStep) {
  struct Case {
    Index rx;
    Hz asked;
    Hz got;
  };
  for (const Case& c : {Case{kHarrow, 7'050'001, 7'050'001}, Case{kHarrow, 0, 1},
                        Case{kHarrow, 30'000'000, 29'999'999}, Case{kHarrow, INT32_MIN, 1},
                        Case{kQuill, 14'200'004, 14'200'000}, Case{kQuill, 14'200'005, 14'200'010},
                        Case{kQuill, 999'999'999, 999'999'990}, Case{kQuill, 9'999, 10'000},
                        Case{kTern, 2'182'049, 2'182'000}, Case{kTern, 900, 1'600'000},
                        Case{kTern, INT32_MAX, 4'200'000}, Case{kLoom, 9'580'500, 9'581'000}}) {
    rig.listener.clear();
    EXPECT_EQ(rig.core.SetRxFrequency(c.rx, false, c.asked), Outcome::Done);
    rig.pump();
    EXPECT_EQ(rig.core.GetRxFrequency(c.rx, kTuned), c.got);
    EXPECT_EQ(tuned(),
              Lines{"RxFrqUpdated " + std::to_string(c.rx) + " " + std::to_string(c.got) + " 0"});
  }
}

TEST_F(Tuning, EndsInOneEventAlsoWhenItChangesNothingOrIsRefused) {
  const Hz before = rig.core.GetRxFrequency(kHarrow, kTuned);
  rig.core.SetRxFrequency(kHarrow, false, before);
  rig.pump();
  const std::string stays = "RxFrqUpdated 0 " + std::to_string(before) + " 0";
  EXPECT_EQ(tuned(), Lines{stays});
  SimulatedFaults faults;
  faults.refused = {Item::Frequency};
  faults.answerTime = milliseconds(100);
  rig.core.setFaults(kHarrow, faults);
  rig.core.SetRxFrequency(kHarrow, false, 5'000'000);
  EXPECT_EQ(rig.core.GetRxFrequency(kHarrow, kTuned), 5'000'000) << "until it is refused";
  rig.run(milliseconds(150));
  EXPECT_EQ(rig.core.GetRxFrequency(kHarrow, kTuned), before);
  EXPECT_EQ(tuned(), (Lines{stays, stays}));
}

TEST_F(Tuning, EndsInOneEventAlsoWithoutALinkAndWhenTheLinkIsLostMeanwhile) {
  slow(kHarrow, milliseconds(500));
  rig.core.SetRxFrequency(kHarrow, false, 5'000'000);
  rig.run(milliseconds(100));
  SimulatedFaults faults;
  faults.code = 1003;
  rig.core.setFaults(kHarrow, faults);
  rig.run(milliseconds(1000));
  EXPECT_EQ(tuned(), Lines{"RxFrqUpdated 0 6070000 0"});
  EXPECT_EQ(rig.core.SetRxFrequency(kHarrow, false, 5'000'000), Outcome::Failed);
  rig.pump();
  EXPECT_EQ(tuned().size(), 2u);
  EXPECT_EQ(tuned().back(), "RxFrqUpdated 0 6070000 0");
}

TEST_F(Tuning, TenQuickStepsAreTenStepsOnASlowLink) {
  slow(kHarrow, milliseconds(400));
  for (int step = 0; step < 10; ++step) {
    const Hz now = rig.core.GetRxFrequency(kHarrow, kTuned);
    rig.core.SetRxFrequency(kHarrow, false, now + 1000);
    rig.run(milliseconds(20));
  }
  EXPECT_EQ(rig.core.GetRxFrequency(kHarrow, kTuned), 6'080'000);
  EXPECT_EQ(tuned(), Lines{}) << "nothing was confirmed yet";
  rig.run(milliseconds(2000));
  EXPECT_EQ(tuned(), Lines{"RxFrqUpdated 0 6080000 0"})
      << "one for the newest; it took the place of those that waited";
}

TEST_F(Tuning, TheKnobIsReportedAsTheReceiversOwnAndOnlyThen) {
  EXPECT_TRUE(rig.core.turnKnob(kQuill, Item::Frequency, 10'000'000));
  rig.core.SetRxFrequency(kHarrow, false, 10'000'000);
  rig.core.turnKnob(kQuill, Item::Mode, 0);
  EXPECT_FALSE(rig.core.GetRxGlobalFlag()) << "only while the event is delivered";
  rig.pump();
  std::vector<std::pair<std::string, bool>> heard;
  for (const auto& h : rig.listener.heard) {
    if (h.name != "RxSMtUpdated") heard.emplace_back(h.line, h.global);
  }
  EXPECT_EQ(heard, (std::vector<std::pair<std::string, bool>>{{"RxFrqUpdated 1 10000000 1", true},
                                                              {"RxFrqUpdated 0 10000000 0", false},
                                                              {"RxModUpdated 1 0 6000", true},
                                                              {"RxFltUpdated 1 6000", true}}));
  rig.listener.clear();
  rig.core.turnKnob(kQuill, Item::Frequency, 10'000'000);
  rig.pump();
  EXPECT_EQ(tuned(), Lines{}) << "the knob was not turned, so nothing is reported";
}

TEST_F(Tuning, AKnobTurnedUnderASlowRequestDoesNotPullTheRowBack) {
  slow(kHarrow, milliseconds(300));
  rig.core.SetRxFrequency(kHarrow, false, 8'000'000);
  rig.core.turnKnob(kHarrow, Item::Frequency, 9'000'000);
  EXPECT_EQ(rig.core.GetRxFrequency(kHarrow, kTuned), 8'000'000);
  rig.run(milliseconds(400));
  EXPECT_EQ(tuned(), Lines{"RxFrqUpdated 0 8000000 0"});
}

TEST_F(Tuning, AChannelizedEntryIsTheMiddleOfTheChannel) {
  const auto middle = [&](Long selector) {
    return rig.core.GetRxFrequency(kQuill, selector).value();
  };
  rig.core.SetRxFrequency(kQuill, true, 8'294'000);
  EXPECT_EQ(middle(kTuned), 8'292'600) << "the carrier of a channel in USB lies below its middle";
  EXPECT_EQ(middle(kFixedChannelized), 8'294'000);
  EXPECT_EQ(middle(kFilterChannelized), 8'292'600 + 2700 / 2);
  rig.core.SetRxMode(kQuill, 3);
  rig.core.SetRxFrequency(kQuill, true, 8'294'000);
  EXPECT_EQ(middle(kTuned), 8'295'400);
  rig.core.SetRxMode(kQuill, 0);
  rig.core.SetRxFrequency(kQuill, true, 8'294'000);
  EXPECT_EQ(middle(kTuned), 8'294'000);
  EXPECT_EQ(middle(kChannelBoundary), 30'000'000);
  rig.core.SetRxMode(kQuill, 2);
  rig.core.SetRxFrequency(kQuill, true, 145'500'000);
  EXPECT_EQ(middle(kTuned), 145'500'000) << "above the boundary there are no such channels";
  EXPECT_EQ(middle(kFixedChannelized), 145'500'000);
  EXPECT_FALSE(rig.core.GetRxFrequency(kQuill, 4).ok());
  EXPECT_FALSE(rig.core.GetRxFrequency(kQuill, -1).ok());
}

TEST_F(Tuning, TheStepInUseIsChangedAtTheReceiver) {
  EXPECT_EQ(rig.core.GetRxStep(kTern), 500);
  EXPECT_EQ(rig.core.GetRxMaxStep(kTern), 500);
  EXPECT_EQ(rig.core.GetRxMinStep(kTern), 100);
  rig.core.turnKnob(kTern, Item::Step, 300);
  rig.core.turnKnob(kTern, Item::Step, 9'000'000);
  rig.pump();
  EXPECT_EQ(rig.listener.lines("RxStpUpdated"),
            (Lines{"RxStpUpdated 2 300", "RxStpUpdated 2 500"}));
}

TEST_F(Tuning, TheBfoIsLimitedAndReceiversWithoutOneRefuse) {
  EXPECT_EQ(rig.core.SetRxBfo(kHarrow, 700), Outcome::Done);
  EXPECT_EQ(rig.core.SetRxBfo(kHarrow, -20'000), Outcome::Done);
  EXPECT_EQ(rig.core.SetRxBfo(kQuill, 700), Outcome::Failed);
  rig.pump();
  EXPECT_EQ(rig.listener.lines("RxBfoUpdated"),
            (Lines{"RxBfoUpdated 0 700", "RxBfoUpdated 0 -9900"}));
  EXPECT_EQ(rig.core.GetRxBfo(kHarrow), -9900);
  EXPECT_TRUE(rig.core.IsRxBfoMode(kHarrow, 4));
  EXPECT_FALSE(rig.core.IsRxBfoMode(kHarrow, 0));
  EXPECT_FALSE(rig.core.IsRxBfoMode(kQuill, 4)) << "it has no BFO";
}

}  // namespace
}  // namespace kelvane::sondrel
