#pragma once

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frequency/cls_frq_digit.h"
#include "ui/control_ids.h"
#include "ui/key_codes.h"

namespace kelvane::fakes {

/// A window around a digit row that does with the keyboard focus what Windows does: a control that
/// gets it takes it from another, both are told at once, and a hidden or disabled one never gets
/// it. Keys go where the focus is, and what comes back committed is kept.
class RowWindow : public WindowCommands {
 public:
  struct Sent {
    double hertz;
    bool channelized;
    bool operator==(const Sent&) const = default;
  };

  void focus(int control) override {
    const int digit = control - id::FrqDigit;
    if (digit >= 0 && digit < 9 && !(FrqDigit[digit].enabled && FrqDigit[digit].visible)) return;
    if (control == focused) return;
    const int left = std::exchange(focused, control);
    if (left >= id::FrqDigit && left < id::FrqDigit + 9) row.Focus(left - id::FrqDigit, false);
    if (digit >= 0 && digit < 9) row.Focus(digit, true);
    // A window that is told that the hand left the row shows what the receiver has.
    if (control == id::FrqFocus && !row.EntryInProgress()) row.Value(receiver);
  }
  bool active() const override { return true; }
  void beep() override {}
  void runPending() override {}
  void close() override {}
  bool modalOpen() const override { return false; }
  std::int32_t handle() const override { return 0; }

  void click(int digit) { focus(id::FrqDigit + digit); }

  /// A key goes down; answers whether the row consumed it.
  bool press(int keyCode) {
    int index = focused - id::FrqDigit;
    if (index < 0 || index >= 9) return false;
    bool committed = false;
    row.KeyDown(index, keyCode, 0, receiver, committed);
    if (committed) sent.push_back({row.Value(), false});
    return keyCode == 0;
  }

  /// One character; answers what is left of it.
  int type(int character) {
    int index = focused - id::FrqDigit;
    bool committed = false;
    if (index >= 0 && index < 9) {
      row.KeyPress(index, character, receiver, committed);
      if (committed) sent.push_back({row.Value(), false});
    } else {
      row.ProcessKey(character, receiver, committed);
      if (committed) sent.push_back({row.Value(), row.Chn()});
    }
    return character;
  }
  void type(std::string_view characters) {
    for (const char c : characters) type(static_cast<unsigned char>(c));
  }

  std::string digits() const {
    std::string text;
    for (const Control& digit : FrqDigit) text += digit.text;
    return text;
  }

  /// What is wrong with the row, in words; empty while it keeps its promises.
  std::string complaint() const {
    int selected = 0;
    for (const Control& digit : FrqDigit) {
      if (digit.text.size() != 1 ||
          std::string_view(" 0123456789x").find(digit.text[0]) == std::string_view::npos)
        return "a digit shows \"" + digit.text + "\"";
      selected += digit.selected;
      if (digit.selected && !digit.enabled) return "a disabled digit is selected";
    }
    if (selected != (row.Processed() ? 1 : 0)) return "selected digits and Processed disagree";
    if (row.TypedText().size() > 40) return "typed text grows without end";
    return {};
  }

  Control FrqFrame, FrqDotit, FrqFocus, FrqBfo;
  std::array<Control, 9> FrqDigit;
  double receiver = 14'250'000;
  int focused = id::FrqFocus;
  std::vector<Sent> sent;
  clsFrqDigit row{{FrqFrame, FrqDotit, FrqFocus, FrqDigit, FrqBfo}, *this};
};

}  // namespace kelvane::fakes
