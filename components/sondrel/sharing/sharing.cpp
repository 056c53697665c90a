#include "components/sondrel/sharing/sharing.h"

#include <algorithm>
#include <chrono>
#include <utility>

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

Sharing::Sharing(const std::shared_ptr<Inbox>& inbox, Callbacks callbacks)
    : mailbox_(inbox), callbacks_(std::move(callbacks)) {}

Sharing::~Sharing() {
  server_.reset();
  mailbox_.close();
}

void Sharing::configure(const std::filesystem::path& lock, const std::vector<SharedEntry>& entries,
                        Instant now) {
  auto former = std::exchange(shares_, {});
  for (const SharedEntry& entry : entries) {
    if (!entry.setup.shared) continue;
    auto place = former.extract(entry.key);
    const bool stays = bool(place);
    Share& share = stays ? shares_.insert(std::move(place)).position->second : shares_[entry.key];
    if (!stays) share.openBy = now + kWaitForReceiver;
    share.entry = entry;
  }
  if (shares_.empty() || lock != lockFile_) {
    server_.reset();
    lock_.release();
  }
  lockFile_ = lock;
  tryAt_ = shares_.empty() ? kNever : now;
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
        ShareServer::Callbacks{[this, box = mailbox_](const std::string& key) {
                                 box.post([this, key] { takeOrders(key); });
                               },
                               [this, box = mailbox_] { box.post([this] { takeViews(); }); }});
  }
  tryAt_ = kNever;
  std::vector<SharePlace> places;
  for (auto& [key, share] : shares_) {
    share.open = share.open || share.facts.online || now >= share.openBy;
    if (!share.open) {
      tryAt_ = std::min(tryAt_, share.openBy);
      continue;
    }
    const ShareSetup& setup = share.entry.setup;
    places.push_back(
        {key, share.receiver, setup.address, setup.from, setup.port, share.entry.firstPort});
  }
  // In the order of the receivers, so that each finds its own port free.
  std::ranges::sort(places, {}, &SharePlace::firstPort);
  server_->serve(std::move(places));
}

void Sharing::takeOrders(const std::string& key) {
  const auto place = shares_.find(key);
  if (place == shares_.end()) return;
  place->second.orderTaken = true;
  const auto receiver = place->second.receiver;
  for (const ShareOrder& order : receiver->takeOrders()) callbacks_.ordered(key, order);
}

void Sharing::takeViews() {
  std::vector<std::string> changed;
  for (const ShareView& view : server_ ? server_->views() : std::vector<ShareView>()) {
    const auto place = shares_.find(view.key);
    if (place == shares_.end() || place->second.view == view) continue;
    place->second.view = view;
    changed.push_back(view.key);
  }
  for (const std::string& key : changed) callbacks_.changed(key);
}

void Sharing::publish(const std::string& key, const Receiver& receiver, Instant now) {
  const auto place = shares_.find(key);
  if (place == shares_.end()) return;
  Share& share = place->second;
  SharedFacts facts = share.facts;
  if (!facts.traits || !describes(*facts.traits, receiver, share.entry.setup)) {
    facts.traits = traitsOf(receiver, share.entry.setup);
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
  if (facts == share.facts && !share.orderTaken) return;
  share.orderTaken = false;
  share.facts = facts;
  if (facts.online && !share.open) tryAt_ = now;
  share.receiver->publish(std::move(facts));
}

void Sharing::moved(const std::string& key, const std::string& program) {
  const auto place = shares_.find(key);
  if (place != shares_.end()) place->second.movedBy = program;
}

const Sharing::Share* Sharing::share(const std::string& key) const {
  const auto place = shares_.find(key);
  return place == shares_.end() ? nullptr : &place->second;
}

std::string Sharing::state(const std::string& key, Instant now) const {
  const Share* found = share(key);
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
  const Share* found = share(key);
  return found && lock_.owned() ? found->view.address : std::string();
}

std::vector<std::string> Sharing::programs(const std::string& key) const {
  const Share* found = share(key);
  return found && lock_.owned() ? found->view.clients : std::vector<std::string>();
}

std::string Sharing::movedBy(const std::string& key) const {
  const Share* found = share(key);
  return found ? found->movedBy : std::string();
}

bool Sharing::end(const std::string& key, const std::string& program) {
  const auto there = programs(key);
  if (!server_ || std::ranges::find(there, program) == there.end()) return false;
  server_->end(program);
  return true;
}

}  // namespace kelvane::sondrel
