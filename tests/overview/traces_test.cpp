#include "overview/traces.h"

#include <gtest/gtest.h>

#include "levels/level_csv.h"
#include "tests/fakes/failing_steps.h"
#include "tests/fakes/panel_rig.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

using fakes::PanelRig;
namespace fs = std::filesystem;

const std::string kUnlikeAntennas =
    "[Receiver]\nName=Loop\nMemories=l\nFrequency=6070000\nMode=AM\n"
    "[Receiver]\nName=Long wire\nMemories=w\nFrequency=6070000\nMode=AM\nGain=7\n"
    "[Receiver]\nName=Apart\nMemories=p\nFrequency=7205000\nMode=AM\n";

class TracesTest : public testing::Test {
 protected:
  explicit TracesTest(const std::string& receivers = kUnlikeAntennas) : rig(receivers) {
    rig.start();
    rig.press(key::F8);
  }
  Traces& traces() { return *rig.dialogs.traces; }
  std::string recorded() const {
    std::string text;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(rig.folder() / "levels", none))
      text += readFile(entry.path(), 1 << 24).value_or("");
    return text;
  }
  static bool wholeLines(const std::string& text) {
    for (const std::string_view line : split(text, '\n')) {
      const bool whole = line.empty() || line.starts_with("UTC,") ||
                         (line.starts_with("20") && line.ends_with("\r"));
      if (!whole) return false;
    }
    return text.empty() || text.ends_with("\r\n");
  }

  PanelRig rig;
};

TEST_F(TracesTest, ComparesReceiversAndFindsAKnownDifference) {
  rig.run(std::chrono::seconds(61));
  const std::vector<std::string> results = traces().results();
  ASSERT_EQ(results.size(), 2u);
  ASSERT_TRUE(results[0].starts_with("Loop over Long wire: ")) << results[0];
  EXPECT_NEAR(std::stod(results[0].substr(21)), -7, 0.5) << results[0];
  EXPECT_TRUE(results[0].ends_with("ahead 0 %")) << results[0];
  EXPECT_EQ(results[1], "Not the same frequency as Loop: Apart");
  traces().changeOffset(0, 7);
  EXPECT_NEAR(std::stod(traces().results()[0].substr(21)), 0, 0.5);
  traces().copyResults();
  EXPECT_NE(rig.clipboard.held.find(" UTC Loop over Long wire: "), std::string::npos);
  rig.receiver().NextRxAtt(1);
  rig.run(std::chrono::seconds(1));
  EXPECT_EQ(traces().results()[0], "Not the same attenuator as Loop: Long wire");
  rig.sondrel.configure(kUnlikeAntennas.substr(kUnlikeAntennas.find("[Receiver]\nName=Long")) +
                        kUnlikeAntennas.substr(0, kUnlikeAntennas.find("[Receiver]\nName=Long")));
  rig.panel->receiverEvents().DrvUpdated(rig.sondrel.core.OpenRxConfig("Kelvane", 0));
  EXPECT_EQ(traces().offset(0), 0);
  EXPECT_EQ(traces().offset(2), 7) << "an offset belongs to the receiver";
}

TEST_F(TracesTest, APictureHasLinesGapsMarksAndACursorWithValues) {
  traces().zoom(-10);
  rig.run(std::chrono::seconds(40));
  rig.receiver().SetRxConnect(2, false);
  rig.run(std::chrono::seconds(5));
  EXPECT_EQ(traces().results().back(), "No link: Apart");
  rig.receiver().SetRxConnect(2, true);
  rig.type("6100\r");
  rig.run(std::chrono::seconds(10));
  traces().pointAt(580, 600);
  TraceFrame frame = traces().frame(600, 300);
  ASSERT_EQ(frame.traces.size(), 3u);
  const auto known = [](const LevelSpan& span) { return span.readings > 0; };
  EXPECT_GT(std::ranges::count_if(frame.traces[0].columns, known), 250);
  const auto& apart = frame.traces[2].columns;
  EXPECT_EQ(std::ranges::count_if(apart, [](const LevelSpan& s) { return s.afterGap; }), 2);
  ASSERT_EQ(frame.marks.size(), 1u);
  EXPECT_EQ(frame.marks[0].words, "Loop 6100.000");
  EXPECT_EQ(frame.cursor, 580);
  ASSERT_EQ(frame.cursorWords.size(), 4u);
  EXPECT_TRUE(frame.cursorWords[0].ends_with(" UTC"));
  EXPECT_TRUE(frame.cursorWords[1].ends_with(" dBm"));
  EXPECT_EQ(frame.times.size(), 6u);
  traces().pause(true);
  const Traces::Version before = traces().version(600);
  rig.run(std::chrono::seconds(5));
  EXPECT_EQ(traces().version(600), before);
  traces().scroll(1);
  EXPECT_FALSE(traces().paused()) << "at the present it runs on";
  traces().scroll(-1);
  EXPECT_LT(traces().version(600).to, before.to);
  EXPECT_TRUE(traces().statusLine().starts_with("1 min shown, up to ")) << traces().statusLine();
  traces().say("done");
  EXPECT_EQ(traces().statusLine(), "done");
  traces().pause(false);
  EXPECT_EQ(traces().statusLine(), "1 min shown");
}

