#include "components/sondrel/radios/radio_trial.h"

#include <string_view>
#include <utility>

#include "base/barrier.h"
#include "base/number.h"
#include "base/text.h"
#include "components/sondrel/radios/radio_faults.h"
#include "components/sondrel/radios/radio_kind.h"

namespace kelvane::sondrel {

namespace {

// rigctld listens only after it has tried its radio, several times where that is silent.
constexpr milliseconds kStartLimit{20'000};
constexpr milliseconds kAnswerLimit{10'000};
constexpr milliseconds kMeterLimit{4000};
constexpr milliseconds kSpeedLimit{6000};
/// Makes rigctld give a speed up soon.
constexpr const char* kQuickReplies = "-C timeout=400,retry=0";

std::string lastLineOf(std::string_view text) {
  text = trimmed(text);
  const auto from = text.rfind('\n');
  text = trimmed(from == text.npos ? text : text.substr(from + 1));
  return validUtf8(text.substr(0, 200), '?');
}

std::string placeOf(const RadioSetup& setup) {
  if (setup.device.empty()) return "The radio";
  return setup.device;
}

}  // namespace

RadioTrial::RadioTrial(RadioSetup setup, std::vector<std::int32_t> speeds,
                       std::function<void()> wake)
    : setup_(std::move(setup)),
      speeds_(std::move(speeds)),
      wake_(std::move(wake)),
      thread_([this] { run(); }) {}

RadioTrial::~RadioTrial() {
  stop_ = true;
  thread_.join();
}

std::string RadioTrial::words() const {
  const std::lock_guard lock(mutex_);
  return words_;
}

std::optional<std::int32_t> RadioTrial::answeredAt() const {
  const std::lock_guard lock(mutex_);
  return answeredAt_;
}

void RadioTrial::say(const std::string& line) {
  {
    const std::lock_guard lock(mutex_);
    words_ += (words_.empty() ? "" : "\n") + line;
  }
  if (wake_) wake_();
}

/// Takes up what the server wrote; whether there is no use in waiting on.
bool RadioTrial::stopped() {
  written_ += server_.takeWritten();
  const bool runs = server_.running();
  if (!runs) written_ += server_.takeWritten();
  return stop_ || !runs || !radioFault(setup_, written_).empty();
}

void RadioTrial::run() {
  barrier(
      "trying a radio", [this] { trySpeeds(); }, [this](const auto& words) { say(words); });
  server_.end();
  if (stop_) say("Stopped.");
  running_ = false;
  if (wake_) wake_();
}

void RadioTrial::trySpeeds() {
  if (speeds_.size() < 2) {
    if (!speeds_.empty()) setup_.speed = speeds_.front();
    trySpeed(Depth::Whole);
    return;
  }
  const std::string options = setup_.options;
  setup_.options = kQuickReplies + (options.empty() ? options : " " + options);
  for (const std::int32_t speed : speeds_) {
    if (stop_) return;
    setup_.speed = speed;
    if (trySpeed(Depth::FrequencyAlone)) return say("Found: " + std::to_string(speed) + ".");
    // What is no matter of speed is the same at every other one.
    if (failure_ != radioSilentWords(setup_)) return say(failure_);
    say(std::to_string(speed) + ": no answer.");
  }
  if (!stop_)
    say("The radio answers at none of these speeds. Is it switched on, and is it " +
        placeOf(setup_) + "?");
}

bool RadioTrial::trySpeed(Depth depth) {
  const bool whole = depth == Depth::Whole;
  ServerTalk talk([this] { return stopped(); });
  const Result<> started = startServer(talk, whole ? kStartLimit : kSpeedLimit);
  const bool answers = started && askFrequency(talk, whole ? kAnswerLimit : kSpeedLimit);
  if (answers) {
    const std::lock_guard lock(mutex_);
    answeredAt_ = setup_.speed;
  }
  if (!whole && answers) say(std::to_string(setup_.speed) + ": " + frequency_);
  if (whole && answers) {
    say("The radio answers: " + frequency_);
    askRest(talk);
    if (!stop_) say("It works.");
  }
  if (!answers) failure_ = started ? failure() : started.reason();
  if (whole && !answers && !stop_) say(failure_);
  server_.end();
  return answers;
}

/// Starts a server to talk to.
Result<> RadioTrial::startServer(ServerTalk& talk, milliseconds limit) {
  server_.end();
  written_.clear();
  const Result<OwnServer::Start> start = serverOf(setup_)->prepare();
  if (!start) return start.failure();
  const Result<> started = server_.start(start->command, Written::Kept);
  if (!started) return Failure{"rigctld cannot be started: " + started.reason()};
  const bool told = speeds_.size() < 2;
  if (told) say("rigctld is started.");
  if (!talk.open("127.0.0.1", start->port, limit, true)) return Failure{failure()};
  if (told && !setup_.device.empty()) say(setup_.device + " is open.");
  return {};
}

bool RadioTrial::askFrequency(ServerTalk& talk, milliseconds limit) {
  const auto answer = talk.ask("f", limit);
  const double hertz = hertzIn(answer);
  if (hertz <= 0) return false;
  frequency_ = decimalText(hertz / 1000) + " kHz";
  return true;
}

void RadioTrial::askRest(ServerTalk& talk) {
  const auto mode = talk.ask("m", kMeterLimit);
  if (mode && !mode->empty() && !mode->starts_with("RPRT")) say("Its mode: " + *mode);
  talk.restOfAnswer(milliseconds(100));
  const auto level = talk.ask("l STRENGTH", kMeterLimit);
  const bool told = level && !level->empty() && !level->starts_with("RPRT");
  if (!stop_) say(told ? "Its meter: " + *level + " dB against S9" : "It tells no meter reading.");
}

/// Why the last speed did not do.
std::string RadioTrial::failure() {
  written_ += server_.takeWritten();
  if (const auto words = radioFault(setup_, written_); !words.empty()) return words;
  if (server_.running() || stop_) return radioSilentWords(setup_);
  const std::string last = lastLineOf(written_);
  return last.empty() ? "rigctld ended." : "rigctld ended: " + last;
}

}  // namespace kelvane::sondrel
