#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/ambrel/geo.h"
#include "components/ambrel/stations/known_list.h"
#include "components/ambrel/stations/own_stations.h"
#include "tests/ambrel/ambrel_play.h"

namespace kelvane::ambrel {
namespace {

using testing::HasSubstr;

/// The operator's own list beside shipped stations and a schedule.
class OwnStations : public testing::Test {
 protected:
  OwnStations() {
    play.write(play.dataFolder() / "known-x.txt",
               "[Shipped]\n9420 ; Athens ; info ; extra ; AM ; 6000\n100 ; Low\n");
    play.write(play.ownFolder() / "my-stations.txt",
               "kHz ; Name ; Mode ; Width ; UTC ; Days ; Favourite ; Skip ; Antenna\n"
               "9420 ; My Greece ; USB ; 2700 ; ; ; yes ; ; Loop\n"
               "7000 ; Mornings ; ; ; 0600-0700 ; Mo-Fr ; yes\n"
               "6000 ; Passed over ; ; ; ; ; ; yes\n"
               "x ; no frequency\n5000 ; Last\n");
    play.start();
    // A Wednesday.
    play.setTime(2022, 7, 13, 6, 30);
  }

  AmbrelPlay play;
};

TEST_F(OwnStations, SpeakBeforeTheOthersInTheirTime) {
  EXPECT_EQ(play.shown(9420000), "My Greece -  +1 more: Athens");
  EXPECT_EQ(play.core->GetFrqKnownMode(), static_cast<Setting>(Mode::Usb));
  EXPECT_EQ(play.core->GetFrqKnownFilter(), 2700);
  play.importText("7000;0000-2400;;G;Schedule;E;Eu;;1;;\r\n");
  EXPECT_THAT(play.shown(7000000), HasSubstr("Mornings"));
  EXPECT_TRUE(play.onAir(7000000));
  play.setTime(2022, 7, 13, 8, 0);
  EXPECT_EQ(play.name(7000000), "Schedule");
  play.setTime(2022, 7, 16, 6, 30);
  EXPECT_EQ(play.name(7000000), "Schedule") << "not on a Saturday";
  EXPECT_THAT(play.core->notes(), HasSubstr("Line 5"));
}

TEST_F(OwnStations, AreWalkedAsASetWithoutWhatIsSkipped) {
  play.core->SetFrqFrequency(1);
  std::vector<Hz> walked;
  for (int i = 0; i < 5; ++i) {
    const FrqRecord at = play.core->NextFrqInSet(0, kNext);
    EXPECT_EQ(at.count, 3);
    walked.push_back(at.frequency);
  }
  EXPECT_EQ(walked, (std::vector<Hz>{5000000, 7000000, 9420000, 9420000, 9420000}));
  EXPECT_EQ(play.name(6000000), "Passed over");
  play.importText("6000;0000-2400;;G;Schedule;E;Eu;;1;;\r\n");
  play.core->SetFrqFrequency(5000000);
  EXPECT_EQ(play.core->NextFrqKnown(kNext).value().frequency, 7000000) << "whoever else is there";
  EXPECT_EQ(play.core->NextFrqKnown(kPrevious).value().frequency, 5000000);
}

TEST_F(OwnStations, AreNotTakenForAnOlderSetOfThatName) {
  play.write(play.ownFolder() / "known-own.txt", "[My stations]\n8000 ; Older\n");
  play.start();
  std::vector<std::string> sets;
  for (const StationList& list : play.core->data().table->lists())
    sets.insert(sets.end(), list.sets.begin(), list.sets.end());
  EXPECT_THAT(sets, testing::ElementsAre("My stations", "My stations (known-own.txt)", "Shipped"));
}

TEST_F(OwnStations, AreKnownAsSoonAsTheFileChanged) {
  play.write(play.ownFolder() / "my-stations.txt", "kHz ; Name\n9420 ; Another\n");
  play.core->ReadFrqOwn();
  play.deliver();
  EXPECT_EQ(play.name(9420000), "Another");
  EXPECT_EQ(play.name(100000), "Low") << "the other lists stay";
  EXPECT_EQ(play.name(7000000), "");
  // Another process wrote it.
  play.write(play.ownFolder() / "my-stations.txt", "kHz ; Name\n9420 ; A third one\n");
  play.core->lookAtClock();
  play.deliver();
  EXPECT_EQ(play.name(9420000), "A third one");
}

TEST_F(OwnStations, FavouritesOnTheAirNowAreAFilter) {
  const auto rows = [&](bool onAir) {
    KnownList list(*play.core, [] {});
    list.ask({.onAirOnly = onAir, .favouritesOnly = true});
    while (list.isSearching() && play.wakes.wait()) play.core->deliverEvents();
    return list.rows();
  };
  EXPECT_EQ(rows(true), 2u);
  play.setTime(2022, 7, 13, 8, 0);
  EXPECT_EQ(rows(true), 1u);
  EXPECT_EQ(rows(false), 2u);
}

TEST_F(OwnStations, NextHereTellsWhatComesWithinTheHour) {
  play.setTime(2022, 7, 13, 5, 30);
  EXPECT_EQ(play.name(7000000), "Mornings");
  EXPECT_EQ(play.core->GetFrqNextHere().value(), "") << "its own words say when it begins";
  play.importText("7000;0000-0500;;G;Nights;E;Eu;;1;;\r\n7000;0500-0545;;G;Dawn;E;Eu;;1;;\r\n");
  EXPECT_EQ(play.name(7000000), "Dawn");
  EXPECT_EQ(play.core->GetFrqNextHere().value(), "next 0600: Mornings");
  play.setTime(2022, 7, 13, 4, 30);
  EXPECT_EQ(play.name(7000000), "Nights");
  EXPECT_EQ(play.core->GetFrqNextHere().value(), "next 0500: Dawn, E");
  play.setTime(2022, 7, 13, 3, 30);
  play.name(7000000);
  EXPECT_EQ(play.core->GetFrqNextHere().value(), "");
  play.setTime(2022, 7, 16, 5, 30);
  play.name(7000000);
  EXPECT_EQ(play.core->GetFrqNextHere().value(), "") << "Saturday";
}

TEST_F(OwnStations, TheWayToTheTransmitterIsToldInWords) {
  play.write(play.ownFolder() / "sites-eibi.txt",
             "   IV)  Transmitter-site codes.\n   F: not the table 10N00-10E00\n"
             "   IV) Transmitter site codes.\n   G: Daventry 52N15-01W08 except:\n"
             "        w-Woofferton 52N19-02W43\n        W-Wrong 10N00-10E00\n"
             "        unknown, perhaps 10N00-10E00\n        Wx-Wrong too 10N00-10E00\n"
             "   USA: o-Okeechobee FL 27N28-80W56 / Miami 25N49-80W18\n"
             "   SDN: El-Obeid 13N11-30E13\n   B:   c-One 20S31-54W35\n"
             "        Cg-Two 10N00-10E00\n        perhaps 10N00-10E00\n");
  play.start();
  play.setTime(2022, 7, 13, 8, 0);
  play.importText(
      "9410;0000-2400;;G;BBC;E;Eu;w;1;;\r\n9500;0000-2400;;G;BBC;E;Eu;/USA-o;1;;\r\n"
      "9600;0000-2400;;F;RFI;F;Eu;;1;;\r\n9700;0000-2400;;SDN;Sudan;A;Af;;1;;\r\n"
      "9800;0000-2400;;B;Brasil;P;SAm;;1;;\r\n");
  EXPECT_NE(play.core->SetFrqPlace("nowhere"), Outcome::Done);
  EXPECT_EQ(play.core->SetFrqPlace("JO21SX"), Outcome::Done);
  play.name(9410000);
  EXPECT_EQ(play.core->GetFrqKnownPath().value(), "564 km, 277\u00B0 W; day there, day here");
  play.name(9500000);
  EXPECT_THAT(play.core->GetFrqKnownPath().value(), HasSubstr("night there, day here"));
  play.name(9800000);
  EXPECT_EQ(play.core->GetFrqKnownPath().value(), "") << "other sites are not its usual one";
  play.name(9700000);
  EXPECT_THAT(play.core->GetFrqKnownPath().value(), HasSubstr("day there"));
  play.write(play.ownFolder() / "my-stations.txt", "kHz ; Name\n9410 ; Mine\n");
  play.core->ReadFrqOwn();
  play.deliver();
  EXPECT_EQ(play.name(9410000), "Mine");
  EXPECT_THAT(play.core->GetFrqKnownPath().value(), HasSubstr("day here (EiBi)"));
  play.name(9600000);
  EXPECT_EQ(play.core->GetFrqKnownPath().value(), "") << "nobody knows the site";
}

TEST(Geo, PlacesAreReadAndTheSunStandsWhereItDoes) {
  for (const char* text : {"52.5, 13.4", "52.5 13.4", "52N30-013E24", "JO62QM"}) {
    const auto place = readPlace(text);
    ASSERT_TRUE(place) << text;
    EXPECT_NEAR(place->latitude, 52.5, 0.05);
    EXPECT_NEAR(place->longitude, 13.4, 0.05);
  }
  for (const char* text : {"", "ZZ99", "91, 0", "52.5", "52N70-013E24", "JO6"})
    EXPECT_FALSE(readPlace(text)) << text;
  // The longest and the shortest day at noon in Greenwich; midnight at the pole in June.
  const auto at = [](int month, int day, int hour) {
    return UtcMinute{dayOf(Date{2022, month, day})} * kMinutesOfDay + hour * 60;
  };
  EXPECT_NEAR(sunElevation({51.48, 0}, at(6, 21, 12)), 61.95, 0.3);
  EXPECT_NEAR(sunElevation({51.48, 0}, at(12, 21, 12)), 15.08, 0.3);
  EXPECT_NEAR(sunElevation({90, 0}, at(6, 21, 0)), 23.43, 0.1);
  EXPECT_NEAR(distanceKm({0, 0}, {0, 180}), 20015, 5);
}

}  // namespace
}  // namespace kelvane::ambrel
