#include "win32/config_dialog.h"

#include <uxtheme.h>

#include <array>
#include <utility>

#include "base/win32/system_library.h"
#include "ui/alt_letters.h"
#include "ui/control_ids.h"
#include "win32/colours.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr int kStripTop = 8, kStripHeight = 354, kOkHeight = 26;
/// Around and between strip and buttons, without the window's own frame.
constexpr int kAround = 34;
constexpr int kConfigWidth = 420;
constexpr int kOkTop = kStripTop + kStripHeight + 10;

struct PlacedFrame {
  Control ConfigView::*frame;
  DialogArea area;
  int boxes;  ///< of the table of options that lie in the frame
};

constexpr std::array kFrames{PlacedFrame{&ConfigView::Windows, {20, 42, 380, 92}, 2},
                             PlacedFrame{&ConfigView::Tuned, {20, 140, 380, 66}, 2},
                             PlacedFrame{&ConfigView::Other, {20, 212, 380, 138}, 4}};
constexpr int kFirstBox = 20, kBoxStep = 21;

}  // namespace

ConfigDialog::ConfigDialog(HWND owner, Config& config)
    : DialogWindow({L"KelvaneConfig", config.view().caption, owner, kConfigWidth,
                    kStripHeight + kOkHeight + kAround}),
      config_(config) {
  makeGeneral();
  makeButtons();
  config_.setListener([this] { show(); });
  show();
}

ConfigDialog::~ConfigDialog() { config_.setListener({}); }

void ConfigDialog::makeGeneral() {
  const ConfigView& view = config_.view();
  int frameId = id::ConfigFrames;
  auto box = kOptionBoxes.begin();
  for (const PlacedFrame& frame : kFrames) {
    add({frameId++, WC_BUTTONW, BS_GROUPBOX | WS_CLIPSIBLINGS, (view.*frame.frame).text,
         frame.area});
    int top = frame.area.top + kFirstBox;
    for (int i = 0; i < frame.boxes; ++i, ++box, top += kBoxStep) {
      const int width = box->id == id::DDEOAct ? 130 : 356;
      add({box->id,
           WC_BUTTONW,
           BS_AUTOCHECKBOX | WS_TABSTOP,
           (view.*box->box).text,
           {32, top, width, 18},
           (view.*box->box).tip});
    }
    if (frame.frame == &ConfigView::Windows) makeColours();
  }
  add({id::DDEServer, WC_STATICW, SS_RIGHT, "Server:", {164, 296, 60, 18}});
  add({id::DDESrvNam,
       WC_EDITW,
       ES_AUTOHSCROLL | WS_TABSTOP,
       view.DDESrvNam.text,
       {230, 293, 158, 23},
       view.DDESrvNam.tip});
  makePlace();
}

/// In the frame "Other", below its boxes.
void ConfigDialog::makePlace() {
  add({id::WndPlaceLabel, WC_STATICW, 0, "My &place:", {32, 323, 62, 18}});
  add({id::WndPlace,
       WC_EDITW,
       ES_AUTOHSCROLL | WS_TABSTOP,
       config_.view().WndPlace.text,
       {98, 320, 150, 23},
       config_.view().WndPlace.tip});
}

/// In the frame "Windows", below its boxes.
void ConfigDialog::makeColours() {
  add({id::ColoursLabel, WC_STATICW, 0, "Co&lours:", {32, 107, 62, 18}});
  const HWND box = add({id::Colours,
                        WC_COMBOBOXW,
                        CBS_DROPDOWNLIST | WS_TABSTOP | WS_VSCROLL,
                        "",
                        {98, 103, 150, 140},
                        "What the panel and the tables are drawn with"});
  for (const std::string_view name : kColourChoices)
    SendMessageW(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(std::string(name)).c_str()));
}

void ConfigDialog::makeButtons() {
  const ConfigView& view = config_.view();
  for (int panel = 0; panel < Config::General; ++panel) {
    add({id::Panel + panel, WC_STATICW, SS_NOPREFIX, view.All.tabs[panel].tip, {24, 48, 372, 40}});
  }
  add({id::Panel + static_cast<int>(Config::General), WC_STATICW, 0, "", {20, 40, 0, 0}});
  add({id::cmdOK,
       WC_BUTTONW,
       BS_DEFPUSHBUTTON | WS_TABSTOP,
       view.cmdOK.text,
       {kConfigWidth - 200, kOkTop, 92, kOkHeight}});
  add({id::cmdCancel,
       WC_BUTTONW,
       BS_PUSHBUTTON | WS_TABSTOP,
       view.cmdCancel.text,
       {kConfigWidth - 100, kOkTop, 92, kOkHeight}});
  // Last, and so beneath what lies on it.
  add({id::All,
       WC_TABCONTROLW,
       WS_TABSTOP | WS_CLIPSIBLINGS | TCS_TOOLTIPS,
       "",
       {8, kStripTop, kConfigWidth - 16, kStripHeight},
       "",
       0,
       "Options"});
}

