#include "components/ambrel/win32/ambrel_windows.h"

namespace kelvane::ambrel {

namespace {

/// Shows a window, a new one where it was closed or never opened.
template <class Window>
void show(std::unique_ptr<Window>& window, HWND owner, AmbrelCore& core,
          win32::Keyboard keyboard = win32::Keyboard::Take) {
  if (!window || !window->window()) window = std::make_unique<Window>(owner, core);
  window->showModeless(keyboard);
}

}  // namespace

HWND AmbrelWindows::owner() const {
  const auto window = reinterpret_cast<HWND>(static_cast<INT_PTR>(owner_));
  return IsWindow(window) ? window : nullptr;
}

void AmbrelWindows::showKnownList(AmbrelCore& core) { show(list_, owner(), core); }

void AmbrelWindows::showSource(AmbrelCore& core) { show(source_, owner(), core); }

void AmbrelWindows::showData(AmbrelCore& core) {
  show(data_, owner(), core, win32::Keyboard::Leave);
}

void AmbrelWindows::moved() {
  if (data_) data_->follow();
}

void AmbrelWindows::follow() {
  if (list_) list_->follow();
  if (source_) source_->follow();
  if (data_) data_->follow();
}

void AmbrelWindows::closeAll() {
  list_.reset();
  source_.reset();
  data_.reset();
  // A box that is answered now would be so to nobody.
  messages_.reset();
}

}  // namespace kelvane::ambrel
