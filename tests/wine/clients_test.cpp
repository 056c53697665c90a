#include <winsock2.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "base/number.h"
#include "tests/wine/instance.h"
#include "tests/wine/real_rigctld.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

// The programs that listeners use beside the panel, all at one receiver: each has to follow the
// panel, and the panel each of them. tests/clients/start-clients starts them and says where they
// are reached.

namespace kelvane::wine {
namespace {

/// The digits behind the first place where the text has these words; empty without them.
std::string numberBehind(const std::string& text, const std::string& words) {
  const auto place = text.find(words);
  if (place == std::string::npos) return {};
  const auto first = place + words.size();
  return text.substr(first, text.find_first_not_of("0123456789", first) - first);
}

/// Hears a decoder's words about its dial, which it sends whenever that changes.
class DialWatch {
 public:
  explicit DialWatch(u_short port) : socket_(socket(AF_INET, SOCK_DGRAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    u_long on = 1;
    ioctlsocket(socket_, FIONBIO, &on);
  }
  ~DialWatch() { closesocket(socket_); }
  DialWatch(const DialWatch&) = delete;
  DialWatch& operator=(const DialWatch&) = delete;

  /// The last that it said, Hz; empty before.
  std::string hertz() {
    unsigned char bytes[2048];
    for (int size; (size = recv(socket_, reinterpret_cast<char*>(bytes), sizeof bytes, 0)) > 0;) {
      hear({bytes, bytes + size});
    }
    return hertz_;
  }

 private:
  /// Magic number, schema, kind of message, the sender's name with its length, the dial: all
  /// big-endian.
  void hear(const std::vector<unsigned char>& bytes) {
    const auto number = [&](std::size_t at, std::size_t size) {
      std::uint64_t value = 0;
      for (std::size_t i = 0; i < size; ++i) value = value << 8 | bytes[at + i];
      return value;
    };
    if (bytes.size() < 16 || number(8, 4) != 1) return;
    const auto dial = 16 + number(12, 4);
    if (dial + 8 <= bytes.size()) hertz_ = std::to_string(number(dial, 8));
  }

  SOCKET socket_;
  std::string hertz_;
};

/// One of the programs: how its dial is read and set, and its window.
struct Program {
  std::string name;
  std::function<std::string()> hertz;
  std::function<void(const std::string& hertz)> tune;
  std::string window;  ///< how its title begins; empty for none
  std::string place;   ///< where it is put
  std::string lamp;    ///< where its lamp is, green when its radio answers; empty where it has none
};

std::string fldigi(const std::string& method, const std::string& value) {
  const std::string body =
      "<?xml version=\"1.0\"?><methodCall><methodName>main." + method + "</methodName><params>" +
      (value.empty() ? "" : "<param><value><double>" + value + "</double></value></param>") +
      "</params></methodCall>";
  return hostOutput("wget -q -T 15 -t 1 -O - --post-data='" + body +
                    "' --header='Content-Type: text/xml' http://127.0.0.1:24362/RPC2");
}

/// The window whose title begins so, for the host's shell.
std::string windowOf(const std::string& title) {
  return "$(xdotool search --onlyvisible --name '^" + title + "' | tail -1)";
}

/// Gives it the keyboard; a window manager that does not want to is not waited for.
std::string activated(const std::string& window) {
  return "timeout 4 xdotool windowactivate --sync " + window + "; sleep 0.5";
}

/// Types a band into the box that is at this place of the window.
void chooseBand(const std::string& title, const std::string& place, const std::string& band) {
  const std::string window = windowOf(title);
  hostOutput(activated(window) + "; xdotool mousemove --window " + window + " " + place +
             " click 1; sleep 0.3; xdotool key ctrl+a type " + band + "; xdotool key Return");
}

/// The panel with a real radio, and five genuine programs at it.
class Clients : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(radio_.start());
    instance_.writeReceivers("Version=1\r\n[Receiver]\r\nName=Attic\r\nKind=rigctld\r\nPort=" +
                             std::to_string(radioPort_) +
                             "\r\nShare=tune\r\nSharePort=" + std::to_string(port_) + "\r\n");
    panel_ = std::make_unique<RunningPanel>(instance_.name());
    ASSERT_TRUE(panel_->settledOn(0));
    panel_->type("14074\r");
    ASSERT_TRUE(eventually([&] { return dial() == "14074000"; }));
    hostOutput(setting("KELVANE_CLIENTS") + " " + folder_ + " " + std::to_string(port_));
  }
  void TearDown() override {
    hostOutput("for p in $(cat " + folder_ + "/pids); do kill -TERM -$p; done; sleep 1; " +
               "for p in $(cat " + folder_ + "/pids); do kill -KILL -$p; done");
  }
  static std::string setting(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
  }

