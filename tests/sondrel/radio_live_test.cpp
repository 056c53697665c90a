// Radios whose server this program keeps: with a real rigctld and its dummy radio.
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <fstream>

#include "components/sondrel/radios/radio_trial.h"
#include "components/sondrel/radios/server_search.h"
#include "tests/fakes/fake_rig.h"
#include "tests/fakes/real_rigctld.h"
#include "tests/fakes/sondrel_rig.h"
#include "tests/fakes/stand_in_server.h"

namespace kelvane::sondrel {
namespace {

using fakes::RealRigctld;

bool inTime(const std::function<bool()>& so) {
  for (int i = 0; i < 20'000 && !so(); ++i) std::this_thread::sleep_for(milliseconds(1));
  return so();
}

TEST(RadioLive, ItsServerIsStartedWithTheLinkStartedAgainAndGoneWithIt) {
  if (!RealRigctld::installed()) GTEST_SKIP() << "rigctld is not installed";
  constexpr int kMark = 1717;  // by which the server is known among all
  fakes::SondrelRig rig;
  rig.configure("[Receiver]\r\nKind=radio\r\nModel=1\r\nOptions=-C timeout=1717\r\n");
  rig.open();
  const auto up = [&] {
    rig.pump();
    return rig.core.IsRxOnline(0).value();
  };
  ASSERT_TRUE(inTime(up));
  EXPECT_EQ(rig.core.GetRxFrequency(0, kTuned), 145'000'000);
  RealRigctld::killWhoListensAt(kMark);
  ASSERT_TRUE(inTime([&] { return !up(); }));
  EXPECT_TRUE(inTime(up)) << "at another port, by itself";
}

/// Stands for a rigctld that tells of a port that is gone only when it opens it, as the newer ones
/// do; answers the server's process once it runs.
class ServerOfAPort {
 public:
  explicit ServerOfAPort(const std::filesystem::path& folder) : folder_(folder) {
    std::ofstream(program()) << "#!/bin/sh\necho $$ > '" << text(folder_ / "process") << "'\n"
                             << "[ -e '" << text(folder_ / "gone") << "' ] && "
                             << "echo 'serial_open: serial port COM5 does not exist' >&2 && "
                             << "exec sleep 60\nwhile [ \"$1\" != -t ]; do shift; done\n"
                             << "exec rigctld -m 1 -T 127.0.0.1 -t $2\n";
    std::filesystem::permissions(program(), std::filesystem::perms::owner_all);
  }
  std::string program() const { return text(folder_ / "rigctld"); }
  /// From now on its port is gone; the one that runs is silent.
  void pull() const {
    std::ofstream(folder_ / "gone");
    int process = 0;
    std::ifstream(folder_ / "process") >> process;
    if (process > 0) ::kill(process, SIGSTOP);
  }

 private:
  static std::string text(const std::filesystem::path& path) { return path.string(); }
  const std::filesystem::path folder_;
};

TEST(RadioLive, ALostRadiosServerIsMadeAnewAndTellsWhatIsWrong) {
  if (!RealRigctld::installed()) GTEST_SKIP() << "rigctld is not installed";
  fakes::SondrelRig rig;
  const ServerOfAPort server(rig.folder.path());
  rig.configure("[Receiver]\r\nKind=radio\r\nModel=3073\r\nDevice=COM5\r\nProgram=" +
                server.program() + "\r\n");
  rig.open();
  const auto up = [&] {
    rig.pump();
    return rig.core.IsRxOnline(0).value();
  };
  ASSERT_TRUE(inTime(up));
  server.pull();
  EXPECT_TRUE(inTime([&] {
    rig.pump();
    return rig.core.receiver(0)->linkFault() == "COM5 is not there: is the cable plugged in?";
  })) << rig.core.receiver(0)->linkFault();
}

TEST(RadioLive, SaysInWordsWhyItsServerDoesNotCome) {
  fakes::SondrelRig rig;
  rig.configure(
      "[Receiver]\r\nName=Half\r\nKind=radio\r\nSpeed=fast\r\nDevice=" + std::string(300, 'C') +
      "\r\n[Receiver]\r\nKind=radio\r\nModel=99999\r\nDevice=COM5\r\n");
  rig.open();
  const std::string note = rig.core.configurationNote();
  for (const char* part : {"Model is missing", "Device=CCC", "longer than 200", "Speed=fast"})
    EXPECT_NE(note.find(part), note.npos) << part << ": " << note;
  EXPECT_TRUE(inTime([&] {
    rig.pump();
    return rig.core.receiver(0)->linkFault() == "No model is chosen for this radio.";
  }));
  if (!RealRigctld::installed()) return;
  EXPECT_TRUE(inTime([&] {
    rig.pump();
    return rig.core.receiver(1)->linkFault() ==
           "This rigctld has no model 99999. Choose the radio anew.";
  })) << rig.core.receiver(1)->linkFault();
}

std::string triedOut(const RadioSetup& setup, const std::vector<std::int32_t>& speeds = {}) {
  const RadioTrial trial(setup, speeds);
  inTime([&] { return !trial.running(); });
  return trial.words();
}

TEST(RadioLive, ATrialTellsEachStep) {
  if (!RealRigctld::installed()) GTEST_SKIP() << "rigctld is not installed";
  const std::string whole = triedOut({1, {}, 0, {}, {}, {}});
  EXPECT_TRUE(
      whole.starts_with("rigctld is started.\nThe radio answers: 145000 kHz\n"
                        "Its mode: FM\nIts meter: -"))
      << whole;
  EXPECT_TRUE(whole.ends_with(" dB against S9\nIt works.")) << whole;
  EXPECT_EQ(triedOut({1, {}, 0, {}, {}, {}}, {19200, 9600}), "19200: 145000 kHz\nFound: 19200.");
  const std::string noModel = "This rigctld has no model 99999. Choose the radio anew.";
  EXPECT_EQ(triedOut({99999, "COM5", 0, {}, {}, {}}), "rigctld is started.\n" + noModel);
  EXPECT_EQ(triedOut({99999, "COM5", 0, {}, {}, {}}, {19200, 9600}), noModel) << "said once";
  EXPECT_EQ(triedOut({1, {}, 0, {}, {}, "/bin/true"}), "rigctld is started.\nrigctld ended.");
  const Instant before = std::chrono::steady_clock::now();
  { const RadioTrial hanging({1, {}, 0, {}, {}, "/bin/cat"}, {}); }
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(2));
}

TEST(ServerSearch, FindsWhatAnswersAtAHostAndLeavesOutWhatIsKnown) {
  std::atomic<int> came = 0;
  fakes::StandInServer server([&came](fakes::StandInServer::Connection& connection) {
    // It is closing its radio, as its last program has gone just now.
    if (++came == 1) return void(connection.line());
    fakes::FakeRig rig(fakes::FakeRig::Manner::Rigctld);
    while (const auto line = connection.line()) {
      connection.write(*line == "\\dump_caps" ? "Caps dump for model: 1\nModel name:\tR-1\n"
                                                "Mfg name:\tAcme\n"
                                              : rig.answer(*line));
    }
  });
  fakes::StandInServer mute([](fakes::StandInServer::Connection& connection) {
    while (connection.line()) connection.write("220 mail server\n");
  });
  const std::string named = "127.0.0.1:" + std::to_string(server.port());
  const auto usual = usualPlaces("", {});
  EXPECT_EQ(usual.size(), 20u) << "4532 to 4550 and 7356";
  EXPECT_EQ(usualPlaces("localhost", {{"127.0.0.1", 4532}, {"localhost", 4533}}).size(), 18u);
  EXPECT_EQ(usualPlaces("attic", {}).size(), 40u);
  const ServerSearch search({usualPlaces(named, usual).back(), {"127.0.0.1", mute.port()}});
  ASSERT_TRUE(inTime([&] { return !search.running(); }));
  ASSERT_EQ(search.found().size(), 1u);
  EXPECT_EQ(search.found()[0].name, "Acme R-1");
  EXPECT_EQ(search.found()[0].frequency, "7100 kHz");
}

}  // namespace
}  // namespace kelvane::sondrel
