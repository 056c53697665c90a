#include "panel/start_up.h"

#include <gtest/gtest.h>

#include "tests/fakes/panel_rig.h"
#include "tests/fakes/recording_receiver.h"

namespace kelvane {
namespace {

using fakes::FixedCalendar;
using fakes::RecordingReceiver;
using fakes::ScriptedDialogs;
using Boxes = std::vector<std::string>;

/// The real cores as a program finds them beside itself, as far as they are there.
class Shelf : public ComponentSource {
 public:
  std::unique_ptr<ReceiverComponent> receiver() override {
    return hasReceiver ? std::make_unique<RecordingReceiver>(rig.core) : nullptr;
  }
  std::unique_ptr<FrequencyComponent> frequency() override {
    if (!hasFrequency) return nullptr;
    return std::make_unique<ambrel::AmbrelCore>(
        KELVANE_DATA_FOLDER, rig.folder.path(), std::chrono::system_clock::now, [] {}, windows);
  }

  fakes::SondrelRig rig;
  fakes::FakeAmbrelWindows windows;
  bool hasReceiver = true, hasFrequency = true;
};

class StartUpTest : public testing::Test {
 protected:
  bool opens() { return StartUp(shelf, boxes).openComponents("Kelvane", 4711); }

  Shelf shelf;
  ScriptedDialogs boxes;
};

TEST_F(StartUpTest, OpensBothComponentsWithoutAWord) {
  EXPECT_TRUE(opens());
  EXPECT_EQ(boxes.boxes, Boxes{});
  EXPECT_EQ(shelf.rig.windows.owner, 4711) << "before it opens, since that may have a question";
}

TEST_F(StartUpTest, SaysWhichComponentIsMissing) {
  shelf.hasFrequency = false;
  EXPECT_FALSE(opens());
  shelf.hasReceiver = false;
  EXPECT_FALSE(opens());
  EXPECT_EQ(boxes.boxes, (Boxes{"|Error: Frequency control (Ambrel.dll) not found|Ok",
                                "|Error: Receiver Control (Sondrel.dll) not found|Ok"}));
}

TEST_F(StartUpTest, OffersTheListOfReceiversWhereThereAreNone) {
  shelf.rig.configure("");
  EXPECT_FALSE(opens()) << "closed without a receiver";
  shelf.rig.windows.edit = [](sondrel::DriversModel& model, const auto& apply) {
    model.add("simulated");
    EXPECT_TRUE(apply());
  };
  EXPECT_TRUE(opens());
  EXPECT_EQ(shelf.rig.windows.edits, 2);
  EXPECT_EQ(boxes.boxes, Boxes(2, "|Error: No configured receiver found|Ok"));
}

TEST_F(StartUpTest, EndsWithoutFurtherWordsWhereTheOperatorGaveUpOnAListThatCannotBeRead) {
  std::filesystem::create_directories(shelf.rig.configPath());
  EXPECT_FALSE(opens());
  EXPECT_EQ(shelf.rig.windows.asked.size(), 1u);
  EXPECT_EQ(shelf.rig.windows.edits, 0);
  EXPECT_EQ(boxes.boxes, Boxes{});
}

class FakeClaim : public PanelClaim {
 public:
  bool claim() override { return result == Result::Ours; }
  Result claimOrShow() override { return result; }
  Result result = Result::Ours;
};

TEST(OnePanel, IsStartedOnceAndNotCleanedWhileItRuns) {
  using Action = CommandLine::Action;
  fakes::MapSettings settings;
  settings.writeNumber("MainLeft", 7);
  ScriptedDialogs boxes;
  FakeClaim claim;
  const auto handled = [&](Action action) {
    return handleWithoutPanel({action, "Shack"}, settings, boxes, claim);
  };
  EXPECT_FALSE(handled(Action::Run));
  claim.result = PanelClaim::Result::Shown;
  EXPECT_TRUE(handled(Action::Run));
  EXPECT_EQ(boxes.boxes, Boxes{});
  EXPECT_TRUE(handled(Action::Clean));
  EXPECT_EQ(settings.number("MainLeft", 0), 7);
  claim.result = PanelClaim::Result::Silent;
  EXPECT_TRUE(handled(Action::Run));
  EXPECT_EQ(boxes.boxes,
            (Boxes{"|" + runningNotice("Shack") + "|Ok", "|" + silentNotice("Shack") + "|Ok"}));
  claim.result = PanelClaim::Result::Ours;
  EXPECT_TRUE(handled(Action::Clean));
  EXPECT_EQ(settings.number("MainLeft", 0), 0);
}

}  // namespace
}  // namespace kelvane
