#include "components/sondrel/rigctld/rigctld_session.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kelvane::sondrel {

namespace {

// The silence after which a link is said to be lost: where the frequency is asked for, and where
// another thing that the radio told before or is told, which it may yet be refusing.
constexpr milliseconds kReplyLimit{2000};
constexpr milliseconds kLongestReplyLimit{15000};
constexpr milliseconds kRefusalLimit{10000};
// A server that is blocked by its radio answers within this time, or never. Radios were seen to
// refuse a setting after twenty seconds.
constexpr milliseconds kGiveUp{30000};
constexpr milliseconds kQuiet{150};
constexpr milliseconds kLongestDiscard{2000};
constexpr milliseconds kBetweenAttempts{1000};
constexpr milliseconds kFirstBackOff{2000};
// A server closes its radio when its last client goes, and ends whoever comes in that moment.
constexpr milliseconds kAfterLeaving{500};
constexpr milliseconds kLongestBackOff{16000};
// The link is up when frequency and mode are known; a radio that refuses slowly tells the rest of
// what it can do later.
constexpr milliseconds kGreetingLimit{700};
// While a server waits for its radio it tells neither frequency nor meter: what kept it longer than
// a blink may not have more than a fifth of the time, and not in the middle of the operator's work.
constexpr milliseconds kBlink{200};
constexpr int kShareOfSlow = 4;
constexpr milliseconds kLongestHold{30000};
constexpr milliseconds kNoTrialsAfterRequest{3000};
// What is due is done within milliseconds: only a computer that slept passes it over for so long.
constexpr milliseconds kComputerSlept{10'000};

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
  stateAskedFor_ = true;
  const bool running = phase_ == Phase::Running;
  const bool up = running && toldState_ == LinkState::Up;
  const bool unansweredConnection = running && !up && !awaited_ && !heartbeatOf(experience_);
  if (phase_ == Phase::Closed && now < lastingFailures_.notBefore()) {
    reopenAt_ = std::min(reopenAt_, lastingFailures_.notBefore());
    return;
  }
  if (phase_ == Phase::Closed || (up && reopen) || unansweredConnection) return startConnection();
  if (up) return say(LinkState::Up);
  if (awaited_ && awaited_->late) awaited_->limit = now + kReplyLimit;
  nextAttempt_ = now;
  pump(now);
}

void RigctldSession::tryAgain() {
  if (phase_ == Phase::Closed && toldState_) startConnection();
}

void RigctldSession::close() {
  left_ = left_ || phase_ > Phase::Connecting;
  drop();
  toldState_.reset();
  stateAskedFor_ = false;
  lastingFailures_.forget();
  reports_.clear();
}

void RigctldSession::request(RigRequest request, Instant now) {
  if (toldState_ != LinkState::Up) return;
  requests_.put(std::move(request));
  nextTrialAt_ = std::max(nextTrialAt_, now + kNoTrialsAfterRequest);
  pump(now);
}

void RigctldSession::setShown(bool shown) { plan_.setShown(shown); }

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
    return fail(handshake_.reachedRadio() ? LinkState::Error : LinkState::BadIdentity, now);
  }
  if (reader_.waiting() && reader_.endsByQuiet()) quietAt_ = now + kQuiet;
  if (reader_.takeStray()) waitForQuiet(now);
  if (phase_ == Phase::Closed) return;
  if (progress == ReplyReader::Progress::Complete) replied(reader_.take(), now);
  pump(now);
}

void RigctldSession::closed(CloseReason reason, Instant now) {
  if (phase_ == Phase::Closed) return;
  // A server whose radio is silent or gone ends the connection without an answer, and takes the
  // next one at once: the link is sound, so nobody else will try again.
  const bool connected = phase_ != Phase::Connecting;
  const bool radioAsked = phase_ == Phase::Greeting ? handshake_.reachedRadio()
                                                    : toldState_ == LinkState::NotResponding;
  const bool radioSilent = connected && radioAsked && awaited_ && !reader_.partial();
  // Whoever takes connections only to end them is most likely another service.
  const bool otherService = connected && !handshake_.reachedRadio();
  if (radioSilent) return failLater(LinkState::NotResponding, now);
  if (otherService && std::exchange(left_, false)) {
    drop();
    reopenAt_ = now + kAfterLeaving;
    return;
  }
  noReply(now);
  fail(stateOf(reason), now);
  if (otherService) lastingFailures_.failed(now);
}

