#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <span>

#include "base/encoding.h"
#include "components/ambrel/formats/list_format.h"
#include "components/ambrel/lists/own_file.h"
#include "contract/modes.h"

namespace kelvane::formats {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

constexpr Setting kAm = static_cast<Setting>(Mode::Am), kUsb = static_cast<Setting>(Mode::Usb);

/// As different as the operator's entries are, with each format's own separators in them.
lists::Entries unlikeEntries() {
  Entry full{9420000,
             "Voice of Greece; \"Athens\", ERT",
             kAm,
             6000,
             "Broad; cast",
             "greek, music",
             360,
             500,
             "Mo-Fr",
             true,
             false,
             "Line one\nand <two> & [three]",
             {{"My own", "a;b,c\"d"}}};
  Entry bare{16400, "16.4"};
  Entry night{7850000, "CHU ", kUsb, 2400, "Time", "", 1380, 60, "Sa,Su", false, true, "", {}};
  night.name = "CHU";
  Entry twice = bare;
  twice.frequency = 2147483647;
  twice.mode = static_cast<Setting>(Mode::Rttyr);
  lists::Entries all;
  for (const Entry& each : {bare, full, night, twice}) all.push_back(std::make_shared<Entry>(each));
  return all;
}

lists::Entries entriesOf(const Reading& reading) {
  lists::Entries all;
  for (const Taken& taken : reading.taken) all.push_back(std::make_shared<Entry>(taken.entry));
  return all;
}

class EachFormat : public testing::TestWithParam<int> {};

// What a format holds after one way out and in it holds for ever, and what it cannot was said.
TEST_P(EachFormat, RoundTripKeepsWhatTheFormatHolds) {
  const auto format = static_cast<Format>(GetParam());
  const lists::Entries own = unlikeEntries();
  const Writing written = writeList(own, format);
  const Reading read = readList(written.text);
  ASSERT_EQ(read.refusal, "") << written.text;
  EXPECT_EQ(read.format, format) << written.text;
  EXPECT_THAT(read.leftOut, IsEmpty());
  const lists::Entries once = entriesOf(read);
  ASSERT_EQ(once.size(), own.size()) << written.text;
  const Writing again = writeList(once, format);
  const lists::Entries twice = entriesOf(readList(again.text));
  ASSERT_EQ(twice.size(), once.size());
  bool same = true;
  for (std::size_t i = 0; i < once.size(); ++i) EXPECT_EQ(*once[i], *twice[i]) << again.text;
  for (const auto& entry : own)
    same = same && std::ranges::any_of(once, [&](const auto& each) { return *each == *entry; });
  EXPECT_NE(same, !written.losses.empty())
      << "what is lost is said, and nothing else: " << written.text;
  for (const Taken& taken : read.taken) EXPECT_EQ(taken.remark, "");
}

/// Stations of which each is unlike a bare one in a single thing.
lists::Entries singleDifferences() {
  lists::Entries all;
  const auto add = [&all](auto change) {
    Entry entry{7000000, "Name"};
    change(entry);
    all.push_back(std::make_shared<Entry>(std::move(entry)));
  };
  for (Setting mode = -1; mode < static_cast<Setting>(lists::modeTexts().size()); ++mode)
    add([mode](Entry& entry) { entry.mode = mode; });
  for (const Setting width : {50, 2401, 200000})
    add([width](Entry& entry) { entry.width = width; });
  for (const char* name : {"", "a;b", "a,b", "a\"b", "a\\b", "<&>", "#x", "a|b", "{[", "5%20"})
    add([name](Entry& entry) { entry.name = lists::oneLine(name); });
  for (const char* group : {"Group", "Bcast", "Type 20", "a,b", "a;b", "a [b", "Untagged"})
    add([group](Entry& entry) { entry.group = group; });
  for (const char* note : {"text", "two\nlines", "ends [so]", "ends [W=1]", "quote \" in it"})
    add([note](Entry& entry) { entry.note = note; });
  for (const char* days : {"Mo-Fr", "Sa,Su", "1.Sa"})
    add([days](Entry& entry) { entry.days = days; });
  add([](Entry& entry) { entry.tags = "one, two"; });
  add([](Entry& entry) { entry.from = 1380, entry.to = 60; });
  add([](Entry& entry) { entry.favourite = true; });
  add([](Entry& entry) { entry.skip = true; });
  add([](Entry& entry) { entry.further = {{"My note", "a;b,c\"d"}, {"Site", "x=y"}}; });
  add([](Entry& entry) { entry.note = std::string(40, 'x').replace(1, 30, 30, '\n'); });
  return all;
}

// Each thing alone comes back as it was, or its loss was said.
TEST_P(EachFormat, LosesNothingThatIsNotSaid) {
  for (const lists::EntryPtr& entry : singleDifferences()) {
    const Writing written = writeList(lists::Entries{entry}, static_cast<Format>(GetParam()));
    const Reading read = readList(written.text);
    ASSERT_EQ(read.taken.size(), 1u) << read.refusal << written.text;
    EXPECT_EQ(read.taken[0].entry == *entry, written.losses.empty())
        << written.text << (written.losses.empty() ? "nothing" : written.losses[0]) << " was said";
  }
}

/// So many stations, by their frequencies, that several threads write them.
lists::Entries manyEntries() {
  const lists::Entries unlike = unlikeEntries();
  lists::Entries all;
  for (int i = 0; i < 10'000; ++i) {
    Entry entry = *unlike[static_cast<std::size_t>(i) % unlike.size()];
    entry.frequency = 1'000'000 + i;
    entry.name += " " + std::to_string(i);
    all.push_back(std::make_shared<Entry>(std::move(entry)));
  }
  return all;
}

lists::Entries byFrequency(lists::Entries entries) {
  std::ranges::sort(entries, {}, [](const lists::EntryPtr& entry) { return entry->frequency; });
  return entries;
}

TEST_P(EachFormat, ALongListIsWrittenLikeItsPieces) {
  constexpr std::size_t kPieces = 4;  // each by one thread
  const auto format = static_cast<Format>(GetParam());
  const lists::Entries all = manyEntries();
  const std::size_t size = all.size() / kPieces;
  const Writing whole = writeList(all, format);
  const lists::Entries read = byFrequency(entriesOf(readList(whole.text)));
  ASSERT_EQ(read.size(), all.size());
  for (std::size_t at = 0; at < all.size(); at += size) {
    const Writing piece = writeList(std::span(all).subspan(at, size), format);
    const lists::Entries same = byFrequency(entriesOf(readList(piece.text)));
    ASSERT_EQ(same.size(), size);
    for (std::size_t i = 0; i < size; ++i) ASSERT_EQ(*read[at + i], *same[i]) << at + i;
    ASSERT_EQ(piece.losses.size(), whole.losses.size());
    for (std::size_t i = 0; i < whole.losses.size(); ++i) {
      const std::string& loss = piece.losses[i];
      EXPECT_EQ(whole.losses[i],
                std::to_string(kPieces * std::stoul(loss)) + loss.substr(loss.find(' ')));
    }
  }
}

// Cut anywhere, a file gives whole entries, lines left out with their numbers, or a refusal.
TEST_P(EachFormat, CutFilesAreReadWholeOrRefused) {
  const std::string text = writeList(unlikeEntries(), static_cast<Format>(GetParam())).text;
  for (std::size_t length = 0; length < text.size(); length += 3) {
    const Reading read = readList(text.substr(0, length));
    EXPECT_TRUE(!read.refusal.empty() || !read.taken.empty()) << length;
    for (const LeftOut& left : read.leftOut) EXPECT_GT(left.place, 0u);
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, EachFormat, testing::Range(0, static_cast<int>(Format::Count)));

TEST(ListFormats, EncodingsOfTheWorldAreRead) {
  const std::string utf8 = "kHz,Name\n6070,Z\xC3\xBCrich\n";
  std::string low, high;
  for (const char c : std::string("kHz,Name\r\n6070,Z\xFCrich\r\n")) {
    (low += c) += '\0';
    (high += '\0') += c;
  }
  for (const std::string& bytes :
       {utf8, std::string(kUtf8Mark) + utf8, std::string("kHz,Name\r6070,Z\xFCrich\r"),
        "\xFF\xFE" + low, "\xFE\xFF" + high, low}) {
    const Reading read = readList(bytes);
    ASSERT_EQ(read.taken.size(), 1u) << read.refusal;
    EXPECT_EQ(read.taken[0].entry.name, "Z\xC3\xBCrich");
    EXPECT_EQ(read.taken[0].entry.frequency, 6070000);
  }
  EXPECT_EQ(readList("kHz,Name\n1,\x80 \x93M\xFCller\x94\n").taken[0].entry.name,
            "\u20AC \u201CM\u00FCller\u201D");
}

TEST(ListFormats, AnyTableIsReadByItsHeadings) {
  const auto read = [](const std::string& text) { return readList(text); };
  // Decimal comma, units in the heading, a column that nobody knows, a bad line, a quoted
  // delimiter.
  const Reading semicolons = read(
      "Station;Freq "
      "(MHz);BW;Remarks;Antenna\n\"A;B\";7,105;2,4k;;Loop\nC;no;;;\n\nD;14.230;2700;x\n");
  ASSERT_EQ(semicolons.taken.size(), 2u) << semicolons.refusal;
  EXPECT_EQ(semicolons.taken[0].entry.name, "A;B");
  EXPECT_EQ(semicolons.taken[0].entry.frequency, 7105000);
  EXPECT_EQ(semicolons.taken[0].entry.width, 2400);
  EXPECT_EQ(semicolons.taken[0].entry.further[0],
            (std::pair<std::string, std::string>("Antenna", "Loop")));
  EXPECT_EQ(semicolons.taken[1].entry.note, "x");
  // Columns without a heading or with the same keep what is in them, in our own file too.
  const Reading nameless = read("kHz,Name,,Site,Site,\n7105,A,x,North,South,y\n");
  ASSERT_EQ(nameless.taken.size(), 1u);
  const lists::Entries entries{std::make_shared<const Entry>(nameless.taken[0].entry)};
  const auto own = lists::readOwnText(writeList(entries, Format::Own).text);
  ASSERT_EQ(own.entries.size(), 1u);
  EXPECT_THAT(
      own.entries[0]->further,
      testing::UnorderedElementsAre(Pair("Column 3", "x"), Pair("Site", "North"),
                                    Pair("Site (column 5)", "South"), Pair("Column 6", "y")));
  ASSERT_EQ(semicolons.leftOut.size(), 1u);
  EXPECT_EQ(semicolons.leftOut[0].place, 3u);
  // Hz, kHz and MHz mixed, tabs, no heading.
  const Reading mixed = read("7.1\tOne\n9420\tTwo\n14230000\tThree\n9,5 MHz\tFour\n");
  ASSERT_EQ(mixed.taken.size(), 4u);
  const Hz expected[] = {7100000, 9420000, 14230000, 9500000};
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(mixed.taken[i].entry.frequency, expected[i]);
  // What was guessed can be said otherwise.
  TableShape shape = mixed.shape;
  shape.unit = lists::Unit::Khz;
  EXPECT_EQ(readTable("7.1\tOne\n", shape).taken[0].entry.frequency, 7100);
  // A heading twice, a frequency that is none.
  const Reading twice = read("Frequency,Name,Name\n100.000.000,x,y\n99999 MHz,z,z\n");
  ASSERT_EQ(twice.taken.size(), 1u);
  EXPECT_EQ(twice.taken[0].entry.name, "x");
  EXPECT_THAT(twice.leftOut[0].reason, HasSubstr("2147 MHz"));
  // A quote that is never closed swallows its own line at most.
  EXPECT_EQ(read("kHz,Name\n1,\"x\n2,y\n3,z\n").taken.size(), 3u);
}

TEST(ListFormats, OtherProgramsFilesAreUnderstood) {
  const Reading gqrx = readList(
      "# Tag name          ;  color\nUtility             ; #ff0000\n\n"
      "# Frequency ; Name                     ; Modulation          ;  Bandwidth; Tags\n"
      "     8957000; Shannon Volmet           ; USB                 ;       2700; Utility,Volmet\n"
      "     9000000; one ; too ; many ; fields ; here ; and\n");
  ASSERT_EQ(gqrx.taken.size(), 1u);
  EXPECT_EQ(gqrx.taken[0].entry.group + "/" + gqrx.taken[0].entry.tags, "Utility/Volmet");
  EXPECT_EQ(gqrx.leftOut[0].place, 6u);

  const Reading semicolons = readList(
      "\n# Frequency ; Name ; Modulation ; Bandwidth; Tags\n7105000; Net; evening; LSB; 2400; Ham\n"
      "7106000; Net; a; b; Demod Off; 0; Ham; with a note\n7107000; a; b; c; d; e; f; g\n");
  ASSERT_EQ(semicolons.taken.size(), 2u);
  EXPECT_EQ(semicolons.taken[0].entry.name, "Net; evening");
  EXPECT_EQ(semicolons.taken[0].entry.width, 2400);
  EXPECT_EQ(semicolons.taken[1].entry.name, "Net; a; b");
  EXPECT_EQ(semicolons.taken[1].entry.note, "with a note");
  EXPECT_EQ(semicolons.leftOut.front().place, 5u);
  const Reading chirp = readList(
      "Location,Name,Frequency,Mode,Skip,Comment\n"
      "1,ISS,145.800000,NFM,S,\"Space [W=12500 G=\"\"Sat "
      "\\\"\"x\"\"]\"\n2,None,0.000000,FM,,\n3,Cut,7.1\n");
  ASSERT_EQ(chirp.taken.size(), 1u);
  EXPECT_EQ(chirp.taken[0].entry.width, 12500);
  EXPECT_EQ(chirp.taken[0].entry.group, "Sat \"x");
  EXPECT_EQ(chirp.taken[0].entry.note, "Space");
  EXPECT_TRUE(chirp.taken[0].entry.skip);
  EXPECT_EQ(chirp.leftOut.size(), 2u);

  const Reading kiwi = readList(
      "{\"dx\":[[4625,\"USB\",\"The%20Buzzer\",\"odd\\nthings\",{\"T14\":1,\"lo\":300,\"hi\":2700,"
      "\"d0\":124,\"b0\":600,\"e0\":1830}],[60,\"CW\",\"MSF\",\"\"]]}");
  ASSERT_EQ(kiwi.taken.size(), 2u) << kiwi.refusal;
  EXPECT_EQ(kiwi.taken[0].entry.days, "Mo-Fr");
  EXPECT_EQ(kiwi.taken[0].entry.group, "Spy");
  EXPECT_EQ(kiwi.taken[0].entry.name, "The Buzzer");
  EXPECT_EQ(lists::timesText(kiwi.taken[0].entry), "0600-1830");
  EXPECT_EQ(kiwi.taken[1].entry.frequency, 60000);

  const Reading old = readList(
      "{\"lists\":{\"General\":{\"Fax\":{\"frequency\":7880000,\"bandwidth\":3000,\"mode\":9}}}}");
  ASSERT_EQ(old.taken.size(), 1u);
  EXPECT_THAT(old.taken[0].remark, HasSubstr("unknown"));
  EXPECT_EQ(readList("[{\"name\":\"a\",\"frequency\":\"x\"},{\"name\":\"b\",\"frequency\":1e5,"
                     "\"modulation\":\"ft8\"}]")
                .taken[0]
                .entry.mode,
            kUsb);
}

/// The text with what was read of it, as its program reads it again.
std::string sentBack(const std::string& text) {
  const Reading read = readList(text);
  EXPECT_EQ(read.refusal, "");
  return writeList(entriesOf(read), read.format).text;
}

TEST(ListFormats, WhatOnlyTheOtherProgramKnowsGoesBackToIt) {
  EXPECT_THAT(
      sentBack("{\"dx\":[[100,\"AMN\",\"a\",\"\",{\"T20\":1,\"WL\":1,\"p\":\"12\",\"lo\":-90,"
               "\"hi\":210}]]}"),
      AllOf(HasSubstr("\"AMN\""), HasSubstr("\"T20\": 1"), HasSubstr("\"WL\": 1"),
            HasSubstr("\"p\": \"12\""), HasSubstr("\"lo\": -90, \"hi\": 210")));
  // Its columns in another order, and some of them missing.
  EXPECT_THAT(
      sentBack("Freq kHz;\"Ident\";\"Mode\";Type;PB high;PB low\n60;\"MSF\";\"CWN\";T5;700;300\n"),
      HasSubstr("60;\"CWN\";\"MSF\";\"\";\"\";\"T5\";300;700"));
  EXPECT_THAT(sentBack("# Tag name ; color\n\n# Frequency ; Name\n 1;a;WFM (mono);0;\n"),
              HasSubstr("WFM (mono)"));
  EXPECT_THAT(
      sentBack("[{\"name\":\"a\",\"frequency\":7074000,\"modulation\":\"ft8\",\"underlying\":"
               "\"usb\"}]"),
      AllOf(HasSubstr("\"ft8\""), HasSubstr("\"underlying\": \"usb\"")));
  EXPECT_THAT(sentBack("<ArrayOfMemoryEntry><MemoryEntry><Frequency>1</Frequency><DetectorType>RAW"
                       "</DetectorType><Shift>-9</Shift></MemoryEntry></ArrayOfMemoryEntry>"),
              AllOf(HasSubstr(">RAW<"), HasSubstr("<Shift>-9<")));
  // A heading twice moves no column behind it.
  EXPECT_THAT(
      sentBack("Location,Name,Name,Frequency,Duplex,Offset,Tone,Mode,Skip,Antenna\n"
               "5,Relay,x,145.625000,-,0.600000,TSQL,DV,P,Loop\n"),
      HasSubstr("0,Relay,145.625000,-,0.600000,TSQL,88.5,88.5,023,NN,023,Tone->Tone,DV,5.00,"
                "P,50W,\"[X=\"\"Antenna=Loop\"\"]\""));
}

TEST(ListFormats, AreToldByTheirOutermostNamesAndHeadings) {
  EXPECT_EQ(readList("{\"lists\":{\"dx\":{\"bookmarks\":{\"dx\":{\"frequency\":1}}}}}").format,
            Format::SdrPlusPlusSettings);
  EXPECT_EQ(readList("[{\"name\":\"dx\",\"frequency\":1}]").format, Format::OpenWebRx);
  EXPECT_EQ(readList("{\"x\":{\"dx\":1},\"dx\":[[1,\"AM\",\"bookmarks\",\"\"]]}").format,
            Format::KiwiJson);
  EXPECT_EQ(readList("kHz,Name\n7000,\"say # Frequency ; Name\"\n").format, Format::Csv);
  const Reading titled = readList("My list\n\nkHz;Name\n7000;Calling frequency\n");
  ASSERT_EQ(titled.taken.size(), 1u) << titled.refusal;
  EXPECT_EQ(titled.taken[0].entry.name, "Calling frequency");
  EXPECT_THAT(titled.leftOut[0].reason, HasSubstr("before the headings"));
  EXPECT_EQ(readList("7000;Calling frequency\n8000;Other\n").taken.size(), 2u);
  EXPECT_THAT(readList(std::string("PK\3\4\0\0", 6)).refusal, HasSubstr("HFCC"));
}

TEST(ListFormats, WhatIsNestedOrDamagedIsRefusedWithItsLine) {
  const std::string deep(100'000, '[');
  EXPECT_THAT(readList(deep).refusal, HasSubstr("deeper than 64"));
  std::string xml;
  for (int i = 0; i < 100'000; ++i) xml += "<a b=\"/>\">";
  EXPECT_THAT(readList(xml).refusal, HasSubstr("deeper than 64"));
  // Quotes in names and ends that are none hide nothing.
  std::string hidden = "<?> <!-- ?>";
  for (int i = 0; i < 100'000; ++i) hidden += "<a\"='>";
  EXPECT_THAT(readList(hidden).refusal, HasSubstr("deeper than 64"));
  EXPECT_THAT(readList("<a>\n<b c='>").refusal, HasSubstr("line 2"));
  EXPECT_THAT(readList("<!DOCTYPE a [<!ENTITY b \"c\">]><a/>").refusal, HasSubstr("declarations"));
  EXPECT_THAT(readList("{\"bookmarks\":{\n\"a\":{\"frequency\":1,\n").refusal, HasSubstr("line 3"));
  EXPECT_THAT(readList("<ArrayOfMemoryEntry>\n<MemoryEntry></Wrong>").refusal, HasSubstr("line 2"));
  const Reading cut = readList("kHz,Name,Note\n7000,\"A\",x\n7001,\"B\",\"begun");
  EXPECT_EQ(cut.taken.size(), 1u);
  ASSERT_EQ(cut.leftOut.size(), 1u);
  EXPECT_THAT(cut.leftOut.front().reason, HasSubstr("cut off"));
  EXPECT_EQ(readList(" \n").refusal, "The file is empty.");
  EXPECT_THAT(readList("no list at all\nof any kind\n").refusal, HasSubstr("frequency"));
}

}  // namespace
}  // namespace kelvane::formats
