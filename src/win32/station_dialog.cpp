#include "win32/station_dialog.h"

#include <array>
#include <utility>

#include "ui/control_ids.h"
#include "ui/key_codes.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr int kStationsWidth = 760, kStationsHeight = 380, kStationsEdge = 8;
constexpr int kStationsButtonTop = kStationsHeight - kStationsEdge - 26;
constexpr int kStationsStatusTop = kStationsButtonTop - 24;
constexpr int kStationsGridTop = 40;

constexpr int kImportWidth = 760, kImportHeight = 380;
constexpr int kImportButtonTop = kImportHeight - 34, kImportGridTop = 92;

constexpr std::array<const char*, 3> kRules = {"Merge with what is there", "Replace what is there",
                                               "Skip what is there"};
constexpr std::array<std::pair<char, const char*>, 4> kDelimiters = {
    {{',', "Comma"}, {';', "Semicolon"}, {'\t', "Tab"}, {'|', "Bar |"}}};
constexpr std::array<const char*, 4> kUnits = {"As it looks", "Hz", "kHz", "MHz"};

void addChoice(HWND box, std::string_view text) {
  SendMessageW(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(std::string(text)).c_str()));
}
int choiceOf(HWND box) { return static_cast<int>(SendMessageW(box, CB_GETCURSEL, 0, 0)); }
void choose(HWND box, int choice) {
  if (choiceOf(box) != choice) SendMessageW(box, CB_SETCURSEL, static_cast<WPARAM>(choice), 0);
}

}  // namespace

ImportDialog::ImportDialog(HWND owner, StationEditor& editor, const ScreenColours& colours)
    : DialogWindow({L"KelvaneImport", "Import into My stations", owner, kImportWidth, kImportHeight,
                    true, 980, 500}),
      editor_(editor) {
  make(colours);
  show();
}

void ImportDialog::make(const ScreenColours& colours) {
  add({id::ImpWords,
       WC_STATICW,
       SS_NOPREFIX | SS_ENDELLIPSIS,
       "",
       {8, 8, kImportWidth - 16, 18},
       "",
       Widen,
       "",
       true});
  makeBoxes();
  const HWND grid =
      add({id::ImpGrd,
           GridWindow::kClass,
           GridWindow::kStyle | WS_BORDER,
           "",
           {8, kImportGridTop, kImportWidth - 16, kImportButtonTop - kImportGridTop - 8},
           "",
           Widen | Heighten});
  grid_ =
      std::make_unique<GridWindow>(grid, editor_.importGrid(), "What the import would do", colours);
  addEnds({kImportWidth - 200, kImportButtonTop, "&Take in",
           "Take these stations into the list; one Undo takes it all back", "Cancel",
           MoveRight | MoveDown, 92});
}

void ImportDialog::makeBoxes() {
  struct Box {
    int id, left, top, label, width;
    const char* caption;
    const char* tip;
  };
  constexpr Box kBoxes[] = {
      {id::ImpRule, 8, 31, 64, 190,
       "&Stations:", "What becomes of a station that the list has already"},
      {id::ImpDelimiter, 8, 61, 64, 92, "&Delimiter:", "What parts the columns"},
      {id::ImpUnit, 178, 61, 32, 92, "&Unit:", "In what the frequencies are written"},
      {id::ImpColumn, 318, 61, 54, 170, "&Column:", "A column of the file"},
      {id::ImpMeaning, 558, 61, 40, 130, "&holds:", "What that column holds"}};
  for (const Box& box : kBoxes) {
    add({id::ImpLabel, WC_STATICW, 0, box.caption, {box.left, box.top + 4, box.label, 18}});
    add({box.id,
         WC_COMBOBOXW,
         CBS_DROPDOWNLIST | WS_TABSTOP | WS_VSCROLL,
         "",
         {box.left + box.label + 2, box.top, box.width, 260},
         box.tip});
  }
  for (const char* rule : kRules) addChoice(item(id::ImpRule), rule);
  for (const auto& [sign, name] : kDelimiters) addChoice(item(id::ImpDelimiter), name);
  for (const char* unit : kUnits) addChoice(item(id::ImpUnit), unit);
  for (const std::string_view field : formats::kFieldNames) addChoice(item(id::ImpMeaning), field);
}

