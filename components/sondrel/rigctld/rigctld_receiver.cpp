#include "components/sondrel/rigctld/rigctld_receiver.h"

#include <chrono>
#include <string_view>
#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "components/sondrel/rigctld/rigctld_words.h"

namespace kelvane::sondrel {

namespace {

/// What may be known of a radio that has not answered yet.
RigctldCapabilities presumed(const RigctldOptions& options) {
  RigctldCapabilities can;
  can.modes = {"AM", "FM", "USB", "LSB", "CW"};
  if (options.highest > options.lowest) {
    can.ranges = {{double(options.lowest), double(options.highest)}};
  }
  return can;
}

std::int32_t secondsOfToday() {
  using namespace std::chrono;
  const auto now = floor<seconds>(system_clock::now());
  return static_cast<std::int32_t>((now - floor<days>(now)).count());
}

/// The last word as "hh:mm" or "hh:mm:ss" in seconds of the day.
std::optional<std::int32_t> secondsOfDay(std::string_view text) {
  const auto word = text.substr(text.find_last_of(" T") + 1);
  const auto parts = split(word, ':');
  if (parts.size() < 2 || parts.size() > 3) return std::nullopt;
  std::int32_t seconds = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    const auto number = i < parts.size() ? wholeNumber(parts[i]) : 0;
    if (!number || *number < 0 || *number > (i == 0 ? 23 : 59)) return std::nullopt;
    seconds = seconds * 60 + static_cast<std::int32_t>(*number);
  }
  return seconds;
}

}  // namespace

RigctldReceiver::RigctldReceiver(ReceiverHost& host, std::string name, const RigctldSetup& setup)
    : Receiver(host, std::move(name)),
      manner_(setup.manner),
      mapping_(setup.manner, presumed(setup.options)),
      remoteWanted_(setup.remote),
      worker_(setup.address, setup.options,
              [this, mail = mailbox()](std::vector<RigReport> reports, std::uint32_t order) {
                if (box_.put(std::move(reports), order)) mail.post([this] { collect(); });
              }) {
  setCapabilities(mapping_.capabilities());
}

Outcome RigctldReceiver::setTime(const Text& time, Instant) {
  if (!online()) return Outcome::Failed;
  if (!mapping_.hasClock()) return Outcome::Unsupported;
  const auto seconds = trimmed(time).empty() ? secondsOfToday() : secondsOfDay(trimmed(time));
  if (!seconds) return Outcome::Failed;
  worker_.request({RigItem::Clock, *seconds, {}, 0});
  return Outcome::Done;
}

void RigctldReceiver::openLink(Instant) {
  const bool reopen = link_ == LinkState::Up;
  link_.reset();
  waiting_ = {};
  order_ = worker_.open(reopen);
}

void RigctldReceiver::closeLink(Instant) {
  link_.reset();
  waiting_ = {};
  order_ = worker_.close();
}

void RigctldReceiver::carryOut(const Request& request, Instant) {
  auto translation = translated(request);
  if (!translation) return refused(request);
  waiting_[static_cast<std::size_t>(request.item)] = request;
  worker_.request(std::move(*translation));
}

void RigctldReceiver::takeRemote(bool remote, Instant now) {
  remoteWanted_ = remote;
  Receiver::takeRemote(remote, now);
}

std::optional<RigRequest> RigctldReceiver::translated(const Request& request) const {
  const auto number = request.value;
  const auto to = [&](RigItem item, std::int32_t value) {
    return RigRequest{item, value, {}, request.ticket};
  };
  switch (request.item) {
    case Item::Frequency:
      return to(RigItem::Frequency, number);
    case Item::Filter:
      return to(RigItem::Filter, number);
    case Item::Agc:
      return to(RigItem::Agc, mapping_.agcCode(number));
    case Item::Blanker:
      return to(RigItem::Blanker, number);
    case Item::Attenuator:
      return to(RigItem::Attenuator, mapping_.decibels(number));
    case Item::Bfo:
      return to(RigItem::Bfo, number);
    case Item::HfFilter:
      return to(RigItem::Preamp, mapping_.preamp(number != 0));
    case Item::Mode: {
      auto asked = to(RigItem::Mode, mapping_.width(request.filter));
      asked.mode = mapping_.modeName(number);
      return asked;
    }
    case Item::Step:
      break;
  }
  return std::nullopt;
}

void RigctldReceiver::collect() {
  for (const auto& entry : box_.take()) take(entry);
}

void RigctldReceiver::take(const RigctldReportBox::Entry& entry) {
  // What was found before the link was opened or closed anew says nothing of it.
  const bool old = entry.order != order_;
  if (const auto* link = std::get_if<LinkReport>(&entry.report); link && !old) take(*link);
  if (const auto* found = std::get_if<CapabilityReport>(&entry.report)) take(*found);
  if (const auto* value = std::get_if<ValueReport>(&entry.report)) take(*value);
}

void RigctldReceiver::take(const LinkReport& report) {
  link_ = report.state;
  if (report.state == LinkState::Up) return linkUp(remoteWanted_);
  waiting_ = {};
  linkDown(report.state);
}

void RigctldReceiver::take(const CapabilityReport& report) {
  mapping_ = RigctldMapping(manner_, *report.found);
  found_ = inWords(*report.found);
  setCapabilities(mapping_.capabilities());
  // A slow radio tells some of its abilities when it is up already: whoever hears of its remote
  // state looks at all of its settings again.
  if (online()) remoteIs(remote());
}

void RigctldReceiver::take(const ValueReport& report) {
  const auto number = report.number;
  switch (report.item) {
    case RigItem::Frequency:
      return takeNews(report, Item::Frequency, number);
    case RigItem::Mode:
      return takeNews(report, Item::Mode, mapping_.mode(report.mode));
    case RigItem::Filter:
      return takeNews(report, Item::Filter, number);
    case RigItem::Agc:
      return takeNews(report, Item::Agc, mapping_.agc(number));
    case RigItem::Blanker:
      return takeNews(report, Item::Blanker, number != 0 ? 1 : 0);
    case RigItem::Attenuator:
      return takeNews(report, Item::Attenuator, mapping_.attenuator(number));
    case RigItem::Preamp:
      return takeNews(report, Item::HfFilter, number != 0 ? 1 : 0);
    case RigItem::Bfo:
      return takeNews(report, Item::Bfo, number);
    case RigItem::Step:
      return takeNews(report, Item::Step, number);
    case RigItem::Strength:
      if (online()) levelIs(mapping_.level(number));
      return;
    case RigItem::Squelch:
      return squelchIs(number != 0);
    case RigItem::SquelchLevel:
      return squelchLevelIs(mapping_.level(number));
    case RigItem::Pitch:
    case RigItem::Shift:
    case RigItem::Clock:
      return;
  }
}

/// Passes on a value in the contract's numbers, as the answer to a request or as a change.
void RigctldReceiver::takeNews(const ValueReport& report, Item item, std::int32_t value) {
  auto& waiting = waiting_[static_cast<std::size_t>(item)];
  const bool answers = report.ticket != 0 && waiting && waiting->ticket == report.ticket;
  if (answers && !report.refused) {
    const auto request = *std::exchange(waiting, std::nullopt);
    return done(request, value, item == Item::Mode ? report.number : 0);
  }
  if (!report.known) {
    // Without a value there is nothing to go back to.
  } else if (item == Item::Mode) {
    changedMode(value, report.number, report.cause);
  } else {
    changed(item, value, report.cause);
  }
  if (answers) refused(*std::exchange(waiting, std::nullopt));
}

}  // namespace kelvane::sondrel
