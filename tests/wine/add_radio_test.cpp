// Adding a radio as an operator does, with a stand-in for rigctld.exe.
#include <windows.h>

#include <gtest/gtest.h>
#include <tlhelp32.h>

#include "components/sondrel/win32/dialog_ids.h"
#include "tests/wine/instance.h"
#include "tests/wine/open_dialog.h"
#include "tests/wine/real_rigctld.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

namespace rx = sondrel::id;

constexpr wchar_t kUserKey[] = L"SOFTWARE\\Morvath Software";
constexpr wchar_t kServer[] = L"RigctldStandIn.exe";

/// How many of the stand-ins run now.
int serversRunning() {
  int running = 0;
  const HANDLE list = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32W process{};
  process.dwSize = sizeof process;
  for (BOOL more = Process32FirstW(list, &process); more; more = Process32NextW(list, &process))
    running += std::wstring(process.szExeFile) == kServer;
  CloseHandle(list);
  return running;
}

/// The program of an operator who has shown the stand-in as his rigctld.
class AddRadio : public testing::Test {
 protected:
  void SetUp() override {
    const std::wstring program = (programFolder() / kServer).wstring();
    RegSetKeyValueW(HKEY_CURRENT_USER, kUserKey, L"Rigctld", REG_SZ, program.c_str(),
                    static_cast<DWORD>((program.size() + 1) * sizeof(wchar_t)));
    instance_.writeReceivers("Version=1\r\n[Receiver]\r\nName=Made up\r\n");
    panel_ = std::make_unique<RunningPanel>(instance_.name());
    ASSERT_TRUE(panel_->settledOn(0));
  }
  void TearDown() override {
    panel_.reset();
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kUserKey, L"Rigctld");
    EXPECT_TRUE(eventually([] { return serversRunning() == 0; })) << "a server outlived the panel";
  }

  OpenDialog openDrivers() {
    PostMessageW(panel_->control(id::ConfigButton), BM_CLICK, 0, 0);
    const OpenDialog options(*panel_, L"KelvaneConfig");
    options.key(*panel_, VK_TAB, 2);
    return {*panel_, L"KelvaneDrivers"};
  }
  /// The window with the IC-7300 found by typing, at this port.
  OpenDialog choose(const OpenDialog& drivers, const std::wstring& port) {
    drivers.press(rx::AddRadio);
    const OpenDialog radio(*panel_, L"KelvaneAddRadio");
    EXPECT_TRUE(eventually([&] { return radio.rows(rx::Models) == 3; })) << radio.text(rx::Rigctld);
    radio.type(rx::Find, L"ic73");
    EXPECT_TRUE(eventually([&] { return radio.text(rx::Speed) == "19200"; }));
    EXPECT_EQ(radio.text(rx::Civ), "94h");
    EXPECT_EQ(radio.text(rx::RadioName), "IC-7300");
    radio.type(rx::Device, port);
    return radio;
  }
  static bool tells(const OpenDialog& radio, int control, const std::string& part) {
    return eventually([&] { return radio.text(control).find(part) != std::string::npos; }, 15000);
  }

  const Instance instance_{L"TestAddRadio"};
  std::unique_ptr<RunningPanel> panel_;
};

TEST_F(AddRadio, IsTriedAddedAndItsTabIsLiveAndItsServerDiesWithAKilledPanel) {
  const OpenDialog drivers = openDrivers();
  const OpenDialog radio = choose(drivers, L"COM5");
  radio.press(rx::Try);
  EXPECT_TRUE(tells(radio, rx::Steps, "The radio answers: 7100 kHz")) << radio.text(rx::Steps);
  EXPECT_TRUE(tells(radio, rx::Steps, "It works.")) << radio.text(rx::Steps);
  EXPECT_TRUE(eventually([] { return serversRunning() == 0; })) << "the trial's own is ended";
  radio.press(IDOK);
  EXPECT_TRUE(drivers.gone()) << "nothing more is to be confirmed";
  EXPECT_TRUE(eventually([&] { return panel_->tabs() == 2; }));
  const OpenDialog options(*panel_, L"KelvaneConfig");
  options.press(IDCANCEL);
  EXPECT_TRUE(options.gone());
  panel_->clickTab(1);
  ASSERT_TRUE(panel_->settledOn(1));
  EXPECT_TRUE(eventually([&] { return panel_->digits().find("7100000") != std::string::npos; }));
  EXPECT_EQ(serversRunning(), 1);
  const HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, panel_->processId());
  TerminateProcess(process, 9);
  CloseHandle(process);
}

