#include "companions/data_log.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ranges>

#include "tests/fakes/log_rig.h"
#include "tests/fakes/recording_receiver.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using fakes::LogRig;

constexpr const char* kFirst =
    "   7050000|USB  |  2400|FAST |2026-03-14|08:00:00|VOICE|net|Harrow|\r\n";
constexpr const char* kSecond =
    "    648000|AM   |  6000|SLOW |2026-03-13|23:59:59|Unknown||Quill|\r\n";

struct Log : testing::Test, LogRig {
  const DataLogView& view() const { return log->view(); }
  void writeTwo() { write(std::string(kFirst) + kSecond); }
};

TEST_F(Log, StoresThePresentSettingEachTimeTheStoreCommandShowsIt) {
  tune(7'123'456);
  store();
  ASSERT_EQ(records(), 1u);
  EXPECT_EQ(cell(0, LogFrequency), "7123456");
  const auto& core = sondrel.core;
  auto& rx = const_cast<sondrel::SondrelCore&>(core);
  EXPECT_EQ(cell(0, LogMode), rx.GetRxModeName(0, rx.GetRxMode(0)).value());
  EXPECT_EQ(cell(0, LogFilter), std::to_string(rx.GetRxFilter(0).value()));
  EXPECT_EQ(cell(0, LogAgc), rx.GetRxAgcName(0, rx.GetRxAgc(0)).value());
  EXPECT_EQ(cell(0, LogDate) + " " + cell(0, LogTime), "2026-03-15 18:05:09");
  EXPECT_EQ(cell(0, LogType) + cell(0, LogComments), "Unknown");
  EXPECT_EQ(cell(0, LogReceiver), rx.GetRxName(0).value());
  EXPECT_EQ(view().caption, "Frequency logs [1 records]");
  EXPECT_FALSE(view().Insert.enabled);
  EXPECT_FALSE(view().Delete.enabled);
  log->Insert_Click();
  log->Delete_Click();
  EXPECT_EQ(records(), 1u);
  store();
  EXPECT_EQ(records(), 2u);
  EXPECT_EQ(log->PadGrd().current(), (GridCell{1, LogComments})) << "a comment can be typed";
  ok();
  EXPECT_FALSE(view().open);
  EXPECT_EQ(std::ranges::count(file(), '\n'), 2);
}

TEST_F(Log, WhatIsTypedWhileARecordIsStoredIsItsComment) {
  store();
  log->UpdateOnly(false);
  log->activate();
  ASSERT_TRUE(log->busy());
  for (const char c : std::string_view("QSL")) log->PadGrd().keyPress(c);
  EXPECT_FALSE(log->PadGrd().editing()) << "the table is at rest";
  settle();
  EXPECT_EQ(log->PadGrd().text(), "QSL");
  log->PadGrd().commit();
  EXPECT_EQ(cell(1, LogComments), "QSL");
  // What is typed into a window that closes goes nowhere.
  log->OK_Click();
  ASSERT_TRUE(log->busy());
  log->PadGrd().keyPress('x');
  settle();
  EXPECT_FALSE(view().open || log->PadGrd().editing());
}

