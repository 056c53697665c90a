#include "receiver/rx_events.h"

#include "contract/link_state.h"

namespace kelvane {

void RxEvents::RxConnState(Index rx, Long code) {
  const bool up = code == static_cast<Long>(LinkState::Up);
  status_.reported(rx, code);
  retry_.reported(rx, code, now_());
  if (up && tabs_.hasTabs()) tabs_.requestShow(rx);
  tabs_.highlight(rx, component_.GetRxRemote(rx));
  if (rx != shown_.index()) return;
  if (up && options_.OptSendTime) component_.SetRxTime(rx, {});
  tabs_.refresh();
}

void RxEvents::DrvUpdated(Count) {
  status_.forget();
  retry_.receiversChanged(component_.GetRxCount(), now_());
  tabs_.build();
}

void RxEvents::RxFrqUpdated(Index rx, Hz frequency, Long) {
  if (shown_.shows(rx)) return entry_.arrived(frequency);
  if (rx != shown_.index() && options_.OptMonitorChanges && component_.GetRxGlobalFlag())
    tabs_.requestShow(rx);
}

void RxEvents::RxRmtState(Index rx, Long state) {
  (void)rx;  // The event's receiver is not asked: the shown tab's light follows, by design.
  tabs_.highlight(shown_.index(), state != 0);
  remote_.apply();
}

void RxEvents::RxBfoUpdated(Index rx, Hz offset) {
  if (shown_.shows(rx)) row_.BFO(offset);
}

}  // namespace kelvane
