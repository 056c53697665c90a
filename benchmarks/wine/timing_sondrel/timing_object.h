#pragma once

#include <atomic>
#include <thread>

#include "benchmarks/wine/timing_sondrel/timing_receivers.h"
#include "contract/win32/server/component_host.h"
#include "contract/win32/server/object_count.h"
#include "contract/win32/server/sondrel_face.h"

namespace kelvane::bench {

/// The timing receivers in the COM face of a receiver component. A thread of its own hears the
/// board's requests and keeps the meters' beat, as the threads of radio links do: every event
/// reaches the panel through one wake-up of the component's window.
class TimingObject final : public com::SondrelFace, private com::HostedComponent {
 public:
  TimingObject(com::ObjectCount& count, com::TypeLibrary types);
  ~TimingObject() override;

 private:
  ReceiverComponent& component() override { return receivers_; }
  com::CallWatch& watch() override { return host_; }
  IUnknown& identity() override { return *static_cast<ISondrel*>(this); }
  void tick(Instant) override {}
  void deliverEvents() override;
  Instant nextDue() override { return kNever; }

  void run();
  /// Hands on the meter events that are due by now; how long to wait for the next, ms.
  DWORD beat();

  const com::Counted counted_;
  SharedTiming timing_;
  com::ComponentHost host_{*this};
  TimingReceivers receivers_{timing_.board(), [this] { host_.wake(); }};
  std::atomic<Hz> tuned_{0};
  std::atomic<LONG> metersDue_{0};
  std::atomic<LONG> level_{0};  ///< dBm to report once; 0 for none
  LONG64 beatStart_ = 0;        ///< when the meters began; 0 while they are silent
  LONG64 beats_ = 0;
  std::atomic<bool> ending_{false};
  std::thread thread_;  ///< last: it uses everything above
};

}  // namespace kelvane::bench
