#include <gtest/gtest.h>

#include "tests/fakes/session_play.h"

namespace kelvane::sondrel {
namespace {

using fakes::FakeRig;
using fakes::SessionPlay;
using Manner = FakeRig::Manner;
using Lines = std::vector<std::string>;
using Links = std::vector<LinkState>;

TEST(RigctldHandshake, BringsUpEveryMannerOfServerAndChangesNothing) {
  struct Case {
    Manner manner;
    Dialect dialect;
    bool meter;
    bool settings;
    bool squelch;
  };
  for (const Case& c : {Case{Manner::Rigctld, Dialect::Extended, true, true, true},
                        Case{Manner::RigctldVfo, Dialect::Extended, true, true, true},
                        Case{Manner::Headless, Dialect::Extended, true, true, true},
                        Case{Manner::StaticSdr, Dialect::Static, true, false, true},
                        Case{Manner::SilentSdr, Dialect::Static, false, false, false},
                        Case{Manner::SmallSdr, Dialect::Minimal, false, false, false}}) {
    for (const std::size_t pieces : {1000, 7, 1}) {
      SessionPlay play(c.manner);
      play.pieces = pieces;
      play.open();
      EXPECT_EQ(play.links, Links{LinkState::Up});
      ASSERT_TRUE(play.can);
      EXPECT_EQ(play.can->dialect, c.dialect);
      EXPECT_EQ(play.last(RigItem::Frequency).number, 7'100'000);
      EXPECT_EQ(play.last(RigItem::Mode).mode, "USB");
      EXPECT_EQ(play.last(RigItem::Mode).number, 2400);
      EXPECT_EQ(play.last(RigItem::Strength).ticket == 0, c.meter);
      EXPECT_EQ(play.last(RigItem::Attenuator).ticket == 0, c.settings);
      EXPECT_EQ(play.last(RigItem::Squelch).ticket == 0, c.squelch);
      play.run(milliseconds(5000));
      EXPECT_EQ(play.rig.sets, Lines{}) << "nothing that changes the radio on its own account";
      const auto asked = play.lines.size();
      play.rig.width = 1800;
      play.run(milliseconds(2000));
      EXPECT_EQ(play.last(RigItem::Filter).number, 1800) << "every line of a reply is read";
      EXPECT_GT(play.lines.size(), asked + 8) << "and none is waited for that never comes";
    }
  }
}

TEST(RigctldHandshake, PollsOnlyWhatAnswersAndAsksForTheRestLessAndLess) {
  SessionPlay play(Manner::Rigctld);
  play.rig.errors = {{"l ATT", 11}, {"\\get_dcd", 9}, {"u NB", 8}, {"n", 4}, {"l IF", 5}};
  play.open();
  EXPECT_TRUE(play.up());
  play.run(milliseconds(60000));
  for (const std::string line : {"+l ATT", "+\\get_dcd", "+u NB", "+n", "+l IF"}) {
    EXPECT_GE(play.countOf(line), 3) << line;
    EXPECT_LE(play.countOf(line), 5) << line;
  }
  EXPECT_GT(play.countOf("+l AGC"), 12);
  EXPECT_FALSE(play.can->readable.has(RigItem::Attenuator));
  EXPECT_TRUE(play.can->readable.has(RigItem::Agc));
  EXPECT_EQ(play.links, Links{LinkState::Up});
}

TEST(RigctldHandshake, AsksAgainForWhatWasRefusedOnceAtFirst) {
  for (const int error : {1, 11}) {
    SessionPlay play(Manner::Rigctld);
    play.rig.errors = {{"f ", error}, {"m ", error}, {"l STRENGTH", error}};
    play.session.open(false, play.now);
    play.connect();
    play.run(milliseconds(500));
    EXPECT_EQ(play.last(RigItem::Frequency).ticket, ~0U);
    play.rig.errors.clear();
    play.run(milliseconds(2500));
    EXPECT_EQ(play.last(RigItem::Frequency).number, 7'100'000) << error;
    EXPECT_EQ(play.last(RigItem::Mode).mode, "USB") << error;
    EXPECT_EQ(play.last(RigItem::Strength).number, -20) << error;
    play.rig.frequency = 9'000'000;
    play.run(milliseconds(500));
    EXPECT_EQ(play.last(RigItem::Frequency).number, 9'000'000) << "and is polled from then on";
    EXPECT_EQ(play.links, Links{LinkState::Up});
  }
}

TEST(RigctldHandshake, IsUpBeforeASlowRadioHasToldAll) {
  SessionPlay play(Manner::Rigctld);
  play.answerTime = milliseconds(150);
  play.open();
  EXPECT_EQ(play.links, Links{LinkState::Up});
  EXPECT_FALSE(play.can->readable.has(RigItem::Squelch));
  play.run(milliseconds(20000));
  EXPECT_TRUE(play.can->readable.has(RigItem::Squelch));
  EXPECT_EQ(play.last(RigItem::Squelch).cause, Cause::Learned);
  EXPECT_EQ(play.links, Links{LinkState::Up});
}

TEST(RigctldHandshake, TakesOnlyTheModelThatIsAskedFor) {
  for (const std::int32_t model : {2031, 3079}) {
    RigctldOptions options;
    options.model = model;
    SessionPlay play(Manner::Rigctld, options);
    play.open();
    EXPECT_EQ(play.links, Links{model == 2031 ? LinkState::Up : LinkState::BadIdentity});
    EXPECT_EQ(play.connection != 0, model == 2031);
  }
}

/// A link to rigctld that is up.
class RigctldTuning : public testing::Test {
 protected:
  RigctldTuning() {
    play.open();
    play.values.clear();
    play.lines.clear();
  }
  void run(int ms) { play.run(milliseconds(ms)); }
  std::vector<ValueReport> reports(RigItem item) const {
    std::vector<ValueReport> found;
    for (const auto& report : play.values) {
      if (report.item == item) found.push_back(report);
    }
    return found;
  }

