#include "components/sondrel/config/receiver_config.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "tests/fakes/failing_steps.h"
#include "tests/fakes/sondrel_rig.h"

namespace kelvane::sondrel {
namespace {

namespace fs = std::filesystem;
using fakes::FailingSteps;
using fakes::SondrelRig;

bool contains(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

std::vector<std::string> namesOf(SondrelRig& rig) {
  std::vector<std::string> names;
  for (Index rx = 0; rx < rig.core.GetRxCount(); ++rx) names.push_back(rig.core.GetRxName(rx));
  return names;
}

using Names = std::vector<std::string>;

TEST(Config, ANewInstanceWritesFourReceiversThatReadBackTheSame) {
  SondrelRig rig;
  EXPECT_EQ(rig.open("Shack"), 4);
  EXPECT_EQ(rig.core.configurationNote(), "");
  const auto text = readFile(rig.instanceFolder("Shack") / "receivers.txt", 1 << 20);
  ASSERT_TRUE(text);
  const auto config = readConfig(*text);
  ASSERT_TRUE(config);
  EXPECT_EQ(config->receivers, standardConfig().receivers);
  EXPECT_TRUE(config->notes.empty());
  for (const ReceiverKind& kind : receiverKinds()) {
    for (const Parameter& parameter : kind.parameters) {
      EXPECT_TRUE(contains(*text, "#   " + std::string(parameter.key) + ": "))
          << parameter.key << " is explained";
      EXPECT_TRUE(parameter.standard.empty() || !parameter.check ||
                  parameter.check(parameter.standard))
          << parameter.key << " has a standard that is right";
    }
  }
  EXPECT_EQ(rig.open("Shack"), 4);
  EXPECT_EQ(rig.core.configurationNote(), "");
}

TEST(Config, KeepsWhatItDoesNotKnow) {
  const std::string text =
      "\xEF\xBB\xBF# my own remark\r\nVersion=1\r\nFuture=yes\r\n"
      "[Receiver 1]\r\n Name = A \r\n# the loft\r\nAntenna=dipole=long\r\nnonsense\r\n"
      "memories=A\r\n\r\n[Rotator]\r\nPort=4533\r\n# slow\r\n[receiver two]\nNAME=B\nLines=2";
  const auto config = readConfig(text);
  ASSERT_TRUE(config);
  EXPECT_EQ(config->notes.size(), 3u) << "two lines and a section that nobody knows";
  ASSERT_EQ(config->receivers.size(), 2u);
  EXPECT_EQ(config->receivers[0].name, "A");
  EXPECT_EQ(config->receivers[0].setting("ANTENNA"), "dipole=long");
  EXPECT_EQ(config->receivers[1].setting("Lines"), "2");
  const auto again = readConfig(writeConfig(*config));
  ASSERT_TRUE(again);
  EXPECT_EQ(again->receivers, config->receivers);
  EXPECT_EQ(again->head, config->head);
  EXPECT_EQ(again->others, config->others);
  for (const char* kept : {"Future=yes", "# the loft", "nonsense", "[Rotator]", "# slow"}) {
    EXPECT_TRUE(contains(writeConfig(*again), kept)) << kept;
  }
}

TEST(Config, ADamagedFileIsKeptAsideAndSaidInWords) {
  const std::string huge(10 << 20, 'x');
  const std::string binary("Version=1\n[Receiver 1]\nName=\0\x01\x02", 30);
  const std::string utf16("V\0e\0r\0s\0i\0o\0n\0=\0001\0", 18);
  for (const std::string& damaged :
       {std::string(), std::string("\r\n \r\n"), std::string("just prose"), binary, utf16, huge}) {
    SondrelRig rig;
    ASSERT_TRUE(writeFileSafely(rig.configPath(), damaged));
    EXPECT_EQ(rig.open(), 4);
    EXPECT_TRUE(contains(rig.core.configurationNote(), "receivers.damaged-1.txt"))
        << rig.core.configurationNote();
    EXPECT_EQ(rig.windows.told, std::vector<std::string>{rig.core.configurationNote()});
    EXPECT_EQ(readFile(rig.instanceFolder() / "receivers.damaged-1.txt", 11 << 20), damaged);
    EXPECT_EQ(rig.open(), 4);
    EXPECT_EQ(rig.core.configurationNote(), "") << "the file is a good one now";
  }
}

TEST(Config, ATornFileServesWhatIsWholeInIt) {
  SondrelRig whole;
  whole.open();
  const std::string text = readFile(whole.configPath(), 1 << 20).value();
  for (std::size_t length = 0; length < text.size(); length += 97) {
    SondrelRig rig;
    ASSERT_TRUE(writeFileSafely(rig.configPath(), text.substr(0, length)));
    EXPECT_LE(rig.open(), 4);
    for (Index rx = 0; rx < rig.core.GetRxCount(); ++rx) EXPECT_TRUE(rig.core.GetRxName(rx).ok());
  }
}

TEST(Config, WrongValuesAreReplacedAndSaidInWords) {
  SondrelRig rig;
  rig.configure(
      "[Receiver 1]\nName=A\nMaximum=99999999999\nMinimum=-1\nFinestStep=0\nModes=AM XYZ\n"
      "Mode=nothing\nAgc=very slow\nAttenuator=0 999\nBlanker=many\nChannels=5-10\nLines=99\n"
      "HfFilter=maybe\nFault=1000\nRefuse=everything\nChannelRead=later\nBfo=1 2 3\n"
      "Filters=0\nFrequency=1e6\nLinkTime=-5\n"
      "[Receiver 2]\nName=B\nMinimum=5000000\nMaximum=4000000\n"
      "[Receiver 3]\nName=C\nKind=telepathic\nModes=DRM\nMode=CW\n");
  EXPECT_EQ(rig.open(), 3);
  const std::string note = rig.core.configurationNote();
  std::istringstream keys(
      "Maximum Minimum FinestStep Modes Mode Agc Attenuator Blanker Channels Lines HfFilter Fault "
      "Refuse ChannelRead Bfo Filters Frequency LinkTime");
  for (std::string key; keys >> key;) EXPECT_TRUE(contains(note, "A: " + key)) << key << note;
  EXPECT_TRUE(contains(note, "B: Maximum is not above Minimum") && contains(note, "telepathic"));
  EXPECT_EQ(rig.windows.told, std::vector<std::string>{note}) << "all of it in one message";
  EXPECT_EQ(rig.core.GetRxFrqMax(0), 29'999'999);
  EXPECT_EQ(rig.core.GetRxFrqMin(1), 1);
  EXPECT_EQ(rig.core.GetRxChnCount(0), 100);
  EXPECT_EQ(rig.core.GetRxMode(2), 8) << "a mode that it lacks is no mode to start in";
  EXPECT_TRUE(rig.core.IsRxOnline(2));
}

TEST(Config, ReceiversOfOneNameAreToldApart) {
  SondrelRig rig;
  rig.configure("[Receiver 1]\nName=A\n[Receiver 2]\nName=a\n[Receiver 3]\n[Receiver 4]\nName=A\n");
  rig.open();
  EXPECT_EQ(namesOf(rig), (Names{"A", "a (2)", "Receiver 3", "A (3)"}));
  EXPECT_TRUE(contains(rig.core.configurationNote(), "Two receivers are called a"));
}

TEST(Config, ServesEightReceiversAndKeepsTheOthersInTheFile) {
  SondrelRig rig;
  std::string sections;
  for (int i = 1; i <= 11; ++i) {
    sections += "[Receiver]\nName=R" + std::to_string(i) + "\n";
  }
  rig.configure(sections);
  EXPECT_EQ(rig.open(), 8);
  EXPECT_TRUE(contains(rig.core.configurationNote(), "There are 11 receivers"));
  ASSERT_TRUE(rig.core.applyDrivers(rig.core.drivers()));
  EXPECT_TRUE(contains(readFile(rig.configPath(), 1 << 20).value(), "Name=R11"));
}

TEST(Config, InstancesHaveFoldersOfTheirOwnWhateverTheirNames) {
  SondrelRig rig;
  std::vector<std::string> long1{std::string(300, 'x'), std::string(300, 'x') + "y"};
  for (const std::string& name :
       {std::string("A"), std::string("a\\b"), std::string("c:/d"), std::string(".."),
        std::string("CON"), std::string("\xC3\xA4\xFF"), long1[0], long1[1], std::string()}) {
    EXPECT_EQ(rig.open(name), 4) << name;
    EXPECT_EQ(rig.core.configurationNote(), "") << name;
  }
  std::size_t folders = 0;
  for (const auto& entry : fs::directory_iterator(rig.folder.path())) {
    folders += entry.is_directory() && fs::exists(entry.path() / "receivers.txt") ? 1 : 0;
  }
  EXPECT_EQ(folders, 9u);
  EXPECT_TRUE(fs::exists(rig.folder.path() / "a_b" / "receivers.txt"));
}

TEST(Config, AFileThatCannotBeReadIsNeitherReplacedNorEdited) {
  SondrelRig rig;
  fs::create_directories(rig.configPath() / "in the way");
  EXPECT_FALSE(rig.core.OpenRxConfig("Kelvane", 0).ok());
  EXPECT_FALSE(rig.core.OpenRxConfig("Kelvane", 1).ok());
  EXPECT_EQ(rig.windows.edits, 0) << "its OK would write over the file";
  EXPECT_EQ(rig.core.GetRxCount(), 0) << "no simulated receivers in the place of the real ones";
  EXPECT_EQ(rig.windows.told.size(), 2u) << "a script's user is told, and not waited for";
  EXPECT_EQ(rig.windows.asked, Names{});
  EXPECT_TRUE(fs::exists(rig.configPath() / "in the way"));
}

TEST(Config, AFileThatAnotherProgramHoldsIsTriedAgainAndThenAskedFor) {
  const auto steps = std::make_shared<FailingSteps>(FailingSteps::How::Hold, 10);
  SondrelRig rig(steps);
  rig.configure("[Receiver 1]\nName=A\n");
  steps->arm(1);
  EXPECT_EQ(rig.open(), 1);
  EXPECT_EQ(rig.windows.asked, Names{});
  const auto lasting = std::make_shared<FailingSteps>(1, FailingSteps::How::Hold, 60);
  SondrelRig patient(rig.folder.path(), lasting);
  patient.core.SetRxOwner(4711);
  patient.windows.retries = 2;
  EXPECT_EQ(patient.open(), 1) << "the operator chose Retry until it could be read";
  EXPECT_GE(patient.windows.asked.size(), 1u);
  EXPECT_FALSE(fs::exists(rig.instanceFolder() / "receivers.damaged-1.txt"));
}

TEST(Config, WithoutADiskTheReceiversRunAllTheSame) {
  SondrelRig rig;
  std::ofstream(rig.folder.path() / "Kelvane") << "a file where the folder should be";
  EXPECT_EQ(rig.open(), 4);
  EXPECT_TRUE(contains(rig.core.configurationNote(), "Cannot write"));
  EXPECT_TRUE(rig.core.IsRxOnline(1));
}

TEST(Config, ModesOfOpeningThatThereAreNotFail) {
  SondrelRig rig;
  for (const Long mode : {-1, 2, 99}) {
    EXPECT_FALSE(rig.core.OpenRxConfig("Kelvane", mode).ok());
    EXPECT_EQ(rig.core.OpenRxConfig("Kelvane", mode), 0);
  }
}

}  // namespace
}  // namespace kelvane::sondrel
