#include "contract/win32/server/component_host.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "contract/win32/server/type_library.h"

namespace kelvane::com {

namespace {

constexpr wchar_t kClassName[] = L"KelvaneComponentHost";
constexpr UINT kWake = WM_APP;
constexpr UINT_PTR kTimer = 1;
/// What a timer is due at that has fired and would fire again: set it anew in any case.
constexpr Instant kFired = Instant::min();

}  // namespace

ComponentHost::ComponentHost(HostedComponent& component) : component_(component) {
  WNDCLASSW type{};
  type.hInstance = ownModule();
  type.lpszClassName = kClassName;
  registerWindows(type);
  window_ = CreateWindowExW(0, kClassName, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            type.hInstance, nullptr);
  if (!window_) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                            "host window");
  }
  keep(window_, this);
  wake_.emplace(window_, kWake);
}

ComponentHost::~ComponentHost() {
  wake_.reset();
  endWindow(window_);
  // The class would outlive the library that holds its procedure. While a sibling's window still
  // uses it this fails, and the sibling does it.
  UnregisterClassW(kClassName, ownModule());
}

void ComponentHost::wake() noexcept {
  if (!awake_.exchange(true)) wake_->post();
}

void ComponentHost::callEnds() {
  if (--calls_ > 0) return;
  if (held_) {
    held_ = false;
    wake();
  }
  setTimer();
}

bool ComponentHost::handle(UINT message, WPARAM, LPARAM, LRESULT&) {
  if (message != kWake && message != WM_TIMER) return false;
  const ComPtr<IUnknown> alive(&component_.identity());
  if (message == WM_TIMER) timerDue_ = kFired;
  takeTurn();
  return true;
}

void ComponentHost::takeTurn() {
  // Before the work: what arrives during it asks for another turn.
  awake_ = false;
  component_.tick(std::chrono::steady_clock::now());
  setTimer();
  held_ = calls_ > 0;
  if (!held_) component_.deliverEvents();
}

void ComponentHost::setTimer() {
  const Instant due = component_.nextDue();
  if (due == timerDue_) return;
  timerDue_ = due;
  if (due == kNever) {
    if (std::exchange(timerRuns_, false)) KillTimer(window_, kTimer);
    return;
  }
  timerRuns_ = true;
  const auto wait = std::chrono::ceil<milliseconds>(due - std::chrono::steady_clock::now()).count();
  const auto limited = std::clamp<long long>(wait, USER_TIMER_MINIMUM, USER_TIMER_MAXIMUM);
  SetTimer(window_, kTimer, static_cast<UINT>(limited), nullptr);
}

}  // namespace kelvane::com
