#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/modes.h"
#include "tests/fakes/panel_rig.h"
#include "tests/fakes/recording_receiver.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

using fakes::PanelRig;
using testing::HasSubstr;
using testing::StartsWith;

constexpr int kCtrl = key::CtrlHeld, kAlt = key::AltHeld;

TEST(StationList, AChosenRowTunesTheShownReceiverWithModeAndFilter) {
  PanelRig rig;
  rig.start();
  rig.type("7050\r");
  rig.press(key::PadPlus, kCtrl);
  ASSERT_EQ(rig.view().IBank.text, "Kf");
  rig.panel->tabClicked(1);
  const Hz first = rig.receiver().GetRxFrequency(0, kTuned);
  rig.ambrel.choose(9'996'000, static_cast<Setting>(Mode::Cw), 500);
  rig.run(milliseconds(100));
  EXPECT_EQ(rig.receiver().GetRxFrequency(1, kTuned), 9'996'000);
  EXPECT_EQ(rig.receiver().GetRxFrequency(0, kTuned), first);
  EXPECT_EQ(rig.view().ModEvent[0].text, "CW");
  EXPECT_EQ(rig.view().ModEvent[1].text, "500");
  EXPECT_EQ(rig.view().IBank.text, "");
}

TEST(StationList, AChosenRowIsRefusedUnderALockedPanelAndOutsideTheRange) {
  PanelRig rig;
  rig.start();
  rig.type("7050\r");
  rig.ambrel.choose(2'000'000'000, 0, 6000);
  rig.run(milliseconds(50));
  EXPECT_EQ(rig.window.beeps, 1);
  rig.click(id::LockImg);
  rig.ambrel.choose(5'000'000, 0, 6000);
  rig.run(milliseconds(50));
  EXPECT_EQ(rig.window.beeps, 2);
  EXPECT_EQ(rig.receiver().GetRxFrequency(0, kTuned), 7'050'000);
}

TEST(StationList, OtherDataRefreshesTheLabelsAndLeavesWhatIsTyped) {
  PanelRig rig;
  rig.start();
  rig.type("6071\r");
  const std::string before = rig.view().Band.text;
  const auto file = rig.sondrel.folder.path() / "sked-a70.csv";
  std::ofstream(file, std::ios::binary)
      << "kHz:75;Time(UTC):93;Days:59;ITU:49;Station:201;Lng:49;Target:62;Remarks:135;P:35;"
         "Start:60;Stop:60;\r\n6071;0000-2400;;G;A station with a remarkably long name;E;Eu;w;1;;"
         "\r\n";
  rig.type("72");
  const std::string typed = rig.digits();
  ASSERT_TRUE(rig.ambrel.importSchedule(file));
  while (rig.ambrel.isLoading()) rig.run(milliseconds(5));
  EXPECT_NE(rig.view().Band.text, before);
  EXPECT_THAT(rig.view().Band.text, StartsWith("A station with a remarkably long name - "));
  EXPECT_THAT(rig.view().Band.tip, StartsWith(rig.view().Band.text + "\n")) << "told whole";
  EXPECT_THAT(rig.view().Band.tip, HasSubstr("Click  to change current band plan"));
  EXPECT_EQ(rig.digits(), typed);
  rig.type("00\r");
  EXPECT_EQ(rig.digits(), "  7200000");
  EXPECT_EQ(rig.view().Band.tip, "Click  to change current band plan");
}

/// Gives the panel known frequencies of a test's own, and no others.
void ownStations(PanelRig& rig, std::string_view stations) {
  const auto own = rig.sondrel.folder.path() / "frequency" / "Kelvane";
  std::filesystem::create_directories(own);
  for (const auto& entry : std::filesystem::directory_iterator(KELVANE_DATA_FOLDER)) {
    if (entry.path().filename().string().starts_with("known-"))
      std::ofstream(own / entry.path().filename()) << "[Empty]\n60000 ; beyond every receiver\n";
  }
  std::ofstream(own / "known-own.txt") << stations;
  rig.ambrel.OpenFrqConfig("Kelvane");
  rig.ambrel.InitFrqPlan(0);
}

TEST(AutomaticSetting, GoesByItsOptionsAndSetsDataModesAsUpperSideband) {
  for (const bool wanted : {true, false}) {
    PanelRig rig;
    ownStations(rig,
                "[One]\n5000 ; A ;;; AM ; 9000\n6000 ; R ;;; RTTY ; 500\n7000 ; F ;;; FAX ; 2400\n"
                "8000 ; S ;;; SAM ; 6000\n");
    auto recording = std::make_unique<fakes::RecordingReceiver>(rig.sondrel.core);
    fakes::RecordingReceiver& component = *recording;
    rig.wrapped = std::move(recording);
    rig.settings.writeFlag("AutoMode", wanted);
    rig.settings.writeFlag("AutoFilter", !wanted);
    rig.start();
    rig.click(id::LockImg);
    const auto asked = [&](Hz frequency, const std::string& operation) {
      rig.turnKnob(0, frequency - 5000);
      component.told("");
      rig.turnKnob(0, frequency);
      std::string all;
      for (const std::string& line : component.told(operation)) all += line + ";";
      return all;
    };
    EXPECT_EQ(asked(6'000'000, "SetRxMode"), wanted ? "SetRxMode 0 2;" : "");
    EXPECT_EQ(asked(7'000'000, "SetRxMode"), wanted ? "SetRxMode 0 2;" : "");
    EXPECT_EQ(asked(8'000'000, "SetRxMode"), "") << "a mode that is never set as such";
    EXPECT_EQ(asked(6'000'000, "SetRxFilter"), wanted ? "" : "SetRxFilter 0 500;");
  }
}

/// A panel whose only known frequencies are a test's own.
class Walks : public testing::Test {
 protected:
  Walks() {
    ownStations(rig,
                "[One]\n7000 ; A ;;; USB ; 2400\n7000 ; A again\n8000 ; B\n"
                "[Two]\n7500 ; C ;;; CW ; 500\n8000 ; B of two\n");
    rig.start();
    rig.type("7250\r");
  }
  std::string after(int keyCode, int shift) {
    rig.press(keyCode, shift);
    rig.run(milliseconds(50));
    return rig.digits();
  }

  PanelRig rig;
};

TEST_F(Walks, PassDuplicatesAndTheRangesEndsAndBeepThere) {
  EXPECT_EQ(after(key::PadPlus, kCtrl), "  7500000");
  EXPECT_EQ(rig.view().IBank.tip, "C");
  EXPECT_EQ(rig.view().ModEvent[0].text, "CW") << "whatever the automatic options say";
  EXPECT_EQ(after(key::PadPlus, kCtrl), "  8000000");
  EXPECT_EQ(rig.window.beeps, 0);
  EXPECT_EQ(after(key::PadPlus, kCtrl), "  8000000");
  EXPECT_EQ(rig.window.beeps, 1);
  EXPECT_EQ(after(key::PadMinus, kCtrl), "  7500000");
  EXPECT_EQ(after(key::PadMinus, kCtrl), "  7000000");
  EXPECT_EQ(rig.view().ModEvent[0].text, "USB");
  EXPECT_THAT(rig.view().VBank.text, HasSubstr("/"));
  EXPECT_EQ(after(key::PadMinus, kCtrl), "  7000000");
  EXPECT_EQ(rig.window.beeps, 2);
  EXPECT_THAT(rig.view().VBank.text, HasSubstr("/")) << "the place stays";
}

TEST_F(Walks, StayInTheSetAndGoFromSetToSet) {
  EXPECT_EQ(after(key::PadPlus, kCtrl), "  7500000");
  EXPECT_EQ(after(key::PadPlus, kAlt), "  8000000");
  EXPECT_EQ(rig.view().VBank.text, "2/2");
  EXPECT_EQ(rig.view().IBank.tip, "B of two");
  EXPECT_EQ(after(key::PadMinus, kAlt), "  7500000") << "the set that was walked into";
  EXPECT_EQ(after(key::PadMinus, kCtrl | kAlt), "  7000000") << "the set before";
}

TEST_F(Walks, BandsStopAtTheEndOfTheReceiversRange) {
  const Hz least = rig.receiver().GetRxFrqMin(0);
  after(key::PadPlus, kCtrl);
  ASSERT_EQ(rig.view().IBank.text, "Kf");
  std::string last;
  for (int i = 0; i < 300 && rig.window.beeps == 0; ++i) last = after(key::PadMinus, 0);
  EXPECT_EQ(rig.receiver().GetRxFrequency(0, kTuned), least) << last;
  EXPECT_EQ(rig.window.beeps, 1);
  EXPECT_EQ(rig.view().IBank.text + rig.view().VBank.text, "");
}

}  // namespace
}  // namespace kelvane
