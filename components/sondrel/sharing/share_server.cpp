#include "components/sondrel/sharing/share_server.h"

#include <algorithm>
#include <array>

#include "base/barrier.h"
#include "base/net_filter.h"

namespace kelvane::sondrel {

namespace {

constexpr std::size_t kMostPrograms = 200;
constexpr std::size_t kMostUnsent = 64 * 1024;
constexpr std::chrono::seconds kTryPortAgain{5};
/// Where no connection can be taken, the next attempt must not come at once and for ever.
constexpr milliseconds kAcceptPause{100};
constexpr int kAcceptAtOnce = 32;
constexpr int kPortsTried = 50;

std::string words(ListenFailure failure, const std::string& where) {
  switch (failure) {
    case ListenFailure::InUse:
      return where + " is in use by another program.";
    case ListenFailure::Forbidden:
      return "The system does not allow " + where + ".";
    case ListenFailure::NoAddress:
      return "This computer has no address of " + where + ".";
    case ListenFailure::Failed:
      break;
  }
  return "The system refuses " + where + ".";
}

}  // namespace

struct ShareServer::Port {
  explicit Port(SharePlace which) : place(std::move(which)) {}
  ~Port() { close(); }
  Port(const Port&) = delete;
  Port& operator=(const Port&) = delete;

  void open(Instant now);
  bool listens() const { return !listeners.empty(); }

  SharePlace place;
  std::vector<SocketHandle> listeners;
  std::string reached;
  std::string problem;
  Instant tryAt{};

 private:
  bool openAt(std::uint16_t port);
  void close();
};

struct ShareServer::Client {
  Client(SocketHandle handle, const Port& port, const std::string& address,
         std::function<void()> wake)
      : socket(handle),
        key(port.place.key),
        receiver(port.place.receiver),
        session(*receiver, address, std::move(wake)) {}
  ~Client() { closeSocket(socket); }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  SocketHandle socket;
  std::string key;
  std::shared_ptr<SharedReceiver> receiver;
  ShareSession session;
  std::string unsent;
  bool over = false;
};

void ShareServer::Port::open(Instant now) {
  if (place.port != 0) {
    openAt(place.port);
  } else {
    for (int i = 0; i < kPortsTried && !listens(); ++i) {
      openAt(static_cast<std::uint16_t>(place.firstPort + 2 * i));
    }
  }
  tryAt = now + kTryPortAgain;
}

bool ShareServer::Port::openAt(std::uint16_t port) {
  std::vector<std::string> hosts = {place.address};
  if (place.address.empty()) hosts = {"127.0.0.1", "::1"};
  for (const std::string& host : hosts) {
    ListenFailure failure = ListenFailure::NoAddress;
    const auto address = numericAddress(host, port);
    const SocketHandle listener = address ? listenAt(*address, failure) : kNoSocket;
    if (listener != kNoSocket) {
      if (!listens()) reached = addressText(*address);
      listeners.push_back(listener);
      continue;
    }
    // A computer may be without the newer family; one that is in use there is used by another.
    if (listens() && failure != ListenFailure::InUse) continue;
    close();
    problem =
        words(failure, (place.address.empty() ? "Port " : host + ", port ") + std::to_string(port));
    return false;
  }
  problem.clear();
  return true;
}

void ShareServer::Port::close() {
  for (const SocketHandle listener : listeners) closeSocket(listener);
  listeners.clear();
  reached.clear();
}

ShareServer::ShareServer(Hears hears)
    : hears_(std::move(hears)), signal_(openSignalSocket()), thread_([this] { run(); }) {}

ShareServer::~ShareServer() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  signalSocket(signal_);
  thread_.join();
  clients_.clear();
  ports_.clear();
  if (signal_ != kNoSocket) closeSocket(signal_);
}

void ShareServer::serve(std::vector<SharePlace> places) {
  {
    const std::lock_guard lock(mutex_);
    places_ = std::move(places);
  }
  signalSocket(signal_);
}

void ShareServer::end(const std::string& client) {
  {
    const std::lock_guard lock(mutex_);
    endings_.push_back(client);
  }
  signalSocket(signal_);
}

std::vector<ShareView> ShareServer::views() const {
  const std::lock_guard lock(mutex_);
  return views_;
}

void ShareServer::run() {
  for (;;) {
    {
      const std::lock_guard lock(mutex_);
      if (stop_) return;
    }
    // Out of memory: without its programs there is more of it.
    if (!barrier("serving other programs", [this] { round(); })) clients_.clear();
  }
}