void ImportDialog::show() {
  StationImport* const import = editor_.import();
  if (!import) return close();
  setText(id::ImpWords, import->words());
  setTip(id::ImpWords, import->words());
  enable(IDOK, import->ready());
  choose(item(id::ImpRule), static_cast<int>(import->rule()));
  const formats::TableShape& shape = import->reading().shape;
  const bool table = import->isTable() && !shape.fields.empty();
  for (const int control : {id::ImpDelimiter, id::ImpUnit, id::ImpColumn, id::ImpMeaning})
    enable(control, table);
  if (table) {
    for (std::size_t i = 0; i < kDelimiters.size(); ++i)
      if (kDelimiters[i].first == shape.delimiter)
        choose(item(id::ImpDelimiter), static_cast<int>(i));
    choose(item(id::ImpUnit), static_cast<int>(shape.unit));
    fillColumns();
    fillMeaning();
  }
  grid_->show();
}

void ImportDialog::fillColumns() {
  const auto& headings = editor_.import()->reading().shape.headings;
  if (headings == headings_) return;
  headings_ = headings;
  const HWND box = item(id::ImpColumn);
  SendMessageW(box, CB_RESETCONTENT, 0, 0);
  for (const std::string& heading : headings_)
    addChoice(box, heading.empty() ? "(no heading)" : heading);
  choose(box, 0);
}

void ImportDialog::fillMeaning() {
  const auto& fields = editor_.import()->reading().shape.fields;
  const auto column = static_cast<std::size_t>(choiceOf(item(id::ImpColumn)));
  if (column < fields.size()) choose(item(id::ImpMeaning), static_cast<int>(fields[column]));
}

void ImportDialog::shapeChosen() {
  formats::TableShape shape = editor_.import()->reading().shape;
  const auto column = static_cast<std::size_t>(choiceOf(item(id::ImpColumn)));
  const char delimiter =
      kDelimiters[static_cast<std::size_t>(choiceOf(item(id::ImpDelimiter)))].first;
  // Other columns mean nothing yet: they are guessed anew.
  if (delimiter != shape.delimiter) return editor_.import()->setDelimiter(delimiter);
  shape.unit = static_cast<lists::Unit>(choiceOf(item(id::ImpUnit)));
  if (column < shape.fields.size())
    shape.fields[column] = static_cast<formats::Field>(choiceOf(item(id::ImpMeaning)));
  editor_.import()->setShape(shape);
}

void ImportDialog::command(int control, int notice) {
  StationImport* const import = editor_.import();
  if (!import) return;
  if (control == IDCANCEL) return editor_.dropImport();
  if (control == IDOK) return editor_.takeIn();
  if (notice != CBN_SELCHANGE || import->busy()) return;
  if (control == id::ImpColumn) return fillMeaning();
  if (control == id::ImpRule)
    import->setRule(static_cast<formats::Rule>(choiceOf(item(id::ImpRule))));
  else
    shapeChosen();
  show();
}

bool ImportDialog::keyDown(int keyCode, int shift) {
  // Nothing is edited here: Enter is for the default button.
  return keyCode != VK_RETURN && grid_->hasFocus() && grid_->keyDown(keyCode, shift);
}

bool ImportDialog::wheel(int notches) {
  grid_->scrollWheel(notches);
  return true;
}

StationDialog::StationDialog(HWND owner, StationEditor& editor, const ScreenColours& colours)
    : DialogWindow({L"KelvaneStations", "My stations", owner, kStationsWidth, kStationsHeight, true,
                    1000, 560}),
      editor_(editor),
      colours_(colours) {
  GridWindow::registerClass(reinterpret_cast<HINSTANCE>(GetModuleHandleW(nullptr)));
  make(colours);
  editor_.setListener([this] { show(); });
  takeFiles();
}

