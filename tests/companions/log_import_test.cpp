#include "companions/log_import.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "station_log/log_export.h"
#include "tests/fakes/log_rig.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kAdif =
    "A head with a < in it\n<ADIF_VER:5>3.1.4<EOH>\n"
    "<CALL:5>G3ABC<FREQ:6>14.074<MODE:3>FT8<QSO_DATE:8>20260314<TIME_ON:4>2330<BAND:3>20m"
    "<GRIDSQUARE:4>IO91<eor>\n"
    "<call:7:s>Example <freq:5>7.105<mode:3>SSB<qso_date:8>20260315<time_on:6>060102"
    "<COMMENT:4>Z\xFCri<EOR>\n"
    "<CALL:4>NONE<MODE:2>CW<EOR>\n<FREQ:3>9.5<MODE:2>AM";

/// The log with a record in it, opened, in a zone two hours ahead of UTC.
struct LogImports : testing::Test, fakes::LogRig {
  LogImports() {
    write("   7105000|LSB  |  2400|FAST |2026-03-15|08:01:02|VOICE|there|Harrow|\r\n");
    look();
  }
  void import(const std::string& content) {
    const auto file = folder.path() / "theirs.adi";
    writeFileSafely(file, content);
    log->importFile(file);
    settle();
  }
  /// A column of the preview, a row each.
  std::vector<std::string> preview(int column) {
    std::vector<std::string> cells;
    for (GridRow row = 0; row < log->import()->rows(); ++row)
      cells.push_back(log->import()->cell(row, column));
    return cells;
  }
};

TEST_F(LogImports, AdifIsShownLineByLineWithItsReasonsAndLocalTimes) {
  import(kAdif);
  ASSERT_TRUE(log->import());
  EXPECT_THAT(preview(0), ElementsAre("3", "4", "5", "6"));
  EXPECT_THAT(preview(1), ElementsAre("Add", "Leave out", "Leave out", "Leave out"));
  EXPECT_THAT(preview(2), ElementsAre("14074000", "7105000", "", ""));
  EXPECT_THAT(preview(3), ElementsAre("FT8", "LSB", "", ""));
  EXPECT_EQ(preview(4)[0] + " " + preview(5)[0], "2026-03-15 01:30:00");
  EXPECT_THAT(preview(6), ElementsAre("G3ABC", "Example Z\xC3\xBCri", "", ""));
  EXPECT_THAT(preview(8), ElementsAre("", HasSubstr("already"), HasSubstr("no frequency"),
                                      HasSubstr("ends within")));
  EXPECT_THAT(log->import()->words(), HasSubstr("no column for GRIDSQUARE."));
  EXPECT_EQ(records(), 1u) << "nothing is taken in unasked";
}

TEST_F(LogImports, OneUndoTakesItAllBackAlsoWhenTheLogIsSorted) {
  import(kAdif);
  log->takeIn();
  settle();
  EXPECT_EQ(records(), 2u);
  EXPECT_FALSE(log->import());
  sort(LogFrequency);
  key('Z', key::CtrlHeld);
  settle();
  EXPECT_EQ(column(LogFrequency), "7105000");
  import(kAdif);
  log->takeIn();
  ok();
  EXPECT_THAT(file(), HasSubstr("14074000|FT8"));
  EXPECT_THAT(file(), HasSubstr("there|Harrow"));
}

TEST_F(LogImports, SeveralStationsOfOneMinuteAreSeveralReports) {
  const auto report = [](const std::string& comment) {
    return "<FREQ:5>7.105<MODE:3>SSB<QSO_DATE:8>20260315<TIME_ON:4>0601<COMMENT:" +
           std::to_string(comment.size()) + ">" + comment + "<EOR>\n";
  };
  import("<EOH>\n" + report("other") + report("there") + report("other") + report("third"));
  ASSERT_TRUE(log->import());
  EXPECT_THAT(preview(1), ElementsAre("Add", "Leave out", "Leave out", "Add"));
  EXPECT_THAT(preview(8), ElementsAre(HasSubstr("sideband"), "it is in the log already",
                                      "it stands in the file twice", HasSubstr("sideband")));
}

TEST_F(LogImports, OurOwnExportsComeBackAsTheyWere) {
  write(
      "   9420000|AM   |  6000|SLOW |2026-03-13|23:59:59|Unknown|a \"b\", c; d||\r\n"
      "     16400|CW   |   250|FAST |2026-03-14|00:00:01|FSK|G3ABC heard|Quill|\r\n");
  LogRejects rejects;
  const LogTable own(fakes::LogRig::file(), rejects);
  for (const std::string& text :
       {adifOf(own, calendar).content, csvOf(own, calendar).content, fakes::LogRig::file()}) {
    const LogReading read = readForeignLog(text, calendar, LogTimes::Utc);
    ASSERT_EQ(read.taken.size(), 2u) << text << read.refusal;
    EXPECT_THAT(read.unused, ElementsAre());
    for (std::size_t i = 0; i < 2; ++i)
      for (int field = 0; field < kLogFields; ++field)
        EXPECT_EQ(read.taken[i].record[field], own.text(static_cast<GridRow>(i), field)) << text;
    EXPECT_EQ(planLogImport(read, own).adds, 0u);
  }
}

TEST_F(LogImports, TablesOfOtherProgramsAreReadByTheirHeadings) {
  import("Date;Time;kHz;Station;SINPO\n13/02/2026;2345;9420,5;Greece;44444\n01/02/2026;0100;x;;\n");
  ASSERT_TRUE(log->import());
  EXPECT_FALSE(log->import()->reading().timesAreKnown);
  EXPECT_EQ(preview(4)[0] + " " + preview(5)[0], "2026-02-14 01:45:00");
  EXPECT_EQ(preview(6)[0], "Greece");
  EXPECT_THAT(log->import()->words(), HasSubstr("no column for SINPO"));
  log->importTimes(LogTimes::Local);
  settle();
  EXPECT_EQ(preview(4)[0] + " " + preview(5)[0], "2026-02-13 23:45:00");
  EXPECT_EQ(preview(8)[1], "the frequency cannot be read");
}

TEST_F(LogImports, AStationLogIsReadLineByLineWhateverEndsItsLines) {
  const std::string front = "7105000|LSB|2400|F|d|t|VOICE|", back = "|Harrow|";
  for (const std::string& end : {std::string("\r"), std::string("\n"), std::string("\r\n")}) {
    // The ends come to lie at every place of the bytes that are looked at in one step.
    for (std::size_t length = 0; length < 70; ++length) {
      const std::string text =
          front + std::string(length, 'x') + back + end + "no record" + end + front + back + end;
      const LogReading read = readForeignLog(text, calendar, LogTimes::Utc);
      ASSERT_EQ(read.taken.size(), 2u) << length;
      ASSERT_EQ(read.leftOut.size(), 1u) << length;
      EXPECT_EQ(read.taken[0].record[LogComments].size(), length);
      EXPECT_EQ(read.leftOut[0].place, 2u) << length;
      EXPECT_EQ(read.taken[1].place, 3u) << length;
    }
  }
}

TEST_F(LogImports, WhatIsNoLogIsRefusedWithTheReason) {
  for (const std::string& nothing : {std::string(), std::string("a\0b", 3), std::string("hello\n"),
                                     std::string("<EOH>"), std::string("Freq,Date\n,\n")}) {
    import(nothing);
    ASSERT_TRUE(log->import()) << nothing;
    EXPECT_FALSE(log->import()->ready());
    EXPECT_THAT(log->import()->words(), HasSubstr("Nothing can be taken in.")) << nothing;
  }
}

}  // namespace
}  // namespace kelvane
