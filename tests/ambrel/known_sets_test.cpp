#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/modes.h"
#include "tests/ambrel/ambrel_play.h"

namespace kelvane::ambrel {
namespace {

using testing::AllOf;
using testing::HasSubstr;

Setting number(Mode mode) { return static_cast<Setting>(mode); }

TEST(ShippedSets, NameWhatIsThereWithModeAndFilter) {
  struct Fact {
    Hz frequency;
    const char* words;
    Mode mode;
    Setting filter;
  };
  const Fact facts[] = {
      {5'000'000, "WWV - seconds, voice, time code Fort Collins, USA; +3 more: WWVH, BPM, HLA",
       Mode::Am, 6000},
      {9'996'000, "RWM", Mode::Cw, 500},
      {77'500, "DCF77", Mode::Cw, 500},
      {2'182'000, "Distress and calling", Mode::Usb, 2400},
      {518'000, "NAVTEX international", Mode::Rtty, 500},
      {5'505'000, "Shannon Volmet", Mode::Usb, 2400},
      {3'853'100, "assigned 3855 kHz", Mode::Fax, 2400},
      {10'100'800, "DDK9", Mode::Rtty, 1000},
      {14'074'000, "FT8", Mode::Usb, 2400},
      {14'100'000, "International beacon project", Mode::Cw, 500},
      {7'038'700, "Naval beacon D", Mode::Cw, 250},
      {198'000, "BBC Radio 4", Mode::Am, 6000},
  };
  AmbrelPlay play(true);
  EXPECT_EQ(play.core->notes(), "");
  for (const Fact& fact : facts) {
    EXPECT_THAT(play.shown(fact.frequency + 40, 250), HasSubstr(fact.words));
    EXPECT_EQ(play.core->GetRxKnownFrequency(), fact.frequency);
    EXPECT_EQ(play.core->GetFrqKnownMode(), number(fact.mode)) << fact.words;
    EXPECT_EQ(play.core->GetFrqKnownFilter(), fact.filter) << fact.words;
  }
  EXPECT_EQ(play.name(7'200'000, 250), "") << "without a schedule the band plan speaks there";
  std::vector<std::string> sets;
  for (const auto& set : play.core->data().table->sets()) sets.push_back(set.name);
  EXPECT_THAT(
      sets, testing::IsSupersetOf({"Time signals", "Volmet", "Distress and calling", "Weather fax",
                                   "NAVTEX", "Amateur beacons", "Amateur digital", "Broadcast"}));
}

TEST(UsersSets, StandBesideTheShippedOnesAndSpeakFirst) {
  AmbrelPlay play;
  play.write(play.dataFolder() / "known-shipped.txt",
             "[Shipped]\n5000 ; Shipped\n6000 ; Only here\n");
  play.write(play.userFolder() / "known-zz.txt",
             "5000 ; My station ; my info ; my extra ; lsb ; 1800\r\n");
  play.start();
  EXPECT_EQ(play.shown(5'000'000), "My station - my info my extra; +1 more: Shipped");
  EXPECT_EQ(play.core->GetFrqKnownMode(), number(Mode::Lsb));
  EXPECT_EQ(play.core->GetFrqKnownFilter(), 1800);
  EXPECT_EQ(play.core->data().table->sets()[0].name, "zz") << "without a heading: as the file";
  EXPECT_EQ(play.name(6'000'000), "Only here");
  // A file of the shipped one's name takes its place, once it can be read.
  play.write(play.ownFolder() / "known-shipped.txt", "# nothing\n");
  play.start();
  EXPECT_EQ(play.name(6'000'000), "Only here");
  EXPECT_THAT(play.core->notes(), HasSubstr("no known frequency"));
  play.write(play.dataFolder() / "known-shipped.user.txt", "6000 ; In its place\n");
  play.start();
  EXPECT_EQ(play.name(6'000'000), "In its place");
  play.write(play.userFolder() / "known-zz.txt", "8000 ; Written while it ran\n");
  EXPECT_TRUE(play.core->reload());
  play.deliver();
  EXPECT_EQ(play.name(8'000'000), "Written while it ran");
  EXPECT_EQ(play.name(5'000'000), "");
}

TEST(UsersSets, TellBadLinesAndUseTheOthers) {
  const std::pair<const char*, const char*> bad[] = {
      {"5000", "fields"},
      {"5000 ; a ; b ; c ; AM ; 6000 ; more", "fields"},
      {"-5000 ; a", "frequency"},
      {"2147483.648 ; a", "frequency"},
      {"5,5 ; a", "frequency"},
      {"x ; a", "frequency"},
      {"5000 ; ", "no name"},
      {"5000 ; a ; ; ; XYZ", "mode"},
      {"5000 ; a ; ; ; AM ; wide", "filter"},
      {"5000 ; a ; ; ; AM ; 0", "filter"},
  };
  AmbrelPlay play;
  for (const auto& [line, reason] : bad) {
    play.write(play.ownFolder() / "known-a.txt", std::string("# head\n\n[Set]\n6000 ; Good\n") +
                                                     line + "\n7000 ; Good too ; ; ; ; ;\n");
    play.start();
    EXPECT_THAT(play.core->notes(),
                AllOf(HasSubstr("1 line could not be read. Line 5:"), HasSubstr(reason)))
        << line;
    EXPECT_EQ(play.name(6'000'000) + play.name(7'000'000), "GoodGood too");
  }
}

TEST(UsersSets, AreReadAsUtf8OrElseAsLatin1) {
  AmbrelPlay play;
  play.write(play.ownFolder() / "known-a.txt",
             "\xEF\xBB\xBF"
             "5000 ; R\xC3\xA1"
             "dio\n");
  play.write(play.ownFolder() / "known-b.txt",
             "6000 ; R\xE1"
             "dio\n");
  play.write(play.ownFolder() / "known-c.txt", std::string("\xFF\xFE"
                                                           "7\0",
                                                           4));
  play.start();
  EXPECT_EQ(play.name(5'000'000), "Rádio");
  EXPECT_EQ(play.name(6'000'000), "Rádio");
  EXPECT_THAT(play.core->notes(), HasSubstr("known-c.txt is not used: the file is UTF-16"));
}

TEST(Recommendations, ComeFromTheListThenASetAtTheFrequencyThenTheBand) {
  AmbrelPlay play(true);
  play.importText(
      "9996;0000-2400;;RUS;RWM Moscow;-TS;RUS;t;1;;\r\n"
      "3330;0000-2400;;CAN;CHU;-TS;;;1;;\r\n"
      "7425;0000-2400;;G;BBC;E;Eu;w;1;;\r\n"
      "6300;0000-2400;;G;Coast Radio;E;Eu;;1;;\r\n"
      "4247;0000-2400;;USA;KPH;-CW;;pr;1;;\r\n"
      "8849;0000-2400;LSB;CHN;Beijing Volmet;E;FE;;1;;\r\n"
      "6676;0000-2400;;IND;Mumbai Volmet;E;FE;;1;;\r\n"
      "4235;0000-2400;;USA;NMF Fax Boston;;ENA;bo;1;;\r\n"
      "3900;0000-2400;;ISL;Reykjavik HFDL;-HF;;;1;;\r\n"
      "7073;0000-2400;;X;Odd;-TS;;;1;;\r\n");
  const std::tuple<Hz, Mode, Setting> expected[] = {
      {9'996'000, Mode::Cw, 500},   {3'330'000, Mode::Usb, 2400}, {7'425'000, Mode::Am, 6000},
      {6'300'000, Mode::Rtty, 500}, {4'247'000, Mode::Cw, 500},   {8'849'000, Mode::Lsb, 2400},
      {6'676'000, Mode::Usb, 2400}, {4'235'000, Mode::Fax, 2400}, {3'900'000, Mode::Usb, 2800},
      {7'073'000, Mode::Lsb, 2400},
  };
  for (const auto& [frequency, mode, filter] : expected) {
    ASSERT_TRUE(play.core->FindRxKnownFrequency(frequency, 0));
    EXPECT_EQ(play.core->GetFrqKnownMode(), number(mode)) << frequency;
    EXPECT_EQ(play.core->GetFrqKnownFilter(), filter) << frequency;
  }
}

TEST(Words, CarryLanguageTimesSiteAndTarget) {
  AmbrelPlay play(true);
  play.setTime(2022, 7, 13, 18, 30);
  play.importText(
      "9410;1800-1900;Mo-Fr;G;BBC;E,F;ME;/CYP;1;;\r\n"
      "9420;1800-2400;;G;BBC;A;WAf;w;1;;\r\n"
      "9430;1800-1900;;CHN;CNR 1;M;CHN;b;1;;\r\n"
      "9440;1800-1900;;KRE;Nodong;QX;Xyz;/KOR-zz;1;;\r\n"
      "9450;1900-2000;;;;;;;1;;\r\n");
  EXPECT_EQ(play.shown(9'410'000),
            "BBC - English, French 1800-1900 Mo-Fr Cyprus to the Middle East");
  EXPECT_EQ(play.shown(9'420'000),
            "BBC - Arabic 1800-2400 Woofferton, United Kingdom to West Africa");
  EXPECT_EQ(play.shown(9'430'000), "CNR 1 - Mandarin 1800-1900 Beijing, China");
  EXPECT_EQ(play.shown(9'440'000), "Nodong - QX 1800-1900 site zz, South Korea to Xyz");
  EXPECT_EQ(play.shown(9'450'000), " - not on the air now, 1900-2000 ");
  EXPECT_EQ(play.core->GetFrqModeName(5).value(), "RTTY");
  EXPECT_EQ(play.core->GetFrqModeName(-1).value(), "");
}

TEST(Words, CodesOfTheUsersOwnWin) {
  AmbrelPlay play(true);
  play.write(play.ownFolder() / "codes.txt", "language ; E ; Englisch\nbroken\n");
  play.start();
  play.importText("9410;0000-2400;;G;BBC;E;Eu;;1;;\r\n");
  EXPECT_THAT(play.shown(9'410'000), HasSubstr("Englisch"));
  EXPECT_THAT(play.core->notes(), HasSubstr("Line 2"));
}

}  // namespace
}  // namespace kelvane::ambrel
