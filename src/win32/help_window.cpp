#include "win32/help_window.h"

#include <commctrl.h>
#include <richedit.h>

#include <algorithm>
#include <array>
#include <utility>

#include "companions/help_card.h"
#include "gui/win32/text_size.h"
#include "ui/control_ids.h"
#include "win32/accessible.h"
#include "win32/message_boxes.h"
#include "win32/screens.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr wchar_t kHelpClass[] = L"KelvaneMiniHelp";
constexpr DWORD kHelpStyle =
    WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_CLIPCHILDREN;
constexpr int kHelpWidth = 540, kHelpHeight = 520;

HINSTANCE module() { return GetModuleHandleW(nullptr); }

/// Whether a font of this name is there and has all these characters.
bool canWrite(const wchar_t* face, DWORD charset, const wchar_t (&characters)[5]) {
  HDC screen = GetDC(nullptr);
  HFONT font = CreateFontW(20, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, charset, 0, 0, 0, 0, face);
  const HGDIOBJ before = SelectObject(screen, font);
  wchar_t given[LF_FACESIZE] = L"";
  GetTextFaceW(screen, LF_FACESIZE, given);
  std::array<WORD, 4> glyphs{};
  const DWORD found =
      GetGlyphIndicesW(screen, characters, 4, glyphs.data(), GGI_MARK_NONEXISTING_GLYPHS);
  SelectObject(screen, before);
  DeleteObject(font);
  ReleaseDC(nullptr, screen);
  return lstrcmpiW(given, face) == 0 && found == 4 &&
         std::ranges::find(glyphs, WORD{0xFFFF}) == glyphs.end();
}

/// The card in what this system's fonts can show.
std::string readableCard() {
  constexpr wchar_t kSymbols[] = L"\xF0AC\xF0AD\xF0AE\xF0AF";
  constexpr wchar_t kArrows[] = L"\x2190\x2191\x2192\x2193";
  const wchar_t* const font = textFont();
  Arrows arrows = canWrite(font, DEFAULT_CHARSET, kArrows) ? Arrows::Characters : Arrows::Words;
  if (canWrite(L"Symbol", SYMBOL_CHARSET, kSymbols)) arrows = Arrows::Symbol;
  return helpCard(narrow(font), arrows);
}

DWORD CALLBACK readText(DWORD_PTR text, BYTE* to, LONG wanted, LONG* given) {
  auto& rest = *reinterpret_cast<std::string_view*>(text);
  const std::size_t part = std::min(rest.size(), static_cast<std::size_t>(wanted));
  std::copy_n(rest.data(), part, to);
  rest.remove_prefix(part);
  *given = static_cast<LONG>(part);
  return 0;
}

}  // namespace

HelpWindow::HelpWindow(HWND owner, MiniHelp& help) : owner_(owner), help_(help) {
  // The rich-text control's class comes with the library; it stays until the program ends.
  LoadLibraryExW(L"Msftedit.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  WNDCLASSW own{};
  own.hInstance = module();
  own.hIcon = LoadIconW(module(), MAKEINTRESOURCEW(1));
  own.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  own.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  own.lpszClassName = kHelpClass;
  registerWindows(own);
}

HelpWindow::~HelpWindow() {
  if (window_) DestroyWindow(window_);
  UnregisterClassW(kHelpClass, module());
}

void HelpWindow::show() {
  if (!window_) make();
  if (IsIconic(window_)) ShowWindow(window_, SW_RESTORE);
  ShowWindow(window_, SW_SHOW);
  SetForegroundWindow(window_);
  SetFocus(card_);
}

void HelpWindow::make() {
  window_ = CreateWindowExW(WS_EX_TOPMOST, kHelpClass, wide(MiniHelp::kCaption).c_str(), kHelpStyle,
                            0, 0, 0, 0, owner_, nullptr, module(), this);
  card_ = CreateWindowExW(0, L"RICHEDIT50W", L"",
                          WS_CHILD | WS_VISIBLE | WS_VSCROLL | ES_MULTILINE | ES_READONLY |
                              ES_NOHIDESEL | ES_AUTOVSCROLL,
                          0, 0, 0, 0, window_,
                          reinterpret_cast<HMENU>(static_cast<INT_PTR>(id::HelpCard)), module(),
                          nullptr);
  watch<&HelpWindow::cardMessage>(card_, this);
  speakAs(card_, "Card of keyboard commands");
  if (help_.hasReport()) makeButton();
  fill();
  place();
}

void HelpWindow::makeButton() {
  button_ = CreateWindowExW(0, WC_BUTTONW, L"&Save a report for whoever helps you",
                            WS_CHILD | WS_VISIBLE | BS_PUSHBUTTON, 0, 0, 0, 0, window_,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id::HelpReport)), module(),
                            nullptr);
  watch<&HelpWindow::buttonMessage>(button_, this);
}

void HelpWindow::saveReport() {
  SetCursor(LoadCursorW(nullptr, IDC_WAIT));
  SystemMessageBoxes(window_).show(help_.saveReport(), "", Buttons::Ok);
}