/// A port in the system's own lists, as plugging in a cable makes one.
class PluggedPort {
 public:
  PluggedPort() {
    set(kMap, L"\\Device\\KelvaneTest0", L"COM12");
    set(kDevice, L"ClassGUID", L"{4d36e978-e325-11ce-bfc1-08002be10318}");
    set(kDevice, L"Class", L"Ports");
    set(kDevice, L"FriendlyName", L"USB Serial (COM9)");
    set(std::wstring(kDevice) + L"\\Device Parameters", L"PortName", L"COM9");
  }
  ~PluggedPort() {
    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kMap, L"\\Device\\KelvaneTest0");
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, kDevice);
  }
  PluggedPort(const PluggedPort&) = delete;
  PluggedPort& operator=(const PluggedPort&) = delete;

 private:
  static constexpr wchar_t kMap[] = L"HARDWARE\\DEVICEMAP\\SERIALCOMM";
  static constexpr wchar_t kDevice[] =
      L"System\\CurrentControlSet\\Enum\\USB\\VID_0403&PID_6001\\KELVANETEST";
  static void set(const std::wstring& key, const wchar_t* name, const std::wstring& text) {
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, text.c_str(),
                    static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }
};

/// Where in the list that a combo box offers this text stands; -1 where it does not.
LRESULT offered(const OpenDialog& radio, const std::wstring& text) {
  return SendMessageW(radio.item(rx::Device), CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                      reinterpret_cast<LPARAM>(text.c_str()));
}

TEST_F(AddRadio, OffersTheSystemsPortsAsTheyComeAndGo) {
  const OpenDialog drivers = openDrivers();
  const OpenDialog radio = choose(drivers, L"COM5");
  EXPECT_EQ(offered(radio, L"COM12"), -1);
  {
    const PluggedPort plugged;
    EXPECT_TRUE(eventually([&] { return offered(radio, L"COM12") >= 0; }));
    EXPECT_TRUE(eventually([&] { return offered(radio, L"COM9: USB Serial") >= 0; }));
    EXPECT_LT(offered(radio, L"COM9: USB Serial"), offered(radio, L"COM12"));
    EXPECT_EQ(radio.text(rx::Device), "COM5") << "what was typed stays";
  }
  EXPECT_TRUE(eventually([&] { return offered(radio, L"COM12") < 0; }));
  EXPECT_TRUE(eventually([&] { return offered(radio, L"COM9: USB Serial") < 0; }));
  radio.press(IDCANCEL);
  EXPECT_TRUE(radio.gone());
}

TEST_F(AddRadio, SaysInWordsWhatIsWrongAndFindsTheSpeed) {
  const OpenDialog drivers = openDrivers();
  const OpenDialog radio = choose(drivers, L"");
  radio.press(rx::Try);
  EXPECT_TRUE(tells(radio, rx::Problem, "Choose the port"));
  const std::pair<const wchar_t*, const char*> cases[] = {
      {L"COM7", "COM7 is not there: is the cable plugged in?"},
      {L"COM8", "COM8 is used by another program."},
      {L"COM9", "The radio does not answer at 19200."}};
  for (const auto& [port, words] : cases) {
    radio.type(rx::Device, port);
    radio.press(rx::Try);
    EXPECT_TRUE(tells(radio, rx::Steps, words)) << words << ": " << radio.text(rx::Steps);
    EXPECT_TRUE(eventually([&] { return IsWindowEnabled(radio.item(rx::Try)) != 0; }));
  }
  radio.type(rx::Device, L"COM5");
  radio.type(rx::Speed, L"4800");
  radio.press(rx::TrySpeeds);
  EXPECT_TRUE(tells(radio, rx::Steps, "115200: no answer.")) << radio.text(rx::Steps);
  EXPECT_TRUE(tells(radio, rx::Steps, "Found: 19200.")) << radio.text(rx::Steps);
  EXPECT_TRUE(eventually([&] { return radio.text(rx::Speed) == "19200"; }));
  radio.press(IDCANCEL);
  EXPECT_TRUE(radio.gone());
  drivers.press(rx::FindServers);
  const OpenDialog servers(*panel_, L"KelvaneFindServers");
  const int port = freePort();
  RealRigctld server(port);
  ASSERT_TRUE(server.start());
  servers.type(rx::SearchHost, L"127.0.0.1:" + std::to_wstring(port));
  servers.press(rx::Search);
  EXPECT_TRUE(eventually([&] { return servers.rows(rx::Servers) > 0; }));
  EXPECT_TRUE(tells(servers, rx::SearchState, "found."));
  servers.press(IDOK);
  EXPECT_TRUE(eventually([&] { return panel_->tabs() == 2; }));
}

}  // namespace
}  // namespace kelvane::wine
