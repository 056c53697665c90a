#include "settings/options.h"

#include <gtest/gtest.h>

#include "tests/fakes/map_settings.h"

namespace kelvane {
namespace {

using fakes::MapSettings;

TEST(Options, AreAllOnButTheDdeLinkWhenNothingIsStored) {
  const MapSettings settings;
  const Options options = loadOptions(settings);
  EXPECT_EQ(options, Options());
  for (const OptionRow& row : kOptionRows)
    EXPECT_EQ(options.*row.member, row.setting != "DDELink") << row.setting;
  EXPECT_EQ(options.OptDDEName, "Kelvane");
}

TEST(Options, ComeBackAsTheyWereSaved) {
  // One at a time, so that no option can stand in for another.
  for (const OptionRow& row : kOptionRows) {
    MapSettings settings;
    Options options;
    options.*row.member = !row.fallback;
    options.OptDDEName = "D\u00E9codeur";
    EXPECT_TRUE(saveOptions(options, settings));
    EXPECT_EQ(loadOptions(settings), options) << row.setting;
    EXPECT_EQ(settings.number(row.setting, 5), row.fallback ? 0 : -1) << row.setting;
  }
}

TEST(Options, TakeAnyNumberButZeroForTrueAndNothingElse) {
  MapSettings settings;
  settings.writeNumber("WindowsBeep", 0);
  settings.writeNumber("DDELink", 7);
  settings.writeText("SendTime", "0");
  settings.writeNumber("DDEName", 3);
  const Options options = loadOptions(settings);
  EXPECT_FALSE(options.OptBeep);
  EXPECT_TRUE(options.OptDDELink);
  EXPECT_TRUE(options.OptSendTime);
  EXPECT_EQ(options.OptDDEName, "Kelvane");
}

TEST(Options, KeepTheChosenColoursAndTakeAnUnknownNumberForTheSystems) {
  MapSettings settings;
  Options options;
  options.OptColours = ColourChoice::Night;
  EXPECT_TRUE(saveOptions(options, settings));
  EXPECT_EQ(loadOptions(settings), options);
  for (const int unknown : {-1, 4, 99}) {
    settings.writeNumber("Colours", unknown);
    EXPECT_EQ(loadOptions(settings).OptColours, ColourChoice::AsSystem) << unknown;
  }
}

TEST(Options, SayWhenTheyCannotBeSaved) {
  for (const char* refused : {"WindowsOnTop", "DDELink", "DDEName", "Colours"}) {
    MapSettings settings;
    settings.refuseWritesTo(refused);
    EXPECT_FALSE(saveOptions(Options(), settings)) << refused;
    EXPECT_EQ(settings.hive().at("Kelvane").size(), kOptionRows.size() + 2) << "the others are";
  }
}

}  // namespace
}  // namespace kelvane
