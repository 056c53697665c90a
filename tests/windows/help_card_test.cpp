#include "windows/help_card.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <vector>

#include "tests/fakes/card_keys.h"
#include "tests/fakes/channel_rig.h"
#include "tests/fakes/key_words.h"
#include "tests/fakes/log_rig.h"
#include "tests/fakes/noting_receivers.h"

namespace kelvane {
namespace {

using fakes::CardKey;
using fakes::cardKeys;
using fakes::KeyWords;
using fakes::PanelRig;
using fakes::RtfText;

/// Everything that a key can change, as one text.
std::string everything(PanelRig& rig) {
  std::ostringstream all;
  const MainView& view = rig.view();
  for (const auto* row : {&view.VStep, &view.LockImg})
    for (const Control& control : *row) all << control.text << control.visible << '|';
  for (const auto& button : view.ModEvent) all << button.text << button.pressed << '|';
  for (const auto& button : view.GenEvent) all << button.pressed;
  for (const Control* label : {&view.VChn, &view.IBank, &view.VBank, &view.Band, &view.RNG,
                               &view.FrqBfo, &view.HFF, &view.FrqDotit})
    all << label->text << '|';
  for (Index rx = 0; rx < 4; ++rx) all << rig.receiver().GetRxFrequency(rx, kTuned).value() << '|';
  all << rig.digits() << '|' << view.TabStrip.selected << rig.window.focused << rig.clipboard.held
      << rig.ambrelWindows.opened << rig.dialogs.helps;
  return all.str();
}

/// Whether what a key did is what the card says of it, as far as the key's own name tells.
bool isWhatTheCardSays(PanelRig& rig, const CardKey& entry, Hz from) {
  const MainView& view = rig.view();
  const std::string& keys = entry.keys;
  if (entry.section == "DATABASE CONTROL" && keys != "R") return rig.ambrelWindows.opened == keys;
  if (entry.section == "RECEIVER CONTROL" && keys.size() == 2) {
    if (keys == "MB") return !view.BMod.visible;
    if (keys[0] == 'M') return view.ModEvent[0].text == entry.action;
    if (keys[0] == 'A') return view.ModEvent[2].text[0] == entry.action[0];
    if (keys[0] == 'P') return view.HFF.text == (entry.action == "On" ? "HF on" : "HF off");
  }
  const Hz now = rig.receiver().GetRxFrequency(0, kTuned);
  // Sets follow one another by name, channels by number.
  if (now == from || keys.starts_with("CTRALT") || keys.size() == 2) return true;
  const bool up = keys.ends_with("+") || keys.ends_with("Right") || keys.ends_with("Up");
  const bool down = keys.ends_with("-") || keys.ends_with("Left") || keys.ends_with("Down");
  return up ? now > from : !down || now < from;
}

class Card : public testing::Test {
 protected:
  Card() {
    auto receivers = std::make_unique<fakes::NotingReceivers>(rig.sondrel.core);
    noting = receivers.get();
    rig.wrapped = std::move(receivers);
    rig.start();
    const auto note = [this](Companion window) {
      rig.panel->companions().provide(window,
                                      [this, window] { opened += char('0' + int(window)); });
    };
    for (const Companion window : {Companion::Channels, Companion::Log, Companion::LogAndRecord})
      note(window);
    rig.type("5000\r12s9000\r11s");
  }

  /// The panel as a key may find it. A key that belongs on the card changes one of these.
  void put(int state) {
    rig.window.focus(id::FrqFocus);
    rig.type("\x1bu\x1b");
    rig.panel->tabClicked(0);
    rig.clipboard.held = "7123";
    // On no station, and on one that belongs to a set.
    rig.type(state == 1 ? "5000\r" : "10000.3\r");
    rig.type(state % 2 ? "mcfnasp0" : "mufwafp1");
    if (state == 2) rig.type("l");
    if (state == 3) rig.type("12");
    if (state == 4) rig.window.focus(id::ModEvent);
    opened.clear();
    rig.ambrelWindows.opened.clear();
  }
  bool acts(const CardKey& entry, bool onDigit) {
    const std::string& keys = entry.keys;
    for (int state = 0; state < 5; ++state) {
      // A typed number would let any letter act, and a button any Enter.
      if (state == 3 && keys != "ESC") continue;
      if (state == 4 && keys != "CR" && !keys.ends_with("F6")) continue;
      put(state);
      if (onDigit) rig.window.focus(id::FrqDigit + 5);
      const std::string before = everything(rig);
      const int stored = noting->stored;
      const Hz from = rig.receiver().GetRxFrequency(0, kTuned);
      KeyWords(rig).press(keys);
      if (everything(rig) != before || noting->stored > stored || !opened.empty())
        return isWhatTheCardSays(rig, entry, from);
    }
    return false;
  }