StationDialog::~StationDialog() { editor_.setListener({}); }

void StationDialog::fileDropped(const std::wstring& name) {
  if (!name.empty()) editor_.importFile(name);
}

void StationDialog::make(const ScreenColours& colours) {
  makeFilter();
  const HWND grid =
      add({id::StnGrd,
           GridWindow::kClass,
           GridWindow::kStyle | WS_BORDER,
           "",
           {8, kStationsGridTop, kStationsWidth - 16, kStationsStatusTop - kStationsGridTop - 6},
           "",
           Widen | Heighten});
  grid_ = std::make_unique<GridWindow>(grid, editor_.grid(), "My stations", colours);
  add({id::StnStatus,
       WC_STATICW,
       SS_NOPREFIX | SS_ENDELLIPSIS,
       "",
       {8, kStationsStatusTop, kStationsWidth - 16, 18},
       "",
       Widen | MoveDown,
       "",
       true});
  makeButtons();
}

/// What is shown, and in what form it is exported.
void StationDialog::makeFilter() {
  constexpr DWORD kList = CBS_DROPDOWNLIST | WS_TABSTOP | WS_VSCROLL;
  add({id::StnLabel, WC_STATICW, 0, "&Search:", {8, 13, 48, 18}});
  add({id::StnSearch,
       WC_EDITW,
       ES_AUTOHSCROLL | WS_TABSTOP,
       "",
       {58, 9, 160, 23},
       "What name, group, tags or note hold, or the kHz begin with"});
  add({id::StnLabel, WC_STATICW, 0, "&Group:", {230, 13, 42, 18}});
  add({id::StnGroup,
       WC_COMBOBOXW,
       kList,
       "",
       {274, 9, 140, 300},
       "Shows the stations of one group"});
  add({id::StnFavourites,
       WC_BUTTONW,
       BS_AUTOCHECKBOX | WS_TABSTOP,
       "&Favourites",
       {426, 12, 92, 18},
       "Shows favourites alone"});
  add({id::StnLabel, WC_STATICW, 0, "E&xport as:", {524, 13, 64, 18}, "", MoveRight});
  const HWND forms = add({id::StnFormat,
                          WC_COMBOBOXW,
                          kList,
                          "",
                          {590, 9, 162, 300},
                          "The form in which Export writes a list",
                          MoveRight});
  for (int form = 0; form < static_cast<int>(formats::Format::Count); ++form)
    addChoice(forms, formats::nameOf(static_cast<formats::Format>(form)).name);
  choose(forms, 0);
}

void StationDialog::makeButtons() {
  struct Button {
    int id, width;
    const char* caption;
    const char* tip;
  };
  constexpr Button kButtons[] = {
      {IDOK, 68, "&Tune",
       "Tune the receiver to the station (Shift and an arrow does it row by row)"},
      {id::StnTake, 102, "Take &present", "Take the receiver's present setting into the list"},
      {id::StnAdd, 68, "&New", "Add a station"},
      {id::StnRemove, 72, "&Remove",
       "Remove the marked stations, or this one (Delete); Space marks"},
      {id::StnUndo, 60, "&Undo", "Take the last change back (Ctrl+Z)"},
      {id::StnRedo, 60, "Red&o", "Do it again (Ctrl+Y)"},
      {id::StnImport, 80, "&Import...",
       "Take in a list of another program; a file can be dropped here too"},
      {id::StnExport, 80, "&Export...",
       "Write the marked stations, or else those shown, in the form chosen above"}};
  int left = 8;
  for (const Button& button : kButtons) {
    add({button.id,
         WC_BUTTONW,
         BS_PUSHBUTTON | WS_TABSTOP,
         button.caption,
         {left, kStationsButtonTop, button.width, 26},
         button.tip,
         MoveDown});
    left += button.width + 6;
  }
  add({IDCANCEL,
       WC_BUTTONW,
       BS_PUSHBUTTON | WS_TABSTOP,
       "&Close",
       {kStationsWidth - 8 - 72, kStationsButtonTop, 72, 26},
       "",
       MoveRight | MoveDown});
}

