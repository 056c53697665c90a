#include "companions/channel_file.h"

#include <gtest/gtest.h>

#include "tests/fakes/channel_rig.h"
#include "tests/fakes/failing_steps.h"

namespace kelvane {
namespace {

using fakes::ChannelRig;
using fakes::FailingSteps;
using Lines = std::vector<std::string>;

Lines cut(const Lines& pieces) {
  Lines lines;
  LineCutter cutter([&lines](std::string_view line) {
    lines.emplace_back(line);
    return true;
  });
  for (const std::string& piece : pieces) cutter.feed(piece);
  cutter.end();
  return lines;
}

TEST(LineCutter, EndsALineWithEitherEndOrBothWhereverThePiecesEnd) {
  EXPECT_EQ(cut({"a\r\nb\rc\nd"}), (Lines{"a", "b", "c", "d"}));
  EXPECT_EQ(cut({"a\r", "\nb", "c\r\n"}), (Lines{"a", "bc"}));
  EXPECT_EQ(cut({"\r\n\r\n", "\n\r"}), (Lines{"", "", "", ""}));
  EXPECT_EQ(cut({"", ""}), Lines{});
}

TEST(LineCutter, ALineWithoutEndKeepsItsNumberOfFieldsWrongAndTakesNoMemory) {
  std::size_t longest = 0;
  std::string fault;
  LineCutter cutter([&](std::string_view line) {
    longest = line.size();
    fault = readChannelLine(line, 1).reason();
    return true;
  });
  for (int i = 0; i < 4; ++i) cutter.feed(std::string(50'000, i == 3 ? ';' : 'x'));
  cutter.end();
  EXPECT_LT(longest, 70'000u);
  EXPECT_EQ(fault, "Line 1 don't contain the required number of fields !");
}

class ChannelFile : public testing::Test {
 protected:
  void SetUp() override {
    rig_.start();
    rig_.sondrel.core.SetRxChannel(0, 2, 6'070'000, -50, 2, 2400, 2, 1);
    rig_.sondrel.core.SetRxChannel(0, 7, 29'999'999, 0, 0, 6000, 0, 0);
    rig_.open(0);
  }
  std::string boxes() {
    std::string all;
    for (const std::string& box : std::exchange(rig_.fileDialogs.boxes, {})) all += box;
    return all;
  }
  static constexpr const char* kExported =
      "002;    6070000;  -50;  USB; 2400;Fast;1;\r\n"
      "007;   29999999;    0;   AM; 6000;Slow;0;\r\n";

  ChannelRig rig_;
};

TEST_F(ChannelFile, IsWrittenByTheLayoutAndReadsBackAsItWas) {
  rig_.exportTo("out.txt");
  EXPECT_EQ(ChannelRig::content(rig_.file("out.txt")), kExported);
  EXPECT_EQ(rig_.fileDialogs.saved[0].name, "A_Mem.txt");
  EXPECT_EQ(boxes(), "");
  rig_.grid().select({2, 1});
  rig_.gridKey(key::Delete);
  rig_.import(kExported);
  EXPECT_EQ(rig_.row(2), "02 6070000 -50 USB 2400 Fast Skip");
  EXPECT_EQ(rig_.channelView().caption, "Channels") << "nothing differs";
  rig_.exportTo("again.txt");
  EXPECT_EQ(ChannelRig::content(rig_.file("again.txt")), kExported);
  EXPECT_EQ(rig_.words().substr(0, 21), "2 channels exported t");
}

TEST_F(ChannelFile, LongerValuesAreNeverCut) {
  ChannelRow row{{123, -123456, 0, 1234567, 0, 12}};
  row[ChannelValue::Bfo] = -123456;
  std::string text;
  addChannelLine(text, 1234, row, "PKTUSB", "medium");
  EXPECT_EQ(text, "1234;        123;-123456;PKTUSB;1234567;medium;12;\r\n");
}

TEST_F(ChannelFile, EachWrongLineStopsTheImportWithItsOwnWords) {
  const std::string good = "1;5000000;0;AM;6000;Slow;0;\r\n";
  const struct {
    std::string line, words;
  } cases[] = {
      {"", "Line 2 is invalid"},
      {"1;5000000;0;AM;6000;Slow;0", "Line 2 don't contain the required number of fields !"},
      {"1;5000000;0;AM;6000;Slow;0;;", "Line 2 don't contain the required number of fields !"},
      {"   ", "Line 2 don't contain the required number of fields !"},
      {";x;0;AM;6000;Slow;0;", "Empty field(s) on line 2"},
      {"1; ;0;AM;6000;Slow;0;", "Empty field(s) on line 2"},
      {"1;5000000;0; ;x;Slow;0;", "Empty field(s) on line 2"},
      {"1;5000000;0;AM;;Slow;0;", "Empty field(s) on line 2"},
      {"1;5000000;0;AM;6000;;0;", "Empty field(s) on line 2"},
      {"x;5000000;0;AM;6000;Slow;0;", "Non numerical field(s) on line 2"},
      {"1;5e6;0;AM;6000;Slow;0;", "Non numerical field(s) on line 2"},
      {"1;5000000;-;AM;6000;Slow;0;", "Non numerical field(s) on line 2"},
      {"1;5000000;0;AM;60.0.0;Slow;0;", "Non numerical field(s) on line 2"},
      {"1;5905.0;0;AM;6000;Slow;0;", "The frequency on line 2 looks like kHz; it must be in Hz"},
      {"1;50" + std::string(1, '\0') + "0;0;AM;6000;Slow;0;", "Non numerical field(s) on line 2"},
  };
  for (const auto& wrong : cases) {
    rig_.import(good + wrong.line + "\r\n3;6000000;0;AM;6000;Slow;0;\r\n");
    EXPECT_EQ(boxes(), "Error: Invalid format|" + wrong.words + "|OkCancel") << wrong.line;
    EXPECT_EQ(rig_.cell(1, 1), "5000000") << "what came before stays";
    EXPECT_EQ(rig_.cell(3, 1), "0");
    rig_.gridKey('Z', key::CtrlHeld);
    EXPECT_EQ(rig_.cell(1, 1), "0") << "one import is one edit";
  }
}

TEST_F(ChannelFile, WhatIsAllowedIsRead) {
  rig_.import(
      "5;5000000;;USB;2400;Slow;;\n0005;5100000; -700 ;USB;2400;Fast;1;\n"
      "10;1;0;AM;0;Slow;0;\n3;6000000.4;0;NONE;6000;Slow;0;x;");
  EXPECT_EQ(boxes(),
            "Error: Invalid format|Line 4 don't contain the required number of fields !"
            "|OkCancel");
  EXPECT_EQ(rig_.row(5), "05 5100000 -700 USB 2400 Fast Skip");
  rig_.import(
      "\xEF\xBB\xBF"
      "3;6000000;;LSB;6000;Slow;0;\r4;7000000;;NONE;6000;Slow;0;\r");
  EXPECT_EQ(boxes(), "");
  EXPECT_EQ(rig_.row(3), "03 6000000 0 LSB 6000 Slow Keep");
  EXPECT_EQ(rig_.row(4), "04 7000000 0  6000 Slow Keep");
  EXPECT_EQ(rig_.words(),
            "2 channels imported from in.txt. 1 line with a mode or AGC that it does not know.");
}

TEST_F(ChannelFile, NumbersThatNoReceiverHasAreSkippedAndThoseThatNoChannelCanHaveEndIt) {
  for (const char* number : {"-1", "32768", "99999999999"}) {
    rig_.import("1;5000000;0;AM;6000;Slow;0;\r\n" + std::string(number) +
                ";5000000;0;AM;6000;Slow;0;\r\n3;6000000;0;AM;6000;Slow;0;\r\n");
    EXPECT_EQ(boxes(), "") << number;
    EXPECT_EQ(rig_.words(),
              "1 channel imported from in.txt. There is no such channel as on line 2.");
    EXPECT_EQ(rig_.cell(3, 1), "0") << number;
  }
  rig_.import("10;1;0;AM;0;Slow;0;\r\n32767;1;0;AM;0;Slow;0;\r\n3;6000000;0;AM;6000;Slow;0;\r\n");
  EXPECT_EQ(rig_.cell(3, 1), "6000000");
  EXPECT_EQ(rig_.words(),
            "1 channel imported from in.txt. 2 lines for channels that the receiver lacks.");
}

TEST_F(ChannelFile, FilesThatAreNoneAndLongOnes) {
  rig_.import("");
  EXPECT_EQ(rig_.words(), "0 channels imported from in.txt.");
  rig_.import(std::string(1'500'000, 'x'));
  EXPECT_EQ(boxes(),
            "Error: Invalid format|Line 1 don't contain the required number of fields !|OkCancel");
  std::string many;
  for (int i = 0; i < 40'000; ++i) many += "4;" + std::to_string(i + 1) + ";0;AM;0;Slow;0;\r\n";
  rig_.import(many);
  EXPECT_EQ(rig_.cell(4, 1), "40000");
  rig_.fileDialogs.script = {pathText(rig_.file("nowhere.txt"))};
  rig_.pressButton(id::ChnImport);
  EXPECT_EQ(rig_.words().substr(0, 5), "40000") << "asked again, then cancelled";
}

TEST_F(ChannelFile, ChannelNamesAreInTheCodePage) {
  rig_.import("3;6000000;0;\xDCSB;6000;Slow;0;\r\n");
  EXPECT_EQ(rig_.cell(3, 3), "") << "no such mode; and no exception either";
}

TEST_F(ChannelFile, ClearKeepsTheChannelsInADatedFileFromWhichTheyComeBack) {
  rig_.enter(2, 1, "1");
  rig_.sondrel.core.SetRxFrequency(0, false, 3'000'000);
  rig_.sondrel.core.StoreRxChannel(0, 3);
  rig_.sondrel.core.SetRxFrequency(0, false, 7'000'000);
  rig_.component->told("");
  rig_.pressButton(id::ChnClear);
  rig_.finishWriting();
  rig_.run(milliseconds(500));
  EXPECT_EQ(rig_.component->told("ClearRxChannel").size(), 10u);
  const auto kept = rig_.folder() / "Backups" / "A_Mem 2026-03-15 18-05-09.txt";
  EXPECT_NE(rig_.words().find(pathText(kept)), std::string::npos) << rig_.words();
  EXPECT_EQ(rig_.cell(2, 1), "1") << "the table stays";
  EXPECT_EQ(ChannelRig::content(kept),
            "002;    6070000;  -50;  USB; 2400;Fast;1;\r\n"
            "003;    3000000;    0;   AM; 6000;Slow;0;\r\n"
            "007;   29999999;    0;   AM; 6000;Slow;0;\r\n")
      << "what the receiver holds, not what was edited, and not what was read long ago";
  rig_.pressButton(id::ChnReload);
  EXPECT_EQ(rig_.cell(7, 1), "0");
  rig_.import(ChannelRig::content(kept));
  rig_.pressButton(id::ChnSave);
  rig_.pressButton(id::ChnReload);
  EXPECT_EQ(rig_.row(2), "02 6070000 -50 USB 2400 Fast Skip");
  EXPECT_EQ(rig_.cell(7, 1), "29999999");
}

TEST_F(ChannelFile, ClearsBackupOfAReceiverWithoutAgcComesBackToo) {
  rig_.sondrel.core.SetRxChannel(3, 2, 6'070'000, 0, 2, 2400, 0, 0);
  rig_.open(3);
  ASSERT_EQ(rig_.row(1), "02 6070000 0 USB 2400  Keep");
  rig_.pressButton(id::ChnClear);
  rig_.finishWriting();
  rig_.run(milliseconds(500));
  rig_.pressButton(id::ChnReload);
  ASSERT_EQ(rig_.cell(1, 1), "0");
  rig_.import(ChannelRig::content(rig_.folder() / "Backups" / "D_Mem 2026-03-15 18-05-09.txt"));
  EXPECT_EQ(boxes() + rig_.words(), "1 channel imported from in.txt.");
  rig_.pressButton(id::ChnSave);
  rig_.pressButton(id::ChnReload);
  EXPECT_EQ(rig_.row(1), "02 6070000 0 USB 2400  Keep");
}

TEST_F(ChannelFile, AValueWithoutANameTravelsByItsNumber) {
  const std::string unnamed = "003;    6000000;    0;   17; 6000;   9;0;\r\n";
  rig_.grid().select({2, 1});
  rig_.gridKey(key::Delete);
  rig_.grid().select({7, 1});
  rig_.gridKey(key::Delete);
  rig_.import(unnamed);
  EXPECT_EQ(boxes(), "");
  rig_.exportTo("out.txt");
  EXPECT_EQ(ChannelRig::content(rig_.file("out.txt")), unnamed);
  rig_.pressButton(id::ChnSave);
  EXPECT_EQ(rig_.component->told("SetRxChannel").at(1), "SetRxChannel 0 3 6000000 0 17 6000 9 0");
}

TEST_F(ChannelFile, ClearSaysWhatTheReceiverRefused) {
  rig_.component->refused = {"ClearRxChannel"};
  rig_.pressButton(id::ChnClear);
  rig_.finishWriting();
  rig_.run(milliseconds(500));
  EXPECT_EQ(rig_.words().find("Not all channels are cleared: the receiver refused 10 channels, the "
                              "first one 00. They are kept in "),
            0u)
      << rig_.words();
}

TEST_F(ChannelFile, ClearTakesTheReceiverOffItsChannelAndBackToWhereItWas) {
  rig_.sondrel.core.SelectRxChannel(0, 7);
  rig_.component->told("");
  rig_.pressButton(id::ChnClear);
  rig_.finishWriting();
  EXPECT_EQ(rig_.component->told("SetRxFrequency"),
            (Lines{"SetRxFrequency 0 0 29998999", "SetRxFrequency 0 0 29999999"}));
  EXPECT_EQ(rig_.sondrel.core.GetRxChannel(0), -1);
}

TEST_F(ChannelFile, ClearCallsChannelZeroTooAndNeedsNoFileForNothing) {
  rig_.panel->tabClicked(1);
  rig_.type("s");
  rig_.run(milliseconds(3000));
  rig_.pressButton(id::ChnClear);
  rig_.component->told("");
  rig_.run(milliseconds(3000));
  EXPECT_EQ(rig_.words(), "The receiver's channels are cleared. There was nothing in them.");
  EXPECT_FALSE(std::filesystem::exists(rig_.folder() / "Backups"));
}

TEST_F(ChannelFile, WithoutABackupNothingIsCleared) {
  sondrel::SimulatedFaults faults;
  faults.reading = sondrel::SimulatedFaults::Reading::Stalls;
  rig_.sondrel.core.setFaults(0, faults);
  rig_.component->told("");
  rig_.pressButton(id::ChnClear);
  rig_.run(milliseconds(4500));
  EXPECT_EQ(rig_.component->told("ClearRxChannel"), Lines{});
  EXPECT_EQ(rig_.words(),
            "The receiver stopped reading after 3 channels. Nothing was cleared: "
            "there is no backup.");
}

TEST(ChannelFileSteps, EditsThatADiskDoesNotKeepStayInTheWindowWhenAReloadFails) {
  ChannelRig rig;
  rig.disk = std::make_shared<FailingSteps>(1, FailingSteps::How::Stop);
  rig.open(0);
  rig.enter(5, 1, "5000000");
  sondrel::SimulatedFaults faults;
  faults.reading = sondrel::SimulatedFaults::Reading::Stalls;
  rig.sondrel.core.setFaults(0, faults);
  rig.pressButton(id::ChnReload);
  rig.run(milliseconds(4500));
  rig.finishWriting();
  EXPECT_TRUE(rig.channelView().open);
  EXPECT_TRUE(rig.fileDialogs.boxes.empty());
  EXPECT_EQ(rig.cell(5, 1), "5000000");
  EXPECT_NE(rig.words().find("could not be kept"), std::string::npos) << rig.words();
  EXPECT_NE(rig.words().find("the disk is full"), std::string::npos) << rig.words();
}

TEST(ChannelFileSteps, ADiskThatFailsOrStopsLeavesTheOldExportWholeAndNothingCleared) {
  for (const auto how : {FailingSteps::How::Fail, FailingSteps::How::Stop}) {
    for (int step = 1; step <= 4; ++step) {
      for (const bool clears : {false, true}) {
        ChannelRig rig;
        const auto steps = std::make_shared<FailingSteps>(step, how);
        rig.disk = steps;
        rig.start();
        rig.sondrel.core.SetRxChannel(0, 2, 6'070'000, -50, 2, 2400, 2, 1);
        rig.open(0);
        std::ofstream(rig.file("out.txt"), std::ios::binary) << "the old one";
        rig.fileDialogs.choice = Choice::Ok;
        if (clears) {
          rig.pressButton(id::ChnClear);
          rig.finishWriting();
        } else {
          rig.exportTo("out.txt");
        }
        ASSERT_TRUE(steps->struck()) << step;
        EXPECT_NE(rig.words().find("the disk is full"), std::string::npos) << rig.words();
        EXPECT_EQ(rig.component->told("ClearRxChannel"), Lines{});
        EXPECT_EQ(rig.words().find("Nothing was cleared.") != std::string::npos, clears);
        if (clears) continue;
        EXPECT_EQ(ChannelRig::content(rig.file("out.txt")), "the old one");
        EXPECT_FALSE(std::filesystem::exists(rig.file("out.txt.bak"))) << "it has its name back";
      }
    }
  }
}

}  // namespace
}  // namespace kelvane
