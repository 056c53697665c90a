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
    : window_(window),
      message_(message),
      post_(post),
      timer_(CreateThreadpoolTimer(again, this, nullptr)) {}

PostedWake::~PostedWake() {
  if (!timer_) return;
  SetThreadpoolTimer(timer_, nullptr, 0, 0);
  WaitForThreadpoolTimerCallbacks(timer_, TRUE);
  CloseThreadpoolTimer(timer_);
}

void PostedWake::post() noexcept {
  if (post_(window_, message_, 0, 0)) return;
  if (GetLastError() == ERROR_INVALID_WINDOW_HANDLE || !timer_) return;
  FILETIME due = fromNow(kBetweenPosts);
  SetThreadpoolTimer(timer_, &due, 0, 0);
}

void CALLBACK PostedWake::again(PTP_CALLBACK_INSTANCE, void* self, PTP_TIMER) {
  static_cast<PostedWake*>(self)->post();
}

}  // namespace kelvane::win32
