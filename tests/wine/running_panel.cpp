#include "tests/wine/running_panel.h"

#include <commctrl.h>

#include <vector>

#include "base/win32/utf16.h"
#include "ui/control_ids.h"

namespace kelvane::wine {

namespace {

constexpr int kMessageText = 65535;

struct Search {
  DWORD process;
  std::wstring windowClass;
  HWND found;
};

BOOL CALLBACK compare(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  wchar_t name[64] = L"";
  GetClassNameW(window, name, 64);
  if (process != search.process || name != search.windowClass || !IsWindowVisible(window))
    return TRUE;
  search.found = window;
  return FALSE;
}

void sendKey(WORD code, bool up) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = code;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(code, MAPVK_VK_TO_VSC));
  input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  SendInput(1, &input, sizeof input);
}

void sendMouse(DWORD flags) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = flags;
  SendInput(1, &input, sizeof input);
}

bool hasKeyboard(HWND window) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  return GetForegroundWindow() == window &&
         GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info) && info.hwndFocus;
}

/// A window into which the pointer came hears from the display which keys are down there. Its late
/// word would let go of a key that is held for the programs only.
void letTheDisplaySpeak() {
  Sleep(30);
  DWORD_PTR ignored = 0;
  SendMessageTimeoutW(GetForegroundWindow(), WM_NULL, 0, 0, SMTO_NORMAL, 5000, &ignored);
}

bool keepsKeyboard(HWND window) {
  return !eventually([window] { return !hasKeyboard(window); }, 150);
}

}  // namespace

std::string textOf(HWND window) {
  wchar_t text[1024] = L"";
  SendMessageW(window, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text));
  return narrow(text);
}

std::filesystem::path programFolder() {
  wchar_t folder[MAX_PATH] = L"";
  GetEnvironmentVariableW(L"KELVANE_BIN", folder, MAX_PATH);
  return folder;
}

bool eventually(const std::function<bool()>& so, int milliseconds) {
  for (int waited = 0; waited <= milliseconds; waited += 10) {
    if (so()) return true;
    Sleep(10);
  }
  return false;
}

void pointAt(LONG x, LONG y) {
  const auto isThere = [x, y] {
    POINT place{};
    return GetCursorPos(&place) && place.x == x && place.y == y;
  };
  for (int tries = 0; tries < 10; ++tries) {
    SetCursorPos(x, y);
    if (!eventually([&] { return !isThere(); }, 30)) return;
  }
}

bool giveKeyboard(HWND window) {
  static HWND last = nullptr;
  if (GetForegroundWindow() == window && (window == last || keepsKeyboard(window))) {
    last = window;
    return true;
  }
  // A window manager that is busy with a window that came or went may drop the wish, and its late
  // words about a focus that has moved on would take the keyboard away again in the middle of a
  // key.
  for (int tries = 0; tries < 8; ++tries) {
    if (tries > 1) SetForegroundWindow(GetDesktopWindow());
    SetForegroundWindow(window);
    if (!eventually([window] { return hasKeyboard(window); }, 700) || !keepsKeyboard(window))
      continue;
    last = window;
    return true;
  }
  return false;
}

RunningPanel::RunningPanel(const std::wstring& words, const std::filesystem::path& folder,
                           const std::filesystem::path& current) {
  const std::filesystem::path& startIn = current.empty() ? folder : current;
  const std::filesystem::path program = folder / L"Kelvane.exe";
  std::wstring line = L"\"" + program.wstring() + L"\" " + words;
  STARTUPINFOW start{};
  start.cb = sizeof start;
  CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, startIn.c_str(),
                 &start, &process_);
}

RunningPanel::~RunningPanel() {
  if (WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT) {
    TerminateProcess(process_.hProcess, 99);
    WaitForSingleObject(process_.hProcess, 5000);
  }
  CloseHandle(process_.hThread);
  CloseHandle(process_.hProcess);
}

