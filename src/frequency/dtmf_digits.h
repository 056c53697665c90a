#pragma once

#include <array>
#include <string>
#include <string_view>

#include "receiver/receiver_set.h"

namespace kelvane {

/// Tunes receivers by the keys of a telephone keypad, as a tone decoder hears them: "7123#" tunes
/// to 7123 kHz, "*" is the decimal point, "#" and "*" alone are 100 Hz up and down. Each receiver
/// has an entry of its own, whether it is shown or not.
class DtmfDigits {
 public:
  explicit DtmfDigits(ReceiverComponent& component) : component_(component) {}

  /// A text of the decoder's for receiver rx: the key first, then "|" and the time in ms since the
  /// key before. A key without a time, or after more than 8000 ms, begins a new entry. Texts of
  /// another form and receivers that there are none of are ignored. Answers whether the receiver
  /// was asked for a frequency.
  bool Digits_Change(Index rx, std::string_view text);

  /// Receivers came, went or moved, each with what was typed for it.
  void receiversChanged(const ReceiverMoves& moves) { moves.carry(DtmfBuffer_, std::string()); }

  /// What is typed so far, in kHz.
  const std::string& DtmfBuffer(Index rx) const { return DtmfBuffer_.at(static_cast<size_t>(rx)); }

 private:
  bool tune(Index rx, std::string& buffer);
  bool step(Index rx, Hz hertz);

  ReceiverComponent& component_;
  std::array<std::string, kMostReceivers> DtmfBuffer_;
};

}  // namespace kelvane