void HelpWindow::fill() {
  const std::string card = readableCard();
  std::string_view rest = card;
  EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&rest), 0, readText};
  SendMessageW(card_, EM_STREAMIN, SF_RTF, reinterpret_cast<LPARAM>(&stream));
  SendMessageW(card_, EM_SETSEL, 0, 0);
}

UINT HelpWindow::resolution() const {
  return layoutResolution(window_, GetDpiForWindow(window_), kHelpWidth, kHelpHeight);
}

void HelpWindow::place() {
  const auto system = static_cast<int>(GetDpiForSystem());
  const UINT dpi = resolution();
  RECT over{};
  GetWindowRect(owner_, &over);
  const Global::Point start = help_.startPlace(
      {Global::twipsFromPixels(over.left, system), Global::twipsFromPixels(over.top, system)});
  const Global::Size size{scaled(kHelpWidth, dpi), scaled(kHelpHeight, dpi)};
  const Global::Point at = Global::placeOnScreen(
      {Global::pixelsFromTwips(start.left, system), Global::pixelsFromTwips(start.top, system)},
      size, GetSystemMetrics(SM_CYCAPTION), screens());
  SetWindowPos(window_, HWND_TOPMOST, at.left, at.top, size.width, size.height, SWP_NOACTIVATE);
  zoom(dpi);
}

/// The control itself knows only the resolution that the system started with.
void HelpWindow::zoom(UINT dpi) {
  SendMessageW(card_, EM_SETZOOM, dpi, static_cast<LPARAM>(GetDpiForSystem()));
  SendMessageW(card_, WM_VSCROLL, SB_TOP, 0);
  auto fonts = std::make_unique<Fonts>(dpi);
  SendMessageW(button_, WM_SETFONT, reinterpret_cast<WPARAM>((*fonts)[Font::Normal]), TRUE);
  fonts_ = std::move(fonts);
}

/// The card fills the window but for a margin in its own colour and the button below it.
void HelpWindow::layOut(int width, int height) {
  const UINT dpi = resolution();
  const int margin = scaled(10, dpi);
  const int strip = button_ ? scaled(26, dpi) + 2 * margin : margin / 2;
  MoveWindow(card_, margin, margin / 2, width - margin, std::max(0, height - margin / 2 - strip),
             TRUE);
  MoveWindow(button_, margin, height - strip + margin, scaled(250, dpi), scaled(26, dpi), TRUE);
}

void HelpWindow::escape() {
  const auto system = static_cast<int>(GetDpiForSystem());
  RECT at{};
  GetWindowRect(window_, &at);
  help_.escaped(
      {Global::twipsFromPixels(at.left, system), Global::twipsFromPixels(at.top, system)});
  DestroyWindow(window_);
}

bool HelpWindow::cardMessage(HWND, UINT message, WPARAM wParam, LPARAM, LRESULT& result) {
  if (message == WM_KEYDOWN && wParam == VK_ESCAPE) {
    escape();
    return true;
  }
  if (message == WM_KEYDOWN && wParam == VK_TAB && button_) {
    SetFocus(button_);
    return true;
  }
  if (message == WM_CHAR && wParam == VK_TAB) return true;
  if (message == WM_SYSCHAR && (wParam == 's' || wParam == 'S') && button_) {
    saveReport();
    return true;
  }
  // It would take the whole text as selected when the tab key or a dialog gives it the focus.
  if (message == WM_GETDLGCODE) {
    result = DLGC_WANTALLKEYS;
    return true;
  }
  return false;
}

bool HelpWindow::buttonMessage(HWND, UINT message, WPARAM wParam, LPARAM, LRESULT&) {
  if (message == WM_KEYDOWN && wParam == VK_ESCAPE) {
    escape();
    return true;
  }
  if (message == WM_KEYDOWN && wParam == VK_TAB) {
    SetFocus(card_);
    return true;
  }
  const bool pressed = (message == WM_KEYDOWN && wParam == VK_RETURN) ||
                       (message == WM_SYSCHAR && (wParam == 's' || wParam == 'S'));
  return pressed && (saveReport(), true);
}

bool HelpWindow::handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT&) {
  const auto* suggested = reinterpret_cast<const RECT*>(lParam);
  switch (message) {
    case WM_SIZE:
      layOut(LOWORD(lParam), HIWORD(lParam));
      return true;
    case WM_SETFOCUS:
      SetFocus(card_);
      return true;
    case WM_COMMAND:
      if (LOWORD(wParam) != id::HelpReport || HIWORD(wParam) != BN_CLICKED) return false;
      saveReport();
      return true;
    case WM_DPICHANGED:
      SetWindowPos(window_, nullptr, suggested->left, suggested->top,
                   suggested->right - suggested->left, suggested->bottom - suggested->top,
                   SWP_NOZORDER | SWP_NOACTIVATE);
      zoom(resolution());
      return true;
    case WM_NCDESTROY:
      window_ = card_ = button_ = nullptr;
      return false;
    default:
      return false;
  }
}

}  // namespace kelvane::win32
