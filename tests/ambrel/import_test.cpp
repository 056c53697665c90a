#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/text.h"
#include "components/ambrel/own_files.h"
#include "components/ambrel/schedule/eibi_schedule.h"
#include "components/ambrel/source_view.h"
#include "tests/ambrel/ambrel_play.h"
#include "tests/fakes/failing_steps.h"

namespace kelvane::ambrel {
namespace {

namespace fs = std::filesystem;
using fakes::FailingSteps;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kGood = "6070;0000-2400;;G;Good station;E;Eu;w;1;;\r\n";

/// What a line of a schedule is called when it cannot be read.
TEST(Import, TellsMalformedLinesByNumberAndKeepsTheOthers) {
  const std::pair<const char*, const char*> bad[] = {
      {"-6070;0000-2400;;G;X;E;Eu;w;1;;", "frequency"},
      {"99999999;0000-2400;;G;X;E;Eu;w;1;;", "frequency"},
      {"2147483.648;0000-2400;;G;X;E;Eu;w;1;;", "frequency"},
      {"99999999999999999999;0000-2400;;G;X;E;Eu;w;1;;", "frequency"},
      {"0;0000-2400;;G;X;E;Eu;w;1;;", "frequency"},
      {"6O70;0000-2400;;G;X;E;Eu;w;1;;", "frequency"},
      {"6.0.7;0000-2400;;G;X;E;Eu;w;1;;", "frequency"},
      {".;0000-2400;;G;X;E;Eu;w;1;;", "frequency"},
      {";0000-2400;;G;X;E;Eu;w;1;;", "frequency"},
      {"6070;9999-0000;;G;X;E;Eu;w;1;;", "times"},
      {"6070;0000-2401;;G;X;E;Eu;w;1;;", "times"},
      {"6070;0060-0100;;G;X;E;Eu;w;1;;", "times"},
      {"6070;000-2400;;G;X;E;Eu;w;1;;", "times"},
      {"6070;;;G;X;E;Eu;w;1;;", "times"},
      {"6070;0000-010:;;G;X;E;Eu;w;1;;", "times"},
      {"6070;/000-0100;;G;X;E;Eu;w;1;;", "times"},
      {"6070;0\xB1"
       "00-0100;;G;X;E;Eu;w;1;;",
       "times"},
      {"6070;0000-2400;;G;X;E;Eu;w;9;;", "persistence"},
      {"6070;0000-2400;;G;X;E;Eu;w;17;;", "persistence"},
      {"6070;0000-2400;;G;X;E;Eu;w;1;9999;", "dates"},
      {"6070;0000-2400;;G;X;E;Eu;w;1;;0013", "dates"},
      {"6070;0000-2400;;G;X;E;Eu;w;1;1;", "dates"},
      {"6070;0000-2400;;G;X;E;Eu;w;1;", "fields"},
      {"6070;0000-2400;;G;X;E;Eu;w;1;;;;", "fields"},
      {"nothing", "fields"},
  };
  AmbrelPlay play;
  for (const auto& [line, reason] : bad) {
    const std::string text = std::string(kGood) + kGood + line + "\r\n";
    EXPECT_THAT(play.importText(text),
                AllOf(HasSubstr("2 broadcasts"), HasSubstr("1 line could not be read. Line 4:"),
                      HasSubstr(reason)))
        << line;
  }
}

TEST(Import, TakesWhatRealListsHave) {
  AmbrelPlay play;
  // One field too many, an end of line without CR, an empty line, no end of line at the end.
  EXPECT_THAT(play.importText("16.4;0000-2400;;NOR;JXN;;NEu;no;1;;\n\r\n"
                              "66.66;0000-2400;;RUS;RBU;-TS;EEu;;1;;;\r\n"
                              "999.999;0000-2400;;B;R\xE1"
                              "dio;P;B;;1;;\r\n"
                              "2147483.647;0000-2400;;G;Top;E;Eu;;1;;"),
              HasSubstr("4 broadcasts."));
  EXPECT_EQ(play.name(16'400), "JXN");
  EXPECT_EQ(play.name(66'660), "RBU");
  EXPECT_EQ(play.name(999'999), "Rádio");
  EXPECT_EQ(play.name(2'147'483'647), "Top");
}

TEST(Import, OnlyTheFirstProblemsAreTold) {
  AmbrelPlay play;
  std::string text;
  for (int i = 0; i < 50; ++i) text += std::string(kGood) + "broken\r\n";
  text += kGood;
  EXPECT_THAT(play.importText(text),
              AllOf(HasSubstr("50 lines could not be read."), HasSubstr("Line 21:"),
                    Not(HasSubstr("Line 23:")), HasSubstr("And so on.")));
}

// Two threads read a large list, half by half.
TEST(Import, ALargeListIsReadLikeASmallOne) {
  const Season season{2022, true};
  const std::string block =
      "6070;0000-2400;1.Sa;G;First;E;Eu;w;1;;\r\n"
      "6080;0100-0200;Mo-Fr;G;Second;E;Eu;w;1;0106;3108\r\n"
      "6090;0100-0200;strange;G;Third;E;Eu;w;8;;\r\n"
      "6090;0100-0200;strange;G;Fourth;E;Eu;w;1;;\r\n";
  const ScheduleReading small = readEibiSchedule(block, season);
  ASSERT_EQ(small.records.size(), 3u);
  // With a rule that the second half does not have.
  const std::string head = "6060;0000-2400;25th;G;Before;E;Eu;w;1;;\r\n";
  std::string text = head;
  while (text.size() < 500'000) text += block;
  const std::size_t blocks = text.size() / block.size();
  text += "broken\r\n";
  const ScheduleReading large = readEibiSchedule(text, season);
  ASSERT_EQ(large.records.size(), 1 + 3 * blocks);
  EXPECT_EQ(large.inactive, blocks);
  EXPECT_EQ(large.unknownDays, blocks);
  for (std::size_t i = 0; i < 3 * blocks; ++i) {
    const ListedRecord &here = large.records[i + 1], &same = small.records[i % 3];
    ASSERT_EQ(here.frequency, same.frequency) << i;
    ASSERT_EQ(here.source.line, head.size() + i / 3 * block.size() + same.source.line) << i;
    ASSERT_EQ(large.rules.at(here.source.rule).days, small.rules[same.source.rule].days) << i;
    ASSERT_EQ(large.rules[here.source.rule].dates.to, small.rules[same.source.rule].dates.to) << i;
  }
  EXPECT_THAT(large.problems.text(), HasSubstr("Line " + std::to_string(4 * blocks + 2) + ":"));
}

TEST(Import, AFileThatIsNoScheduleReplacesNothing) {
  AmbrelPlay play;
  ASSERT_THAT(play.importText(kGood), HasSubstr("was loaded"));
  std::string utf16 = "\xFF\xFE";
  for (const char c : play.heading + kGood) utf16 += std::string{c, '\0'};
  std::string noise;
  for (int i = 0; i < 100'000; ++i) noise += static_cast<char>(i * 7919 % 251 + 1);
  const std::pair<std::string, const char*> files[] = {
      {"", "empty"},
      {"\r\n\r\n", "empty"},
      {utf16, "UTF-16"},
      {std::string("MZ\x90\0\0\0", 6), "no text"},
      {noise, "no EiBi schedule"},
      {play.heading, "no line of a schedule"},
      {"6070;0000-2400\r\n", "no EiBi schedule"},
      {std::string(10'000'000, 'x') + "\n" + std::string(10'000'000, ';') + "\n",
       "2 lines could not be read"},
      {std::string(kGood) + "broken\r\nbroken\r\n", "2 lines could not be read. Line 2"},
      {"<!DOCTYPE html><html>404 not found</html>", "no EiBi schedule"},
  };
  for (const auto& [text, words] : files) {
    EXPECT_THAT(play.import(play.write(play.dataFolder() / "bad.csv", text)),
                AllOf(HasSubstr("bad.csv was not loaded."), HasSubstr(words),
                      HasSubstr("The data that was there stays.")));
    EXPECT_EQ(play.name(6'070'000), "Good station") << words;
  }
  EXPECT_THAT(play.import(play.dataFolder() / "missing.csv"), HasSubstr("was not loaded"));
  EXPECT_THAT(play.import(play.dataFolder()), HasSubstr("was not loaded"));
  play.start();
  EXPECT_EQ(play.name(6'070'000), "Good station") << "also at the next start";
}

TEST(Import, IsKeptForTheNextStartWithItsSeason) {
  AmbrelPlay play;
  play.importText("6070;1800-1900;;G;Good station;E;Eu;w;2;;\r\n", "sked-b22.csv");
  play.setTime(2022, 7, 13, 17, 30);
  EXPECT_TRUE(play.onAir(6'070'000));
  std::filesystem::remove(play.dataFolder().parent_path() / "sked-b22.csv");
  play.start();
  EXPECT_TRUE(play.onAir(6'070'000)) << "the season that the file's name told is remembered";
  EXPECT_EQ(play.core->notes().find("schedule"), std::string::npos);
  // A newer schedule takes the old one's place, also on the disk.
  play.importText("7000;1800-1900;;G;New station;E;Eu;w;1;;\r\n", "sked-a23.csv");
  play.start();
  EXPECT_EQ(play.name(6'070'000), "");
  EXPECT_EQ(play.name(7'000'000), "New station");
}

TEST(Import, AKeptScheduleThatCannotBeReadNowIsNotPutAside) {
  AmbrelPlay play;
  const auto kept = play.ownFolder() / "schedule-eibi.csv";
  std::filesystem::create_directories(kept / "in the way");
  play.start();
  EXPECT_THAT(play.core->notes(), HasSubstr("schedule-eibi.csv is not a file"));
  EXPECT_TRUE(std::filesystem::exists(kept / "in the way"));
}

TEST(Import, ADiskThatFailsOrStopsLeavesTheOldListsOrTheNewOnesWhole) {
  for (const auto how : {FailingSteps::How::Fail, FailingSteps::How::Stop}) {
    int told = 0;
    for (int step = 1;; ++step) {
      AmbrelPlay play;
      play.importText(kGood);
      play.core->NextFrqRegion();
      play.core->FinishFrqWriting();
      const auto disk = std::make_shared<FailingSteps>(how);
      play.disk = disk;
      play.start();
      disk->arm(step);
      const std::string words = play.importText("7070;0000-2400;;G;Other;E;Eu;w;1;;\r\n");
      play.core->NextFrqRegion();
      ownKnownFile(*play.core->files());
      const std::string lost = play.core->FinishFrqWriting();
      told += lost.empty() ? 0 : 1;
      const bool struck = disk->struck();
      play.disk = std::make_shared<fakes::UnwaitingDisk>();
      play.start();
      EXPECT_THAT(play.core->notes(), Not(HasSubstr("schedule-eibi.csv"))) << "step " << step;
      const bool isNew = play.name(7'070'000) == "Other";
      EXPECT_NE(isNew, play.name(6'070'000) == "Good station") << "step " << step;
      EXPECT_TRUE(isNew || !lost.empty() || words.find("not loaded") != words.npos) << words;
      const Long region = play.core->GetFrqRegion();
      EXPECT_TRUE(region == 2 || (region == 1 && !lost.empty())) << "step " << step;
      if (!struck) break;
    }
    EXPECT_GE(told, 4) << "folder, content, flush and swap of the schedule";
  }
}

TEST(Import, AListThatCannotBeReadNowIsAskedForAgain) {
  AmbrelPlay play;
  const auto own = play.ownFolder() / "known-own.txt";
  fs::create_directories(own / "in the way");
  play.start();
  EXPECT_TRUE(play.windows.asked.empty()) << "before a script nobody may sit";
  play.core->SetFrqOwner(1);
  play.core->OpenFrqConfig("Shack");
  while (play.core->isLoading()) play.deliver();
  ASSERT_EQ(play.windows.asked.size(), 1u);
  EXPECT_THAT(play.windows.asked[0], HasSubstr("known-own.txt is not a file"));
  const auto retry = [&play] {
    play.windows.chooseRetry();
    play.deliver();
    while (play.core->isLoading()) play.deliver();
  };
  retry();
  EXPECT_EQ(play.windows.asked.size(), 2u) << "it is still in the way";
  fs::remove_all(own);
  play.write(own, "[Mine]\n6000 ; My station\n");
  retry();
  EXPECT_EQ(play.windows.asked.size(), 2u);
  EXPECT_EQ(play.name(6'000'000), "My station");
}

/// A disk whose files another program may hold; counts how often the test's own thread waits for
/// it.
class HeldDisk : public FileSteps {
 public:
  FileReading read(const fs::path& file, std::size_t limit) override {
    if (!held || !fs::exists(file)) return FileSteps::read(file, limit);
    return {FileReading::Unreadable, {}, "Cannot read " + pathText(file), true};
  }
  void pause(milliseconds) override { waits += std::this_thread::get_id() == window ? 1 : 0; }

  std::atomic<bool> held = false;
  std::atomic<int> waits = 0;
  const std::thread::id window = std::this_thread::get_id();
};

TEST(Import, BandPlansCodesAndTheRegionThatAreHeldAreWaitedForBesideTheWindow) {
  AmbrelPlay play(true);
  play.write(play.userFolder() / "bandplan-r2.txt", "A band ; 0 ; 40000000 ; 1000 ; AM ; 6000\n");
  play.core->NextFrqRegion();
  play.core->FinishFrqWriting();
  const auto disk = std::make_shared<HeldDisk>();
  play.disk = disk;
  play.start();
  play.core->SetFrqOwner(1);
  disk->held = true;
  play.core->OpenFrqConfig("Shack");
  play.core->InitFrqPlan(0);
  EXPECT_EQ(disk->waits, 0);
  EXPECT_EQ(play.core->GetFrqRegion(), 0) << "not known yet";
  while (play.core->isLoading()) play.deliver();
  ASSERT_EQ(play.windows.asked.size(), 1u) << "once for all of them";
  for (const char* file : {"bandplan-r2.txt", "codes.txt", "region.txt", "known-10-time.txt"})
    EXPECT_THAT(play.windows.asked[0], HasSubstr(file));
  disk->held = false;
  play.windows.chooseRetry();
  play.deliver();
  while (play.core->isLoading()) play.deliver();
  EXPECT_EQ(play.core->GetFrqRegion(), 1);
  EXPECT_EQ(play.core->GetFrqBandName().value(), "A band");
  EXPECT_EQ(play.windows.asked.size(), 1u);
}

TEST(Import, ADamagedKeptScheduleIsPutAsideAndSaid) {
  AmbrelPlay play;
  play.importText(kGood);
  play.write(play.ownFolder() / "schedule-eibi.csv", std::string("\0\0\0", 3));
  play.start();
  EXPECT_THAT(play.core->notes(), HasSubstr("It was put aside as"));
  EXPECT_EQ(play.name(6'070'000), "");
  play.start();
  EXPECT_THAT(play.core->notes(), Not(HasSubstr("put aside")));
  EXPECT_THAT(play.importText(kGood), HasSubstr("was loaded"));
}

TEST(Import, GuessesTheSeasonFromTheNameThenFromWhatWasLastHeard) {
  AmbrelPlay play;
  const auto season = [&](const std::string& name, const std::string& heard) {
    play.importText("6070;0000-2400;;G;X;E;Eu;w;1;;" + heard + "\r\n", name);
    return play.core->data().table->lists().back().season->code();
  };
  EXPECT_EQ(season("sked-a26.csv", "[0122]"), "A26");
  EXPECT_EQ(season("eibi-B24.txt", ""), "B24");
  EXPECT_EQ(season("list.csv", "3112[0522]"), "A22");
  EXPECT_EQ(season("list.csv", "[0322]"), "A22") << "a list of March is made for the summer";
  EXPECT_EQ(season("list.csv", "[1022]"), "B22");
  EXPECT_EQ(season("list.csv", "[0222]"), "B21");
  EXPECT_EQ(season("ab12cd.csv", "[0222]"), "B21") << "a season stands by itself in a name";
  const std::string now = season("list.csv", "[9922]");
  EXPECT_THAT(now, testing::MatchesRegex("[AB][0-9][0-9]")) << "else the file's own date";
}

TEST(Import, OneAtATimeAndItEndsInAnEvent) {
  AmbrelPlay play;
  const auto file = play.write(play.dataFolder() / "sked-a22.csv", kGood);
  EXPECT_TRUE(play.core->importSchedule(file));
  EXPECT_FALSE(play.core->importSchedule(file));
  EXPECT_FALSE(play.core->reload());
  EXPECT_TRUE(play.core->isLoading());
  EXPECT_THAT(sourceStatus(*play.core), HasSubstr("Loading"));
  EXPECT_EQ(play.name(6'070'000), "") << "nothing changes before the events are delivered";
  play.deliver();
  EXPECT_EQ(play.events.dataUpdated, 1);
  EXPECT_FALSE(play.core->isLoading());
  EXPECT_EQ(play.name(6'070'000), "Good station");
}

TEST(Import, EndingTheProgramMeanwhileIsSafe) {
  AmbrelPlay play;
  const auto file = play.write(play.dataFolder() / "sked-a22.csv", kGood);
  EXPECT_TRUE(play.core->importSchedule(file));
  play.start();
  EXPECT_EQ(play.name(6'070'000), "Good station") << "what was begun was finished and kept";
}

TEST(Import, ALineKnownBeforeStaysFound) {
  AmbrelPlay play;
  play.importText(kGood);
  EXPECT_EQ(play.name(6'070'000), "Good station");
  play.importText("6070;0000-2400;;G;New name;E;Eu;w;1;;\r\n");
  EXPECT_EQ(play.core->GetFrqKnownName().value(), "New name");
  EXPECT_EQ(play.core->GetRxKnownFrequency(), 6'070'000);
}

TEST(Import, AFaultOnItsThreadIsSaidInWordsAndTheNextOneGoesOn) {
  AmbrelPlay play;
  play.wakeThrows = true;
  EXPECT_THAT(play.importText(kGood), HasSubstr("Nothing was read: there is not enough memory"));
  EXPECT_THAT(play.core->GetFrqFaults().value(), HasSubstr("reading lists: there is not enough"));
  EXPECT_THAT(play.importText(kGood), HasSubstr("was loaded"));
}

TEST(Sources, TellWhatTheDataIsMadeOf) {
  AmbrelPlay play;
  play.write(play.dataFolder() / "known-a.txt", "[One]\n5000 ; X\n[Two]\n6000 ; Y\nbad\n");
  play.write(play.ownFolder() / "known-b.txt", "7000 ; Z\n");
  play.write(play.ownFolder() / "known-c.txt", std::string("\0", 1));
  play.setTime(2022, 11, 1, 0, 0);
  play.start();
  play.importText(std::string(kGood) + kGood);
  const auto rows = sourceRows(*play.core);
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[0].kind, "Schedule");
  EXPECT_EQ(rows[0].name, "sked-a22.csv");
  EXPECT_EQ(rows[0].age, "A22, summer 2022: out of date since 30 Oct 2022");
  EXPECT_EQ(rows[1].name, "known-b.txt");
  EXPECT_EQ(rows[1].owner, "own");
  EXPECT_EQ(rows[1].contents, "1 set, 1 frequencies");
  EXPECT_EQ(rows[2].owner, "shipped");
  EXPECT_EQ(rows[2].contents, "2 sets, 2 frequencies");
  EXPECT_THAT(sourceDetails(rows[2]), HasSubstr("Line 5"));
  EXPECT_THAT(rows[3].problems, HasSubstr("Not used"));
  EXPECT_THAT(sourceStatus(*play.core),
              HasSubstr("5 stations on 4 frequencies in 4 sets. sked-a22.csv was loaded"));
  EXPECT_TRUE(play.core->dropSchedule());
  play.deliver();
  EXPECT_EQ(sourceRows(*play.core).size(), 3u);
  EXPECT_THAT(sourceStatus(*play.core), HasSubstr("No schedule is loaded"));
  EXPECT_THAT(play.core->loadWords(), HasSubstr("put aside as"));
}

}  // namespace
}  // namespace kelvane::ambrel
