#include "components/sondrel/sondrel_core.h"

#include <algorithm>
#include <utility>

#include "base/instance_name.h"
#include "base/one_try.h"
#include "components/sondrel/simulated/simulated_receiver.h"

namespace kelvane::sondrel {

namespace {

using Hosted = std::unique_ptr<HostedReceiver>;

/// The receiver that the entry describes already, but perhaps for its name and how it is shared,
/// which it then gets; null where there is none.
Hosted taken(std::vector<Hosted>& receivers, ReceiverEntry entry) {
  const auto described = [&](const Hosted& hosted) {
    if (!hosted) return false;
    ReceiverEntry named = withoutSharing(hosted->entry);
    named.name = entry.name;
    return named == withoutSharing(entry);
  };
  const auto found = std::ranges::find_if(receivers, described);
  if (found == receivers.end()) return nullptr;
  (*found)->receiver->setName(entry.name);
  (*found)->entry = std::move(entry);
  return std::move(*found);
}

}  // namespace

SondrelCore::SondrelCore(std::filesystem::path dataFolder, std::function<Instant()> clock,
                         std::function<void()> wake, ComponentWindows& windows,
                         std::shared_ptr<FileSteps> steps)
    : dataFolder_(std::move(dataFolder)),
      clock_(std::move(clock)),
      wake_(std::move(wake)),
      windows_(windows),
      steps_(std::move(steps)),
      inbox_(std::make_shared<Inbox>([this] { wakeOnce(); })),
      saver_(steps_),
      events_([this] { wakeOnce(); }),
      sharing_(inbox_, {[this](const auto& key, const auto& order) { carryOut(key, order); },
                        [this](const auto& key) { sharingChanged(key); }}) {}

SondrelCore::~SondrelCore() { inbox_->shut(); }

void SondrelCore::wakeOnce() {
  if (!woken_.exchange(true)) wake_();
}

void SondrelCore::raise(bool global, Raise event, std::uint32_t series) {
  events_.raise(global, std::move(event), series);
}

void SondrelCore::confirmed(Receiver& receiver, const Change& change) {
  HostedReceiver* hosted = at(receiver.index());
  // A receiver that is only being made learns its first values before it is one of the list.
  if (!hosted || hosted->receiver.get() != &receiver) return;
  hosted->channels->confirmed(change);
  if (change.item == Item::Frequency && change.news && change.cause != Cause::Program) {
    sharing_.moved(hosted->entry.memories, {});
  }
  std::vector<Receiver*> all;
  for (const auto& other : receivers_) all.push_back(other->receiver.get());
  forwarding_.pass(change, receiver, all, clock_());
}

HostedReceiver* SondrelCore::at(Index rx) const {
  const auto i = static_cast<std::size_t>(rx);
  return rx >= 0 && i < receivers_.size() ? receivers_[i].get() : nullptr;
}

void SondrelCore::tick(Instant now) {
  woken_ = false;
  inbox_->run();
  for (HostedReceiver* hosted : inOrderOfDue()) hosted->tick(now);
  sharing_.tick(now);
  afterwards();
}

std::vector<HostedReceiver*> SondrelCore::inOrderOfDue() {
  // A late tick makes up for the time in order, so that links come up in the order of their own
  // times however busy the computer was; what is due at once is done for the shown one first.
  std::vector<std::pair<Instant, HostedReceiver*>> due;
  if (HostedReceiver* shown = at(shown_)) due.emplace_back(shown->nextDue(), shown);
  for (const auto& hosted : receivers_) {
    if (hosted.get() != at(shown_)) due.emplace_back(hosted->nextDue(), hosted.get());
  }
  std::stable_sort(due.begin(), due.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<HostedReceiver*> order;
  for (const auto& [when, hosted] : due) order.push_back(hosted);
  return order;
}

void SondrelCore::deliverEvents() {
  woken_ = false;
  inbox_->run();
  afterwards();
  events_.deliver();
}

Instant SondrelCore::nextDue() {
  Instant due = sharing_.nextDue();
  for (const auto& hosted : receivers_) due = std::min(due, hosted->nextDue());
  return announced_ = due;
}

void SondrelCore::afterwards() {
  const Instant now = clock_();
  for (const auto& hosted : receivers_) {
    if (!hosted->receiver->online()) hosted->channels->lost();
    hosted->receiver->settle(now);
    if (sharing_.shares(hosted->entry.memories)) {
      sharing_.publish(hosted->entry.memories, *hosted->receiver, now);
    }
  }
  // Whoever waits until a time that was right before has to ask again.
  const Instant announced = announced_;
  if (nextDue() < announced) wakeOnce();
}

std::filesystem::path SondrelCore::instanceFolder() const {
  const std::string name = instance_->empty() ? std::string(kDefaultInstance) : *instance_;
  return dataFolder_ / pathFromText(safeFileName(name));
}

bool SondrelCore::open(const std::string& instance) {
  receivers_.clear();
  saver_.finish();
  instance_ = instance;
  config_ = {};
  if (!takeInConfig()) {
    instance_.reset();
    return false;
  }
  host(config_.config.receivers);
  if (!config_.note.empty()) windows_.tell(config_.note);
  return true;
}

/// Reads the configuration; false where it cannot be read and the operator gives up.
bool SondrelCore::takeInConfig() {
  LoadedConfig loaded = loadConfig(configFile(), *steps_);
  while (!loaded.unreadable.empty()) {
    if (!owned_) windows_.tell(loaded.unreadable);
    if (!owned_ || !windows_.retry(loaded.unreadable)) return false;
    loaded = loadConfig(configFile(), *steps_);
  }
  config_ = std::move(loaded);
  return true;
}

void SondrelCore::note(const std::string& words) {
  config_.note += (config_.note.empty() ? "" : "\n") + words;
}

std::unique_ptr<HostedReceiver> SondrelCore::make(const ReceiverEntry& entry) {
  const ReceiverKind* kind = receiverKind(entry.kind);
  std::vector<std::string> problems;
  auto hosted = std::make_unique<HostedReceiver>();
  hosted->entry = entry;
  hosted->receiver = (kind ? *kind : receiverKinds().front()).make(*this, entry, problems);
  for (const std::string& words : problems) note(words);
  const auto file = instanceFolder() / "Memories" / pathFromText(entry.memories + ".txt");
  ChannelKeeper::Notes notes{[this](const std::string& words) { windows_.tell(words); },
                             [this](const std::string& words, std::function<void()> again) {
                               windows_.askAgain(words, std::move(again));
                             }};
  auto keeper = std::make_unique<ChannelKeeper>(file, saver_, Mailbox(inbox_), std::move(notes));
  ReceiverHost& self = *this;
  hosted->channels = std::make_unique<ReceiverChannels>(*hosted->receiver, self, std::move(keeper));
  return hosted;
}

void SondrelCore::host(const std::vector<ReceiverEntry>& entries) {
  auto former = std::exchange(receivers_, {});
  for (const ReceiverEntry& entry : entries) receivers_.push_back(taken(former, entry));
  // Receivers that go write their channels first: one that comes may be given the same file.
  former.clear();
  saver_.finish();
  // Whoever asked again and again for a link that failed may count on a new set to begin anew.
  std::vector<Receiver*> unlinked;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const bool made = !receivers_[i];
    if (made) receivers_[i] = make(entries[i]);
    Receiver& receiver = *receivers_[i]->receiver;
    receiver.setIndex(static_cast<Index>(i));
    if (made || (receiver.wanted() && !receiver.online())) unlinked.push_back(&receiver);
  }
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const std::vector<ReceiverEntry> before(entries.begin(), entries.begin() + i + 1);
    if (const auto words = samePortWords(before, i); !words.empty())
      note(entries[i].name + ": " + words + " Only one of them can open it.");
  }
  for (Receiver* receiver : unlinked) receiver->connect(true, clock_());
  share();
  shown_ = -1;
  forwarding_.setMode(kForwardNone);
}

