#include "base/work_beside.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

namespace kelvane {
namespace {

TEST(WorkBeside, DoesWhatJobsAnswerInOrderOnTheOwnersThread) {
  std::atomic<int> woken = 0;
  WorkBeside beside([&] { ++woken; });
  const auto owner = std::this_thread::get_id();
  std::vector<int> done;
  for (int i = 0; i < 3; ++i) {
    beside.start("counting",
                 [&, i]() -> WorkBeside::Done {
                   EXPECT_NE(std::this_thread::get_id(), owner);
                   return [&, i] {
                     EXPECT_EQ(std::this_thread::get_id(), owner);
                     done.push_back(i);
                   };
                 },
                 {});
  }
  beside.wait();
  EXPECT_TRUE(done.empty() && beside.busy()) << "not before the owner asks for it";
  EXPECT_EQ(woken, 3);
  EXPECT_TRUE(beside.deliver());
  EXPECT_EQ(done, (std::vector{0, 1, 2}));
  EXPECT_FALSE(beside.busy() || beside.deliver());
}

TEST(WorkBeside, AJobThatFailsIsToldAndTheNextOneDone) {
  WorkBeside beside;
  std::string why;
  int done = 0;
  beside.start(
      "failing", []() -> WorkBeside::Done { throw std::runtime_error("the disk is gone"); },
      [&](const std::string& words) { why = words; });
  // What an answer begins is not taken for the work that it came from.
  beside.start("going on",
               [&]() -> WorkBeside::Done {
                 return [&] {
                   EXPECT_FALSE(beside.busy());
                   beside.start("again", [&]() -> WorkBeside::Done { return [&] { ++done; }; }, {});
                 };
               },
               {});
  while (beside.busy()) {
    beside.wait();
    beside.deliver();
  }
  EXPECT_NE(why.find("the disk is gone"), std::string::npos) << why;
  EXPECT_EQ(done, 1);
}

}  // namespace
}  // namespace kelvane
