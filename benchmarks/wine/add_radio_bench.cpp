#include <winsock2.h>

#include <windows.h>

#include <string>

#include "benchmarks/latencies.h"
#include "benchmarks/wine/process_accounts.h"
#include "benchmarks/wine/timing_board.h"
#include "components/sondrel/win32/dialog_ids.h"
#include "tests/wine/instance.h"
#include "tests/wine/open_dialog.h"
#include "tests/wine/real_rigctld.h"
#include "ui/control_ids.h"

// A radio is added, with a stand-in for rigctld.exe: how long the window takes to open and for each
// letter that is typed, with short and long lists of models; how long it is from Add to the first
// frequency, and what of it the server takes by itself. And what eight such radios cost.

namespace {

using namespace kelvane;
using namespace kelvane::bench;
namespace rx = sondrel::id;

constexpr wchar_t kUserKey[] = L"SOFTWARE\\Morvath Software";
constexpr double kFrame = 16;  ///< ms

std::wstring standIn() { return (wine::programFolder() / L"RigctldStandIn.exe").wstring(); }

/// The stand-in is the rigctld that the user has shown.
class ShownStandIn {
 public:
  ShownStandIn() {
    const std::wstring program = standIn();
    RegSetKeyValueW(HKEY_CURRENT_USER, kUserKey, L"Rigctld", REG_SZ, program.c_str(),
                    static_cast<DWORD>((program.size() + 1) * sizeof(wchar_t)));
  }
  ~ShownStandIn() { RegDeleteKeyValueW(HKEY_CURRENT_USER, kUserKey, L"Rigctld"); }
};

double since(LONG64 start) { return microseconds(counter() - start) / 1000; }

wine::OpenDialog openedDrivers(wine::RunningPanel& panel) {
  PostMessageW(panel.control(id::ConfigButton), BM_CLICK, 0, 0);
  const wine::OpenDialog options(panel, L"KelvaneConfig");
  options.key(panel, VK_TAB, 2);
  wine::OpenDialog drivers(panel, L"KelvaneDrivers");
  must(drivers.isOpen(), "the list of receivers");
  return drivers;
}

/// Asks, at each letter, for the window's next answer: by then it has done what the letter asks.
void printLetters(const wine::OpenDialog& radio, const std::string& list) {
  Latencies times;
  for (int i = 0; i < 40; ++i) {
    const wchar_t letter = i % 4 == 3 ? L'\b' : L"r-1"[i % 4];
    const LONG64 start = counter();
    SendMessageW(radio.item(rx::Find), WM_CHAR, letter, 0);
    SendMessageW(radio.window(), WM_NULL, 0, 0);
    times.add(since(start));
    Sleep(150);
  }
  print({list + ": a typed letter, median", times.median(), "ms", "a frame", kFrame, 1});
  print({list + ": a typed letter, worst of 40", times.worst(), "ms", "a frame", kFrame});
}

void measureWindow(int models) {
  SetEnvironmentVariableA("STAND_IN_MODELS", std::to_string(models).c_str());
  const wine::Instance instance(L"BenchAddRadio");
  instance.writeReceivers("Version=1\r\n[Receiver]\r\nName=Made up\r\n");
  wine::RunningPanel panel(instance.name());
  must(panel.shown(), "the window");
  const wine::OpenDialog drivers = openedDrivers(panel);
  const std::string list = "radio window of " + std::to_string(models) + " models";
  Latencies opening;
  for (int i = 0; i < 9; ++i) {
    Sleep(1000);  // a hand is no quicker
    const LONG64 start = counter();
    drivers.press(rx::AddRadio);
    while (!panel.findWindow(L"KelvaneAddRadio")) {
      must(since(start) < 5000, "the window");
      Sleep(1);
    }
    opening.add(since(start));
    const wine::OpenDialog radio(panel, L"KelvaneAddRadio");
    must(wine::eventually([&] { return radio.rows(rx::Models) == models + 3; }), "the models");
    if (i == 8) printLetters(radio, list);
    radio.press(IDCANCEL);
    must(radio.gone(), "the window's end");
  }
  print({list + ": opened, median of 9", opening.median(), "ms", "a frame", kFrame, 1});
  panel.close();
  panel.ended();
}

/// From the start of a stand-in to its first answer, asked as soon as it listens.
double serverAlone() {
  const int port = wine::freePort();
  std::wstring line = L"\"" + standIn() + L"\" -m 3073 -r COM5 -t " + std::to_wstring(port);
  STARTUPINFOW how{};
  how.cb = sizeof how;
  PROCESS_INFORMATION server{};
  const LONG64 start = counter();
  must(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                      nullptr, &how, &server) != 0,
       "a server");
  const wine::RealRigctld asked(port);
  must(wine::eventually([&] { return !asked.ask("f").empty(); }), "an answer");
  const double time = since(start);
  TerminateProcess(server.hProcess, 0);
  CloseHandle(server.hThread);
  CloseHandle(server.hProcess);
  return time;
}

