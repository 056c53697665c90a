#include <gtest/gtest.h>

#include <thread>

#include "components/sondrel/link_trial.h"
#include "components/sondrel/rigctld/rigctld_words.h"
#include "tests/fakes/fake_rig.h"
#include "tests/fakes/sondrel_rig.h"
#include "tests/fakes/stand_in_server.h"

namespace kelvane::sondrel {
namespace {

using fakes::FakeRig;
using fakes::StandInServer;

ReceiverEntry entryFor(int port) {
  return {"Attic", "rigctld", "Attic", {{"Port", std::to_string(port)}}};
}

/// What a trial of the entry says, once it says something that the last word of is expected.
std::string tried(const ReceiverEntry& entry, const std::string& wanted) {
  const auto trial = receiverKind(entry.kind)->tryOut(entry);
  std::string words;
  for (int i = 0; i < 20'000 && words.find(wanted) == std::string::npos; ++i) {
    words = trial->result().value_or("");
    std::this_thread::sleep_for(milliseconds(1));
  }
  return words;
}

bool holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(RigctldTrial, SaysWhatAnsweredAndWhatItCanDoAndChangesNothing) {
  struct Case {
    FakeRig::Manner manner;
    std::vector<std::string> says;
  };
  const Case cases[] = {
      {FakeRig::Manner::Rigctld,
       {"Model: Acme R-1, model number 2031", "Fake 1", "Dialect: rigctld", "100 to 54000 kHz",
        "AM, CW, USB", "attenuator (6, 12, 18 dB)", "AGC (OFF, FAST, MEDIUM, SLOW)",
        "\nLacks: clock"}},
      {FakeRig::Manner::StaticSdr,
       {"tells no model", "plain, with a fixed description", "Has: telling its frequency",
        "S-meter", "\nLacks: AGC, attenuator"}},
      {FakeRig::Manner::SilentSdr, {"plain, with a fixed", "\nLacks: S-meter, squelch"}},
      {FakeRig::Manner::SmallSdr, {"frequency and mode only", "\nLacks: S-meter"}}};
  for (const Case& each : cases) {
    std::mutex mutex;
    std::vector<std::string> sets;
    StandInServer server([&](StandInServer::Connection& connection) {
      FakeRig rig(each.manner);
      while (const auto line = connection.line()) {
        connection.write(rig.answer(*line));
        const std::lock_guard lock(mutex);
        sets = rig.sets;
      }
    });
    const std::string words = tried(entryFor(server.port()), each.says.back());
    for (const auto& part : each.says) EXPECT_TRUE(holds(words, part)) << part << " in " << words;
    const std::lock_guard lock(mutex);
    EXPECT_EQ(sets, std::vector<std::string>{});
  }
}

TEST(RigctldTrial, SaysWhyNothingAnswered) {
  const int unused = StandInServer(nullptr).port();
  StandInServer silent([](StandInServer::Connection& connection) {
    while (connection.line()) {
    }
  });
  auto wrongCommand = entryFor(unused);
  wrongCommand.set("Command", "no-such-program-anywhere -m 1");
  EXPECT_TRUE(holds(tried(entryFor(unused), "port"), "Nobody listens at 127.0.0.1, port "));
  EXPECT_TRUE(holds(tried(entryFor(70000), "port"), "no such place as 127.0.0.1, port 70000"));
  EXPECT_TRUE(holds(tried(entryFor(silent.port()), "port"), "does not answer"));
  EXPECT_TRUE(holds(tried(wrongCommand, "Command"), "cannot be started"));
}

TEST(RigctldTrial, OfAReceiverThatIsUpIsWhatItsLinkHasFound) {
  StandInServer server([](StandInServer::Connection& connection) {
    FakeRig rig(FakeRig::Manner::Rigctld);
    while (const auto line = connection.line()) connection.write(rig.answer(*line));
  });
  fakes::SondrelRig rig;
  rig.configure("[Receiver 1]\r\nName=Attic\r\nKind=rigctld\r\nPort=" +
                std::to_string(server.port()) + "\r\n");
  rig.open();
  const auto entry = rig.core.drivers().receivers()[0];
  for (int i = 0; i < 20'000 && !rig.core.IsRxOnline(0).value(); ++i) {
    std::this_thread::sleep_for(milliseconds(1));
    rig.pump();
  }
  EXPECT_TRUE(holds(rig.core.found(entry), "Model: Acme R-1"));
  auto changed = entry;
  changed.set("Port", "1");
  EXPECT_EQ(rig.core.found(changed), "") << "another place has to be tried out";
  rig.core.SetRxConnect(0, false);
  EXPECT_EQ(rig.core.found(entry), "") << "a link that is closed has found nothing";
}

}  // namespace
}  // namespace kelvane::sondrel
