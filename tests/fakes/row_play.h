#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "tests/fakes/row_window.h"

namespace kelvane::fakes {

/// Plays any bytes as keys, clicks and receiver events on a digit row, and watches the promises
/// that the row keeps whatever is done to it.
class RowPlay {
 public:
  /// What went wrong, in words; empty when nothing did.
  std::string play(std::span<const std::uint8_t> bytes) {
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
      const std::string wrong = act(bytes[i] % 12, bytes[i + 1]);
      if (!wrong.empty()) return wrong + " after byte " + std::to_string(i);
    }
    return {};
  }

 private:
  std::string act(int what, std::uint8_t with) {
    constexpr std::string_view typed = "0123456789.,\b\r+-:Dk \x1b";
    constexpr std::array keys{key::Up,     key::Down,     key::PadPlus, key::PadMinus,
                              key::Left,   key::Right,    key::Home,    key::Delete,
                              key::PageUp, key::PageDown, key::F1};
    switch (what) {
      default:
        return typeOne(typed[with % typed.size()]);
      case 5:
      case 6:
        return pressOne(keys[with % keys.size()]);
      case 7:
        window_.click(with % 9);
        break;
      case 8:
        window_.focus(with % 2 ? id::FrqFocus : id::TabStrip);
        break;
      case 9:
        locked_ = with % 4 == 0;
        window_.row.LockAll(locked_);
        break;
      case 10:
        newReceiver(with);
        break;
      case 11:
        window_.row.Step();
        break;
    }
    return window_.complaint();
  }

  std::string typeOne(char c) {
    const bool number = window_.row.Processed() ||
                        window_.row.TypedText().find_first_of("0123456789") != std::string::npos;
    const std::size_t before = window_.sent.size();
    window_.type(c);
    if (window_.sent.size() == before) return window_.complaint();
    const double hertz = window_.sent.back().hertz;
    if (c != '\r' && window_.receiver < 0) return "changed an unknown frequency";
    if (c == '\r' && number && (hertz < min_ || hertz > max_)) return "an entry out of range";
    return sentWell();
  }

  std::string pressOne(int code) {
    const std::size_t before = window_.sent.size();
    window_.press(code);
    if (window_.sent.size() == before) return window_.complaint();
    if (window_.receiver < 0) return "stepped from an unknown frequency";
    return locked_ ? "sent by a locked digit" : sentWell();
  }

  std::string sentWell() const {
    const double hertz = window_.sent.back().hertz;
    if (hertz < 0 || hertz > 999'999'999) return "sent what nine digits cannot show";
    if (window_.row.EntryInProgress()) return "sent and still in progress";
    return window_.complaint();
  }

  void newReceiver(std::uint8_t which) {
    struct Range {
      double max, min;
      int resolution;
    };
    constexpr std::array<Range, 4> ranges{
        {{29'999'999, 0, 1}, {30'000'000, 150'000, 10}, {999'999'999, 0, 1}, {1'599, 500, 100}}};
    constexpr std::array<double, 5> tuned{-1, 0, 7'123'456, 999'999'999, 29'999'999};
    const Range& range = ranges[which % ranges.size()];
    min_ = range.min;
    max_ = range.max;
    window_.receiver = tuned[which / ranges.size() % tuned.size()];
    window_.row.Boundary(max_, min_, range.resolution);
    window_.row.LockAll(locked_);
    window_.row.Value(window_.receiver);
  }

  RowWindow window_;
  bool locked_ = false;
  double min_ = 0;
  double max_ = 29'999'999;
};

}  // namespace kelvane::fakes
