#include "components/sondrel/forwarding.h"

#include <cmath>
#include <cstdlib>
#include <vector>

namespace kelvane::sondrel {

namespace {

/// Attenuators are numbered differently everywhere: the dB count.
Setting nearestAttenuator(const std::vector<Choice>& choices, Long db) {
  Setting nearest = -1;
  Long least = 0;
  for (const Choice& choice : choices) {
    const Long distance = std::abs(choice.aux - db);
    if (nearest >= 0 && distance >= least) continue;
    nearest = choice.value;
    least = distance;
  }
  return nearest;
}

void repeat(const Change& change, const Receiver& from, Receiver& slave, Instant now) {
  std::int32_t value = change.value;
  if (change.item == Item::Attenuator) {
    const Choice* choice = choiceOf(from.can().attenuator, value);
    value = nearestAttenuator(slave.can().attenuator, choice ? choice->aux : 0);
  }
  // The filter of a mode that the slave did not take says nothing about the mode that it is in.
  if (change.withMode && slave.newest(Item::Mode) != from.newest(Item::Mode)) return;
  const auto accepted = slave.acceptable(change.item, value);
  if (!accepted || *accepted == slave.newest(change.item)) return;
  slave.request(change.item, *accepted, Cause::Forwarded, now);
}

}  // namespace

bool Forwarding::concerns(const Change& change, const Receiver& from) const {
  const bool caused = change.cause == Cause::Request || change.cause == Cause::AtReceiver ||
                      change.cause == Cause::Program;
  const bool source = mode_ == kForwardAll || mode_ == from.index();
  return caused && source && change.news && change.item != Item::Step;
}

void Forwarding::pass(const Change& change, const Receiver& from,
                      std::span<Receiver* const> receivers, Instant now) const {
  if (!concerns(change, from)) return;
  for (Receiver* slave : receivers) {
    if (slave != &from && slave->online()) repeat(change, from, *slave, now);
  }
}

}  // namespace kelvane::sondrel
