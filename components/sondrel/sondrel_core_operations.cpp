#include <algorithm>

#include "base/barrier.h"
#include "components/sondrel/channels/channelized.h"
#include "components/sondrel/s_meter.h"
#include "components/sondrel/sondrel_core.h"

namespace kelvane::sondrel {

namespace {

/// How far the middle of the channel lies above a frequency that is tuned in.
Hz channelOffset(const Receiver& r, Hz frequency, Long selector) {
  if (frequency >= kChannelizedBelow) return 0;
  const Setting mode = r.newest(Item::Mode);
  return selector == kFilterChannelized ? filterChannelOffset(mode, r.newest(Item::Filter))
                                        : fixedChannelOffset(mode);
}

Answer<Hz> frequencyOf(const Receiver& r, Long selector) {
  if (selector == kChannelBoundary) return kChannelizedBelow;
  if (selector < kTuned || selector > kChannelBoundary) return Answer<Hz>::failed(-1);
  const Hz tuned = r.newest(Item::Frequency);
  if (selector == kTuned || tuned < 0) return tuned;
  return tuned + channelOffset(r, tuned, selector);
}

}  // namespace

// The component itself.

Answer<Count> SondrelCore::OpenRxConfig(Text instance, Long mode) {
  const bool wrong = mode != 0 && mode != 1;
  // Under the dialog the list that it edits must stay the one that is open.
  const bool edited = editing_ && (mode == 0 || instance_ != instance);
  if (wrong || edited) return Answer<Count>::failed(0);
  if ((mode == 0 || instance_ != instance) && !open(instance)) {
    afterwards();
    return owned_ ? Answer<Count>(kGivenUp) : Answer<Count>::failed(0);
  }
  if (mode == 1) editDrivers();
  afterwards();
  return static_cast<Count>(receivers_.size());
}

Answer<Flag> SondrelCore::GetRxGlobalFlag() { return events_.global(); }

Outcome SondrelCore::SetRxForward(Long mode) {
  const bool master = mode >= 0 && mode < static_cast<Long>(receivers_.size());
  if (!master && mode != kForwardNone && mode != kForwardAll) return Outcome::Failed;
  forwarding_.setMode(mode);
  return Outcome::Done;
}

Answer<Count> SondrelCore::GetRxCount() { return static_cast<Count>(receivers_.size()); }

Outcome SondrelCore::SetRxShown(Index rx) {
  if (!at(rx)) return Outcome::Failed;
  shown_ = rx;
  for (const auto& hosted : receivers_) {
    hosted->receiver->setShown(hosted->receiver->index() == rx);
  }
  return Outcome::Done;
}

Outcome SondrelCore::SetRxOwner(Long window) {
  owned_ = window != 0;
  windows_.setOwner(window);
  return Outcome::Done;
}

Answer<Text> SondrelCore::GetRxFaults() { return notedFaults(); }

Answer<Text> SondrelCore::FinishRxWriting(Index rx, Text file) {
  HostedReceiver* hosted = at(rx);
  if (!hosted) return Answer<Text>::failed({});
  const Result<> written = hosted->channels->finishWriting(pathFromText(file));
  return written ? Text() : "Channels of " + hosted->entry.name + ": " + written.reason();
}

Outcome SondrelCore::ShowRxSettings(Index rx) {
  if (!at(rx)) return Outcome::Failed;
  windows_.showSettings(rx);
  return Outcome::Done;
}

Answer<Text> SondrelCore::GetRxLinkWords(Index rx) {
  return ask(rx, Text(), [](const Receiver& r) { return r.online() ? Text() : r.linkFault(); });
}

// What a receiver is.

Answer<Text> SondrelCore::GetRxName(Index rx) {
  return ask(rx, Text(), [](const Receiver& r) { return r.name(); });
}
Answer<Text> SondrelCore::GetRxId(Index rx) {
  const HostedReceiver* hosted = at(rx);
  return hosted ? Answer<Text>(hosted->entry.memories) : Answer<Text>::failed({});
}
Answer<Text> SondrelCore::GetRxType(Index rx) {
  return ask(rx, Text(), [](const Receiver& r) { return r.can().type; });
}
Answer<Hz> SondrelCore::GetRxFrqMin(Index rx) {
  return ask(rx, Hz{0}, [](const Receiver& r) { return r.can().minimum; });
}
Answer<Hz> SondrelCore::GetRxFrqMax(Index rx) {
  return ask(rx, Hz{0}, [](const Receiver& r) { return r.can().maximum; });
}
Answer<Hz> SondrelCore::GetRxMaxStep(Index rx) {
  return ask(rx, Hz{1}, [](const Receiver& r) { return r.can().largestStep; });
}
Answer<Hz> SondrelCore::GetRxMinStep(Index rx) {
  return ask(rx, Hz{0}, [](const Receiver& r) { return r.can().finest; });
}
Answer<Hz> SondrelCore::GetRxBfoMin(Index rx) {
  return ask(rx, Hz{0}, [](const Receiver& r) { return r.can().bfoMinimum; });
}
Answer<Hz> SondrelCore::GetRxBfoMax(Index rx) {
  return ask(rx, Hz{0}, [](const Receiver& r) { return r.can().bfoMaximum; });
}
Answer<Flag> SondrelCore::HasRxHFFilter(Index rx) {
  return ask(rx, false, [](const Receiver& r) { return r.can().hfFilter; });
}

// Link and remote control.

Outcome SondrelCore::SetRxConnect(Index rx, Flag connect) {
  return tell(rx, [connect](HostedReceiver& hosted, Instant now) {
    return hosted.receiver->connect(connect, now);
  });
}
Answer<Flag> SondrelCore::IsRxOnline(Index rx) {
  return ask(rx, false, [](const Receiver& r) { return r.online(); });
}
Answer<Long> SondrelCore::GetRxLinkState(Index rx) {
  constexpr auto kNone = static_cast<Long>(LinkState::NotResponding);
  return ask(rx, kNone, [](const Receiver& r) { return r.linkCode(); });
}
Outcome SondrelCore::SetRxRemote(Index rx, Flag remote) {
  return tell(rx, [remote](HostedReceiver& hosted, Instant now) {
    return hosted.receiver->setRemote(remote, now);
  });
}
Answer<Flag> SondrelCore::GetRxRemote(Index rx) {
  return ask(rx, false, [](const Receiver& r) { return r.remote(); });
}

// Frequency and BFO.

Answer<Hz> SondrelCore::GetRxFrequency(Index rx, Long selector) {
  return ask(rx, Hz{-1}, [selector](const Receiver& r) { return frequencyOf(r, selector); });
}

Outcome SondrelCore::SetRxFrequency(Index rx, Flag channelized, Hz frequency) {
  return tell(rx, [&](HostedReceiver& hosted, Instant now) {
    Receiver& r = *hosted.receiver;
    const Hz offset = channelized ? channelOffset(r, frequency, kFixedChannelized) : 0;
    const auto tuned = static_cast<std::int64_t>(frequency) - offset;
    const auto within = std::clamp<std::int64_t>(tuned, INT32_MIN, INT32_MAX);
    return r.request(Item::Frequency, static_cast<Hz>(within), Cause::Request, now);
  });
}

Answer<Hz> SondrelCore::GetRxBfo(Index rx) {
  return ask(rx, Hz{0}, [](const Receiver& r) { return r.newest(Item::Bfo); });
}
Outcome SondrelCore::SetRxBfo(Index rx, Hz offset) { return request(rx, Item::Bfo, offset); }

Answer<Hz> SondrelCore::GetRxStep(Index rx) {
  return ask(rx, Hz{0}, [](const Receiver& r) { return r.newest(Item::Step); });
}

// S-meter, squelch, IO lines, clock and keys.

Answer<Text> SondrelCore::GetRxSMtText(Index rx, Long scale) {
  return ask(rx, Text(), [scale](const Receiver& r) -> Answer<Text> {
    if (scale != 1 && scale != 2) return Answer<Text>::failed({});
    const auto level = r.level();
    if (!level) return Text();
    return scale == 1 ? std::to_string(*level) : sUnits(*level);
  });
}
Answer<Long> SondrelCore::GetRxSql(Index rx) {
  return ask(rx, Long{0}, [](const Receiver& r) { return r.squelchOpen() ? 1 : 0; });
}
Answer<Long> SondrelCore::GetRxSqlLevel(Index rx) {
  return ask(rx, Long{-999}, [](const Receiver& r) { return r.squelchLevel().value_or(-999); });
}
Answer<Count> SondrelCore::GetRxOutCount(Index rx) {
  return ask(rx, Count{0}, [](const Receiver& r) { return r.can().lines; });
}
Answer<Long> SondrelCore::GetRxOut(Index rx, Long line) {
  return ask(rx, Long{0}, [line](const Receiver& r) { return r.out(line); });
}
Outcome SondrelCore::SetRxOut(Index rx, Long line, Long state) {
  return tell(rx, [&](HostedReceiver& hosted, Instant now) {
    return hosted.receiver->setOut(line, state, now);
  });
}
Outcome SondrelCore::SetRxTime(Index rx, Text time) {
  return tell(
      rx, [&](HostedReceiver& hosted, Instant now) { return hosted.receiver->setTime(time, now); });
}
Answer<Flag> SondrelCore::RxKeyPress(Index rx, Text key) {
  HostedReceiver* hosted = at(rx);
  if (!hosted) return Answer<Flag>::failed(false);
  const bool taken = hosted->keys.press(key, *hosted->receiver, clock_());
  afterwards();
  return taken;
}
Outcome SondrelCore::EndRxKeys(Index rx) {
  return tell(rx, [](HostedReceiver& hosted, Instant) {
    hosted.keys.end();
    return Outcome::Done;
  });
}

// Memory channels.

Answer<Count> SondrelCore::GetRxChnCount(Index rx) {
  return ask(rx, Count{0}, [](const Receiver& r) { return r.can().channelCount; });
}
Answer<Channel> SondrelCore::GetRxChnFirst(Index rx) {
  return ask(rx, Channel{0}, [](const Receiver& r) { return r.can().firstChannel; });
}
Answer<Flag> SondrelCore::HasRxChnSkip(Index rx) {
  return ask(rx, false, [](const Receiver& r) { return r.can().channelSkip; });
}
Answer<Channel> SondrelCore::GetRxChannel(Index rx) {
  const HostedReceiver* hosted = at(rx);
  return hosted ? Answer<Channel>(hosted->channels->current()) : Answer<Channel>::failed(-1);
}
Outcome SondrelCore::StoreRxChannel(Index rx, Channel channel) {
  return tell(rx, [&](HostedReceiver& h, Instant now) { return h.channels->store(channel, now); });
}
Outcome SondrelCore::SelectRxChannel(Index rx, Channel channel) {
  return tell(rx, [&](HostedReceiver& h, Instant now) { return h.channels->select(channel, now); });
}
Outcome SondrelCore::SetRxChannel(Index rx, Channel channel, Hz frequency, Hz bfo, Setting mode,
                                  Setting filter, Setting agc, Long skip) {
  const ChannelRecord record{frequency, bfo, mode, filter, agc, skip};
  return tell(
      rx, [&](HostedReceiver& h, Instant now) { return h.channels->set(channel, record, now); });
}
Outcome SondrelCore::ClearRxChannel(Index rx, Channel channel) {
  return tell(rx, [&](HostedReceiver& h, Instant now) { return h.channels->clear(channel, now); });
}
Answer<Flag> SondrelCore::ReadRxChannels(Index rx) {
  HostedReceiver* hosted = at(rx);
  if (!hosted) return Answer<Flag>::failed(false);
  const bool started = hosted->channels->startReading(clock_());
  afterwards();
  return started;
}
Outcome SondrelCore::StopRxChannels(Index rx) {
  return tell(rx, [](HostedReceiver& h, Instant) {
    h.channels->stopReading();
    return Outcome::Done;
  });
}

// Other programs.

Answer<Text> SondrelCore::GetRxShareState(Index rx) {
  const HostedReceiver* hosted = at(rx);
  if (!hosted) return Answer<Text>::failed({});
  return sharing_.state(hosted->entry.memories, clock_());
}
Answer<Text> SondrelCore::GetRxShareAddress(Index rx) {
  const HostedReceiver* hosted = at(rx);
  return hosted ? Answer<Text>(sharing_.address(hosted->entry.memories)) : Answer<Text>::failed({});
}
Answer<Count> SondrelCore::GetRxProgramCount(Index rx) {
  const HostedReceiver* hosted = at(rx);
  if (!hosted) return Answer<Count>::failed(0);
  return static_cast<Count>(sharing_.programs(hosted->entry.memories).size());
}
Answer<Text> SondrelCore::GetRxProgram(Index rx, Long program) {
  const HostedReceiver* hosted = at(rx);
  const auto programs =
      hosted ? sharing_.programs(hosted->entry.memories) : std::vector<std::string>();
  const auto place = static_cast<std::size_t>(program);
  if (program < 0 || place >= programs.size()) return Answer<Text>::failed({});
  return programs[place];
}
Outcome SondrelCore::EndRxProgram(Index rx, Text program) {
  const HostedReceiver* hosted = at(rx);
  const bool ended = hosted && sharing_.end(hosted->entry.memories, program);
  return ended ? Outcome::Done : Outcome::Failed;
}
Answer<Text> SondrelCore::GetRxMovedBy(Index rx) {
  const HostedReceiver* hosted = at(rx);
  return hosted ? Answer<Text>(sharing_.movedBy(hosted->entry.memories)) : Answer<Text>::failed({});
}

}  // namespace kelvane::sondrel
