#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace kelvane::ambrel {

/// Does work off the user-interface thread, one job after the other. Jobs that were handed in are
/// finished before it ends.
class Background {
 public:
  Background() = default;
  ~Background();
  Background(const Background&) = delete;
  Background& operator=(const Background&) = delete;

  /// Never waits. The first job starts the thread.
  void run(std::function<void()> job);

 private:
  void work();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> jobs_;
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace kelvane::ambrel
