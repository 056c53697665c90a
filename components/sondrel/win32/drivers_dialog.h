#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/safe_file.h"
#include "components/sondrel/drivers_model.h"
#include "components/sondrel/link_trial.h"
#include "components/sondrel/radios/radio_desk.h"
#include "components/sondrel/sondrel_core.h"
#include "components/sondrel/win32/add_radio_dialog.h"
#include "gui/win32/dialog_window.h"

namespace kelvane::sondrel {

/// The dialog in which the operator edits the list of receivers and their parameters. What is
/// typed is checked at once; what is wrong is said in words and leaves the list as it was.
class DriversDialog : public win32::DialogWindow {
 public:
  /// How the link of the receiver with these memories stands, in words; empty for a new one.
  using LinkOf = std::function<std::string(const std::string& memories)>;

  /// What the link of the receiver of this very entry has found; empty where it is not up.
  using FoundOf = std::function<std::string(const ReceiverEntry& entry)>;

  /// Who looks after what adding a radio needs, made when it is first needed.
  using DeskOf = std::function<RadioDesk&()>;

  /// How other programs share the receiver with these memories, and a way to end one of them.
  struct Programs {
    std::function<SondrelCore::ShareSight(const std::string& memories)> of;
    std::function<void(const std::string& memories, const std::string& program)> end;
  };

  DriversDialog(HWND owner, DriversModel& model, LinkOf linkOf, FoundOf foundOf, DeskOf deskOf,
                Programs programs, const std::function<Result<>()>& apply);

 private:
  void makeList();
  void makeReceiver();
  void makeTest();
  void makePrograms();
  void command(int control, int notice) override;
  bool notified(const NMHDR& notice, LRESULT& result) override;
  void tick() override;
  void laidOut() override;

  void showReceivers();
  void showLinks();
  void showReceiver();
  void showPrograms();
  void showParameters();
  void showParameter();
  void enableButtons();
  void select(int receiver);

  void addReceiver();
  void addRadio();
  void prepareRadio();
  void findServers();
  void takeIn(const std::optional<ReceiverEntry>& added);
  void removeReceiver();
  void moveReceiver(int by);
  void nameTyped();
  void valueTyped();
  void confirm();
  void apply();
  void copyAddress();
  void endProgram();
  void test();
  void showTest();
  void forgetTest();

  bool somethingWrong();
  void say(const std::string& words);
  /// What was typed and is wrong belongs to a receiver or parameter that is left.
  void giveUpWrong();
  void judge(int control, const std::string& problem);
  const Parameter* parameter() const;
  std::string cell(const Parameter& parameter) const;

  DriversModel& model_;
  LinkOf linkOf_;
  FoundOf foundOf_;
  DeskOf deskOf_;
  Programs programs_;
  std::vector<std::string> shownPrograms_;
  const std::vector<ReceiverEntry> original_;  ///< the receivers when the dialog was opened
  const std::function<Result<>()>& apply_;
  int receiver_ = 0;
  int parameter_ = 0;
  bool filling_ = false;
  int wrong_ = 0;  ///< the field whose text was refused
  std::string problem_;
  std::unique_ptr<LinkTrial> trial_;
  std::unique_ptr<AddRadioDialog> radio_;  ///< the next one, ready to be shown
  Instant giveUpAt_ = kNever;  ///< while OK waits for another program that holds the list
};

}  // namespace kelvane::sondrel