void SondrelCore::share() {
  constexpr std::uint16_t kFirstPort = 4532;
  std::vector<SharedEntry> entries;
  std::vector<std::string> notes;
  for (std::size_t i = 0; i < receivers_.size(); ++i) {
    const ReceiverEntry& entry = receivers_[i]->entry;
    const auto port = static_cast<std::uint16_t>(kFirstPort + 2 * i);
    entries.push_back({entry.memories, readShare(entry, notes), port});
  }
  for (const std::string& words : notes) note(words);
  const Instant now = clock_();
  sharing_.configure(instanceFolder() / "sharing.lock", entries, now);
  for (const auto& hosted : receivers_) {
    sharing_.publish(hosted->entry.memories, *hosted->receiver, now);
  }
  sharing_.tick(now);
}

HostedReceiver* SondrelCore::withMemories(const std::string& memories) const {
  const auto same = [&](const Hosted& hosted) { return hosted->entry.memories == memories; };
  const auto found = std::ranges::find_if(receivers_, same);
  return found == receivers_.end() ? nullptr : found->get();
}

void SondrelCore::carryOut(const std::string& memories, const ShareOrder& order) {
  HostedReceiver* hosted = withMemories(memories);
  if (!hosted) return;
  const Outcome outcome =
      hosted->receiver->request(order.item, order.value, Cause::Program, clock_());
  const bool moves = order.item == Item::Frequency && outcome == Outcome::Done;
  if (moves) sharing_.moved(memories, order.client);
}

