#include "win32/tab_strip.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "ui/control_ids.h"
#include "ui/main_controls.h"
#include "win32/accessible.h"
#include "win32/meter_paint.h"
#include "win32/paint.h"
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
          GetModuleHandleW(nullptr), nullptr)) {
  takeOver(window_, this);
}

void TabStrip::speak() const { speakAs(window_, "Receivers"); }

void TabStrip::show(const TabRow& row) {
  if (row == shown_) return select(row.selected);
  const TabRow before = std::exchange(shown_, row);
  const bool sameTabs =
      before.tabs.size() == row.tabs.size() &&
      std::equal(before.tabs.begin(), before.tabs.end(), row.tabs.begin(),
                 [](const Tab& a, const Tab& b) { return a.caption == b.caption; });
  if (!sameTabs) rebuild();
  for (int i = 0; i < static_cast<int>(row.tabs.size()); ++i) {
    const bool isShown = sameTabs && before.tabs[i].highlighted == row.tabs[i].highlighted;
    if (!isShown)
      SendMessageW(window_, TCM_HIGHLIGHTITEM, i, MAKELPARAM(row.tabs[i].highlighted, 0));
    if (!sameTabs || before.tabs[i].level == row.tabs[i].level) continue;
    const RECT level = levelArea(areaOf(i));
    InvalidateRect(window_, &level, FALSE);
  }
  select(row.selected);
}

void TabStrip::select(int tab) {
  shown_.selected = tab;
  if (selected() != tab) SendMessageW(window_, TCM_SETCURSEL, static_cast<WPARAM>(tab), 0);
  // The control itself paints less of a tab than we do.
  if (tab == marked_) return;
  for (const int changed : {std::exchange(marked_, tab), tab}) {
    const RECT area = areaOf(changed);
    InvalidateRect(window_, &area, FALSE);
  }
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

void TabStrip::place(UINT dpi, const Fonts& fonts, const Palette& palette) {
  dpi_ = dpi;
  font_ = fonts[Font::Normal];
  palette_ = &palette;
  SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(fonts[Font::Normal]), TRUE);
  SendMessageW(window_, TCM_SETITEMSIZE, 0,
               MAKELPARAM(scaled(kMainWidth, dpi) / 9, scaled(kTabHeight, dpi)));
  SetWindowPos(window_, nullptr, 0, scaled(3, dpi), scaled(kMainWidth, dpi),
               scaled(kTabHeight + 3, dpi), SWP_NOZORDER | SWP_NOACTIVATE);
  InvalidateRect(window_, nullptr, FALSE);
}

int TabStrip::selected() const {
  return static_cast<int>(SendMessageW(window_, TCM_GETCURSEL, 0, 0));
}

/// As wide and as high as the tab is said to be, from the strip's top to its bottom.
RECT TabStrip::areaOf(int tab) const {
  RECT area{}, strip{};
  SendMessageW(window_, TCM_GETITEMRECT, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&area));
  GetClientRect(window_, &strip);
  return {area.left, 0, area.right, strip.bottom};
}

RECT TabStrip::levelArea(const RECT& tab) const {
  const LONG bottom = tab.bottom - scaled(5, dpi_);
  return {tab.left + scaled(8, dpi_), bottom - scaled(3, dpi_), tab.right - scaled(8, dpi_),
          bottom};
}

void TabStrip::paint() const {
  const Painting on(window_);
  const Colours& colours = palette_->windows;
  on.fill(on.dirty(), resolved(colours.window));
  const RECT& strip = on.area();
  on.fill({strip.left, strip.bottom - 1, strip.right, strip.bottom}, resolved(colours.line));
  for (int i = 0; i < static_cast<int>(shown_.tabs.size()); ++i) paintTab(on, i);
}

void TabStrip::paintTab(const Painting& on, int index) const {
  const RECT area = areaOf(index);
  RECT seen;
  if (!IntersectRect(&seen, &area, &on.dirty())) return;
  const Tab& tab = shown_.tabs[index];
  const bool chosen = index == selected();
  const Colours& colours = palette_->windows;
  paintLevelLine(on.dc(), levelArea(area), tab.level, colours);
  if (chosen)
    on.fill({area.left, area.bottom - scaled(3, dpi_), area.right, area.bottom},
            resolved(colours.accent));
  if (seen.top >= levelArea(area).top) return;
  const int size = scaled(8, dpi_), top = scaled(6, dpi_);
  RECT disc{area.left + scaled(8, dpi_), top, area.left + scaled(8, dpi_) + size, top + size};
  const COLORREF mark = resolved(tab.highlighted ? colours.accent : colours.quiet);
  on.round(disc, size, tab.highlighted ? mark : resolved(colours.window), mark);
  RECT name{disc.right + scaled(5, dpi_), 0, area.right - scaled(4, dpi_), scaled(18, dpi_)};
  on.text(wide(tab.caption).c_str(), name, font_, resolved(chosen ? colours.text : colours.quiet),
          DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS);
}

bool TabStrip::handle(UINT message, WPARAM, LPARAM, LRESULT& result) {
  if (message == WM_PAINT) paint();
  if (message == WM_ERASEBKGND) result = 1;
  return message == WM_PAINT || message == WM_ERASEBKGND;
}

}  // namespace kelvane::win32
