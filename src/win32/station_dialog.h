#pragma once

#include <memory>
#include <string>
#include <vector>

#include "gui/win32/dialog_window.h"
#include "own_list/station_editor.h"
#include "win32/grid_window.h"

namespace kelvane::win32 {

/// What an import would do, on the screen over the operator's list.
class ImportDialog : public DialogWindow {
 public:
  ImportDialog(HWND owner, StationEditor& editor, const ScreenColours& colours);

  void show();

 private:
  void make(const ScreenColours& colours);
  void makeBoxes();
  void fillColumns();
  void fillMeaning();
  void shapeChosen();

  void command(int control, int notice) override;
  bool keyDown(int keyCode, int shift) override;
  bool wheel(int notches) override;

  StationEditor& editor_;
  std::unique_ptr<GridWindow> grid_;
  std::vector<std::string> headings_;
};

/// The window `My stations` on the screen.
class StationDialog : public DialogWindow {
 public:
  StationDialog(HWND owner, StationEditor& editor, const ScreenColours& colours);
  ~StationDialog() override;

  void present();

 private:
  void make(const ScreenColours& colours);
  void makeFilter();
  void makeButtons();
  void show();
  void showGroups();
  void filterChanged();

  void command(int control, int notice) override;
  bool keyDown(int keyCode, int shift) override;
  bool wheel(int notches) override;
  void fileDropped(const std::wstring& name) override;
  int defaultButton() const override { return 0; }

  StationEditor& editor_;
  const ScreenColours& colours_;
  std::unique_ptr<GridWindow> grid_;
  std::unique_ptr<ImportDialog> import_;
  std::vector<std::string> groups_{""};
};

}  // namespace kelvane::win32
