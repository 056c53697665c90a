#include "base/safe_file.h"

#include <gtest/gtest.h>

#include <fstream>

#include "base/backup_file.h"
#include "base/replaced_file.h"
#include "tests/fakes/failing_steps.h"
#include "tests/fakes/temp_folder.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using fakes::FailingSteps;
using fakes::TempFolder;

std::vector<std::string> names(const fs::path& folder) {
  std::vector<std::string> result;
  for (const auto& entry : fs::directory_iterator(folder)) {
    result.push_back(pathText(entry.path().filename()));
  }
  return result;
}

TEST(SafeFile, WritesAndReadsBackWhateverIsInIt) {
  TempFolder folder;
  const fs::path file = folder.path() / "a" / pathFromText("b \xC3\xBC") / "list.txt";
  const std::string content("one\r\n\0two\xFF", 10);
  ASSERT_TRUE(writeFileSafely(file, content));
  EXPECT_EQ(readFile(file, 100), content);
  ASSERT_TRUE(writeFileSafely(file, ""));
  EXPECT_EQ(readFile(file, 100), "");
  EXPECT_EQ(names(file.parent_path()), std::vector<std::string>{"list.txt"});
}

TEST(SafeFile, LeavesTheOldOrTheNewFileWholeWhereverItFailsOrStops) {
  const std::string old(5000, 'o');
  const std::string young(7000, 'n');
  for (const auto how : {FailingSteps::How::Fail, FailingSteps::How::Stop}) {
    int reached = 0;
    for (int step = 1;; ++step) {
      TempFolder folder;
      const fs::path file = folder.path() / "list.txt";
      ASSERT_TRUE(writeFileSafely(file, old));
      FailingSteps steps(step, how);
      const Result<> result = writeFileSafely(file, young, steps);
      if (!steps.struck()) break;
      reached = step;
      EXPECT_FALSE(result);
      EXPECT_NE(result.reason().find("list.txt"), std::string::npos) << result.reason();
      EXPECT_EQ(readFile(file, 10000), old) << "step " << step;
      if (how == FailingSteps::How::Fail) {
        EXPECT_EQ(names(folder.path()).size(), 1u) << "step " << step;
      }
      ASSERT_TRUE(writeFileSafely(file, young)) << "the next write is not held up";
      EXPECT_EQ(readFile(file, 10000), young);
    }
    EXPECT_EQ(reached, 4) << "folder, content, flush and swap each were struck";
  }
}

TEST(SafeFile, AFileThatAnotherProgramHoldsForAMomentIsTriedAgainAndAtLastSaid) {
  TempFolder folder;
  const fs::path file = folder.path() / "list.txt";
  // Flush and swap are the third and fourth step; ten tries are what a scanner takes.
  for (const int step : {3, 4}) {
    FailingSteps passing(step, FailingSteps::How::Hold, 10);
    ASSERT_TRUE(writeFileSafely(file, std::to_string(step), passing)) << step;
    EXPECT_EQ(readFile(file, 100), std::to_string(step));
    EXPECT_GE(passing.waited(), milliseconds(200)) << "longer than thirty milliseconds' sharing";
    FailingSteps lasting(step, FailingSteps::How::Hold, 1'000'000);
    const Result<> result = writeFileSafely(file, "new", lasting);
    EXPECT_NE(result.reason().find("another program uses it"), std::string::npos);
    EXPECT_GE(lasting.waited(), kFileRetryTime);
    EXPECT_LE(lasting.waited(), kFileRetryTime * 2);
    EXPECT_EQ(readFile(file, 100), std::to_string(step));
  }
  FailingSteps held(1, FailingSteps::How::Hold, 10);
  EXPECT_EQ(readWhenFree(file, 100, held).content, "4");
  FailingSteps never(1, FailingSteps::How::Hold, 1'000'000);
  const FileReading reading = readWhenFree(file, 100, never);
  EXPECT_EQ(reading.how, FileReading::Unreadable);
  EXPECT_EQ(reading.reason, "another program uses it");
}

TEST(SafeFile, SweepsUpWhatAKilledWriteLeftLongAgo) {
  TempFolder folder;
  const fs::path file = folder.path() / "list.txt";
  const fs::path left = folder.path() / "list.txt.123-4.unfinished";
  const fs::path young = folder.path() / "list.txt.124-4.unfinished";
  const fs::path other = folder.path() / "other.txt.123-4.unfinished";
  for (const auto& path : {left, young, other}) std::ofstream(path) << "half";
  for (const auto& path : {left, other}) {
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
  }
  ASSERT_TRUE(writeFileSafely(file, "whole"));
  EXPECT_FALSE(fs::exists(left));
  EXPECT_TRUE(fs::exists(young));
  EXPECT_TRUE(fs::exists(other));
}

