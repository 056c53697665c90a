#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ambrel/ambrel_play.h"

namespace kelvane::ambrel {
namespace {

using testing::HasSubstr;

/// A schedule whose stations come and go while the test turns the clock.
class OnAir : public testing::Test {
 protected:
  void load(const std::string& lines, const std::string& file = "sked-a22.csv") {
    EXPECT_THAT(play.importText(lines, file), HasSubstr("was loaded"));
    EXPECT_EQ(play.core->data().table->lists().back().problems.count, 0u);
  }
  /// Whether the station at 6070 is on the air at a moment of 2022.
  bool at(unsigned month, unsigned day, int hour, int minute, int second = 0, int year = 2022) {
    play.setTime(year, month, day, hour, minute, second);
    return play.onAir(6'070'000);
  }
  /// A line of a station at 6070.
  static std::string line(const std::string& times, const std::string& days = "",
                          const std::string& code = "1", const std::string& start = "",
                          const std::string& stop = "") {
    return "6070;" + times + ";" + days + ";G;BBC;E;Eu;w;" + code + ";" + start + ";" + stop +
           "\r\n";
  }

  AmbrelPlay play;
};

TEST_F(OnAir, ComesAndGoesAtItsMinutes) {
  load(line("1300-1330"));
  EXPECT_FALSE(at(7, 13, 12, 59, 59));
  EXPECT_TRUE(at(7, 13, 13, 0));
  EXPECT_TRUE(at(7, 13, 13, 29, 59));
  EXPECT_FALSE(at(7, 13, 13, 30));
}

TEST_F(OnAir, AnEndOf2400IsMidnightAndTheWholeDayIsWhole) {
  load(line("2200-2400") + "7000;0000-2400;;G;All day;E;Eu;;1;;\r\n" +
       "8000;0000-0000;;G;All day too;E;Eu;;1;;\r\n9000;1228-1228;;G;Blip;E;Eu;;1;;\r\n" +
       "9100;2400-0100;;G;After midnight;E;Eu;;1;;\r\n");
  EXPECT_TRUE(at(7, 13, 23, 59));
  EXPECT_TRUE(play.onAir(7'000'000) && play.onAir(8'000'000));
  EXPECT_FALSE(at(7, 14, 0, 0));
  EXPECT_TRUE(play.onAir(7'000'000) && play.onAir(8'000'000));
  EXPECT_TRUE(play.onAir(9'100'000));
  EXPECT_FALSE(play.onAir(9'000'000));
  play.setTime(2022, 7, 14, 12, 28);
  EXPECT_TRUE(play.onAir(9'000'000));
}

TEST_F(OnAir, AcrossMidnightItBelongsToTheDayOnWhichItBegan) {
  load(line("2300-0100", "Sa"));  // 16 July 2022 was a Saturday
  EXPECT_FALSE(at(7, 15, 23, 30));
  EXPECT_FALSE(at(7, 16, 0, 30));
  EXPECT_TRUE(at(7, 16, 23, 0));
  EXPECT_TRUE(at(7, 17, 0, 59));
  EXPECT_FALSE(at(7, 17, 1, 0));
  EXPECT_FALSE(at(7, 17, 23, 30));
}

TEST_F(OnAir, ByTheDaysInEveryForm) {
  struct Form {
    const char* days;
    const char* week;  ///< Monday to Sunday of 11 to 17 July 2022, "x" where it is on the air
  };
  const Form forms[] = {
      {"", "xxxxxxx"},          {"Mo", "x......"},     {"Mo-Fr", "xxxxx.."}, {"Tu,Fr", ".x..x.."},
      {"SaSu", ".....xx"},      {"1245", "xx.xx.."},   {"We-Mo", "x.xxxxx"}, {"Su-Th", "xxxx..x"},
      {"Fr-Fr", "....x.."},     {"7", "......x"},      {"2.Sa", "......."},  {"3.Sa", ".....x."},
      {"2.Mo,2.Tu", "xx....."}, {"13Jul", "..x...."},  {"14th", "...x..."},  {"VII", "xxxxxxx"},
      {"VIII", "......."},      {"15.VII", "....x.."}, {"16Aug", "......."}, {"harm", "xxxxxxx"},
      {"USB", "xxxxxxx"},       {"irr", "xxxxxxx"},    {"altTu", ".x....."}, {"Ram", "......."},
      {"Haj", "xxxx..."},  // the days to 13 July, and one of grace
  };
  for (const Form& form : forms) {
    load(line("1200-1300", form.days));
    std::string week;
    for (unsigned day = 11; day <= 17; ++day) week += at(7, day, 12, 30) ? 'x' : '.';
    EXPECT_EQ(week, form.week) << form.days;
  }
}

TEST_F(OnAir, InRamadan) {
  load(line("1200-1300", "Ram"));
  EXPECT_TRUE(at(4, 15, 12, 0));
  EXPECT_FALSE(at(5, 10, 12, 0));
  EXPECT_TRUE(at(3, 20, 12, 0, 0, 2024));
  EXPECT_FALSE(at(4, 20, 12, 0, 0, 2024));
}

TEST_F(OnAir, BySeasonAsThePersistenceCodeSays) {
  // The summer season of 2022 ended on Sunday, 30 October, at 0100 UTC; the next one began on
  // 26 March 2023.
  const auto last = [this] { return at(10, 30, 0, 30); };
  const auto winter = [this] { return at(10, 30, 1, 30); };
  const auto nextSummer = [this] { return at(3, 26, 1, 30, 0, 2023); };
  const auto states = [&](const char* code) {
    load(line("0000-2400", "", code));
    return std::string() + (last() ? 'x' : '.') + (winter() ? 'x' : '.') +
           (nextSummer() ? 'x' : '.');
  };
  EXPECT_EQ(states("0"), "x..");
  EXPECT_EQ(states(""), "x..");
  EXPECT_EQ(states("1"), "xxx");
  EXPECT_EQ(states("4"), ".x.");
  EXPECT_EQ(states("5"), "x.x");
}

TEST_F(OnAir, ShiftsByTheHourInTheOtherSeason) {
  load(line("1800-1900", "Fr", "2"));
  EXPECT_TRUE(at(7, 15, 18, 30));
  EXPECT_FALSE(at(12, 16, 18, 30));
  EXPECT_TRUE(at(12, 16, 19, 30));
  EXPECT_THAT(play.shown(6'070'000), HasSubstr("1900-2000"));
  load(line("1800-1900", "Fr", "3"));
  EXPECT_TRUE(at(12, 16, 17, 30));
  EXPECT_FALSE(at(12, 16, 18, 30));
  EXPECT_THAT(play.shown(6'070'000), HasSubstr("1700-1800"));
  // A winter list read in summer turns the other way, and the day goes with the hour.
  load(line("0000-0030", "Sa", "2"), "eibi-b22.csv");
  EXPECT_TRUE(at(12, 17, 0, 15));
  EXPECT_TRUE(at(7, 15, 23, 15)) << "what is on Saturday in winter is on Friday in summer";
  EXPECT_FALSE(at(7, 16, 23, 15));
}

TEST_F(OnAir, BetweenItsDates) {
  load(line("2300-0100", "", "6", "0106", "3108[0422]"));
  EXPECT_FALSE(at(5, 31, 23, 30));
  EXPECT_FALSE(at(6, 1, 0, 30));
  EXPECT_TRUE(at(6, 1, 23, 30));
  EXPECT_TRUE(at(8, 31, 23, 30));
  EXPECT_TRUE(at(9, 1, 0, 30)) << "it began on the last day";
  EXPECT_FALSE(at(9, 1, 23, 30));
  EXPECT_FALSE(at(7, 1, 23, 30, 0, 2023)) << "the dates were of that season";
  load(line("0000-2400", "", "1", "0111", "2802"));
  EXPECT_TRUE(at(12, 31, 12, 0));
  EXPECT_TRUE(at(2, 28, 12, 0, 0, 2024)) << "comes back every winter";
  EXPECT_FALSE(at(3, 1, 12, 0, 0, 2023));
  load(line("0000-2400", "", "1", "0504"));
  EXPECT_FALSE(at(4, 4, 12, 0));
  EXPECT_TRUE(at(4, 5, 12, 0));
  EXPECT_TRUE(at(1, 5, 12, 0, 0, 2023));
  load(line("0000-2400", "", "0", "", "3004"));
  EXPECT_TRUE(at(4, 30, 12, 0));
  EXPECT_FALSE(at(5, 1, 12, 0));
  load(line("0000-2400", "", "0", "", "[0122]"));
  EXPECT_TRUE(at(7, 1, 12, 0)) << "when it was last heard binds nothing";
}

TEST_F(OnAir, InactiveLinesAreNoStations) {
  EXPECT_THAT(play.importText(line("0000-2400", "", "8") + "7000;0000-2400;;G;X;E;Eu;;1;;\r\n"),
              HasSubstr("1 broadcasts, 1 inactive ones left out"));
  EXPECT_EQ(play.name(6'070'000), "");
}

TEST_F(OnAir, ThePresentStationIsPreferredAndTheOthersAreTold) {
  load(
      "6070;0600-0700;;G;Morning;E;Eu;;1;;\r\n6070;0650-0800;;F;Later;F;Af;;1;;\r\n"
      "6070;0655-0800;;D;Third;D;;;1;;\r\n6070;0000-2400;irr;I;Sometimes;I;;;1;;\r\n");
  play.setTime(2022, 7, 13, 6, 30);
  EXPECT_THAT(play.shown(6'070'000),
              HasSubstr("Morning - E 0600-0700 G to Eu; +1 more: Sometimes"));
  play.setTime(2022, 7, 13, 6, 57);
  EXPECT_THAT(play.shown(6'070'000), HasSubstr("; +3 more: Later, Third, Sometimes"));
  play.setTime(2022, 7, 13, 7, 30);
  EXPECT_EQ(play.name(6'070'000), "Later");
  play.setTime(2022, 7, 13, 8, 0);
  EXPECT_EQ(play.name(6'070'000), "Sometimes") << "an irregular one before one that is silent";
}

TEST_F(OnAir, OfSilentStationsTheNextOneIsNamed) {
  load(
      "6070;0600-0700;;G;Morning;E;Eu;;1;;\r\n6070;1500-1600;;F;Afternoon;F;Af;;1;;\r\n"
      "6070;1200-1300;;D;Winter;D;;;4;;\r\n");
  play.setTime(2022, 7, 13, 11, 0);
  EXPECT_THAT(play.shown(6'070'000), HasSubstr("Afternoon - not on the air now, F 1500-1600"));
  play.setTime(2022, 7, 13, 20, 0);
  EXPECT_EQ(play.name(6'070'000), "Morning");
}

TEST_F(OnAir, AChangeOfTheMinuteIsToldOnceWhenItChangesWhatIsThere) {
  load("6070;0600-0700;;G;Morning;E;Eu;;1;;\r\n6070;0700-0800;;F;Later;F;Af;;1;;\r\n");
  play.setTime(2022, 7, 13, 6, 58);
  EXPECT_EQ(play.name(6'070'000), "Morning");
  play.events.dataUpdated = 0;
  play.setTime(2022, 7, 13, 6, 59);
  play.core->lookAtClock();
  EXPECT_FALSE(play.wakes.any());
  play.setTime(2022, 7, 13, 7, 0);
  EXPECT_EQ(play.core->GetFrqKnownName().value(), "Morning") << "until somebody looks";
  play.core->lookAtClock();
  EXPECT_EQ(play.events.dataUpdated, 0) << "never from inside a call";
  play.deliver();
  EXPECT_EQ(play.events.dataUpdated, 1);
  EXPECT_EQ(play.core->GetFrqKnownName().value(), "Later");
}

}  // namespace
}  // namespace kelvane::ambrel
