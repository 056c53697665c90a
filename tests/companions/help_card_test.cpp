#include "companions/help_card.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "tests/fakes/card_keys.h"
#include "tests/fakes/panel_rig.h"
#include "tests/fakes/rtf_text.h"

namespace kelvane {
namespace {

using fakes::CardKey;
using fakes::cardKeys;
using fakes::RtfText;

TEST(HelpCard, NamesEveryCommandAndWhatItDoes) {
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

TEST(HelpCard, NamesEveryPairOfKeysThatAReceiverTakes) {
  fakes::PanelRig rig;
  rig.start();
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