void ShareServer::round() {
  takeMail();
  const Instant now = std::chrono::steady_clock::now();
  openPorts(now);
  show();
  watch(rest(now));
  const Instant then = std::chrono::steady_clock::now();
  std::size_t next = 0;
  if (watched_[next++].readable) {
    std::array<char, 64> dropped;
    while (receiveFrom(signal_, dropped).value_or(0) > 0) {
    }
  }
  for (const auto& client : clients_) {
    const WatchedSocket& seen = watched_[next++];
    if (seen.writable) write(*client);
    if (seen.readable && !client->over) read(*client, then);
  }
  for (const auto& port : ports_) {
    const bool asked =
        std::any_of(watched_.begin() + static_cast<std::ptrdiff_t>(next), watched_.end(),
                    [&](const WatchedSocket& seen) {
                      return seen.readable && std::ranges::count(port->listeners, seen.handle) != 0;
                    });
    if (asked) accept(*port, then);
  }
  closeEnded();
}

void ShareServer::takeMail() {
  std::optional<std::vector<SharePlace>> places;
  std::vector<std::string> endings;
  {
    const std::lock_guard lock(mutex_);
    places.swap(places_);
    endings.swap(endings_);
  }
  for (const auto& client : clients_) {
    if (std::ranges::count(endings, client->session.client()) != 0) client->over = true;
  }
  if (places) {
    stale_ = true;
    const auto stays = [&](const std::unique_ptr<Port>& port) {
      return std::ranges::find(*places, port->place) != places->end();
    };
    std::erase_if(ports_, [&](const auto& port) { return !stays(port); });
    for (const auto& client : clients_) {
      const auto serves = [&](const auto& port) {
        return port->place.receiver == client->receiver;
      };
      if (std::ranges::none_of(ports_, serves)) client->over = true;
    }
    for (SharePlace& place : *places) {
      const auto same = [&](const auto& port) { return port->place == place; };
      if (std::ranges::none_of(ports_, same)) {
        ports_.push_back(std::make_unique<Port>(std::move(place)));
      }
    }
  }
  closeEnded();
}

void ShareServer::openPorts(Instant now) {
  for (const auto& port : ports_) {
    if (port->listens() || now < port->tryAt) continue;
    port->open(now);
    stale_ = true;
  }
}

std::chrono::nanoseconds ShareServer::rest(Instant now) const {
  // Without a signal what is asked for has to be looked for.
  Instant until = now + (signal_ == kNoSocket ? kAcceptPause : milliseconds(std::chrono::hours(1)));
  for (const auto& port : ports_) {
    if (!port->listens()) until = std::min(until, port->tryAt);
  }
  if (acceptAgainAt_ > now) until = std::min(until, acceptAgainAt_);
  return std::max(until - now, Instant::duration::zero());
}

void ShareServer::watch(std::chrono::nanoseconds time) {
  watched_.clear();
  watched_.push_back({signal_});
  for (const auto& client : clients_) watched_.push_back({client->socket, !client->unsent.empty()});
  if (acceptAgainAt_ <= std::chrono::steady_clock::now()) {
    for (const auto& port : ports_) {
      for (const SocketHandle listener : port->listeners) watched_.push_back({listener});
    }
  }
  pollSockets(watched_, time);
}

void ShareServer::accept(Port& port, Instant now) {
  int taken = 0;
  for (const SocketHandle listener : port.listeners) {
    NetAddress peer;
    for (SocketHandle socket; taken < kAcceptAtOnce; ++taken) {
      if ((socket = acceptFrom(listener, peer)) == kNoSocket) break;
      const bool welcome = isLoopbackAddress(peer) || isInNetList(peer, port.place.from);
      if (!welcome || clients_.size() >= kMostPrograms) {
        closeSocket(socket);
        continue;
      }
      clients_.push_back(std::make_unique<Client>(
          socket, port, addressText(peer), [this, key = port.place.key] { hears_.ordered(key); }));
    }
  }
  stale_ = true;
  if (taken == 0) acceptAgainAt_ = now + kAcceptPause;
}

void ShareServer::read(Client& client, Instant now) {
  std::array<char, 16384> buffer;
  const auto count = receiveFrom(client.socket, buffer);
  client.over = !count;
  if (!count || *count == 0) return;
  client.session.received({buffer.data(), *count});
  for (std::string part; !(part = client.session.answer(now)).empty() && !client.over;) {
    client.unsent += part;
    write(client);
    client.over = client.over || client.unsent.size() > kMostUnsent;
  }
  client.over = client.over || client.session.ended();
}

void ShareServer::write(Client& client) {
  const auto sent = sendTo(client.socket, client.unsent);
  client.over = client.over || !sent;
  client.unsent.erase(0, sent.value_or(0));
}

void ShareServer::closeEnded() {
  if (std::erase_if(clients_, [](const auto& client) { return client->over; }) > 0) stale_ = true;
}

void ShareServer::show() {
  if (!std::exchange(stale_, false)) return;
  std::vector<ShareView> views;
  for (const auto& port : ports_) {
    ShareView view{port->place.key, port->reached, port->problem, {}};
    for (const auto& client : clients_) {
      if (client->receiver == port->place.receiver)
        view.clients.push_back(client->session.client());
    }
    views.push_back(std::move(view));
  }
  {
    const std::lock_guard lock(mutex_);
    if (views == views_) return;
    views_ = std::move(views);
  }
  hears_.changed();
}

}  // namespace kelvane::sondrel
