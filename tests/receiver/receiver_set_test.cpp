#include "receiver/receiver_set.h"

#include <gtest/gtest.h>

#include "tests/fakes/channel_rig.h"
#include "tests/fakes/noting_receivers.h"
#include "tests/fakes/panel_rig.h"
#include "tests/fakes/unlike_receivers.h"

namespace kelvane {
namespace {

using fakes::PanelRig;
using sondrel::DriversModel;
namespace unlike = fakes::unlike;

constexpr Colour kActive = Colour::rgb(255, 255, 0);

/// A panel whose set of receivers is changed while it runs.
class ChangedReceivers : public testing::Test {
 protected:
  ChangedReceivers() : rig(unlike::receivers()) {
    auto recording = std::make_unique<fakes::RecordingReceiver>(rig.sondrel.core);
    told = recording.get();
    rig.wrapped = std::move(recording);
    rig.start();
  }
  void change(const std::function<void(DriversModel&)>& edit) {
    told->told("");
    DriversModel drivers = rig.sondrel.core.drivers();
    edit(drivers);
    ASSERT_TRUE(rig.sondrel.core.applyDrivers(drivers));
    rig.run(milliseconds(20));
  }
  /// The name on the selected tab, which has to be the one in the caption.
  std::string shown() const {
    const auto& strip = rig.view().TabStrip;
    if (strip.selected < 0) return "none";
    std::string name = strip.tabs[static_cast<std::size_t>(strip.selected)].caption;
    std::erase(name, '&');
    return rig.view().caption.ends_with(" " + name) ? name : "not " + rig.view().caption;
  }

  PanelRig rig;
  fakes::RecordingReceiver* told = nullptr;
};

TEST_F(ChangedReceivers, TheShownOneStaysShownWithAllThatIsItsOwnWhereverItGoes) {
  rig.panel->tabClicked(unlike::kScanner);
  rig.click(id::VStep);
  rig.click(id::GenEvent);
  rig.type("142");
  const std::string typed = rig.digits();
  change([](DriversModel& drivers) {
    drivers.remove(unlike::kFull);
    drivers.rename(1, "Scout");
    drivers.move(1, 3);
  });
  EXPECT_EQ(shown(), "Scout");
  EXPECT_EQ(rig.view().TabStrip.selected, 3);
  EXPECT_EQ(rig.digits(), typed);
  EXPECT_EQ(rig.view().GenEvent[0].back, kActive) << "still the master";
  EXPECT_EQ(told->told("SetRxForward"), std::vector<std::string>{"SetRxForward 3"});
  rig.type("30\r");
  EXPECT_EQ(rig.sondrel.core.GetRxFrequency(3, kTuned), 14'230'000);
  EXPECT_EQ(rig.view().VStep[0].text, "600Hz");
  rig.panel->tabClicked(0);
  EXPECT_EQ(rig.view().VStep[0].text, "500Hz");
  EXPECT_EQ(rig.view().GenEvent[0].back, kMenuColour);
}

TEST_F(ChangedReceivers, WhereTheShownOneIsGoneTheNextIsAndNothingTypedGoesToIt) {
  rig.panel->tabClicked(unlike::kFull);
  rig.click(id::GenEvent);
  ASSERT_TRUE(rig.view().SQ.visible);
  rig.type("30");
  change([](DriversModel& drivers) { drivers.remove(unlike::kFull); });
  EXPECT_EQ(shown(), "Plain");
  EXPECT_FALSE(rig.view().SQ.visible);
  EXPECT_EQ(told->told("SetRxForward"), std::vector<std::string>{"SetRxForward -1"});
  EXPECT_FALSE(rig.view().GenEvent[0].pressed) << "there is no master any more";
  rig.type("\r");
  EXPECT_TRUE(told->told("SetRxFrequency").empty());
  rig.panel->tabClicked(6);
  change([](DriversModel& drivers) { drivers.remove(6); });
  EXPECT_EQ(shown(), "Lost") << "the last one, where the last is gone";
}

TEST_F(ChangedReceivers, AddedUnderTheNameOfARemovedOneIsAnother) {
  rig.panel->tabClicked(unlike::kFlapping);
  change([](DriversModel& drivers) {
    drivers.remove(unlike::kFlapping);
    drivers.add("simulated");
    drivers.rename(7, "Receiver 9");
  });
  const std::string first = rig.sondrel.core.GetRxId(7);
  rig.click(id::VStep);
  change([](DriversModel& drivers) {
    drivers.remove(7);
    drivers.add("simulated");
    drivers.rename(7, "Receiver 9");
  });
  EXPECT_NE(rig.sondrel.core.GetRxId(7).value(), first);
  EXPECT_EQ(rig.view().VStep[0].text, "500Hz");
}

TEST_F(ChangedReceivers, TheirLinksKeepTheirWords) {
  change([](DriversModel& drivers) { drivers.remove(unlike::kFull); });
  rig.panel->tabClicked(6);
  EXPECT_EQ(rig.view().RxMask.text, "Link: Cannot open");
  rig.run(milliseconds(20000));
  EXPECT_TRUE(rig.sondrel.core.IsRxOnline(6)) << "one that failed is tried again";
}

/// Names and ids as a test says, and a count that may be anything.
class NamedReceivers final : public fakes::PassingReceivers {
 public:
  using PassingReceivers::PassingReceivers;
  Answer<Count> GetRxCount() override { return count; }
  Answer<Text> GetRxName(Index rx) override { return names.at(static_cast<std::size_t>(rx)); }
  Answer<Text> GetRxId(Index) override { return Answer<Text>::failed({}, Outcome::Unsupported); }
  Outcome SetRxConnect(Index rx, Flag connect) override {
    closed += connect ? "" : std::to_string(rx);
    return Outcome::Done;
  }

  Count count = 4;
  std::vector<Text> names{"A", "B", "B", "", "E", "F", "G", "H", "I"};
  std::string closed;
};

TEST(ReceiverSet, GoesByNamesWhereThereIsNoIdAndByPlacesWhereThereAreNoNames) {
  PanelRig rig;
  NamedReceivers component(rig.sondrel.core);
  ReceiverSet set(component);
  component.names = {"B", "New", "B", ""};
  const ReceiverMoves moves = set.renew();
  EXPECT_EQ(moves(0), -1);
  EXPECT_EQ(moves(1), 0);
  EXPECT_EQ(moves(2), 2) << "the second of two alike";
  EXPECT_EQ(moves(3), 3);
  EXPECT_EQ(moves(4), -1);
  EXPECT_EQ(moves(-1), -1);
  EXPECT_EQ(moves(8), -1);
}

TEST(ReceiverSet, TakesEightReceiversAtMostAndNoneForANegativeCount) {
  for (const Count count : {9, 32768, -1}) {
    PanelRig rig;
    auto named = std::make_unique<NamedReceivers>(rig.sondrel.core);
    NamedReceivers& component = *named;
    component.count = count;
    rig.wrapped = std::move(named);
    rig.start();
    EXPECT_EQ(rig.view().TabStrip.tabs.size(), count < 0 ? 0u : 8u);
    rig.panel->receiverEvents().DrvUpdated(count);
    rig.panel->unload({});
    EXPECT_EQ(component.closed, count < 0 ? "" : "01234567");
  }
}

}  // namespace
}  // namespace kelvane
