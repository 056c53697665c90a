#include <gtest/gtest.h>

#include "tests/fakes/session_play.h"

namespace kelvane::sondrel {
namespace {

using fakes::FakeRig;
using fakes::SessionPlay;
using Manner = FakeRig::Manner;
using Links = std::vector<LinkState>;

class RigctldLink : public testing::Test {
 protected:
  void run(int ms) { play.run(milliseconds(ms)); }
  /// Asks for the link again, as the panel does while it is down.
  void retry() {
    play.links.clear();
    play.session.open(false, play.now);
    if (play.session.connectionWanted() != play.connection) return play.connect();
    run(0);
  }

  SessionPlay play{Manner::Rigctld};
};

TEST_F(RigctldLink, PutsAFailedConnectionIntoWords) {
  const std::pair<CloseReason, LinkState> cases[] = {
      {CloseReason::BadAddress, LinkState::BadAddress},
      {CloseReason::Refused, LinkState::CannotOpen},
      {CloseReason::Unreachable, LinkState::NoLoop},
      {CloseReason::TimedOut, LinkState::Timeout},
      {CloseReason::NoServer, LinkState::Configuration}};
  for (const auto& [reason, state] : cases) {
    SessionPlay failing(Manner::Rigctld);
    failing.session.open(false, failing.now);
    EXPECT_NE(failing.session.connectionWanted(), 0U);
    failing.close(reason);
    EXPECT_EQ(failing.links, Links{state});
    EXPECT_EQ(failing.session.connectionWanted(), 0U) << "tried again only when asked";
    EXPECT_EQ(failing.session.nextDue(), kNever);
  }
}

TEST_F(RigctldLink, ReportsEachComingUpOnceAndAnswersEachRetry) {
  play.open();
  run(10000);
  EXPECT_EQ(play.links, Links{LinkState::Up});
  play.close(CloseReason::Ended);
  EXPECT_EQ(play.links, (Links{LinkState::Up, LinkState::Error}));
  for (int i = 0; i < 3; ++i) {
    play.links.clear();
    play.session.open(false, play.now);
    play.close(CloseReason::Refused);
    EXPECT_EQ(play.links, Links{LinkState::CannotOpen}) << "each retry has its answer";
  }
  play.lines.clear();
  retry();
  run(900);
  EXPECT_EQ(play.links, Links{LinkState::Up});
  EXPECT_EQ(play.lines[0], "\\chk_vfo") << "the handshake is done anew";
  play.links.clear();
  play.session.open(true, play.now);
  play.connect();
  run(900);
  EXPECT_EQ(play.links, Links{LinkState::Up}) << "a link that is up is opened anew on demand";
}

TEST_F(RigctldLink, KnowsWhoIsNoServer) {
  for (const std::string reply :
       {"HTTP/1.1 400 Bad Request\r\nContent-Type: text/html\r\n\r\n<html></html>\r\n",
        "\x01\x02\xff garbage\n", "220 mail ready\n"}) {
    for (const std::size_t pieces : {1000, 1}) {
      SessionPlay wrong(Manner::Rigctld);
      wrong.pieces = pieces;
      wrong.instead = [&](const std::string&) { return reply; };
      wrong.open();
      EXPECT_EQ(wrong.links, Links{LinkState::BadIdentity}) << reply;
      EXPECT_EQ(wrong.connection, 0U);
    }
  }
  SessionPlay late(Manner::Rigctld);
  late.instead = [&](const std::string& line) {
    return line == "+f" ? "get_freq:\n<b>7050</b>\nRPRT 0\n" : late.rig.answer(line);
  };
  late.open();
  EXPECT_EQ(late.links, Links{LinkState::BadIdentity});
}

TEST_F(RigctldLink, NamesAWrongConfiguration) {
  for (const int error : {-19, -2}) {
    SessionPlay refused(Manner::Rigctld);
    refused.instead = [&](const std::string&) { return "RPRT " + std::to_string(error) + "\n"; };
    refused.open();
    EXPECT_EQ(refused.links, Links{LinkState::Configuration});
  }
}

TEST_F(RigctldLink, PutsASilenceIntoWordsAndWaitsForTheServer) {
  // A server that has a radio behind it is most likely waiting for that.
  for (const auto& [manner, silence] : {std::pair{Manner::Rigctld, LinkState::NotResponding},
                                        {Manner::StaticSdr, LinkState::Timeout}}) {
    SessionPlay quiet(manner);
    quiet.open();
    quiet.deaf = true;
    quiet.links.clear();
    quiet.run(milliseconds(10200));
    EXPECT_EQ(quiet.links, Links{silence});
    EXPECT_NE(quiet.connection, 0U) << "a new connection would wait for the same radio";
    // Retries are answered, and change nothing.
    quiet.links.clear();
    quiet.session.open(false, quiet.now);
    quiet.run(milliseconds(2100));
    EXPECT_EQ(quiet.links, Links{silence});
    EXPECT_NE(quiet.connection, 0U);
    const auto sent = quiet.lines.size();
    quiet.deaf = false;
    quiet.feed(quiet.rig.answer(quiet.lines.back()));
    quiet.run(milliseconds(1500));
    EXPECT_TRUE(quiet.up()) << "the reply that was waited for heals the link";
    EXPECT_GT(quiet.lines.size(), sent);
  }
}

TEST_F(RigctldLink, NoticesWithinTwoSecondsThatTheFrequencyStaysAway) {
  play.open();
  play.takes = [](const std::string& line) {
    return line == "+f" ? SessionPlay::kNoAnswer : milliseconds(1);
  };
  for (const long asked = play.countOf("+f"); play.countOf("+f") == asked;) run(1);
  run(1900);
  EXPECT_TRUE(play.up());
  run(200);
  EXPECT_EQ(play.links.back(), LinkState::NotResponding);
}

TEST_F(RigctldLink, GivesUpAServerThatNeverAnswersAgain) {
  play.open();
  play.deaf = true;
  run(70000);
  EXPECT_EQ(play.connection, 0U);
  EXPECT_EQ(play.links, (Links{LinkState::Up, LinkState::NotResponding, LinkState::Timeout}));
  play.deaf = false;
  retry();
  run(900);
  EXPECT_TRUE(play.up());
}

TEST_F(RigctldLink, NamesARadioThatKeepsItsServerWaiting) {
  play.open();
  play.rig.trouble = 5;
  play.takes = [](const std::string&) { return milliseconds(18000); };
  run(120000);
  EXPECT_EQ(play.links, (Links{LinkState::Up, LinkState::NotResponding})) << "never the link";
  play.takes = [](const std::string&) { return SessionPlay::kNoAnswer; };
  run(120000);
  EXPECT_EQ(play.links.back(), LinkState::NotResponding);
  play.takes = nullptr;
  play.rig.trouble.reset();
  run(20000);
  if (play.connection == 0) play.connect();
  run(20000);
  EXPECT_TRUE(play.up()) << "nobody else tries again in this state";
}

/// A radio that refuses some settings as radios do: its server waits for it in vain.
class RigctldSlowRadio : public RigctldLink {
 protected:
  RigctldSlowRadio() {
    play.rig.errors = {{"l ATT", 5}, {"l AGC", 5}, {"u NB", 5}, {"\\get_dcd", 5}, {"l IF", 5}};
    play.takes = [this](const std::string& line) { return time(line); };
  }
  milliseconds time(const std::string& line) const {
    if (line == "+n") return SessionPlay::kNoAnswer;
    if (line == "+\\get_dcd") return milliseconds(20000);
    for (const auto& [start, error] : play.rig.errors) {
      if (line.starts_with("+" + start)) return milliseconds(8000);
    }
    return milliseconds(20);
  }
  bool slow(const std::string& line) const {
    const auto took = time(line);
    return took == SessionPlay::kNoAnswer || took > milliseconds(1000);
  }
};

TEST_F(RigctldSlowRadio, IsNoDeadOneHoweverSlowlyItRefusesSettings) {
  play.open();
  run(15 * 60'000);
  EXPECT_EQ(play.links, Links{LinkState::Up});
  for (const std::string line : {"+l ATT", "+l AGC", "+u NB", "+\\get_dcd", "+l IF", "+n"}) {
    EXPECT_GE(play.countOf(line), 1) << line;
    EXPECT_LE(play.countOf(line), 2) << line << " is asked for seldom";
  }
  // In the first seconds, and between any two refusals, frequency, mode and meter are read.
  milliseconds waited{0};
  int since = 1000;
  for (std::size_t i = 0; i + 1 < play.lines.size(); ++i) {
    ++since;
    if (!slow(play.lines[i])) continue;
    EXPECT_GT(since, 50) << play.lines[i];
    since = 0;
    waited += std::chrono::duration_cast<milliseconds>(play.times[i + 1] - play.times[i]);
  }
  EXPECT_LT(waited, milliseconds(180'000)) << "at most a fifth of the time is lost to them";
}

TEST_F(RigctldSlowRadio, IsKnownAgainWhenItsServerIsConnectedAnew) {
  play.open();
  run(6 * 60'000);
  play.lines.clear();
  play.times.clear();
  play.close(CloseReason::Ended);
  retry();
  run(60'000);
  EXPECT_TRUE(play.up());
  for (const auto& line : play.lines) EXPECT_FALSE(slow(line)) << line;
  EXPECT_GT(play.countOf("+l PREAMP"), 5) << "what it tells is asked for at once";
}

TEST_F(RigctldSlowRadio, ThatWasSilentForAWhileIsNotAskedForAllOfItAgain) {
  play.open();
  run(6 * 60'000);
  // In the middle of reading a setting that it told before.
  play.instead = [this](const std::string& line) {
    if (line == "+l PREAMP") play.rig.trouble = 5;
    return play.rig.answer(line);
  };
  play.takes = [this](const std::string& line) {
    return play.rig.trouble ? milliseconds(8000) : time(line);
  };
  run(40'000);
  EXPECT_EQ(play.links.back(), LinkState::NotResponding);
  play.instead = nullptr;
  play.rig.trouble.reset();
  run(12'000);
  play.links.clear();
  play.lines.clear();
  play.times.clear();
  run(60'000);
  EXPECT_EQ(play.links, Links{}) << "up since";
  for (const auto& line : play.lines) EXPECT_FALSE(slow(line)) << line;
  EXPECT_GT(play.countOf("+l PREAMP"), 5) << "what was just not told in the silence is told again";
}

TEST_F(RigctldLink, SpacesOutAttemptsThatAreHopeless) {
  struct Case {
    std::string name;
    std::function<void(SessionPlay&)> attempt;
    LinkState state;
  };
  const Case cases[] = {
      {"no such name", [](SessionPlay& p) { p.close(CloseReason::BadAddress); },
       LinkState::BadAddress},
      {"another service", [](SessionPlay& p) { p.connect(); }, LinkState::BadIdentity},
      {"hangs up at once",
       [](SessionPlay& p) {
         p.session.connected(p.now);
         p.close(CloseReason::Ended);
       },
       LinkState::Error}};
  for (const Case& each : cases) {
    SessionPlay wrong(Manner::Rigctld);
    wrong.instead = [](const std::string&) { return "220 mail ready\n"; };
    std::vector<long> attempts;
    const Instant begin = wrong.now;
    // The panel asks again half a second after each failure.
    for (Instant askAt = begin; wrong.now < begin + std::chrono::minutes(3);) {
      if (wrong.now >= askAt) {
        wrong.session.open(false, wrong.now);
        askAt = kNever;
      }
      if (wrong.session.connectionWanted() != 0) {
        attempts.push_back(std::chrono::round<std::chrono::seconds>(wrong.now - begin).count());
        each.attempt(wrong);
        wrong.run(milliseconds(5));
      }
      if (!wrong.links.empty()) {
        EXPECT_EQ(wrong.links, Links{each.state}) << each.name;
        wrong.links.clear();
        askAt = wrong.now + milliseconds(500);
      }
      wrong.run(milliseconds(10));
    }
    EXPECT_EQ(attempts, (std::vector<long>{0, 1, 3, 7, 15, 31, 61, 91, 121, 151})) << each.name;
    wrong.session.close();
    wrong.session.open(false, wrong.now);
    EXPECT_NE(wrong.session.connectionWanted(), 0U) << "at once when it was closed";
  }
}

TEST_F(RigctldLink, IsMadeAnewAfterTheComputerSlept) {
  play.open();
  for (const bool asked : {false, true}) {
    play.links.clear();
    play.lines.clear();
    play.deaf = asked;
    if (asked) run(500);
    play.now += std::chrono::hours(8);
    const auto before = play.connection;
    play.session.tick(play.now);
    run(0);
    play.deaf = false;
    play.connect();
    EXPECT_NE(play.connection, before) << "the other side has forgotten the old one";
    run(900);
    EXPECT_EQ(play.links, (Links{LinkState::Timeout, LinkState::Up})) << "without a retry";
    EXPECT_EQ(std::count(play.lines.begin(), play.lines.end(), "\\dump_state"), 1);
  }
}

TEST_F(RigctldLink, TriesAgainWhenItsServerWasStartedAnew) {
  play.session.tryAgain();
  EXPECT_EQ(play.session.connectionWanted(), 0U) << "not before it is opened";
  play.open();
  const auto connection = play.connection;
  play.session.tryAgain();
  EXPECT_EQ(play.session.connectionWanted(), connection) << "a link that is up stays";
  play.close(CloseReason::Ended);
  play.session.tryAgain();
  EXPECT_NE(play.session.connectionWanted(), 0U);
  play.session.close();
  play.session.tryAgain();
  EXPECT_EQ(play.session.connectionWanted(), 0U);
}

TEST_F(RigctldLink, ComesInOnceMoreWhereTheServerStillClosesAfterItsLastClient) {
  const auto hangsUp = [this] {
    play.session.connected(play.now);
    play.close(CloseReason::Ended);
  };
  play.open();
  for (const bool closed : {false, true}) {
    play.links.clear();
    if (closed) play.session.close();
    play.session.open(true, play.now);
    hangsUp();
    run(600);
    EXPECT_EQ(play.links, Links{}) << "its own leaving is no fault of the server";
    play.connect();
    run(900);
    EXPECT_EQ(play.links, Links{LinkState::Up});
  }
  play.links.clear();
  play.session.open(true, play.now);
  for (int i = 0; i < 2; ++i) {
    hangsUp();
    run(600);
  }
  EXPECT_EQ(play.links, Links{LinkState::Error}) << "a second time it is";
}

TEST_F(RigctldLink, SaysTimeoutInTheHandshakeToo) {
  play.deaf = true;
  play.open();
  run(1500);
  EXPECT_EQ(play.links, Links{LinkState::Timeout});
  play.deaf = false;
  play.feed(play.rig.answer("\\chk_vfo"));
  run(900);
  EXPECT_TRUE(play.up());
}

TEST_F(RigctldLink, GetsUsedToASlowServer) {
  play.answerTime = milliseconds(2500);
  play.open();
  run(60000);
  const auto ups = std::count(play.links.begin(), play.links.end(), LinkState::Up);
  const auto timeouts = std::count(play.links.begin(), play.links.end(), LinkState::Timeout);
  EXPECT_EQ(ups, 1);
  EXPECT_EQ(timeouts, 1) << "not said anew at each command";
}

TEST_F(RigctldLink, DropsHalfALine) {
  play.open();
  play.links.clear();
  play.instead = [&](const std::string&) { return "get_freq:\nFreque"; };
  run(31000);
  EXPECT_EQ(play.links, Links{LinkState::Error});
  EXPECT_EQ(play.connection, 0U);
}

TEST_F(RigctldLink, DropsAFlood) {
  for (const std::string& piece :
       {std::string(16384, 'x'), std::string(8192, '\n'), std::string("RPRT 0\nget_freq:\n7\n")}) {
    SessionPlay flooded(Manner::Rigctld);
    flooded.open();
    for (int i = 0; i < 300 && flooded.connection != 0; ++i) {
      flooded.run(milliseconds(10));
      flooded.feed(piece);
    }
    EXPECT_EQ(flooded.connection, 0U);
    EXPECT_EQ(flooded.links.back(), LinkState::Error);
  }
}

TEST_F(RigctldLink, FindsBackAfterStrayLines) {
  for (const auto manner : {Manner::Rigctld, Manner::StaticSdr, Manner::SmallSdr}) {
    SessionPlay stray(manner);
    stray.open();
    for (const std::string line : {"RPRT 1\n", "7\n", "RPRT 0\nRPRT 0\n", "AM\n"}) {
      stray.feed(line);
      stray.run(milliseconds(1000));
    }
    EXPECT_EQ(stray.links, Links{LinkState::Up});
    for (const auto& report : stray.values) {
      if (report.item == RigItem::Frequency) {
        EXPECT_EQ(report.number, 7'100'000);
      } else if (report.item == RigItem::Mode) {
        EXPECT_EQ(report.mode, "USB");
      }
    }
    // More of it may follow: what is asked now waits until the line is quiet.
    stray.feed("7\n");
    stray.request(RigItem::Frequency, 5'000'000, 3);
    stray.feed("RPRT 1\n");
    stray.run(milliseconds(1000));
    EXPECT_EQ(stray.last(RigItem::Frequency).number, 5'000'000);
    EXPECT_EQ(stray.last(RigItem::Frequency).ticket, 3U);
    EXPECT_FALSE(stray.last(RigItem::Frequency).refused);
  }
}

TEST_F(RigctldLink, WatchesARadioThatIsSwitchedOff) {
  play.rig.powered = false;
  play.open();
  EXPECT_EQ(play.links, Links{LinkState::NotResponding});
  run(10000);
  EXPECT_EQ(play.links, Links{LinkState::NotResponding}) << "said once, and asked on quietly";
  play.rig.powered = true;
  run(2000);
  EXPECT_TRUE(play.up());
  play.rig.powered = false;
  run(1000);
  EXPECT_EQ(play.links.back(), LinkState::NotResponding);
  EXPECT_NE(play.connection, 0U);
  play.rig.powered = true;
  run(1500);
  EXPECT_TRUE(play.up()) << "nobody else tries again in this state";
}

TEST_F(RigctldLink, NamesTheRadiosTrouble) {
  const std::pair<int, LinkState> cases[] = {
      {5, LinkState::NotResponding}, {20, LinkState::NotResponding}, {6, LinkState::Error},
      {7, LinkState::Error},         {8, LinkState::Error},          {13, LinkState::Error},
      {14, LinkState::Error}};
  for (const auto& [error, state] : cases) {
    SessionPlay troubled(Manner::Rigctld);
    troubled.open();
    troubled.rig.trouble = error;
    troubled.run(milliseconds(1000));
    EXPECT_EQ(troubled.links, (Links{LinkState::Up, state})) << error;
    EXPECT_NE(troubled.connection, 0U) << "the server is well";
    troubled.links.clear();
    troubled.session.open(false, troubled.now);
    troubled.run(milliseconds(100));
    EXPECT_EQ(troubled.links, Links{state}) << "a retry has its answer " << error;
    troubled.rig.trouble.reset();
    troubled.session.open(false, troubled.now);
    troubled.run(milliseconds(100));
    EXPECT_TRUE(troubled.up()) << error;
    troubled.run(milliseconds(5000));
    EXPECT_GT(troubled.countOf("+l AGC"), 2) << "what failed meanwhile is asked for again";

    SessionPlay late(Manner::Rigctld);
    late.rig.trouble = error;
    late.open();
    EXPECT_EQ(late.links, Links{state}) << "in the handshake " << error;
  }
}

TEST_F(RigctldLink, DoesNotJudgeByASingleSetting) {
  play.open();
  play.rig.errors = {{"l AGC", 8}, {"l ATT", 9}, {"l PREAMP", 11}};
  run(60000);
  EXPECT_EQ(play.links, Links{LinkState::Up});
  EXPECT_LE(play.countOf("+l AGC"), 8) << "what keeps failing is asked for less and less";
  EXPECT_LE(play.countOf("+l PREAMP"), 6);
  play.rig.errors = {{"f ", 8}};
  for (const long asked = play.countOf("+f"); play.countOf("+f") == asked;) run(1);
  play.rig.errors.clear();
  run(2000);
  EXPECT_EQ(play.links, Links{LinkState::Up}) << "one disturbance is no fault";
}

TEST_F(RigctldLink, TriesAgainByItselfWhenTheRadioMakesTheServerHangUp) {
  play.session.open(false, play.now);
  play.instead = [&](const std::string& line) {
    return line == "+f" ? std::string() : play.rig.answer(line);
  };
  play.connect();
  run(100);
  play.close(CloseReason::Ended);
  EXPECT_EQ(play.links, Links{LinkState::NotResponding});
  int attempts = 0;
  const auto begin = play.now;
  while (play.now - begin < std::chrono::minutes(2)) {
    play.now = play.session.nextDue();
    play.session.tick(play.now);
    ++attempts;
    play.connect();
    run(100);
    play.close(CloseReason::Ended);
  }
  EXPECT_GE(attempts, 6);
  EXPECT_LE(attempts, 14) << "less and less often";
  EXPECT_EQ(play.links, Links{LinkState::NotResponding});
  play.instead = nullptr;
  play.now = play.session.nextDue();
  play.session.tick(play.now);
  play.connect();
  run(900);
  EXPECT_TRUE(play.up());
}

TEST_F(RigctldLink, ForgetsRequestsThatItCouldNotCarryOut) {
  play.open();
  play.deaf = true;
  run(100);
  play.request(RigItem::Frequency, 5'000'000, 3);
  run(12000);
  EXPECT_FALSE(play.up());
  play.request(RigItem::Frequency, 6'000'000, 4);
  play.deaf = false;
  play.feed(play.rig.answer(play.lines.back()));
  run(2000);
  EXPECT_TRUE(play.up());
  EXPECT_EQ(play.rig.frequency, 7'100'000) << "a radio must not jump when its link heals";

  // The same where the operator closes the link or opens it anew, with a request that waits.
  for (const bool closes : {true, false}) {
    play.deaf = true;
    for (const auto sent = play.lines.size(); play.lines.size() == sent;) run(1);
    play.request(RigItem::Frequency, 5'000'000, 5);
    play.deaf = false;
    if (closes) play.session.close();
    play.session.open(true, play.now);
    play.connect();
    run(2000);
    EXPECT_TRUE(play.up());
    EXPECT_EQ(play.rig.frequency, 7'100'000) << closes;
  }
}

TEST_F(RigctldLink, ClosesInSilence) {
  play.open();
  play.links.clear();
  play.session.close();
  run(5000);
  EXPECT_EQ(play.session.connectionWanted(), 0U);
  EXPECT_EQ(play.links, Links{});
  EXPECT_EQ(play.session.nextDue(), kNever);
  play.session.open(false, play.now);
  play.connect();
  run(900);
  EXPECT_EQ(play.links, Links{LinkState::Up});
}

}  // namespace
}  // namespace kelvane::sondrel
