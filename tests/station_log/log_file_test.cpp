#include "station_log/log_file.h"

#include <gtest/gtest.h>

#include <array>
#include <map>

#include "station_log/log_line.h"
#include "tests/fakes/failing_steps.h"
#include "tests/fakes/temp_folder.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using fakes::FailingSteps;

const std::string kOld = "   7050000|USB  |  2400|FAST |2026-03-14|08:00:00|VOICE|old|Harrow|\r\n";
const std::string kNew = kOld + "    648000|AM   |  6000|SLOW |2026-03-15|18:05:09|DRM||Quill|\r\n";

/// A log of one record, of that frequency.
std::string line(const std::string& frequency) {
  return joinLogLine({frequency, "USB", "2400", "FAST", "d", "t", "VOICE", "", "r"}) + "\r\n";
}
LogTable logOf(const std::string& file) {
  LogRejects none;
  return LogTable(file, none);
}
/// Saves a log of this content, which was changed so since it was read.
LogSaved save(LogFile& file, const std::string& content, const LogChanges& changes = {}) {
  return file.save(logOf(content), changes);
}
LogChange came(const std::string& line) {
  return {LogChange::Added, line.substr(0, line.size() - 2)};
}
LogChange left(const std::string& line) {
  return {LogChange::Removed, line.substr(0, line.size() - 2)};
}

struct LogFiles : testing::Test {
  void write(const std::string& content) { ASSERT_TRUE(writeFileSafely(path, content)); }
  std::string read(const std::string& ending = {}) const {
    return readFile(path.string() + ending, 10'000'000).value_or("none");
  }
  std::string rejects(int number) const {
    const auto file = folder.path() / ("scratchpad.rejected-" + std::to_string(number) + ".txt");
    return readFile(file, 10'000'000).value_or("none");
  }
  std::size_t files() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()));
  }

  fakes::TempFolder folder;
  fs::path path = folder.path() / "scratchpad.txt";
  LogFile file{path};
};

TEST_F(LogFiles, AMissingFileIsAnEmptyLogAndTheFirstSaveMakesIt) {
  EXPECT_EQ(file.read().size(), 0u);
  EXPECT_TRUE(file.readable());
  EXPECT_TRUE(save(file, ""));
  EXPECT_EQ(read(), "");
  EXPECT_EQ(files(), 1u);
}

TEST_F(LogFiles, KeepTheLastFiveGenerationsAndSpendNoneOnASaveThatChangesNothing) {
  file.read();
  for (const char* content : {"1", "2", "3", "4", "5", "6", "7", "7", "7"})
    EXPECT_TRUE(save(file, line(content)));
  std::string all;
  for (const char* number : {"7", "6", "5", "4", "3", "2"}) all += line(number);
  EXPECT_EQ(read() + read(".bak") + read(".bak2") + read(".bak3") + read(".bak4") + read(".bak5"),
            all);
  EXPECT_EQ(files(), 6u);
}

TEST_F(LogFiles, AreTheOldOrTheNewLogWhereverASaveFailsOrStops) {
  const std::string junk = "no record\r\n";
  for (const auto how : {FailingSteps::How::Fail, FailingSteps::How::Stop}) {
    int reached = 0;
    for (int step = 1;; ++step) {
      fakes::TempFolder place;
      path = place.path() / "scratchpad.txt";
      LogFile earlier(path);
      earlier.read();
      for (const char* content : {"5", "4", "3", "2", "1"})
        ASSERT_TRUE(save(earlier, line(content)));
      ASSERT_TRUE(save(earlier, kOld));
      write(junk + kOld);
      const auto steps = std::make_shared<FailingSteps>(step, how);
      LogFile struck(path, steps);
      struck.read();
      const LogSaved saved = save(struck, kNew);
      if (!steps->struck()) {
        EXPECT_EQ(read(), kNew);
        break;
      }
      reached = step;
      EXPECT_FALSE(saved);
      EXPECT_EQ(read(), junk + kOld) << "step " << step;
      LogFile next(path);
      EXPECT_EQ(next.read().content(), kOld);
      ASSERT_TRUE(save(next, kNew));
      EXPECT_EQ(read() + read(".bak"), kNew + junk + kOld);
      EXPECT_EQ(readFile(place.path() / "scratchpad.rejected-1.txt", 100), junk);
      EXPECT_FALSE(fs::exists(place.path() / "scratchpad.rejected-2.txt"));
      for (const char* old : {"1", "2", "3", "4"}) {
        bool kept = false;
        for (const char* ending : {".bak2", ".bak3", ".bak4", ".bak5"})
          kept = kept || read(ending) == line(old);
        EXPECT_TRUE(kept) << old << ", step " << step;
      }
    }
    EXPECT_EQ(reached, 14)
        << "reading, four of the rejects, three of the content, five of the backups, swap";
  }
}

