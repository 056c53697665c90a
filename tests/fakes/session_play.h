#pragma once

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "components/sondrel/rigctld/rigctld_capabilities.h"
#include "components/sondrel/rigctld/rigctld_session.h"
#include "tests/fakes/fake_rig.h"

namespace kelvane::fakes {

/// Plays a session against a made-up server in made-up time.
class SessionPlay {
 public:
  explicit SessionPlay(FakeRig::Manner manner, sondrel::RigctldOptions options = {})
      : rig(manner), session(options) {}

  FakeRig rig;
  sondrel::RigctldSession session;
  Instant now = Instant{} + milliseconds(1000);
  milliseconds answerTime{1};
  bool deaf = false;          ///< the server reads and never answers
  std::size_t pieces = 1000;  ///< a reply comes in pieces of this many bytes
  std::vector<LinkState> links;
  std::vector<sondrel::ValueReport> values;
  std::shared_ptr<const sondrel::RigctldCapabilities> can;
  std::vector<std::string> lines;  ///< what the session sent
  std::vector<Instant> times;      ///< when
  std::uint32_t connection = 0;
  /// Time that a command takes, in place of answerTime, where it is set; kNoAnswer for ever.
  std::function<milliseconds(const std::string&)> takes;
  static constexpr milliseconds kNoAnswer{-1};
  /// In place of the rig's answer, where it is set.
  std::function<std::string(const std::string&)> instead;

  /// Opens the link and lets it come to rest.
  void open() {
    session.open(false, now);
    connect();
    run(milliseconds(900));
  }

  void connect() {
    connection = session.connectionWanted();
    if (connection != 0) session.connected(now);
    settle();
  }

  void run(milliseconds time) {
    const Instant end = now + time;
    settle();
    for (int steps = 0;; ++steps) {
      const Instant next = std::min(session.nextDue(), coming_.empty() ? kNever : comingAt_);
      if (next > end) break;
      if (steps == kMostSteps) throw std::runtime_error("the session never comes to rest");
      now = std::max(now, next);
      step();
    }
    now = end;
  }

  void feed(const std::string& bytes) {
    session.received(bytes, now);
    settle();
  }

  void request(sondrel::RigItem item, std::int32_t number, std::uint32_t ticket,
               std::string mode = {}) {
    session.request({item, number, std::move(mode), ticket}, now);
    settle();
  }

  void close(sondrel::CloseReason reason) {
    coming_.clear();
    connection = 0;
    session.closed(reason, now);
    settle();
  }

  /// The last value reported for an item; one with ticket ~0 where there was none.
  sondrel::ValueReport last(sondrel::RigItem item) const {
    for (auto report = values.rbegin(); report != values.rend(); ++report) {
      if (report->item == item) return *report;
    }
    return {item, -12345, {}, sondrel::Cause::Learned, ~0U, false};
  }
  long countOf(const std::string& line) const {
    return std::count(lines.begin(), lines.end(), line);
  }
  bool up() const { return !links.empty() && links.back() == LinkState::Up; }

 private:
  void step() {
    if (!coming_.empty() && now >= comingAt_) {
      const auto bytes = std::exchange(coming_, {});
      for (std::size_t i = 0; i < bytes.size(); i += pieces) {
        session.received(std::string_view(bytes).substr(i, pieces), now);
      }
    } else {
      session.tick(now);
    }
    settle();
  }

  /// Takes what the session has to say, and lets the server think about its answer.
  void settle() {
    for (auto& report : session.takeReports()) {
      if (const auto* link = std::get_if<sondrel::LinkReport>(&report))
        links.push_back(link->state);
      if (auto* value = std::get_if<sondrel::ValueReport>(&report)) values.push_back(*value);
      if (auto* found = std::get_if<sondrel::CapabilityReport>(&report)) can = found->found;
    }
    const auto line = session.takeOutput();
    if (session.connectionWanted() != connection) {
      connection = 0;
      coming_.clear();
      return;
    }
    if (line.empty()) return;
    lines.push_back(line.substr(0, line.size() - 1));
    times.push_back(now);
    const auto answer = instead ? instead(lines.back()) : rig.answer(lines.back());
    const auto time = takes ? takes(lines.back()) : answerTime;
    if (deaf || answer.empty() || time == kNoAnswer) return;
    coming_ += answer;
    comingAt_ = now + time;
  }

  std::string coming_;
  Instant comingAt_{};
  /// In one run; a session that is due and does nothing would else run for ever.
  static constexpr int kMostSteps = 200'000;
};

}  // namespace kelvane::fakes
