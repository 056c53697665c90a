#include "components/ambrel/stations/known_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/modes.h"
#include "tests/ambrel/ambrel_play.h"

namespace kelvane::ambrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class List : public testing::Test {
 protected:
  List() {
    play.write(play.dataFolder() / "known-a.txt",
               "[Time signals]\n5000 ; WWV ; seconds ; Fort Collins ; AM ; 6000\n");
    play.write(play.dataFolder() / "codes.txt", "language ; E ; English\ncountry ; G ; Britain\n");
    play.start();
    play.importText(
        "6070;0600-0700;;B;R\xE1"
        "dio Clube;P;SAm;be;1;;\r\n"
        "5010;1200-1300;;G;BBC;E;Eu;w;1;;\r\n"
        "9410;1230-1330;;G;BBC;E;Af;w;1;;\r\n"
        "518;0000-2400;;G;Alpha;E;Eu;w;1;;\r\n");
    play.setTime(2022, 7, 13, 12, 0);
    list = std::make_unique<KnownList>(*play.core, [this] { ++changes; });
    settle();
  }

  /// Lets the search end that runs beside.
  void settle() {
    while (list->isSearching()) play.deliver();
  }
  std::vector<std::string> ask(ListQuery query) {
    list->ask(std::move(query));
    settle();
    std::vector<std::string> rows;
    for (std::size_t row = 0; row < list->rows(); ++row)
      rows.push_back(list->cell(row, ListColumn::Frequency) + " " +
                     list->cell(row, ListColumn::Name));
    return rows;
  }

  AmbrelPlay play;
  int changes = 0;
  std::unique_ptr<KnownList> list;
};

TEST_F(List, ShowsAllInOrderOfFrequency) {
  EXPECT_EQ(changes, 1);
  EXPECT_THAT(ask({}),
              ElementsAre("518 Alpha", "5000 WWV", "5010 BBC", "6070 Rádio Clube", "9410 BBC"));
  EXPECT_EQ(list->cell(2, ListColumn::Info), "English");
  EXPECT_EQ(list->cell(2, ListColumn::Times), "1200-1300");
  EXPECT_EQ(list->cell(1, ListColumn::Info), "seconds");
  EXPECT_EQ(list->cell(1, ListColumn::Set), "Time signals");
  EXPECT_EQ(list->cell(1, ListColumn::Mode), "AM");
  EXPECT_EQ(list->cell(99, ListColumn::Name), "");
  EXPECT_EQ(list->rowNear(5'004'000), 1u);
  EXPECT_EQ(list->rowNear(5'006'000), 2u);
}

TEST_F(List, FindsAllTypedWordsInAnyColumn) {
  EXPECT_THAT(ask({.text = "bbc"}), ElementsAre("5010 BBC", "9410 BBC"));
  EXPECT_THAT(ask({.text = " BRITAIN 1230 "}), ElementsAre("9410 BBC"));
  EXPECT_THAT(ask({.text = "radio"}), ElementsAre("6070 Rádio Clube"));
  EXPECT_THAT(ask({.text = "RÁDIO"}), ElementsAre("6070 Rádio Clube"));
  EXPECT_THAT(ask({.text = "time sig"}), ElementsAre("5000 WWV"));
  EXPECT_THAT(ask({.text = "bbc radio"}), ElementsAre());
  EXPECT_EQ(list->rowNear(5'000'000), 0u);
}

TEST_F(List, ShowsWhatIsOnTheAirNow) {
  EXPECT_THAT(ask({.onAirOnly = true}), ElementsAre("518 Alpha", "5000 WWV", "5010 BBC"))
      << "a time signal has no times";
  play.setTime(2022, 7, 13, 13, 0);
  EXPECT_THAT(ask({.text = "bbc", .onAirOnly = true}), ElementsAre("9410 BBC"));
}

TEST_F(List, SortsByAnyColumnBothWays) {
  EXPECT_THAT(ask({.sort = ListColumn::Name}),
              ElementsAre("518 Alpha", "5010 BBC", "9410 BBC", "6070 Rádio Clube", "5000 WWV"));
  EXPECT_THAT(ask({.descending = true}),
              ElementsAre("9410 BBC", "6070 Rádio Clube", "5010 BBC", "5000 WWV", "518 Alpha"));
  EXPECT_THAT(ask({.sort = ListColumn::Times, .descending = true}),
              ElementsAre("9410 BBC", "5010 BBC", "6070 Rádio Clube", "518 Alpha", "5000 WWV"));
}

