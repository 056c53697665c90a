#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "components/sondrel/link_trial.h"
#include "components/sondrel/receiver.h"
#include "components/sondrel/receiver_entry.h"
#include "components/sondrel/rigctld/rigctld_mapping.h"
#include "components/sondrel/rigctld/rigctld_report_box.h"
#include "components/sondrel/rigctld/rigctld_worker.h"

namespace kelvane::sondrel {

/// A receiver behind a server of rigctld's protocol, as its section of the configuration tells.
struct RigctldSetup {
  RigctldAddress address;
  RigctldOptions options;
  RigctldManner manner;
  bool remote = true;  ///< comes up under remote control the first time
};

/// A real radio behind a server, or a program that speaks the same protocol. All that can take time
/// happens on a thread of its own.
class RigctldReceiver : public Receiver {
 public:
  RigctldReceiver(ReceiverHost& host, std::string name, const RigctldSetup& setup);

  /// The text is a time "hh:mm" or "hh:mm:ss", UTC, after anything else (a date); empty for now.
  /// Unsupported where the radio has no clock that can be set.
  Outcome setTime(const Text& time, Instant now) override;
  void setShown(bool shown) override { worker_.show(shown); }
  std::string found() const override { return found_; }
  std::string linkFault() const override { return worker_.fault(); }

 protected:
  void openLink(Instant now) override;
  void closeLink(Instant now) override;
  void carryOut(const Request& request, Instant now) override;
  void takeRemote(bool remote, Instant now) override;

 private:
  void collect();
  void take(const RigctldReportBox::Entry& entry);
  void take(const LinkReport& report);
  void take(const CapabilityReport& report);
  void take(const ValueReport& report);
  void takeNews(const ValueReport& report, Item item, std::int32_t value);
  std::optional<RigRequest> translated(const Request& request) const;

  RigctldManner manner_;
  RigctldMapping mapping_;
  std::string found_;
  std::array<std::optional<Request>, kItemCount> waiting_;  ///< the newest one of each item
  bool remoteWanted_;
  std::optional<LinkState> link_;  ///< last reported on this opening of the link
  std::uint32_t order_ = 0;        ///< of the newest opening or closing
  RigctldReportBox box_;
  RigctldWorker worker_;  ///< last: its reports use the rest
};

/// Tries a server out: connects, finds out what it is, changes nothing.
std::unique_ptr<LinkTrial> tryOutRigctld(const RigctldAddress& address,
                                         const RigctldOptions& options);

/// The kind "rigctld".
const ReceiverKind& rigctldKind();

}  // namespace kelvane::sondrel