TEST_F(LogFiles, ARepeatedFailureCostsNoGeneration) {
  file.read();
  for (const char* content : {"5", "4", "3", "2", "1"}) save(file, line(content));
  for (int i = 0; i < 9; ++i) {
    // Reading, folder, content and flush come first, then the names of older backups and the second
    // name.
    LogFile struck(path, std::make_shared<FailingSteps>(5 + i % 2, FailingSteps::How::Fail));
    struck.read();
    EXPECT_FALSE(save(struck, kNew));
  }
  const std::string backups =
      read(".bak") + read(".bak2") + read(".bak3") + read(".bak4") + read(".bak5");
  for (const char* content : {"2", "3", "4", "5"})
    EXPECT_NE(backups.find(line(content)), std::string::npos) << content << " of " << backups;
}

TEST_F(LogFiles, DoTheirOwnChangesToWhatAnotherProgramWrote) {
  const std::string both = line("1") + line("2"), theirs = line("2") + line("3") + line("3");
  write(both);
  file.read();
  EXPECT_FALSE(file.changedElsewhere());
  // There 1 left and two of 3 came; here 2 left and came in another form, and 4 came.
  write(theirs);
  EXPECT_TRUE(file.changedElsewhere());
  LogChanges mine;
  for (const LogChange& change : {left(line("2")), came(line("22")), came(line("4"))})
    mine.note(change);
  const LogSaved saved = save(file, line("1") + line("22") + line("4"), mine);
  ASSERT_TRUE(*saved);
  EXPECT_EQ(read(), line("3") + line("3") + line("22") + line("4"));
  EXPECT_EQ((*saved)->content(), read());
  EXPECT_EQ(read(".bak"), theirs);
  fs::remove(path);
  EXPECT_TRUE(save(file, both, mine));
  EXPECT_EQ(read(), both) << "a file that is gone takes no records with it";
}

TEST_F(LogFiles, WaitForAnotherProgramThatSaves) {
  FileLock other;
  ASSERT_TRUE(other.acquire(path.string() + ".lock"));
  const LogSaved saved = save(file, kOld);
  EXPECT_NE(saved.reason().find("another program"), std::string::npos) << saved.reason();
  other.release();
  EXPECT_TRUE(save(file, kOld));
}

