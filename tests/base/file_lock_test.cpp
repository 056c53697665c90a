#include "base/file_lock.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "tests/fakes/failing_steps.h"
#include "tests/fakes/temp_folder.h"

namespace kelvane {
namespace {

using fakes::FailingSteps;
using fakes::TempFolder;

TEST(FileLock, IsOneProcesssAloneAndFreeWhenItIsKilled) {
  TempFolder folder;
  const auto file = folder.path() / "new" / "sole.lock";
  int told[2];
  ASSERT_EQ(::pipe(told), 0);
  const pid_t other = ::fork();
  if (other == 0) {
    FileLock lock;
    const char got = lock.acquire(file) ? 'y' : 'n';
    if (::write(told[1], &got, 1) == 1) ::pause();
    ::_exit(1);
  }
  char got = 0;
  ASSERT_EQ(::read(told[0], &got, 1), 1);
  ASSERT_EQ(got, 'y');
  FileLock lock;
  const Result<> refused = lock.acquire(file);
  EXPECT_FALSE(refused);
  EXPECT_TRUE(refused.held());
  ::kill(other, SIGKILL);
  ::waitpid(other, nullptr, 0);
  EXPECT_TRUE(lock.acquire(file));
  lock.release();
  EXPECT_FALSE(std::filesystem::exists(file)) << "it leaves nothing behind";
}

TEST(ChangeFile, NoChangeOfAnothersIsUndone) {
  TempFolder folder;
  const auto file = folder.path() / "list.txt";
  const auto addLines = [&](char who) {
    FileSteps disk;
    for (int i = 0; i < 20; ++i) {
      changeFile(file, 10'000, disk,
                 [who](const FileReading& now) { return FileChange(now.content + who); });
    }
  };
  std::thread other(addLines, 'b');
  addLines('a');
  other.join();
  const std::string content = readFile(file, 10'000).value_or("");
  EXPECT_EQ(std::ranges::count(content, 'a'), 20);
  EXPECT_EQ(std::ranges::count(content, 'b'), 20);
}

TEST(ChangeFile, WhatCannotBeReadOrIsRefusedStaysAsItIs) {
  TempFolder folder;
  const auto file = folder.path() / "list.txt";
  ASSERT_TRUE(writeFileSafely(file, "old"));
  const auto change = [&](FileSteps& steps, const FileChange& to) {
    return changeFile(file, 100, steps, [&](const FileReading&) { return to; });
  };
  FailingSteps unreadable(1, FailingSteps::How::Fail);
  EXPECT_EQ(change(unreadable, "new").reason(), "the disk is full");
  FileSteps disk;
  EXPECT_EQ(change(disk, Failure{"no"}).reason(), "no");
  EXPECT_TRUE(change(disk, kUnchanged));
  EXPECT_EQ(readFile(file, 100), "old");
}

}  // namespace
}  // namespace kelvane
