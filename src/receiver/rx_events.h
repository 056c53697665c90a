#pragma once

#include <functional>

#include "receiver/link_retry.h"
#include "shell/options.h"
#include "shell/receiver_tabs.h"

namespace kelvane {

/// What the panel does with each event of the receiver component.
class RxEvents : public ReceiverListener {
 public:
  RxEvents(ReceiverComponent& component, ShownReceiver& shown, const Options& options,
           ReceiverTabs& tabs, LinkRetry& retry, StatusBox& status, FrqEntry& entry,
           clsFrqDigit& row, RemoteState& remote, std::function<Instant()> now)
      : component_(component),
        shown_(shown),
        options_(options),
        tabs_(tabs),
        retry_(retry),
        status_(status),
        entry_(entry),
        row_(row),
        remote_(remote),
        now_(std::move(now)) {}

  void RxDataError(Index, Long) override {}
  void RxConnState(Index rx, Long code) override;
  void DrvUpdated(Count count) override;
  void RxChnUpdated(Index, Channel) override {}
  void RxFrqUpdated(Index rx, Hz frequency, Long origin) override;
  void RxModUpdated(Index, Setting, Setting) override {}
  void RxFltUpdated(Index, Setting) override {}
  void RxAgcUpdated(Index, Setting, Long) override {}
  void RxNBlUpdated(Index, Setting, Long) override {}
  void RxAttUpdated(Index, Setting, Long) override {}
  void RxSqlUpdated(Index, Long, Long) override {}
  void RxSMtUpdated(Index, Long, Long, Long, Text) override {}
  void RxChnStatus(Index, Channel, Hz, Hz, Setting, Setting, Setting, Long) override {}
  void RxOutUpdated(Index, Long, Long) override {}
  void RxStpUpdated(Index, Hz) override {}
  void RxRmtState(Index rx, Long state) override;
  void RxBfoUpdated(Index rx, Hz offset) override;
  void RxHFFUpdated(Index, Long) override {}

 private:
  ReceiverComponent& component_;
  ShownReceiver& shown_;
  const Options& options_;
  ReceiverTabs& tabs_;
  LinkRetry& retry_;
  StatusBox& status_;
  FrqEntry& entry_;
  clsFrqDigit& row_;
  RemoteState& remote_;
  std::function<Instant()> now_;
};

}  // namespace kelvane
