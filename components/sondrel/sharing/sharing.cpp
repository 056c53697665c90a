#include "components/sondrel/sharing/sharing.h"

#include <algorithm>

#include "components/sondrel/receiver.h"

namespace kelvane::sondrel {

namespace {

constexpr std::chrono::seconds kTryLockAgain{5};
/// A program that connects while the link is on its way up would hear that the radio does not
/// answer, and some wait for a hand then: so long nobody is let in.
constexpr std::chrono::seconds kWaitForReceiver{10};

std::string programCount(std::size_t count) {
  if (count == 0) return "no program";
  return std::to_string(count) + (count == 1 ? " program" : " programs");
}

std::shared_ptr<const SharedTraits> traitsOf(const Receiver& receiver, const ShareSetup& setup) {
  return std::make_shared<const SharedTraits>(
      SharedTraits{receiver.name(), receiver.can(), setup.permission, setup.hold});
}

bool describes(const SharedTraits& traits, const Receiver& receiver, const ShareSetup& setup) {
  return traits.permission == setup.permission && traits.hold == setup.hold &&
         traits.name == receiver.name() && traits.can == receiver.can();
}

}  // namespace

Sharing::Sharing(const std::shared_ptr<Inbox>& inbox, Hears hears)
    : mailbox_(inbox), hears_(std::move(hears)) {}

Sharing::~Sharing() {
  server_.reset();
  mailbox_.close();
}

void Sharing::configure(const std::filesystem::path& lock, const std::vector<SharedEntry>& entries,
                        Instant now) {
  auto former = std::exchange(seats_, {});
  for (const SharedEntry& entry : entries) {
    if (!entry.setup.shared) continue;
    auto place = former.extract(entry.key);
    const bool stays = bool(place);
    Seat& seat = stays ? seats_.insert(std::move(place)).position->second : seats_[entry.key];
    if (!stays) seat.openBy = now + kWaitForReceiver;
    seat.entry = entry;
  }
  if (seats_.empty() || lock != lockFile_) {
    server_.reset();
    lock_.release();
  }
  lockFile_ = lock;
  tryAt_ = seats_.empty() ? kNever : now;
}

void Sharing::tick(Instant now) {
  if (now < tryAt_) return;
  if (!lock_.owned()) lockResult_ = lock_.acquire(lockFile_);
  tryAt_ = now + kTryLockAgain;
  if (!lock_.owned()) return;
  startServer(now);
}

void Sharing::startServer(Instant now) {
  if (!server_) {
    server_ = std::make_unique<ShareServer>(
        ShareServer::Hears{[this, box = mailbox_](const std::string& key) {
                             box.post([this, key] { takeOrders(key); });
                           },
                           [this, box = mailbox_] { box.post([this] { takeViews(); }); }});
  }
  tryAt_ = kNever;
  std::vector<SharePlace> places;
  for (auto& [key, seat] : seats_) {
    seat.open = seat.open || seat.facts.online || now >= seat.openBy;
    if (!seat.open) {
      tryAt_ = std::min(tryAt_, seat.openBy);
      continue;
    }
    const ShareSetup& setup = seat.entry.setup;
    places.push_back(
        {key, seat.receiver, setup.address, setup.from, setup.port, seat.entry.firstPort});
  }
  // In the order of the receivers, so that each finds its own port free.
  std::ranges::sort(places, {}, &SharePlace::firstPort);
  server_->serve(std::move(places));
}

void Sharing::takeOrders(const std::string& key) {
  const auto place = seats_.find(key);
  if (place == seats_.end()) return;
  place->second.orderTaken = true;
  const auto receiver = place->second.receiver;
  for (const ShareOrder& order : receiver->takeOrders()) hears_.ordered(key, order);
}

void Sharing::takeViews() {
  std::vector<std::string> changed;
  for (const ShareView& view : server_ ? server_->views() : std::vector<ShareView>()) {
    const auto place = seats_.find(view.key);
    if (place == seats_.end() || place->second.view == view) continue;
    place->second.view = view;
    changed.push_back(view.key);
  }
  for (const std::string& key : changed) hears_.changed(key);
}

void Sharing::publish(const std::string& key, const Receiver& receiver, Instant now) {
  const auto place = seats_.find(key);
  if (place == seats_.end()) return;
  Seat& seat = place->second;
  SharedFacts facts = seat.facts;
  if (!facts.traits || !describes(*facts.traits, receiver, seat.entry.setup)) {
    facts.traits = traitsOf(receiver, seat.entry.setup);
  }
  if (receiver.online()) {
    facts.lostAt.reset();
    facts.level = receiver.level();
    facts.squelchOpen = receiver.squelchOpen();
  } else if (facts.online) {
    facts.lostAt = now;
  }
  facts.online = receiver.online();
  facts.frequency = receiver.newest(Item::Frequency);
  facts.mode = receiver.newest(Item::Mode);
  facts.filter = receiver.newest(Item::Filter);
  facts.agc = receiver.newest(Item::Agc);
  facts.blanker = receiver.newest(Item::Blanker);
  facts.attenuator = receiver.newest(Item::Attenuator);
  if (facts == seat.facts && !seat.orderTaken) return;
  seat.orderTaken = false;
  seat.facts = facts;
  if (facts.online && !seat.open) tryAt_ = now;
  seat.receiver->publish(std::move(facts));
}

void Sharing::moved(const std::string& key, const std::string& program) {
  const auto place = seats_.find(key);
  if (place != seats_.end()) place->second.movedBy = program;
}

const Sharing::Seat* Sharing::seat(const std::string& key) const {
  const auto place = seats_.find(key);
  return place == seats_.end() ? nullptr : &place->second;
}

std::string Sharing::state(const std::string& key, Instant now) const {
  const Seat* found = seat(key);
  if (!found) return {};
  if (!lock_.owned() && lockResult_.held())
    return "Another program has these receivers open and shares them already.";
  if (!lock_.owned())
    return "Not shared, since a file cannot be made: " + lockResult_.reason() + ".";
  const ShareView& view = found->view;
  if (!view.problem.empty()) return view.problem + " It is tried again every few seconds.";
  if (!found->open) return "Programs are let in when the receiver answers.";
  if (view.address.empty()) return "Opening a port.";
  const SharedFacts& facts = found->facts;
  if (!facts.online && facts.lostAt && !view.clients.empty()) {
    const auto left = *facts.lostAt + found->entry.setup.hold - now;
    const auto seconds = std::chrono::ceil<std::chrono::seconds>(left).count();
    return seconds > 0 ? "Held for " + programCount(view.clients.size()) + ", " +
                             std::to_string(seconds) + " s."
                       : "Down for " + programCount(view.clients.size()) + ".";
  }
  const bool looks = found->entry.setup.permission == SharePermission::Look;
  return "Shared at " + view.address + (looks ? ", to look: " : ": ") +
         programCount(view.clients.size()) + ".";
}

std::string Sharing::address(const std::string& key) const {
  const Seat* found = seat(key);
  return found && lock_.owned() ? found->view.address : std::string();
}

std::vector<std::string> Sharing::programs(const std::string& key) const {
  const Seat* found = seat(key);
  return found && lock_.owned() ? found->view.clients : std::vector<std::string>();
}

std::string Sharing::movedBy(const std::string& key) const {
  const Seat* found = seat(key);
  return found ? found->movedBy : std::string();
}

bool Sharing::end(const std::string& key, const std::string& program) {
  const auto there = programs(key);
  if (!server_ || std::ranges::find(there, program) == there.end()) return false;
  server_->end(program);
  return true;
}

}  // namespace kelvane::sondrel
