#include "components/sondrel/event_queue.h"

#include <gtest/gtest.h>

#include "tests/fakes/recording_listener.h"

namespace kelvane::sondrel {
namespace {

using fakes::RecordingListener;
using Lines = std::vector<std::string>;

class EventQueueTest : public testing::Test {
 protected:
  void raise(Long code, bool global = false) {
    queue.raise(global, [code](ReceiverListener& l) { l.RxDataError(0, code); });
  }
  static Lines codes(const RecordingListener& listener) {
    Lines result;
    for (const auto& line : listener.lines()) result.push_back(line.substr(14));
    return result;
  }

  int wakes = 0;
  EventQueue queue{[this] { ++wakes; }};
  RecordingListener first, second;
};

TEST_F(EventQueueTest, WakesOncePerBatchAndDeliversToAllInOrder) {
  queue.add(first);
  queue.add(second);
  for (const Long code : {1, 2, 3}) raise(code);
  EXPECT_EQ(wakes, 1);
  EXPECT_TRUE(first.heard.empty()) << "nothing is delivered from inside raise";
  queue.deliver();
  EXPECT_EQ(codes(first), (Lines{"1", "2", "3"}));
  EXPECT_EQ(codes(second), (Lines{"1", "2", "3"}));
  queue.deliver();
  EXPECT_EQ(first.heard.size(), 3u);
  raise(4);
  EXPECT_EQ(wakes, 2) << "a new batch wakes again";
}

TEST_F(EventQueueTest, KeepsEveryListenersOrderWhenAHandlerDeliversAgain) {
  queue.add(first);
  queue.add(second);
  first.meanwhile = [&](const auto&) { queue.deliver(); };
  for (const Long code : {1, 2, 3, 4}) raise(code);
  queue.deliver();
  EXPECT_EQ(codes(first), (Lines{"1", "2", "3", "4"}));
  EXPECT_EQ(codes(second), (Lines{"1", "2", "3", "4"})) << "it heard 1 before the nested 2";
}

TEST_F(EventQueueTest, NestsToABoundedDepthAndLosesNothing) {
  queue.add(first);
  int depth = 0;
  int deepest = 0;
  first.meanwhile = [&](const auto&) {
    deepest = std::max(deepest, ++depth);
    queue.deliver();
    --depth;
  };
  for (Long code = 0; code < 1000; ++code) raise(code);
  queue.deliver();
  EXPECT_EQ(first.heard.size(), 1000u);
  EXPECT_LE(deepest, 20);
  EXPECT_GE(deepest, 4) << "a dialog in a handler still hears events";
}

TEST_F(EventQueueTest, LeavesWhatAHandlerRaisesToTheNextCall) {
  queue.add(first);
  first.meanwhile = [&](const auto&) { raise(7); };
  raise(1);
  queue.deliver();
  EXPECT_EQ(codes(first), Lines{"1"}) << "else a handler that answers events would never end";
  EXPECT_EQ(wakes, 2) << "but somebody is asked to deliver it";
  queue.deliver();
  EXPECT_EQ(codes(first), (Lines{"1", "7"}));
}

TEST_F(EventQueueTest, ListenersMayLeaveInTheirHandlers) {
  queue.add(first);
  queue.add(second);
  first.meanwhile = [&](const auto&) {
    queue.remove(first);
    queue.remove(second);
  };
  raise(1);
  raise(2);
  queue.deliver();
  EXPECT_EQ(codes(first), Lines{"1"});
  EXPECT_EQ(codes(second), Lines{}) << "nothing comes after remove()";
  queue.add(second);
  raise(3);
  queue.deliver();
  EXPECT_EQ(codes(second), Lines{"3"}) << "only what was raised while it listened";
}

TEST_F(EventQueueTest, TheGlobalFlagBelongsToTheEventBeingDelivered) {
  queue.add(first);
  std::vector<bool> before, after;
  first.meanwhile = [&](const auto&) {
    before.push_back(queue.global());
    queue.deliver();
    after.push_back(queue.global());
  };
  raise(1, true);
  raise(2, false);
  raise(3, true);
  queue.deliver();
  EXPECT_EQ(before, (std::vector<bool>{true, false, true}));
  EXPECT_EQ(after, (std::vector<bool>{true, false, true})) << "restored, innermost first";
  EXPECT_FALSE(queue.global());
}

TEST_F(EventQueueTest, OfASeriesOnlyTheNewestWaits) {
  queue.add(first);
  const auto meter = [&](Long level, std::uint32_t series) {
    queue.raise(
        false, [=](ReceiverListener& l) { l.RxDataError(0, level); }, series);
  };
  meter(1, 1);
  raise(2);
  meter(3, 2);
  meter(4, 1);
  queue.deliver();
  EXPECT_EQ(codes(first), (Lines{"2", "3", "4"}));
}

TEST_F(EventQueueTest, AHandlerThatThrowsLeavesTheQueueUsable) {
  queue.add(first);
  first.meanwhile = [](const auto& heard) {
    if (heard.line == "RxDataError 0 1") throw 1;
  };
  raise(1, true);
  raise(2);
  EXPECT_THROW(queue.deliver(), int);
  EXPECT_EQ(wakes, 2) << "for the event that is left";
  EXPECT_FALSE(queue.global());
  queue.deliver();
  EXPECT_EQ(codes(first), (Lines{"1", "2"}));
}

}  // namespace
}  // namespace kelvane::sondrel
