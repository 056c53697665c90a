#include "station_log/log_export.h"

#include <gtest/gtest.h>

#include "contract/modes.h"
#include "tests/fakes/fixed_calendar.h"

namespace kelvane {
namespace {

LogTable logOf(std::initializer_list<LogRecord> records) {
  LogTable log;
  for (const LogRecord& record : records) log.append(record);
  return log;
}

const LogRecord kHeard{"7074123",    "USB",      "2400",  "FAST",
                       "2026-03-15", "01:30:00", "VOICE", "CQ from PA0XYZ, 59",
                       "Harrow"};

TEST(LogExport, AdifTellsWhatWasHeardAndWhenInUtc) {
  LogTable log = logOf({kHeard});
  const LogExport adif = adifOf(log, fakes::FixedCalendar());
  EXPECT_EQ(adif.undated, 0u);
  EXPECT_EQ(adif.content,
            "Reports of a listener\r\n<ADIF_VER:5>3.1.4 <PROGRAMID:7>Kelvane <EOH>\r\n"
            "<QSO_DATE:8>20260314 <TIME_ON:6>233000 <CALL:6>PA0XYZ <FREQ:8>7.074123 "
            "<MODE:3>SSB <SUBMODE:3>USB <SWL:1>Y <COMMENT:18>CQ from PA0XYZ, 59 "
            "<APP_KELVANE_MODE:3>USB <APP_KELVANE_FILTER:4>2400 <APP_KELVANE_AGC:4>FAST "
            "<APP_KELVANE_TYPE:5>VOICE <APP_KELVANE_RECEIVER:6>Harrow "
            "<APP_KELVANE_DATE:10>2026-03-15 <APP_KELVANE_TIME:8>01:30:00 <EOR>\r\n");
}

TEST(LogExport, AdifLeavesOutWhatIsNotKnownAndCountsBytesOfAscii) {
  LogTable log =
      logOf({{"648000", "DRM", "9000", "", "15/03/2026", "6 PM", "", "f\xFCr <EOR>", ""}});
  const LogExport adif = adifOf(log, fakes::FixedCalendar());
  EXPECT_EQ(adif.undated, 1u);
  EXPECT_EQ(adif.uncalled, 1u);
  const std::string record = adif.content.substr(adif.content.find("<EOH>") + 7);
  EXPECT_EQ(
      record,
      "<FREQ:5>0.648 <MODE:12>DIGITALVOICE <SWL:1>Y <COMMENT:9>fur <EOR> <APP_KELVANE_MODE:3>DRM "
      "<APP_KELVANE_FILTER:4>9000 <APP_KELVANE_DATE:10>15/03/2026 "
      "<APP_KELVANE_TIME:4>6 PM <EOR>\r\n");
}

TEST(LogExport, AdifTakesOnlyCallSignsForStations) {
  const auto callIn = [](const std::string& comment, const std::string& station = "") {
    LogRecord record = kHeard;
    record[LogComments] = comment;
    const std::string content =
        adifOf(logOf({record}), fakes::FixedCalendar(), {{7'074'123, station}}).content;
    const auto at = content.find("<CALL:");
    if (at == std::string::npos) return std::string();
    const auto start = content.find('>', at) + 1;
    return content.substr(start, content.find(' ', start) - start);
  };
  for (const char* call : {"PA0XYZ", "K1A", "9A1AA", "EA8ABCD", "M0X"})
    EXPECT_EQ(callIn(call), call);
  EXPECT_EQ(callIn("first K1ABC: then W9XYZ"), "K1ABC");
  EXPECT_EQ(callIn("weather of DDH47."), "DDH47");
  EXPECT_EQ(callIn("net, strong", "WWV"), "WWV") << "the known station, where the comment has none";
  EXPECT_EQ(callIn("PA0XYZ on it", "WWV"), "PA0XYZ");
  for (const char* station : {"BBC Radio 4", "WSPR", "PSK31", "HFDL", "Russian Volmet"})
    EXPECT_EQ(callIn("", station), "") << station;
  for (const char* word : {"RADIO", "S9", "59", "3RD", "6MHZ", "Q5", "49m", "A", "", "k1abc", "K1",
                           "ABCD1EF", "K1ABCDE"})
    EXPECT_EQ(callIn(word), "") << word;
}

TEST(LogExport, EveryModeOfAReceiverHasOneOfTheFormat) {
  for (const std::string_view mode : kModeNames) {
    LogRecord record = kHeard;
    record[LogMode] = mode;
    const std::string content = adifOf(logOf({record}), fakes::FixedCalendar()).content;
    EXPECT_NE(content.find(" <MODE:"), std::string::npos) << mode;
  }
}

/// Summer time begins on the 29th at 2.
struct SummerCalendar : fakes::FixedCalendar {
  DateTime utc(const DateTime& local) const override {
    DateTime result = local;
    const bool summer = local.day > 29 || (local.day == 29 && local.hour >= 3);
    result.hour -= summer ? 2 : 1;
    if (result.hour < 0) {
      result.hour += 24;
      --result.day;
    }
    return result;
  }
};

TEST(LogExport, UtcIsRightOnTheDayOnWhichSummerTimeBegins) {
  std::string moments;
  for (const char* time :
       {"28 23:30:00", "29 00:30:00", "29 01:59:59", "29 03:00:00", "30 00:30:00"}) {
    LogRecord record = kHeard;
    record[LogDate] = std::string("2026-03-") + std::string(time).substr(0, 2);
    record[LogTime] = std::string(time).substr(3);
    const std::string csv = csvOf(logOf({record}), SummerCalendar()).content;
    moments += csv.substr(csv.rfind(',') + 9, 9) + " ";
  }
  EXPECT_EQ(moments, "28T22:30: 28T23:30: 29T00:59: 29T01:00: 29T22:30: ");
}

TEST(LogExport, CsvQuotesInTheOrderOfTheRows) {
  LogRecord other = kHeard;
  other[LogFrequency] = "648000";
  other[LogDate] = "yesterday";
  other[LogComments] = "\"Rad\xEDo\"; one, two";
  LogTable log = logOf({kHeard, other});
  log.setOrder(log.sorted(LogFrequency));
  const LogExport csv = csvOf(log, fakes::FixedCalendar());
  EXPECT_EQ(csv.undated, 1u);
  EXPECT_EQ(csv.content,
            "\xEF\xBB\xBF"
            "Frequency,Mode,Filter,AGC,Date,Time,Type,Comments,Receiver,UTC\r\n"
            "648000,USB,2400,FAST,yesterday,01:30:00,VOICE,\"\"\"Rad\xC3\xADo\"\"; one, two\","
            "Harrow,\r\n"
            "7074123,USB,2400,FAST,2026-03-15,01:30:00,VOICE,\"CQ from PA0XYZ, 59\",Harrow,"
            "2026-03-14T23:30:00Z\r\n");
}

TEST(LogExport, KnowsOnlyTheFixedFormOfAMoment) {
  EXPECT_EQ(recordedAt("2024-02-29", "23:59"), (DateTime{2024, 2, 29, 23, 59, 0}));
  EXPECT_EQ(recordedAt("2024-02-29", "23:59:07"), (DateTime{2024, 2, 29, 23, 59, 7}));
  for (const char* date : {"2023-02-29", "2024-13-01", "2024-00-01", "24-01-01", "2024-1-01",
                           "2024-01-01-01", "01/02/2024", "2024-01", "+024-01-01", ""})
    EXPECT_EQ(recordedAt(date, "12:00:00"), std::nullopt) << date;
  for (const char* time : {"24:00:00", "12:60:00", "12:00:60", "12", "1:00:00", "12:00:00 PM", ""})
    EXPECT_EQ(recordedAt("2024-01-01", time), std::nullopt) << time;
}

}  // namespace
}  // namespace kelvane