  std::string dial() const {
    const std::string digits = panel_->digits();
    const auto first = digits.find_first_not_of(' ');
    return first == std::string::npos ? "" : digits.substr(first);
  }
  /// Every program shows what the panel shows.
  void expectAllFollow(const std::string& why) {
    for (const Program& program : programs_) {
      EXPECT_TRUE(eventually([&] { return program.hertz() == dial(); }, 20000))
          << why << ": " << program.name << " shows " << program.hertz() << ", the panel "
          << dial();
    }
  }
  void turnWheel() {
    const std::string before = dial();
    ASSERT_TRUE(giveKeyboard(panel_->window()));
    RECT area;
    GetWindowRect(panel_->control(id::Band), &area);
    pointAt(area.left + 5, area.top + 5);
    panel_->turnWheel(-120);
    EXPECT_TRUE(eventually([&] { return dial() != before; })) << before;
  }
  /// Side by side, so that each can be seen; what complains of a missing sound card is closed.
  void arrange() {
    hostOutput("for w in $(xdotool search --onlyvisible --name '^JS8Call$'); do " +
               activated("$w") + "; xdotool key Return; done");
    for (const Program& program : programs_) {
      if (program.window.empty()) continue;
      hostOutput("xdotool windowmove " + windowOf(program.window) + " " + program.place);
    }
    SetWindowPos(panel_->window(), nullptr, 1180, 880, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  }
  void expectGreenLamps(const std::string& when) {
    hostOutput("import -window root " + pictures_ + "/" + when + ".png");
    for (const Program& program : programs_) {
      if (program.lamp.empty()) continue;
      const std::string green = hostOutput(
          "import -window " + windowOf(program.window) + " png:- | convert png:- -crop " +
          program.lamp + " -alpha off -fill white -opaque '#00ff00' -opaque '#22ff22' " +
          "-fill black +opaque white -format '%[fx:round(mean*w*h)]' info:");
      EXPECT_GT(num(green), 150) << program.name << " " << when << ": " << green;
    }
  }

  const std::string folder_ = setting("KELVANE_CLIENTS_FOLDER");
  const std::string pictures_ = setting("KELVANE_CLIENTS_PICTURES");
  const int radioPort_ = freePort();
  const int port_ = freePort();
  RealRigctld radio_{radioPort_};
  const Instance instance_{L"TestClients"};
  std::unique_ptr<RunningPanel> panel_;
  DialWatch wsjtx_{24370}, jtdx_{24380};
  std::vector<Program> programs_ = {
      {"WSJT-X", [this] { return wsjtx_.hertz(); },
       [](const std::string&) { chooseBand("WSJT-X +v", "35 433", "40m"); }, "WSJT-X +v", "0 0",
       "28x28+96+419"},
      {"JTDX", [this] { return jtdx_.hertz(); },
       [](const std::string&) { chooseBand("JTDX +by", "285 72", "30m"); }, "JTDX +by", "890 0",
       "28x28+258+27"},
      {"JS8Call",
       [] {
         return numberBehind(
             LineClient(24421).ask(R"({"type":"RIG.GET_FREQ","value":"","params":{}})"),
             "\"DIAL\":");
       },
       [](const std::string& hertz) {
         LineClient(24421).ask(R"({"type":"RIG.SET_FREQ","value":"","params":{"DIAL":)" + hertz +
                               R"(,"OFFSET":1500}})");
       },
       "JS8Call de", "890 560", "60x20+10+281"},
      {"fldigi", [] { return numberBehind(fldigi("get_frequency", ""), "<double>"); },
       [](const std::string& hertz) { fldigi("set_frequency", hertz); }, "fldigi ver", "0 730", ""},
      {"rigctl",
       [this] {
         const std::string told =
             hostOutput("grep -ao '[0-9]\\{5,\\}' " + folder_ + "/rigctl.log | tail -1");
         return told.substr(0, told.find('\n'));
       },
       [this](const std::string& hertz) {
         hostOutput("rigctl -m 2 -r 127.0.0.1:" + std::to_string(port_) + " F " + hertz);
       },
       "", "", ""}};
};

TEST_F(Clients, FollowThePanelAndItThemAndAllOutliveALostRadio) {
  const LineClient first(port_);
  EXPECT_TRUE(eventually([&] { return !first.ask("f").empty(); }));
  Sleep(20000);
  arrange();
  turnWheel();
  expectAllFollow("a turn of the wheel");
  int offset = 0;
  for (const Program& program : programs_) {
    const std::string before = dial();
    program.tune(std::to_string(7'080'000 + 1000 * ++offset));
    EXPECT_TRUE(eventually([&] { return dial() != before && dial() == program.hertz(); }, 30000))
        << program.name << " tunes to " << program.hertz() << ", the panel shows " << dial();
    expectAllFollow(program.name);
  }
  Sleep(3000);  // until it counts, and what else the panel shows belongs to it
  expectGreenLamps("shared");

  radio_.signal("KILL");
  EXPECT_TRUE(eventually(
      [&] { return panel_->text(id::RxMask).starts_with("Held for 6 programs, "); }, 15000))
      << panel_->text(id::RxMask);
  Sleep(8000);
  EXPECT_TRUE(eventually([&] { return panel_->visible(id::RxMask); }));
  expectGreenLamps("held");
  ASSERT_TRUE(radio_.start());
  EXPECT_TRUE(panel_->settledOn(0));
  panel_->type("7040\r");
  EXPECT_TRUE(eventually([&] { return dial() == "7040000"; }));
  expectAllFollow("the radio is back");
  turnWheel();
  expectAllFollow("a turn of the wheel after that");
  expectGreenLamps("healed");
}

}  // namespace
}  // namespace kelvane::wine
