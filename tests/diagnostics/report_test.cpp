#include "diagnostics/report.h"

#include <fstream>

#include <gtest/gtest.h>

#include "base/safe_file.h"
#include "panel/noted_events.h"
#include "tests/fakes/panel_rig.h"
#include "tests/fakes/recording_listener.h"

namespace kelvane {
namespace {

using fakes::PanelRig;

constexpr WallTime kMorning = 1'772'385'605'250;  // 2026-03-01 17:20:05.250 UTC

/// A running panel whose events are noted on their way, as in the program.
struct NotedPanel {
  explicit NotedPanel(const std::string& receivers) : rig(receivers) {
    rig.sondrel.core.addListener(noted);
    rig.start();
  }
  ~NotedPanel() { rig.sondrel.core.removeListener(noted); }

  PanelRig rig;
  LinkHistory history;
  fakes::RecordingListener heard;
  NotedEvents noted{history, heard, [] { return kMorning; }};
};

std::string lineOf(const LinkEvent& event) {
  std::array<char, 160> line;
  return std::string(writeEvent(event, line));
}

TEST(LinkHistory, KeepsTheLastThousandInTheirOrder) {
  LinkHistory history;
  EXPECT_EQ(history.size(), 0u);
  for (Long i = 0; i < 2345; ++i) history.note({i, "RxConnState", 0, i});
  ASSERT_EQ(history.size(), LinkHistory::kMost);
  EXPECT_EQ(history.at(0).code, 1345);
  EXPECT_EQ(history.at(LinkHistory::kMost - 1).code, 2344);
}

TEST(LinkHistory, WritesEachEventAsALineThatAPersonCanRead) {
  EXPECT_EQ(lineOf({kMorning, "RxConnState", 1, 1003}),
            "2026-03-01 17:20:05.250 UTC  receiver 2: RxConnState 1003 Link: Timeout");
  EXPECT_EQ(lineOf({kMorning, "RxConnState", 0, 1000}),
            "2026-03-01 17:20:05.250 UTC  receiver 1: RxConnState 1000 up");
  EXPECT_EQ(lineOf({0, "DrvUpdated", 4, 0}),
            "1970-01-01 00:00:00.000 UTC  DrvUpdated: 4 receivers");
  for (const std::size_t room : {1u, 2u, 20u, 29u, 31u, 45u}) {
    std::array<char, 64> buffer;
    buffer.fill('#');
    const auto text = writeEvent({kMorning, "RxConnState", 1, 1003}, std::span(buffer).first(room));
    EXPECT_LT(text.size(), room);
    EXPECT_EQ(buffer[room], '#') << room;
  }
}

TEST(LinkHistory, CountsWhatRepeatsInOneLine) {
  LinkHistory history;
  for (int i = 0; i < 3; ++i) {
    history.note({kMorning + i * 1000, "RxConnState", 0, 1004});
    history.note({kMorning + i * 1000, "RxConnState", 1, 1022});
  }
  history.note({kMorning + 9000, "RxConnState", 1, 1000});
  history.note({kMorning + 9000, "RxConnState", 1, 1022});
  history.note({kMorning + 9500, "DrvUpdated", 2, 0});
  history.note({kMorning + 9900, "RxConnState", 1, 1022});
  ASSERT_EQ(history.size(), 6u) << "another receiver's events between do not matter";
  EXPECT_EQ(lineOf(history.at(0)),
            "2026-03-01 17:20:05.250 UTC  receiver 1: RxConnState 1004 Link: Bad address, 3 times "
            "until 2026-03-01 17:20:07.250 UTC");
  EXPECT_EQ(history.at(1).times, 3u);
  EXPECT_EQ(history.at(3).times, 1u);
}

TEST(LinkHistory, NotesLinksAloneAndHandsEverythingOn) {
  NotedPanel panel("[Receiver]\nFault=1003\nFaultHeals=1\n[Receiver]\n");
  panel.rig.run(milliseconds(20000));
  panel.rig.type("7050\r");
  std::vector<Long> codes;
  for (std::size_t i = 0; i < panel.history.size(); ++i) {
    const LinkEvent& event = panel.history.at(i);
    if (event.receiver == 0 && event.name == std::string("RxConnState"))
      codes.push_back(event.code);
    EXPECT_NE(event.name, std::string("RxSMtUpdated"));
  }
  ASSERT_GE(codes.size(), 2u);
  EXPECT_EQ(codes.front(), 1003);
  EXPECT_EQ(codes.back(), 1000);
  EXPECT_FALSE(panel.heard.lines("RxConnState").empty());
  EXPECT_FALSE(panel.heard.lines("RxFrqUpdated").empty());
}

TEST(Report, LeavesOutWhateverCouldBeASecret) {
  const std::string shown = withoutSecrets(
      "# my password is hunter2\r\n\r\n[Receiver 1]\r\nName=Attic\r\nkind = rigctld\r\n"
      "Host=radio.example\r\nPort=4532\r\nCommand=ssh me:hunter2@radio.example\r\n"
      "Password=hunter2\r\nhunter2 on a line of its own\r\nPort=4533");
  EXPECT_EQ(shown.find("hunter2"), std::string::npos) << shown;
  EXPECT_EQ(shown.find("radio.example"), std::string::npos) << shown;
  for (const char* kept : {"[Receiver 1]", "Name=Attic", "kind = rigctld", "Host=(left out)",
                           "Port=4532", "Command=(left out)", "Port=4533"})
    EXPECT_NE(shown.find(kept), std::string::npos) << kept << shown;
}

TEST(Report, TellsVersionsStatesOptionsConfigurationAndEventsInOneFile) {
  NotedPanel panel("[Receiver]\nName=Broken\nFault=1003\n[Receiver]\nName=Sound\nSecret=x9\n");
  panel.rig.settings.writeFlag("AutoMode", false);
  const auto folder = panel.rig.sondrel.folder.path() / "Kelvane";
  const DiagnosticReport report(panel.rig.sondrel.core, panel.rig.settings, panel.history, folder);
  const std::string words =
      report.save({"Windows 10.0.19045, 64-bit", {"Kelvane.exe 1.0.0"}}, kMorning);
  const auto saved = readFile(folder / "report.txt", 1 << 20);
  ASSERT_TRUE(saved) << words;
  EXPECT_NE(words.find(pathText(folder / "report.txt")), std::string::npos) << words;
  for (const char* part :
       {"Kelvane 1.0.0", "2026-03-01 17:20:05", "Windows 10.0.19045", "  Kelvane.exe 1.0.0\r\n",
        "  1: Broken: 1003 Link: Timeout\r\n", "  2: Sound: 1000 up\r\n", "AutoMode=no",
        "AutoFilter=yes", "Secret=(left out)", "receiver 1: RxConnState 1003 Link: Timeout, "})
    EXPECT_NE(saved->find(part), std::string::npos) << part << "\n" << *saved;
  EXPECT_EQ(saved->find("x9"), std::string::npos);
}

TEST(Report, SaysWhyItCouldNotBeSaved) {
  NotedPanel panel("[Receiver]\n");
  const auto file = panel.rig.sondrel.folder.path() / "in the way";
  std::ofstream(file) << "a file";
  const DiagnosticReport report(panel.rig.sondrel.core, panel.rig.settings, panel.history,
                                file / "Kelvane");
  const std::string words = report.save({}, kMorning);
  EXPECT_EQ(words.rfind("The report could not be saved: ", 0), 0u) << words;
  EXPECT_GT(words.size(), 35u);
}

TEST(CrashReports, OnlyTheNewestAreKept) {
  const fakes::TempFolder folder;
  for (const char* name : {"crash-20260101-100000.dmp", "crash-20260101-100000.txt",
                           "crash-20260102-100000.txt", "crash-20260103-100000.dmp", "other.txt"})
    std::ofstream(folder.path() / name) << "x";
  pruneCrashReports(folder.path() / "not there", 1);
  pruneCrashReports(folder.path(), 2);
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "crash-20260101-100000.dmp"));
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "crash-20260101-100000.txt"));
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "crash-20260102-100000.txt"));
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "crash-20260103-100000.dmp"));
  pruneCrashReports(folder.path(), 0);
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "other.txt"));
}

}  // namespace
}  // namespace kelvane
