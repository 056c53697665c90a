#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "base/background.h"

namespace kelvane {

/// Work beside a window: jobs, one after the other, on a thread of their own. What a job answers is
/// done afterwards on the owner's thread, inside deliver(). All but the jobs and `wake` is called
/// on the owner's thread.
class WorkBeside {
 public:
  using Done = std::function<void()>;
  using Job = std::function<Done()>;

  /// `wake` asks, from any thread, for deliver() soon on the owner's; it must not lose a call.
  explicit WorkBeside(std::function<void()> wake = {});
  /// Returns when every job has ended. What they answer is not done any more.
  ~WorkBeside() = default;
  WorkBeside(const WorkBeside&) = delete;
  WorkBeside& operator=(const WorkBeside&) = delete;

  /// Never waits. Where the job throws, or no thread can be started, `failed` is told why inside
  /// deliver(). Throws where there is no memory for the job, which is not under way then. `what`
  /// says in the report what was being done.
  void start(std::string what, Job job, Failed failed);
  /// A job is waiting or under way, or its answer has not been delivered.
  bool busy() const { return !underWay_.empty(); }
  /// Does what ended jobs answered, in their order. Answers whether there was any.
  bool deliver();
  /// Returns when every job has ended; their answers wait for deliver().
  void wait() { background_.finish(); }

 private:
  /// A job's way back. Nothing needs memory any more once it is under way.
  struct Answer {
    Job job;
    Done done;
    Failed failed;
    std::string words;  ///< what was thrown
    bool threw = false;
    bool ended = false;
  };

  void work(const std::string& what, Answer& answer);
  void end(Answer& answer);

  std::function<void()> wake_;
  std::mutex mutex_;
  std::deque<std::shared_ptr<Answer>> underWay_;  ///< only `ended` is shared with the jobs
  Background background_;                         ///< last: its jobs use everything above
};

}  // namespace kelvane
