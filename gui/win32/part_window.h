#pragma once

#include "gui/win32/window_base.h"

namespace kelvane::win32 {

/// A part of a window, of a class of windows of its own: `member` of the owner hears its messages,
/// as WindowBase::handle does, and is told which part it is; nobody once this is gone. The owner's
/// window ends it.
template <class Owner, bool (Owner::*member)(HWND, UINT, WPARAM, LPARAM, LRESULT&)>
class PartWindow : private WindowBase<PartWindow<Owner, member>> {
  using Base = WindowBase<PartWindow>;

 public:
  struct Made {
    HWND parent;
    const wchar_t* windowClass;
    LPCWSTR cursor;
    const wchar_t* text;
    DWORD style;
    int id;
  };

  PartWindow(Owner& owner, const Made& made) : owner_(owner) {
    const HINSTANCE program = GetModuleHandleW(nullptr);
    WNDCLASSW own{};
    own.hInstance = program;
    own.hCursor = LoadCursorW(nullptr, made.cursor);
    own.lpszClassName = made.windowClass;
    Base::registerWindows(own);
    window_ = CreateWindowExW(
        0, made.windowClass, made.text, WS_CHILD | WS_VISIBLE | made.style, 0, 0, 0, 0, made.parent,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(made.id)), program, nullptr);
    Base::keep(window_, this);
  }
  ~PartWindow() {
    if (Base::of(window_) == this) Base::keep(window_, nullptr);
  }
  PartWindow(const PartWindow&) = delete;
  PartWindow& operator=(const PartWindow&) = delete;

  HWND window() const { return window_; }

 private:
  friend Base;
  bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    return (owner_.*member)(window_, message, wParam, lParam, result);
  }

  Owner& owner_;
  HWND window_ = nullptr;
};

}  // namespace kelvane::win32
