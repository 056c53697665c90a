#pragma once

#include <atomic>
#include <optional>

#include "base/time.h"
#include "base/win32/posted_wake.h"
#include "contract/win32/com.h"
#include "contract/win32/com_ptr.h"
#include "contract/win32/server/face.h"

namespace kelvane::com {

/// What a component does with the turns that its host gives it.
class HostedComponent {
 public:
  virtual ~HostedComponent() = default;
  /// The object that a turn keeps alive, whatever it does.
  virtual IUnknown& identity() = 0;
  /// Does what is due, and takes in what woke the component.
  virtual void tick(Instant now) = 0;
  virtual void deliverEvents() = 0;
  /// When the next tick is due; kNever where none is.
  virtual Instant nextDue() = 0;
};

/// Gives a component its turns on the thread that created it: delivery of waiting events after a
/// wake-up, and a tick when one is due. Nothing is delivered while a caller is inside the
/// component, even when the call runs a message loop of its own (a dialog): that waits for the
/// call's end.
class ComponentHost final : public CallWatch {
 public:
  /// Throws std::system_error where the system has no window left.
  explicit ComponentHost(HostedComponent& component);
  ComponentHost(const ComponentHost&) = delete;
  ComponentHost& operator=(const ComponentHost&) = delete;
  ~ComponentHost() override;

  /// Asks for a turn; from any thread. Many wake-ups before a turn are one, and none is lost.
  void wake() noexcept;

  void callBegins() override { ++calls_; }
  void callEnds() override;

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM, LPARAM);
  void takeTurn();
  void setTimer();

  HostedComponent& component_;
  HWND window_ = nullptr;
  std::optional<win32::PostedWake> wake_;
  std::atomic<bool> awake_{false};
  bool held_ = false;  ///< a delivery fell due while a caller was inside
  int calls_ = 0;      ///< how deep callers are inside the component
  Instant timerDue_ = kNever;
  bool timerRuns_ = false;
};

}  // namespace kelvane::com
