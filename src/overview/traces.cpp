#include "overview/traces.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <utility>

#include "base/number.h"
#include "levels/level_csv.h"
#include "overview/setting_copy.h"

namespace kelvane {

namespace {

constexpr LevelTime kOneMinute = 60'000;

struct Span {
  LevelTime length, tick;
  const char* words;
};
constexpr std::array kSpans{Span{kOneMinute, 10'000, "1 min"},
                            Span{2 * kOneMinute, 20'000, "2 min"},
                            Span{5 * kOneMinute, kOneMinute, "5 min"},
                            Span{10 * kOneMinute, 2 * kOneMinute, "10 min"},
                            Span{30 * kOneMinute, 5 * kOneMinute, "30 min"},
                            Span{60 * kOneMinute, 10 * kOneMinute, "1 h"},
                            Span{180 * kOneMinute, 30 * kOneMinute, "3 h"},
                            Span{360 * kOneMinute, 60 * kOneMinute, "6 h"},
                            Span{720 * kOneMinute, 120 * kOneMinute, "12 h"},
                            Span{1440 * kOneMinute, 240 * kOneMinute, "24 h"}};
constexpr std::array kCompared{10, 60, 600, 3600};
/// Rolling mean and peak are those of this share of the picture, but at least of three seconds.
constexpr int kRolledShare = 60;
constexpr LevelTime kLeastRolled = 3000;

/// A quotient that never is above the true one.
LevelTime floored(LevelTime value, LevelTime step) {
  return value / step - (value % step < 0 ? 1 : 0);
}

std::string levelWords(const LevelSpan& column, double offset) {
  return std::to_string(std::lround(column.mean + offset)) + " dBm";
}

}  // namespace

Traces::Traces(const Services& services) : services_(services) {
  const SettingsStore& kept = services_.settings;
  visible_.fill(true);
  span_ = static_cast<std::size_t>(
      std::clamp<std::int32_t>(kept.number("TracesSpan", 2), 0, kSpans.size() - 1));
  automatic_ = kept.flag("TracesAutoScale", true);
  peak_ = kept.flag("TracesPeak", false);
  mean_ = kept.flag("TracesMean", false);
  const int top = std::clamp<std::int32_t>(kept.number("TracesHighest", -30), -100, 100) / 10 * 10;
  scale_ = {top - 100.0, static_cast<double>(top)};
  readOffsets();
}

int Traces::receivers() const { return receiverCount(services_.receiver); }

/// Offsets go by what the receiver is known by, through renaming and moving.
std::string Traces::offsetName(Index rx) const {
  const Text id = services_.receiver.GetRxId(rx);
  return "LevelOffset " + (id.empty() ? name(rx) : id);
}

void Traces::readOffsets() {
  const int count = receivers();
  for (Index rx = 0; rx < kMostReceivers; ++rx)
    offsets_[rx] = rx < count ? services_.settings.number(offsetName(rx), 0) / 10.0 : 0;
}

void Traces::receiversChanged(const ReceiverMoves& moves) {
  moves.carry(visible_, true);
  reference_ = std::max<Index>(moves(reference_), 0);
  readOffsets();
  ++changes_;
}

/// Time of one column: whole milliseconds, so that columns stay the same while they move.
LevelTime Traces::step(int width) const {
  return std::max<LevelTime>(1, kSpans[span_].length / std::max(width, 1));
}

LevelTime Traces::endFor(int width) {
  const LevelTime each = step(width);
  return (floored(end_ ? *end_ : services_.watch.now(), each) + 1) * each;
}

Traces::Version Traces::version(int width) { return {endFor(width), changes_}; }

TraceFrame Traces::frame(int width, int height) {
  TraceFrame frame;
  frame.width = std::max(width, 1);
  frame.height = std::max(height, 1);
  const LevelTime each = step(frame.width);
  frame.to = endFor(frame.width);
  frame.from = frame.to - each * frame.width;
  frame.longestPause = static_cast<int>(LevelHistory::kLongestPause / each) + 1;
  const int rolled =
      static_cast<int>(std::max(kLeastRolled, kSpans[span_].length / kRolledShare) / each);
  for (Index rx = 0; rx < receivers(); ++rx) {
    if (!visible_[rx]) continue;
    TraceFrame::Trace trace{rx, std::vector<LevelSpan>(static_cast<std::size_t>(frame.width)), {}};
    services_.watch.of(rx).history->fill(frame.from, frame.to, trace.columns);
    if (offsets_[rx] != 0) {
      const auto offset = static_cast<float>(offsets_[rx]);
      for (LevelSpan& column : trace.columns) {
        column.least += offset;
        column.mean += offset;
        column.greatest += offset;
      }
    }
    if (peak_ || mean_) trace.rolled = rolling(trace.columns, std::max(rolled, 1));
    frame.traces.push_back(std::move(trace));
  }
  frame.scale = automatic_ ? automaticScale(frame) : scale_;
  addTimes(frame);
  addLevels(frame);
  addMarks(frame);
  addCursor(frame);
  return frame;
}

LevelScale Traces::automaticScale(const TraceFrame& frame) const {
  LevelSpan all;
  for (const TraceFrame::Trace& trace : frame.traces) {
    for (const LevelSpan& column : trace.columns) {
      if (column.readings > 0) all.add(column.least, column.mean, column.greatest, 1);
    }
  }
  if (all.readings == 0) return scale_;
  // Whole tens that leave room, so that the scale stays while levels move a little.
  return {std::floor((all.least - 3.0) / 10) * 10, std::ceil((all.greatest + 3.0) / 10) * 10};
}

void Traces::addTimes(TraceFrame& frame) const {
  const LevelClock& clock = services_.watch.clock();
  const LevelTime tick = kSpans[span_].tick;
  const Precision precision = tick < kOneMinute ? Precision::Seconds : Precision::Minutes;
  // The clock may have been set within the picture: ticks are of the times at its end.
  const WallTime difference = clock.utc(frame.to) - frame.to;
  for (LevelTime utc = (floored(frame.from + difference, tick) + 1) * tick;
       utc < frame.to + difference; utc += tick) {
    const LevelTime when = utc - difference;
    frame.times.push_back(
        {static_cast<int>((when - frame.from) * frame.width / (frame.to - frame.from)),
         utcTime(clock.utc(when) + 500, precision)});
  }
}

void Traces::addLevels(TraceFrame& frame) const {
  const double range = frame.scale.top - frame.scale.bottom;
  constexpr int kLeastApart = 24;
  const double each = range / 10 * kLeastApart > frame.height ? 20 : 10;
  for (double level = std::ceil(frame.scale.bottom / each) * each; level <= frame.scale.top;
       level += each)
    frame.levels.push_back({static_cast<int>(std::lround(frame.scale.y(level, frame.height))),
                            std::to_string(static_cast<int>(level))});
}

/// Of changes that follow each other closely the last one is marked.
void Traces::addMarks(TraceFrame& frame) const {
  constexpr int kApart = 6;
  for (const TraceFrame::Trace& trace : frame.traces) {
    const auto first = frame.marks.size();
    const auto& tuned = services_.watch.of(trace.rx).history->tuned();
    for (std::size_t i = 1; i < tuned.size(); ++i) {
      if (tuned[i].when < frame.from || tuned[i].when >= frame.to || tuned[i].frequency < 0)
        continue;
      const int x =
          static_cast<int>((tuned[i].when - frame.from) * frame.width / (frame.to - frame.from));
      if (frame.marks.size() > first && x - frame.marks.back().x < kApart) frame.marks.pop_back();
      frame.marks.push_back(
          {x, trace.rx, name(trace.rx) + " " + kilohertzText(tuned[i].frequency)});
    }
  }
}

void Traces::addCursor(TraceFrame& frame) const {
  if (!cursor_ || *cursor_ < frame.from || *cursor_ >= frame.to) return;
  const LevelTime each = step(frame.width);
  frame.cursor = static_cast<int>((*cursor_ - frame.from) / each);
  const WallTime utc = services_.watch.clock().utc(*cursor_);
  frame.cursorWords.push_back(
      utcTime(utc, each < 1000 ? Precision::Milliseconds : Precision::Seconds) + " UTC");
  for (const TraceFrame::Trace& trace : frame.traces) {
    // Between two readings the one before is told, as far as a line leads on from it.
    int x = frame.cursor;
    while (x > 0 && frame.cursor - x < frame.longestPause &&
           trace.columns[static_cast<std::size_t>(x)].readings == 0)
      --x;
    const LevelSpan& column = trace.columns[static_cast<std::size_t>(x)];
    frame.cursorWords.push_back(name(trace.rx) + " " +
                                (column.readings > 0 ? levelWords(column, 0) : "no reading"));
  }
}

void Traces::toggleVisible(Index rx) {
  if (rx < 0 || rx >= receivers()) return;
  visible_[rx] = !visible_[rx];
  ++changes_;
}

std::string Traces::statusLine() const {
  if (!message_.empty()) return message_;
  const std::string words = std::string(kSpans[span_].words) + " shown";
  if (!end_) return words;
  const WallTime utc = services_.watch.clock().utc(*end_);
  return words + ", up to " + utcDay(utc) + " " + utcTime(utc, Precision::Seconds) + " UTC";
}

void Traces::zoom(int direction) {
  const auto wanted = static_cast<int>(span_) + direction;
  span_ = static_cast<std::size_t>(std::clamp(wanted, 0, static_cast<int>(kSpans.size()) - 1));
  services_.settings.writeNumber("TracesSpan", static_cast<std::int32_t>(span_));
  message_.clear();
  ++changes_;
}

void Traces::pause(bool paused) {
  if (paused) {
    end_ = services_.watch.now();
  } else {
    end_.reset();
  }
  message_.clear();
  ++changes_;
}

void Traces::scroll(int direction) {
  const LevelTime now = services_.watch.now();
  const LevelTime span = kSpans[span_].length;
  const LevelTime step = span / 4;
  const LevelTime wanted = end_.value_or(now) + direction * step;
  end_ = std::max(wanted, now - LevelHistory::kKept + span);
  // The present has gone on since he went back: less than a step away is there.
  if (*end_ >= now || (direction > 0 && now - *end_ < step)) end_.reset();
  message_.clear();
  ++changes_;
}

void Traces::toggleScale() {
  automatic_ = !automatic_;
  services_.settings.writeFlag("TracesAutoScale", automatic_);
  ++changes_;
}

void Traces::shiftScale(int direction) {
  const double top = std::clamp(scale_.top + direction * 10, -100.0, 100.0);
  scale_ = {top - 100, top};
  automatic_ = false;
  services_.settings.writeFlag("TracesAutoScale", false);
  services_.settings.writeNumber("TracesHighest", static_cast<std::int32_t>(top));
  ++changes_;
}

void Traces::togglePeak() {
  peak_ = !peak_;
  services_.settings.writeFlag("TracesPeak", peak_);
  ++changes_;
}

void Traces::toggleMean() {
  mean_ = !mean_;
  services_.settings.writeFlag("TracesMean", mean_);
  ++changes_;
}

void Traces::pointAt(int column, int width) {
  if (column < 0 || column >= width) {
    cursor_.reset();
  } else {
    const LevelTime each = step(width);
    cursor_ = endFor(width) - each * (width - column) + each / 2;
  }
  ++changes_;
}

void Traces::moveCursor(int columns, int width) {
  const LevelTime each = step(width);
  const LevelTime to = endFor(width), from = to - each * width;
  const LevelTime middle = from + each * (width / 2);
  cursor_ = std::clamp(cursor_.value_or(middle) + columns * each, from, to - 1);
  ++changes_;
}

void Traces::nextReference() {
  const int count = receivers();
  if (count == 0) return;
  reference_ = static_cast<Index>((reference_ + 1) % count);
  ++changes_;
}

std::string Traces::comparedWords() const {
  const int seconds = kCompared[compared_];
  if (seconds < 600) return std::to_string(seconds) + " s";
  return seconds < 3600 ? std::to_string(seconds / 60) + " min" : "1 h";
}

void Traces::nextCompared() {
  compared_ = (compared_ + 1) % kCompared.size();
  ++changes_;
}

void Traces::changeOffset(Index rx, double decibels) {
  if (rx < 0 || rx >= receivers()) return;
  const double wanted = std::round((offsets_[rx] + decibels) * 10) / 10;
  offsets_[rx] = std::clamp(wanted, -99.9, 99.9);
  services_.settings.writeNumber(offsetName(rx), nearestLong(offsets_[rx] * 10));
  say(name(rx) + ": " + signedDecibels(offsets_[rx]) + " dB are added to its levels");
  ++changes_;
}

std::vector<std::string> Traces::results() {
  std::vector<std::string> lines;
  std::map<std::string, std::string> unlike;
  const LevelTime now = services_.watch.now();
  const int count = receivers();
  if (reference_ >= count) return lines;
  if (!services_.receiver.IsRxOnline(reference_)) return {"No link: " + name(reference_)};
  const ReceiverWatch::Receiver& first = services_.watch.of(reference_);
  for (Index rx = 0; rx < count; ++rx) {
    if (rx == reference_ || !visible_[rx]) continue;
    const ReceiverWatch::Receiver& second = services_.watch.of(rx);
    if (const Result<> comparable = checkComparable(rx); !comparable) {
      std::string& names = unlike[comparable.reason()];
      names += (names.empty() ? "" : ", ") + name(rx);
      continue;
    }
    const Comparison result =
        compare({*first.history, offsets_[reference_], first.unchanged},
                {*second.history, offsets_[rx], second.unchanged}, now, kCompared[compared_]);
    lines.push_back(comparisonLine(name(reference_), name(rx), result));
  }
  for (const auto& [why, names] : unlike) lines.push_back(why + ": " + names);
  return lines;
}

/// Whether a receiver can be compared with the reference now.
Result<> Traces::checkComparable(Index rx) const {
  if (!services_.receiver.IsRxOnline(rx)) return Failure{"No link"};
  const std::string differ =
      differingSettings(services_.watch.of(reference_).settings, services_.watch.of(rx).settings);
  if (differ.empty()) return {};
  return Failure{"Not the same " + differ + " as " + name(reference_)};
}

void Traces::copyResults() {
  std::string text;
  for (const std::string& line : results()) text += (text.empty() ? "" : "\r\n") + line;
  const LevelClock& clock = services_.watch.clock();
  const WallTime utc = clock.utc(clock.now());
  services_.clipboard.setText(utcDay(utc) + " " + utcTime(utc, Precision::Seconds) + " UTC " +
                              text);
  say("The comparison is on the clipboard");
}

void Traces::toggleRecording() {
  LevelRecorder& recorder = services_.recorder;
  if (recorder.running()) {
    recorder.stop();
    say("Levels are not recorded any more");
  } else {
    recorder.start(services_.now());
    say("Every level is recorded in " + pathText(recorder.folder()));
  }
}

void Traces::saveCsv() {
  const LevelTime end = end_.value_or(services_.watch.now());
  std::vector<LevelLine> lines;
  std::vector<std::string> names;
  const auto file = services_.files.saveFile("levels", "csv");
  if (!file) return;
  const auto replaced = services_.files.takeReplaced();
  for (Index rx = 0; rx < receivers(); ++rx) {
    names.push_back(name(rx));
    if (visible_[rx])
      collectLines(*services_.watch.of(rx).history, services_.watch.clock(),
                   end - kSpans[span_].length, end, rx, lines);
  }
  const std::string done = "Saved " + std::to_string(lines.size()) + " levels in " + *file;
  save(*file, replaced, done,
       [lines = std::move(lines), names = std::move(names)] { return levelCsv(lines, names); });
}

void Traces::tick() {
  std::string words;
  {
    const std::lock_guard lock(saved_->mutex);
    words.swap(saved_->words);
  }
  if (!words.empty()) say(std::move(words));
}

std::string Traces::askPictureName() {
  return services_.files.saveFile("traces", "png").value_or("");
}

void Traces::savePicture(const std::string& name, std::string bytes, const std::string& why) {
  const auto replaced = services_.files.takeReplaced();
  if (bytes.empty()) return say("Cannot save " + name + ": " + why);
  save(name, replaced, "Saved " + name, [bytes = std::move(bytes)] { return bytes; });
}

/// Made and written beside the window; a day of eight receivers is a long text.
void Traces::save(const std::string& file, const std::shared_ptr<ReplacedFile>& replaced,
                  const std::string& done, std::function<std::string()> content) {
  const std::filesystem::path path = pathFromText(file);
  say("Saving " + file);
  services_.saver.change(
      path,
      [path, replaced, content = std::move(content)](FileSteps& steps) {
        return writeInPlaceOf(replaced, path, content(), steps);
      },
      [saved = saved_, file, done](const Result<>& result) {
        const std::lock_guard lock(saved->mutex);
        saved->words = result ? done : "Cannot save " + file + ": " + result.reason();
      });
}

void Traces::say(std::string words) {
  message_ = std::move(words);
  ++changes_;
}

/// Where it never was open, a little aside of where the overview begins: both open at once.
WindowPlace Traces::startPlace(Global::Point owner) const {
  constexpr std::int32_t kAside = 480;
  return placeOf(services_.settings, "Traces", {owner.left + kAside, owner.top + kAside});
}

void Traces::leftAt(const WindowPlace& place) { keepPlace(services_.settings, "Traces", place); }

}  // namespace kelvane
