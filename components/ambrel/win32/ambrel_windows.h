#pragma once

#include "components/ambrel/component_windows.h"

namespace kelvane::ambrel {

/// The component's windows on the screen.
class AmbrelWindows final : public ComponentWindows {
 public:
  void setOwner(Long window) override { owner_ = window; }
  void showKnownList(AmbrelCore&) override {}
  void showSource(AmbrelCore&) override {}
  void showData(AmbrelCore&) override {}

 private:
  Long owner_ = 0;
};

}  // namespace kelvane::ambrel
