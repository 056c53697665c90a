#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "base/barrier.h"

namespace kelvane {

/// Does work off the user-interface thread, one job after the other. Jobs that were handed in are
/// finished before it ends.
class Background {
 public:
  Background() = default;
  ~Background();
  Background(const Background&) = delete;
  Background& operator=(const Background&) = delete;

  /// Never waits. The first job starts the thread. What the job throws is handed to `failed` on
  /// that thread, and why no thread can be started on this one; `what` says in the report what was
  /// being done.
  void run(std::string what, std::function<void()> job, Failed failed);
  /// Returns when every job is done.
  void finish();

 private:
  struct Job {
    std::string what;
    std::function<void()> work;
    Failed failed;
  };

  void work();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Job> jobs_;
  bool working_ = false;
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace kelvane
