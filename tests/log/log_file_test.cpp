#include "log/log_file.h"

#include <gtest/gtest.h>

#include "tests/fakes/failing_steps.h"
#include "tests/fakes/temp_folder.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using fakes::FailingSteps;
using Overwrite = LogFile::Overwrite;

const std::string kOld = "   7050000|USB  |  2400|FAST |2026-03-14|08:00:00|VOICE|old|Harrow|\r\n";
const std::string kNew = kOld + "    648000|AM   |  6000|SLOW |2026-03-15|18:05:09|DRM||Quill|\r\n";

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
  EXPECT_EQ(file.problem(), "");
  EXPECT_EQ(file.save("", Overwrite::Unchanged).how, LogSaved::Done);
  EXPECT_EQ(read(), "");
  EXPECT_EQ(files(), 1u);
}

TEST_F(LogFiles, KeepTheLastFiveGenerationsAndSpendNoneOnASaveThatChangesNothing) {
  file.read();
  for (const char* content : {"1", "2", "3", "4", "5", "6", "7", "7", "7"})
    EXPECT_EQ(file.save(content, Overwrite::Unchanged).how, LogSaved::Done);
  EXPECT_EQ(read() + read(".bak") + read(".bak2") + read(".bak3") + read(".bak4") + read(".bak5"),
            "765432");
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
      for (const char* content : {"5th", "4th", "3rd", "2nd", "1st"})
        ASSERT_EQ(earlier.save(content, Overwrite::Unchanged).how, LogSaved::Done);
      ASSERT_EQ(earlier.save(junk + kOld, Overwrite::Unchanged).how, LogSaved::Done);
      const auto steps = std::make_shared<FailingSteps>(step, how);
      LogFile struck(path, steps);
      EXPECT_EQ(struck.read().content(), kOld);
      const LogSaved saved = struck.save(kNew, Overwrite::Unchanged);
      if (!steps->struck()) {
        EXPECT_EQ(read(), kNew);
        break;
      }
      reached = step;
      EXPECT_EQ(saved.how, LogSaved::Failed);
      EXPECT_NE(saved.reason, "");
      EXPECT_EQ(read(), junk + kOld) << "step " << step;
      LogFile next(path);
      EXPECT_EQ(next.read().content(), kOld);
      ASSERT_EQ(next.save(kNew, Overwrite::Unchanged).how, LogSaved::Done);
      EXPECT_EQ(read() + read(".bak"), kNew + junk + kOld);
      EXPECT_EQ(readFile(place.path() / "scratchpad.rejected-1.txt", 100), junk);
      EXPECT_FALSE(fs::exists(place.path() / "scratchpad.rejected-2.txt"));
      for (const char* old : {"1st", "2nd", "3rd", "4th"}) {
        bool kept = false;
        for (const char* ending : {".bak2", ".bak3", ".bak4", ".bak5"})
          kept = kept || read(ending) == old;
        EXPECT_TRUE(kept) << old << ", step " << step;
      }
    }
    EXPECT_EQ(reached, 13)
        << "four of the rejects, three of the content, five of the backups, swap";
  }
}

TEST_F(LogFiles, ARepeatedFailureCostsNoGeneration) {
  file.read();
  for (const char* content : {"5", "4", "3", "2", "1"}) file.save(content, Overwrite::Unchanged);
  for (int i = 0; i < 9; ++i) {
    // Folder, content and flush come first, then the names of older backups, the second name and
    // the swap.
    LogFile struck(path,
                   std::make_shared<FailingSteps>(i == 0 ? 8 : 4 + i % 2, FailingSteps::How::Fail));
    struck.read();
    EXPECT_EQ(struck.save(kNew, Overwrite::Unchanged).how, LogSaved::Failed);
  }
  const std::string backups =
      read(".bak") + read(".bak2") + read(".bak3") + read(".bak4") + read(".bak5");
  for (const char* content : {"2", "3", "4", "5"})
    EXPECT_NE(backups.find(content), std::string::npos) << content << " of " << backups;
}

