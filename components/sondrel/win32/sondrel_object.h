#pragma once

#include "components/sondrel/sondrel_core.h"
#include "components/sondrel/win32/sondrel_windows.h"
#include "contract/win32/server/component_host.h"
#include "contract/win32/server/object_count.h"
#include "contract/win32/server/sondrel_face.h"

namespace kelvane::sondrel {

/// The receiver component as programs create it: the core, its COM face and its windows.
class SondrelObject final : public com::SondrelFace, private com::HostedComponent {
 public:
  /// The folder is that of SondrelCore.
  SondrelObject(com::ObjectCount& count, com::TypeLibrary types, std::filesystem::path dataFolder);
  ~SondrelObject() override;

 private:
  ReceiverComponent& component() override { return core_; }
  com::CallWatch& watch() override { return host_; }
  IUnknown& identity() override { return *static_cast<ISondrel*>(this); }
  void tick(Instant now) override { core_.tick(now); }
  void deliverEvents() override { core_.deliverEvents(); }
  Instant nextDue() override { return core_.nextDue(); }

  const com::Counted counted_;
  com::ComponentHost host_;
  SondrelWindows windows_;
  SondrelCore core_;
};

}  // namespace kelvane::sondrel
