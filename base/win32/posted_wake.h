#pragma once

#include <windows.h>

#include <atomic>

namespace kelvane::win32 {

/// A message that wakes a window, whatever happens: where the thread's queue is full and takes
/// none, it is posted again until it is taken, or the window is gone.
class PostedWake {
 public:
  /// `post` is the system's own function, but in tests.
  PostedWake(HWND window, UINT message, decltype(&PostMessageW) post = PostMessageW);
  /// Nothing is posted afterwards.
  ~PostedWake();
  PostedWake(const PostedWake&) = delete;
  PostedWake& operator=(const PostedWake&) = delete;

  /// From any thread.
  void post() noexcept;

 private:
  static void CALLBACK again(PTP_CALLBACK_INSTANCE, void* self, PTP_TIMER);
  PTP_TIMER repeatingTimer() noexcept;

  const HWND window_;
  const UINT message_;
  const decltype(&PostMessageW) post_;
  std::atomic<PTP_TIMER> timer_ = nullptr;  ///< none until a post was refused
};

}  // namespace kelvane::win32