void SondrelCore::sharingChanged(const std::string& memories) {
  const HostedReceiver* hosted = withMemories(memories);
  if (!hosted) return;
  const auto count = static_cast<Count>(sharing_.programs(memories).size());
  raise(
      false,
      [rx = hosted->receiver->index(), count](ReceiverListener& l) { l.RxShareUpdated(rx, count); },
      0);
}

SondrelCore::ShareSight SondrelCore::shareSight(const std::string& memories) const {
  return {sharing_.state(memories, clock_()), sharing_.address(memories),
          sharing_.programs(memories), sharing_.movedBy(memories)};
}

bool SondrelCore::endProgram(const std::string& memories, const std::string& program) {
  return sharing_.end(memories, program);
}

Result<> SondrelCore::applyDrivers(const DriversModel& model) {
  if (!instance_) return Failure{"No configuration is open."};
  OneTry disk(*steps_);
  const Result<> written = saveConfig(configFile(), model.config(), config_, disk);
  if (!written) return written;
  host(config_.config.receivers);
  const auto count = static_cast<Count>(receivers_.size());
  events_.raise(false, [count](ReceiverListener& l) { l.DrvUpdated(count); });
  afterwards();
  return written;
}

void SondrelCore::editDrivers() {
  if (editing_ || !instance_) return;
  // Another process may have changed the list: what is edited is what the file holds now. Where it
  // is held at this moment, what was read last will do: OK joins the edits with the file.
  OneTry disk(*steps_);
  LoadedConfig now = loadConfig(configFile(), disk);
  if (now.unreadable.empty()) config_ = std::move(now);
  editing_ = true;
  DriversModel model = drivers();
  windows_.editDrivers(model, [&] { return applyDrivers(model); });
  editing_ = false;
}

const Receiver* SondrelCore::receiver(Index rx) const {
  const HostedReceiver* hosted = at(rx);
  return hosted ? hosted->receiver.get() : nullptr;
}

const Receiver* SondrelCore::receiverOf(const std::string& memories) const {
  const auto kept = [&](const Hosted& hosted) { return hosted->entry.memories == memories; };
  const auto hosted = std::ranges::find_if(receivers_, kept);
  return hosted == receivers_.end() ? nullptr : (*hosted)->receiver.get();
}

std::string SondrelCore::found(const ReceiverEntry& entry) const {
  const auto same = [&](const Hosted& hosted) { return hosted->entry == entry; };
  const auto hosted = std::ranges::find_if(receivers_, same);
  const bool up = hosted != receivers_.end() && (*hosted)->receiver->online();
  return up ? (*hosted)->receiver->found() : std::string();
}

SimulatedReceiver* SondrelCore::simulatedAt(Index rx) const {
  const HostedReceiver* hosted = at(rx);
  return hosted ? hosted->receiver->simulated() : nullptr;
}

const SimulatedReceiver* SondrelCore::simulated(Index rx) const { return simulatedAt(rx); }

bool SondrelCore::turnKnob(Index rx, Item item, std::int32_t value) {
  SimulatedReceiver* simulated = simulatedAt(rx);
  const bool turned = simulated && simulated->turn(item, value);
  afterwards();
  return turned;
}

bool SondrelCore::turnLine(Index rx, Long line, Long state) {
  SimulatedReceiver* simulated = simulatedAt(rx);
  if (simulated) simulated->turnLine(line, state);
  return simulated != nullptr;
}

bool SondrelCore::setFaults(Index rx, const SimulatedFaults& faults) {
  SimulatedReceiver* simulated = simulatedAt(rx);
  if (simulated) simulated->setFaults(faults, clock_());
  afterwards();
  return simulated != nullptr;
}

}  // namespace kelvane::sondrel
