#include <gtest/gtest.h>

#include <random>

#include "tests/fakes/mode_settings.h"
#include "tests/fakes/share_storm.h"

namespace kelvane::sondrel {
namespace {

using fakes::SharePlay;
using Orders = std::vector<ShareOrder>;

const std::string kClient = "127.0.0.1:50000";

ShareOrder order(Item item, std::int32_t value) { return {item, value, 0, kClient}; }

struct Exchange {
  std::string_view sent;
  std::string_view answered;
};

TEST(ShareSession, AnswersEveryCommandInThePlainAndTheExtendedForm) {
  constexpr Exchange kExchanges[] = {
      {"f", "7100000\n"},
      {"+f", "get_freq:\nFrequency: 7100000\nRPRT 0\n"},
      {";f", "get_freq:;Frequency: 7100000;RPRT 0\n"},
      {"|f", "get_freq:|Frequency: 7100000|RPRT 0\n"},
      {"F 7100000.000000", "RPRT 0\n"},
      {"+F 7100000", "set_freq: 7100000\nRPRT 0\n"},
      {"m", "USB\n2400\n"},
      {"+m", "get_mode:\nMode: USB\nPassband: 2400\nRPRT 0\n"},
      {"M USB -1", "RPRT 0\n"},
      {"+M USB -1", "set_mode: USB -1\nRPRT 0\n"},
      {"M ?", "AM USB LSB CW \nRPRT 0\n"},
      {"+M ?", "set_mode: ?\nAM USB LSB CW \nRPRT 0\n"},
      {"M ? 0", "AM USB LSB CW \nRPRT 0\n"},
      {"v", "VFOA\n"},
      {"+v", "get_vfo:\nVFO: VFOA\nRPRT 0\n"},
      {"V ?", "VFOA \nRPRT 0\n"},
      {";V ?", "set_vfo: ?;VFOA;RPRT 0\n"},
      {"V VFOA", "RPRT 0\n"},
      {"V Sub", "RPRT -11\n"},
      {"s", "0\nVFOA\n"},
      {"+s", "get_split_vfo:\nSplit: 0\nTX VFO: VFOA\nRPRT 0\n"},
      {"i", "7100000\n"},
      {"+x", "get_split_mode:\nTX Mode: USB\nTX Passband: 2400\nRPRT 0\n"},
      {"t", "0\n"},
      {"+t VFOA", "get_ptt: VFOA\nPTT: 0\nRPRT 0\n"},
      {"l STRENGTH", "-19\n"},
      {"+l STRENGTH", "get_level: STRENGTH\n-19\nRPRT 0\n"},
      {"l ATT", "10\n"},
      {"l AGC", "2\n"},
      {"l ?", "ATT AGC STRENGTH \n"},
      {"+l VFOA RFPOWER", "get_level: VFOA RFPOWER\nRPRT -11\n"},
      {"u NB", "0\n"},
      {"+u NB", "get_func: NB\n0\nRPRT 0\n"},
      {"\\get_dcd", "1\n"},
      {"+\\get_dcd", "get_dcd:\nDCD: 1\nRPRT 0\n"},
      {"\\get_powerstat", "1\n"},
      {"+\\get_powerstat", "get_powerstat:\nPower Status: 1\nRPRT 0\n"},
      {"\\set_powerstat 1", "RPRT 0\n"},
      {"\\get_lock_mode", "0\n"},
      {"+\\get_lock_mode", "get_lock_mode:\nLocked: 0\nRPRT 0\n"},
      {"\\chk_vfo", "0\n"},
      {"+\\chk_vfo", "ChkVFO: 0\n"},
      {";\\chk_vfo", "ChkVFO: 0;\n"},
      {"\\get_vfo_info VFOA", "7100000\nUSB\n2400\n0\n0\n"},
      {"+\\get_vfo_info VFOA",
       "get_vfo_info: VFOA\nFreq: 7100000\nMode: USB\nWidth: 2400\nSplit: 0\nSatMode: 0\nRPRT 0\n"},
      {"\\set_cache 100", "RPRT 0\n"},
      {"\\get_cache", "500\n"},
      {"\\get_vfo_list", "VFOA\n"},
      {"_", "Attic\n"},
      {"+_", "get_info:\nInfo: Attic\nRPRT 0\n"},
      {"j", "0\n"},
      {"+n", "get_ts:\nTuning Step: 0\nRPRT 0\n"},
      {"AOS", "RPRT 0\n"},
      {"T 0", "RPRT 0\n"},
      {"S 0 VFOA", "RPRT 0\n"},
      {"get_freq", "7100000\n"},
      {"dump_caps", "RPRT 0\n"},
      {"set_freq 7100000", "RPRT 0\n"},
      {"G ?", "\nRPRT 0\n"},
      {"U RIT 0", "RPRT 0\n"},
      {"U DSP 1", "RPRT -11\n"},
  };
  for (const auto& [sent, answered] : kExchanges) {
    SharePlay play;
    EXPECT_EQ(play.say(std::string(sent) + "\n"), answered) << sent;
  }
}

TEST(ShareSession, WhatNobodyKnowsOrWouldTransmitIsRefusedAndNeverMetWithSilence) {
  for (const std::string_view sent : {"\\stream_caps",
                                      "+\\stream_caps",
                                      "bogus",
                                      "get_frequency",
                                      "Frequency 7",
                                      "?",
                                      "#",
                                      "\\",
                                      "+",
                                      "\x01\xff\x80",
                                      "T 1",
                                      "\\set_ptt 3",
                                      "S 1 VFOB",
                                      "S 1 2",
                                      "b CQ TEST",
                                      "\\halt",
                                      "I 7100000",
                                      "X USB 0",
                                      "w FA;",
                                      "H 1",
                                      "E 5",
                                      "\\set_powerstat 0",
                                      "Z 100",
                                      "\\get_modes"}) {
    SharePlay play;
    const std::string answer = play.say(std::string(sent) + "\n");
    EXPECT_TRUE(answer.ends_with("RPRT -11\n")) << sent << ": " << answer;
    EXPECT_TRUE(play.orders().empty()) << sent;
    EXPECT_EQ(play.say("f\n"), "7100000\n") << sent;
  }
}

TEST(ShareSession, TakesCommandsAsProgramsWriteThem) {
  SharePlay play;
  const std::string mode = "get_mode:\nMode: USB\nPassband: 2400\nRPRT 0\n";
  EXPECT_EQ(play.say("+f +m +v\n"),
            "get_freq:\nFrequency: 7100000\nRPRT 0\n" + mode + "get_vfo:\nVFO: VFOA\nRPRT 0\n");
  EXPECT_EQ(play.say("fmv\r\n"), "7100000\nUSB\n2400\nVFOA\n");
  EXPECT_EQ(play.say("\n \r\n\t\n"), "");
  EXPECT_EQ(play.say("F    7050000\n"), "RPRT 0\n");
  EXPECT_EQ(play.say("F currvfo 7.0501e6\n"), "RPRT 0\n");
  EXPECT_EQ(play.say("F7050200 M LSB 1800 f\n"), "RPRT 0\nRPRT 0\n7050200\n");
  EXPECT_EQ(play.orders(), (Orders{order(Item::Frequency, 7'050'200), order(Item::Mode, kLsb),
                                   order(Item::Filter, 1800)}));
  // The status of one, the list of the other: the connection ends after it.
  EXPECT_EQ(play.say("T 1\nq\nf\n"), "RPRT -11\nRPRT 0\n");
  EXPECT_TRUE(play.session.ended());
  EXPECT_EQ(play.say("f\n"), "");
}

TEST(ShareSession, ServesProgramsThatSpeakTheProtocolByThemselves) {
  const std::vector<std::pair<std::string, std::vector<Exchange>>> programs = {
      {"CQRLOG",
       {{"+\\chk_vfo\n", "ChkVFO: 0\n"},
        {"+\\set_freq 7100000\n", "set_freq: 7100000\nRPRT 0\n"},
        {"+\\set_mode USB 2400\n", "set_mode: USB 2400\nRPRT 0\n"},
        {"+\\set_vfo VFOA\n", "set_vfo: VFOA\nRPRT 0\n"},
        {"+\\set_ptt 0\n", "set_ptt: 0\nRPRT 0\n"},
        {"+\\set_powerstat 1\n", "set_powerstat: 1\nRPRT 0\n"},
        {"+\\set_func RIT 0\n", "set_func: RIT 0\nRPRT 0\n"},
        {"+\\set_xit 0\n", "set_xit: 0\nRPRT 0\n"}}},
      {"gpredict",
       {{"\\set_vfo_opt 1\n", "RPRT 0\n"},
        {"\\chk_vfo\n", "1\n"},
        {"F    7100000\n", "RPRT 0\n"},
        {"f\n", "7100000\n"},
        {"t\n", "0\n"},
        {"S 1 2\n", "RPRT -11\n"},
        {"AOS\n", "RPRT 0\n"},
        {"LOS\n", "RPRT 0\n"},
        {"T 1\nq\n", "RPRT -11\nRPRT 0\n"}}},
      {"not1mm",
       {{"+\\set_vfo_opt 1\n", "set_vfo_opt: 1\nRPRT 0\n"},
        {"+f VFOA\n", "get_freq: VFOA\nFrequency: 7100000\nRPRT 0\n"},
        {"+m VFOA\n", "get_mode: VFOA\nMode: USB\nPassband: 2400\nRPRT 0\n"},
        {"+v\n", "get_vfo:\nVFO: VFOA\nRPRT 0\n"},
        {"+l VFOA RFPOWER\n", "get_level: VFOA RFPOWER\nRPRT -11\n"},
        {"+M VFOA ?\n", "set_mode: VFOA ?\nAM USB LSB CW \nRPRT 0\n"},
        {"+F VFOA 7100000\n", "set_freq: VFOA 7100000\nRPRT 0\n"},
        {"+M VFOA USB 0\n", "set_mode: VFOA USB 0\nRPRT 0\n"},
        {"+\\set_func VFOA SYNC 0\n", "set_func: VFOA SYNC 0\nRPRT 0\n"},
        {"+b CQ TEST\n", "send_morse: CQ TEST\nRPRT -11\n"},
        {"+\\stop_morse\n", "stop_morse:\nRPRT 0\n"}}},
      {"Pat",
       {{"dump_caps\r\n", "RPRT 0\n"},
        {"\\chk_vfo\r\n", "0\n"},
        {"\\get_freq\r\n", "7100000\n"},
        {"\\set_freq 7100000\r\n", "RPRT 0\n"},
        {"t\r\n", "0\n"},
        {"\\set_ptt 0\r\n", "RPRT 0\n"}}},
      {"WaveLogGate",
       {{"f\n", "7100000\n"},
        {"m\n", "USB\n2400\n"},
        {"u SATMODE\n", "RPRT -11\n"},
        {"s\n", "0\nVFOA\n"},
        {"V Sub\n", "RPRT -11\n"},
        {"M ? 0\n", "AM USB LSB CW \nRPRT 0\n"},
        {"F 7100000\nM USB -1\n", "RPRT 0\nRPRT 0\n"}}},
      {"Log4OM",
       {{";V ?\n", "set_vfo: ?;VFOA;RPRT 0\n"},
        {"+\\get_vfo_info VFOA\n",
         "get_vfo_info: VFOA\nFreq: 7100000\nMode: USB\nWidth: 2400\nSplit: 0\nSatMode: 0\n"
         "RPRT 0\n"}}}};
  for (const auto& [name, exchanges] : programs) {
    SharePlay play;
    for (const auto& [sent, answered] : exchanges) {
      play.session.received(sent);
      EXPECT_EQ(play.session.answer(play.now), answered) << name << ", as one packet: " << sent;
    }
  }
}

TEST(ShareSession, APrefixBelongsToOneCommandAndTheVfoOptionToOneConnection) {
  SharePlay play;
  EXPECT_EQ(play.say(";f\nf\n"), "get_freq:;Frequency: 7100000;RPRT 0\n7100000\n");
  EXPECT_EQ(play.say("\\set_vfo_opt 1\n\\chk_vfo\n"), "RPRT 0\n1\n");
  EXPECT_EQ(play.say("F VFOA 7100000.000000\nf VFOA\nl VFOA ATT\n"), "RPRT 0\n7100000\n10\n");
  ShareSession other(play.receiver, "another", [] {});
  other.received("\\chk_vfo\n");
  EXPECT_EQ(other.answer(play.now), "0\n");
}

TEST(ShareSession, TellsWhatTheReceiverCanDo) {
  SharePlay play;
  const std::string expected =
      "1\n2\n0\n10000.000000 30000000.000000 0xf -1 -1 0x1 0x1\n0 0 0 0 0 0 0\n0 0 0 0 0 0 0\n"
      "0xf 1\n0 0\n"
      "0x1 6000\n0x1 3000\n0x1 4500\n0x1 9000\n0x1 12000\n"
      "0x4 2700\n0x4 1800\n0x4 2400\n0x4 3000\n0x4 4000\n"
      "0x8 2700\n0x8 1800\n0x8 2400\n0x8 3000\n0x8 4000\n"
      "0x2 500\n0x2 150\n0x2 300\n0x2 1000\n0x2 2400\n"
      "0 0\n0\n0\n0\n0\n\n10 20\n0x2\n0x2\n0x40020002\n0x20002\n0x0\n0x0\n"
      "vfo_ops=0x0\nptt_type=0x0\ntargetable_vfo=0x0\nhas_set_vfo=0\nhas_get_vfo=0\n"
      "has_set_freq=1\nhas_get_freq=1\nhas_set_conf=0\nhas_get_conf=0\nhas_power2mW=0\n"
      "has_mW2power=0\nhas_get_ant=0\nhas_set_ant=0\ntimeout=0\nrig_model=2\n"
      "rigctld_version=Kelvane\nagc_levels=3=SLOW 5=MEDIUM 2=FAST\nlevel_gran=\nparm_gran=\n"
      "hamlib_version=Kelvane\ndone\n";
  EXPECT_EQ(play.say("\\dump_state\n"), expected);
  EXPECT_EQ(play.say("+\\dump_state\n"), "dump_state:\n" + expected + "RPRT 0\n");
  play.facts.online = false;
  play.publish();
  EXPECT_EQ(play.say("\\dump_state\n"), expected)
      << "an error here would end the program's opening";
  const std::string caps = play.say("+\\dump_caps\n");
  for (const std::string_view line :
       {"Hamlib version:\t", "Can set Power Stat:\tN\n", "Can get VFO:\tN\n",
        "Can send Morse:\tN\n", "Can send Voice:\tN\n", "RPRT 0\n"}) {
    EXPECT_NE(caps.find(line), std::string::npos) << line;
  }
}

TEST(ShareSession, OrdersNothingThatTheReceiverCannotDo) {
  for (const std::string_view sent :
       {"F 9999",  "F 30000001", "F -5",
        "F 1e30",  "F nan",      "F inf",
        "F 0x10",  "F 7,1",      "F",
        "F x",     "M WFM 0",    "M CWR 0",
        "M USB x", "M USB -2",   "M",
        "L ATT 7", "L AGC 99",   "L ATT",
        "U NB",    "U NB x",     "F 99999999999999999999999999999999999999999999"}) {
    SharePlay play;
    EXPECT_EQ(play.say(std::string(sent) + "\n"), "RPRT -1\n") << sent;
    EXPECT_TRUE(play.orders().empty()) << sent;
    EXPECT_EQ(play.wakes, 0);
  }
}

TEST(ShareSession, OrdersModesAndLevelsAsTheReceiverHasThem) {
  const auto ordered = [](std::string_view sent) {
    SharePlay play;
    EXPECT_EQ(play.say(std::string(sent) + "\n"), "RPRT 0\n") << sent;
    return play.orders();
  };
  EXPECT_EQ(ordered("M PKTLSB 0"), (Orders{order(Item::Mode, kLsb)}));
  EXPECT_EQ(ordered("M ams -1"), (Orders{order(Item::Mode, kAm)}));
  EXPECT_EQ(ordered("M AM 8000"), (Orders{order(Item::Mode, kAm), order(Item::Filter, 9000)}));
  EXPECT_EQ(ordered("M PKTUSB -1"), Orders{}) << "it is in USB already";
  EXPECT_EQ(ordered("M USB 0"), (Orders{order(Item::Filter, 2700)})) << "the usual width";
  EXPECT_EQ(ordered("M USB 2400"), Orders{});
  EXPECT_EQ(ordered("L ATT 20"), (Orders{order(Item::Attenuator, 2)}));
  EXPECT_EQ(ordered("L AGC 3"), (Orders{order(Item::Agc, 0)}));
  EXPECT_EQ(ordered("U NB 1"), (Orders{order(Item::Blanker, 1)}));
}

TEST(ShareSession, ShowsWhatWasOrderedUntilTheReceiverSaysWhatCameOfIt) {
  SharePlay play;
  EXPECT_EQ(play.say("F 14074000\nM LSB 1800\nf\nm\n"), "RPRT 0\nRPRT 0\n14074000\nLSB\n1800\n");
  EXPECT_EQ(play.wakes, 1) << "one wake-up for all that waits";
  play.orders();
  EXPECT_EQ(play.say("f\n"), "14074000\n") << "taken, and nothing known of it yet";
  EXPECT_EQ(play.say("F 14075000\n"), "RPRT 0\n");
  EXPECT_EQ(play.wakes, 2);
  play.facts.frequency = 14'074'010;
  play.facts.mode = kUsb;
  play.publish();
  EXPECT_EQ(play.say("f\nm\n"), "14075000\nUSB\n2400\n") << "the newer order waits still";
  play.say("F 14076000\n");
  EXPECT_EQ(play.orders(), (Orders{order(Item::Frequency, 14'076'000)})) << "the newest wins";
}

TEST(ShareSession, OnlyLooksWhereItMayNotTune) {
  SharePlay play;
  play.traits.permission = SharePermission::Look;
  play.publish();
  for (const std::string_view sent : {"F 7200000", "F x", "M AM 0", "L ATT 20", "U NB 1"}) {
    EXPECT_EQ(play.say(std::string(sent) + "\n"), "RPRT -22\n") << sent;
  }
  EXPECT_EQ(play.say("+F 7\n"), "set_freq: 7\nRPRT -22\n");
  EXPECT_EQ(play.say("T 1\nM ?\nf\n"), "RPRT -11\nAM USB LSB CW \nRPRT 0\n7100000\n");
  EXPECT_TRUE(play.orders().empty());
}

TEST(ShareSession, HoldsTheLastValuesWhileTheRadioIsAwayForAMoment) {
  SharePlay play;
  play.facts.online = false;
  play.facts.lostAt = play.now;
  play.publish();
  play.now += milliseconds(29'999);
  EXPECT_EQ(play.say("f\nm\nl STRENGTH\n"), "7100000\nUSB\n2400\n-19\n");
  EXPECT_EQ(play.say("F 7200000\nL ATT 0\n"), "RPRT -5\nRPRT -5\n");
  play.now += milliseconds(1);
  EXPECT_EQ(play.say("f\n+m\n\\get_vfo_info VFOA\nu NB\n"),
            "RPRT -5\nget_mode:\nRPRT -5\nRPRT -5\nRPRT -5\n");
  EXPECT_EQ(play.say("\\chk_vfo\ns\nt\n"), "0\n0\nVFOA\n0\n") << "what needs no radio goes on";
  play.facts.online = true;
  play.facts.lostAt.reset();
  play.publish();
  EXPECT_EQ(play.say("f\nF 7200000\n"), "7100000\nRPRT 0\n");
}

TEST(ShareSession, ALineWaitsForItsEndAndOneThatIsTooLongEndsTheConnection) {
  SharePlay play;
  EXPECT_EQ(play.say("F 72"), "");
  EXPECT_EQ(play.say("00000"), "");
  EXPECT_TRUE(play.orders().empty());
  EXPECT_EQ(play.say("\nf"), "RPRT 0\n");
  EXPECT_EQ(play.say("\n" + std::string(1024, ' ') + "\nf\n"), "7200000\n7200000\n");
  EXPECT_EQ(play.say(std::string(1025, 'f')), "RPRT -1\n");
  EXPECT_TRUE(play.session.ended());
}

TEST(ShareSession, AnswersALongRowOfCommandsInBoundedPieces) {
  SharePlay play;
  std::string row;
  for (int i = 0; i < 200; ++i) row += "\\dump_state\n";
  play.session.received(row);
  std::size_t all = 0;
  for (std::string part; !(part = play.session.answer(play.now)).empty(); all += part.size()) {
    EXPECT_LE(part.size(), 20'000U);
  }
  EXPECT_EQ(all, 200 * play.say("\\dump_state\n").size());
}

TEST(ShareSession, AnythingMayBeSent) {
  const std::string row =
      "\\chk_vfo\n\\dump_state\nF 7100055.000000\nf\n+f +m +v\nM USB 2400\n+l VFOA RFPOWER\r\nq\n";
  for (std::uint32_t seed = 1; seed <= 500; ++seed) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes(row.begin(), row.end());
    bytes.insert(bytes.end(), row.begin(), row.end());
    for (int i = 0; i < 12; ++i)
      bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
    EXPECT_EQ(fakes::ShareStorm().play(bytes), "") << "seed " << seed;
  }
}

}  // namespace
}  // namespace kelvane::sondrel
