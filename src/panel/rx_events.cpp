#include "panel/rx_events.h"

#include "companions/channel_editor.h"
#include "companions/data_log.h"
#include "contract/link_state.h"
#include "overview/station_views.h"

namespace kelvane {

void RxEvents::RxConnState(Index rx, Long code) {
  const bool up = code == static_cast<Long>(LinkState::Up);
  if (rx >= 0 && rx < kMostReceivers) passingFrequency_[static_cast<std::size_t>(rx)] = -1;
  units_.status.reported(rx, code);
  views_.watch().link(rx);
  retry_.reported(rx, code, now_());
  units_.levels.linkReported(rx);
  tabs_.linkReported(rx, up, now_());
  tabs_.highlight(rx, component_.GetRxRemote(rx));
  if (up && options_.OptSendTime) component_.SetRxTime(rx, {});
  if (rx != shown_.index()) return;
  refresh_.run();
}

void RxEvents::DrvUpdated(Count) {
  const ReceiverMoves moves = receivers_.renew();
  units_.status.receiversChanged(moves);
  retry_.receiversChanged(moves, now_());
  stepping_.receiversChanged(moves);
  units_.forwarding.receiversChanged(moves);
  units_.levels.receiversChanged(moves);
  tabs_.receiversChanged(moves);
  units_.dde.receiversChanged(moves);
  channelEditor_.receiversChanged(moves);
  log_.receiversChanged(moves);
  passingFrequency_.fill(-1);
  views_.receiversChanged(moves);
}

void RxEvents::RxFrqPassing(Index rx, Hz frequency) {
  if (rx >= 0 && rx < kMostReceivers) passingFrequency_[static_cast<std::size_t>(rx)] = frequency;
  if (rx == shown_.index() && shown_.online()) units_.entry.arrived(frequency);
}

bool RxEvents::isPassing(Index rx, Hz frequency) const {
  return rx >= 0 && rx < kMostReceivers && frequency >= 0 &&
         passingFrequency_[static_cast<std::size_t>(rx)] == frequency;
}

void RxEvents::RxFrqUpdated(Index rx, Hz frequency, Long origin) {
  if (rx >= 0 && rx < kMostReceivers) passingFrequency_[static_cast<std::size_t>(rx)] = -1;
  views_.watch().frequency(rx, frequency, origin != 0);
  if (rx == shown_.index()) {
    if (shown_.online()) refresh_.frequency(frequency, Apply::Automatic);
    return;
  }
  if (options_.OptMonitorChanges && component_.GetRxGlobalFlag()) tabs_.tunedByHand(rx, now_());
}

void RxEvents::RxChnUpdated(Index rx, Channel channel) {
  if (shown_.shows(rx)) units_.channels.updated(channel);
}

void RxEvents::RxChnStatus(Index rx, Channel channel, Hz frequency, Hz bfo, Setting mode,
                           Setting filter, Setting agc, Long skip) {
  if (rx == channelEditor_.nReceiver())
    channelEditor_.Update(channel, frequency, bfo, mode, filter, agc, skip);
}

void RxEvents::RxModUpdated(Index rx, Setting mode, Setting) {
  views_.watch().settings(rx);
  if (!shown_.shows(rx)) return;
  units_.buttons.ModUpdated(rx, mode);
  units_.buttons.filterChoice(rx);
  units_.bfo.modeChanged();
  units_.best.compare();
}

void RxEvents::RxFltUpdated(Index rx, Setting filter) {
  views_.watch().settings(rx);
  if (!shown_.shows(rx)) return;
  units_.buttons.FilterUpdated(rx, filter);
  units_.best.compare();
}

void RxEvents::RxAgcUpdated(Index rx, Setting agc, Long) {
  views_.watch().settings(rx);
  if (shown_.shows(rx)) units_.buttons.AgcUpdated(rx, agc);
}

void RxEvents::RxNBlUpdated(Index rx, Setting blanker, Long) {
  if (shown_.shows(rx)) units_.buttons.NBlUpdated(rx, blanker);
}

void RxEvents::RxAttUpdated(Index rx, Setting attenuator, Long db) {
  views_.watch().settings(rx);
  if (shown_.shows(rx)) units_.buttons.AttUpdated(rx, attenuator, db);
}

void RxEvents::RxSqlUpdated(Index rx, Long state, Long) {
  views_.watch().squelch(rx, state);
  units_.levels.askThreshold(rx);
  if (shown_.shows(rx)) units_.indicators.setSquelch(state);
}

void RxEvents::RxSMtUpdated(Index rx, Long, Long, Long level, Text reading) {
  units_.levels.reading(rx, level, now_());
  views_.watch().level(rx, level, reading);
  if (shown_.shows(rx)) units_.indicators.meter(level, reading);
}

void RxEvents::RxOutUpdated(Index rx, Long, Long) {
  if (shown_.shows(rx)) units_.indicators.lines();
}

void RxEvents::RxStpUpdated(Index rx, Hz step) {
  if (!shown_.shows(rx)) return;
  stepping_.setDefault(step);
  stepping_.refresh();
}

void RxEvents::RxRmtState(Index rx, Long state) {
  (void)rx;  // By design the shown tab's light follows, whichever receiver answered.
  tabs_.highlight(shown_.index(), state != 0);
  units_.remote.apply();
  units_.buttons.Update(shown_.index());
  units_.entry.arrived(component_.GetRxFrequency(shown_.index(), kTuned));
}

void RxEvents::RxBfoUpdated(Index rx, Hz offset) {
  if (shown_.shows(rx)) units_.bfo.updated(offset);
}

void RxEvents::RxHFFUpdated(Index rx, Long state) {
  if (shown_.shows(rx)) units_.hfFilter.updated(state);
}

}  // namespace kelvane
