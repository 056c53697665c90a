#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "components/sondrel/radios/radio_choice.h"
#include "components/sondrel/radios/radio_desk.h"
#include "components/sondrel/radios/radio_kind.h"
#include "components/sondrel/radios/radio_trial.h"
#include "gui/win32/dialog_window.h"
#include "gui/win32/virtual_rows.h"

namespace kelvane::sondrel {

/// The dialog in which the operator chooses a radio's model and port, and may try it before it is
/// added. Whatever takes time is done beside it, by the desk and by the trial.
class AddRadioDialog : public win32::DialogWindow {
 public:
  /// `receivers` are those that there are. Desk and receivers outlive the dialog.
  AddRadioDialog(HWND owner, RadioDesk& desk, const std::vector<ReceiverEntry>& receivers);
  ~AddRadioDialog() override;

  /// Shows the dialog, and returns when it is closed. It may be made long before.
  void open();

  /// The radio that was added; none where the dialog was left otherwise.
  const std::optional<ReceiverEntry>& added() const { return added_; }

 private:
  void makeModel();
  void makePort();
  void makeTrial();
  void command(int control, int notice) override;
  bool notified(const NMHDR& notice, LRESULT& result) override;
  bool keyDown(int keyCode, int shift) override;
  void tick() override;
  void laidOut() override;

  void showDesk();
  void showMakers();
  void showModels();
  void showPorts();
  void showFacts();
  void choose(std::size_t row);
  void showTrial();
  void enableButtons();
  const RadioModel* model() const;
  TypedRadio typed() const;
  Result<ReceiverEntry> choice();
  void say(const std::string& words);
  void offer(int combo, const std::vector<std::string>& texts);

  void tryOut(bool allSpeeds);
  void addRadio();
  void showRigctld();

  RadioDesk& desk_;
  const std::vector<ReceiverEntry>& receivers_;
  DeskState known_;
  std::uint32_t changes_ = 0;
  std::vector<std::size_t> rows_;  ///< places of the models that are shown
  std::int32_t model_ = 0;         ///< the number of the one that is chosen; 0 for none
  std::int32_t factsShown_ = 0;
  bool filling_ = false;
  std::string proposedName_;
  std::unique_ptr<RadioTrial> trial_;
  std::optional<ReceiverEntry> added_;
  win32::VirtualRows list_;  ///< last: it asks for the rest
};

}  // namespace kelvane::sondrel
