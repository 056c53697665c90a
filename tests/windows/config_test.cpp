#include "windows/config.h"

#include <gtest/gtest.h>

#include "tests/fakes/panel_rig.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

using fakes::MapSettings;
using fakes::PanelRig;

/// A started panel whose operator does this in the options dialog.
class ConfigRig : public PanelRig {
 public:
  using PanelRig::PanelRig;

  void open(std::function<void(Config&)> hand) {
    dialogs.inConfig = std::move(hand);
    click(id::ConfigButton);
  }
  const Options& options() const { return panel->options(); }
};

void tickAll(Config& config, bool on) {
  for (const OptionBox& row : kOptionBoxes) config.ticked(row.id, on);
}

TEST(Config, TicksStandForTheOptionsOneByOneAndOkTakesThemOver) {
  for (const OptionBox& box : kOptionBoxes) {
    ConfigRig rig;
    rig.start();
    const Options before = rig.options();
    rig.open([&](Config& config) {
      for (const OptionBox& row : kOptionBoxes)
        EXPECT_EQ((config.view().*row.box).pressed, before.*row.option) << row.caption;
      config.ticked(box.id, !(before.*box.option));
      EXPECT_EQ(config.cmdOK_Click(), "");
      EXPECT_FALSE(config.view().open);
    });
    Options expected = before;
    expected.*box.option = !(before.*box.option);
    EXPECT_EQ(rig.options(), expected) << box.caption;
    EXPECT_EQ(loadOptions(rig.settings), expected) << box.caption;
  }
}

TEST(Config, SavesEveryOptionUnderItsNameOnTheFirstOkAlsoTheOneWithoutABox) {
  ConfigRig rig;
  rig.settings.writeFlag("FollowCarrier", false);
  rig.start();
  rig.open([](Config& config) {
    config.typed("  Shack ");
    config.cmdOK_Click();
  });
  for (const OptionRow& row : kOptionRows)
    EXPECT_NE(rig.settings.number(row.setting, 77), 77) << row.setting;
  EXPECT_FALSE(rig.options().OptFollowCarrier);
  EXPECT_EQ(rig.settings.number("FollowCarrier", 77), 0);
  EXPECT_EQ(rig.settings.text("DDEName", ""), "Shack");
}

TEST(Config, CancelChangesNothingAndTheNextShowingForgetsTheTicks) {
  ConfigRig rig;
  rig.start();
  const Options before = rig.options();
  const auto stored = rig.settings.hive();
  rig.open([](Config& config) {
    tickAll(config, false);
    config.typed("other");
    config.cmdCancel_Click();
  });
  EXPECT_EQ(rig.options(), before);
  EXPECT_EQ(rig.settings.hive(), stored);
  rig.open([](Config& config) {
    EXPECT_TRUE(config.view().WndBeep.pressed);
    EXPECT_EQ(config.view().DDESrvNam.text, "Kelvane");
  });
}

TEST(Config, SaysWhenTheOptionsCannotBeStoredAndSkipsThatWithoutAnInstance) {
  ConfigRig rig;
  rig.settings.refuseWritesTo("WindowsBeep");
  rig.start();
  rig.open([](Config& config) {
    config.ticked(id::WndBeep, false);
    EXPECT_NE(config.cmdOK_Click(), "");
  });
  EXPECT_FALSE(rig.options().OptBeep) << "it holds until the program ends";

  MapSettings settings;
  ShownReceiver shown(rig.receiver());
  Options options;
  Config nameless(options, settings, rig.receiver(), shown, "");
  nameless.shown();
  nameless.ticked(id::WndBeep, false);
  EXPECT_EQ(nameless.cmdOK_Click(), "");
  EXPECT_FALSE(options.OptBeep);
  EXPECT_TRUE(settings.hive().empty());
}

TEST(Config, OptionsActAtOnce) {
  ConfigRig rig;
  rig.start();
  ASSERT_TRUE(rig.view().onTop);
  rig.open([&](Config& config) {
    EXPECT_TRUE(config.view().onTop);
    config.ticked(id::WndOTop, false);
    config.ticked(id::WndMonR, false);
    EXPECT_TRUE(rig.view().onTop) << "not before OK";
    config.cmdOK_Click();
  });
  EXPECT_FALSE(rig.view().onTop);
  const int shown = rig.view().TabStrip.selected;
  rig.run(DisplayRequests::kHandRests);
  rig.turnKnob(shown == 1 ? 2 : 1, 10'000'000);
  rig.run(milliseconds(200));
  EXPECT_EQ(rig.view().TabStrip.selected, shown) << "no hand at another receiver pulls the display";
  rig.open([](Config& config) { EXPECT_FALSE(config.view().onTop); });
}