void RigctldSession::tick(Instant now) {
  if (slept(now)) {
    // Whatever was under way is lost, and the connection most likely too, though nobody tells.
    fail(LinkState::Timeout, now);
    return startConnection();
  }
  if (now >= reopenAt_) startConnection();
  if (now >= quietAt_) {
    quietAt_ = kNever;
    if (reader_.quiet() == ReplyReader::Progress::Complete) replied(reader_.take(), now);
  }
  if (phase_ == Phase::Greeting && readyToComeUp(now)) comeUp(now);
  if (awaited_ && now >= awaited_->limit) overdue(now);
  if (awaited_ && now >= awaited_->sent + kGiveUp) giveUp(now);
  pump(now);
}

Instant RigctldSession::nextDue() const {
  if (phase_ == Phase::Closed) return reopenAt_;
  if (phase_ == Phase::Connecting) return kNever;
  Instant due = kNever;
  if (awaited_) {
    due = std::min({quietAt_, awaited_->limit, awaited_->sent + kGiveUp});
    const bool greets = phase_ == Phase::Greeting && handshake_.finished();
    return greets ? std::min(due, greetingSince_ + kGreetingLimit) : due;
  }
  if (phase_ == Phase::Running && toldState_ != LinkState::Up && !heartbeatOf(experience_)) {
    due = kNever;  // nothing is left to ask: the next opening begins anew
  } else if (phase_ == Phase::Greeting || toldState_ != LinkState::Up) {
    due = nextAttempt_;
  } else if (!requests_.empty()) {
    due = discardUntil_;
  } else {
    due = std::min(readings_.nextReadBack(), plan_.nextDue());
    due = std::min(due, std::max({experience_.nextDue(), nextTrialAt_, plan_.restUntil()}));
  }
  return std::max(due, discardUntil_);
}

std::string RigctldSession::takeOutput() { return std::exchange(output_, {}); }

std::vector<RigReport> RigctldSession::takeReports() { return std::exchange(reports_, {}); }

// --- the link's life

void RigctldSession::startConnection() {
  left_ = left_ || phase_ > Phase::Connecting;
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
  awaited_.reset();
  requests_.clear();
  output_.clear();
  quietAt_ = kNever;
  discardUntil_ = {};
  discardSince_ = kNever;
  reopenAt_ = kNever;
}

void RigctldSession::fail(LinkState state, Instant now) {
  drop();
  if (isLasting(state)) lastingFailures_.failed(now);
  say(state);
}

/// Ends the connection and makes a new one by itself, for a state in which nobody else does.
void RigctldSession::failLater(LinkState state, Instant now) {
  fail(state, now);
  reopenAt_ = now + backOff_;
  backOff_ = std::min(backOff_ * 2, kLongestBackOff);
}

void RigctldSession::say(LinkState state) {
  if (state != LinkState::Up) requests_.clear();
  stateAssumed_ = false;
  radioSilent_ = radioSilent_ && state != LinkState::Up;
  if (toldState_ == state && !stateAskedFor_) return;
  toldState_ = state;
  stateAskedFor_ = false;
  if (state == LinkState::Up) {
    left_ = false;
    backOff_ = kFirstBackOff;
    lastingFailures_.forget();
  }
  reports_.push_back(LinkReport{state});
}

// --- replies

void RigctldSession::waitForQuiet(Instant now) {
  if (now >= discardUntil_) discardSince_ = now;
  discardUntil_ = now + kQuiet;
  if (now - discardSince_ > kLongestDiscard) fail(LinkState::Error, now);
}

/// How long its reply may be missing before the link is said to be lost. However slowly a radio
/// refuses what it never told, that is no sign of a dead one.
milliseconds RigctldSession::replyLimitOf(const AwaitedReply& awaited) const {
  if (awaited.purpose == Purpose::Greet) return replyLimit_;
  if (awaited.purpose == Purpose::Order) {
    return isSetting(awaited.order.request.item) ? kGiveUp : kRefusalLimit;
  }
  if (awaited.item == heartbeatOf(experience_)) return replyLimit_;
  return experience_.tells(awaited.item) ? kRefusalLimit : kGiveUp;
}

