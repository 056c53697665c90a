#include "win32/component_source.h"

#include "contract/win32/com_frequency.h"
#include "contract/win32/com_receiver.h"
#include "contract/win32/component_files.h"

namespace kelvane::win32 {

std::unique_ptr<ReceiverComponent> ComComponents::receiver() {
  const auto opened = com::openReceiverComponent();
  if (!opened) return nullptr;
  receiver_ = opened.object;
  return std::make_unique<com::ComReceiver>(opened.object);
}

std::unique_ptr<FrequencyComponent> ComComponents::frequency() {
  const auto opened = com::openFrequencyComponent();
  if (!opened) return nullptr;
  frequency_ = opened.object;
  return std::make_unique<com::ComFrequency>(opened.object);
}

com::EventConnection ComComponents::listen(ReceiverListener& listener) const {
  return com::EventConnection(receiver_.get(), listener);
}

com::EventConnection ComComponents::listen(FrequencyListener& listener) const {
  return com::EventConnection(frequency_.get(), listener);
}

}  // namespace kelvane::win32
