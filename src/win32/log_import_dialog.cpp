#include "win32/log_import_dialog.h"

#include "ui/control_ids.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr int kLogImportWidth = 720, kLogImportHeight = 360;
constexpr int kLogImportButtonTop = kLogImportHeight - 34, kLogImportGridTop = 64;

}  // namespace

LogImportDialog::LogImportDialog(HWND owner, DataLog& log, const ScreenColours& colours)
    : DialogWindow({L"KelvaneLogImport", "Import into the station log", owner, kLogImportWidth,
                    kLogImportHeight, true, 1000, 500}),
      log_(log),
      import_(log.import()) {
  constexpr int kInside = kLogImportWidth - 16;
  add({id::LogImpWords,
       WC_STATICW,
       SS_NOPREFIX | SS_ENDELLIPSIS,
       "",
       {8, 8, kInside, 18},
       "",
       Widen,
       "",
       true});
  add({id::LogImpLabel, WC_STATICW, 0, "The file's ti&mes are:", {8, 37, 122, 18}});
  const HWND times = add({id::LogImpTimes,
                          WC_COMBOBOXW,
                          CBS_DROPDOWNLIST | WS_TABSTOP,
                          "",
                          {132, 33, 180, 120},
                          "What the times of a table mean that does not say it itself"});
  for (const wchar_t* choice : {L"UTC", L"This computer's time"})
    SendMessageW(times, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(choice));
  const HWND grid =
      add({id::LogImpGrd,
           GridWindow::kClass,
           GridWindow::kStyle | WS_BORDER,
           "",
           {8, kLogImportGridTop, kInside, kLogImportButtonTop - kLogImportGridTop - 8},
           "",
           Widen | Heighten});
  grid_ = std::make_unique<GridWindow>(grid, import_->grid(), "What the import would do", colours);
  addEnds({kLogImportWidth - 200, kLogImportButtonTop, "&Take in",
           "Take these reports into the log; one Undo takes it all back", "Cancel",
           MoveRight | MoveDown, 92});
  show();
}

void LogImportDialog::show() {
  if (!window()) return;
  if (log_.import() != import_) return close();
  setText(id::LogImpWords, import_->words());
  setTip(id::LogImpWords, import_->words());
  const LogReading& reading = import_->reading();
  SendMessageW(item(id::LogImpTimes), CB_SETCURSEL, static_cast<WPARAM>(reading.times), 0);
  enable(id::LogImpTimes, !reading.timesAreKnown && reading.form == "Table" && !log_.busy());
  enable(IDOK, import_->ready() && !log_.busy());
  grid_->show();
}

void LogImportDialog::command(int control, int notice) {
  if (control == IDOK) log_.takeIn();
  if (control == IDCANCEL) log_.dropImport();
  if (control == id::LogImpTimes && notice == CBN_SELCHANGE)
    log_.importTimes(static_cast<LogTimes>(SendMessageW(item(control), CB_GETCURSEL, 0, 0)));
  show();
}

bool LogImportDialog::keyDown(int keyCode, int shift) {
  // Nothing is edited here: Enter is for the default button.
  return keyCode != VK_RETURN && grid_->hasFocus() && grid_->keyDown(keyCode, shift);
}

bool LogImportDialog::wheel(int notches) {
  grid_->scrollWheel(notches);
  return true;
}

}  // namespace kelvane::win32
