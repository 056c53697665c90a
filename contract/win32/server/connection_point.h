#pragma once

#include <array>
#include <span>
#include <vector>

#include "contract/win32/com.h"
#include "contract/win32/com_ptr.h"
#include "contract/win32/variant.h"

namespace kelvane::com {

/// Where sinks of one source interface are connected. A part of its container: it lives and dies
/// with it, and a reference to one holds the other.
class ConnectionPoint final : public IConnectionPoint {
 public:
  ConnectionPoint(IConnectionPointContainer& container, REFIID events)
      : container_(container), events_(events) {}
  ConnectionPoint(const ConnectionPoint&) = delete;
  ConnectionPoint& operator=(const ConnectionPoint&) = delete;

  /// Calls every sink that is connected now with an event. A sink may disconnect itself or others,
  /// connect more, or give back the last reference to the component, all inside its handler; one
  /// that was disconnected before its turn is not called.
  template <class... Args>
  void raise(DISPID event, const Args&... args) {
    if (sinks_.empty()) return;
    std::array<Variant, sizeof...(Args)> variants{Variant(args)...};
    call(event, variants);
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return container_.AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return container_.Release(); }
  STDMETHODIMP GetConnectionInterface(IID* events) override;
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override;
  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override;
  STDMETHODIMP Unadvise(DWORD cookie) override;
  STDMETHODIMP EnumConnections(IEnumConnections** connections) override;

 private:
  struct Connection {
    DWORD cookie;
    ComPtr<IDispatch> sink;
  };

  void call(DISPID event, std::span<Variant> args);
  bool isConnected(DWORD cookie) const;

  IConnectionPointContainer& container_;
  const IID events_;
  std::vector<Connection> sinks_;
  DWORD lastCookie_ = 0;
};

}  // namespace kelvane::com