TEST_F(LogFiles, NoticeWhatAnotherProgramWrote) {
  write(kOld);
  file.read();
  EXPECT_FALSE(file.changedElsewhere());
  write(kNew);
  EXPECT_TRUE(file.changedElsewhere());
  const LogSaved refused = file.save("mine", Overwrite::Unchanged);
  EXPECT_EQ(refused.how, LogSaved::ChangedElsewhere);
  EXPECT_NE(refused.reason.find("scratchpad.txt"), std::string::npos);
  EXPECT_EQ(read(), kNew);
  EXPECT_EQ(file.save("mine", Overwrite::Whatever).how, LogSaved::Done);
  EXPECT_EQ(read() + read(".bak"), "mine" + kNew);
  EXPECT_EQ(file.save("my next", Overwrite::Unchanged).how, LogSaved::Done);
  fs::remove(path);
  EXPECT_EQ(file.save("my next", Overwrite::Unchanged).how, LogSaved::ChangedElsewhere);
}

TEST_F(LogFiles, NeverReplaceAFileThatCouldNotBeRead) {
  fs::create_directories(path / "in the way");
  EXPECT_EQ(file.read().size(), 0u);
  EXPECT_NE(file.problem().find("scratchpad.txt"), std::string::npos);
  for (const Overwrite overwrite : {Overwrite::Unchanged, Overwrite::Whatever})
    EXPECT_EQ(file.save(kNew, overwrite).how, LogSaved::Failed);
  EXPECT_TRUE(fs::is_directory(path / "in the way"));

  fs::remove_all(path);
  write("");
  fs::resize_file(path, 1'000'000'000);
  LogFile large(path);
  EXPECT_EQ(large.read().size(), 0u);
  EXPECT_NE(large.problem().find("too large"), std::string::npos) << large.problem();
  EXPECT_EQ(large.save(kNew, Overwrite::Whatever).how, LogSaved::Failed);
  EXPECT_EQ(fs::file_size(path), 1'000'000'000u);
}

TEST_F(LogFiles, ThatAreReadOnlyStayAsTheyAreUntilTheyAreNot) {
  write(kOld);
  fs::permissions(path, fs::perms::owner_write, fs::perm_options::remove);
  file.read();
  EXPECT_EQ(file.save(kOld, Overwrite::Unchanged).how, LogSaved::Done);
  const LogSaved refused = file.save(kNew, Overwrite::Whatever);
  EXPECT_EQ(refused.how, LogSaved::Failed);
  EXPECT_NE(refused.reason.find("scratchpad.txt is read-only"), std::string::npos);
  EXPECT_EQ(read(), kOld);
  EXPECT_EQ(files(), 1u);
  fs::permissions(path, fs::perms::owner_write, fs::perm_options::add);
  EXPECT_EQ(file.save(kNew, Overwrite::Unchanged).how, LogSaved::Done);
  EXPECT_EQ(read() + read(".bak"), kNew + kOld);
}

TEST_F(LogFiles, KeepRejectedLinesBesideTheLogBeforeTheyAreLost) {
  write("half a li\r\n" + kOld + "7050000|USB");
  EXPECT_EQ(file.read().content(), kOld);
  EXPECT_EQ(file.rejected(), 2u);
  EXPECT_EQ(rejects(1), "none");
  EXPECT_EQ(file.save(kOld, Overwrite::Unchanged).how, LogSaved::Done);
  EXPECT_EQ(rejects(1), "half a li\r\n7050000|USB\r\n");
  EXPECT_EQ(file.rejectFile().filename(), "scratchpad.rejected-1.txt");
  EXPECT_EQ(file.save(kNew, Overwrite::Unchanged).how, LogSaved::Done);
  EXPECT_EQ(rejects(2), "none") << "once is enough";

  write("other junk\n");
  file.read();
  EXPECT_EQ(file.rejectFile(), fs::path());
  EXPECT_EQ(file.save(kOld, Overwrite::Unchanged).how, LogSaved::Done);
  EXPECT_EQ(rejects(1), "half a li\r\n7050000|USB\r\n");
  EXPECT_EQ(rejects(2), "other junk\r\n");
}

TEST_F(LogFiles, ReadAFileThatAnEditorMadeUtf8) {
  std::string line = kOld;
  line.replace(line.find("old"), 3, "S\xC3\xA3o \xE2\x82\xAC");
  write("\xEF\xBB\xBF" + line);
  const LogTable log = file.read();
  EXPECT_EQ(file.rejected(), 0u);
  EXPECT_EQ(log.field(0, LogComments), "S\xE3o \x80");
}

}  // namespace
}  // namespace kelvane
