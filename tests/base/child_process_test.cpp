#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <thread>

#include <signal.h>

#include "base/child_process.h"
#include "tests/fakes/temp_folder.h"

namespace kelvane {
namespace {

bool soon(const std::function<bool()>& so) {
  for (int i = 0; i < 3000 && !so(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  return so();
}

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream in(file);
  std::string word;
  in >> word;
  return word;
}

TEST(ChildProcess, RunsUntilItEndsByItselfOrIsEnded) {
  ChildProcess child;
  EXPECT_FALSE(child.running());
  ASSERT_EQ(child.start("sleep 60").reason(), "");
  EXPECT_TRUE(child.running());
  child.end();
  EXPECT_FALSE(child.running());
  ASSERT_EQ(child.start("true").reason(), "");
  EXPECT_TRUE(soon([&] { return !child.running(); }));
}

TEST(ChildProcess, SaysWhyAProgramCannotBeStarted) {
  ChildProcess child;
  for (const std::string line : {"no-such-program-anywhere -m 1", "", "  \t", "\"\""}) {
    EXPECT_NE(child.start(line).reason(), "") << line;
    EXPECT_FALSE(child.running());
  }
}

TEST(ChildProcess, TakesWordsInQuotesWhole) {
  const fakes::TempFolder folder;
  const auto file = folder.path() / "two words";
  ChildProcess child;
  ASSERT_EQ(child.start("sh -c \"echo $0 > '" + file.string() + "'\" heard").reason(), "");
  EXPECT_TRUE(soon([&] { return contentOf(file) == "heard"; }));
}

TEST(ChildProcess, IsGoneWithItsOwner) {
  const fakes::TempFolder folder;
  const auto file = folder.path() / "id";
  int process = 0;
  {
    ChildProcess child;
    ASSERT_EQ(child.start("sh -c \"echo $$ > '" + file.string() + "'; exec sleep 60\"").reason(),
              "");
    ASSERT_TRUE(soon([&] { return !contentOf(file).empty(); }));
    process = std::stoi(contentOf(file));
    EXPECT_EQ(::kill(process, 0), 0);
  }
  EXPECT_NE(::kill(process, 0), 0);
}

}  // namespace
}  // namespace kelvane
