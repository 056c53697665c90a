#pragma once

#include <cstdint>
#include <cstdio>
#include <span>
#include <string>

#include "components/sondrel/rigctld/rigctld_capabilities.h"
#include "components/sondrel/rigctld/rigctld_session.h"
#include "tests/fakes/fake_rig.h"

namespace kelvane::fakes {

/// Drives a session with whatever bytes say: replies cut, doubled, garbled or missing, connections
/// that come and go, requests of any value, time that passes. Says what went wrong; empty when
/// nothing did.
class SessionStorm {
 public:
  std::string play(std::span<const std::uint8_t> bytes) {
    bytes_ = bytes;
    rig_ = FakeRig(static_cast<FakeRig::Manner>(next() % 5));
    session_.open(false, now_);
    while (!bytes_.empty() && wrong_.empty()) {
      act();
      session_.tick(now_);
      check();
    }
    return wrong_;
  }

 private:
  std::uint8_t next() {
    if (bytes_.empty()) return 0;
    const auto byte = bytes_.front();
    bytes_ = bytes_.subspan(1);
    return byte;
  }
  std::string some(std::size_t length) {
    std::string text;
    while (text.size() < length && !bytes_.empty()) text += static_cast<char>(next());
    return text;
  }
  std::int32_t anyNumber() {
    std::uint32_t number = 0;
    for (int i = 0; i < 4; ++i) number = number << 8 | next();
    return static_cast<std::int32_t>(number);
  }

  void act() {
    static const std::string kPieces[] = {
        "RPRT 0\n",      "RPRT -5\n",
        "get_freq:\n",   "RPRT 1\nRPRT 1\n",
        "7050000\n",     "USB 2400\n",
        "done\n",        "1e30\n",
        "-2147483648\n", "get_level: STRENGTH\n999999999999\nRPRT 0\n"};
    const auto choice = next();
    switch (choice % 16) {
      case 0:
        return session_.closed(static_cast<sondrel::CloseReason>(next() % 6), now_);
      case 1:
        return session_.connected(now_);
      case 2:
        return session_.open(next() % 2 == 0, now_);
      case 3:
        return feed(some(next()));
      case 4:
        return feed(kPieces[next() % std::size(kPieces)]);
      case 5:
        session_.request({static_cast<sondrel::RigItem>(next() % sondrel::kRigItems), anyNumber(),
                          next() % 2 == 0 ? "AM" : some(5), next()},
                         now_);
        return;
      case 6:
        return pass(next() * (choice < 128 ? 20 : 400));
      case 7:
        if (choice == 7) session_.close();
        return;
      case 8:
        rig_.frequency = anyNumber();
        return;
      case 9:
        rig_.trouble = next() % 25;
        return;
      case 10:
        return rig_.trouble.reset();
      case 11:
        rig_.powered = choice < 128;
        return;
      case 12:
        return feed(garbled(std::exchange(answer_, {})));
      default:
        feed(std::exchange(answer_, {}));
        return pass(choice / 4);
    }
  }

  /// An answer whose beginning is gone, or with something else in the place of a piece.
  std::string garbled(std::string answer) {
    if (next() % 2 == 0) return answer.erase(0, next() % 8);
    if (answer.empty()) return answer;
    const std::size_t place = static_cast<std::size_t>(next() * 256 + next()) % answer.size();
    const std::size_t length = next() % 32;
    return answer.replace(place, length, some(next() % 32));
  }

  void pass(int ms) { now_ += milliseconds(ms); }

  void feed(const std::string& bytes) {
    const auto half = bytes.size() / 2;
    if (next() % 4 == 0) {
      session_.received(std::string_view(bytes).substr(0, half), now_);
      session_.received(std::string_view(bytes).substr(half), now_);
    } else {
      session_.received(bytes, now_);
    }
    answered_ = answered_ || !bytes.empty();
  }

  void check() {
    if (session_.connectionWanted() != connection_) {
      connection_ = session_.connectionWanted();
      answered_ = true;
      answer_.clear();
      if (next() % 4 != 0) session_.connected(now_);
    }
    const auto line = session_.takeOutput();
    if (!line.empty()) checkLine(line);
    for (const auto& report : session_.takeReports()) {
      if (const auto* found = std::get_if<sondrel::CapabilityReport>(&report)) can_ = found->found;
      const auto* value = std::get_if<sondrel::ValueReport>(&report);
      const bool frequency = value && value->item == sondrel::RigItem::Frequency;
      if (frequency && value->number < 0) wrong_ = "a negative frequency was reported";
    }
  }

  void checkLine(const std::string& line) {
    if (connection_ == 0) wrong_ = "sent without a connection: " + line;
    if (!answered_ && now_ < sent_ + kGivenUp) wrong_ = "a second command was under way: " + line;
    if (line.size() > 200) wrong_ = "too long: " + line;
    if (line.find('\n') != line.size() - 1) wrong_ = "not one line: " + line;
    answered_ = false;
    sent_ = now_;
    answer_ = rig_.answer(line.substr(0, line.size() - 1));
    const auto words = FakeRig::split(line);
    const auto& command = words[0];
    const bool sets =
        command.size() <= 2 && std::string("FMLUP").find(command.back()) != std::string::npos;
    if (!sets || words.back() == "?") return;
    if (!can_) {
      wrong_ = "changed the radio before the link was up: " + line;
    } else if (command.back() == 'F') {
      const auto hertz = std::stoll(words.back());
      if (hertz < can_->lowestFrequency() || hertz > can_->highestFrequency()) {
        wrong_ = "out of range: " + line;
      }
    }
  }

  std::span<const std::uint8_t> bytes_;
  FakeRig rig_{FakeRig::Manner::Rigctld};
  sondrel::RigctldSession session_{sondrel::RigctldOptions{}};
  std::shared_ptr<const sondrel::RigctldCapabilities> can_;
  Instant now_ = Instant{} + milliseconds(1000);
  /// Where late answers can be told from others, the radio is asked on after this time.
  static constexpr milliseconds kGivenUp{30'000};
  std::uint32_t connection_ = 0;
  bool answered_ = true;
  Instant sent_{};
  std::string answer_;
  std::string wrong_;
};

}  // namespace kelvane::fakes