  PanelRig rig;
  fakes::NotingReceivers* noting = nullptr;
  std::string opened;
};

TEST_F(Card, NamesNoKeyThatDoesNothingOrSomethingElse) {
  int tried = 0;
  for (const CardKey& entry : cardKeys()) {
    const bool onDigit = entry.from == "On a selected digit";
    if (!onDigit && entry.from != "From main window") continue;
    EXPECT_TRUE(acts(entry, onDigit)) << entry.section << ": " << entry.keys;
    ++tried;
  }
  EXPECT_GT(tried, 80);
}

TEST(HelpCard, LeavesNoWindowsKeysToChance) {
  std::set<std::string> places;
  for (const CardKey& entry : cardKeys()) places.insert(entry.from);
  EXPECT_EQ(places,
            (std::set<std::string>{"From main window", "On a selected digit", "From channel window",
                                   "From log window", "From this card"}));
}

/// Presses each key that the card names for a window with a grid, always from the same cell, and
/// sees that it does what the card says. `tuned` answers what the receiver is on.
void pressInGrid(const std::string& from, Grid& grid, const std::function<Hz()>& tuned) {
  int tried = 0;
  for (const CardKey& entry : cardKeys()) {
    if (entry.from != from) continue;
    constexpr GridCell kFrom{1, 1};
    grid.select(kFrom);
    KeyWords([&](int code, int shift) { grid.keyDown(code, shift); }).press(entry.keys);
    const bool shifted = entry.keys.starts_with("SHF ");
    const std::string key = entry.keys.substr(shifted ? 4 : 0);
    GridCell to = kFrom;
    if (entry.action.starts_with("Up/Down")) key == "Up" ? --to.row : ++to.row;
    if (entry.action.starts_with("Left/Right")) key == "Left" ? --to.column : ++to.column;
    EXPECT_EQ(grid.current(), to) << from << ": " << entry.keys;
    const bool sends = entry.action.find("select channel") != std::string::npos ||
                       entry.action.find("send to receiver") != std::string::npos;
    const int frequency = grid.columns()[0].caption.starts_with("Frequency") ? 0 : 1;
    const bool same = grid.table().cell(to.row, frequency) == std::to_string(tuned());
    EXPECT_EQ(same, sends || entry.action.starts_with("Load current setting"))
        << from << ": " << entry.keys;
    ++tried;
  }
  EXPECT_GE(tried, 6) << from;
}

TEST(HelpCard, SaysOfTheChannelWindowsKeysWhatTheyDo) {
  fakes::ChannelRig rig;
  rig.start();
  for (const Channel channel : {0, 1, 2})
    rig.sondrel.core.SetRxChannel(0, channel, 6'000'000 + channel, 0, 0, 6000, 0, 0);
  rig.open(0);
  pressInGrid("From channel window", rig.grid(), [&] {
    rig.run(milliseconds(100));
    return rig.receiver().GetRxFrequency(0, kTuned).value();
  });
}

TEST(HelpCard, SaysOfTheLogWindowsKeysWhatTheyDo) {
  fakes::LogRig rig;
  for (const Hz frequency : {5'000'000, 6'000'000, 7'000'000}) {
    rig.tune(frequency);
    rig.store();
  }
  rig.tune(8'000'000);
  pressInGrid("From log window", rig.log->PadGrd(), [&] {
    rig.sondrel.run(milliseconds(200));
    return rig.sondrel.core.GetRxFrequency(0, kTuned).value();
  });
}

TEST_F(Card, NamesEveryCommandAndWhatItDoes) {
  const auto keys = cardKeys();
  for (const CommandRow& row : commandRows()) {
    const auto on = std::ranges::find_if(keys, [&row](const CardKey& entry) {
      if (entry.keys != row.keys || entry.from != "From main window") return false;
      std::istringstream words{std::string(row.action)};
      for (std::string word; words >> word;)
        if (entry.action.find(word) == std::string::npos) return false;
      return true;
    });
    EXPECT_NE(on, keys.end()) << row.keys << ": " << row.action;
  }
}

TEST_F(Card, NamesEveryPairOfKeysThatAReceiverTakes) {
  const auto keys = cardKeys();
  for (const char first : std::string("MFAPCSRKEDLUGB"))
    for (const char second : std::string("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789")) {
      const std::string pair{first, second};
      rig.receiver().RxKeyPress(0, "\x1b");
      rig.receiver().RxKeyPress(0, pair.substr(0, 1));
      if (!rig.receiver().RxKeyPress(0, pair.substr(1)).value()) continue;
      EXPECT_TRUE(std::ranges::find(keys, pair, &CardKey::keys) != keys.end()) << pair;
    }
}

TEST(HelpCard, ReadsTheSameHoweverTheArrowsAreWritten) {
  const std::string symbols = RtfText::of(helpCard("Any", Arrows::Symbol));
  EXPECT_TRUE(symbols.starts_with("Kelvane 1.0.0"));
  EXPECT_NE(symbols.find("SHF Left / SHF Right\tUp/Down 1Hz"), std::string::npos);
  EXPECT_EQ(symbols.find('?'), std::string::npos);
  EXPECT_EQ(RtfText::of(helpCard("Any", Arrows::Characters)), symbols);
  EXPECT_EQ(RtfText::of(helpCard("Any", Arrows::Words)), symbols);
  EXPECT_NE(helpCard("Some Font", Arrows::Words).find(" Some Font;"), std::string::npos);
}

}  // namespace
}  // namespace kelvane
