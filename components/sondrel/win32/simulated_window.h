#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "components/sondrel/win32/receiver_window.h"

namespace kelvane::sondrel {

/// The settings of a simulated receiver: its front, as a hand at the receiver itself would find it,
/// and the faults of its link.
class SimulatedWindow final : public ReceiverWindow {
 public:
  SimulatedWindow(HWND owner, SondrelCore& core, Index rx);

 private:
  void makeFront();
  void makeLink();
  void fillChoices();

  void refresh() override;
  void command(int control, int notice) override;
  bool wheel(int notches) override;
  int defaultButton() const override;

  void showFrequency();
  void showMode();
  void showFilters();
  void showLines();

  void turn(Item item, std::int32_t value);
  void tune();
  void stepBy(int steps);
  void chosen(int control);
  void lineClicked(int line);
  void applyFaults();
  /// The number in a field; none, with the words for it shown, where it holds no such number.
  std::optional<int> number(int field, std::string_view what, int highest);
  void say(const std::string& words);

  int lines_ = 0;
  std::vector<Setting> modes_;
  std::vector<Hz> filters_, steps_;
};

}  // namespace kelvane::sondrel
