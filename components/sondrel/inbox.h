#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace kelvane::sondrel {

/// Carries work from other threads to the user-interface thread.
class Inbox {
 public:
  /// `wake` is called, by whichever thread posts, once for each batch of work that waits; it asks
  /// for run() on the user-interface thread, must not run it itself, and must not lose a call.
  explicit Inbox(std::function<void()> wake);

  /// From any thread. Work is run in the order in which it was posted.
  void post(std::function<void()> work);
  /// Runs what was posted before the call. On the user-interface thread.
  void run();
  /// Nothing is run and nobody woken any more; returns when no other thread is inside post().
  void shut();

 private:
  std::mutex mutex_;
  std::function<void()> wake_;
  std::vector<std::function<void()>> waiting_;
  bool closed_ = false;
};

/// One receiver's way into the inbox. Copies are handles of the same box, and a thread may keep one
/// for longer than the receiver lives: after close() what is posted, or still waits, is dropped.
class Mailbox {
 public:
  explicit Mailbox(std::shared_ptr<Inbox> inbox)
      : inbox_(std::move(inbox)), open_(std::make_shared<bool>(true)) {}

  /// From any thread.
  void post(std::function<void()> work) const;
  /// On the user-interface thread.
  void close() { *open_ = false; }

 private:
  std::shared_ptr<Inbox> inbox_;
  std::shared_ptr<bool> open_;  ///< touched on the user-interface thread alone
};

}  // namespace kelvane::sondrel