TEST(Config, OpeningItSwitchesForwardingOffAndReleasesTheButtonAfterwards) {
  for (const int button : {Forwarding::Master, Forwarding::All}) {
    ConfigRig rig;
    rig.start();
    rig.window.focus(id::FrqDigit + 3);
    rig.click(id::GenEvent + button);
    ASSERT_TRUE(rig.view().GenEvent[button].pressed);
    rig.window.focus(id::FrqDigit + 3);
    rig.open([&](Config& config) {
      EXPECT_EQ(rig.window.focused, id::FrqFocus);
      EXPECT_TRUE(rig.view().Config.pressed);
      config.cmdCancel_Click();
    });
    EXPECT_FALSE(rig.view().Config.pressed);
    EXPECT_FALSE(rig.view().GenEvent[button].pressed);
    EXPECT_EQ(rig.view().GenEvent[button].back, kMenuColour);
    const Hz other = rig.sondrel.core.GetRxFrequency(1, kTuned);
    rig.panel->tabClicked(0);
    rig.type("7050\r");
    rig.run(milliseconds(200));
    EXPECT_EQ(rig.sondrel.core.GetRxFrequency(1, kTuned), other) << "nobody follows any more";
  }
}

TEST(Config, CtrlTabGoesRoundAndTheComponentsDialogsLeadBackToGeneral) {
  ConfigRig rig;
  rig.start();
  rig.panel->tabClicked(1);
  int inView = -1;
  rig.open([&](Config& config) {
    EXPECT_EQ(config.view().All.selected, Config::General);
    EXPECT_EQ(config.view().All.tabs[Config::Receiver].caption, "Quill");
    rig.sondrel.windows.edit = [&](auto&, auto&) { inView = config.view().All.selected; };
    EXPECT_FALSE(config.keyDown(key::Tab, 0));
    EXPECT_FALSE(config.keyDown(key::Tab, key::CtrlHeld | key::ShiftHeld));
    EXPECT_EQ(rig.sondrel.windows.edits, 0);
    EXPECT_TRUE(config.keyDown(key::Tab, key::CtrlHeld));
    EXPECT_EQ(rig.sondrel.windows.edits, 1);
    EXPECT_EQ(inView, Config::Drivers);
    EXPECT_EQ(config.view().All.selected, Config::General);
    config.All_Click(Config::Receiver);
    EXPECT_EQ(rig.sondrel.windows.shown, std::vector<Index>{1});
    EXPECT_EQ(config.view().All.selected, Config::General);
  });
}

TEST(Config, TheReceiversTabFollowsWhatTheDriverDialogLeft) {
  ConfigRig rig;
  rig.start();
  rig.panel->tabClicked(2);
  const auto keepOnly = [](std::size_t count) {
    return [count](sondrel::DriversModel& model, const std::function<FileResult()>& apply) {
      while (model.receivers().size() > count) model.remove(model.receivers().size() - 1);
      if (count) model.rename(0, "Left & right");
      EXPECT_TRUE(apply());
    };
  };
  rig.open([&](Config& config) {
    rig.sondrel.windows.edit = keepOnly(1);
    config.All_Click(Config::Drivers);
    EXPECT_EQ(config.view().All.tabs[Config::Receiver].caption, "Left && right");
    rig.sondrel.windows.edit = keepOnly(0);
    config.All_Click(Config::Drivers);
    EXPECT_EQ(config.view().All.tabs[Config::Receiver].caption, "");
    config.All_Click(Config::Receiver);
    EXPECT_TRUE(rig.sondrel.windows.shown.empty());
    EXPECT_EQ(config.view().All.selected, Config::Receiver) << "there is nothing to come back from";
    config.keyDown(key::Tab, key::CtrlHeld);
    EXPECT_EQ(config.view().All.selected, Config::General);
    rig.run(milliseconds(100));
    config.cmdOK_Click();
  });
  EXPECT_TRUE(rig.view().TabStrip.tabs.empty());
  EXPECT_EQ(rig.view().caption, "Kelvane 1.0.0 - Receiver NONE");
}

TEST(Config, ATabPullWaitsUntilTheDialogIsClosed) {
  ConfigRig rig;
  rig.start();
  ASSERT_EQ(rig.view().TabStrip.selected, 0);
  rig.open([&](Config& config) {
    rig.turnKnob(1, 10'000'000);
    rig.run(milliseconds(100));
    EXPECT_EQ(rig.view().TabStrip.selected, 0);
    config.cmdCancel_Click();
  });
  rig.run(DisplayRequests::kHandRests);
  EXPECT_EQ(rig.view().TabStrip.selected, 1);
}

}  // namespace
}  // namespace kelvane
