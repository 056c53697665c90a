#pragma once

#include <memory>
#include <string>
#include <vector>

#include "components/ambrel/own_files.h"
#include "components/ambrel/source_view.h"
#include "components/ambrel/win32/file_picker.h"
#include "components/ambrel/win32/list_window.h"

namespace kelvane::ambrel {

/// What the database is made of, on the screen: where the operator points the program at a
/// schedule, and opens lists of their own. Stays open beside the panel.
class SourceWindow final : public ListWindow {
 public:
  SourceWindow(HWND owner, AmbrelCore& core);

 private:
  using MakeFile = std::function<OwnFile(const DataFiles&)>;

  void makeLists();
  void makeButtons();
  void command(int control, int notice) override;
  bool notified(const NMHDR& notice, LRESULT& result) override;
  void look() override { show(); }
  int defaultButton() const override;

  void show();
  void showDetails();
  void begin(bool begun);
  void chooseSchedule();
  void edit(MakeFile make);
  /// Says in the window that something failed; to be called from any thread.
  Failed refused(const std::string& what);

  std::vector<SourceRow> sources_;
  /// What could not be begun, in words; shared with what still runs when the window has gone.
  std::shared_ptr<std::string> refusal_ = std::make_shared<std::string>();
  FilePicker picker_;
  Background background_;  ///< last, so that its jobs end before what they use
};

}  // namespace kelvane::ambrel
