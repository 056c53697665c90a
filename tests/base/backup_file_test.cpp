#include "base/backup_file.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/fakes/temp_folder.h"

namespace kelvane {
namespace {

struct Backups : testing::Test {
  void write(const std::string& content) { std::ofstream(file) << content; }
  std::string read(const std::string& ending) const {
    std::string content = "none";
    std::ifstream(file.string() + ending) >> content;
    return content;
  }

  fakes::TempFolder folder;
  std::filesystem::path file = folder.path() / "log.txt";
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

TEST_F(Backups, LeaveTheFileWhereItWasWhenTheyFail) {
  write("1");
  std::filesystem::create_directories(file.string() + ".bak/taken");
  const FileResult moved = moveToBackup(file, 1);
  EXPECT_FALSE(moved);
  EXPECT_NE(moved.reason, "");
  EXPECT_EQ(read(""), "1");
}

}  // namespace
}  // namespace kelvane
