#include "overview/overview.h"

#include <algorithm>
#include <cmath>

#include "base/number.h"
#include "base/text.h"
#include "controls/stepping.h"
#include "ui/key_codes.h"

namespace kelvane {

namespace {

/// How far from the dial a station still is the one that is heard.
constexpr Hz kHeardWithin = 250;
/// Stations come and go with the minute.
constexpr WallTime kStationAsked = 60'000;
constexpr std::size_t kLongestTyped = 12;
constexpr std::size_t kMostCopies = 100;

std::string joined(std::string text, const std::string& more, const char* between) {
  if (!text.empty() && !more.empty()) text += between;
  return text + more;
}

}  // namespace

Overview::Overview(const Services& services)
    : services_(services), onTop_(services.settings.flag("OverviewOnTop", false)) {}

int Overview::rows() const { return receiverCount(services_.receiver); }

OverviewRow Overview::row(Index rx) {
  ReceiverComponent& receiver = services_.receiver;
  const ReceiverWatch::Receiver& watched = services_.watch.of(rx);
  OverviewRow row;
  row.name = name(rx);
  row.shown = services_.shown.exists() && services_.shown.index() == rx;
  row.online = receiver.IsRxOnline(rx);
  row.remote = receiver.GetRxRemote(rx);
  if (rx == focused_) row.entry = entry_;
  const Move& move = services_.watch.lastMove(rx);
  row.movedBy = moveWords(move, move.follows >= 0 ? name(move.follows) : std::string());
  fillLevels(row, watched);
  if (!row.online) {
    row.link = services_.linkWords(rx);
    return row;
  }
  const LevelSettings& told = watched.settings;
  row.frequency = told.frequency;
  row.mode = joined(told.mode, told.filter > 0 ? std::to_string(told.filter) : "", " ");
  const std::string attenuation =
      told.attenuation > 0 ? "Att " + std::to_string(told.attenuation) + " dB" : "";
  row.settings = joined(told.agc.empty() ? "" : "AGC " + told.agc, attenuation, ", ");
  row.station = station(rx, row.frequency);
  row.reading = watched.reading;
  if (watched.squelch >= 0) row.squelch = watched.squelch > 0 ? "SQ open" : "SQ closed";
  row.bar = services_.watch.bar(rx);
  if (const auto last = watched.history->last()) row.level = last->level;
  return row;
}

void Overview::fillLevels(OverviewRow& row, const ReceiverWatch::Receiver& watched) const {
  const auto tenths = [](float dBm) { return static_cast<std::int16_t>(std::lround(dBm * 10)); };
  const auto seconds = static_cast<LevelTime>(row.minute.size());
  const LevelTime end = services_.watch.clock().now() / 1000;
  for (LevelTime i = 0; i < seconds; ++i) {
    const LevelSpan span = watched.history->second(end - seconds + i);
    if (span.readings == 0) continue;
    row.minute[static_cast<std::size_t>(i)] = {tenths(span.least), tenths(span.mean),
                                               tenths(span.greatest), true, span.afterGap};
  }
}

/// The component speaks of one known frequency at a time: what it spoke of for the panel, it speaks
/// of afterwards.
const std::string& Overview::station(Index rx, Hz frequency) {
  Station& known = stations_[rx];
  const LevelClock& clock = services_.watch.clock();
  const WallTime minute = clock.utc(clock.now()) / kStationAsked;
  if (known.frequency == frequency && known.asked == minute) return known.name;
  known = {frequency, minute, {}};
  if (frequency < 0) return known.name;
  FrequencyComponent& component = services_.frequency;
  const Hz before = component.GetRxKnownFrequency();
  if (component.FindRxKnownFrequency(frequency, kHeardWithin))
    known.name = component.GetFrqKnownName();
  component.FindRxKnownFrequency(before, 0);
  return known.name;
}

std::string Overview::statusLine() const {
  if (!dragged_.empty()) return dragged_;
  if (!entry_.empty() && exists(focused_))
    return "Frequency for " + name(static_cast<Index>(focused_)) + ": " + entry_ +
           " kHz; Enter tunes it, Escape drops it";
  if (!message_.empty()) return message_;
  return "Digits and arrows tune the marked row; Ctrl+1 to 8 or a click shows a receiver; Ctrl+C, "
         "Ctrl+V or dragging copies a setting";
}

void Overview::focus(int row) {
  if (row == focused_) return;
  focused_ = row;
  entry_.clear();
}

void Overview::show(int row) {
  if (exists(row)) services_.show(static_cast<Index>(row));
}

/// Whether a receiver takes no commands now; says why.
bool Overview::refused(Index rx) {
  const Result<> open = checkTakesCommands(services_.receiver, rx);
  if (!open) message_ = name(rx) + ": " + open.reason();
  return !open;
}

void Overview::tune(Index rx, int direction) {
  if (refused(rx)) return;
  const Hz frequency = services_.receiver.GetRxFrequency(rx, kTuned);
  if (frequency < 0) return;
  message_.clear();
  const double target = static_cast<double>(frequency) +
                        static_cast<double>(direction) * services_.stepping.stepOf(rx);
  services_.receiver.SetRxFrequency(rx, false, nearestLong(target));
}

void Overview::wheel(int row, int delta) {
  if (!exists(row)) return;
  const int step = wheels_[static_cast<std::size_t>(row)].turned(delta);
  if (step != 0) tune(static_cast<Index>(row), step);
}

bool Overview::keyDown(int keyCode, int shift) {
  if (shift == key::CtrlHeld) return command(keyCode);
  if (shift != 0 || !exists(focused_)) return false;
  switch (keyCode) {
    case key::Right:
      tune(static_cast<Index>(focused_), 1);
      return true;
    case key::Left:
      tune(static_cast<Index>(focused_), -1);
      return true;
    default:
      return false;
  }
}

bool Overview::command(int keyCode) {
  if (keyCode >= '1' && keyCode <= '8') {
    show(keyCode - '1');
    return true;
  }
  switch (keyCode) {
    case 'C':
      markSource();
      return true;
    case 'V':
      if (exists(source_) && exists(focused_)) copy(source_, focused_);
      return true;
    case 'Z':
      takeBack();
      return true;
    default:
      return false;
  }
}

void Overview::markSource() {
  if (!exists(focused_)) return;
  source_ = focused_;
  const auto rx = static_cast<Index>(focused_);
  const Hz frequency = services_.receiver.GetRxFrequency(rx, kTuned);
  if (frequency >= 0) services_.clipboard.setText(decimalText(frequency / 1000.0));
  message_ = name(rx) + ": its setting is ready to be copied; Ctrl+V gives it to another row";
}

bool Overview::keyPress(int character) {
  if (!exists(focused_)) return false;
  const auto rx = static_cast<Index>(focused_);
  if (character == key::Enter) {
    if (entry_.empty())
      show(focused_);
    else
      commit();
    return true;
  }
  if (character == key::Escape) {
    if (entry_.empty()) return false;
    entry_.clear();
    return true;
  }
  if (character == key::Backspace) {
    if (!entry_.empty()) entry_.pop_back();
    return true;
  }
  const bool point = character == '.' || character == ',';
  if (!isDigit(character) && !point) return false;
  if (refused(rx) || entry_.size() == kLongestTyped) return true;
  if (!point || entry_.find('.') == std::string::npos)
    entry_ += point ? '.' : static_cast<char>(character);
  return true;
}

void Overview::commit() {
  const auto rx = static_cast<Index>(focused_);
  if (refused(rx)) return entry_.clear();
  const double hertz = std::round(num(entry_) * 1000);
  const Result<> in = checkReaches(services_.receiver, rx, hertz);
  if (!in) {
    message_ = name(rx) + ": " + entry_ + " kHz is out of reach; " + in.reason();
    return entry_.clear();
  }
  services_.receiver.SetRxFrequency(rx, false, nearestLong(hertz));
  message_.clear();
  entry_.clear();
}

void Overview::dragOver(int from, int to) {
  if (!exists(from)) return dragEnded();
  const std::string setting = " the setting of " + name(static_cast<Index>(from));
  dragged_ = exists(to) && to != from
                 ? "Let go to give " + name(static_cast<Index>(to)) + setting
                 : "Let go over another row to give it" + setting + "; Escape drops it";
}

void Overview::copy(int from, int to) {
  if (!exists(from) || !exists(to) || from == to) return;
  const auto source = static_cast<Index>(from), target = static_cast<Index>(to);
  const SettingCopy before = settingOf(services_.receiver, target);
  const Result<std::string> applied =
      applySetting(services_.receiver, target, settingOf(services_.receiver, source));
  if (!applied) {
    message_ =
        name(target) + " does not take the setting of " + name(source) + ": " + applied.reason();
    return;
  }
  if (copies_.size() == kMostCopies) copies_.erase(copies_.begin());
  copies_.push_back({target, before});
  message_ = name(target) + " has the setting of " + name(source) +
             (applied->empty() ? "" : " without " + *applied) + "; Ctrl+Z takes it back";
}

void Overview::takeBack() {
  if (copies_.empty()) return;
  const Copied last = copies_.back();
  const Result<std::string> applied = applySetting(services_.receiver, last.rx, last.before);
  if (!applied) {
    message_ = name(last.rx) + " does not take its setting back: " + applied.reason();
    return;
  }
  copies_.pop_back();
  message_ = name(last.rx) + " has the setting of before";
}

void Overview::receiversChanged(const ReceiverMoves& moves) {
  entry_.clear();
  message_.clear();
  dragged_.clear();
  const auto moved = [&moves](int row) { return row < 0 ? row : moves(static_cast<Index>(row)); };
  focused_ = moved(focused_);
  source_ = moved(source_);
  for (Copied& copied : copies_) copied.rx = moves(copied.rx);
  std::erase_if(copies_, [](const Copied& copied) { return copied.rx < 0; });
  stations_.fill({});
  wheels_.fill({});
}

void Overview::setOnTop(bool onTop) {
  onTop_ = onTop;
  services_.settings.writeFlag("OverviewOnTop", onTop);
}

WindowPlace Overview::startPlace(Global::Point owner) const {
  return placeOf(services_.settings, "Overview", owner);
}

void Overview::leftAt(const WindowPlace& place) {
  keepPlace(services_.settings, "Overview", place);
}

std::string spokenRow(int number, const OverviewRow& row) {
  std::string words = std::to_string(number) + " " + row.name;
  if (row.shown) words += ", shown";
  const auto add = [&words](const std::string& more) {
    if (!more.empty()) words += ", " + more;
  };
  add(row.link);
  if (row.frequency >= 0) add(kilohertzText(row.frequency) + " kHz");
  for (const std::string* text : {&row.mode, &row.settings, &row.station, &row.squelch}) add(*text);
  if (row.online && !row.remote) add("no remote control");
  if (!row.movedBy.empty()) add("moved by " + row.movedBy);
  if (!row.entry.empty()) add("typed " + row.entry + " kilohertz");
  return words;
}

}  // namespace kelvane