TEST_F(TracesTest, RecordsWholeLinesAndKeepsTheComputerAwake) {
  fs::create_directories(rig.folder() / "levels");
  traces().toggleRecording();
  EXPECT_TRUE(rig.keptAwake);
  rig.run(std::chrono::seconds(3));
  traces().toggleRecording();
  EXPECT_FALSE(rig.keptAwake);
  rig.finishWriting();
  std::string text = recorded();
  EXPECT_TRUE(wholeLines(text));
  EXPECT_TRUE(text.starts_with("UTC,Receiver,Hz,dBm\r\n20")) << text.substr(0, 80);
  EXPECT_NE(text.find("Z,Long wire,6070000,-"), std::string::npos);
  EXPECT_NEAR(static_cast<double>(std::ranges::count(text, '\n')), 3 * 60, 6);
  // A program that was killed left half a line.
  const fs::path file = fs::directory_iterator(rig.folder() / "levels")->path();
  FileSteps().append(file, "2027-01-15T08:00:");
  traces().toggleRecording();
  rig.run(std::chrono::seconds(2));
  traces().toggleRecording();
  rig.finishWriting();
  EXPECT_TRUE(wholeLines(recorded()));
  EXPECT_GT(recorded().size(), text.size());
}

TEST_F(TracesTest, SavesWhatIsShownAsTextAndSaysHowThatEnded) {
  rig.run(std::chrono::seconds(5));
  const fs::path file = rig.sondrel.folder.path() / "a,b.csv";
  rig.fileDialogs.script.push_back(pathText(file));
  traces().saveCsv();
  rig.finishWriting();
  rig.run(std::chrono::seconds(1));
  EXPECT_TRUE(wholeLines(readFile(file, 1 << 24).value_or("nothing")));
  EXPECT_TRUE(traces().statusLine().starts_with("Saved ")) << traces().statusLine();
  std::string line;
  appendLevelLine(line, 951'782'400'007, csvName("A,\"b\""), -1, -735);
  EXPECT_EQ(line, "2000-02-29T00:00:00.007Z,\"A,\"\"b\"\"\",,-73.5\r\n");
}

TEST(LevelRecorder, AFullDiskStopsItOnceAndNothingElse) {
  PanelRig rig(kUnlikeAntennas);
  auto disk = std::make_shared<fakes::FailingSteps>(fakes::FailingSteps::How::Fail);
  rig.disk = disk;
  rig.start();
  rig.press(key::F8);
  const int shown = rig.dialogs.tracesShown;
  Traces& traces = *rig.dialogs.traces;
  traces.toggleRecording();
  rig.run(std::chrono::seconds(2));
  rig.finishWriting();
  disk->arm(2);
  rig.run(std::chrono::seconds(2));
  rig.finishWriting();
  rig.run(std::chrono::seconds(5));
  EXPECT_FALSE(traces.recording());
  EXPECT_FALSE(rig.keptAwake);
  EXPECT_EQ(traces.statusLine(), "Levels are not recorded any more: the disk is full");
  EXPECT_EQ(rig.dialogs.tracesShown, shown + 1) << "told once";
  const fs::path file = fs::directory_iterator(rig.folder() / "levels")->path();
  EXPECT_TRUE(readFile(file, 1 << 24).value_or("").ends_with("\r\n")) << "no part of a line";
  rig.type("7100\r");
  EXPECT_EQ(rig.digits(), "  7100000");
}

TEST(LevelRecorder, OldestDaysGoWhereTheLimitIsReached) {
  fakes::TempFolder folder;
  for (const char* day : {"2026-01-01", "2026-01-02"})
    FileSteps().write(folder.path() / ("levels-" + std::string(day) + ".csv"),
                      std::string(4000, 'x'));
  FileSaver saver;
  LevelRecorder recorder({saver, folder.path(), [](Index) { return "A"; }, {}}, 6000);
  Instant now{};
  recorder.start(now);
  for (int i = 0; i < 200; ++i) {
    recorder.heard(0, 1'800'000'000'000 + i, 7'000'000, -80);
    if (i % 20 == 0) {
      recorder.tick(now += std::chrono::seconds(2));
      saver.finish();
    }
  }
  EXPECT_FALSE(fs::exists(folder.path() / "levels-2026-01-01.csv"));
  EXPECT_FALSE(fs::exists(folder.path() / "levels-2026-01-02.csv"));
  recorder.tick(now += std::chrono::seconds(2));
  saver.finish();
  recorder.heard(0, 1'800'000'001'000, 7'000'000, -80);
  recorder.tick(now += std::chrono::seconds(2));
  EXPECT_FALSE(recorder.running()) << "a single day is larger than the limit";
  EXPECT_NE(recorder.takeTrouble().find("limit"), std::string::npos);
  EXPECT_EQ(recorder.takeTrouble(), "");
}

}  // namespace
}  // namespace kelvane
