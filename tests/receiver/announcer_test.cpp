#include "receiver/announcer.h"

#include <gtest/gtest.h>

#include "tests/fakes/panel_rig.h"
#include "ui/main_controls.h"

namespace kelvane {
namespace {

TEST(Announcer, SaysWhatLastsAndNothingTwice) {
  Control said;
  Announcer announcer(said);
  const auto look = [&](const char* link, double hertz) {
    said.text.clear();
    announcer.look({"Harrow", link, spokenFrequency(hertz)});
    return said.text;
  };
  EXPECT_EQ(look("Not connected", -1), "") << "it may be up at once";
  EXPECT_EQ(look("", 6'070'000), "");
  EXPECT_EQ(look("", 6'070'000), "Harrow, 6070 kHz");
  EXPECT_EQ(look("", 6'070'000), "");

  for (int turned = 1; turned < 20; ++turned) EXPECT_EQ(look("", 6'070'000 + turned * 10), "");
  EXPECT_EQ(look("", 6'070'190), "6070.19 kHz") << "the knob rests";

  EXPECT_EQ(look("No answer", 6'070'190), "");
  EXPECT_EQ(look("No answer", 6'070'190), "No answer");
  for (int attempt = 0; attempt < 5; ++attempt) {
    EXPECT_EQ(look("Opening", 6'070'190), "") << "an attempt";
    EXPECT_EQ(look("No answer", 6'070'190), "");
    EXPECT_EQ(look("No answer", 6'070'190), "") << "as before";
  }
  look("", 6'070'190);
  EXPECT_EQ(look("", 6'070'190), "answers, 6070.19 kHz");
}

TEST(Announcer, SpeaksOfFrequenciesInFewWords) {
  EXPECT_EQ(spokenFrequency(30'000'000), "30000 kHz");
  EXPECT_EQ(spokenFrequency(7'050'050), "7050.05 kHz");
  EXPECT_EQ(spokenFrequency(9), "0.009 kHz");
  EXPECT_EQ(spokenFrequency(-1), "");
}

/// Lets the panel run and gathers what it announces.
std::string heard(fakes::PanelRig& rig, int seconds) {
  std::string all;
  std::string before = rig.view().Announced.text;
  for (int tenth = 0; tenth < 10 * seconds; ++tenth) {
    rig.run(milliseconds(100));
    const std::string now = rig.view().Announced.text;
    if (now != before) all += now + ";";
    before = now;
  }
  return all;
}

TEST(Announcer, TellsOnThePanelOfKnobEntryTabAndLink) {
  fakes::PanelRig rig;
  rig.start();
  heard(rig, 3);
  EXPECT_EQ(heard(rig, 10), "") << "nothing happens";
  rig.turnKnob(0, 7'050'000);
  EXPECT_EQ(heard(rig, 3), "7050 kHz;");
  rig.type("60");
  EXPECT_EQ(heard(rig, 3), "") << "what the hand types is not where the receiver is";
  rig.type("85\r");
  EXPECT_EQ(heard(rig, 3), "6085 kHz;");
  rig.type("\t");
  EXPECT_EQ(heard(rig, 3).find(rig.view().TabStrip.tabs[1].caption.substr(1)), 0u);
}

TEST(SpokenWords, SayWhatAControlIsAndWhatItShows) {
  fakes::PanelRig rig;
  rig.start();
  std::string all;
  for (const ControlRow& row : mainControls()) {
    for (int i = 0; i < row.count; ++i) all += spokenWords(row, i, row.of(rig.view(), i)) + ";";
  }
  for (const char* words : {"Frequency digit 3: 6;", "Mode: AM",
                            ";Filter: ", ";S-meter: ", ";Region: 1R;", ";Entry lamp;", ";Known;"})
    EXPECT_NE(all.find(words), std::string::npos) << words << " in " << all;
}

}  // namespace
}  // namespace kelvane
