#include <gtest/gtest.h>

#include "components/sondrel/rigctld/rigctld_commands.h"
#include "components/sondrel/rigctld/rigctld_description.h"
#include "components/sondrel/rigctld/rigctld_reply.h"
#include "tests/fakes/fake_rig.h"

namespace kelvane::sondrel {
namespace {

using fakes::FakeRig;
using Lines = std::vector<std::string>;
using Progress = ReplyReader::Progress;

const RigctldCommands kExtended(Dialect::Extended, false, 2);
const RigctldCommands kPlain(Dialect::Static, false, 2);

/// What comes of bytes that arrive in pieces of that size; none while the reply is not whole.
std::optional<Reply> readIn(std::size_t pieces, const ReplyRule& rule, const std::string& bytes) {
  ReplyReader reader;
  reader.begin(rule);
  auto progress = Progress::Waiting;
  for (std::size_t i = 0; i < bytes.size(); i += pieces) {
    progress = reader.feed(std::string_view(bytes).substr(i, pieces));
  }
  if (progress == Progress::Waiting) progress = reader.quiet();
  return progress == Progress::Complete ? std::optional(reader.take()) : std::nullopt;
}

std::optional<Reply> read(const ReplyRule& rule, const std::string& bytes) {
  return readIn(1000, rule, bytes);
}

TEST(RigctldReply, IsTheSameHoweverItIsCut) {
  struct Case {
    ReplyRule rule;
    std::string bytes;
    Lines lines;
    std::optional<int> report;
  };
  const Case cases[] = {
      {kExtended.get(RigItem::Frequency).rule,
       "get_freq:\nFrequency: 7050000\nRPRT 0\n",
       {"Frequency: 7050000"},
       0},
      {kExtended.get(RigItem::Strength).rule, "get_level: STRENGTH\n-48\nRPRT 0\n", {"-48"}, 0},
      {kExtended.setFrequency(1).rule, "set_freq: 1\nRPRT -9\n", {}, 9},
      {kExtended.get(RigItem::Frequency).rule, "get_freq:\nRPRT 0\n", {}, 0},
      {kPlain.get(RigItem::Mode).rule, "USB\r\n2400\r\n", {"USB", "2400"}, std::nullopt},
      {kPlain.get(RigItem::Frequency).rule, "RPRT 1\n", {}, 1},
      {RigctldCommands::askVfoArgument().rule, "CHKVFO 0\n", {"CHKVFO 0"}, std::nullopt},
      {RigctldCommands::askModeLines().rule, "USB 2400\n", {"USB 2400"}, std::nullopt},
      {RigctldCommands::askDescription().rule, "1\n2\n\ndone\n", {"1", "2", "", "done"}, {}},
      // Control bytes were seen in real replies, and a reply that ends by quiet may lack its end.
      {kPlain.get(RigItem::Frequency).rule, std::string("70\000500\1\n", 8), {"70500"}, {}},
      {kPlain.askModes().rule, "AM USB \nFM", {"AM USB", "FM"}, std::nullopt}};
  for (const auto& each : cases) {
    for (std::size_t pieces = 1; pieces <= each.bytes.size(); ++pieces) {
      const auto reply = readIn(pieces, each.rule, each.bytes);
      ASSERT_TRUE(reply) << each.bytes;
      EXPECT_EQ(reply->lines, each.lines) << each.bytes << pieces;
      EXPECT_EQ(reply->report, each.report) << each.bytes << pieces;
    }
    if (each.rule.end == ReplyRule::End::Done || each.rule.end == ReplyRule::End::Quiet) continue;
    const auto cut = each.bytes.substr(0, each.bytes.size() - 1);
    EXPECT_FALSE(read(each.rule, cut)) << "without its end: " << cut;
  }
}

TEST(RigctldReply, SkipsWhatBelongsToAnOlderCommand) {
  const auto rule = kExtended.get(RigItem::Frequency).rule;
  for (const std::string stray : {"RPRT 0\n", "12\n", "get_level: ATT\n10\n",
                                  "get_level: ATT\nRPRT -5\n", "get_frequency\n"}) {
    ReplyReader reader;
    reader.begin(rule);
    EXPECT_EQ(reader.feed(stray + "get_freq:\nFrequency: 5\nRPRT 0\n"), Progress::Complete)
        << stray;
    EXPECT_EQ(reader.take().lines, Lines{"Frequency: 5"}) << stray;
    EXPECT_TRUE(reader.takeStray()) << stray;
  }
  // An error without header may well be this command's: who refuses a password says no more.
  const auto refused = read(rule, "RPRT -19\n");
  ASSERT_TRUE(refused);
  EXPECT_EQ(refused->report, 19);
}

TEST(RigctldReply, TellsBytesThatNobodyAskedFor) {
  ReplyReader reader;
  reader.feed("RPRT 0\n");
  EXPECT_TRUE(reader.takeStray());
  EXPECT_FALSE(reader.takeStray());
  reader.begin(kPlain.get(RigItem::Frequency).rule);
  EXPECT_EQ(reader.feed("7050000\nRPRT 1\n"), Progress::Complete);
  EXPECT_EQ(reader.take().lines, Lines{"7050000"});
  EXPECT_TRUE(reader.takeStray());
}

TEST(RigctldReply, HoldsABoundedAmount) {
  const std::string line(1000, 'x');
  for (const auto& rule : {kExtended.get(RigItem::Frequency).rule,
                           RigctldCommands::askDescription().rule, kPlain.askModes().rule}) {
    for (const std::string& piece :
         {line, line + "\n", std::string(1000, '\0'), std::string("\n")}) {
      ReplyReader reader;
      reader.begin(rule);
      auto progress = Progress::Waiting;
      std::size_t fed = 0;
      for (; fed < 1'000'000 && progress == Progress::Waiting; fed += piece.size()) {
        progress = reader.feed(piece);
      }
      EXPECT_EQ(progress, Progress::Flooded);
      EXPECT_LT(fed, 100'000U);
    }
  }
}

TEST(RigctldReply, ReadsNumbersThatAreNumbersOnly) {
  const auto number = [](RigItem item, const std::string& text) {
    return readNumber(item, Reply{{text}, 0});
  };
  EXPECT_EQ(number(RigItem::Frequency, "Frequency: 7050000"), 7050000);
  EXPECT_EQ(number(RigItem::Frequency, "145000000.000000"), 145000000);
  EXPECT_EQ(number(RigItem::Strength, "-63.4"), -63);
  EXPECT_EQ(number(RigItem::Squelch, "DCD: 1"), 1);
  for (const std::string bad : {"", "abc", "7050000x", "nan", "inf", "1e30", "-5", "3000000000",
                                "Frequency: ", "RPRT 0", "0x10", "7 050"}) {
    EXPECT_EQ(number(RigItem::Frequency, bad), std::nullopt) << bad;
  }
  EXPECT_EQ(reportOf("RPRT -11"), 11);
  EXPECT_EQ(reportOf("RPRT 4"), 4);
  for (const std::string bad :
       {"RPRT", "RPRT ", "RPRT x", "rprt 0", "RPRT 1 2", "RPRT -2147483648", "RPRT 99999999999"}) {
    EXPECT_EQ(reportOf(bad), std::nullopt) << bad;
  }
}

TEST(RigctldReply, ReadsAModeOnOneLineOrTwo) {
  const auto mode = [](const Lines& lines) { return readMode(Reply{lines, std::nullopt}); };
  EXPECT_EQ(mode({"Mode: USB", "Passband: 2400"}), (ModeAndWidth{"USB", 2400}));
  EXPECT_EQ(mode({"USB", "2400"}), (ModeAndWidth{"USB", 2400}));
  EXPECT_EQ(mode({"USB 2400"}), (ModeAndWidth{"USB", 2400}));
  EXPECT_EQ(mode({"D-STAR"}), (ModeAndWidth{"D-STAR", 0}));
  EXPECT_EQ(mode({"AM", "-1"}), (ModeAndWidth{"AM", 0}));
  for (const Lines& bad : {Lines{}, Lines{"7050000"}, Lines{"<html>", "x"}, Lines{"USB", "wide"},
                           Lines{"Mode:", "Passband: 0"}, Lines{std::string(40, 'A')}}) {
    EXPECT_EQ(mode(bad), std::nullopt);
  }
}

TEST(RigctldCommands, AreOneShortLineEach) {
  EXPECT_EQ(RigctldCommands(Dialect::Minimal, false, 1).setMode("CW", 0).line, "M CW -1\n");
  const RigctldCommands vfo(Dialect::Extended, true, 2);
  EXPECT_EQ(vfo.setFrequency(1).line, "+F currVFO 1\n");
  EXPECT_EQ(vfo.set(RigItem::Clock, 60).line, "+P TIME 60\n") << "a parameter has no VFO";
}

TEST(RigctldDescription, TellsWhatARadioCanDo) {
  FakeRig rig(FakeRig::Manner::Rigctld);
  const auto reply = read(RigctldCommands::askDescription().rule, rig.answer("\\dump_state"));
  const auto can = readDescription(reply->lines);
  ASSERT_TRUE(can);
  EXPECT_EQ(can->dialect, Dialect::Extended);
  EXPECT_EQ(can->modelNumber, 2031);
  EXPECT_EQ(can->lowestFrequency(), 100'000);
  EXPECT_EQ(can->highestFrequency(), 54'000'000);
  EXPECT_EQ(can->nearestFrequency(31'000'000), 30'000'000) << "between two ranges";
  EXPECT_EQ(can->nearestFrequency(48'000'000), 50'000'000);
  EXPECT_EQ(can->nearestFrequency(-1), 100'000);
  EXPECT_EQ(can->nearestFrequency(2'000'000'000), 54'000'000);
  EXPECT_EQ(can->finestStep(), 10);
  EXPECT_EQ(can->coarsestStep(), 1000);
  EXPECT_EQ(can->widths("USB"), (std::vector<std::int32_t>{1800, 2400, 3000}));
  EXPECT_EQ(can->usualWidth("USB"), 2400);
  EXPECT_EQ(can->nearestWidth("CW", 300), 250);
  EXPECT_FALSE(can->widths("CWR").empty()) << "none told: usual ones are offered";
  EXPECT_EQ(can->attenuators, (std::vector<std::int32_t>{6, 12, 18}));
  EXPECT_EQ(can->preamps, (std::vector<std::int32_t>{10, 20}));
  EXPECT_EQ(can->mostShift, 1200);
  // By name: the description numbers them 0 to 3, the protocol codes medium 5 and slow 3.
  EXPECT_EQ(can->agcLevels,
            (std::vector<AgcLevel>{{"OFF", 0}, {"FAST", 2}, {"MEDIUM", 5}, {"SLOW", 3}}));
  for (const auto item : {RigItem::Preamp, RigItem::Attenuator, RigItem::Shift, RigItem::Pitch,
                          RigItem::Agc, RigItem::Blanker}) {
    EXPECT_TRUE(can->settable.has(item)) << at(item);
  }
  EXPECT_FALSE(can->settable.has(RigItem::Clock));
}

TEST(RigctldDescription, ThatIsCutOrDamagedGivesWhatItHolds) {
  FakeRig rig(FakeRig::Manner::Rigctld);
  const auto whole =
      read(RigctldCommands::askDescription().rule, rig.answer("\\dump_state"))->lines;
  for (std::size_t kept = 1; kept < whole.size(); ++kept) {
    const auto can = readDescription({whole.begin(), whole.begin() + static_cast<long>(kept)});
    ASSERT_TRUE(can);
    EXPECT_EQ(can->dialect, Dialect::Static) << kept << " lines do not end in done";
  }
  for (std::size_t broken = 0; broken < whole.size(); ++broken) {
    auto lines = whole;
    lines[broken] = "-9e99 x 0xzz -1";
    const auto can = readDescription(lines);
    if (!can) continue;
    EXPECT_GE(can->lowestFrequency(), 0);
    EXPECT_LE(can->lowestFrequency(), can->highestFrequency());
    for (const auto& row : can->filters) EXPECT_GE(row.hertz, 0);
  }
  EXPECT_FALSE(readDescription({}));
  EXPECT_FALSE(readDescription({"HTTP/1.1 400 Bad Request", "", "<html>"}));
  EXPECT_EQ(modesIn({"AM USB x$y 123 FM-D ", "RPRT 0"}), (Lines{"AM", "USB", "FM-D"}));
  EXPECT_EQ(modelIn({"Model name:\tIC-R1", "Mfg name:\tAcme", "other"}), "Acme IC-R1");
}

}  // namespace
}  // namespace kelvane::sondrel
