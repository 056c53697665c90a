#include <gtest/gtest.h>

#include "tests/fakes/sondrel_rig.h"

namespace kelvane::sondrel {
namespace {

using fakes::SondrelRig;

class Keys : public testing::Test {
 protected:
  Keys() {
    rig.open();
    rig.run(milliseconds(1100));
  }
  /// Which of the keys were taken: "01" for the second of two.
  std::string press(std::string_view keys, Index rx = 0) {
    std::string taken;
    for (const char key : keys) {
      taken += rig.core.RxKeyPress(rx, std::string(1, key)).value() ? '1' : '0';
    }
    return taken;
  }

  SondrelRig rig;
  SondrelCore& core = rig.core;
};

TEST_F(Keys, EveryDocumentedPairActsOnItsSecondKey) {
  const auto expect = [&](const char* keys, auto get, Setting value) {
    EXPECT_EQ(press(keys), "01") << keys;
    EXPECT_EQ((core.*get)(0), value) << keys;
  };
  using Pair = std::pair<const char*, Setting>;
  for (const auto& [keys, mode] :
       {Pair{"MF", 1}, {"MA", 0}, {"mu", 2}, {"Ml", 3}, {"mR", 5}, {"MX", 6}, {"MC", 4}})
    expect(keys, &SondrelCore::GetRxMode, mode);
  for (const auto& [keys, filter] :
       {Pair{"FN", 150}, {"FI", 300}, {"FM", 500}, {"FW", 1000}, {"FR", 2400}})
    expect(keys, &SondrelCore::GetRxFilter, filter);
  for (const auto& [keys, agc] : {Pair{"AF", 2}, {"AM", 1}, {"AS", 0}})
    expect(keys, &SondrelCore::GetRxAgc, agc);
  for (const auto& [keys, on] : {Pair{"P0", 0}, {"P1", 1}})
    expect(keys, &SondrelCore::GetRxHFFilter, on);
}

TEST_F(Keys, APairIsTakenAlsoWhereTheReceiverLacksTheSetting) {
  EXPECT_EQ(press("MCAFP1", 2), "010101") << "else F and 1 would be commands of their own";
  EXPECT_EQ(core.GetRxMode(2), 2);
  EXPECT_EQ(press("FN", 2), "01");
  EXPECT_EQ(core.GetRxFilter(2), 2700) << "its one filter";
}

TEST_F(Keys, OtherKeysBelongToSomebodyElseAndForgetTheFirst) {
  EXPECT_EQ(press("MB"), "00") << "the best mode is not the receiver's to know";
  EXPECT_EQ(press("FB"), "00");
  EXPECT_EQ(press("7050\r"), "00000");
  EXPECT_EQ(press("M\x1BU"), "000") << "Escape";
  EXPECT_EQ(press("MBU"), "000");
  EXPECT_EQ(press("MPA\x1B"), "0000") << "P began a pair of its own, and PA is none";
  EXPECT_EQ(press("MMU"), "001");
  EXPECT_EQ(core.GetRxMode(0), 2);
  EXPECT_EQ(press("MUA"), "010") << "the pair is over";
  core.EndRxKeys(0);  // an arrow key, which is no character
  EXPECT_EQ(press("S500"), "0000");
  core.EndRxKeys(0);
  EXPECT_EQ(press("FM"), "01") << "no number is behind the F any more";
  EXPECT_EQ(press("U"), "0");
}

TEST_F(Keys, AnFThatEndsATypedFilterWaitsForNothing) {
  const Setting mode = core.GetRxMode(0);
  const Setting filter = core.GetRxFilter(0);
  EXPECT_EQ(press("2400FMC"), "0000001") << "M begins the pair MC";
  EXPECT_EQ(core.GetRxMode(0), 4);
  press("MA");
  EXPECT_EQ(core.GetRxMode(0), mode);
  EXPECT_EQ(core.GetRxFilter(0), filter);
}

TEST_F(Keys, EachReceiverRemembersItsOwnFirstKey) {
  EXPECT_EQ(press("M", 0), "0");
  EXPECT_EQ(press("U", 1), "0");
  EXPECT_EQ(press("U", 0), "1");
}

TEST_F(Keys, TextsThatAreNoKeyAreNotTaken) {
  for (const char* text : {"", "MU", "\xC3\xBC", "\xFF"}) {
    EXPECT_EQ(press("M"), "0");
    EXPECT_FALSE(core.RxKeyPress(0, text).value()) << text;
    EXPECT_EQ(press("U"), "0") << "and it forgets the first key";
  }
}

}  // namespace
}  // namespace kelvane::sondrel
