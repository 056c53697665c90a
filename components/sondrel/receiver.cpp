#include "components/sondrel/receiver.h"

#include <cmath>
#include <cstdlib>
#include <utility>

#include "components/sondrel/s_meter.h"

namespace kelvane::sondrel {

namespace {

std::optional<std::int32_t> ifChoice(const std::vector<Choice>& choices, std::int32_t value) {
  return choiceOf(choices, value) ? std::optional(value) : std::nullopt;
}

/// How long a program's change has to stand before it counts.
constexpr milliseconds kCountsAfter{2000};
/// Of a change whose time has not been taken yet.
constexpr Instant kJustNow = Instant::min();

constexpr std::size_t placeOfItem(Item item) { return static_cast<std::size_t>(item); }

}  // namespace

Receiver::Receiver(ReceiverHost& host, std::string name)
    : host_(host), mailbox_(host.inbox()), name_(std::move(name)) {
  countsAt_.fill(kNever);
}

Receiver::~Receiver() { mailbox_.close(); }

Long Receiver::out(Long line) const {
  const auto i = static_cast<std::size_t>(line);
  return line >= 0 && i < outputs_.size() ? outputs_[i] : 0;
}

Hz Receiver::usualFilter(Setting mode) const {
  const auto last = modeFilters_.find(mode);
  if (last != modeFilters_.end()) return can_.nearestFilter(mode, last->second);
  const ModeChoice* choice = can_.mode(mode);
  return choice ? choice->usual : 0;
}

std::optional<std::int32_t> Receiver::acceptable(Item item, std::int32_t value) const {
  switch (item) {
    case Item::Frequency:
      return can_.nearestFrequency(value);
    case Item::Mode:
      return can_.mode(value) ? std::optional(value) : std::nullopt;
    case Item::Filter: {
      const Hz nearest = can_.nearestFilter(newest(Item::Mode), value);
      return nearest != 0 ? std::optional(nearest) : std::nullopt;
    }
    case Item::Agc:
      return ifChoice(can_.agc, value);
    case Item::Blanker:
      return ifChoice(can_.blanker, value);
    case Item::Attenuator:
      return ifChoice(can_.attenuator, value);
    case Item::Bfo:
      return can_.hasBfo() ? std::optional(can_.nearestBfo(value)) : std::nullopt;
    case Item::HfFilter:
      return can_.hfFilter ? std::optional(value != 0 ? 1 : 0) : std::nullopt;
    case Item::Step:
      break;
  }
  return std::nullopt;
}

Outcome Receiver::request(Item item, std::int32_t value, Cause cause, Instant now) {
  const auto accepted = online_ ? acceptable(item, value) : std::nullopt;
  if (!accepted) {
    if (item == Item::Frequency && cause != Cause::Program) raiseItem(Item::Frequency, false);
    return Outcome::Failed;
  }
  if (item == Item::Frequency) {
    const bool replaced = values_.pending(item) && frequencyAsked_;
    frequencyAsked_ = cause != Cause::Program;
    frequencyUnanswered_ = frequencyUnanswered_ || (replaced && !frequencyAsked_);
  }
  Request request{.item = item, .value = *accepted, .ticket = ++lastTicket_, .cause = cause};
  values_.await(item, {request.value, request.ticket});
  if (item == Item::Mode) {
    request.filter = usualFilter(request.value);
    values_.await(Item::Filter, {request.filter, request.ticket});
  }
  carryOut(request, now);
  return Outcome::Done;
}

Outcome Receiver::connect(bool connect, Instant now) {
  goOffline();
  wanted_ = connectAsked_ = connect;
  if (connect) {
    openLink(now);
    return Outcome::Done;
  }
  closeLink(now);
  linkCode_ = static_cast<Long>(LinkState::NotResponding);
  raise([rx = index_, code = linkCode_](ReceiverListener& l) { l.RxConnState(rx, code); });
  return Outcome::Done;
}

Outcome Receiver::setRemote(bool remote, Instant now) {
  if (!online_) return Outcome::Failed;
  takeRemote(remote, now);
  return Outcome::Done;
}

Outcome Receiver::setOut(Long line, Long state, Instant now) {
  if (!online_ || line < 0 || line >= can_.lines) return Outcome::Failed;
  switchOut(line, state != 0 ? 1 : 0, now);
  return Outcome::Done;
}

Outcome Receiver::setTime(const Text&, Instant) { return Outcome::Unsupported; }

void Receiver::takeRemote(bool remote, Instant) { remoteIs(remote); }

void Receiver::switchOut(Long line, Long state, Instant) { outIs(line, state); }

void Receiver::goOffline() {
  const bool awaited = values_.pending(Item::Frequency);
  for (std::size_t i = 0; i < kItemCount; ++i) {
    values_.forget(static_cast<Item>(i));
    values_.count(static_cast<Item>(i));
  }
  countsAt_.fill(kNever);
  online_ = remote_ = squelchOpen_ = false;
  level_.reset();
  squelchLevel_.reset();
  if (awaited) raiseItem(Item::Frequency, false);
}

void Receiver::linkUp(bool remote) {
  if (online_) return;
  online_ = true;
  remote_ = remote;
  connectAsked_ = false;
  linkCode_ = static_cast<Long>(LinkState::Up);
  // Who hears of a link that is up asks for everything: the values need no events of their own.
  for (std::size_t i = 0; i < kItemCount; ++i) values_.takeUnreported(static_cast<Item>(i));
  raise([rx = index_, code = linkCode_](ReceiverListener& l) { l.RxConnState(rx, code); });
  if (remote) raise([rx = index_](ReceiverListener& l) { l.RxRmtState(rx, 1); });
}

void Receiver::linkDown(LinkState state) {
  const auto code = static_cast<Long>(state);
  const bool news = online_ || connectAsked_ || code != linkCode_;
  goOffline();
  connectAsked_ = false;
  linkCode_ = code;
  if (news) raise([rx = index_, code](ReceiverListener& l) { l.RxConnState(rx, code); });
}

void Receiver::done(const Request& request, std::int32_t value, Hz filter) {
  const bool answered = values_.answer(request.item, request.ticket);
  const Change change{
      .item = request.item, .value = value, .cause = request.cause, .ticket = request.ticket};
  if (request.item == Item::Mode) {
    values_.answer(Item::Filter, request.ticket);
    concludeMode(change, filter != 0 ? filter : request.filter);
  } else {
    conclude(change, answered && request.item == Item::Frequency);
  }
}

void Receiver::refused(const Request& request) {
  if (!values_.answer(request.item, request.ticket)) return;
  // Getters have already answered with the value that did not come about.
  if (request.item == Item::Frequency && request.cause == Cause::Program) {
    raisePassing();
  } else {
    raiseItem(request.item, false);
  }
  if (request.item == Item::Mode && values_.answer(Item::Filter, request.ticket)) {
    raiseItem(Item::Filter, false);
  }
}

void Receiver::changed(Item item, std::int32_t value, Cause cause) {
  conclude({.item = item, .value = value, .cause = cause}, false);
}

void Receiver::changedMode(Setting mode, Hz filter, Cause cause) {
  concludeMode({.item = Item::Mode, .value = mode, .cause = cause}, filter);
}

void Receiver::conclude(Change change, bool report) {
  change.news = confirm(change.item, change.value, change.cause);
  if (change.item == Item::Filter) modeFilters_[values_.confirmed(Item::Mode)] = change.value;
  tell(change, report);
}

void Receiver::concludeMode(Change mode, Hz filter) {
  // Both first: the mode's event carries the filter that is in force in it.
  Change with = mode;
  with.item = Item::Filter;
  with.value = filter;
  with.withMode = true;
  mode.news = confirm(Item::Mode, mode.value, mode.cause);
  with.news = confirm(Item::Filter, filter, mode.cause);
  modeFilters_[mode.value] = filter;
  tell(mode, false);
  tell(with, false);
}

void Receiver::tell(const Change& change, bool report) {
  // With a newer request on its way listeners wait for that one's answer.
  const bool due = online_ && !values_.pending(change.item);
  const bool byProgram = change.cause == Cause::Program;
  if (due && byProgram && change.item == Item::Frequency && !frequencyUnanswered_) {
    raisePassing();
  } else if (due && (values_.takeUnreported(change.item) || report)) {
    raiseItem(change.item, change.cause == Cause::AtReceiver || byProgram);
  }
  if (!byProgram) host_.confirmed(*this, change);
}

bool Receiver::confirm(Item item, std::int32_t value, Cause cause) {
  Instant& countsAt = countsAt_[placeOfItem(item)];
  if (cause != Cause::Program) {
    countsAt = kNever;
    return values_.confirm(item, value);
  }
  // Said once more it has stood for no less.
  if (countsAt == kNever || values_.confirmed(item) != value) countsAt = kJustNow;
  values_.confirmPassing(item, value);
  return false;
}

void Receiver::settle(Instant now) {
  bool mode = false;
  for (std::size_t i = 0; i < kItemCount; ++i) {
    const auto item = static_cast<Item>(i);
    Instant& countsAt = countsAt_[i];
    if (countsAt == kNever) continue;
    if (countsAt == kJustNow || (now >= countsAt && values_.pending(item)))
      countsAt = now + kCountsAfter;
    if (now < countsAt) continue;
    countsAt = kNever;
    count(item, mode);
    mode = mode || item == Item::Mode;
  }
}

void Receiver::count(Item item, bool withMode) {
  Change change{.item = item, .value = values_.confirmed(item), .cause = Cause::Program};
  change.withMode = withMode && item == Item::Filter;
  change.news = values_.count(item);
  if (online_ && values_.takeUnreported(item)) raiseItem(item, true);
  host_.confirmed(*this, change);
}

void Receiver::raisePassing() {
  raise([rx = index_, value = values_.confirmed(Item::Frequency)](ReceiverListener& l) {
    l.RxFrqPassing(rx, value);
  });
}

void Receiver::remoteIs(bool remote) {
  remote_ = remote;
  raise([rx = index_, state = remote ? 1 : 0](ReceiverListener& l) { l.RxRmtState(rx, state); });
}

void Receiver::outIs(Long line, Long state) {
  const auto count = static_cast<std::size_t>(std::abs(can_.lines));
  if (line < 0 || static_cast<std::size_t>(line) >= count) return;
  outputs_.resize(count);
  outputs_[static_cast<std::size_t>(line)] = state;
  raise([rx = index_, line, state](ReceiverListener& l) { l.RxOutUpdated(rx, line, state); });
}

void Receiver::levelIs(Long dBm) {
  level_ = dBm;
  const auto event = [rx = index_, dBm](ReceiverListener& l) {
    l.RxSMtUpdated(rx, meterBar(dBm), dBm - kS9, dBm, sUnits(dBm));
  };
  host_.raise(false, event, static_cast<std::uint32_t>(index_) + 1);
}

void Receiver::squelchIs(bool open) {
  if (open == squelchOpen_) return;
  squelchOpen_ = open;
  const Long threshold = squelchLevel_.value_or(0);
  raise([rx = index_, open, threshold](ReceiverListener& l) {
    l.RxSqlUpdated(rx, open ? 1 : 0, threshold);
  });
}

void Receiver::dataError(Long code) {
  raise([rx = index_, code](ReceiverListener& l) { l.RxDataError(rx, code); });
}

void Receiver::raise(ReceiverHost::Raise event, bool global) {
  host_.raise(global, std::move(event));
}

void Receiver::raiseItem(Item item, bool global) {
  values_.takeUnreported(item);
  if (item == Item::Frequency) frequencyUnanswered_ = false;
  const std::int32_t value = values_.confirmed(item);
  const auto event = [&, rx = index_]() -> ReceiverHost::Raise {
    using L = ReceiverListener;
    switch (item) {
      case Item::Frequency:
        return [=](L& l) { l.RxFrqUpdated(rx, value, global ? 1 : 0); };
      case Item::Mode:
        return [=, filter = values_.confirmed(Item::Filter)](L& l) {
          l.RxModUpdated(rx, value, filter);
        };
      case Item::Filter:
        return [=](L& l) { l.RxFltUpdated(rx, value); };
      case Item::Agc:
        return [=, aux = auxOf(can_.agc, value)](L& l) { l.RxAgcUpdated(rx, value, aux); };
      case Item::Blanker:
        return [=, aux = auxOf(can_.blanker, value)](L& l) { l.RxNBlUpdated(rx, value, aux); };
      case Item::Attenuator:
        return [=, db = auxOf(can_.attenuator, value)](L& l) { l.RxAttUpdated(rx, value, db); };
      case Item::Bfo:
        return [=](L& l) { l.RxBfoUpdated(rx, value); };
      case Item::HfFilter:
        return [=](L& l) { l.RxHFFUpdated(rx, value); };
      case Item::Step:
        return [=](L& l) { l.RxStpUpdated(rx, value); };
    }
    return [](L&) {};
  };
  raise(event(), global);
}

}  // namespace kelvane::sondrel
