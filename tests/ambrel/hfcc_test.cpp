#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "components/ambrel/schedule/unzip.h"
#include "tests/ambrel/ambrel_play.h"

namespace kelvane::ambrel {
namespace {

using testing::HasSubstr;

std::string little(std::size_t value, int bytes) {
  std::string text;
  for (; bytes > 0; --bytes, value >>= 8) text += static_cast<char>(value & 0xFF);
  return text;
}

/// A zip with files that are stored as they are.
std::string zipOf(const std::vector<ZipMember>& members) {
  std::string files, list;
  for (const auto& [name, content] : members) {
    const std::string sizes = little(0, 4) + little(content.size(), 4) + little(content.size(), 4) +
                              little(name.size(), 2) + little(0, 2);
    list += "PK\1\2" + little(20, 2) + little(20, 2) + little(0, 8) + sizes + little(0, 10) +
            little(files.size(), 4) + name;
    files += "PK\3\4" + little(20, 2) + little(0, 8) + sizes + name + content;
  }
  return files + list + "PK\5\6" + little(0, 4) + little(members.size(), 2) +
         little(members.size(), 2) + little(list.size(), 4) + little(files.size(), 4) +
         little(0, 2);
}

/// One record of the schedule, its fields at their columns.
std::string record(const char* khz, const char* start, const char* stop, const char* days,
                   const char* broadcaster = "BBC") {
  std::string line(130, ' ');
  const auto put = [&line](std::size_t column, const char* text) {
    line.replace(column - 1, std::strlen(text), text);
  };
  put(1, khz);
  put(7, start);
  put(12, stop);
  put(17, "27,28");
  put(48, "WOF");
  put(52, "250");
  put(57, "106");
  put(73, days);
  put(81, "270322");
  put(88, "301022");
  put(95, "D");
  put(103, "Eng");
  put(114, "G");
  put(118, broadcaster);
  return line + "\r\n";
}

std::string season() {
  return zipOf(
      {{"A22allx2.txt",
        "; FREQ STRT STOP CIRAF ZONES LOC\r\n" + record(" 9410", "0600", "0800", "1234567") +
            record(" 9500", "2300", "2400", "1") + record("12345", "0900", "xx", "1")},
       {"site.txt", "WOF Woofferton  G 52N19 002W43\r\n"},
       {"broadcas.txt", "BBC British Broadcasting\r\n"},
       {"language.txt", "Eng English\r\n"}});
}

TEST(Hfcc, ASeasonStandsBesideTheOtherScheduleWithItsSource) {
  AmbrelPlay play;
  play.setTime(2022, 7, 13, 7, 0);
  const std::string words = play.import(play.write(play.userFolder() / "a22allx2.zip", season()));
  EXPECT_THAT(words, HasSubstr("season A22, 2 registrations"));
  EXPECT_THAT(words, HasSubstr("Line 4"));
  EXPECT_EQ(play.shown(9410000),
            "British Broadcasting - English 0600-0800 Woofferton, 250 kW, 106\u00B0 to zones 27,28 "
            "(HFCC)");
  EXPECT_FALSE(play.onAir(9500000));
  play.setTime(2022, 7, 17, 23, 30);
  EXPECT_TRUE(play.onAir(9500000)) << "1 is Sunday";
  play.setTime(2022, 12, 11, 23, 30);
  EXPECT_FALSE(play.onAir(9500000)) << "after the season";
  play.setTime(2022, 7, 13, 7, 0);
  play.importText("9410;0600-0800;;G;BBC;E;Eu;;1;;\r\n");
  EXPECT_THAT(play.shown(9410000), HasSubstr("BBC - "));
  EXPECT_THAT(play.shown(9410000), HasSubstr("HFCC: British Broadcasting, Woofferton, 250 kW"));
  // Kept for the next start, and it tells the way.
  play.start();
  play.setTime(2022, 7, 17, 23, 30);
  play.name(9500000);
  play.core->SetFrqPlace("52.0, 5.0");
  EXPECT_THAT(play.core->GetFrqKnownPath().value(), HasSubstr("km, 27"));
}

TEST(Hfcc, DamagedZipsAreRefusedWithAReason) {
  const std::string whole = season();
  for (std::size_t length = 0; length < whole.size(); length += 7)
    EXPECT_NE(unzip(whole.substr(0, length), 1 << 20).refusal, "") << length;
  EXPECT_THAT(unzip(whole, 100).refusal, HasSubstr("too large"));
  AmbrelPlay play;
  EXPECT_THAT(play.import(play.write(play.userFolder() / "x.zip", zipOf({{"a.txt", "b"}}))),
              HasSubstr("no HFCC schedule"));
}

}  // namespace
}  // namespace kelvane::ambrel
