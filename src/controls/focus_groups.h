#pragma once

#include "ui/keyboard.h"

namespace kelvane {

/// The keyboard focus among the panel's groups: typing, the digits, the receiver's buttons, the
/// panel's buttons, the tabs. The tab key is taken by the receivers, so that other keys walk here.
class FocusGroups {
 public:
  explicit FocusGroups(Keyboard& keyboard) : keyboard_(keyboard) {}

  /// The control that has the focus now; told before each key.
  void setFocused(int control) { focused_ = control; }
  /// To the next (1) or previous (-1) group that has something to offer.
  void nextGroup(int direction);
  /// To the next or previous button of the group; answers false where the focus is on none.
  bool nextButton(int direction);
  /// Whether a button has the focus.
  bool onButton() const;

 private:
  /// The place among the group's controls to which the focus goes; -1 for none.
  int entryOf(int group) const;

  Keyboard& keyboard_;
  int focused_ = 0;
};

}  // namespace kelvane
