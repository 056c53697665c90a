#include "station_log/log_table.h"

#include <gtest/gtest.h>

#include "station_log/log_line.h"

namespace kelvane {
namespace {

constexpr const char* kFirstRecord =
    "   7050000|USB  |  2400|FAST |2026-03-14|08:00:00|VOICE|net, strong|Harrow|";
constexpr const char* kSecondRecord =
    "    648000|AM   |  6000|SLOW |2026-03-13|23:59:59|Unknown||Quill|";
constexpr const char* kThird = "10000000000|DIGITAL|500|A|2026-03-14|07:59:59|PSK|time|Harrow|";

LogTable read(const std::string& text, LogRejects* rejects = nullptr) {
  LogRejects own;
  return LogTable(text, rejects ? *rejects : own);
}

std::string lines(std::initializer_list<const char*> all) {
  std::string text;
  for (const char* line : all) text.append(line).append("\r\n");
  return text;
}

std::string column(const LogTable& log, int field) {
  std::string text;
  for (GridRow row = 0; row < log.size(); ++row)
    text.append(row ? "," : "").append(log.field(log.recordAt(row), field));
  return text;
}

TEST(LogTable, WritesBackWhatItReadByteForByte) {
  const std::string file = lines({kFirstRecord, kSecondRecord}) +
                           "10000000000|DIGITAL|   500|A    |d|t|PSK|time|Harrow|\r\n";
  const LogTable log = read(file);
  EXPECT_EQ(log.size(), 3u);
  EXPECT_EQ(log.field(0, LogFrequency), "7050000");
  EXPECT_EQ(log.field(1, LogComments), "");
  EXPECT_EQ(log.field(2, LogReceiver), "Harrow");
  EXPECT_EQ(log.content(), file);
}

TEST(LogTable, ReadsLinesOfOtherWritersAndBringsThemIntoTheFixedForm) {
  for (const char* end : {"\n", "\r", "\r\n", "\n\n \r\n"}) {
    const LogTable log =
        read(std::string("7050000 | USB|+2400|FAST\t| a | b |VOICE|c||") + end + kSecondRecord);
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log.content(),
              "   7050000|USB  | +2400|FAST |a|b|VOICE|c||\r\n" + lines({kSecondRecord}));
  }
  EXPECT_EQ(read("0.5|USB|1|F|d|t|T|c|without a last separator").size(), 1u);
  EXPECT_EQ(read("7050000|USB||F|d|t|T|c|a filter that was not known|").size(), 1u);
  EXPECT_EQ(read("").content(), "");
}

TEST(LogTable, KeepsAsideWhatIsNoRecordAndWhatARecordCannotHold) {
  const auto none = {"0|USB|2400|F|d|t|T|c|r|",
                     "7050000|USB|0|F|d|t|T|c|r|",
                     "-7|USB|2400|F|d|t|T|c|r|",
                     "Frequency|Mode|2400|F|d|t|T|c|r|",
                     "7050000|USB|2400|F|d|t|T|c",
                     "7050000|USB|2400",
                     "\x01\xFE\x7F",
                     "."};
  LogRejects rejects;
  EXPECT_EQ(read(lines(none), &rejects).size(), 0u);
  EXPECT_EQ(rejects.lines, lines(none));
  EXPECT_EQ(rejects.count, none.size());

  const char* bar = "7050000|USB|2400|F|d|t|T|one|two|r|";
  rejects = {};
  const LogTable log = read(lines({bar}), &rejects);
  ASSERT_EQ(log.size(), 1u);
  EXPECT_EQ(log.field(0, LogComments), "one");
  EXPECT_EQ(log.field(0, LogReceiver), "two");
  EXPECT_EQ(rejects.lines, lines({bar})) << "the tenth field would be lost";
  const std::string ten = std::string(kSecondRecord) + "10|";
  EXPECT_EQ(read(lines({kFirstRecord, ten.c_str()})).content(),
            lines({kFirstRecord, kSecondRecord}));
}

TEST(LogTable, SortsByTheKindOfTheColumnAndMovesNoRecord) {
  LogTable log = read(lines({kFirstRecord, kSecondRecord, kThird}));
  log.setOrder(log.sorted(LogFrequency));
  EXPECT_EQ(column(log, LogFrequency), "648000,7050000,10000000000");
  log.setOrder(log.sorted(LogFilter));
  EXPECT_EQ(column(log, LogFilter), "500,2400,6000");
  log.setOrder(log.sorted(LogDate));
  EXPECT_EQ(column(log, LogTime), "23:59:59,07:59:59,08:00:00") << "the day's order by its times";
  log.setOrder(log.sorted(LogTime));
  EXPECT_EQ(column(log, LogTime), "07:59:59,08:00:00,23:59:59");
  log.setOrder(log.sorted(LogMode));
  EXPECT_EQ(column(log, LogMode), "AM,DIGITAL,USB");
  EXPECT_EQ(log.field(0, LogMode), "USB") << "records keep their numbers";
  EXPECT_EQ(column(read(log.content()), LogMode), "AM,DIGITAL,USB");
}

TEST(LogTable, ChangesAddsAndRemovesRecords) {
  LogTable log = read(lines({kFirstRecord, kSecondRecord, kThird}));
  log.setOrder(log.sorted(LogFrequency));
  EXPECT_EQ(log.append({"14", "USB", "9", "", "d", "t", "Unknown", "", "Quill"}), 3u);
  log.set(0, LogComments, " a|b\r\nc\t");
  EXPECT_EQ(column(log, LogComments), ",a/b  c,time,");
  EXPECT_EQ(log.field(0, LogFrequency), "7050000");
  const LogTable::Removed removed = log.remove(0);
  EXPECT_EQ(removed.record, 1u);
  EXPECT_EQ(column(log, LogFrequency), "7050000,10000000000,14");
  EXPECT_EQ(log.recordAt(2), 2u) << "later records move up";
  log.restore(removed);
  EXPECT_EQ(column(log, LogFrequency), "648000,7050000,10000000000,14");
  EXPECT_EQ(log.recordAt(3), 3u);
  EXPECT_EQ(log.content(), lines({kSecondRecord}) +
                               "   7050000|USB  |  2400|FAST |2026-03-14|08:00:00|VOICE|a/b  c|"
                               "Harrow|\r\n" +
                               "10000000000|DIGITAL|   500|A    |2026-03-14|07:59:59|PSK|time|"
                               "Harrow|\r\n" +
                               "        14|USB  |     9|     |d|t|Unknown||Quill|\r\n");
}

TEST(LogTable, HoldsFieldsOfAnyLengthAndByte) {
  const std::string longText(10'000, 'x');
  std::string bytes;
  for (int byte = 1; byte < 256; ++byte) bytes += static_cast<char>(byte);
  LogTable log = read(lines({kFirstRecord}));
  log.set(0, LogType, longText);
  log.set(0, LogComments, std::string("<\0>", 3) + bytes + "<");
  const LogTable again = read(log.content());
  ASSERT_EQ(again.size(), 1u);
  EXPECT_EQ(again.field(0, LogType), longText);
  EXPECT_EQ(again.field(0, LogComments), log.field(0, LogComments));
  EXPECT_EQ(again.field(0, LogReceiver), "Harrow");
}

}  // namespace
}  // namespace kelvane
