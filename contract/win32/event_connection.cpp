#include "contract/win32/event_connection.h"

#include "contract/Ambrel.h"
#include "contract/Sondrel.h"
#include "contract/win32/event_sink.h"

namespace kelvane::com {

EventConnection::EventConnection() = default;

EventConnection::EventConnection(IUnknown* component, ReceiverListener& listener)
    : sink_(newSink(listener)) {
  connect(component, __uuidof(_ISondrelEvents));
}

EventConnection::EventConnection(IUnknown* component, FrequencyListener& listener)
    : sink_(newSink(listener)) {
  connect(component, __uuidof(_IAmbrelEvents));
}

EventConnection::EventConnection(EventConnection&&) noexcept = default;

EventConnection& EventConnection::operator=(EventConnection&& other) noexcept {
  if (this == &other) return *this;
  disconnect();
  sink_ = std::move(other.sink_);
  point_ = std::move(other.point_);
  cookie_ = other.cookie_;
  return *this;
}

EventConnection::~EventConnection() { disconnect(); }

void EventConnection::connect(IUnknown* component, REFIID events) {
  const auto container = queryFor<IConnectionPointContainer>(component);
  ComPtr<IConnectionPoint> point;
  if (!container || FAILED(container->FindConnectionPoint(events, point.receive()))) return;
  if (SUCCEEDED(point->Advise(sink_.get(), &cookie_))) point_ = std::move(point);
}

void EventConnection::disconnect() {
  if (sink_) sink_->forget();
  if (point_) point_->Unadvise(cookie_);
  point_ = {};
  sink_ = {};
}

}  // namespace kelvane::com
