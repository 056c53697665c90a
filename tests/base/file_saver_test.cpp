#include "base/file_saver.h"

#include <gtest/gtest.h>

#include <semaphore>

#include "tests/fakes/temp_folder.h"

namespace kelvane {
namespace {

using fakes::TempFolder;

/// A disk that takes as long as the test wants.
class HeldSteps : public FileSteps {
 public:
  FileResult write(const std::filesystem::path& file, std::string_view content) override {
    entered.release();
    proceed.acquire();
    return FileSteps::write(file, content);
  }
  std::counting_semaphore<> entered{0};
  std::counting_semaphore<> proceed{0};
};

TEST(FileSaver, WritesOnlyTheNewestOfWhatWaits) {
  TempFolder folder;
  const auto file = folder.path() / "a.txt";
  const auto steps = std::make_shared<HeldSteps>();
  FileSaver saver(steps);
  saver.save(file, "first");
  steps->entered.acquire();
  for (const char* content : {"second", "third", "fourth"}) saver.save(file, content);
  EXPECT_EQ(readFile(file, 100), std::nullopt) << "the caller was not held up by the disk";
  steps->proceed.release();
  steps->entered.acquire();
  EXPECT_EQ(readFile(file, 100), "first");
  steps->proceed.release();
  saver.finish();
  EXPECT_EQ(readFile(file, 100), "fourth");
  EXPECT_FALSE(steps->entered.try_acquire()) << "nothing else was written";
}

TEST(FileSaver, LeavesNothingUnwrittenWhenItGoes) {
  TempFolder folder;
  int ended = 0;
  {
    FileSaver saver;
    for (int i = 0; i < 20; ++i) {
      saver.save(folder.path() / std::to_string(i), "x",
                 [&](const FileResult& result) { ended += result.ok ? 1 : 0; });
    }
  }
  EXPECT_EQ(ended, 20);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(readFile(folder.path() / std::to_string(i), 9), "x");
}

TEST(FileSaver, SaysWhatCouldNotBeWritten) {
  TempFolder folder;
  FileResult heard;
  FileSaver saver;
  saver.save(folder.path(), "a folder has this name", [&](const FileResult& r) { heard = r; });
  saver.finish();
  EXPECT_FALSE(heard);
  EXPECT_NE(heard.reason, "");
}

}  // namespace
}  // namespace kelvane
