#include "components/sondrel/inbox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <new>
#include <thread>

namespace kelvane::sondrel {
namespace {

TEST(Inbox, KeepsEachThreadsOrderAndWakesOncePerBatch) {
  std::atomic<int> wakes = 0;
  const auto inbox = std::make_shared<Inbox>([&] { ++wakes; });
  constexpr int kThreads = 4;
  constexpr int kEach = 1000;
  std::vector<std::vector<int>> got(kThreads);
  {
    std::vector<std::jthread> threads;
    for (int t = 0; t < kThreads; ++t) {
      threads.emplace_back([&, t, mailbox = Mailbox(inbox)] {
        for (int i = 0; i < kEach; ++i) {
          mailbox.post([&got, t, i] { got[static_cast<std::size_t>(t)].push_back(i); });
        }
      });
    }
  }
  EXPECT_EQ(wakes, 1);
  inbox->run();
  for (const auto& row : got) {
    EXPECT_EQ(row.size(), static_cast<std::size_t>(kEach));
    EXPECT_TRUE(std::ranges::is_sorted(row));
  }
  Mailbox(inbox).post([] {});
  EXPECT_EQ(wakes, 2);
}

TEST(Inbox, DropsWhatIsForAReceiverThatIsGone) {
  const auto inbox = std::make_shared<Inbox>([] {});
  int ran = 0;
  Mailbox gone(inbox), stays(inbox);
  const Mailbox threadsOwn = gone;
  threadsOwn.post([&] { ++ran; });
  stays.post([&] { ran += 10; });
  gone.close();
  threadsOwn.post([&] { ++ran; });
  inbox->run();
  EXPECT_EQ(ran, 10);
}

TEST(Inbox, OneThatFailsTakesNoneOfTheOthersWithIt) {
  const auto inbox = std::make_shared<Inbox>([] {});
  int ran = 0;
  inbox->post([&] { ++ran; });
  inbox->post([] { throw std::bad_alloc(); });
  inbox->post([&] { ++ran; });
  EXPECT_NO_THROW(inbox->run());
  EXPECT_EQ(ran, 2);
}

TEST(Inbox, WakesNobodyOnceItIsShut) {
  int wakes = 0;
  const auto inbox = std::make_shared<Inbox>([&] { ++wakes; });
  bool ran = false;
  const Mailbox mailbox(inbox);
  mailbox.post([&] { ran = true; });
  inbox->shut();
  mailbox.post([&] { ran = true; });
  inbox->run();
  EXPECT_EQ(wakes, 1);
  EXPECT_FALSE(ran);
}

}  // namespace
}  // namespace kelvane::sondrel