TEST_F(LogFiles, NeverReplaceAFileThatCouldNotBeRead) {
  fs::create_directories(path / "in the way");
  EXPECT_EQ(file.read().size(), 0u);
  EXPECT_NE(file.readable().reason().find("scratchpad.txt"), std::string::npos);
  EXPECT_FALSE(save(file, kNew));
  EXPECT_TRUE(fs::is_directory(path / "in the way"));

  fs::remove_all(path);
  write("");
  fs::resize_file(path, 1'000'000'000);
  LogFile large(path);
  EXPECT_EQ(large.read().size(), 0u);
  EXPECT_NE(large.readable().reason().find("too large"), std::string::npos)
      << large.readable().reason();
  EXPECT_FALSE(save(large, kNew));
  EXPECT_EQ(fs::file_size(path), 1'000'000'000u);
}

TEST_F(LogFiles, ThatAreReadOnlyStayAsTheyAreUntilTheyAreNot) {
  write(kOld);
  fs::permissions(path, fs::perms::owner_write, fs::perm_options::remove);
  file.read();
  EXPECT_TRUE(save(file, kOld));
  const LogSaved refused = save(file, kNew);
  EXPECT_NE(refused.reason().find("scratchpad.txt is read-only"), std::string::npos);
  EXPECT_EQ(read(), kOld);
  EXPECT_EQ(files(), 1u);
  fs::permissions(path, fs::perms::owner_write, fs::perm_options::add);
  EXPECT_TRUE(save(file, kNew));
  EXPECT_EQ(read() + read(".bak"), kNew + kOld);
}

TEST_F(LogFiles, KeepRejectedLinesBesideTheLogBeforeTheyAreLost) {
  write("half a li\r\n" + kOld + "7050000|USB");
  EXPECT_EQ(file.read().content(), kOld);
  EXPECT_EQ(file.rejected(), 2u);
  EXPECT_EQ(rejects(1), "none");
  EXPECT_TRUE(save(file, kOld));
  EXPECT_EQ(rejects(1), "half a li\r\n7050000|USB\r\n");
  EXPECT_EQ(file.rejectFile().filename(), "scratchpad.rejected-1.txt");
  EXPECT_TRUE(save(file, kNew));
  EXPECT_EQ(rejects(2), "none") << "once is enough";

  write("other junk\n");
  file.read();
  EXPECT_EQ(file.rejectFile(), fs::path());
  EXPECT_TRUE(save(file, kOld));
  EXPECT_EQ(rejects(1), "half a li\r\n7050000|USB\r\n");
  EXPECT_EQ(rejects(2), "other junk\r\n");
}

TEST_F(LogFiles, StayInTheEncodingThatAnEditorMadeOfThem) {
  std::string line = kOld;
  line.replace(line.find("old"), 3, "S\xC3\xA3o \xD0\x96");
  for (const std::string mark : {"", "\xEF\xBB\xBF"}) {
    write(mark + line);
    LogTable log = file.read();
    EXPECT_EQ(file.rejected(), 0u);
    EXPECT_EQ(log.text(0, LogComments), "S\xC3\xA3o \xD0\x96");
    log.set(0, LogType, log.encoded("\xE4\xB8\xAD"));
    EXPECT_TRUE(file.save(log, {}));
    EXPECT_EQ(read().substr(0, mark.size() + 11), mark + "   7050000|");
    EXPECT_NE(read().find("|\xE4\xB8\xAD|S\xC3\xA3o \xD0\x96|"), std::string::npos) << read();
  }
  // One letter of the code page: no UTF-8, whatever the mark says.
  line.replace(line.find("\xC3\xA3"), 2, "\xE3");
  write("\xEF\xBB\xBF" + line);
  EXPECT_EQ(file.read().text(0, LogComments).substr(0, 4), "S\xC3\xA3o");
}

// What is kept beside the file.

struct LogJournals : LogFiles {
  /// A program that keeps a record and is killed.
  void leave(const std::string& record) {
    LogFile killed(path);
    killed.read();
    EXPECT_TRUE(killed.keep(std::array{came(record)}));
  }
  /// What a program reads that starts now.
  std::string next() { return LogFile(path).read().content(); }
};

TEST_F(LogJournals, BringWhatAKilledProgramKeptIntoTheFileOnceAndGo) {
  write(kOld);
  {
    LogFile killed(path), too(path);
    EXPECT_TRUE(killed.keep(std::array{came(line("1"))}));
    EXPECT_TRUE(too.keep(std::array{came(line("1"))}));
  }
  LogFile reading(path);
  EXPECT_TRUE(reading.mayHaveLeftovers());
  EXPECT_EQ(reading.read().content(), kOld + line("1") + line("1"));
  EXPECT_NE(reading.leftoverWords().find("2 records were recovered"), std::string::npos);
  EXPECT_EQ(read(), kOld + line("1") + line("1"));
  EXPECT_EQ(next(), read());
  EXPECT_EQ(files(), 2u) << "the log and its backup";
}

TEST_F(LogJournals, OfLivingProgramsAreTheirOwn) {
  file.read();
  EXPECT_TRUE(file.keep(std::array{came(line("1"))}));
  LogFile other(path);
  EXPECT_EQ(other.read().size(), 0u);
  EXPECT_TRUE(other.keep(std::array{came(line("2"))}));
  LogChanges changes;
  changes.note(came(line("2")));
  EXPECT_TRUE(save(other, line("2"), changes));
  EXPECT_EQ(read(), line("2"));
  changes = {};
  changes.note(came(line("1")));
  EXPECT_TRUE(save(file, line("1"), changes));
  EXPECT_EQ(read(), line("2") + line("1"));
  EXPECT_EQ(files(), 2u);
}

TEST_F(LogJournals, ForgetWhatWasDropped) {
  {
    LogFile dropping(path);
    dropping.read();
    EXPECT_TRUE(dropping.keep(std::array{came(line("1"))}));
    EXPECT_TRUE(dropping.drop());
    EXPECT_TRUE(dropping.keep(std::array{came(line("2")), came(line("3")), left(line("2"))}));
  }
  EXPECT_EQ(next(), line("3"));
}

/// A disk that loses what was not flushed when the power fails.
struct LosingSteps : FileSteps {
  Result<> append(const fs::path& file, std::string_view content) override {
    std::error_code none;
    const auto size = fs::file_size(file, none);
    safe.try_emplace(file, none ? 0 : size);
    return FileSteps::append(file, content);
  }
  Result<> flush(const fs::path& file) override {
    safe.erase(file);
    return FileSteps::flush(file);
  }
  void failPower() const {
    for (const auto& [file, size] : safe) fs::resize_file(file, size);
  }
  std::map<fs::path, std::uintmax_t> safe;
};

TEST_F(LogJournals, KeepWhatWasToldToBeOnTheDiskWhenThePowerFails) {
  const auto steps = std::make_shared<LosingSteps>();
  {
    LogFile cut(path, steps);
    cut.read();
    for (const char* record : {"1", "2"}) EXPECT_TRUE(cut.keep(std::array{came(line(record))}));
    steps->failPower();
  }
  EXPECT_EQ(next(), line("1") + line("2"));
}

/// A program that ends in the moment when the log is saved, before it can tidy up.
struct EndingSteps : FileSteps {
  Result<> append(const fs::path& file, std::string_view content) override {
    return ended ? Failure{"it has ended"} : FileSteps::append(file, content);
  }
  Result<> swapIn(const fs::path& from, const fs::path& to) override {
    const Result<> swapped = FileSteps::swapIn(from, to);
    ended = to.filename() == "scratchpad.txt";
    return swapped;
  }
  void remove(const fs::path& file) override {
    if (!ended) FileSteps::remove(file);
  }
  bool ended = false;
};

TEST_F(LogJournals, DoubleNothingThatWasSavedWhenTheProgramEnded) {
  write(kOld);
  {
    const auto steps = std::make_shared<EndingSteps>();
    LogFile ending(path, steps);
    LogTable log = ending.read();
    LogChanges changes;
    changes.note(came(line("1")));
    EXPECT_TRUE(ending.keep(std::array{came(line("1"))}));
    log.apply(changes);
    ending.save(log, changes);
    EXPECT_TRUE(steps->ended);
  }
  EXPECT_TRUE(LogFile(path).mayHaveLeftovers());
  EXPECT_EQ(next(), kOld + line("1"));
}

/// A disk of which another program lets nothing be removed.
struct HeldSteps : FileSteps {
  void remove(const fs::path&) override {}
};

TEST_F(LogJournals, ThatCannotBeRemovedBringNothingBack) {
  for (const bool drops : {false, true}) {
    write(kOld);
    {
      LogFile held(path, std::make_shared<HeldSteps>());
      LogTable log = held.read();
      LogChanges changes;
      changes.note(came(line("1")));
      EXPECT_TRUE(held.keep(std::array{came(line("1"))}));
      log.apply(changes);
      EXPECT_TRUE(held.save(log, changes));
      if (drops) {
        EXPECT_TRUE(held.keep(std::array{came(line("2"))}));
        EXPECT_TRUE(held.drop());
      }
    }
    EXPECT_EQ(next(), kOld + line("1")) << drops;
  }
}

/// Whichever step of keeping, saving and taking over goes wrong, what was told to be on the disk is
/// in the log exactly once.
TEST_F(LogJournals, LoseNothingAndDoubleNothingWhereverAStepFailsOrStops) {
  for (const auto how : {FailingSteps::How::Fail, FailingSteps::How::Stop}) {
    int reached = 0;
    for (int step = 1; reached == step - 1; ++step) {
      fakes::TempFolder place;
      path = place.path() / "scratchpad.txt";
      write(kOld);
      leave(line("1"));
      bool second = false, third = false;
      {
        const auto steps = std::make_shared<FailingSteps>(step, how);
        LogFile struck(path, steps);
        LogTable log = struck.read();
        second = struck.keep(std::array{came(line("2"))}).ok();
        third = struck.keep(std::array{came(line("3"))}).ok();
        LogChanges changes;
        for (const char* kept : {"2", "3"}) changes.note(came(line(kept)));
        log.apply(changes);
        struck.save(log, changes);
        if (steps->struck()) reached = step;
      }
      const std::string log = next();
      EXPECT_EQ(log, next());
      const auto count = [&](const std::string& record) {
        std::size_t found = 0;
        for (auto at = log.find(record); at != std::string::npos; at = log.find(record, at + 1))
          ++found;
        return found;
      };
      EXPECT_EQ(count(kOld), 1u) << step;
      EXPECT_EQ(count(line("1")), 1u) << step;
      EXPECT_LE(count(line("2")), 1u) << step;
      EXPECT_LE(count(line("3")), 1u) << step;
      EXPECT_TRUE(!second || count(line("2")) == 1) << step;
      EXPECT_TRUE(!third || count(line("3")) == 1) << step;
      if (how == FailingSteps::How::Fail) {
        EXPECT_EQ(count(line("2")) + count(line("3")), 2u) << step;
      }
    }
    EXPECT_GT(reached, 15);
  }
}

}  // namespace
}  // namespace kelvane
