#include "components/ambrel/win32/source_window.h"

#include <shellapi.h>

#include <utility>

#include "base/safe_file.h"
#include "components/ambrel/win32/dialog_ids.h"

namespace kelvane::ambrel {

namespace {

constexpr wchar_t kFilter[] =
    L"Schedules and sites (*.csv, *.zip, *.txt)\0*.csv;*.zip;*.txt\0All files\0*.*\0";

std::string cellOf(const SourceRow& row, int column) {
  switch (column) {
    case 0:
      return row.kind;
    case 1:
      return row.name;
    case 2:
      return row.owner;
    case 3:
      return row.contents;
    case 4:
      return row.age;
    default:
      return row.problems;
  }
}

bool start(const wchar_t* file, const wchar_t* words) {
  return reinterpret_cast<INT_PTR>(
             ShellExecuteW(nullptr, L"open", file, words, nullptr, SW_SHOWNORMAL)) > 32;
}

/// By its full name: a program of that name in the current folder is another one.
std::wstring systemEditor() {
  wchar_t folder[MAX_PATH] = L"";
  GetSystemDirectoryW(folder, MAX_PATH);
  return folder + std::wstring(L"\\notepad.exe");
}

/// Opens a text in the editor that the operator has for texts, or in the system's own; what went
/// wrong, in words.
std::string openInEditor(const std::filesystem::path& file) {
  const std::wstring quoted = L"\"" + file.wstring() + L"\"";
  if (start(file.c_str(), nullptr) || start(systemEditor().c_str(), quoted.c_str())) return {};
  return "No program could be started to edit " + pathText(file) + ".";
}

}  // namespace

SourceWindow::SourceWindow(HWND owner, AmbrelCore& core)
    : ListWindow(
          {L"KelvaneSource", "Source of the frequency database", owner, 680, 350, true, 820, 440},
          core) {
  makeLists();
  makeButtons();
  rows().setColumns({{"Kind", 110},
                     {"File", 130},
                     {"Whose", 56},
                     {"Contents", 150},
                     {"Age", 100, false, true},
                     {"Problems", 80}},
                    96);
  setText(id::Folder, ownFolderText(core_));
  show();
  rows().select(0);
}

void SourceWindow::makeLists() {
  using namespace win32;
  add({id::Label, WC_STATICW, 0, "&Lists and band plans:", {12, 10, 300, 16}});
  addRows(id::Lists, "Lists and band plans", {12, 28, 656, 118},
          [this](std::size_t row, int column) {
            return row < sources_.size() ? cellOf(sources_[row], column) : std::string();
          });
  add({id::Label, WC_STATICW, 0, "&Details:", {12, 154, 300, 16}, "", MoveDown});
  add({id::Details,
       WC_EDITW,
       ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_VSCROLL | WS_TABSTOP,
       "",
       {12, 172, 656, 72},
       "",
       Widen | MoveDown});
  add({id::Label, WC_STATICW, 0, "Own &files are in:", {12, 256, 100, 16}, "", MoveDown});
  add({id::Folder,
       WC_EDITW,
       ES_READONLY | ES_AUTOHSCROLL | WS_TABSTOP,
       "",
       {114, 252, 554, 23},
       "Lists and band plans here are used in the place of shipped ones of the same name",
       Widen | MoveDown});
  addStatus({12, 280, 656, 32});
}

void SourceWindow::makeButtons() {
  struct Button {
    int id;
    const char* caption;
    int width;
    const char* tip;
  };
  constexpr Button kButtons[] = {
      {id::Load, "Load &schedule...", 122,
       "Take in a schedule that you downloaded: EiBi's .csv, HFCC's .zip, EiBi's README"},
      {id::PutAside, "&Put schedule aside", 128, "Go on without the schedule; its file is kept"},
      {id::OwnSets, "Own s&ets...", 94, "Edit known frequencies of your own"},
      {id::OwnPlan, "Own &band plan...", 122, "Edit a band plan of your own for this region"},
      {id::ReadAnew, "&Read anew", 88, "Read all files again, after you edited one"},
      {IDCANCEL, "&Close", 62, ""}};
  int left = 12;
  for (const Button& button : kButtons) {
    const int follow = button.id == IDCANCEL ? win32::MoveRight | win32::MoveDown : win32::MoveDown;
    const DWORD kind = button.id == id::Load ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
    add({button.id,
         WC_BUTTONW,
         kind | WS_TABSTOP,
         button.caption,
         {left, 316, button.width, 26},
         button.tip,
         follow});
    left += button.width + 8;
  }
}

int SourceWindow::defaultButton() const { return id::Load; }

void SourceWindow::command(int control, int notice) {
  if (notice != BN_CLICKED) return ListWindow::command(control, notice);
  switch (control) {
    case id::Load:
      return chooseSchedule();
    case id::PutAside:
      return begin(core_.dropSchedule());
    case id::ReadAnew:
      return begin(core_.reload());
    case id::OwnSets:
      return edit(ownKnownFile);
    case id::OwnPlan: {
      const Long region = core_.bands() ? core_.bands()->region() : 0;
      return edit([region](const DataFiles& files) { return ownPlanFile(files, region); });
    }
    default:
      return ListWindow::command(control, notice);
  }
}

bool SourceWindow::notified(const NMHDR& notice, LRESULT& result) {
  if (notice.idFrom != id::Lists || notice.code != LVN_ITEMCHANGED)
    return ListWindow::notified(notice, result);
  showDetails();
  return true;
}

void SourceWindow::show() {
  std::vector<SourceRow> sources = sourceRows(core_);
  if (sources != sources_) {
    sources_ = std::move(sources);
    const std::size_t selected = rows().selected();
    rows().setCount(sources_.size());
    rows().select(std::min(selected, rows().count() - 1));
    showDetails();
  }
  setText(id::Status, refusal_->empty() ? sourceStatus(core_) : *refusal_);
}

void SourceWindow::showDetails() {
  const std::size_t row = rows().selected();
  setText(id::Details, row < sources_.size() ? sourceDetails(sources_[row]) : std::string());
}

void SourceWindow::begin(bool begun) {
  *refusal_ = begun ? "" : "Files are being read already; try again when that is done.";
  show();
}

void SourceWindow::chooseSchedule() {
  picker_.ask(
      {window(), L"Load a schedule", std::wstring(kFilter, std::size(kFilter))},
      [&core = core_, refusal = refusal_](const std::filesystem::path& file) {
        core.post([&core, refusal, file] {
          *refusal = core.importSchedule(file)
                         ? ""
                         : "Files are being read already; try again when that is done.";
        });
      },
      refused("No file was chosen"));
}

Failed SourceWindow::refused(const std::string& what) {
  return [&core = core_, refusal = refusal_, what](const std::string& why) {
    core.post([refusal, words = what + ": " + why + "."] { *refusal = words; });
  };
}

void SourceWindow::edit(MakeFile make) {
  if (!core_.files()) return;
  const auto job = [&core = core_, refusal = refusal_, make = std::move(make),
                    files = *core_.files()] {
    const OwnFile own = make(files);
    core.post([refusal, own] { *refusal = own ? openInEditor(*own) : own.reason(); });
  };
  background_.run("making a file of the operator's own", job, refused("The file was not made"));
}

}  // namespace kelvane::ambrel
