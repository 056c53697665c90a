// What a window that adds a radio stands on: lists, words, command lines, the search for rigctld.
#include <gtest/gtest.h>

#include <fstream>

#include "components/sondrel/radios/radio_choice.h"
#include "components/sondrel/radios/radio_desk.h"
#include "components/sondrel/radios/radio_faults.h"
#include "components/sondrel/radios/radio_setup.h"
#include "components/sondrel/radios/server_program.h"
#include "tests/fakes/temp_folder.h"

namespace kelvane::sondrel {
namespace {

namespace fs = std::filesystem;

constexpr const char* kList =
    " Rig #  Mfg                    Model                   Version         Status      Macro\r\n"
    "     1  Hamlib                 Dummy                   20240709.0      Stable      RIG_1\r\n"
    "  3085  Icom                   IC-705                  20240902.8      Stable      RIG_2\r\n"
    "  3073  Icom                   IC-7300                 20250517.14     Stable      RIG_3\r\n"
    " 23003  DTTS Microwave Society DttSP IPC               20200319.0      Alpha       RIG_4\r\n"
    " 24001  Rohde&Schwarz          A name longer than its column 20200319.0      Beta  RIG_5\r\n"
    "rubbish behind it\r\n";

std::vector<std::string> namesFound(const ModelList& list, std::string_view maker,
                                    std::string_view typed) {
  std::vector<std::string> names;
  for (const auto place : list.search.find(maker, typed)) names.push_back(list.models[place].name);
  return names;
}

TEST(RadioModels, AreReadByTheListsHeadingAndFoundByAnyPart) {
  EXPECT_FALSE(readModels("usage: something else\n 1 Icom IC-7300"));
  auto models = readModels(std::string("a warning first\n") + kList);
  ASSERT_TRUE(models);
  ASSERT_EQ(models->size(), 5u);
  const ModelList list(std::move(*models));
  EXPECT_EQ(list.search.makers(), (std::vector<std::string>{"DTTS Microwave Society", "Hamlib",
                                                            "Icom", "Rohde&Schwarz"}));
  using Found = std::vector<std::string>;
  EXPECT_EQ(namesFound(list, "", "7300 icom"), Found{"IC-7300"});
  EXPECT_EQ(namesFound(list, "", "ic7"), (Found{"IC-705", "IC-7300"}));
  EXPECT_EQ(namesFound(list, "Hamlib", ""), Found{"Dummy"});
  EXPECT_EQ(namesFound(list, "Hamlib", "ic7"), Found{});
  EXPECT_EQ(namesFound(list, "", "longer"), Found{"A name longer than its column"});
  const auto place = list.search.find("", "ic 7300").front();
  EXPECT_EQ(list.models[place].number, 3073);
  EXPECT_EQ(list.models[place].status, "Stable");
}

TEST(RadioModels, TellTheirLineAndAddress) {
  const auto icom = readModelFacts(
      "Port type:\tRS-232\nSerial speed: 4800..19200 bauds, 8N1 \nWrite delay: 0mS",
      "civaddr: \"Transceiver's CI-V address\"\n\tDefault: 0, Value: 148\n\tRange: 0..255");
  EXPECT_EQ(icom.connection, ModelFacts::Connection::Serial);
  EXPECT_EQ(speedsOf(icom), (std::vector<std::int32_t>{19200, 9600, 4800}));
  EXPECT_EQ(icom.civ, 148);
  EXPECT_FALSE(icom.handshake);
  const auto kenwood = readModelFacts(
      "Port type:\tRS-232\r\nSerial speed: 4800..115200 baud, 8N1, ctrl=CTS/RTS\r\n", "");
  EXPECT_TRUE(kenwood.handshake);
  EXPECT_EQ(kenwood.civ, -1);
  EXPECT_EQ(readModelFacts("Port type:\tNetwork link\n", "").connection,
            ModelFacts::Connection::Network);
  EXPECT_EQ(speedsOf(readModelFacts("nothing", "")).size(), 9u) << "all where none is told";
}

/// The words that a started Windows program reads off its line, by the system's rules.
std::vector<std::string> wordsRead(const std::string& line) {
  std::vector<std::string> words;
  bool quoted = false, inWord = false;
  for (std::size_t i = 0; i < line.size();) {
    std::size_t slashes = 0;
    while (i + slashes < line.size() && line[i + slashes] == '\\') ++slashes;
    const bool beforeQuote = i + slashes < line.size() && line[i + slashes] == '"';
    if (!inWord && (slashes > 0 || line[i] != ' ')) words.emplace_back();
    inWord = inWord || slashes > 0 || line[i] != ' ';
    if (slashes > 0) words.back().append(beforeQuote ? slashes / 2 : slashes, '\\');
    i += slashes;
    if (i >= line.size()) break;
    if (beforeQuote && slashes % 2 == 1) {
      words.back() += line[i++];
    } else if (line[i] == '"') {
      quoted = !quoted;
      ++i;
    } else if (line[i] == ' ' && !quoted) {
      inWord = false;
      ++i;
    } else if (slashes == 0) {
      words.back() += line[i++];
    }
  }
  return words;
}

TEST(RadioSetup, ComposesALineThatTheServerReadsAsItWasMeant) {
  for (const std::string word : {"COM5", "a b", "", "\\\\.\\COM12", "ends with \\", "a\"b", "\\\""})
    EXPECT_EQ(wordsRead("x " + quotedWord(word)), (std::vector<std::string>{"x", word}));
  RadioSetup setup{3073, "COM 5", 19200, "94h", "-v -C retry=1", {}};
  const std::string program = "C:\\Program Files\\hamlib\\rigctld.exe";
  EXPECT_EQ(
      wordsRead(serverCommand(setup, program, 50123)),
      (std::vector<std::string>{program, "-m", "3073", "-r", "COM 5", "-s", "19200", "-c", "148",
                                "-T", "127.0.0.1", "-t", "50123", "-C",
                                "ptt_type=None,serial_handshake=None,rts_state=OFF,dtr_state=OFF",
                                "-v", "-C", "retry=1"}));
  setup.options = "-C serial_handshake=Hardware";
  const std::string own = serverCommand(setup, program, 1);
  EXPECT_EQ(own.find("rts_state"), own.npos) << "a line that stands for the handshake: " << own;
  EXPECT_NE(own.find("dtr_state=OFF"), own.npos);
  setup.device = "192.168.1.7:4532";
  EXPECT_EQ(serverCommand(setup, program, 1).find(" -s "), own.npos) << "no speed in a network";
  EXPECT_TRUE(sameDevice("com5", " \\\\.\\COM5"));
  EXPECT_EQ(civAddress("0x94"), 0x94);
  EXPECT_EQ(civAddress("94"), -1) << "it may be meant either way";
}

TEST(RadioChoice, SaysWhatIsWrongBeforeAnythingIsTried) {
  const std::vector<SerialPort> ports = {{"COM5", "USB Serial (COM5)"}};
  ReceiverEntry attic;
  attic.kind = "radio";
  attic.name = "Attic";
  attic.set("Device", "\\\\.\\com5");
  RadioModel model;
  model.number = 3073;
  model.name = "IC-7300";
  TypedRadio typed;
  typed.facts.civ = 0x94;
  typed.facts.handshake = true;
  const auto problem = [&](const std::vector<ReceiverEntry>& receivers = {}) {
    return chosenRadio(typed, ports, receivers).reason();
  };
  EXPECT_EQ(problem(), "Choose the radio in the list.");
  typed.model = &model;
  EXPECT_EQ(problem(), "Choose the port that the radio is at.");
  typed.device = std::string(300, 'C');
  EXPECT_EQ(problem(), "The port is longer than 200 characters.");
  for (const std::string_view same : {"COM5: USB Serial", "usb serial (com5)", " com5 "}) {
    typed.device = same;
    EXPECT_EQ(problem({attic}), "COM5 is the port of Attic already.") << same;
  }
  typed.speed = "fast";
  EXPECT_EQ(problem(), "The speed is no number of baud.");
  typed.speed = "9600";
  typed.civ = "94";
  EXPECT_EQ(problem(), "The address must be written as the radio shows it, like 94h.");
  typed.civ = "A2h";
  typed.handshake = true;
  const ReceiverEntry made = *chosenRadio(typed, ports, {});
  EXPECT_EQ(made.name, "IC-7300");
  EXPECT_EQ(made.setting("Model"), "3073");
  EXPECT_EQ(made.setting("Device"), "COM5");
  EXPECT_EQ(made.setting("Speed"), "9600");
  EXPECT_EQ(made.setting("Civ"), "A2h");
  EXPECT_EQ(made.setting("Options"), "-C serial_handshake=Hardware");
  typed.device = "192.168.1.7:4992";
  EXPECT_EQ(problem({attic}), "");
  EXPECT_EQ(chosenRadio(typed, ports, {attic})->setting("Speed"), "") << "none in a network";
}

TEST(RadioFaults, AreTheRadiosOwnWords) {
  const RadioSetup setup{3073, "COM5", 19200, {}, {}, {}};
  const std::string tail = "\nIO error\n COM5 No such file or directory \n";
  const std::pair<std::string, std::string> cases[] = {
      {"serial_open: serial port COM5 does not exist\nrig_open returning2(-6) IO error" + tail,
       "COM5 is not there: is the cable plugged in?"},
      {"serial_open: Unable to open COM5 - Permission denied" + tail,
       "COM5 is used by another program."},
      {"read_string_generic(): Timed out 1.388 seconds after 0 chars\nCommunication timed out\n",
       "The radio does not answer at 19200. Is it switched on, and is this its speed?"},
      {"Unknown rig num 3073, or initialization error.\n",
       "This rigctld has no model 3073. Choose the radio anew."},
      {"serial port COM5 does not exist\n" + tail + "Communication timed out\n",
       "The radio does not answer at 19200. Is it switched on, and is this its speed?"},
      {"opened rig model 3073\n", ""}};
  for (const auto& [written, words] : cases)
    EXPECT_EQ(radioFault(setup, written), words) << written;
}

TEST(ServerProgram, IsFoundWhereItUsuallyLies) {
  const fakes::TempFolder folder;
  const auto put = [&](const char* path) {
    fs::create_directories((folder.path() / path).parent_path());
    std::ofstream(folder.path() / path) << "x";
    return folder.path() / path;
  };
  const auto old = put("C/hamlib-w64-4.5/bin/rigctld.exe");
  const auto newer = put("C/Hamlib-w64-4.7/bin/rigctld.exe");
  const auto wsjtx = put("C/WSJT/wsjtx/bin/rigctld-wsjtx.exe");
  put("C/hamlib-docs/readme.txt");
  const auto beside = put("program/hamlib/rigctld.exe");
  const auto path = put("path/rigctld.exe");
  const auto shown = put("elsewhere/my rigctld.exe");
  const ProgramPlaces places{
      folder.path() / "program", {folder.path() / "C"}, {folder.path() / "path"}};
  EXPECT_EQ(serverPrograms(places, shown),
            (std::vector<fs::path>{shown, beside, newer, old, path, wsjtx}));
  EXPECT_TRUE(serverPrograms({}, folder.path() / "gone.exe").empty());
  EXPECT_EQ(readServerVersion("rigctld Hamlib 4.7.2 from somewhere").words, "Hamlib 4.7.2");
  EXPECT_TRUE(readServerVersion("rigctl, Hamlib 3.3\n").tooOld);
  EXPECT_EQ(readServerVersion("another program 9.9").words, "");
}

/// A desk whose rigctld and ports are played.
class Desk : public testing::Test {
 protected:
  RadioDesk::Sources sources() {
    return {[this] {
              const std::lock_guard lock(mutex);
              return ports;
            },
            [this] { return programs; }, [this](const fs::path& path) { remembered = path; },
            [this](const std::string& line, milliseconds, const std::function<bool()>& stop) {
              return run(line, stop);
            }};
  }
  Result<std::string> run(const std::string& line, const std::function<bool()>& stop) {
    if (line.find("hangs") != line.npos) {
      while (!stop()) std::this_thread::sleep_for(milliseconds(1));
      return Failure{"It did not end."};
    }
    if (line.find("good") == line.npos) return "\x01\xFF rubbish " + std::string(5000, '%');
    if (line.find("--version") != line.npos) return "rigctld Hamlib 4.7.2";
    return line.find(" -l") != line.npos ? kList : "Serial speed: 9600..9600 baud";
  }
  template <class Holds>
  bool soon(const RadioDesk& desk, Holds holds) {
    for (int i = 0; i < 5000 && !holds(desk.state()); ++i)
      std::this_thread::sleep_for(milliseconds(1));
    return holds(desk.state());
  }