  SessionPlay play{Manner::Rigctld};
};

TEST_F(RigctldTuning, SendsTheOperatorsCommandFirstAndReadsItBack) {
  play.request(RigItem::Frequency, 14'200'000, 7);
  run(20);
  ASSERT_GE(play.lines.size(), 2U);
  EXPECT_EQ(play.lines[0], "+F 14200000");
  EXPECT_EQ(play.lines[1], "+f");
  ASSERT_EQ(reports(RigItem::Frequency).size(), 1U);
  EXPECT_EQ(play.values[0].number, 14'200'000);
  EXPECT_EQ(play.values[0].ticket, 7U);
  EXPECT_FALSE(play.values[0].refused);
  run(3000);
  EXPECT_EQ(reports(RigItem::Frequency).size(), 1U) << "what was set is no change at the receiver";
}

TEST_F(RigctldTuning, DoesNotLetPollsGoBeforeTheOperatorWhereTheLineNeverRests) {
  RigctldOptions options;
  options.rates = {50, 1};
  SessionPlay busy(Manner::Rigctld, options);
  busy.answerTime = milliseconds(20);
  busy.open();
  for (int i = 0; i < 20; ++i) {
    busy.run(milliseconds(90 + i));
    const auto sent = busy.lines.size();
    busy.request(RigItem::Frequency, 7'000'000 + i, 1);
    busy.run(milliseconds(30));
    ASSERT_GT(busy.lines.size(), sent);
    EXPECT_EQ(busy.lines[sent], "+F " + std::to_string(7'000'000 + i));
  }
}

TEST_F(RigctldTuning, LetsTheNewestRequestWinAndKeepsOthersInOrder) {
  play.answerTime = milliseconds(50);
  for (int i = 1; i <= 10; ++i) play.request(RigItem::Frequency, 7'000'000 + i * 1000, 10U + i);
  play.request(RigItem::Mode, 0, 30, "CW");
  play.request(RigItem::Filter, 2400, 31);
  play.request(RigItem::Filter, 300, 32);
  run(2000);
  EXPECT_EQ(play.rig.sets, (Lines{"F 7001000", "F 7010000", "M CW 0", "M CW 250"}));
  EXPECT_EQ(play.last(RigItem::Frequency).ticket, 20U);
  EXPECT_EQ(play.last(RigItem::Frequency).number, 7'010'000);
  EXPECT_EQ(play.last(RigItem::Filter).number, 250);
}

TEST_F(RigctldTuning, LimitsEverythingThatItSends) {
  const struct {
    RigItem item;
    std::int32_t asked;
    std::string sent;
  } cases[] = {{RigItem::Frequency, -5, "F 100000"},
               {RigItem::Frequency, INT32_MAX, "F 54000000"},
               {RigItem::Frequency, 41'000'000, "F 50000000"},
               {RigItem::Attenuator, 7, "L ATT 6"},
               {RigItem::Attenuator, -99, "L ATT 0"},
               {RigItem::Preamp, 99, "L PREAMP 20"},
               {RigItem::Blanker, 17, "U NB 1"},
               {RigItem::Agc, 5, "L AGC 5"},
               {RigItem::Filter, 99'999, "M USB 3000"},
               {RigItem::Bfo, 99'999, "L IF 1200"},
               {RigItem::Bfo, -99'999, "L IF -1200"}};
  for (const auto& each : cases) {
    play.rig.sets.clear();
    play.request(each.item, each.asked, 5);
    run(1000);
    EXPECT_EQ(play.rig.sets, Lines{each.sent});
  }
  // Settings that the radio does not have are refused and never sent.
  play.rig.sets.clear();
  play.request(RigItem::Agc, 8, 91);
  play.request(RigItem::Mode, 0, 92, "DRM");
  play.request(RigItem::Mode, 0, 93, "USB 0\nq");
  play.request(RigItem::Clock, 5, 94);
  run(1000);
  EXPECT_EQ(play.rig.sets, Lines{});
  EXPECT_TRUE(play.last(RigItem::Agc).refused);
  EXPECT_EQ(play.last(RigItem::Agc).ticket, 91U);
  EXPECT_EQ(play.last(RigItem::Mode).ticket, 93U);
  EXPECT_TRUE(play.last(RigItem::Mode).refused);
}

TEST_F(RigctldTuning, OwnLimitsReplaceTheServers) {
  RigctldOptions options;
  options.lowest = 3'000'000;
  options.highest = 4'000'000;
  for (const auto manner : {Manner::Rigctld, Manner::StaticSdr}) {
    SessionPlay limited(manner, options);
    limited.open();
    limited.request(RigItem::Frequency, 14'200'000, 1);
    limited.run(milliseconds(1000));
    EXPECT_EQ(limited.rig.frequency, 4'000'000);
  }
}

TEST_F(RigctldTuning, TellsAHandAtTheReceiverFromItsOwnDoing) {
  play.rig.frequency = 9'000'000;
  play.rig.mode = "LSB";
  play.rig.levels["ATT"] = 12;
  run(5000);
  EXPECT_EQ(play.last(RigItem::Frequency).number, 9'000'000);
  EXPECT_EQ(play.last(RigItem::Frequency).cause, Cause::AtReceiver);
  EXPECT_EQ(play.last(RigItem::Mode).cause, Cause::AtReceiver);
  EXPECT_EQ(play.last(RigItem::Attenuator).cause, Cause::AtReceiver);

  // The radio's rounding, even when a server's store hides it for half a second at first.
  play.values.clear();
  play.rig.raster = 100;
  play.request(RigItem::Frequency, 7'050'030, 3);
  run(20);
  EXPECT_EQ(play.last(RigItem::Frequency).number, 7'050'000);
  EXPECT_EQ(play.last(RigItem::Frequency).ticket, 3U);
  play.rig.raster = 1;
  play.request(RigItem::Frequency, 7'060'030, 4);
  run(450);
  play.rig.frequency = 7'060'000;
  run(1000);
  for (const auto& report : reports(RigItem::Frequency)) EXPECT_EQ(report.cause, Cause::Request);
  EXPECT_EQ(play.last(RigItem::Frequency).number, 7'060'000);

  // Right after a request too, a hand goes farther than any rounding; and later any change counts.
  play.values.clear();
  play.request(RigItem::Frequency, 7'070'000, 5);
  run(300);
  play.rig.frequency = 7'200'000;
  run(300);
  EXPECT_EQ(play.last(RigItem::Frequency).cause, Cause::AtReceiver);
  run(2000);
  play.rig.frequency = 7'200'010;
  run(300);
  EXPECT_EQ(play.last(RigItem::Frequency).number, 7'200'010);
  EXPECT_EQ(play.last(RigItem::Frequency).cause, Cause::AtReceiver);
}

TEST_F(RigctldTuning, WaitsForAServerThatStillAnswersTheOldValue) {
  std::int64_t store = play.rig.frequency;
  play.instead = [&](const std::string& line) {
    const auto answer = play.rig.answer(line);
    if (line != "+f") return answer;
    return "get_freq:\nFrequency: " + std::to_string(store) + "\nRPRT 0\n";
  };
  play.request(RigItem::Frequency, 5'000'000, 3);
  run(300);
  EXPECT_TRUE(reports(RigItem::Frequency).empty());
  store = 5'000'000;
  run(150);
  ASSERT_EQ(reports(RigItem::Frequency).size(), 1U);
  EXPECT_EQ(play.last(RigItem::Frequency).ticket, 3U);
  // One that never takes the value on gets its say after a while.
  play.values.clear();
  play.request(RigItem::Frequency, 6'000'000, 4);
  run(1000);
  ASSERT_EQ(reports(RigItem::Frequency).size(), 1U);
  EXPECT_EQ(play.last(RigItem::Frequency).number, 5'000'000);
  EXPECT_EQ(play.last(RigItem::Frequency).ticket, 4U);
  // Meanwhile the meter, which stood still, was told at each reading.
  EXPECT_GE(reports(RigItem::Strength).size(), 5U);
}

TEST_F(RigctldTuning, BelievesTheNewWidthUntilTheServerHasReadIt) {
  std::int32_t store = 2400;
  play.instead = [&](const std::string& line) {
    const auto answer = play.rig.answer(line);
    if (line != "+m") return answer;
    return "get_mode:\nMode: " + play.rig.mode + "\nPassband: " + std::to_string(store) +
           "\nRPRT 0\n";
  };
  play.request(RigItem::Mode, 500, 8, "CW");
  run(20);
  EXPECT_EQ(play.last(RigItem::Mode).mode, "CW");
  EXPECT_EQ(play.last(RigItem::Mode).number, 500);
  EXPECT_EQ(play.last(RigItem::Mode).ticket, 8U);
  run(300);
  EXPECT_EQ(reports(RigItem::Filter).size(), 0U) << "the old width is no change at the receiver";
  store = 500;
  run(1000);
  EXPECT_EQ(play.last(RigItem::Filter).number, 500);
  store = 250;
  run(1000);
  EXPECT_EQ(play.last(RigItem::Filter).number, 250);
  EXPECT_EQ(play.last(RigItem::Filter).cause, Cause::AtReceiver);
}

TEST_F(RigctldTuning, ReportsWhatStandsAfterARefusal) {
  play.rig.errors = {{"F ", 9}};
  play.request(RigItem::Frequency, 5'000'000, 3);
  run(50);
  ASSERT_EQ(reports(RigItem::Frequency).size(), 1U);
  EXPECT_TRUE(play.values[0].refused);
  EXPECT_EQ(play.values[0].ticket, 3U);
  EXPECT_EQ(play.values[0].number, 7'100'000);
  EXPECT_TRUE(play.up());
}

TEST_F(RigctldTuning, HasNothingToGoBackToWhereTheRadioNeverToldAValue) {
  SessionPlay mute(Manner::Rigctld);
  mute.rig.errors = {{"l AGC", 11}, {"L AGC", 11}};
  mute.open();
  mute.request(RigItem::Agc, 2, 7);
  mute.run(milliseconds(2000));
  const ValueReport answer = mute.last(RigItem::Agc);
  EXPECT_EQ(answer.ticket, 7U);
  EXPECT_TRUE(answer.refused);
  EXPECT_FALSE(answer.known) << "0 would be shown as Off";
}

TEST_F(RigctldTuning, TakesTheRequestAtItsWordWhereTheRadioCannotBeRead) {
  SessionPlay mute(Manner::Rigctld);
  mute.rig.errors = {{"f ", 11}, {"l ATT", 11}};
  mute.open();
  EXPECT_TRUE(mute.up());
  mute.request(RigItem::Frequency, 5'000'000, 3);
  mute.request(RigItem::Attenuator, 6, 4);
  mute.run(milliseconds(50));
  EXPECT_EQ(mute.last(RigItem::Frequency).number, 5'000'000);
  EXPECT_EQ(mute.last(RigItem::Frequency).ticket, 3U);
  EXPECT_EQ(mute.last(RigItem::Attenuator).number, 6);
}

TEST_F(RigctldTuning, MakesABfoOfPitchShiftOrOffset) {
  play.request(RigItem::Bfo, 300, 1);
  run(50);
  EXPECT_EQ(play.rig.levels["IF"], 300);
  EXPECT_EQ(play.last(RigItem::Bfo).number, 300);
  EXPECT_EQ(play.last(RigItem::Bfo).ticket, 1U);
  play.request(RigItem::Mode, 500, 2, "CW");
  run(50);
  EXPECT_EQ(play.last(RigItem::Bfo).number, 600) << "in CW it is the pitch";
  play.request(RigItem::Mode, 6000, 3, "AM");
  run(50);
  EXPECT_EQ(play.last(RigItem::Bfo).number, 0);
  play.request(RigItem::Bfo, 300, 4);
  run(50);
  EXPECT_TRUE(play.last(RigItem::Bfo).refused) << "AM has no BFO";
}

TEST_F(RigctldTuning, KeepsTheShownFrequencyWhenABfoOffsetComesAndGoes) {
  SessionPlay plain(Manner::StaticSdr);
  plain.open();
  const auto after = [&](int ms) { plain.run(milliseconds(ms)); };
  plain.request(RigItem::Bfo, 800, 1);
  after(1500);
  EXPECT_EQ(plain.rig.frequency, 7'099'200) << "the radio is tuned below what is shown";
  EXPECT_EQ(plain.last(RigItem::Frequency).number, 7'100'000);
  EXPECT_EQ(plain.last(RigItem::Bfo).number, 800);
  plain.request(RigItem::Frequency, 7'200'000, 2);
  after(1500);
  EXPECT_EQ(plain.rig.frequency, 7'199'200);
  EXPECT_EQ(plain.last(RigItem::Frequency).number, 7'200'000);
  EXPECT_EQ(plain.last(RigItem::Frequency).ticket, 2U);
  plain.request(RigItem::Mode, 0, 3, "AM");
  after(1500);
  EXPECT_EQ(plain.rig.frequency, 7'200'000) << "AM has no BFO";
  EXPECT_EQ(plain.last(RigItem::Bfo).number, 0);
  EXPECT_EQ(plain.last(RigItem::Frequency).number, 7'200'000);
  plain.rig.mode = "USB";
  after(1500);
  EXPECT_EQ(plain.rig.frequency, 7'200'000) << "the operator at the radio tunes it himself";
  EXPECT_EQ(plain.last(RigItem::Frequency).number, 7'200'800);
  EXPECT_EQ(plain.last(RigItem::Frequency).cause, Cause::AtReceiver);
}

TEST_F(RigctldTuning, BuildsOnAcceptedRequestsBeforeTheyAreReadBack) {
  SessionPlay plain(Manner::StaticSdr);
  plain.answerTime = milliseconds(20);
  plain.open();
  plain.request(RigItem::Frequency, 7'200'000, 1);
  plain.request(RigItem::Bfo, 800, 2);
  plain.run(milliseconds(2000));
  EXPECT_EQ(plain.rig.frequency, 7'199'200) << "the new frequency, not the one before";
  EXPECT_EQ(plain.last(RigItem::Frequency).number, 7'200'000);
  plain.request(RigItem::Mode, 0, 3, "AM");
  plain.request(RigItem::Frequency, 7'300'000, 4);
  plain.run(milliseconds(2000));
  EXPECT_EQ(plain.rig.frequency, 7'300'000) << "in the new mode, which has no offset";
  EXPECT_EQ(plain.last(RigItem::Frequency).number, 7'300'000);
  EXPECT_EQ(plain.last(RigItem::Frequency).ticket, 4U);
}

TEST_F(RigctldTuning, DerivesTheSquelchWhereOnlyItsLevelIsTold) {
  SessionPlay plain(Manner::StaticSdr);
  plain.open();
  EXPECT_EQ(plain.last(RigItem::Squelch).number, 1) << "-20 over -60";
  plain.rig.levels["STRENGTH"] = -80;
  plain.run(milliseconds(1000));
  EXPECT_EQ(plain.last(RigItem::Squelch).number, 0);
}

TEST_F(RigctldTuning, SendsOneCommandAtATime) {
  play.deaf = true;
  play.request(RigItem::Frequency, 5'000'000, 3);
  play.request(RigItem::Mode, 0, 4, "AM");
  play.request(RigItem::Attenuator, 6, 5);
  run(1900);
  EXPECT_EQ(play.lines.size(), 1U);
}

}  // namespace
}  // namespace kelvane::sondrel
