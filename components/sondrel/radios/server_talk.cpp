#include "components/sondrel/radios/server_talk.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "base/number.h"
#include "base/text.h"

namespace kelvane::sondrel {

namespace {

constexpr milliseconds kSlice{20};
constexpr milliseconds kConnectAgainAfter{100};
constexpr std::size_t kMostReceived = 200'000;

Instant talkNow() { return std::chrono::steady_clock::now(); }

}  // namespace

bool ServerTalk::open(const std::string& host, std::int32_t port, milliseconds limit,
                      bool keepTrying) {
  const Instant end = talkNow() + limit;
  open_ = false;
  client_.open(host, port, talkNow());
  while (!open_ && talkNow() < end && !stopped_()) {
    const auto events = client_.wait(talkNow(), std::min(end, talkNow() + kSlice));
    open_ = events.opened;
    if (!events.failed) continue;
    if (!keepTrying) return false;
    std::this_thread::sleep_for(kConnectAgainAfter);
    client_.open(host, port, talkNow());
  }
  return open_;
}

std::optional<std::string> ServerTalk::ask(const std::string& question, milliseconds limit) {
  if (!open_) return std::nullopt;
  received_.clear();
  client_.send(question + "\n");
  const Instant end = talkNow() + limit;
  while (talkNow() < end && !stopped_()) {
    const auto events = client_.wait(talkNow(), std::min(end, talkNow() + kSlice));
    if (received_.size() < kMostReceived) received_ += events.received;
    const auto lineEnd = received_.find('\n');
    if (lineEnd != std::string::npos) {
      std::string line(trimmed(received_.substr(0, lineEnd)));
      received_.erase(0, lineEnd + 1);
      return line;
    }
    if (events.failed) open_ = false;
    if (!open_) return std::nullopt;
  }
  return std::nullopt;
}

std::string ServerTalk::restOfAnswer(milliseconds quiet) {
  Instant end = talkNow() + quiet;
  while (open_ && talkNow() < end && !stopped_()) {
    const auto events = client_.wait(talkNow(), std::min(end, talkNow() + kSlice));
    if (!events.received.empty() && received_.size() < kMostReceived) {
      received_ += events.received;
      end = talkNow() + quiet;
    }
    if (events.failed) open_ = false;
  }
  return std::move(received_);
}

double hertzIn(const std::optional<std::string>& answer) {
  const bool number = answer && answer->find_first_not_of("0123456789.") == answer->npos;
  return number ? num(*answer) : 0;
}

}  // namespace kelvane::sondrel
