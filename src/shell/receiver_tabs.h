#pragma once

#include <optional>

#include "receiver/remote_state.h"
#include "receiver/status_box.h"

namespace kelvane {

/// The receivers' tabs and what it means to select one: everything on the panel then speaks of that
/// receiver.
class ReceiverTabs {
 public:
  ReceiverTabs(MainView& view, ReceiverComponent& component, ShownReceiver& shown, FrqEntry& entry,
               clsFrqDigit& row, RemoteState& remote, StatusBox& status, WindowCommands& window)
      : view_(view),
        component_(component),
        shown_(shown),
        entry_(entry),
        row_(row),
        remote_(remote),
        status_(status),
        window_(window) {}

  /// One tab for each receiver that the component serves. A selected receiver that is still there
  /// stays selected; else the first one is.
  void build();
  /// The operator chose a tab, counted from 0.
  void click(int tab);
  /// Alt and a character: selects the next tab whose name begins with it. Answers whether one does.
  bool accelerator(char32_t character);
  /// A receiver asks to be shown. It waits while the operator is in the middle of an entry or a
  /// dialog; of several that wait the newest is served.
  void requestShow(Index rx);
  /// Serves a waiting request when nothing stands in its way any more.
  void serveRequest();
  /// Brings everything that depends on the shown receiver up to date.
  void refresh();

  void highlight(Index rx, bool remote);
  /// Puts every tab's highlight right.
  void highlightAll();
  bool hasTabs() const { return !view_.TabStrip.tabs.empty(); }

 private:
  void select(Index rx);
  void showNone();
  void caption();

  MainView& view_;
  ReceiverComponent& component_;
  ShownReceiver& shown_;
  FrqEntry& entry_;
  clsFrqDigit& row_;
  RemoteState& remote_;
  StatusBox& status_;
  WindowCommands& window_;
  std::optional<Index> waiting_;
};

}  // namespace kelvane
