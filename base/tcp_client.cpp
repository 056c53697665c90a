#include "base/tcp_client.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "base/text.h"

namespace kelvane {

namespace {

// Windows takes two seconds to say that nobody listens on another machine.
constexpr milliseconds kAttemptLimit{3000};
constexpr milliseconds kLookupLimit{5000};

}  // namespace

TcpClient::TcpClient() = default;

void TcpClient::open(const std::string& host, std::int32_t port, Instant now) {
  close();
  state_ = State::LookingUp;
  lastFailure_ = NetFailure::BadAddress;
  giveUpAt_ = now + kLookupLimit;
  if (host.empty() || port < 1 || port > 65535) {
    state_ = State::Broken;
    return wake();
  }
  if (equalIgnoringCase(host, "localhost")) {
    // This computer, also where nobody has told it its own name.
    for (const char* own : {"127.0.0.1", "::1"}) {
      const auto found = NameLookup(own, static_cast<std::uint16_t>(port), wake_).result();
      if (found) addresses_.insert(addresses_.end(), found->begin(), found->end());
    }
    state_ = State::NextAddress;
    return wake();
  }
  lookup_ = std::make_unique<NameLookup>(host, static_cast<std::uint16_t>(port), wake_);
  if (lookup_->result()) wake();
}

void TcpClient::close() {
  socket_.close();
  lookup_.reset();
  addresses_.clear();
  next_ = 0;
  state_ = State::Closed;
  giveUpAt_ = kNever;
}

TcpClient::Events TcpClient::wait(Instant now, Instant until) {
  if (const auto failure = advance(now)) return fail(*failure);
  constexpr Instant::duration kLongest = std::chrono::hours(1);
  const auto end = std::min({until, giveUpAt_, now + kLongest});
  const auto happened = socket_.wait(std::max(end - now, Instant::duration::zero()));
  if (happened.failed && state_ == State::Open) return fail(*happened.failed);
  Events events;
  if (happened.failed) {
    lastFailure_ = *happened.failed;
    state_ = State::NextAddress;
  }
  if (happened.connected) {
    state_ = State::Open;
    giveUpAt_ = kNever;
    events.opened = true;
  }
  if (happened.readable) {
    received_.clear();
    if (!socket_.receive(received_)) return fail(NetFailure::Ended);
    events.received = received_;
  }
  return events;
}

void TcpClient::send(std::string_view bytes) {
  if (state_ != State::Open || socket_.send(bytes)) return;
  // Told by the next wait, as every other end of a connection.
  lastFailure_ = NetFailure::Ended;
  state_ = State::Broken;
  wake();
}

/// Goes on with an opening whose addresses have been found, or whose attempt failed or took too
/// long.
std::optional<NetFailure> TcpClient::advance(Instant now) {
  if (state_ == State::Broken) return lastFailure_;
  if (state_ == State::LookingUp) {
    if (auto found = lookup_->result()) {
      addresses_ = std::move(*found);
      lookup_.reset();
      state_ = State::NextAddress;
    } else if (now >= giveUpAt_) {
      return NetFailure::BadAddress;
    }
  }
  if (state_ == State::Connecting && now >= giveUpAt_) {
    lastFailure_ = NetFailure::TimedOut;
    state_ = State::NextAddress;
  }
  if (state_ == State::NextAddress && !tryNext(now)) return lastFailure_;
  return std::nullopt;
}

bool TcpClient::tryNext(Instant now) {
  while (next_ < addresses_.size()) {
    const auto failure = socket_.begin(addresses_[next_++]);
    giveUpAt_ = now + kAttemptLimit;
    state_ = State::Connecting;
    if (!failure) return true;
    // An address of a kind that this computer does not have says less than a refusal before it.
    if (lastFailure_ == NetFailure::BadAddress) lastFailure_ = *failure;
  }
  return false;
}

TcpClient::Events TcpClient::fail(NetFailure failure) {
  close();
  Events events;
  events.failed = failure;
  return events;
}

}  // namespace kelvane
