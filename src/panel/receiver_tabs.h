#pragma once

#include "panel/display_requests.h"
#include "panel/receiver_refresh.h"
#include "settings/options.h"

namespace kelvane {

/// The receivers' tabs and what it means to select one: everything on the panel then speaks of that
/// receiver.
class ReceiverTabs {
 public:
  ReceiverTabs(MainView& view, ReceiverComponent& component, ShownReceiver& shown,
               ReceiverRefresh& refresh, Forwarding& forwarding, FrqEntry& entry,
               WindowCommands& window, const Options& options)
      : view_(view),
        component_(component),
        shown_(shown),
        refresh_(refresh),
        forwarding_(forwarding),
        entry_(entry),
        window_(window),
        options_(options) {}

  /// One tab for each receiver that the component serves; the first one is selected.
  void build();
  /// Receivers came, went or moved. The one that is shown stays shown, wherever it is now; where it
  /// is gone, the one that has its place is, else the last one.
  void receiversChanged(const ReceiverMoves& moves);
  /// The operator chose a tab, counted from 0.
  void click(int tab);
  /// Selects the next receiver's tab, after the last the first.
  void next();
  /// Alt and a character: selects the tab that marks it. Answers whether one does.
  bool accelerator(char32_t character);
  /// A receiver's link came up, or is not: it may take the display.
  void linkReported(Index rx, bool up, Instant now);
  /// A hand tuned another receiver than the one shown: it may take the display.
  void tunedByHand(Index rx, Instant now);
  /// The operator pressed a key or a button of the mouse, or turned the wheel.
  void handMoved(Instant now) { requests_.handMoved(now); }
  /// Shows the receiver that waits for the display, when nothing stands in its way any more.
  void serveRequest(Instant now);
  Instant nextDue() const { return requests_.nextDue(); }
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
  const Options& options_;
  DisplayRequests requests_;
};

}  // namespace kelvane