TEST(SafeFile, SaysWhyItCannotReadOrWrite) {
  TempFolder folder;
  FileSteps disk;
  EXPECT_EQ(disk.read(folder.path() / "none", 10).how, FileReading::Missing);
  EXPECT_EQ(disk.read(folder.path(), 10).how, FileReading::Unreadable);
  EXPECT_NE(disk.read(folder.path(), 10).reason, "");
  const fs::path file = folder.path() / "file";
  ASSERT_TRUE(writeFileSafely(file, "12345"));
  EXPECT_EQ(readFile(file, 5), "12345");
  EXPECT_EQ(readFile(file, 4), std::nullopt);
  const std::string reason = disk.read(file, 4).reason;
  EXPECT_NE(reason.find("too large"), std::string::npos) << reason;
  EXPECT_FALSE(writeFileSafely(file / "below a file", "x"));
  EXPECT_FALSE(writeFileSafely(folder.path(), "a folder is in the way"));
}

TEST(KeepAside, FindsANameOfItsOwn) {
  TempFolder folder;
  const fs::path file = folder.path() / "list.txt";
  std::vector<fs::path> kept;
  for (const char* content : {"first", "second"}) {
    ASSERT_TRUE(writeFileSafely(file, content));
    kept.push_back(keepAside(file));
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(kept.back().extension(), ".txt");
    EXPECT_EQ(readFile(kept.back(), 100), content);
  }
  EXPECT_NE(kept[0], kept[1]);
  EXPECT_EQ(keepAside(file), fs::path()) << "there is nothing to move";
}

TEST(PathFromText, TakesAnyBytes) {
  EXPECT_EQ(pathText(pathFromText("\xE2\x82\xAC\xF0\x9F\x93\xBB")), "\xE2\x82\xAC\xF0\x9F\x93\xBB");
  EXPECT_EQ(pathText(pathFromText("a\xFF\xC3z")), "a__z");
  EXPECT_EQ(pathText(pathFromText("\xC0\xAF\xED\xA0\x80\xF4\x90\x80\x80\xE0\x80")), "___________");
}

struct Backups : testing::Test {
  void write(const std::string& content) { std::ofstream(file) << content; }
  std::string read(const std::string& ending) const {
    std::string content = "none";
    std::ifstream(file.string() + ending) >> content;
    return content;
  }

  TempFolder folder;
  fs::path file = folder.path() / "log.txt";
};

TEST_F(Backups, KeepTheLastGenerationsInOrder) {
  for (const char* content : {"1", "2", "3", "4"}) {
    write(content);
    EXPECT_TRUE(moveToBackup(file, 3));
  }
  EXPECT_EQ(read(""), "none");
  EXPECT_EQ(read(".bak") + read(".bak2") + read(".bak3"), "432");
  EXPECT_EQ(read(".bak4"), "none");
}

TEST_F(Backups, AreNotTurnedOverForAFileThatIsNotThere) {
  write("1");
  moveToBackup(file);
  EXPECT_TRUE(moveToBackup(file));
  EXPECT_EQ(read(".bak"), "1");
}

TEST_F(Backups, AreNoneAfterAFailureAndNoOlderOneIsGivenUpForIt) {
  for (const char* content : {"1", "2", "3"}) {
    write(content);
    EXPECT_TRUE(moveToBackup(file, 3));
  }
  write("4");
  for (int tries = 0; tries < 3; ++tries) {
    const auto replaced = std::make_shared<ReplacedFile>(file);
    EXPECT_TRUE(replaced->makeWay());
    FailingSteps full(1, FailingSteps::How::Fail);
    EXPECT_FALSE(writeInPlaceOf(replaced, file, "5", full));
    EXPECT_EQ(read(""), "4") << "as soon as that is told";
  }
  EXPECT_EQ(read(".bak2") + read(".bak3"), "32");
  {
    ReplacedFile abandoned(file);
    EXPECT_TRUE(abandoned.makeWay());
    EXPECT_EQ(read(""), "none");
  }
  EXPECT_EQ(read(""), "4") << "nobody went on to write it";
  const auto replaced = std::make_shared<ReplacedFile>(file);
  EXPECT_TRUE(replaced->makeWay());
  FileSteps disk;
  EXPECT_TRUE(writeInPlaceOf(replaced, file, "6", disk));
  EXPECT_EQ(read("") + read(".bak"), "64");
}

TEST_F(Backups, LeaveTheFileWhereItWasWhenTheyFail) {
  write("1");
  fs::create_directories(file.string() + ".bak/taken");
  const Result<> moved = moveToBackup(file, 1);
  EXPECT_FALSE(moved);
  EXPECT_NE(moved.reason(), "");
  EXPECT_EQ(read(""), "1");
}

}  // namespace
}  // namespace kelvane