HWND RunningPanel::findWindow(const wchar_t* windowClass) const {
  Search search{process_.dwProcessId, windowClass, nullptr};
  EnumWindows(compare, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

bool RunningPanel::shown() {
  return eventually([this] { return (window_ = findWindow(L"KelvaneMAin")) != nullptr; }, 20000);
}

testing::AssertionResult RunningPanel::settledOn(int tab) {
  // The tab control selects its tab before what belongs to it is shown: the caption tells when it
  // is, and is looked at first. The status box alone would not tell: it blinks.
  const auto answers = [this, tab] {
    const auto named = caption().find(" - Receiver " + tabName(tab));
    return selectedTab() == tab && named != std::string::npos && enabled(id::FrqDigit + 5) &&
           !visible(id::RxMask);
  };
  if (!shown()) return testing::AssertionFailure() << "no window came";
  if (!eventually(answers, 20000)) {
    return testing::AssertionFailure()
           << "tab " << selectedTab() << " is selected, \"" << text(id::RxMask) << "\" is "
           << (visible(id::RxMask) ? "shown" : "hidden") << ", digits are "
           << (enabled(id::FrqDigit + 5) ? "free" : "locked");
  }
  // A window that has just come up gets the keyboard a little later than it is seen.
  if (giveKeyboard(window_)) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "the window did not keep the keyboard";
}

std::string RunningPanel::text(int id) const { return textOf(control(id)); }

std::string RunningPanel::caption() const { return textOf(window_); }

std::string RunningPanel::digits() const {
  std::string row;
  for (int i = 0; i < 9; ++i) {
    const std::string digit = visible(id::FrqDigit + i) ? text(id::FrqDigit + i) : " ";
    row += digit.empty() ? " " : digit;
  }
  return row;
}

int RunningPanel::selectedTab() const {
  return static_cast<int>(SendMessageW(control(id::TabStrip), TCM_GETCURSEL, 0, 0));
}

std::string RunningPanel::tabName(int tab) const {
  TCITEMW item{};
  item.mask = TCIF_TEXT;
  std::string name = itemText(control(id::TabStrip), TCM_GETITEMW, tab, item);
  std::erase(name, '&');
  return name;
}

int RunningPanel::tabs() const {
  return static_cast<int>(SendMessageW(control(id::TabStrip), TCM_GETITEMCOUNT, 0, 0));
}

void RunningPanel::key(WORD code, int modifiers) {
  giveKeyboard(window_);
  keyHere(code, modifiers);
}

void RunningPanel::keyHere(WORD code, int modifiers) {
  const std::vector<std::pair<int, WORD>> held = {{1, VK_SHIFT}, {2, VK_CONTROL}, {4, VK_MENU}};
  if (modifiers) letTheDisplaySpeak();
  for (const auto& [bit, modifier] : held) {
    if (modifiers & bit) sendKey(modifier, false);
  }
  sendKey(code, false);
  sendKey(code, true);
  for (const auto& [bit, modifier] : held) {
    if (modifiers & bit) sendKey(modifier, true);
  }
}

void RunningPanel::type(const std::string& characters) {
  for (const char character : characters) {
    const SHORT code = VkKeyScanW(static_cast<unsigned char>(character));
    key(LOBYTE(code), HIBYTE(code));
  }
}

void RunningPanel::pointAtControl(int id) const {
  RECT area;
  GetWindowRect(control(id), &area);
  pointAt((area.left + area.right) / 2, (area.top + area.bottom) / 2);
}

void RunningPanel::pressOn(int id) {
  giveKeyboard(window_);
  pointAtControl(id);
  sendMouse(MOUSEEVENTF_LEFTDOWN);
}

void RunningPanel::pressAt(int x, int y) {
  pointAt(x, y);
  sendMouse(MOUSEEVENTF_LEFTDOWN);
}

void RunningPanel::release() { sendMouse(MOUSEEVENTF_LEFTUP); }

void RunningPanel::click(int id, Mouse button) {
  giveKeyboard(window_);
  pointAtControl(id);
  const bool left = button == Mouse::Left;
  sendMouse(left ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_RIGHTDOWN);
  sendMouse(left ? MOUSEEVENTF_LEFTUP : MOUSEEVENTF_RIGHTUP);
}

void RunningPanel::pointAtTab(int tab) {
  giveKeyboard(window_);
  RECT strip;
  GetWindowRect(control(id::TabStrip), &strip);
  RECT area;
  GetClientRect(window_, &area);
  const int width = (area.right - area.left) / 9;
  pointAt(strip.left + tab * width + width / 2, (strip.top + strip.bottom) / 2);
}

void RunningPanel::clickHere() {
  sendMouse(MOUSEEVENTF_LEFTDOWN);
  sendMouse(MOUSEEVENTF_LEFTUP);
}

void RunningPanel::clickTab(int tab) {
  pointAtTab(tab);
  clickHere();
}

void RunningPanel::turnWheel(int delta) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = MOUSEEVENTF_WHEEL;
  input.mi.mouseData = static_cast<DWORD>(delta);
  SendInput(1, &input, sizeof input);
}

void RunningPanel::moveToResolution(int dpi) {
  RECT place;
  GetWindowRect(window_, &place);
  // The message carries an address in the program's own memory.
  void* there =
      VirtualAllocEx(process_.hProcess, nullptr, sizeof place, MEM_COMMIT, PAGE_READWRITE);
  WriteProcessMemory(process_.hProcess, there, &place, sizeof place, nullptr);
  SendMessageW(window_, WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(there));
  VirtualFreeEx(process_.hProcess, there, 0, MEM_RELEASE);
}

void RunningPanel::clickAt(int x, int y) {
  pointAt(x, y);
  sendMouse(MOUSEEVENTF_LEFTDOWN);
  sendMouse(MOUSEEVENTF_LEFTUP);
}

void RunningPanel::close() { PostMessageW(window_, WM_CLOSE, 0, 0); }

std::string RunningPanel::messageBox() {
  HWND box = nullptr;
  if (!eventually([&] { return (box = findWindow(L"#32770")) != nullptr; }, 20000)) return {};
  return textOf(GetDlgItem(box, kMessageText));
}

void RunningPanel::answer(int button) {
  const HWND box = findWindow(L"#32770");
  PostMessageW(GetDlgItem(box, button), BM_CLICK, 0, 0);
  eventually([box] { return !IsWindow(box) || !IsWindowVisible(box); });
}

int RunningPanel::ended() {
  if (WaitForSingleObject(process_.hProcess, 15000) != WAIT_OBJECT_0) return -1;
  DWORD code = 0;
  GetExitCodeProcess(process_.hProcess, &code);
  return static_cast<int>(code);
}

}  // namespace kelvane::wine
