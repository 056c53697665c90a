#pragma once

#include <atomic>
#include <thread>

#include "contract/win32/server/component_host.h"
#include "contract/win32/server/object_count.h"
#include "contract/win32/server/sondrel_face.h"
#include "tests/fakes/marked_radios.h"
#include "tests/fakes/recording_receiver.h"
#include "tests/wine/model_sondrel/model_board.h"

namespace kelvane::test {

/// Made-up radios in the COM face of a receiver component. They do what the board orders, and every
/// request that they get is noted on it.
class ModelObject final : public com::SondrelFace, private com::HostedComponent {
 public:
  ModelObject(com::ObjectCount& count, com::TypeLibrary types);
  ~ModelObject() override;

 private:
  ReceiverComponent& component() override { return asked_; }
  com::CallWatch& watch() override { return host_; }
  IUnknown& identity() override { return *static_cast<ISondrel*>(this); }
  void tick(Instant) override {}
  void deliverEvents() override;
  Instant nextDue() override { return radios_.nextDue(); }

  void run();
  void carryOut();

  const com::Counted counted_;
  SharedModel board_;
  com::ComponentHost host_{*this};
  fakes::MarkedRadios radios_;
  fakes::RecordingReceiver asked_{radios_};
  std::atomic<bool> ending_{false};
  std::thread thread_;  ///< last: it uses everything above
};

}  // namespace kelvane::test