void measureAdding() {
  const wine::Instance instance(L"BenchAdding");
  instance.writeReceivers("Version=1\r\n[Receiver]\r\nName=Made up\r\n");
  wine::RunningPanel panel(instance.name());
  must(panel.shown(), "the window");
  const wine::OpenDialog drivers = openedDrivers(panel);
  drivers.press(rx::AddRadio);
  const wine::OpenDialog radio(panel, L"KelvaneAddRadio");
  must(wine::eventually([&] { return radio.rows(rx::Models) > 2; }), "the models");
  radio.type(rx::Find, L"ic73");
  must(wine::eventually([&] { return radio.text(rx::Speed) == "19200"; }), "the model's speed");
  radio.type(rx::Device, L"COM5");
  const LONG64 start = counter();
  radio.press(IDOK);
  must(wine::eventually([&] { return panel.tabs() == 2; }), "its tab");
  const wine::OpenDialog options(panel, L"KelvaneConfig");
  options.press(IDCANCEL);
  must(options.gone(), "the options' end");
  panel.clickTab(1);
  must(wine::eventually([&] { return panel.digits().find("7100000") != std::string::npos; }),
       "the first frequency");
  print({"from Add, over its tab, to the first frequency", since(start), "ms",
         "the server alone, to its answer", serverAlone()});
  TerminateProcess(OpenProcess(PROCESS_TERMINATE, FALSE, panel.processId()), 0);
}

void measureEight() {
  std::string receivers = "Version=1\r\n";
  for (int i = 0; i < 8; ++i)
    receivers += "[Receiver]\r\nName=R" + std::to_string(i) +
                 "\r\nKind=radio\r\nModel=3073\r\nSpeed=19200\r\n";
  const wine::Instance instance(L"BenchEightRadios");
  instance.writeReceivers(receivers);
  const LONG64 start = counter();
  wine::RunningPanel panel(instance.name());
  must(panel.shown(), "the window");
  for (int tab = 0; tab < 8; ++tab) {
    panel.clickTab(tab);
    must(panel.settledOn(tab), "a link that is up");
  }
  print({"eight radios with a server each: start to the last of eight live tabs", since(start),
         "ms"});
  Sleep(3000);
  const auto memory = ProcessAccounts::ofCommand("Kelvane.exe", "BenchEightRadios").memory();
  print({"the same: memory that the program made", memory.made, "MB"});
  print({"the same: memory, resident", memory.resident, "MB"});
  panel.close();
  panel.ended();
}

}  // namespace

int main() {
  return measure([] {
    const ShownStandIn shown;
    measureWindow(300);
    measureWindow(5000);
    SetEnvironmentVariableA("STAND_IN_MODELS", nullptr);
    measureAdding();
    measureEight();
  });
}
