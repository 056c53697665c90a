#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <thread>

#include "base/barrier.h"

namespace kelvane {

/// A thread for one of the system's own dialogs, whose message loop would hold up everything else.
class DialogThread {
 public:
  DialogThread() = default;
  /// Closes a dialog that is open.
  ~DialogThread() { end(); }
  DialogThread(const DialogThread&) = delete;
  DialogThread& operator=(const DialogThread&) = delete;

  /// Runs `show`, which returns when the dialog has gone, on a thread of its own. What it throws is
  /// handed to `failed` there, and so is, on this thread, why none can be started. Nothing while
  /// another one runs.
  void start(std::function<void()> show, Failed failed = {});
  bool running() const { return running_; }
  /// Closes the dialog and returns when its thread has ended.
  void end();

 private:
  void run(const std::function<void()>& show, const Failed& failed);

  std::thread thread_;
  std::atomic<DWORD> id_{0};  ///< of the thread; 0 until it runs
  std::atomic<bool> running_{false};
};

}  // namespace kelvane
