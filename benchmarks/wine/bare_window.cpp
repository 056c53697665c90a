#include <windows.h>

#include <commctrl.h>

#include <cwchar>
#include <string>

#include "ui/main_controls.h"

// A window with as many controls of each kind as the panel's, and nothing else: what a program of
// this look costs by itself. With a word on the command line that begins with "plain" it has none.

namespace {

using namespace kelvane;

constexpr wchar_t kClass[] = L"KelvaneBareWindow";
constexpr wchar_t kOwnControl[] = L"KelvaneBareControl";
constexpr int kTabs = 4;

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcW(window, message, wParam, lParam);
}

void registerClass(HINSTANCE instance, const wchar_t* name, WNDPROC ownProcedure) {
  WNDCLASSW own{};
  own.lpfnWndProc = ownProcedure;
  own.hInstance = instance;
  own.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  own.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  own.lpszClassName = name;
  RegisterClassW(&own);
}

const wchar_t* classOf(Kind kind) {
  if (kind == Kind::Digit || kind == Kind::Keys) return kOwnControl;
  return kind == Kind::Toggle || kind == Kind::Button ? L"BUTTON" : L"STATIC";
}

void addControls(HWND parent, HINSTANCE instance) {
  const HWND tabs = CreateWindowExW(0, WC_TABCONTROLW, L"", WS_CHILD | WS_VISIBLE, 0, 0, kMainWidth,
                                    30, parent, nullptr, instance, nullptr);
  for (int i = 0; i < kTabs; ++i) {
    wchar_t caption[] = L"Receiver";
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = caption;
    SendMessageW(tabs, TCM_INSERTITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
  }
  CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP, 0, 0, 0, 0,
                  parent, nullptr, instance, nullptr);
  for (const ControlRow& row : mainControls()) {
    const DWORD style = row.kind == Kind::Toggle ? BS_AUTOCHECKBOX | BS_PUSHLIKE : 0;
    const std::wstring text(row.name.begin(), row.name.end());
    const Place& at = row.place;
    for (int i = 0; i < row.count; ++i)
      CreateWindowExW(0, classOf(row.kind), text.c_str(), WS_CHILD | WS_VISIBLE | style,
                      at.left + i * row.step, at.top, at.width, at.height, parent, nullptr,
                      instance, nullptr);
  }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR commandLine, int) {
  const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_TAB_CLASSES | ICC_STANDARD_CLASSES};
  InitCommonControlsEx(&controls);
  registerClass(instance, kClass, procedure);
  registerClass(instance, kOwnControl, DefWindowProcW);
  const HWND window =
      CreateWindowExW(0, kClass, L"Bare", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 100, 100,
                      kMainWidth, kMainHeight, nullptr, nullptr, instance, nullptr);
  if (wcsncmp(commandLine, L"plain", 5) != 0) addControls(window, instance);
  ShowWindow(window, SW_SHOWNORMAL);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return 0;
}
