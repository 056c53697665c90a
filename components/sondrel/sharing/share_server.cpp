#include "components/sondrel/sharing/share_server.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

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
/// An end that came with a program's last words need not be told once those are read: it is looked
/// for when the program has been silent so long.
constexpr milliseconds kLookForEnd{250};
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
  Port(SharePlace which, SocketWatch& watch) : place(std::move(which)), watch_(watch) {}
  ~Port() { close(); }
  Port(const Port&) = delete;
  Port& operator=(const Port&) = delete;

  void open(Instant now);
  bool listens() const { return !listeners.empty(); }
  bool has(SocketHandle listener) const { return std::ranges::count(listeners, listener) != 0; }
  /// When there is something to do here by itself.
  Instant due() const { return listens() ? resumeAt : tryAt; }
  /// Nobody is let in until then.
  void pause(Instant until);

  SharePlace place;
  std::vector<SocketHandle> listeners;
  std::string reached;
  std::string problem;
  Instant tryAt{};
  Instant resumeAt = kNever;  ///< after a pause

 private:
  bool openAt(std::uint16_t port);
  void listen();
  void close();

  SocketWatch& watch_;
};

struct ShareServer::Client {
  Client(SocketHandle handle, const Port& port, const std::string& address, SocketWatch& watcher,
         std::function<void()> wake)
      : socket(handle),
        key(port.place.key),
        receiver(port.place.receiver),
        session(*receiver, address, std::move(wake)),
        watch(watcher) {
    watch.addConnection(socket);
  }
  ~Client() {
    watch.remove(socket);
    closeSocket(socket);
  }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  SocketHandle socket;
  std::string key;
  std::shared_ptr<SharedReceiver> receiver;
  ShareSession session;
  SocketWatch& watch;
  std::string unsent;
  Instant lookAt = kNever;  ///< for its end
  bool over = false;
};

void ShareServer::Port::open(Instant now) {
  if (listens()) return listen();
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
  listen();
  return true;
}

void ShareServer::Port::listen() {
  resumeAt = kNever;
  for (const SocketHandle listener : listeners) watch_.addListener(listener);
}

void ShareServer::Port::pause(Instant until) {
  resumeAt = until;
  for (const SocketHandle listener : listeners) watch_.remove(listener);
}

void ShareServer::Port::close() {
  for (const SocketHandle listener : listeners) {
    watch_.remove(listener);
    closeSocket(listener);
  }
  listeners.clear();
  reached.clear();
}

ShareServer::ShareServer(Callbacks callbacks)
    : callbacks_(std::move(callbacks)), thread_([this] { run(); }) {}

ShareServer::~ShareServer() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  watch_.wake();
  thread_.join();
  clients_.clear();
  ports_.clear();
}

void ShareServer::serve(std::vector<SharePlace> places) {
  {
    const std::lock_guard lock(mutex_);
    places_ = std::move(places);
  }
  watch_.wake();
}

void ShareServer::end(const std::string& client) {
  {
    const std::lock_guard lock(mutex_);
    endings_.push_back(client);
  }
  watch_.wake();
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
  const auto& told = watch_.wait(timeUntilDue(now));
  const Instant then = std::chrono::steady_clock::now();
  for (const SocketHandle socket : told) look(socket, then);
  for (const auto& client : clients_) {
    if (!client->over && client->lookAt <= then) read(*client, then);
  }
  closeEnded();
}

/// Something may have happened at one of the sockets.
void ShareServer::look(SocketHandle socket, Instant now) {
  for (const auto& client : clients_) {
    if (client->socket != socket) continue;
    if (!client->unsent.empty()) write(*client);
    if (!client->over) read(*client, now);
    return;
  }
  for (const auto& port : ports_) {
    if (port->has(socket)) return accept(*port, socket, now);
  }
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
        ports_.push_back(std::make_unique<Port>(std::move(place), watch_));
      }
    }
  }
  closeEnded();
}

void ShareServer::openPorts(Instant now) {
  for (const auto& port : ports_) {
    if (now < port->due()) continue;
    port->open(now);
    stale_ = true;
  }
}

std::chrono::nanoseconds ShareServer::timeUntilDue(Instant now) const {
  Instant until = now + std::chrono::hours(1);
  for (const auto& port : ports_) until = std::min(until, port->due());
  for (const auto& client : clients_) until = std::min(until, client->lookAt);
  return std::max(until - now, Instant::duration::zero());
}

void ShareServer::accept(Port& port, SocketHandle listener, Instant now) {
  NetAddress peer;
  bool refused = false;
  for (int taken = 0; taken < kAcceptAtOnce; ++taken) {
    const SocketHandle socket = acceptFrom(listener, peer, refused);
    if (socket == kNoSocket) break;
    stale_ = true;
    const bool mayConnect = isLoopbackAddress(peer) || isInNetList(peer, port.place.from);
    if (!mayConnect || clients_.size() >= kMostPrograms) {
      closeSocket(socket);
      continue;
    }
    clients_.push_back(
        std::make_unique<Client>(socket, port, addressText(peer), watch_,
                                 [this, key = port.place.key] { callbacks_.ordered(key); }));
  }
  if (refused) port.pause(now + kAcceptPause);
}

void ShareServer::read(Client& client, Instant now) {
  std::array<char, 16384> buffer;
  const auto count = receiveFrom(client.socket, buffer);
  client.over = !count;
  client.lookAt = kNever;
  if (!count || *count == 0) return;
  client.lookAt = now + kLookForEnd;
  if (*count == buffer.size()) watch_.again(client.socket);
  client.session.received({buffer.data(), *count});
  answer(client, now);
}

void ShareServer::answer(Client& client, Instant now) {
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
  watch_.setWrites(client.socket, !client.unsent.empty());
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
  callbacks_.changed();
}

}  // namespace kelvane::sondrel
