#include "contract/win32/server/connection_point.h"

#include <algorithm>

#include "contract/win32/com.h"
#include "contract/win32/server/com_enumerator.h"

namespace kelvane::com {

namespace {

struct Connected {
  DWORD cookie;
  ComPtr<IUnknown> sink;
};

CONNECTDATA give(const Connected& connection) {
  return {ComPtr<IUnknown>(connection.sink).detach(), connection.cookie};
}

using Connections = ComEnumerator<IEnumConnections, CONNECTDATA, Connected, give>;

}  // namespace

STDMETHODIMP ConnectionPoint::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  const bool known = iid == IID_IUnknown || iid == IID_IConnectionPoint;
  *object = known ? this : nullptr;
  if (known) AddRef();
  return known ? S_OK : E_NOINTERFACE;
}

STDMETHODIMP ConnectionPoint::GetConnectionInterface(IID* events) {
  if (!events) return E_POINTER;
  *events = events_;
  return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
  if (!container) return E_POINTER;
  *container = ComPtr<IConnectionPointContainer>(&container_).detach();
  return S_OK;
}

STDMETHODIMP ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
  if (!sink || !cookie) return E_POINTER;
  *cookie = 0;
  // Some sinks answer to the event interface alone, some to IDispatch alone.
  auto events = queryFor<IDispatch>(sink, events_);
  if (!events) events = queryFor<IDispatch>(sink);
  if (!events) return CONNECT_E_CANNOTCONNECT;
  try {
    sinks_.push_back({lastCookie_ + 1, std::move(events)});
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
  *cookie = ++lastCookie_;
  return S_OK;
}

STDMETHODIMP ConnectionPoint::Unadvise(DWORD cookie) {
  const auto found = std::find_if(sinks_.begin(), sinks_.end(),
                                  [&](const Connection& c) { return c.cookie == cookie; });
  if (found == sinks_.end()) return CONNECT_E_NOCONNECTION;
  // Out of the list before it is given back: the sink's end may reach back here.
  const ComPtr<IDispatch> sink = std::move(found->sink);
  sinks_.erase(found);
  return S_OK;
}

STDMETHODIMP ConnectionPoint::EnumConnections(IEnumConnections** connections) {
  if (!connections) return E_POINTER;
  *connections = nullptr;
  try {
    std::vector<Connected> items;
    for (const Connection& c : sinks_) items.push_back({c.cookie, c.sink.get()});
    return Connections::create(std::move(items), 0, connections);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

bool ConnectionPoint::isConnected(DWORD cookie) const {
  return std::any_of(sinks_.begin(), sinks_.end(),
                     [&](const Connection& c) { return c.cookie == cookie; });
}

void ConnectionPoint::call(DISPID event, std::span<Variant> args) {
  const ComPtr<IConnectionPointContainer> self(&container_);
  const std::vector<Connection> sinks = sinks_;
  // An event takes its arguments last first.
  std::reverse(reinterpret_cast<VARIANT*>(args.data()),
               reinterpret_cast<VARIANT*>(args.data()) + args.size());
  for (const Connection& connection : sinks) {
    if (!isConnected(connection.cookie)) continue;
    DISPPARAMS parameters{args.data(), nullptr, static_cast<UINT>(args.size()), 0};
    // What a sink makes of an event is its own affair.
    connection.sink->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                            nullptr, nullptr, nullptr);
  }
}

}  // namespace kelvane::com
