#pragma once

#include <functional>
#include <string>
#include <utility>

#include "base/result.h"
#include "base/time.h"

namespace kelvane::sondrel {

/// Keeps a server running that the operator has us start: starts it when it is wanted, and again
/// when it has died, each time a little later where it dies soon after its start.
class ServerKeeper {
 public:
  /// How the process is started, looked after and ended.
  struct Process {
    std::function<Result<>()> start;
    std::function<bool()> running;
    std::function<void()> end;
  };
  explicit ServerKeeper(Process process) : process_(std::move(process)) {}

  /// Starts it if it does not run, or says why it cannot be started. A server that died waits for
  /// its time all the same.
  Result<> want(Instant now);
  /// Ends it.
  void dismiss();
  /// Looks after it. Answers whether it was started anew.
  bool tick(Instant now);
  /// When tick() should be called next; kNever while no server is wanted.
  Instant nextDue() const;
  /// It runs, and was started so lately that it may not listen yet.
  bool justStarted(Instant now) const;

 private:
  void start(Instant now);

  Process process_;
  bool wanted_ = false;
  bool runs_ = false;
  Result<> started_;  ///< how the last start went
  Instant startedAt_{};
  Instant lookAt_ = kNever;
  Instant startAt_{};
  milliseconds backOff_{0};
};

}  // namespace kelvane::sondrel