TEST_F(Log, ShowsTheFileAndSelectsTheRecordOfThePresentFrequency) {
  write(std::string(kFirst) + kSecond + kSecond);
  tune(648'000);
  look();
  EXPECT_TRUE(view().open);
  EXPECT_EQ(view().caption, "Frequency logs [3 records]");
  EXPECT_EQ(log->PadGrd().current().row, 1u);
  EXPECT_TRUE(view().Insert.enabled);
  tune(9'000'000);
  look();
  EXPECT_EQ(log->PadGrd().current().row, 1u) << "no record, no move";
}

TEST_F(Log, OkKeepsEditsInTheOrderShownAndCancelDropsThem) {
  writeTwo();
  const std::string before = file();
  look();
  sort(LogFrequency);
  EXPECT_EQ(column(LogFrequency), "648000,7050000");
  log->Delete_Click();
  enter({0, LogComments}, "gone");
  cancel();
  EXPECT_FALSE(view().open);
  EXPECT_EQ(file(), before);
  look();
  EXPECT_EQ(column(LogFrequency), "7050000,648000");
  sort(LogFrequency);
  enter({1, LogComments}, "kept");
  ok();
  EXPECT_EQ(column(LogComments), ",kept");
  restart();
  look();
  EXPECT_EQ(column(LogFrequency), "648000,7050000");
  EXPECT_EQ(cell(1, LogComments), "kept");
}

TEST_F(Log, FiltersKeysAndKeepsRecordsThatCanBeReadAgain) {
  writeTwo();
  look();
  enter({0, LogFrequency}, "7x0.6-1");
  EXPECT_EQ(cell(0, LogFrequency), "7061");
  for (const char* refused : {"", "0", "000"}) enter({0, LogFrequency}, refused);
  EXPECT_EQ(cell(0, LogFrequency), "7061");
  enter({0, LogFilter}, "");
  EXPECT_EQ(cell(0, LogFilter), "2400");
  for (const int column : {LogDate, LogTime}) {
    log->PadGrd().select({0, column});
    EXPECT_FALSE(log->PadGrd().begin(Grid::Begin::Keep));
  }
  enter({0, LogComments}, "a|b\r\nc \xC3\xBC\xE2\x82\xAC\xD0\x96 ");
  EXPECT_EQ(cell(0, LogComments), "a/b  c \xC3\xBC\xE2\x82\xAC?") << "as the file will have it";
  log->PadGrd().select({0, LogComments});
  log->PadGrd().keyPress('|');
  EXPECT_EQ(log->PadGrd().text(), "/");
  EXPECT_EQ(log->PadGrd().edited("one|two\n"), "one/two ") << "as it is typed";
  log->PadGrd().cancel();
  enter({0, LogReceiver}, std::string(10'000, 'r'));
  ok();
  restart();
  look();
  EXPECT_EQ(records(), 2u);
  EXPECT_EQ(cell(0, LogComments), "a/b  c \xC3\xBC\xE2\x82\xAC?");
  EXPECT_EQ(cell(0, LogReceiver).size(), 10'000u);
}

TEST_F(Log, PicksFromTheReceiversModesAndAgcsAndTheTypes) {
  writeTwo();
  look();
  const auto pick = [&](int column, std::string_view typed) {
    log->PadGrd().select({0, column});
    for (const char c : typed) log->PadGrd().keyPress(static_cast<char32_t>(c));
    return cell(0, column);
  };
  EXPECT_EQ(pick(LogType, "d"), "DRM");
  EXPECT_EQ(pick(LogType, "x"), "DRM");
  EXPECT_EQ(pick(LogMode, "cw"), "CW");
  log->PadGrd().select({0, LogAgc});
  ASSERT_TRUE(log->PadGrd().drop());
  EXPECT_EQ(log->PadGrd().items().size(), static_cast<std::size_t>(std::ranges::count_if(
                                              std::views::iota(0, 16), [&](Setting agc) {
                                                return sondrel.core.HasRxAgc(0, agc).value();
                                              })));
  EXPECT_FALSE(log->PadGrd().items().empty());
}

TEST_F(Log, ShiftAndAnArrowSendARecordToTheReceiver) {
  write(std::string(kFirst) +
        "    648000|AM   |  6000|SLOW |d|t|T||r|\r\n"
        "  10000000|XYZ  |   500|NONE |d|t|T||r|\r\n");
  tune(7'050'000);
  look();
  key(key::Down, key::ShiftHeld);
  sondrel.run(milliseconds(500));
  auto& rx = sondrel.core;
  EXPECT_EQ(rx.GetRxFrequency(0, kTuned), 648'000);
  EXPECT_EQ(rx.GetRxModeName(0, rx.GetRxMode(0)).value(), "AM");
  EXPECT_EQ(rx.GetRxFilter(0), 6000);
  EXPECT_EQ(rx.GetRxAgcName(0, rx.GetRxAgc(0)).value(), "Slow");
  key(key::Down, key::ShiftHeld);
  sondrel.run(milliseconds(500));
  EXPECT_EQ(rx.GetRxFrequency(0, kTuned), 10'000'000);
  EXPECT_NE(rx.GetRxFilter(0), 6000) << "the filter is sent";
  EXPECT_EQ(rx.GetRxModeName(0, rx.GetRxMode(0)).value(), "AM") << "what it does not know stays";
  EXPECT_EQ(rx.GetRxAgcName(0, rx.GetRxAgc(0)).value(), "Slow");
  key(key::Up);
  sondrel.run(milliseconds(500));
  EXPECT_EQ(rx.GetRxFrequency(0, kTuned), 10'000'000);
}

TEST_F(Log, SortsByAHeaderButNotWhileItAddsAndKeepsTheCurrentRecord) {
  writeTwo();
  look();
  log->PadGrd().select({0, 2});
  sort(LogDate);
  EXPECT_EQ(column(LogTime), "23:59:59,08:00:00");
  EXPECT_EQ(log->PadGrd().sortedBy(), LogDate);
  EXPECT_EQ(log->PadGrd().current(), (GridCell{1, LogDate})) << "the same record";
  store();
  sort(LogFrequency);
  EXPECT_EQ(cell(0, LogTime), "23:59:59");
  EXPECT_EQ(log->PadGrd().sortedBy(), LogDate);
}

TEST_F(Log, InsertsDeletesAndTakesBackInTurn) {
  writeTwo();
  look();
  log->Insert_Click();
  settle();
  EXPECT_EQ(records(), 3u);
  EXPECT_EQ(view().caption, "Frequency logs [3 records]");
  sort(LogFilter);
  log->PadGrd().select({0, 0});
  key(key::Delete);
  EXPECT_EQ(records(), 2u);
  enter({0, LogComments}, "changed");
  const auto undo = [&] { key('Z', key::CtrlHeld); };
  undo();
  EXPECT_EQ(column(LogComments).find("changed"), std::string::npos);
  undo();
  EXPECT_EQ(records(), 3u);
  undo();
  EXPECT_EQ(records(), 2u);
  EXPECT_EQ(view().caption, "Frequency logs [2 records]");
  EXPECT_NE(column(LogFrequency).find("7050000"), std::string::npos);
  EXPECT_NE(column(LogFrequency).find("648000"), std::string::npos);
  undo();
  EXPECT_EQ(records(), 2u);
}

TEST_F(Log, CopiesNineFieldsBetweenTabs) {
  write(kSecond);
  look();
  log->Copy_Click();
  EXPECT_EQ(clipboard.held, "648000\tAM\t6000\tSLOW\t2026-03-13\t23:59:59\tUnknown\t\tQuill");
  log->Delete_Click();
  EXPECT_FALSE(view().Copy.enabled);
  log->Copy_Click();
  log->Delete_Click();
  EXPECT_EQ(clipboard.held.substr(0, 6), "648000") << "nothing to copy changes nothing";
}

TEST_F(Log, SaysHowManyLinesAreNoRecordsAndWhereTheyAreKept) {
  write(std::string("junk\r\n") + kFirst + "more junk\r\n");
  look();
  EXPECT_EQ(view().caption, "Frequency logs [1 records]");
  EXPECT_NE(view().captionTip.find("2 lines"), std::string::npos) << view().captionTip;
  enter({0, LogComments}, "x");
  ok();
  EXPECT_NE(view().captionTip.find("scratchpad.rejected-1.txt"), std::string::npos);
  EXPECT_EQ(readFile(folder.path() / "scratchpad.rejected-1.txt", 100), "junk\r\nmore junk\r\n");
}

TEST_F(Log, AFileThatCannotBeReadIsNamedNeverReplacedAndReadWhenItCanBe) {
  fs::create_directories(path);
  store();
  EXPECT_EQ(records(), 1u);
  EXPECT_NE(view().caption.find("is not a file"), std::string::npos) << view().caption;
  ok();
  EXPECT_TRUE(view().open);
  EXPECT_NE(view().Notice.find("Not saved"), std::string::npos) << view().Notice;
  EXPECT_EQ(records(), 1u);
  EXPECT_TRUE(fs::is_directory(path));
  fs::remove(path);
  writeTwo();
  ok();
  EXPECT_FALSE(view().open);
  EXPECT_EQ(records(), 3u);
  EXPECT_EQ(file().find(std::string(kFirst) + kSecond), 0u) << "what was there, then what came";
}

TEST_F(Log, AddsItsEditsToWhatAnotherProgramWroteMeanwhile) {
  write(kFirst);
  look();
  enter({0, LogComments}, "mine");
  writeTwo();
  ok();
  EXPECT_FALSE(view().open) << view().Notice;
  EXPECT_NE(file().find(kSecond), std::string::npos);
  EXPECT_NE(file().find("|mine|"), std::string::npos);
  EXPECT_EQ(records(), 2u);
  EXPECT_EQ(readFile(path.string() + ".bak", 1000), std::string(kFirst) + kSecond);

  writeTwo();
  look();
  EXPECT_EQ(cell(0, LogComments), "net") << "without edits the file as it is now is shown";
  fs::remove(path);
  ok();
  EXPECT_EQ(file(), "none") << "nothing of one's own, nothing to save";
}

TEST_F(Log, OfTwoProgramsInOneFolderNeitherUndoesTheOther) {
  LogRig other;
  other.log = std::make_unique<DataLog>(DataLogServices{
      other.sondrel.core, other.clipboard, other.flows, other.calendar, folder.path()});
  other.tune(1'111'000);
  tune(2'222'000);
  other.store();
  store();
  EXPECT_EQ(records(), 1u) << "what a living one keeps is its own";
  ok();
  other.ok();
  EXPECT_EQ(column(LogFrequency), "2222000");
  EXPECT_EQ(other.column(LogFrequency), "2222000,1111000");
  look();
  log->Delete_Click();
  other.look();
  other.enter({1, LogComments}, "net");
  other.ok();
  ok();
  EXPECT_EQ(column(LogFrequency) + column(LogComments), "1111000net");
}

TEST_F(Log, AKilledProgramLosesNoStoredRecordAndNoEdit) {
  writeTwo();
  tune(1'111'000);
  store();
  EXPECT_EQ(file(), std::string(kFirst) + kSecond) << "no save was asked for";
  restart();
  settle();
  EXPECT_EQ(std::ranges::count(file(), '\n'), 3) << "the next start needs no hand";
  look();
  EXPECT_NE(view().Notice.find("1 record was recovered"), std::string::npos) << view().Notice;
  ok();
  EXPECT_EQ(records(), 3u);
  look();
  EXPECT_EQ(view().Notice, "");
  enter({2, LogComments}, "after the call");
  key(key::Up);
  key(key::Delete);
  restart();
  look();
  EXPECT_EQ(column(LogFrequency) + column(LogComments), "7050000,1111000net,after the call");
  store();
  cancel();
  restart();
  look();
  EXPECT_EQ(records(), 2u) << "Cancel drops for good";
}

TEST_F(Log, WhatIsOnlyLookedAtIsNotWritten) {
  look();
  ok();
  EXPECT_EQ(file(), "none");
  const std::string russian = "7050000|USB|2400|F|d|t|T|\xD0\x96|r|\n";
  write(russian);
  look();
  EXPECT_EQ(cell(0, LogComments), "\xD0\x96");
  ok();
  EXPECT_EQ(log->end().reason() + file(), russian);
}

TEST_F(Log, AnEditThatIsTakenBackAfterOkIsTakenBackInTheFileToo) {
  writeTwo();
  look();
  enter({0, LogComments}, "changed");
  ok();
  ASSERT_NE(file().find("|changed|"), std::string::npos);
  look();
  key('Z', key::CtrlHeld);
  EXPECT_TRUE(log->end());
  EXPECT_EQ(file(), std::string(kFirst) + kSecond);
}

TEST_F(Log, AFullDiskLeavesTheWindowOpenAndTheEditsInIt) {
  writeTwo();
  look();
  enter({0, LogComments}, "unsaved");
  // What a full disk refuses: any new file beside the log.
  fs::permissions(folder.path(), fs::perms::owner_read | fs::perms::owner_exec);
  const bool refuses = !writeFileSafely(folder.path() / "probe", "x");
  if (!refuses) {
    fs::permissions(folder.path(), fs::perms::owner_all);
    fs::create_directories(folder.path() / "scratchpad.txt.bak" / "in the way");
    for (const char* number : {"2", "3", "4", "5"})
      fs::create_directories(folder.path() / (std::string("scratchpad.txt.bak") + number) / "too");
  }
  ok();
  EXPECT_TRUE(view().open);
  EXPECT_NE(view().Notice.find("Not saved"), std::string::npos) << view().Notice;
  EXPECT_EQ(cell(0, LogComments), "unsaved");
  EXPECT_EQ(file(), std::string(kFirst) + kSecond);
  const std::string told = log->end().reason();
  fs::permissions(folder.path(), fs::perms::owner_all);
  if (!refuses) {
    EXPECT_NE(told.find("at the next start"), std::string::npos) << told;
    for (const char* number : {"", "2", "3", "4", "5"})
      fs::remove_all(path.string() + ".bak" + number);
    restart();
    look();
    EXPECT_NE(file().find("|unsaved|"), std::string::npos);
  } else {
    EXPECT_NE(told.find("scratchpad.unsaved-1.txt"), std::string::npos) << told;
  }
}

TEST_F(Log, AnEntryThatIsOpenIsKeptByOkAndByTheProgramsEnd) {
  writeTwo();
  EXPECT_TRUE(log->end()) << "never opened";
  for (const bool atEnd : {false, true}) {
    const std::string typed = atEnd ? "at the end" : "still typing";
    look();
    log->PadGrd().select({0, LogComments});
    log->PadGrd().begin(Grid::Begin::Replace);
    log->PadGrd().edited(typed);
    if (atEnd) {
      EXPECT_TRUE(log->end());
    } else {
      ok();
    }
    EXPECT_NE(file().find("|" + typed + "|"), std::string::npos);
  }
}

TEST_F(Log, ExportsByTheChosenExtension) {
  writeTwo();
  look();
  const auto exported = [&](const std::string& name) {
    dialogs.script.push_back(pathText(folder.path() / name));
    log->Export_Click();
    settle();
    return readFile(folder.path() / name, 10'000).value_or("none");
  };
  EXPECT_NE(exported("log.adi").find("<EOH>"), std::string::npos);
  EXPECT_EQ(dialogs.saved.back().others, std::vector<std::string>{"csv"});
  EXPECT_NE(exported("log.CSV").find("Frequency,Mode"), std::string::npos);
  EXPECT_NE(view().Notice.find("log.CSV"), std::string::npos) << view().Notice;
  log->Export_Click();
  EXPECT_FALSE(log->busy()) << "cancelled";
}

TEST_F(Log, RecordsNothingWithoutAFrequency) {
  log->Receiver(99);
  store();
  EXPECT_EQ(records(), 0u);
  EXPECT_NE(view().Notice.find("link is not up"), std::string::npos) << view().Notice;
}

/// A receiver that tells neither filter nor AGC.
struct Taciturn : fakes::RecordingReceiver {
  using RecordingReceiver::RecordingReceiver;
  Answer<Setting> GetRxFilter(Index) override { return -1; }
  Answer<Setting> GetRxAgc(Index) override { return -1; }
};

TEST_F(Log, WhatTheReceiverDoesNotTellIsLeftEmptyAndLeftAloneByARecall) {
  Taciturn receiver(sondrel.core);
  log = std::make_unique<DataLog>(
      DataLogServices{receiver, clipboard, flows, calendar, folder.path()});
  log->Receiver(0);
  store();
  ok();
  log = std::make_unique<DataLog>(
      DataLogServices{receiver, clipboard, flows, calendar, folder.path()});
  log->Receiver(0);
  look();
  ASSERT_EQ(records(), 1u) << "it loads";
  EXPECT_EQ(cell(0, LogFilter) + cell(0, LogAgc), "");
  receiver.told("");
  key(key::Up, key::ShiftHeld);
  EXPECT_EQ(receiver.told("SetRxFrequency").size(), 1u);
  key(key::Up, key::ShiftHeld);
  EXPECT_EQ(receiver.told("SetRxFilter"), std::vector<std::string>{});
  sondrel.core.SetRxRemote(0, false);
  sondrel.run(milliseconds(200));
  receiver.told("");
  key(key::Up, key::ShiftHeld);
  EXPECT_TRUE(receiver.told("SetRxFrequency").empty()) << "a locked receiver takes no command";
  EXPECT_NE(log->view().Notice.find("was not sent"), std::string::npos) << log->view().Notice;
}

TEST(LogKeys, SpaceRecordsAndGShowsTheLogOfTheShownReceiver) {
  fakes::PanelRig rig;
  rig.start();
  const auto records = [&] { return rig.dialogs.log->PadGrd().table().rows(); };
  const auto settle = [&] {
    while (rig.dialogs.log->busy()) rig.dialogs.log->deliver();
  };
  rig.type("7050\r g");
  settle();
  EXPECT_EQ(rig.dialogs.logs, 2);
  ASSERT_EQ(records(), 1u);
  EXPECT_EQ(rig.dialogs.log->PadGrd().table().cell(0, LogFrequency), "7050000");
  EXPECT_TRUE(rig.dialogs.log->view().Insert.enabled);
  rig.panel->tabClicked(2);
  rig.run(milliseconds(500));
  rig.type(" ");
  settle();
  ASSERT_EQ(records(), 2u);
  EXPECT_EQ(rig.dialogs.log->PadGrd().table().cell(1, LogReceiver),
            rig.sondrel.core.GetRxName(2).value());
  rig.type("m ");
  EXPECT_EQ(rig.panel->CommandPrefix(), "M") << "the log leaves a waiting letter as it is";
  rig.panel->tabClicked(0);
  rig.type("5000\r ");
  settle();
  rig.fileDialogs.script = {pathText(rig.sondrel.folder.path() / "log.adi")};
  rig.dialogs.log->Export_Click();
  settle();
  const std::string adif =
      readFile(rig.sondrel.folder.path() / "log.adi", 100'000).value_or("none");
  EXPECT_NE(adif.find("<CALL:3>WWV <FREQ:1>5 "), std::string::npos) << adif;
  EXPECT_NE(rig.dialogs.log->view().Notice.find("none is known: 3 records"), std::string::npos)
      << rig.dialogs.log->view().Notice;
  rig.panel->unload({});
  const auto file = readFile(rig.sondrel.folder.path() / "scratchpad.txt", 10'000);
  EXPECT_EQ(std::ranges::count(file.value_or(""), '\n'), 4) << "the program's end keeps them";
  EXPECT_TRUE(rig.fileDialogs.boxes.empty());
}

}  // namespace
}  // namespace kelvane
