#pragma once

#include <array>
#include <functional>
#include <utility>

#include "panel/receiver_tabs.h"
#include "receiver/link_retry.h"
#include "settings/options.h"

namespace kelvane {

class ChannelEditor;
class DataLog;
class StationViews;

/// What the panel does with each event of the receiver component.
class RxEvents : public ReceiverListener {
 public:
  RxEvents(ReceiverComponent& component, ShownReceiver& shown, const Options& options,
           ReceiverTabs& tabs, ReceiverRefresh& refresh, LinkRetry& retry, Stepping& stepping,
           const ReceiverUnits& units, ChannelEditor& channelEditor, DataLog& log,
           StationViews& views, std::function<Instant()> now)
      : component_(component),
        shown_(shown),
        options_(options),
        tabs_(tabs),
        refresh_(refresh),
        retry_(retry),
        stepping_(stepping),
        units_(units),
        channelEditor_(channelEditor),
        log_(log),
        views_(views),
        receivers_(component),
        now_(std::move(now)) {
    passingFrequency_.fill(-1);
  }

  void RxDataError(Index, Long) override {}
  void RxConnState(Index rx, Long code) override;
  void DrvUpdated(Count count) override;
  void RxChnUpdated(Index rx, Channel channel) override;
  void RxFrqUpdated(Index rx, Hz frequency, Long origin) override;
  void RxModUpdated(Index rx, Setting mode, Setting filter) override;
  void RxFltUpdated(Index rx, Setting filter) override;
  void RxAgcUpdated(Index rx, Setting agc, Long aux) override;
  void RxNBlUpdated(Index rx, Setting blanker, Long aux) override;
  void RxAttUpdated(Index rx, Setting attenuator, Long db) override;
  void RxSqlUpdated(Index rx, Long state, Long threshold) override;
  void RxSMtUpdated(Index rx, Long bar, Long overS9, Long level, Text reading) override;
  void RxChnStatus(Index rx, Channel channel, Hz frequency, Hz bfo, Setting mode, Setting filter,
                   Setting agc, Long skip) override;
  void RxOutUpdated(Index rx, Long line, Long state) override;
  void RxStpUpdated(Index rx, Hz step) override;
  void RxRmtState(Index rx, Long state) override;
  void RxBfoUpdated(Index rx, Hz offset) override;
  void RxHFFUpdated(Index rx, Long state) override;
  void RxFrqPassing(Index rx, Hz frequency) override;
  void RxShareUpdated(Index, Count) override {}

  /// Whether a program has just moved the receiver to this frequency, which does not count yet.
  bool isPassing(Index rx, Hz frequency) const;

 private:
  ReceiverComponent& component_;
  ShownReceiver& shown_;
  const Options& options_;
  ReceiverTabs& tabs_;
  ReceiverRefresh& refresh_;
  LinkRetry& retry_;
  Stepping& stepping_;
  ReceiverUnits units_;
  ChannelEditor& channelEditor_;
  DataLog& log_;
  StationViews& views_;
  ReceiverSet receivers_;
  std::function<Instant()> now_;
  std::array<Hz, kMostReceivers> passingFrequency_;  ///< by receiver; -1 for none
};

}  // namespace kelvane
