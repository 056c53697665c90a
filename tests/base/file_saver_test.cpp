#include "base/file_saver.h"

#include <gtest/gtest.h>

#include <semaphore>
#include <stdexcept>

#include "base/barrier.h"
#include "tests/fakes/temp_folder.h"

namespace kelvane {
namespace {

using fakes::TempFolder;

/// A disk that takes as long as the test wants.
class HeldSteps : public FileSteps {
 public:
  Result<> write(const std::filesystem::path& file, std::string_view content) override {
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
                 [&](const Result<>& result) { ended += result ? 1 : 0; });
    }
  }
  EXPECT_EQ(ended, 20);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(readFile(folder.path() / std::to_string(i), 9), "x");
}

/// A disk at which something throws, once.
struct ThrowingSteps : FileSteps {
  Result<> makeFolders(const std::filesystem::path& folder) override {
    if (std::exchange(throws, false)) throw std::bad_alloc();
    return FileSteps::makeFolders(folder);
  }
  bool throws = true;
};

TEST(FileSaver, GoesOnAfterAFaultAndSaysIt) {
  TempFolder folder;
  std::string words;
  FileSaver saver(std::make_shared<ThrowingSteps>());
  saver.save(folder.path() / "a", "x", [&](const Result<>& r) {
    words = r.reason();
    throw std::runtime_error("the listener falls too");
  });
  saver.finish();
  EXPECT_NE(words.find("there is not enough memory"), words.npos) << words;
  saver.save(folder.path() / "b", "x");
  saver.finish();
  EXPECT_EQ(readFile(folder.path() / "b", 9), "x");
  for (const char* noted : {"writing a file: there is not", "the listener falls too"})
    EXPECT_NE(notedFaults().find(noted), std::string::npos) << notedFaults();
}

}  // namespace
}  // namespace kelvane
