#include "companions/config.h"

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

TEST(Config, WhatHasNoBoxStaysAsItWasStored) {
  ConfigRig rig;
  rig.settings.writeNumber("FollowCarrier", 0);
  rig.start();
  rig.open([](Config& config) {
    for (const int shift : {0, int{key::ShiftHeld}, key::CtrlHeld | key::ShiftHeld})
      EXPECT_FALSE(config.keyDown(key::Tab, shift)) << "goes from control to control";
    EXPECT_EQ(config.cmdOK_Click(), "");
  });
  EXPECT_FALSE(rig.options().OptFollowCarrier);
  EXPECT_EQ(rig.settings.number("FollowCarrier", -1), 0);
}

TEST(Config, ColoursChangeWithOkAloneAndAtOnce) {
  ConfigRig rig;
  rig.start();
  rig.open([](Config& config) {
    config.coloursChosen(static_cast<int>(ColourChoice::Night));
    config.cmdCancel_Click();
  });
  EXPECT_EQ(rig.view().colours, ColourChoice::AsSystem);
  rig.open([](Config& config) {
    EXPECT_EQ(config.view().colours, ColourChoice::AsSystem) << "what was cancelled is forgotten";
    config.coloursChosen(static_cast<int>(ColourChoice::Light));
    config.cmdOK_Click();
  });
  EXPECT_EQ(rig.view().colours, ColourChoice::Light);
  EXPECT_EQ(loadOptions(rig.settings).OptColours, ColourChoice::Light);
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

TEST(Config, TheReceiversTabFollowsWhatTheDriverDialogLeft) {
  ConfigRig rig;
  rig.start();
  rig.panel->tabClicked(2);
  const auto keepOnly = [](std::size_t count) {
    return [count](sondrel::DriversModel& model, const std::function<Result<>()>& apply) {
      while (model.receivers().size() > count) model.remove(model.receivers().size() - 1);
      if (count) model.rename(0, "Left & right");
      EXPECT_TRUE(apply());
    };
  };
  rig.open([&](Config& config) {
    config.All_Click(Config::Receiver);
    EXPECT_EQ(std::exchange(rig.sondrel.windows.shown, {}), std::vector<Index>{2});
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
  EXPECT_EQ(rig.digits().find_first_of("0123456789"), std::string::npos);
  EXPECT_FALSE(rig.view().GenEvent[0].enabled);
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
