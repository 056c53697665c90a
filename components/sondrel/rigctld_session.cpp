#include "components/sondrel/rigctld_session.h"

#include <algorithm>
#include <utility>

namespace kelvane::sondrel {

namespace {

constexpr milliseconds kReplyLimit{2000};
constexpr milliseconds kLongestReplyLimit{15000};
// A server that is blocked by its radio answers within this time, or never.
constexpr milliseconds kGiveUp{30000};
constexpr milliseconds kQuiet{150};
constexpr milliseconds kLongestDrain{2000};
constexpr milliseconds kBetweenAttempts{1000};
constexpr milliseconds kFirstBackOff{2000};
constexpr milliseconds kLongestBackOff{16000};
// The link is up when frequency and mode are known; a radio that refuses slowly tells the rest of
// what it can do later.
constexpr milliseconds kGreetingLimit{700};
// What is due is done within milliseconds: only a computer that slept passes it over for so long.
constexpr milliseconds kSleep{10'000};

LinkState stateOf(CloseReason reason) {
  switch (reason) {
    case CloseReason::BadAddress:
      return LinkState::BadAddress;
    case CloseReason::Refused:
      return LinkState::CannotOpen;
    case CloseReason::Unreachable:
      return LinkState::NoLoop;
    case CloseReason::TimedOut:
      return LinkState::Timeout;
    case CloseReason::NoServer:
      return LinkState::Configuration;
    case CloseReason::Ended:
      break;
  }
  return LinkState::Error;
}

}  // namespace

RigctldSession::RigctldSession(RigctldOptions options)
    : options_(options),
      replyLimit_(kReplyLimit),
      handshake_(options.model),
      backOff_(kFirstBackOff),
      readings_(options.bfoLimit),
      plan_(options.rates) {}

// --- the operator's side

void RigctldSession::open(bool reopen, Instant now) {
  answerOwed_ = true;
  const bool running = phase_ == Phase::Running;
  const bool up = running && said_ == LinkState::Up;
  const bool deaf = running && !up && !flight_ && !health_.heartbeat(*can_);
  if (phase_ == Phase::Closed || (up && reopen) || deaf) return startConnection();
  if (up) return say(LinkState::Up);
  if (flight_ && flight_->late) flight_->limit = now + kReplyLimit;
  nextAttempt_ = now;
  pump(now);
}

void RigctldSession::tryAgain() {
  if (phase_ == Phase::Closed && said_) startConnection();
}

void RigctldSession::close() {
  drop();
  said_.reset();
  answerOwed_ = false;
  reopenAt_ = kNever;
  reports_.clear();
}

void RigctldSession::request(RigRequest request, Instant now) {
  if (said_ != LinkState::Up) return;
  requests_.put(std::move(request));
  pump(now);
}

void RigctldSession::show(bool shown) { plan_.show(shown); }

// --- the connection's side

void RigctldSession::connected(Instant now) {
  if (phase_ != Phase::Connecting) return;
  phase_ = Phase::Greeting;
  greetingSince_ = now;
  nextAttempt_ = now;
  pump(now);
}

void RigctldSession::received(std::string_view bytes, Instant now) {
  if (phase_ != Phase::Greeting && phase_ != Phase::Running) return;
  const auto progress = reader_.feed(bytes);
  if (progress == ReplyReader::Progress::Flooded) {
    return fail(handshake_.reachedRadio() ? LinkState::Error : LinkState::BadIdentity);
  }
  if (reader_.waiting() && reader_.endsByQuiet()) quietAt_ = now + kQuiet;
  if (reader_.strayed()) waitForQuiet(now);
  if (phase_ == Phase::Closed) return;
  if (progress == ReplyReader::Progress::Complete) replied(reader_.take(), now);
  pump(now);
}

void RigctldSession::closed(CloseReason reason, Instant now) {
  if (phase_ == Phase::Closed) return;
  // A server whose radio is silent or gone ends the connection without an answer, and takes the
  // next one at once: the link is sound, so nobody else will try again.
  const bool radioAsked =
      phase_ == Phase::Greeting ? handshake_.reachedRadio() : said_ == LinkState::NotResponding;
  const bool mute = phase_ != Phase::Connecting && radioAsked && flight_ && !reader_.partial();
  fail(mute ? LinkState::NotResponding : stateOf(reason));
  if (!mute) return;
  reopenAt_ = now + backOff_;
  backOff_ = std::min(backOff_ * 2, kLongestBackOff);
}

void RigctldSession::tick(Instant now) {
  if (slept(now)) {
    // Whatever was under way is lost, and the connection most likely too, though nobody tells.
    fail(LinkState::Timeout);
    return startConnection();
  }
  if (now >= reopenAt_) startConnection();
  if (now >= quietAt_) {
    quietAt_ = kNever;
    if (reader_.quiet() == ReplyReader::Progress::Complete) replied(reader_.take(), now);
  }
  if (flight_ && now >= flight_->limit) overdue();
  if (flight_ && now >= flight_->sent + kGiveUp) fail(LinkState::Timeout);
  pump(now);
}

Instant RigctldSession::nextDue() const {
  if (phase_ == Phase::Closed) return reopenAt_;
  if (phase_ == Phase::Connecting) return kNever;
  if (flight_) return std::min({quietAt_, flight_->limit, flight_->sent + kGiveUp});
  Instant due = kNever;
  if (phase_ == Phase::Running && said_ != LinkState::Up && !health_.heartbeat(*can_)) {
    due = kNever;  // nothing is left to ask: the next opening begins anew
  } else if (phase_ == Phase::Greeting || said_ != LinkState::Up) {
    due = nextAttempt_;
  } else if (!requests_.empty()) {
    due = drainUntil_;
  } else {
    due = std::min(readings_.nextReadBack(), plan_.nextDue());
    if (!handshake_.finished()) due = std::min(due, plan_.restUntil());
  }
  return std::max(due, drainUntil_);
}

std::string RigctldSession::takeOutput() { return std::exchange(output_, {}); }

std::vector<RigReport> RigctldSession::takeReports() { return std::exchange(reports_, {}); }

// --- the link's life

void RigctldSession::startConnection() {
  drop();
  phase_ = Phase::Connecting;
  wanted_ = ++connections_;
  handshake_ = RigctldHandshake(options_.model);
  readings_.restart();
  health_ = {};
  replyLimit_ = kReplyLimit;
}

void RigctldSession::drop() {
  phase_ = Phase::Closed;
  wanted_ = 0;
  reader_ = {};
  flight_.reset();
  requests_.clear();
  output_.clear();
  quietAt_ = kNever;
  drainUntil_ = {};
  drainSince_ = kNever;
  reopenAt_ = kNever;
}

void RigctldSession::fail(LinkState state) {
  drop();
  say(state);
}

void RigctldSession::say(LinkState state) {
  if (state != LinkState::Up) requests_.clear();
  if (said_ == state && !answerOwed_) return;
  said_ = state;
  answerOwed_ = false;
  if (state == LinkState::Up) backOff_ = kFirstBackOff;
  reports_.push_back(LinkReport{state});
}

// --- replies

void RigctldSession::waitForQuiet(Instant now) {
  if (now >= drainUntil_) drainSince_ = now;
  drainUntil_ = now + kQuiet;
  if (now - drainSince_ > kLongestDrain) fail(LinkState::Error);
}

void RigctldSession::overdue() {
  if (reader_.partial() && !reader_.endsByQuiet()) return fail(LinkState::Error);
  flight_->late = true;
  flight_->limit = kNever;
  // A radio that is known to be silent makes its server slow: that is no other fault.
  const bool radioSilent = said_ == LinkState::NotResponding;
  say(radioSilent ? LinkState::NotResponding : LinkState::Timeout);
}

bool RigctldSession::slept(Instant now) const {
  const bool connected = phase_ == Phase::Greeting || phase_ == Phase::Running;
  return connected && nextDue() < now - kSleep;
}

void RigctldSession::replied(const Reply& reply, Instant now) {
  const Flight flight = *std::exchange(flight_, std::nullopt);
  quietAt_ = kNever;
  const auto took = std::chrono::duration_cast<milliseconds>(now - flight.sent);
  plan_.answered(flight.sent, now);
  // A server that is slow by nature is not said to be lost at each command.
  replyLimit_ = std::clamp(took * 3 / 2, kReplyLimit, kLongestReplyLimit);
  // The small servers write an error twice.
  const bool extended = handshake_.capabilities().dialect == Dialect::Extended;
  if (!reply.ok() && !extended) waitForQuiet(now);
  switch (flight.purpose) {
    case Purpose::Greet:
      phase_ == Phase::Greeting ? greeted(reply, now) : probed(reply, now);
      break;
    case Purpose::Read:
      gotReading(flight.item, reply, now);
      break;
    case Purpose::Order:
      gotOrder(flight.order, reply, now);
      break;
  }
  collect();
}

void RigctldSession::greeted(const Reply& reply, Instant now) {
  const auto item = handshake_.asking();
  const auto trouble = handshake_.take(reply);
  if (trouble == LinkState::BadIdentity || trouble == LinkState::Configuration) {
    return fail(*trouble);
  }
  nextAttempt_ = trouble ? now + kBetweenAttempts : now;
  if (trouble) return say(*trouble);
  if (item) readings_.take(*item, reply, now);
  const bool longEnough = now - greetingSince_ >= kGreetingLimit;
  if (handshake_.finished() || (handshake_.usable() && longEnough)) comeUp(now);
}

void RigctldSession::comeUp(Instant now) {
  phase_ = Phase::Running;
  can_ = std::make_shared<const RigctldCapabilities>(limited());
  reports_.push_back(CapabilityReport{can_});
  readings_.learn(can_, true);
  collect();
  plan_.start(health_.polled(*can_), now);
  say(LinkState::Up);
}

void RigctldSession::probed(const Reply& reply, Instant now) {
  const auto item = handshake_.asking();
  handshake_.take(reply);
  if (item) readings_.take(*item, reply, now);
  if (!handshake_.finished() || handshake_.capabilities().readable == can_->readable) return;
  can_ = std::make_shared<const RigctldCapabilities>(limited());
  reports_.push_back(CapabilityReport{can_});
  readings_.learn(can_, false);
  plan_.start(health_.polled(*can_), now);
}

void RigctldSession::gotReading(RigItem item, const Reply& reply, Instant now) {
  const auto mode = readings_.situation().mode;
  const bool good = readings_.take(item, reply, now);
  if (!good) readings_.unreadable(item);
  if (readings_.situation().mode != mode) health_.modeChanged();
  const auto finding = health_.judge(item, reply, good, said_ == LinkState::Up, *can_);
  if (finding.drop) return fail(*finding.link);
  if (finding.ask) askHeartbeat();
  nextAttempt_ = finding.ask ? now : now + kBetweenAttempts;
  plan_.start(health_.polled(*can_), now);
  // Any answer ends a silence; a radio's trouble ends with its heartbeat alone.
  const bool answered = said_ == LinkState::Timeout && !finding.ask;
  if (finding.link || answered) recover(finding.link.value_or(LinkState::Up));
}

void RigctldSession::recover(LinkState state) {
  const bool troubled = said_ == LinkState::NotResponding || said_ == LinkState::Error;
  if (state == LinkState::Up && troubled) handshake_.askAgain();
  say(state);
}

void RigctldSession::gotOrder(const RigOrder& order, const Reply& reply, Instant now) {
  if (!reply.ok()) {
    readings_.refused(order, now);
    if (stateOfError(*reply.report)) askHeartbeat();
    return;
  }
  readings_.accepted(order, requests_.waits(order.request.item), now);
  if (order.request.item == RigItem::Mode) plan_.hurry(RigItem::Frequency);
  if (said_ == LinkState::Timeout) say(LinkState::Up);
}

void RigctldSession::askHeartbeat() {
  if (const auto beat = health_.heartbeat(*can_)) plan_.hurry(*beat);
}

// --- what to send next

void RigctldSession::pump(Instant now) {
  if (flight_ || now < drainUntil_) return;
  if (phase_ == Phase::Greeting && now >= nextAttempt_) {
    if (auto question = handshake_.next())
      send(std::move(*question), {Purpose::Greet, {}, {}, {}, {}}, now);
    return;
  }
  if (phase_ != Phase::Running) return;
  if (said_ != LinkState::Up) {
    if (const auto beat = health_.heartbeat(*can_); beat && now >= nextAttempt_) read(*beat, now);
    return;
  }
  if (sendRequest(now)) return;
  if (const auto item = readings_.takeReadBack(now)) return read(*item, now);
  if (!handshake_.finished() && now >= plan_.restUntil()) {
    return send(*handshake_.next(), {Purpose::Greet, {}, {}, {}, {}}, now);
  }
  if (const auto item = plan_.take(now)) read(*item, now);
}

bool RigctldSession::sendRequest(Instant now) {
  while (auto request = requests_.take()) {
    auto order = orderFor(*request, *can_, readings_.situation(), handshake_.commands());
    if (order) {
      auto command = order->command;
      send(std::move(command), {Purpose::Order, {}, std::move(*order), {}, {}}, now);
      return true;
    }
    readings_.withoutOrder(*request);
    collect();
  }
  return false;
}

void RigctldSession::read(RigItem item, Instant now) {
  send(handshake_.commands().get(item), {Purpose::Read, item, {}, {}, {}}, now);
}

void RigctldSession::send(RigCommand command, Flight flight, Instant now) {
  flight.sent = now;
  flight.limit = now + replyLimit_;
  flight_ = std::move(flight);
  quietAt_ = kNever;
  reader_.begin(std::move(command.rule));
  output_ = std::move(command.line);
}

/// Moves on what the readings found; not before the link is up, when all of it is reported at once.
void RigctldSession::collect() {
  if (phase_ != Phase::Running) return;
  for (auto& report : readings_.takeReports()) reports_.push_back(std::move(report));
  auto retune = readings_.takeRetune();
  if (retune && !requests_.waits(RigItem::Frequency)) requests_.put(std::move(*retune));
}

RigctldCapabilities RigctldSession::limited() const {
  auto can = handshake_.capabilities();
  if (options_.highest > options_.lowest) {
    can.ranges = {{double(options_.lowest), double(options_.highest)}};
  }
  return can;
}

}  // namespace kelvane::sondrel
