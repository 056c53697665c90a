#pragma once

#include <array>
#include <string_view>

#include "contract/types.h"
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
  explicit StatusBox(Control& RxMask);

  /// A link reported a code.
  void reported(Index rx, Long code);
  /// The receivers were made anew: what was reported belongs to no one any more.
  void forget();
  /// Shows the box exactly while the receiver does not answer, in its own words.
  void show(Index rx, bool online);
  /// One tick of the blink timer.
  void blink(bool online);

 private:
  static constexpr Long kNothingYet = 0;

  Control& RxMask_;
  std::array<Long, kMostReceivers> lastCode_{};
};

}  // namespace kelvane
