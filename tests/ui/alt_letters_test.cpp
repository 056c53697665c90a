#include "ui/alt_letters.h"

#include <gtest/gtest.h>

#include "tests/fakes/panel_rig.h"

namespace kelvane {
namespace {

TEST(AltLetters, GiveEachNameTheFirstLetterThatIsLeft) {
  const std::vector<std::string> names{"FT-991", "Attic", "attic", "Z\u00FCrich",
                                       "zz",     "73",    "R&S"};
  EXPECT_EQ(markedCaptions(names, U"fmc"),
            (std::vector<std::string>{"F&T-991", "&Attic", "att&ic", "&Z\u00FCrich", "zz", "&73",
                                      "&R&&S"}));
  EXPECT_EQ(markedCaptions(std::vector<std::string>{"\u00D6lberg", "\u043C", "\u00D7 1"}, {}),
            (std::vector<std::string>{"&\u00D6lberg", "&\u043C", "\u00D7 &1"}));
}

TEST(AltLetters, AreReadFromACaptionInLowerCase) {
  EXPECT_EQ(markedLetter("Cha&Nnels"), U'n');
  EXPECT_EQ(markedLetter("&\u00D6lberg"), 0xF6u);
  EXPECT_EQ(markedLetter("R&&S"), 0u);
  EXPECT_EQ(markedLetter("&&R&S"), U's');
  EXPECT_EQ(markedLetter("R&"), 0u);
  for (const auto& [capital, small] : std::vector<std::pair<char32_t, char32_t>>{{0x141, 0x142},
                                                                                 {0x17D, 0x17E},
                                                                                 {0x3A9, 0x3C9},
                                                                                 {0x416, 0x436},
                                                                                 {0x401, 0x451},
                                                                                 {0xD7, 0xD7},
                                                                                 {'7', '7'}})
    EXPECT_EQ(lowerCase(capital), small);
}

TEST(AltLetters, OfThePanelMeanOneThingEach) {
  fakes::PanelRig rig(
      "[Receiver]\r\nName=FT-991\r\n[Receiver]\r\nName=Cellar\r\n[Receiver]\r\n"
      "Name=\u00D6lberg\r\n");
  MAin& panel = rig.start();
  panel.tabClicked(2);
  EXPECT_TRUE(panel.accelerator('f'));
  EXPECT_TRUE(rig.view().GenEvent[1].pressed) << "buttons keep theirs";
  EXPECT_EQ(rig.view().TabStrip.selected, 2);
  EXPECT_TRUE(panel.accelerator('t'));
  EXPECT_EQ(rig.view().TabStrip.selected, 0);
  EXPECT_TRUE(panel.accelerator('E'));
  EXPECT_EQ(rig.view().TabStrip.selected, 1);
  EXPECT_TRUE(panel.accelerator(0xD6));
  EXPECT_EQ(rig.view().TabStrip.selected, 2);
  EXPECT_FALSE(panel.accelerator('z'));
}

}  // namespace
}  // namespace kelvane
