#pragma once

#include <array>
#include <optional>

#include "base/time.h"
#include "receiver/receiver_set.h"

namespace kelvane {

/// Who has the display. The operator: by a tab. A receiver may take it, where the options say so,
/// when its link comes up or when a hand tunes it; but never while the operator is at work, that is
/// in the middle of an entry or a dialog, or within three seconds of his last key, click or turn of
/// the wheel in any of the program's windows. What comes meanwhile waits, and of several the newest
/// counts; a tab that he presses drops it.
///
/// A link shows its receiver when it was down for a minute or never up: one that comes and goes is
/// no news. Of links that come up together the first shows its receiver, and none does together
/// with the one of the receiver that is shown already: at the start, the first.
class DisplayRequests {
 public:
  static constexpr milliseconds kHandRests{3000};   ///< from the last act to the next change
  static constexpr milliseconds kNews{60'000};      ///< a link down for so long is news again
  static constexpr milliseconds kSameMoment{3000};  ///< at most between links that come up together
  static constexpr milliseconds kBetweenHands{1000};  ///< at least between two hands' receivers

  /// The operator pressed a key or a button of the mouse, or turned the wheel.
  void handMoved(Instant now) { operatorRestsAt_ = now + kHandRests; }
  /// The operator chose what is shown.
  void chosen();
  /// Receivers came, went or moved: what waits goes with its receiver.
  void receiversChanged(const ReceiverMoves& moves);

  /// The link of a receiver came up. `wanted` where the options let it show itself.
  void linkUp(Index rx, bool wanted, Instant now);
  /// The same for the receiver that is shown already: it stays.
  void shownLinkUp(Index rx, Instant now);
  /// The link of a receiver reported that it is not up.
  void linkDown(Index rx, Instant now);
  /// A hand tuned this receiver, which is not the one shown.
  void tunedByHand(Index rx, Instant now);

  /// The receiver to show now; it waits no more. `busy` in the middle of an entry or a dialog.
  std::optional<Index> due(bool busy, Instant now);
  /// When `due` may have something to say next.
  Instant nextDue() const;

 private:
  struct Link {
    bool up = false;
    std::optional<Instant> wentDown = {};
  };
  struct Request {
    Index rx;
    Instant notBefore;
    bool byLink;
  };

  /// Notes a link that is up now; answers whether it was down for long enough.
  bool isNews(Index rx, Instant now);

  std::optional<Request> waiting_;
  Instant operatorRestsAt_{};
  Instant checkAgainAt_{};     ///< something waits for the end of an entry or a dialog
  Instant sameMomentUntil_{};  ///< links that come up until then belong to one that was shown
  Instant nextHandAt_{};       ///< a hand's receiver is looked at so long before another one's
  std::array<Link, kMostReceivers> links_;
};

}  // namespace kelvane
