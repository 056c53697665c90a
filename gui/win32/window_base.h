#pragma once

#include <windows.h>

#include "gui/win32/common_controls.h"
#include "gui/win32/window_barrier.h"

namespace kelvane::win32 {

/// What each class of windows of ours stands on. It keeps the object with the window's handle and
/// hands it each message; whatever that throws ends here (windowBarrier). A class `Self` derives
/// from `WindowBase<Self>`, is its friend, and has
///
///     bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
///
/// which answers whether the message is dealt with, `result` being 0 where it says nothing else.
/// The object may be gone when `handle` returns.
template <class Self>
class WindowBase {
 protected:
  /// Makes the class of windows known, once; where it is known already nothing happens. The caller
  /// gives everything but the procedure.
  static void registerWindows(WNDCLASSW kind) {
    kind.lpfnWndProc = procedure;
    RegisterClassW(&kind);
  }

  /// From now on `self` hears the window's messages; nobody where it is null. A window that is made
  /// with the object as its parameter needs no such call.
  static void keep(HWND window, Self* self) {
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }

  /// The object goes before its window, which hears nothing of it any more and goes, too. Where the
  /// window has gone already nothing happens.
  static void endWindow(HWND window) {
    if (!window || !IsWindow(window)) return;
    keep(window, nullptr);
    DestroyWindow(window);
  }

  /// A control of the system's becomes a window of `self`: what `handle` leaves goes to the
  /// control's own procedure. Quicker than `watch`, which the system looks up anew with each
  /// message.
  static void takeOver(HWND control, Self* self) {
    keep(control, self);
    self->ownProcedure_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
  }

  /// What the window's own procedure makes of a message.
  LRESULT ownAnswer(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const {
    return CallWindowProcW(ownProcedure_, window, message, wParam, lParam);
  }

  /// The object that hears the window's messages, null where there is none.
  static Self* of(HWND window) {
    return reinterpret_cast<Self*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  }

  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
      const auto* create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
      if (create->lpCreateParams) keep(window, static_cast<Self*>(create->lpCreateParams));
    }
    Self* const self = of(window);
    const WNDPROC rest = self ? self->ownProcedure_ : DefWindowProcW;
    LRESULT result = 0;
    bool handled = false;
    const bool whole = windowBarrier(
        window, message, [&] { handled = self && self->handle(message, wParam, lParam, result); });
    if (handled || !whole) return whole ? result : 0;
    return CallWindowProcW(rest, window, message, wParam, lParam);
  }

  /// A control of the system's hears its messages from now on after `member` of `self`, which
  /// answers as `handle` does and is told which control it is.
  template <bool (Self::*member)(HWND, UINT, WPARAM, LPARAM, LRESULT&)>
  static void watch(HWND part, Self* self) {
    common_controls::setSubclass(part, partProcedure<member>, 1, reinterpret_cast<DWORD_PTR>(self));
  }

 private:
  template <bool (Self::*member)(HWND, UINT, WPARAM, LPARAM, LRESULT&)>
  static LRESULT CALLBACK partProcedure(HWND part, UINT message, WPARAM wParam, LPARAM lParam,
                                        UINT_PTR id, DWORD_PTR self) {
    if (message == WM_NCDESTROY) common_controls::removeSubclass(part, partProcedure<member>, id);
    LRESULT result = 0;
    bool handled = false;
    const bool whole = windowBarrier(part, message, [&] {
      handled = (reinterpret_cast<Self*>(self)->*member)(part, message, wParam, lParam, result);
    });
    if (handled || !whole) return whole ? result : 0;
    return common_controls::defSubclass(part, message, wParam, lParam);
  }

  WNDPROC ownProcedure_ = DefWindowProcW;  ///< hears what `handle` leaves
};

}  // namespace kelvane::win32
