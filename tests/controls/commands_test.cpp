#include <gtest/gtest.h>

#include "tests/fakes/noting_receivers.h"
#include "tests/fakes/panel_rig.h"
#include "tests/fakes/recording_receiver.h"
#include "ui/key_codes.h"
#include "ui/main_controls.h"

namespace kelvane {
namespace {

using fakes::PanelRig;
using Lines = std::vector<std::string>;

/// Receivers that say of themselves what a test wants.
class OddReceivers : public fakes::RecordingReceiver {
 public:
  using RecordingReceiver::RecordingReceiver;

  Answer<Count> GetRxCount() override {
    return none ? Answer<Count>(0) : RecordingReceiver::GetRxCount();
  }
  Answer<Flag> GetRxRemote(Index rx) override {
    return alwaysRemote ? Answer<Flag>(true) : RecordingReceiver::GetRxRemote(rx);
  }
  Answer<Hz> GetRxFrequency(Index rx, Long selector) override {
    return silentDial ? Answer<Hz>(-1) : RecordingReceiver::GetRxFrequency(rx, selector);
  }

  Answer<Flag> RxKeyPress(Index rx, Text key) override {
    typed += key;
    return RecordingReceiver::RxKeyPress(rx, key);
  }

  std::string typed;
  bool none = false;
  bool alwaysRemote = false;
  bool silentDial = false;
};

class Commands : public testing::Test {
 protected:
  Commands() {
    auto odd = std::make_unique<OddReceivers>(rig.sondrel.core);
    receivers = odd.get();
    rig.wrapped = std::move(odd);
    rig.start();
  }

  /// Every key of the language and a click on every control but those that open a window.
  void tryEverything() {
    rig.type("7100\r2.5+2.5-500f700b1c1smafnas:d\x16 g");
    for (const int code : {key::Up, key::Right, key::Home, key::PadPlus, key::Down})
      for (int shift = 0; shift < 8; ++shift) rig.press(code, shift);
    rig.panel->wheel(120);
    for (const ControlRow& row : mainControls()) {
      if (row.id == id::ConfigButton || row.id == id::Opener) continue;
      for (int i = 0; i < row.count; ++i) {
        rig.panel->clicked(row.id + i, MouseButton::Left);
        rig.panel->clicked(row.id + i, MouseButton::Right);
      }
    }
  }

  PanelRig rig;
  OddReceivers* receivers = nullptr;
};

TEST_F(Commands, NeedALinkThatIsUpWhateverIsSaidOfRemoteControl) {
  receivers->alwaysRemote = true;
  rig.sondrel.core.SetRxConnect(0, false);
  rig.panel->tabClicked(1);
  rig.panel->tabClicked(0);
  rig.clipboard.held = "7100";
  receivers->told();
  tryEverything();
  Lines told = receivers->told();
  // The retry of the link, forwarding and the closed log ask nothing of the receiver.
  std::erase_if(told, [](const std::string& line) {
    return line.starts_with("SetRxConnect") || line.starts_with("SetRxForward");
  });
  EXPECT_EQ(told, Lines());
}

TEST_F(Commands, AskNobodyWhereThereIsNoReceiver) {
  rig.sondrel.core.removeListener(rig.panel->receiverEvents());
  receivers->none = true;
  receivers->named.clear();
  rig.panel->receiverEvents().DrvUpdated(0);
  tryEverything();
  EXPECT_EQ(receivers->named, decltype(receivers->named)());
}

TEST_F(Commands, TuneAReceiverThatDoesNotSayItsFrequencyToAWholeOneOnly) {
  receivers->silentDial = true;
  receivers->told();
  rig.type("7100\r");
  EXPECT_EQ(receivers->told("SetRxFrequency"), Lines{"SetRxFrequency 0 0 7100000"});
  rig.clipboard.held = "9000";
  rig.type("\x16");
  EXPECT_EQ(receivers->told("SetRxFrequency"), Lines{"SetRxFrequency 0 0 9000000"});
  rig.type("2.5+");
  rig.type("2.5-");
  for (const int code : {key::Up, key::Right, key::Home, key::PadPlus}) rig.press(code);
  rig.window.focus(id::FrqDigit + 4);
  for (const int code : {key::Up, key::Home, key::Delete, key::PageUp}) rig.press(code);
  rig.panel->wheel(-120);
  EXPECT_EQ(receivers->told("SetRxFrequency"), Lines()) << "by how much, from where?";
}

/// A band plan that knows of no next band.
class NoMoreBands : public fakes::PassingFrequencies {
 public:
  using PassingFrequencies::PassingFrequencies;
  Answer<Hz> NextFrqBand(Long) override { return Answer<Hz>(-1); }
};

TEST(BandPlan, WithoutAFurtherBandTunesNowhere) {
  PanelRig rig;
  NoMoreBands plan(rig.ambrel);
  rig.plan = &plan;
  rig.start();
  rig.type("7050\r");
  for (const int sign : {key::PadPlus, key::PadMinus}) rig.press(sign);
  EXPECT_EQ(rig.digits(), "  7050000");
  EXPECT_EQ(rig.window.beeps, 2);
}

TEST_F(Commands, OfferTheReceiverEachLetterInUpperCase) {
  rig.type("mUd\x1b");
  EXPECT_EQ(receivers->typed, "MUD\x1b");
}

TEST_F(Commands, HeedNoClickUnderADialogNorOnWhatIsLockedByNow) {
  receivers->told();
  rig.window.modal = true;
  rig.panel->clicked(id::ModEvent, MouseButton::Left);
  rig.window.modal = false;
  rig.view().ModEvent[0].enabled = false;
  rig.panel->clicked(id::ModEvent, MouseButton::Left);
  EXPECT_EQ(receivers->told(), Lines());
}

TEST_F(Commands, AreOneForEachClickHoweverQuick) {
  const struct {
    int control;
    const char* request;
  } rows[] = {{id::ModEvent, "NextRxMode"},   {id::ModEvent + 2, "NextRxAgc"},
              {id::VChn, "SelectRxChannel"},  {id::FrqBfo, "SetRxBfo"},
              {id::IO + 3, "SetRxOut"},       {id::HFF, "SetRxHFFilter"},
              {id::GenEvent, "SetRxForward"}, {id::Band, "SetRxFrequency"}};
  for (const auto& row : rows) {
    receivers->told();
    for (int i = 0; i < 3; ++i) rig.panel->clicked(row.control, MouseButton::Left);
    const Lines asked = receivers->told(row.request);
    ASSERT_EQ(asked.size(), 3u) << row.request;
    if (asked[0].starts_with("Set") || asked[0].starts_with("Select")) {
      EXPECT_NE(asked[0], asked[1]) << "the second click repeats the first";
    }
    rig.run(milliseconds(300));
  }
}

}  // namespace
}  // namespace kelvane
