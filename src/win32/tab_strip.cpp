#include "win32/tab_strip.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "ui/control_ids.h"
#include "ui/main_controls.h"
#include "win32/accessible.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr int kTabHeight = 23;

}  // namespace

TabStrip::TabStrip(HWND parent)
    : window_(CreateWindowExW(
          0, WC_TABCONTROLW, L"Receivers",
          WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | TCS_FIXEDWIDTH | TCS_FOCUSNEVER | TCS_TOOLTIPS,
          0, 0, 0, 0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id::TabStrip)),
          GetModuleHandleW(nullptr), nullptr)) {}

void TabStrip::speak() const { speakAs(window_, "Receivers"); }

void TabStrip::show(const TabRow& row) {
  if (row == shown_) return select(row.selected);
  const TabRow before = std::exchange(shown_, row);
  const bool sameTabs =
      before.tabs.size() == row.tabs.size() &&
      std::equal(before.tabs.begin(), before.tabs.end(), row.tabs.begin(),
                 [](const Tab& a, const Tab& b) { return a.caption == b.caption; });
  if (!sameTabs) rebuild();
  for (int i = 0; i < static_cast<int>(row.tabs.size()); ++i)
    SendMessageW(window_, TCM_HIGHLIGHTITEM, i, MAKELPARAM(row.tabs[i].highlighted, 0));
  select(row.selected);
}

void TabStrip::select(int tab) {
  shown_.selected = tab;
  if (selected() != tab) SendMessageW(window_, TCM_SETCURSEL, static_cast<WPARAM>(tab), 0);
}

bool TabStrip::explains(const NMHDR& notice) {
  if (notice.code != TTN_GETDISPINFOW || notice.idFrom >= shown_.tabs.size()) return false;
  const auto tips = reinterpret_cast<HWND>(SendMessageW(window_, TCM_GETTOOLTIPS, 0, 0));
  if (notice.hwndFrom != tips) return false;
  tip_ = wide(shown_.tabs[notice.idFrom].tip);
  // Windows says by the header which of its records this is the beginning of.
  auto& info = const_cast<NMTTDISPINFOW&>(reinterpret_cast<const NMTTDISPINFOW&>(notice));
  info.lpszText = tip_.data();
  return true;
}

void TabStrip::rebuild() {
  SendMessageW(window_, TCM_DELETEALLITEMS, 0, 0);
  for (int i = 0; i < static_cast<int>(shown_.tabs.size()); ++i) {
    std::wstring text = wide(shown_.tabs[i].caption);
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = text.data();
    SendMessageW(window_, TCM_INSERTITEMW, i, reinterpret_cast<LPARAM>(&item));
  }
}

void TabStrip::place(UINT dpi, const Fonts& fonts) {
  SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(fonts[Font::Normal]), TRUE);
  SendMessageW(window_, TCM_SETITEMSIZE, 0,
               MAKELPARAM(scaled(kMainWidth, dpi) / 9, scaled(kTabHeight, dpi)));
  SetWindowPos(window_, nullptr, 0, scaled(3, dpi), scaled(kMainWidth, dpi),
               scaled(kTabHeight + 3, dpi), SWP_NOZORDER | SWP_NOACTIVATE);
}

int TabStrip::selected() const {
  return static_cast<int>(SendMessageW(window_, TCM_GETCURSEL, 0, 0));
}

}  // namespace kelvane::win32
