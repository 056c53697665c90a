#pragma once

#include "contract/components.h"
#include "contract/win32/com.h"
#include "contract/win32/com_ptr.h"

namespace kelvane::com {

class EventSink;

/// Keeps a listener connected to a component's events, for as long as it lives. Events that are
/// not in the contract, or that carry arguments of another number or kind, are dropped; what a
/// listener throws stops here. Ending the connection inside an event's own handler is allowed.
class EventConnection {
 public:
  /// Not connected to anything.
  EventConnection();
  EventConnection(IUnknown* component, ReceiverListener& listener);
  EventConnection(IUnknown* component, FrequencyListener& listener);
  EventConnection(EventConnection&&) noexcept;
  EventConnection& operator=(EventConnection&& other) noexcept;
  ~EventConnection();

  /// False where the component has no such events to offer.
  bool connected() const { return static_cast<bool>(point_); }

 private:
  void connect(IUnknown* component, REFIID events);
  void disconnect();

  ComPtr<EventSink> sink_;
  ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

}  // namespace kelvane::com