  std::mutex mutex;
  std::vector<SerialPort> ports{{"COM3", "COM3"}};
  std::vector<fs::path> programs;
  fs::path remembered;
};

TEST_F(Desk, TakesTheFirstProgramThatIsARigctldAndFollowsThePorts) {
  programs = {"rubbish", "good"};
  RadioDesk desk(sources());
  desk.look();
  ASSERT_TRUE(soon(desk, [](const DeskState& state) { return state.models && !state.looking; }));
  EXPECT_EQ(desk.state().version, "Hamlib 4.7.2");
  EXPECT_EQ(desk.state().remark, "");
  EXPECT_EQ(remembered, "good");
  desk.ask(3073);
  EXPECT_TRUE(soon(desk, [](const DeskState& state) {
    return state.factsOf == 3073 && state.facts.fastest == 9600;
  }));
  desk.watchPorts(true);
  EXPECT_TRUE(soon(desk, [](const DeskState& state) { return state.ports.size() == 1; }));
  {
    const std::lock_guard lock(mutex);
    ports.push_back({"COM5", "USB Serial (COM5)"});
  }
  EXPECT_TRUE(soon(desk, [](const DeskState& state) { return state.ports.size() == 2; }));
  desk.show("rubbish");
  EXPECT_TRUE(soon(desk, [](const DeskState& state) {
    return state.remark == "rubbish is no rigctld." && state.models && state.program == "good";
  })) << "what works stays";
}

TEST_F(Desk, SaysWhatIsMissingAndEndsWhileAProgramHangs) {
  {
    RadioDesk desk(sources());
    desk.look();
    EXPECT_TRUE(soon(desk, [](const DeskState& state) {
      return !state.looking && state.remark == noServerProgramWords();
    }));
  }
  programs = {"hangs"};
  RadioDesk desk(sources());
  desk.look();
  std::this_thread::sleep_for(milliseconds(20));
  EXPECT_TRUE(desk.state().looking) << "and this ends although the program does not";
}

}  // namespace
}  // namespace kelvane::sondrel
