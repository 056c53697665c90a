#include "panel/frq_events.h"

namespace kelvane {

void FrqEvents::FrqSelected(Hz frequency, Setting mode, Setting filter) {
  if (shown_.locked() || !navigation_.tuneTo(frequency, mode, filter)) refusal_.signal();
}

void FrqEvents::FrqDataUpdated() {
  navigation_.showRegion();
  if (shown_.online()) best_.refresh(component_.GetRxFrequency(shown_.index(), kTuned), Apply::No);
}

}  // namespace kelvane
