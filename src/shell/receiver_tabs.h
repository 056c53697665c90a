#pragma once

#include <optional>

#include "shell/receiver_refresh.h"

namespace kelvane {

/// The receivers' tabs and what it means to select one: everything on the panel then speaks of that
/// receiver.
class ReceiverTabs {
 public:
  ReceiverTabs(MainView& view, ReceiverComponent& component, ShownReceiver& shown,
               ReceiverRefresh& refresh, Forwarding& forwarding, FrqEntry& entry,
               WindowCommands& window)
      : view_(view),
        component_(component),
        shown_(shown),
        refresh_(refresh),
        forwarding_(forwarding),
        entry_(entry),
        window_(window) {}

  /// One tab for each receiver that the component serves; the first one is selected.
  void build();
  /// Receivers came, went or moved. The one that is shown stays shown, wherever it is now; where it
  /// is gone, the one that has its place is, else the last one.
  void receiversChanged(const ReceiverMoves& moves);
  /// The operator chose a tab, counted from 0.
  void click(int tab);
  /// Selects the next receiver's tab, after the last the first.
  void next();
  /// Alt and a character: selects the next tab whose name begins with it. Answers whether one does.
  bool accelerator(char32_t character);
  /// A receiver asks to be shown. It waits while the operator is in the middle of an entry or a
  /// dialog; of several that wait the newest is served.
  void requestShow(Index rx);
  /// Serves a waiting request when nothing stands in its way any more.
  void serveRequest();
  void highlight(Index rx, bool remote);
  /// Puts every tab's highlight right.
  void highlightAll();
  bool hasTabs() const { return !view_.TabStrip.tabs.empty(); }

 private:
  void makeTabs();
  void select(Index rx);
  void showOther(Index rx);
  void showNone();

  MainView& view_;
  ReceiverComponent& component_;
  ShownReceiver& shown_;
  ReceiverRefresh& refresh_;
  Forwarding& forwarding_;
  FrqEntry& entry_;
  WindowCommands& window_;
  std::optional<Index> waiting_;
};

}  // namespace kelvane
