#include "windows/help_card.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <vector>

#include "tests/fakes/key_words.h"
#include "tests/fakes/noting_receivers.h"
#include "tests/fakes/rtf_text.h"

namespace kelvane {
namespace {

using fakes::KeyWords;
using fakes::PanelRig;
using fakes::RtfText;

/// One key of the card: where it is pressed, the key, what the card says that it does.
struct CardKey {
  std::string section, from, keys, action;
};

std::vector<std::string> split(const std::string& text, const std::string& at) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  for (auto end = text.find(at); end != std::string::npos; end = text.find(at, start)) {
    parts.push_back(text.substr(start, end - start));
    start = end + at.size();
  }
  parts.push_back(text.substr(start));
  return parts;
}

/// Every key of the card; "L / U" counts as two.
std::vector<CardKey> cardKeys() {
  std::vector<CardKey> keys;
  std::string section, from;
  for (const std::string& line : split(RtfText::of(helpCard("Any", Arrows::Symbol)), "\n")) {
    const auto cells = split(line, "\t");
    if (line.starts_with("From ") || line.starts_with("On a ")) {
      // The log's own keys stand on the card as if they were the main window's.
      const bool again = section == "LOGFILE SETTING" && from == line;
      from = again ? "From log window" : line;
    } else if (cells.size() == 1) {
      if (!line.starts_with("_")) section = line, from.clear();
      continue;
    }
    for (std::size_t i = 0; i + 1 < cells.size(); i += 2) {
      if (cells[i].empty() || cells[i + 1].empty()) continue;
      for (const std::string& key : split(cells[i], " / "))
        keys.push_back({section, from, key, cells[i + 1]});
    }
  }
  return keys;
}

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
  }
  bool acts(const std::string& keys, bool onDigit) {
    for (int state = 0; state < 5; ++state) {
      // A typed number would let any letter act, and a button any Enter.
      if (state == 3 && keys != "ESC") continue;
      if (state == 4 && keys != "CR" && !keys.ends_with("F6")) continue;
      put(state);
      if (onDigit) rig.window.focus(id::FrqDigit + 5);
      const std::string before = everything(rig);
      const int stored = noting->stored;
      KeyWords(rig).press(keys);
      if (everything(rig) != before || noting->stored > stored || !opened.empty()) return true;
    }
    return false;
  }

  PanelRig rig;
  fakes::NotingReceivers* noting = nullptr;
  std::string opened;
};

TEST_F(Card, NamesNoKeyThatDoesNothing) {
  int tried = 0;
  for (const CardKey& entry : cardKeys()) {
    const bool onDigit = entry.from == "On a selected digit";
    if (!onDigit && entry.from != "From main window") continue;
    EXPECT_TRUE(acts(entry.keys, onDigit)) << entry.section << ": " << entry.keys;
    ++tried;
  }
  EXPECT_GT(tried, 80);
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
