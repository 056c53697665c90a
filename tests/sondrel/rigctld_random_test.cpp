#include <gtest/gtest.h>

#include <random>

#include "tests/fakes/session_play.h"
#include "tests/fakes/session_storm.h"

namespace kelvane::sondrel {
namespace {

TEST(RigctldRandom, AnythingMayHappenToASession) {
  for (std::uint32_t seed = 1; seed <= 2000; ++seed) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes(400);
    for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
    EXPECT_EQ(fakes::SessionStorm().play(bytes), "") << "seed " << seed;
  }
}

TEST(RigctldRandom, RepliesMayBeDamagedAnywhereAndTheLinkHeals) {
  for (std::uint32_t seed = 1; seed <= 150; ++seed) {
    std::mt19937 random(seed);
    fakes::SessionPlay play(static_cast<fakes::FakeRig::Manner>(seed % 5));
    play.pieces = 1 + random() % 30;
    int damaged = 60;
    play.instead = [&](const std::string& line) {
      auto answer = play.rig.answer(line);
      if (answer.empty() || damaged-- <= 0 || random() % 3 != 0) return answer;
      switch (random() % 4) {
        case 0:
          answer[random() % answer.size()] = static_cast<char>(random());
          break;
        case 1:
          answer.erase(random() % answer.size());
          break;
        case 2:
          answer.insert(random() % answer.size(), "RPRT 0\n");
          break;
        default:
          answer += answer;
          break;
      }
      return answer;
    };
    const auto healed = [&] {
      return damaged <= 0 && play.up() && play.last(RigItem::Frequency).number == 7'100'000;
    };
    for (int i = 0; i < 2000 && !healed(); ++i) {
      if (play.connection == 0) {
        play.session.open(false, play.now);
        play.connect();
      }
      play.run(milliseconds(500));
    }
    EXPECT_TRUE(healed()) << "seed " << seed;
    EXPECT_EQ(play.rig.sets, std::vector<std::string>{}) << "seed " << seed;
  }
}

}  // namespace
}  // namespace kelvane::sondrel
