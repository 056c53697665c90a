#include "panel/display_requests.h"

#include <algorithm>
#include <utility>

namespace kelvane {

namespace {

/// Between two looks whether an entry or a dialog has ended.
constexpr milliseconds kLookAgain{100};

}  // namespace

void DisplayRequests::chosen() {
  waiting_.reset();
  sameMomentUntil_ = {};
}

void DisplayRequests::receiversChanged(const ReceiverMoves& moves) {
  moves.carry(links_, Link{});
  if (waiting_) waiting_->rx = moves(waiting_->rx);
  if (waiting_ && waiting_->rx == -1) waiting_.reset();
}

bool DisplayRequests::isNews(Index rx, Instant now) {
  if (rx < 0 || rx >= kMostReceivers) return false;
  Link& link = links_[rx];
  return !std::exchange(link.up, true) && (!link.wentDown || now - *link.wentDown >= kNews);
}

void DisplayRequests::linkUp(Index rx, bool wanted, Instant now) {
  if (!isNews(rx, now) || !wanted) return;
  if (!waiting_ && now < sameMomentUntil_) {
    sameMomentUntil_ = now + kSameMoment;
    return;
  }
  waiting_ = Request{rx, now, true};
}

void DisplayRequests::shownLinkUp(Index rx, Instant now) {
  if (!isNews(rx, now)) return;
  waiting_.reset();
  sameMomentUntil_ = now + kSameMoment;
}

void DisplayRequests::linkDown(Index rx, Instant now) {
  if (rx < 0 || rx >= kMostReceivers) return;
  Link& link = links_[rx];
  if (std::exchange(link.up, false)) link.wentDown = now;
}

void DisplayRequests::tunedByHand(Index rx, Instant now) {
  waiting_ = Request{rx, std::max(now, nextHandAt_), false};
}

std::optional<Index> DisplayRequests::due(bool busy, Instant now) {
  if (!waiting_ || now < operatorRestsAt_ || now < waiting_->notBefore) return std::nullopt;
  if (busy) {
    checkAgainAt_ = now + kLookAgain;
    return std::nullopt;
  }
  const Request served = *std::exchange(waiting_, std::nullopt);
  (served.byLink ? sameMomentUntil_ : nextHandAt_) =
      now + (served.byLink ? kSameMoment : kBetweenHands);
  return served.rx;
}

Instant DisplayRequests::nextDue() const {
  return waiting_ ? std::max({operatorRestsAt_, waiting_->notBefore, checkAgainAt_}) : kNever;
}

}  // namespace kelvane