void ConfigDialog::show() {
  const ConfigView& view = config_.view();
  showTabs();
  for (const OptionBox& row : kOptionBoxes) check(row.id, (view.*row.box).pressed);
  const bool general = view.All.selected == Config::General;
  const auto visible = [this](int id, bool on) { ShowWindow(item(id), on ? SW_SHOWNA : SW_HIDE); };
  for (const OptionBox& row : kOptionBoxes) visible(row.id, general);
  for (int frame = 0; frame < static_cast<int>(kFrames.size()); ++frame)
    visible(id::ConfigFrames + frame, general);
  for (const int rest : {id::DDEServer, id::DDESrvNam, id::ColoursLabel, id::Colours,
                         id::WndPlaceLabel, id::WndPlace})
    visible(rest, general);
  SendMessageW(item(id::Colours), CB_SETCURSEL, static_cast<WPARAM>(view.colours), 0);
  for (int panel = 0; panel <= Config::General; ++panel)
    visible(id::Panel + panel, panel == view.All.selected);
}

void ConfigDialog::showTabs() {
  const TabRow& now = config_.view().All;
  const HWND strip = item(id::All);
  const TabRow before = std::exchange(shown_, now);
  for (int tab = 0; tab < static_cast<int>(now.tabs.size()); ++tab) {
    const bool exists = tab < static_cast<int>(before.tabs.size());
    if (exists && before.tabs[tab] == now.tabs[tab]) continue;
    std::wstring caption = wide(now.tabs[tab].caption);
    TCITEMW text{};
    text.mask = TCIF_TEXT;
    text.pszText = caption.data();
    SendMessageW(strip, exists ? TCM_SETITEMW : TCM_INSERTITEMW, static_cast<WPARAM>(tab),
                 reinterpret_cast<LPARAM>(&text));
  }
  SendMessageW(strip, TCM_SETCURSEL, static_cast<WPARAM>(now.selected), 0);
}

void ConfigDialog::command(int control, int notice) {
  if (control == IDOK) return confirm();
  if (control == IDCANCEL) {
    config_.cmdCancel_Click();
    return close();
  }
  if (control == id::DDESrvNam && notice == EN_CHANGE) config_.typed(text(control));
  if (control == id::WndPlace && notice == EN_CHANGE) config_.placeTyped(text(control));
  if (control == id::Colours && notice == CBN_SELCHANGE)
    config_.coloursChosen(static_cast<int>(SendMessageW(item(control), CB_GETCURSEL, 0, 0)));
  if (notice == BN_CLICKED) config_.ticked(control, checked(control));
}

void ConfigDialog::confirm() {
  const std::string problem = config_.cmdOK_Click();
  if (!problem.empty())
    MessageBoxW(window(), wide(problem).c_str(), L"Options", MB_OK | MB_ICONWARNING);
  close();
}

bool ConfigDialog::notified(const NMHDR& notice, LRESULT&) {
  if (notice.code == TTN_GETDISPINFOW && notice.idFrom < shown_.tabs.size()) {
    tip_ = wide(shown_.tabs[notice.idFrom].tip);
    // Windows says by the header which of its records this is the beginning of.
    auto& info = const_cast<NMTTDISPINFOW&>(reinterpret_cast<const NMTTDISPINFOW&>(notice));
    info.lpszText = tip_.data();
  }
  if (notice.code != TCN_SELCHANGE || notice.idFrom != id::All) return false;
  config_.All_Click(static_cast<int>(SendMessageW(notice.hwndFrom, TCM_GETCURSEL, 0, 0)));
  show();
  return true;
}

bool ConfigDialog::keyDown(int keyCode, int shift) {
  if (!config_.keyDown(keyCode, shift)) return false;
  show();
  return true;
}

bool ConfigDialog::accelerator(wchar_t character) {
  for (int tab = 0; tab < static_cast<int>(shown_.tabs.size()); ++tab) {
    if (markedLetter(shown_.tabs[tab].caption) != lowerCase(character)) continue;
    config_.All_Click(tab);
    show();
    return true;
  }
  return false;
}

/// The list of receivers is a large window of its own, and this one has no more to say beneath it.
bool ConfigDialog::makesRoom() const { return config_.view().All.selected == Config::Drivers; }

/// Under a visual style the pages of a tab strip are lighter than the dialog.
bool ConfigDialog::hasVisualStyle() {
  static auto* const ask = systemFunction<decltype(IsAppThemed)>(L"uxtheme.dll", "IsAppThemed");
  return ask && ask();
}

HBRUSH ConfigDialog::background(int control) const {
  const bool onPage = control != id::cmdOK && control != id::cmdCancel;
  return onPage && hasVisualStyle() && !highContrast() ? GetSysColorBrush(COLOR_WINDOW) : nullptr;
}

}  // namespace kelvane::win32