TEST_F(List, TheNewestQueryWins) {
  for (const char* typed : {"b", "bb", "bbc", "bbc 9"}) list->ask({.text = typed});
  settle();
  ASSERT_EQ(list->rows(), 1u);
  EXPECT_EQ(list->cell(0, ListColumn::Frequency), "9410");
}

TEST_F(List, KeepsItsRowsWhenTheDataIsReplacedUntilItIsAskedAgain) {
  play.importText("7000;0000-2400;;G;New;E;Eu;w;1;;\r\n");
  EXPECT_EQ(list->cell(4, ListColumn::Name), "BBC");
  EXPECT_THAT(ask({}), ElementsAre("5000 WWV", "7000 New"));
}

TEST_F(List, FollowsTheDataAlwaysAndTheMinuteWhereItMatters) {
  list->follow();
  EXPECT_FALSE(list->isSearching());
  play.setTime(2022, 7, 13, 12, 30);
  list->follow();
  EXPECT_FALSE(list->isSearching()) << "the same rows at any time";
  ask({.text = "bbc", .onAirOnly = true});
  play.setTime(2022, 7, 13, 13, 0);
  list->follow();
  settle();
  ASSERT_EQ(list->rows(), 1u);
  EXPECT_EQ(list->cell(0, ListColumn::Frequency), "9410");
  ask({});
  play.importText("7000;0000-2400;;G;New;E;Eu;w;1;;\r\n");
  list->follow();
  settle();
  EXPECT_EQ(list->rows(), 2u);
}

TEST_F(List, FindsAStationAgainAmongOtherRows) {
  ask({});
  const KnownList::Station clube = list->station(3);
  ask({.descending = true});
  EXPECT_EQ(list->rowOf(clube), 1u);
  ask({.text = "bbc"});
  EXPECT_EQ(list->rowOf(clube), 0u) << "the nearest one instead";
  play.importText("7000;0000-2400;;G;New;E;Eu;w;1;;\r\n");
  ask({});
  EXPECT_EQ(list->cell(list->rowOf(clube), ListColumn::Name), "New")
      << "the nearest one still there";
  EXPECT_EQ(list->rowOf(list->station(99)), list->rows());
}

TEST_F(List, AChosenRowIsToldToThePanel) {
  ask({.text = "clube"});
  list->choose(0);
  list->choose(1);
  EXPECT_TRUE(play.events.selected.empty()) << "never from inside a call";
  play.deliver();
  ASSERT_EQ(play.events.selected.size(), 1u);
  EXPECT_EQ(play.events.selected[0].frequency, 6'070'000);
  EXPECT_EQ(play.events.selected[0].mode, static_cast<Setting>(Mode::Am));
  EXPECT_EQ(play.events.selected[0].filter, 6000);
}

TEST_F(List, TellsCountsAndAge) {
  ask({.text = "bbc"});
  EXPECT_EQ(list->status(),
            "2 of 5 stations; schedule A22, summer 2022: in force until 30 Oct 2022");
  play.setTime(2022, 11, 5, 0, 0);
  ask({});
  EXPECT_THAT(list->status(), HasSubstr("out of date since 30 Oct 2022"));
}

TEST_F(List, MayEndWhileASearchRuns) {
  list->ask({.text = "bbc"});
  list.reset();
  while (play.wakes.any()) play.deliver();
  EXPECT_EQ(changes, 1);
}

TEST(Listeners, MayGoWhileTheyAreTold) {
  AmbrelPlay play;
  HeardEvents second;
  struct Remover : FrequencyListener {
    void FrqSelected(Hz, Setting, Setting) override { core->removeListener(*other); }
    void FrqDataUpdated() override {}
    AmbrelCore* core = nullptr;
    FrequencyListener* other = nullptr;
  } remover;
  remover.core = play.core.get();
  remover.other = &second;
  play.core->addListener(remover);
  play.core->addListener(second);
  play.core->choose(5'000'000, 0, 6000);
  play.deliver();
  EXPECT_EQ(play.events.selected.size(), 1u);
  EXPECT_TRUE(second.selected.empty());
  play.core->removeListener(remover);
}

}  // namespace
}  // namespace kelvane::ambrel