void RigctldSession::overdue(Instant now) {
  if (reader_.partial() && !reader_.endsByQuiet()) return fail(LinkState::Error, now);
  if (now >= awaited_->sent + kGiveUp) return;
  awaited_->late = true;
  awaited_->limit = kNever;
  // A server of this dialect has a radio behind it. When it was well a moment ago, or has said that
  // its radio is silent, it is the radio that it waits for.
  const bool asksRadio = phase_ == Phase::Running || handshake_.reachedRadio();
  const bool extended = handshake_.capabilities().dialect == Dialect::Extended;
  say(radioSilent_ || (asksRadio && extended) ? LinkState::NotResponding : LinkState::Timeout);
  stateAssumed_ = true;
}

void RigctldSession::giveUp(Instant now) {
  // Where a late reply can be told from others the server may keep it: the radio is asked on.
  const bool skips = phase_ == Phase::Running && toldState_ == LinkState::Up &&
                     handshake_.headsReplies() && awaited_->purpose == Purpose::Read &&
                     awaited_->item != heartbeatOf(experience_) && !reader_.partial();
  noReply(now);
  if (skips) {
    learned(now);
    holdSettings(*std::exchange(awaited_, std::nullopt), now);
    return askHeartbeat();
  }
  if (radioSilent_) return failLater(LinkState::NotResponding, now);
  fail(LinkState::Timeout, now);
}

/// What is under way stays without reply: where it is a setting it had better be left alone.
void RigctldSession::noReply(Instant now) {
  if (!awaited_ || awaited_->purpose != Purpose::Read || !isSetting(awaited_->item)) return;
  if (now < awaited_->sent + kReplyLimit) return;
  readings_.unreadable(awaited_->item);
  experience_.unanswered(awaited_->item, kGiveUp, now);
}

bool RigctldSession::slept(Instant now) const {
  const bool connected = phase_ == Phase::Greeting || phase_ == Phase::Running;
  return connected && nextDue() < now - kComputerSlept;
}

void RigctldSession::replied(const Reply& reply, Instant now) {
  const AwaitedReply awaited = *std::exchange(awaited_, std::nullopt);
  quietAt_ = kNever;
  holdSettings(awaited, now);
  if (replyLimitOf(awaited) == replyLimit_) {
    // A server that is slow by nature is not said to be lost at each command.
    const auto took = std::chrono::duration_cast<milliseconds>(now - awaited.sent);
    replyLimit_ = std::clamp(took * 3 / 2, kReplyLimit, kLongestReplyLimit);
  }
  // The small servers write an error twice.
  const bool extended = handshake_.capabilities().dialect == Dialect::Extended;
  if (!reply.ok() && !extended) waitForQuiet(now);
  if (phase_ == Phase::Closed) return;
  switch (awaited.purpose) {
    case Purpose::Greet:
      greeted(reply, now);
      break;
    case Purpose::Read:
      gotReading(awaited, reply, now);
      break;
    case Purpose::Order:
      gotOrder(awaited.order, reply, now);
      break;
  }
  collect();
}

/// After a setting that kept the server long, frequency, mode and meter have the line for a while.
void RigctldSession::holdSettings(const AwaitedReply& awaited, Instant now) {
  const auto took = now - awaited.sent;
  const bool setting = awaited.purpose == Purpose::Read && isSetting(awaited.item);
  if (!setting || took < kBlink) return plan_.answered(awaited.sent, now);
  const auto hold = std::min<Instant::duration>(took * kShareOfSlow, kLongestHold);
  nextTrialAt_ = std::max(nextTrialAt_, now + hold);
  plan_.holdSettings(now + hold);
}

void RigctldSession::greeted(const Reply& reply, Instant now) {
  const auto item = handshake_.asking();
  const bool described = handshake_.reachedRadio();
  const auto trouble = handshake_.take(reply);
  if (trouble == LinkState::BadIdentity || trouble == LinkState::Configuration) {
    return fail(*trouble, now);
  }
  if (!described && handshake_.reachedRadio())
    experience_.serverFound(handshake_.capabilities(), now);
  nextAttempt_ = trouble ? now + kBetweenAttempts : now;
  radioSilent_ = trouble == LinkState::NotResponding;
  if (trouble) return say(*trouble);
  if (item) experience_.answered(*item, reply, readings_.take(*item, reply, now), {}, now);
  experience_.radioAnswers();
  if (readyToComeUp(now)) comeUp(now);
}

bool RigctldSession::readyToComeUp(Instant now) const {
  if (!handshake_.finished()) return false;
  return now - greetingSince_ >= kGreetingLimit || (!awaited_ && !experience_.due(now, true));
}

