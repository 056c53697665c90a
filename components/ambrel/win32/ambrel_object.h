#pragma once

#include "components/ambrel/ambrel_core.h"
#include "components/ambrel/win32/ambrel_windows.h"
#include "contract/win32/server/ambrel_face.h"
#include "contract/win32/server/component_host.h"
#include "contract/win32/server/object_count.h"

namespace kelvane::ambrel {

/// The frequency component as programs create it: the core, its COM face and its windows.
class AmbrelObject final : public com::AmbrelFace, private com::HostedComponent {
 public:
  /// The folders are those of AmbrelCore.
  AmbrelObject(com::ObjectCount& count, com::TypeLibrary types, std::filesystem::path dataFolder,
               std::filesystem::path userFolder);
  ~AmbrelObject() override;

 private:
  FrequencyComponent& component() override { return core_; }
  com::CallWatch& watch() override { return host_; }
  IUnknown& identity() override { return *static_cast<IAmbrel*>(this); }
  void deliverEvents() override;
  void tick(Instant now) override;
  Instant nextDue() override { return lookDue_; }

  const com::Counted counted_;
  com::ComponentHost host_;
  AmbrelWindows windows_;
  AmbrelCore core_;
  Instant lookDue_;  ///< when the clock is looked at next
};

}  // namespace kelvane::ambrel
