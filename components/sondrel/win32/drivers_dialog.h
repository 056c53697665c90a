#pragma once

#include <functional>
#include <string>

#include "base/safe_file.h"
#include "base/win32/dialog_window.h"
#include "components/sondrel/drivers_model.h"

namespace kelvane::sondrel {

/// The dialog in which the operator edits the list of receivers and their parameters. What is
/// typed is checked at once; what is wrong is said in words and leaves the list as it was.
class DriversDialog : public win32::DialogWindow {
 public:
  /// How the link of the receiver with these memories stands, in words; empty for a new one.
  using LinkOf = std::function<std::string(const std::string& memories)>;

  DriversDialog(HWND owner, DriversModel& model, LinkOf linkOf,
                const std::function<FileResult()>& apply);

 private:
  void makeList();
  void makeReceiver();
  void command(int control, int notice) override;
  bool notified(const NMHDR& notice, LRESULT& result) override;
  void tick() override { showLinks(); }
  void laidOut() override;

  void showReceivers();
  void showLinks();
  void showReceiver();
  void showParameters();
  void showParameter();
  void enableButtons();
  void select(int receiver);

  void addReceiver();
  void removeReceiver();
  void moveReceiver(int by);
  void nameTyped();
  void valueTyped();
  void confirm();

  void say(const std::string& words);
  /// What was typed and is wrong belongs to a receiver or parameter that is left.
  void giveUpWrong();
  void judge(int control, const std::string& problem);
  const Parameter* parameter() const;
  std::string cell(const Parameter& parameter) const;

  DriversModel& model_;
  LinkOf linkOf_;
  const std::function<FileResult()>& apply_;
  int receiver_ = 0;
  int parameter_ = 0;
  bool filling_ = false;
  int wrong_ = 0;  ///< the field whose text was refused
  std::string problem_;
};

}  // namespace kelvane::sondrel
