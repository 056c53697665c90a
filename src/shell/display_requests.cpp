#include "shell/display_requests.h"

#include <algorithm>
#include <utility>

namespace kelvane {

namespace {

/// Between two looks whether an entry or a dialog has ended.
constexpr milliseconds kLookAgain{100};

}  // namespace

void DisplayRequests::chosen() {
  waiting_.reset();
  togetherUntil_ = {};
}

bool DisplayRequests::isNews(const std::string& name, Instant now) {
  Link& link = links_[name];
  return !std::exchange(link.up, true) && (!link.wentDown || now - *link.wentDown >= kNews);
}

void DisplayRequests::linkUp(const std::string& name, Index rx, bool wanted, Instant now) {
  if (!isNews(name, now) || !wanted) return;
  if (!waiting_ && now < togetherUntil_) {
    togetherUntil_ = now + kTogether;
    return;
  }
  waiting_ = Request{rx, now, true};
}

void DisplayRequests::shownLinkUp(const std::string& name, Instant now) {
  if (!isNews(name, now)) return;
  waiting_.reset();
  togetherUntil_ = now + kTogether;
}

void DisplayRequests::linkDown(const std::string& name, Instant now) {
  Link& link = links_[name];
  if (std::exchange(link.up, false)) link.wentDown = now;
}

void DisplayRequests::tunedByHand(Index rx, Instant now) {
  waiting_ = Request{rx, std::max(now, lookedUntil_), false};
}

std::optional<Index> DisplayRequests::due(bool busy, Instant now) {
  if (!waiting_ || now < handRests_ || now < waiting_->notBefore) return std::nullopt;
  if (busy) {
    lookAgain_ = now + kLookAgain;
    return std::nullopt;
  }
  const Request served = *std::exchange(waiting_, std::nullopt);
  (served.byLink ? togetherUntil_ : lookedUntil_) = now + (served.byLink ? kTogether : kLookAround);
  return served.rx;
}

Instant DisplayRequests::nextDue() const {
  return waiting_ ? std::max({handRests_, waiting_->notBefore, lookAgain_}) : kNever;
}

}  // namespace kelvane