void StationDialog::present() {
  showModeless();
  show();
  SetFocus(item(id::StnGrd));
}

void StationDialog::show() {
  const StationView& view = editor_.view();
  if (!window()) return;
  if (!view.open) {
    import_.reset();
    return close();
  }
  showGroups();
  for (const int button : {IDOK, static_cast<int>(id::StnRemove), static_cast<int>(id::StnExport)})
    enable(button, editor_.table().rows() > 0);
  for (const int button : {id::StnAdd, id::StnImport}) enable(button, view.ready);
  enable(id::StnUndo, view.canUndo);
  enable(id::StnRedo, view.canRedo);
  setText(id::StnStatus, view.status);
  setTip(id::StnStatus, view.status);
  grid_->show();
  if (view.importing && (!import_ || !import_->window())) {
    import_ = std::make_unique<ImportDialog>(window(), editor_, colours_);
    import_->showModeless();
  }
  if (import_ && import_->window()) import_->show();
}

void StationDialog::showGroups() {
  std::vector<std::string> groups{""};
  groups.insert(groups.end(), editor_.view().groups.begin(), editor_.view().groups.end());
  const HWND box = item(id::StnGroup);
  if (groups == groups_ && choiceOf(box) >= 0) return;
  groups_ = std::move(groups);
  SendMessageW(box, CB_RESETCONTENT, 0, 0);
  int chosen = 0;
  for (std::size_t i = 0; i < groups_.size(); ++i) {
    addChoice(box, groups_[i].empty() ? "All groups" : groups_[i]);
    if (groups_[i] == editor_.table().filter().group) chosen = static_cast<int>(i);
  }
  choose(box, chosen);
}

void StationDialog::filterChanged() {
  const int group = choiceOf(item(id::StnGroup));
  StationFilter filter;
  filter.text = text(id::StnSearch);
  if (group > 0) filter.group = groups_[static_cast<std::size_t>(group)];
  filter.favourites = checked(id::StnFavourites);
  editor_.setFilter(std::move(filter));
}

void StationDialog::command(int control, int notice) {
  if (control == id::StnSearch && notice == EN_CHANGE) return filterChanged();
  if (control == id::StnGroup && notice == CBN_SELCHANGE) return filterChanged();
  if (notice != BN_CLICKED) return;
  switch (control) {
    case IDCANCEL:
      return editor_.close();
    case IDOK:
      return editor_.tuneTo();
    case id::StnFavourites:
      return filterChanged();
    case id::StnTake:
      return editor_.takeShown();
    case id::StnAdd:
      editor_.addEmpty();
      SetFocus(item(id::StnGrd));
      return;
    case id::StnRemove:
      return editor_.remove();
    case id::StnUndo:
      return editor_.undo();
    case id::StnRedo:
      return editor_.redo();
    case id::StnImport:
      return editor_.importChosen();
    case id::StnExport:
      return editor_.exportAs(static_cast<formats::Format>(choiceOf(item(id::StnFormat))));
  }
}

bool StationDialog::keyDown(int keyCode, int shift) {
  // From what is sought straight into what was found.
  if (keyCode == key::Down && shift == 0 && GetFocus() == item(id::StnSearch)) {
    SetFocus(item(id::StnGrd));
    return true;
  }
  if (!grid_->hasFocus() || !grid_->keyDown(keyCode, shift)) return false;
  grid_->show();
  return true;
}

bool StationDialog::wheel(int notches) {
  grid_->scrollWheel(notches);
  return true;
}

}  // namespace kelvane::win32
