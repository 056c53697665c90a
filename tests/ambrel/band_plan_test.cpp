#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "contract/modes.h"
#include "tests/ambrel/ambrel_play.h"

namespace kelvane::ambrel {
namespace {

using testing::HasSubstr;

struct Entry {
  Hz start;
  std::string name;
  Setting mode;

  bool operator==(const Entry&) const = default;
};

/// Puts the database on a frequency, as the panel does, and reads the entry there.
Entry entryAt(AmbrelCore& core, Hz frequency) {
  core.SetFrqFrequency(frequency);
  return {core.GetFrqBandStart(), core.GetFrqBandName(), core.GetFrqBandMode()};
}

/// Steps through the plan as the panel's band step does, until a step leads nowhere.
std::vector<Entry> walk(AmbrelCore& core, Hz from, Long direction) {
  std::vector<Entry> entries{entryAt(core, from)};
  for (;;) {
    const Entry next = entryAt(core, core.NextFrqBand(direction));
    if (next == entries.back()) return entries;
    entries.push_back(next);
    // The panel tunes to the entry's start, and the receiver's event brings the database there.
    core.SetFrqFrequency(next.start);
  }
}

TEST(BandPlan, HasEveryFrequencyInEveryRegionAndWalksAlikeBothWays) {
  AmbrelPlay play(true);
  EXPECT_EQ(play.core->notes(), "");
  for (Long region = 0; region < 3; ++region) {
    ASSERT_EQ(play.core->GetFrqRegion(), region);
    const auto up = walk(*play.core, 0, kNext);
    EXPECT_GT(up.size(), 150u);
    EXPECT_LE(up[1].start, 9'000);
    Hz end = 0;
    for (const Entry& entry : up) {
      // The Hz before an entry's start is the last one of the entry before it.
      if (entry.start > 0) {
        EXPECT_EQ(entryAt(*play.core, entry.start - 1).start, end);
      }
      end = entry.start;
      EXPECT_FALSE(entry.name.empty());
      EXPECT_FALSE(modeName(entry.mode).empty());
      play.core->SetFrqFrequency(entry.start);
      EXPECT_GT(play.core->GetFrqBandStep(), 0);
      EXPECT_GT(play.core->GetFrqBandFilter(), 0);
    }
    auto down = walk(*play.core, 2'147'483'647, kPrevious);
    std::reverse(down.begin(), down.end());
    EXPECT_EQ(up, down);
    play.core->NextFrqRegion();
  }
}

TEST(BandPlan, KnowsTheRegionsBands) {
  struct Fact {
    Hz frequency;
    const char* name[3];
    Mode mode[3];
  };
  constexpr auto am = Mode::Am, usb = Mode::Usb, lsb = Mode::Lsb, cw = Mode::Cw;
  const Fact facts[] = {
      {198'000, {"long wave", "beacons", "beacons"}, {am, cw, cw}},
      {1'000'000, {"medium wave", "medium wave", "medium wave"}, {am, am, am}},
      {1'650'000, {"coast", "medium wave", "Fixed"}, {usb, am, usb}},
      {1'805'000, {"Radiolocation", "160 m digital", "160 m CW"}, {cw, usb, cw}},
      {2'182'000, {"2182", "2182", "2182"}, {usb, usb, usb}},
      {3'023'000, {"Aeronautical R", "Aeronautical R", "Aeronautical R"}, {usb, usb, usb}},
      {3'100'000, {"Aeronautical OR", "Aeronautical OR", "Aeronautical OR"}, {usb, usb, usb}},
      {3'850'000, {"aeronautical OR", "75 m LSB", "80 m LSB"}, {usb, lsb, lsb}},
      {3'975'000, {"Broadcast 75 m", "75 m LSB", "Broadcast 75 m"}, {am, lsb, am}},
      {5'000'000, {"time 5 MHz", "time 5 MHz", "time 5 MHz"}, {am, am, am}},
      {5'460'000, {"aeronautical OR", "Aeronautical R", "aeronautical OR"}, {usb, usb, usb}},
      {7'020'000, {"40 m CW", "40 m CW", "40 m CW"}, {cw, cw, cw}},
      {7'199'999, {"40 m LSB", "40 m LSB", "40 m LSB"}, {lsb, lsb, lsb}},
      {7'200'000, {"Broadcast 41 m", "40 m LSB", "Broadcast 41 m"}, {am, lsb, am}},
      {7'425'000, {"Broadcast 41 m", "Fixed", "Broadcast 41 m"}, {am, usb, am}},
      {8'900'000, {"Aeronautical R", "Aeronautical R", "Aeronautical R"}, {usb, usb, usb}},
      {8'992'000, {"Aeronautical OR", "Aeronautical OR", "Aeronautical OR"}, {usb, usb, usb}},
      {8'294'000, {"8 MHz simplex", "8 MHz simplex", "8 MHz simplex"}, {usb, usb, usb}},
      {14'100'000, {"20 m beacons", "20 m beacons", "20 m beacons"}, {cw, cw, cw}},
      {14'200'000, {"20 m USB", "20 m USB", "20 m USB"}, {usb, usb, usb}},
      {27'185'000, {"Citizens", "Citizens", "Citizens"}, {Mode::Fm, am, am}},
      {145'000'000, {"VHF", "VHF", "VHF"}, {Mode::Fm, Mode::Fm, Mode::Fm}},
  };
  AmbrelPlay play(true);
  for (std::size_t region = 0; region < 3; ++region) {
    for (const Fact& fact : facts) {
      const Entry entry = entryAt(*play.core, fact.frequency);
      EXPECT_THAT(entry.name, HasSubstr(fact.name[region])) << fact.frequency;
      EXPECT_EQ(entry.mode, static_cast<Setting>(fact.mode[region])) << fact.frequency;
    }
    play.core->NextFrqRegion();
  }
}

TEST(BandPlan, TellsWhetherTheEntryChanged) {
  AmbrelPlay play(true);
  EXPECT_TRUE(play.core->SetFrqFrequency(14'200'000));
  EXPECT_FALSE(play.core->SetFrqFrequency(14'201'000));
  EXPECT_TRUE(play.core->SetFrqFrequency(14'000'000));
  EXPECT_FALSE(play.core->SetFrqFrequency(14'000'000));
  EXPECT_EQ(play.core->NextFrqRegion(), 1);
  EXPECT_TRUE(play.core->SetFrqFrequency(14'000'000)) << "another region's entry is another one";
  EXPECT_FALSE(play.core->SetFrqFrequency(-1).ok());
  EXPECT_EQ(play.core->GetFrqBandStart(), 14'000'000) << "a frequency that is none moves nothing";
}

TEST(BandPlan, RegionsGoRoundAndAreKept) {
  AmbrelPlay play;
  EXPECT_EQ(play.core->GetFrqRegion(), 0);
  for (const Long region : {1, 2, 0, 1}) EXPECT_EQ(play.core->NextFrqRegion(), region);
  play.start();
  EXPECT_EQ(play.core->GetFrqRegion(), 1);
  play.write(play.ownFolder() / "region.txt", "7\r\n");
  play.start();
  EXPECT_EQ(play.core->GetFrqRegion(), 0);
}

TEST(BandPlan, OperationsFailBeforeThePlanIsThere) {
  AmbrelPlay play;
  play.core->OpenFrqConfig("Other");
  EXPECT_FALSE(play.core->SetFrqFrequency(5'000'000).ok());
  EXPECT_FALSE(play.core->GetFrqBandName().ok());
  EXPECT_EQ(play.core->InitFrqPlan(1), Outcome::Failed);
  EXPECT_EQ(play.core->InitFrqPlan(0), Outcome::Done);
  EXPECT_TRUE(play.core->GetFrqBandName().ok());
}

class UsersPlan : public testing::Test {
 protected:
  /// A plan of three entries; the parameters spoil it.
  static std::string plan(const std::string& name,
                          const std::string& middle = "7000000 ; 8000000") {
    return "# mine\r\n" + name + " ; 9000 ; 7000000 ; 1000 ; am ; 6000\r\n\r\n" + "Middle ; " +
           middle + " ; 100 ; LSB ; 2400\r\n" +
           "Upper ; 8000000 ; 30000000 ; 1000 ; USB ; 2400\r\n";
  }
  std::string nameAt(Hz frequency) { return entryAt(*play.core, frequency).name; }

  AmbrelPlay play;
};

TEST_F(UsersPlan, TheNearestFileWins) {
  play.write(play.dataFolder() / "bandplan-r1.txt", plan("shipped"));
  play.start();
  EXPECT_EQ(nameAt(6'000'000), "shipped");
  play.write(play.dataFolder() / "bandplan-r1.user.txt", plan("beside"));
  play.start();
  EXPECT_EQ(nameAt(6'000'000), "beside");
  play.write(play.userFolder() / "bandplan-r1.txt", plan("user's"));
  play.start();
  EXPECT_EQ(nameAt(6'000'000), "user's");
  play.write(play.ownFolder() / "bandplan-r1.txt", plan("instance's"));
  play.start();
  EXPECT_EQ(nameAt(6'000'000), "instance's");
  EXPECT_EQ(nameAt(7'000'000), "Middle");
  EXPECT_EQ(nameAt(6'999'999), "instance's");
}

TEST_F(UsersPlan, WhatIsWrongIsToldAndTheNextFileServes) {
  play.write(play.dataFolder() / "bandplan-r1.txt", plan("shipped"));
  const std::pair<std::string, std::string> bad[] = {
      {plan("x", "7000001 ; 8000000"), "Line 4: a gap: \"x\" ends at 7000000 Hz"},
      {plan("x", "6999999 ; 8000000"), "Line 4: an overlap"},
      {plan("x", "7000000 ; 8000001"), "Line 5: an overlap"},
      {plan("x", "8000000 ; 7000000"), "does not follow"},
      {plan("x", "7000000 ; 99999999999"), "\"99999999999\""},
      {plan("x", "-7000000 ; 8000000"), "\"-7000000\""},
      {plan("x", "7000000"), "has 5 fields"},
      {plan(""), "Line 2: has no name"},
      {plan("x") + "Top ; 30000000 ; 31000000 ; 1000 ; XYZ ; 6000\r\n", "no mode \"XYZ\""},
      {plan("x") + "Top ; 30000000 ; 31000000 ; 0 ; FM ; 6000\r\n", "step \"0\""},
      {"Short ; 9000 ; 20000000 ; 1000 ; AM ; 6000\n", "ends below 30 MHz"},
      {"High ; 10000 ; 30000000 ; 1000 ; AM ; 6000\n", "starts above 9 kHz"},
      {"", "empty"},
      {"# only words\n", "no entries"},
      {std::string("\xFF\xFE#\0x\0", 6), "UTF-16"},
      {std::string("MZ\0\0", 4), "no text"},
      {std::string(3'000'000, 'x'), "has 1 fields"},
      {std::string(10'000'000, 'x'), "too large"},
  };
  for (const auto& [text, words] : bad) {
    play.write(play.ownFolder() / "bandplan-r1.txt", text);
    play.start();
    EXPECT_THAT(play.core->notes(), HasSubstr(words));
    EXPECT_EQ(nameAt(6'000'000), "shipped") << words;
  }
}

TEST_F(UsersPlan, WithoutAnyFileACoarsePlanServes) {
  EXPECT_THAT(play.core->notes(), HasSubstr("coarse band plan"));
  EXPECT_EQ(nameAt(7'050'000), "Amateur 40 m");
  EXPECT_EQ(nameAt(5'000), "Below all allocations");
}

}  // namespace
}  // namespace kelvane::ambrel
