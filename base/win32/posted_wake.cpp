#include "base/win32/posted_wake.h"

namespace kelvane::win32 {

namespace {

/// A full queue belongs to a program that is busy for longer than a moment.
constexpr LONGLONG kBetweenPosts = 50;  // ms

FILETIME fromNow(LONGLONG ms) {
  constexpr LONGLONG kPerMs = 10'000;  // in units of 100 ns; relative times are negative
  const auto due = static_cast<ULONGLONG>(-ms * kPerMs);
  return {static_cast<DWORD>(due), static_cast<DWORD>(due >> 32)};
}

}  // namespace

PostedWake::PostedWake(HWND window, UINT message, decltype(&PostMessageW) post)
    : window_(window), message_(message), post_(post) {}

PostedWake::~PostedWake() {
  PTP_TIMER const timer = timer_;
  if (!timer) return;
  SetThreadpoolTimer(timer, nullptr, 0, 0);
  WaitForThreadpoolTimerCallbacks(timer, TRUE);
  CloseThreadpoolTimer(timer);
}

void PostedWake::post() noexcept {
  if (post_(window_, message_, 0, 0)) return;
  if (GetLastError() == ERROR_INVALID_WINDOW_HANDLE) return;
  PTP_TIMER const timer = repeatingTimer();
  if (!timer) return;
  FILETIME due = fromNow(kBetweenPosts);
  SetThreadpoolTimer(timer, &due, 0, 0);
}

// Made when a queue was full for the first time: the threads of a timer are a megabyte each where
// the system does not keep them for all programs.
PTP_TIMER PostedWake::repeatingTimer() noexcept {
  if (PTP_TIMER const made = timer_) return made;
  PTP_TIMER const own = CreateThreadpoolTimer(again, this, nullptr);
  PTP_TIMER first = nullptr;
  if (timer_.compare_exchange_strong(first, own)) return own;
  if (own) CloseThreadpoolTimer(own);
  return first;
}

void CALLBACK PostedWake::again(PTP_CALLBACK_INSTANCE, void* self, PTP_TIMER) {
  static_cast<PostedWake*>(self)->post();
}

}  // namespace kelvane::win32
