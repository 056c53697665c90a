#include "components/sondrel/rigctld/server_keeper.h"

#include <algorithm>

namespace kelvane::sondrel {

namespace {

constexpr milliseconds kLookEvery{250};
constexpr milliseconds kFirstPause{500};
constexpr milliseconds kLongestPause{30'000};
// Who ran so long was no failed start.
constexpr milliseconds kSettled{10'000};
// A server opens its port only after it has tried its radio.
constexpr milliseconds kJustStarted{6000};

}  // namespace

Result<> ServerKeeper::want(Instant now) {
  wanted_ = true;
  if (!runs_ && now >= startAt_) start(now);
  return started_;
}

void ServerKeeper::dismiss() {
  if (runs_) process_.end();
  wanted_ = false;
  runs_ = false;
  backOff_ = milliseconds(0);
  startAt_ = {};
  started_ = {};
}

bool ServerKeeper::tick(Instant now) {
  if (!wanted_) return false;
  if (runs_ && now >= lookAt_) {
    lookAt_ = now + kLookEvery;
    if (process_.running()) return false;
    runs_ = false;
    if (now - startedAt_ >= kSettled) backOff_ = milliseconds(0);
    startAt_ = now + backOff_;
    backOff_ = std::clamp(backOff_ * 2, kFirstPause, kLongestPause);
  }
  if (runs_ || now < startAt_) return false;
  start(now);
  return runs_;
}

Instant ServerKeeper::nextDue() const {
  if (!wanted_) return kNever;
  return runs_ ? lookAt_ : startAt_;
}

bool ServerKeeper::justStarted(Instant now) const {
  return runs_ && now < startedAt_ + kJustStarted;
}

void ServerKeeper::start(Instant now) {
  started_ = process_.start();
  runs_ = started_.ok();
  startedAt_ = now;
  lookAt_ = now + kLookEvery;
  // What cannot be started at all is tried again seldom: someone has to change something first.
  startAt_ = now + kLongestPause;
}

}  // namespace kelvane::sondrel
