#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "receiver/receiver_set.h"
#include "ui/control.h"

namespace kelvane {

/// The words and colour for a link state code that is not "up"; every code has some.
struct LinkWords {
  std::string_view text;
  Colour colour;
};
LinkWords linkWords(Long code);

/// The status box `RxMask` over the frequency display: says in words why the shown receiver does
/// not answer, and blinks while it does not. Remembers the last code of every receiver.
class StatusBox {
 public:
  /// `RxWhy` has the component's own words, below.
  StatusBox(Control& RxMask, Control& RxWhy);

  /// A link reported a code.
  void reported(Index rx, Long code);
  /// Receivers came, went or moved; what each reported stays its own.
  void receiversChanged(const ReceiverMoves& moves);
  /// Shows the box exactly while the receiver does not answer, in its own words.
  void show(Index rx, bool online);
  /// The words for a receiver that does not answer.
  LinkWords wordsOf(Index rx) const;
  /// One tick of the blink timer. What is `held` for other programs, in words, takes turns with the
  /// box's own words; empty for nothing. `why` are the component's own words for a receiver that
  /// does not answer; they stay while the box blinks.
  void blink(bool online, const std::string& held, const std::string& why);
  /// Why the receiver does not answer: what lasts while the box blinks.
  const std::string& words() const { return words_; }

 private:
  Control& RxMask_;
  Control& RxWhy_;
  std::string words_;
  std::array<std::optional<Long>, kMostReceivers> lastCode_;
};

}  // namespace kelvane
