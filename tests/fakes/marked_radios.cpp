#include "tests/fakes/marked_radios.h"

#include <algorithm>
#include <cstdlib>

#include "contract/link_state.h"

namespace kelvane::fakes {

namespace {

constexpr Setting kModes = 7;
constexpr Setting kUnknown = -1;
constexpr Hz kLowestFilter = 1000;

/// As unlike each other as real receivers are.
std::array<RadioKind, MarkedRadios::kRadios> kinds() {
  return {{
      {.name = "Abbey"},
      {.name = "Barn", .agc = false, .attenuator = false, .channels = false, .filters = 1},
      {.name = "Cellar", .lines = 2, .delay = milliseconds(400)},
      {.name = "Attic", .lines = 4, .refuses = true},
      {.name = "Fen", .channels = false, .hfFilter = false, .silent = true},
      {.name = "Mast", .blanker = false, .filters = 2, .lines = -3},
      {.name = "Éden", .agc = false, .hfFilter = false, .delay = milliseconds(90)},
      {.name = "Config", .attenuator = false, .blanker = false, .frequencyKnown = false},
  }};
}

}  // namespace

MarkedRadio::MarkedRadio(int mark, RadioKind kind)
    : mark(mark),
      kind(std::move(kind)),
      frequency(this->kind.frequencyKnown ? marked(7'000'000 + 1'000'000 * mark) : -1) {
  const Setting first = this->kind.silent ? kUnknown : 0;
  mode = agc = attenuator = blanker = first;
  filter = this->kind.silent ? 0 : kLowestFilter + mark;
}

std::string MarkedRadio::named(char what, Setting value) const {
  return what + std::to_string(mark) + "." + std::to_string(value);
}

MarkedRadios::MarkedRadios(std::function<Instant()> now) : now_(std::move(now)) {
  int mark = 0;
  for (RadioKind& kind : kinds()) {
    radios_.emplace_back(mark, std::move(kind));
    set_.push_back(mark++);
  }
}

MarkedRadio* MarkedRadios::at(Index rx) {
  if (rx < 0 || rx >= static_cast<Index>(set_.size())) return nullptr;
  return &radio(set_[static_cast<std::size_t>(rx)]);
}

void MarkedRadios::tell(const MarkedRadio& radio, bool atRadio, Event event) {
  waiting_.push_back({now_() + radio.kind.delay, radio.mark, atRadio, std::move(event)});
}

void MarkedRadios::deliver(ReceiverListener& to) {
  const Instant now = now_();
  for (;;) {
    // Each radio's answers stay in their order; a slow radio's do not hold back another's.
    const auto due =
        std::ranges::find_if(waiting_, [now](const Waiting& w) { return w.due <= now; });
    if (due == waiting_.end()) return;
    const Waiting next = std::move(*due);
    waiting_.erase(due);
    const auto place = std::ranges::find(set_, next.mark);
    if (next.mark >= 0 && place == set_.end()) continue;
    const bool before = std::exchange(atRadio_, next.atRadio);
    next.event(to, static_cast<Index>(place - set_.begin()));
    atRadio_ = before;
  }
}

Instant MarkedRadios::nextDue() const {
  Instant due = Instant::max();
  for (const Waiting& waiting : waiting_) due = std::min(due, waiting.due);
  return due;
}

bool MarkedRadios::answerWaits(int mark) const {
  return std::ranges::any_of(waiting_, [mark](const Waiting& w) { return w.mark == mark; });
}

void MarkedRadios::setRadios(std::vector<int> marks) {
  set_ = std::move(marks);
  waiting_.push_back({now_(), -1, false, [this](ReceiverListener& to, Index) {
                        to.DrvUpdated(static_cast<Count>(set_.size()));
                      }});
}

void MarkedRadios::tellFrequency(MarkedRadio& radio, bool atRadio) {
  tell(radio, atRadio, [frequency = radio.frequency, atRadio](ReceiverListener& to, Index rx) {
    to.RxFrqUpdated(rx, frequency, atRadio);
  });
}

void MarkedRadios::tellMode(MarkedRadio& radio, bool atRadio) {
  tell(radio, atRadio, [mode = radio.mode, filter = radio.filter](ReceiverListener& to, Index rx) {
    to.RxModUpdated(rx, mode, filter);
  });
}

void MarkedRadios::tellFilter(MarkedRadio& radio, bool atRadio) {
  tell(radio, atRadio,
       [filter = radio.filter](ReceiverListener& to, Index rx) { to.RxFltUpdated(rx, filter); });
}

void MarkedRadios::happens(int mark, unsigned number) {
  MarkedRadio& it = radio(mark);
  if (!it.online) return;
  const auto value = static_cast<Long>(number / 16);
  switch (number % 16) {
    case 0:
    case 1:
      it.frequency = it.marked(500'000 + value % 29'000 * 1000);
      return tellFrequency(it, true);
    case 2:
      if (it.kind.silent) return;
      it.mode = value % kModes;
      return tellMode(it, true);
    case 3:
      if (it.kind.silent) return;
      it.filter = (value % it.kind.filters + 1) * kLowestFilter + mark;
      return tellFilter(it, true);
    case 4:
      it.squelch = value % 2;
      return tell(it, true, [state = it.squelch](ReceiverListener& to, Index rx) {
        to.RxSqlUpdated(rx, state, -100);
      });
    case 5:
      if (!it.kind.agc || it.kind.silent) return;
      it.agc = value % 3;
      return tell(it, true,
                  [agc = it.agc](ReceiverListener& to, Index rx) { to.RxAgcUpdated(rx, agc, 0); });
    case 6:
      if (!it.kind.hfFilter) return;
      it.hfFilter = value % 2;
      return tell(it, true, [state = it.hfFilter](ReceiverListener& to, Index rx) {
        to.RxHFFUpdated(rx, state);
      });
    case 7:
      if (value % 4 != 0) return;
      it.remote = !it.remote;
      return tell(it, true, [state = it.remote](ReceiverListener& to, Index rx) {
        to.RxRmtState(rx, state);
      });
    default:
      it.level = -140 + value % 12 * 10 - mark;
      return tell(
          it, true,
          [level = it.level, text = it.named('S', it.level)](ReceiverListener& to, Index rx) {
            to.RxSMtUpdated(rx, 0, level + 73, level, text);
          });
  }
}

void MarkedRadios::link(int mark, bool up) {
  MarkedRadio& it = radio(mark);
  it.online = up;
  tell(it, false, [up](ReceiverListener& to, Index rx) {
    to.RxConnState(rx, static_cast<Long>(up ? LinkState::Up : LinkState::Timeout));
  });
}

Answer<Text> MarkedRadios::GetRxName(Index rx) { return at(rx) ? at(rx)->kind.name : Text(); }
Answer<Text> MarkedRadios::GetRxId(Index rx) { return at(rx) ? at(rx)->id() : Text(); }
Answer<Text> MarkedRadios::GetRxType(Index rx) { return at(rx) ? at(rx)->id() : Text(); }
Answer<Flag> MarkedRadios::IsRxOnline(Index rx) { return at(rx) && at(rx)->online; }
Answer<Flag> MarkedRadios::GetRxRemote(Index rx) { return at(rx) && at(rx)->remote; }
Answer<Hz> MarkedRadios::GetRxFrequency(Index rx, Long selector) {
  if (!at(rx) || selector == kChannelBoundary) return Hz{-1};
  return at(rx)->frequency;
}
Answer<Hz> MarkedRadios::GetRxBfo(Index rx) { return at(rx) ? at(rx)->bfo : Hz{0}; }
Answer<Text> MarkedRadios::GetRxModeName(Index rx, Setting mode) {
  return at(rx) ? at(rx)->named('M', mode) : Text();
}
Answer<Setting> MarkedRadios::GetRxMode(Index rx) { return at(rx) ? at(rx)->mode : kUnknown; }
Answer<Flag> MarkedRadios::HasRxAgc(Index rx, Setting) { return at(rx) && at(rx)->kind.agc; }
Answer<Text> MarkedRadios::GetRxAgcName(Index rx, Setting agc) {
  return at(rx) ? at(rx)->named('A', agc) : Text();
}
Answer<Setting> MarkedRadios::GetRxAgc(Index rx) { return at(rx) ? at(rx)->agc : kUnknown; }
Answer<Flag> MarkedRadios::HasRxNBl(Index rx, Setting) { return at(rx) && at(rx)->kind.blanker; }
Answer<Text> MarkedRadios::GetRxNBlName(Index rx, Setting blanker) {
  return at(rx) ? at(rx)->named('N', blanker) : Text();
}
Answer<Setting> MarkedRadios::GetRxNBl(Index rx) { return at(rx) ? at(rx)->blanker : kUnknown; }
Answer<Flag> MarkedRadios::HasRxAtt(Index rx, Setting) { return at(rx) && at(rx)->kind.attenuator; }
Answer<Text> MarkedRadios::GetRxAttName(Index rx, Setting attenuator) {
  return at(rx) ? at(rx)->named('T', attenuator) : Text();
}
Answer<Setting> MarkedRadios::GetRxAtt(Index rx) { return at(rx) ? at(rx)->attenuator : kUnknown; }
Answer<Long> MarkedRadios::GetRxAttDb(Index rx) {
  return at(rx) ? at(rx)->attenuator * 10 + at(rx)->mark : Long{0};
}
Answer<Count> MarkedRadios::GetRxFilterCount(Index rx) {
  return at(rx) ? at(rx)->kind.filters : Count{0};
}
Answer<Setting> MarkedRadios::GetRxFilter(Index rx) { return at(rx) ? at(rx)->filter : Setting{0}; }
Answer<Flag> MarkedRadios::HasRxHFFilter(Index rx) { return at(rx) && at(rx)->kind.hfFilter; }
Answer<Long> MarkedRadios::GetRxHFFilter(Index rx) { return at(rx) ? at(rx)->hfFilter : Long{0}; }
Answer<Text> MarkedRadios::GetRxSMtText(Index rx, Long scale) {
  if (!at(rx)) return Text();
  return scale == 1 ? std::to_string(at(rx)->level) : at(rx)->named('S', at(rx)->level);
}
Answer<Count> MarkedRadios::GetRxChnCount(Index rx) {
  return at(rx) && at(rx)->kind.channels ? Count{20} : Count{0};
}
Answer<Channel> MarkedRadios::GetRxChannel(Index rx) { return at(rx) ? at(rx)->channel : -1; }
Answer<Count> MarkedRadios::GetRxOutCount(Index rx) {
  return at(rx) ? Count{at(rx)->kind.lines} : Count{0};
}
Answer<Long> MarkedRadios::GetRxOut(Index rx, Long line) {
  return at(rx) && line >= 0 && line < 4 ? at(rx)->lines[static_cast<std::size_t>(line)] : 0;
}
Answer<Long> MarkedRadios::GetRxSql(Index rx) { return at(rx) ? at(rx)->squelch : Long{0}; }
Answer<Long> MarkedRadios::GetRxLinkState(Index rx) {
  return static_cast<Long>(at(rx) && at(rx)->online ? LinkState::Up : LinkState::Timeout);
}

template <class Change>
Outcome MarkedRadios::take(Index rx, Change change) {
  MarkedRadio* it = at(rx);
  if (!it || !it->online || it->kind.refuses) return Outcome::Failed;
  change(*it);
  return Outcome::Done;
}

Outcome MarkedRadios::SetRxConnect(Index rx, Flag connect) {
  MarkedRadio* it = at(rx);
  if (!it) return Outcome::Failed;
  // A link that is down comes up when its radio does; every attempt ends in an event all the same.
  if (!connect) it->online = false;
  link(it->mark, it->online);
  return Outcome::Done;
}

Outcome MarkedRadios::SetRxRemote(Index rx, Flag remote) {
  return take(rx, [this, remote](MarkedRadio& it) {
    it.remote = remote;
    tell(it, false, [remote](ReceiverListener& to, Index at) { to.RxRmtState(at, remote); });
  });
}

Outcome MarkedRadios::SetRxFrequency(Index rx, Flag, Hz frequency) {
  MarkedRadio* it = at(rx);
  if (!it || !it->online) return Outcome::Failed;
  it->frequency = it->marked(std::clamp<Hz>(frequency, 100'000, 29'999'990));
  tellFrequency(*it, false);
  return Outcome::Done;
}

Outcome MarkedRadios::SetRxBfo(Index rx, Hz offset) {
  return take(rx, [this, offset](MarkedRadio& it) {
    it.bfo = offset;
    tell(it, false, [offset](ReceiverListener& to, Index at) { to.RxBfoUpdated(at, offset); });
  });
}

Outcome MarkedRadios::SetRxMode(Index rx, Setting mode) {
  return take(rx, [this, mode](MarkedRadio& it) {
    it.mode = mode;
    tellMode(it, false);
  });
}

Outcome MarkedRadios::NextRxMode(Index rx) { return SetRxMode(rx, (GetRxMode(rx) + 1) % kModes); }

Outcome MarkedRadios::SetRxFilter(Index rx, Setting filter) {
  return take(rx, [this, filter](MarkedRadio& it) {
    const Setting step = std::clamp<Setting>(filter / kLowestFilter, 1, it.kind.filters);
    it.filter = step * kLowestFilter + it.mark;
    tellFilter(it, false);
  });
}

Outcome MarkedRadios::NextRxFilter(Index rx) {
  if (!at(rx)) return Outcome::Failed;
  const Setting next = at(rx)->filter / kLowestFilter % at(rx)->kind.filters + 1;
  return SetRxFilter(rx, next * kLowestFilter);
}

/// The next of three settings, and the event that tells it.
Outcome MarkedRadios::next(Index rx, Setting MarkedRadio::*setting, Told told) {
  return take(rx, [this, setting, told](MarkedRadio& it) {
    const Setting value = it.*setting = (it.*setting + 1) % 3;
    tell(it, false, [value, mark = it.mark, told](ReceiverListener& to, Index at) {
      told(to, at, value, mark);
    });
  });
}

Outcome MarkedRadios::NextRxAgc(Index rx) {
  return next(rx, &MarkedRadio::agc, [](ReceiverListener& to, Index at, Setting value, int) {
    to.RxAgcUpdated(at, value, 0);
  });
}

Outcome MarkedRadios::NextRxAtt(Index rx) {
  return next(rx, &MarkedRadio::attenuator,
              [](ReceiverListener& to, Index at, Setting value, int mark) {
                to.RxAttUpdated(at, value, value * 10 + mark);
              });
}

Outcome MarkedRadios::NextRxNBl(Index rx) {
  return next(rx, &MarkedRadio::blanker, [](ReceiverListener& to, Index at, Setting value, int) {
    to.RxNBlUpdated(at, value, 0);
  });
}

Outcome MarkedRadios::SetRxHFFilter(Index rx, Long state) {
  return take(rx, [this, state](MarkedRadio& it) {
    it.hfFilter = state;
    tell(it, false, [state](ReceiverListener& to, Index at) { to.RxHFFUpdated(at, state); });
  });
}

Outcome MarkedRadios::SelectRxChannel(Index rx, Channel channel) {
  return take(rx, [this, channel](MarkedRadio& it) {
    it.channel = channel;
    tell(it, false, [channel](ReceiverListener& to, Index at) { to.RxChnUpdated(at, channel); });
  });
}

Outcome MarkedRadios::SetRxOut(Index rx, Long line, Long state) {
  return take(rx, [this, line, state](MarkedRadio& it) {
    if (it.kind.lines <= line) return;
    it.lines[static_cast<std::size_t>(line)] = state;
    tell(it, false,
         [line, state](ReceiverListener& to, Index at) { to.RxOutUpdated(at, line, state); });
  });
}

}  // namespace kelvane::fakes
