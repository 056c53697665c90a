#include "ui/keyboard.h"

#include "ui/control_ids.h"
#include "ui/main_controls.h"

namespace kelvane {

void Keyboard::focus(int control) {
  if (window_.active() && takesKeys(control)) window_.focus(control);
}

bool Keyboard::takesKeys(int control) const {
  if (control == id::TabStrip) return !view_.TabStrip.tabs.empty();
  const Control* shown = controlOf(view_, control);
  return shown && shown->visible && shown->enabled;
}

void Keyboard::settle() {
  if (focused_ != kNone && !takesKeys(focused_)) focus(id::FrqFocus);
}

void Keyboard::lostFocus(int control) {
  if (control == focused_) focused_ = kNone;
}

}  // namespace kelvane