void RigctldSession::comeUp(Instant now) {
  phase_ = Phase::Running;
  can_ = std::make_shared<const RigctldCapabilities>(limited());
  reports_.push_back(CapabilityReport{can_});
  readings_.learn(can_, true);
  collect();
  plan_.start(experience_.told(), now);
  say(LinkState::Up);
}

void RigctldSession::gotReading(const AwaitedReply& awaited, const Reply& reply, Instant now) {
  const auto item = awaited.item;
  const auto took = std::chrono::duration_cast<milliseconds>(now - awaited.sent);
  const auto mode = readings_.situation().mode;
  const bool good = readings_.take(item, reply, now);
  if (phase_ == Phase::Greeting) {
    experience_.answered(item, reply, good, took, now);
    if (readyToComeUp(now)) comeUp(now);
    return;
  }
  if (!good) readings_.unreadable(item);
  if (readings_.situation().mode != mode) experience_.modeChanged(now);
  if (item == heartbeatOf(experience_)) return judge(reply, good, took, now);
  experience_.answered(item, reply, good, took, now);
  learned(now);
  const bool trouble = !good && troubleIn(reply);
  if (trouble) askHeartbeat();
  nextAttempt_ = trouble ? now : now + kBetweenAttempts;
  // Any answer ends a silence; a radio's trouble ends with its heartbeat alone.
  if (stateAssumed_ && !trouble) say(LinkState::Up);
}

void RigctldSession::judge(const Reply& reply, bool good, milliseconds took, Instant now) {
  const auto finding = health_.judge(reply, good, toldState_ == LinkState::Up, took);
  if (finding.drop) return fail(*finding.link, now);
  if (finding.ask) askHeartbeat();
  nextAttempt_ = now + kBetweenAttempts;
  if (!finding.link) return;
  if (finding.link == LinkState::Up) {
    experience_.radioAnswers();
  } else {
    experience_.radioIsSilent();
    learned(now);
    radioSilent_ = finding.link == LinkState::NotResponding;
  }
  say(*finding.link);
}

/// What is known of what the radio tells may have changed.
void RigctldSession::learned(Instant now) {
  if (experience_.told() == can_->readable) return;
  can_ = std::make_shared<const RigctldCapabilities>(limited());
  reports_.push_back(CapabilityReport{can_});
  readings_.learn(can_, false);
  plan_.start(can_->readable, now);
}

void RigctldSession::gotOrder(const RigOrder& order, const Reply& reply, Instant now) {
  if (!reply.ok()) {
    readings_.refused(order, now);
    if (stateOfError(*reply.report)) askHeartbeat();
    return;
  }
  readings_.accepted(order, requests_.waits(order.request.item), now);
  if (order.request.item == RigItem::Mode) plan_.readNext(RigItem::Frequency);
  if (stateAssumed_) say(LinkState::Up);
}

void RigctldSession::askHeartbeat() {
  if (const auto beat = heartbeatOf(experience_)) plan_.readNext(*beat);
}

// --- what to send next

void RigctldSession::pump(Instant now) {
  if (awaited_ || now < discardUntil_) return;
  if (phase_ == Phase::Greeting) return pumpGreeting(now);
  if (phase_ != Phase::Running) return;
  if (toldState_ != LinkState::Up) {
    if (const auto beat = heartbeatOf(experience_); beat && now >= nextAttempt_) read(*beat, now);
    return;
  }
  if (sendRequest(now)) return;
  if (const auto item = readings_.takeReadBack(now)) return read(*item, now);
  if (now >= nextTrialAt_ && now >= plan_.restUntil()) {
    if (const auto item = experience_.due(now, false)) return read(*item, now);
  }
  if (const auto item = plan_.take(now)) read(*item, now);
}

void RigctldSession::pumpGreeting(Instant now) {
  if (now < nextAttempt_) return;
  if (auto question = handshake_.next()) {
    return send(std::move(*question), {Purpose::Greet, {}, {}, {}, {}}, now);
  }
  if (const auto item = experience_.due(now, true)) read(*item, now);
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

void RigctldSession::send(RigCommand command, AwaitedReply awaited, Instant now) {
  awaited.sent = now;
  awaited.limit = now + replyLimitOf(awaited);
  awaited_ = std::move(awaited);
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
  can.readable = experience_.told();
  if (options_.highest > options_.lowest) {
    can.ranges = {{double(options_.lowest), double(options_.highest)}};
  }
  return can;
}

}  // namespace kelvane::sondrel
