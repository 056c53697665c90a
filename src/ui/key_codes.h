#pragma once

namespace kelvane::key {

/// Key codes of key-down, as Windows numbers them.
enum KeyCode : int {
  Return = 13,
  ShiftKey = 16,
  CtrlKey = 17,
  AltKey = 18,
  Esc = 27,
  Space = 32,
  PageUp = 33,
  PageDown = 34,
  End = 35,
  Home = 36,
  Left = 37,
  Up = 38,
  Right = 39,
  Down = 40,
  Insert = 45,
  Delete = 46,
  PadPlus = 107,
  PadMinus = 109,
  F1 = 112,
  F2 = 113,
  F3 = 114,
  F4 = 115,
  F6 = 117,
  F7 = 118,
  F8 = 119,
  MainPlus = 187,  ///< of the main keyboard, wherever the layout has them
  MainMinus = 189,
};

/// Characters of key-press that have no sign.
enum Character : int { Backspace = 8, Tab = 9, Enter = 13, Escape = 27 };

/// Bits of a shift state.
enum Shift : int { ShiftHeld = 1, CtrlHeld = 2, AltHeld = 4 };

}  // namespace kelvane::key
