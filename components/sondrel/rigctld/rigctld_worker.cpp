#include "components/sondrel/rigctld/rigctld_worker.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <utility>
#include <variant>

#include "base/barrier.h"
#include "base/instance_name.h"

namespace kelvane::sondrel {

namespace {

CloseReason reasonOf(NetFailure failure) {
  switch (failure) {
    case NetFailure::BadAddress:
      return CloseReason::BadAddress;
    case NetFailure::Refused:
      return CloseReason::Refused;
    case NetFailure::Unreachable:
      return CloseReason::Unreachable;
    case NetFailure::TimedOut:
      return CloseReason::TimedOut;
    case NetFailure::Ended:
      break;
  }
  return CloseReason::Ended;
}

constexpr milliseconds kConnectEvery{100};
constexpr std::size_t kMostWritten = 8192;
/// What a turn lacked, memory above all, is hardly there at once.
constexpr milliseconds kPauseAfterFault{100};

bool tellsOfLink(const std::vector<RigReport>& reports) {
  return std::ranges::any_of(
      reports, [](const RigReport& report) { return std::holds_alternative<LinkReport>(report); });
}

/// The file that stands for the right to a place on this computer.
std::filesystem::path serverMark(const RigctldAddress& address) {
  std::error_code none;
  const std::string place = safeFileName(address.host + "-" + std::to_string(address.port));
  return std::filesystem::temp_directory_path(none) / "Kelvane" /
         pathFromText("server-" + place + ".lock");
}

Instant clockNow() { return std::chrono::steady_clock::now(); }

}  // namespace

RigctldWorker::RigctldWorker(RigctldAddress address, const RigctldOptions& options, Deliver deliver)
    : address_(std::move(address)),
      session_(options),
      deliver_(std::move(deliver)),
      keeper_({[this] { return startServer(); }, [this] { return serverRuns(); },
               [this] { process_.end(); }}),
      thread_([this] { run(); }) {}

RigctldWorker::~RigctldWorker() {
  post([](Mail& mail) { mail.stop = true; });
  thread_.join();
}

void RigctldWorker::dismissServer() {
  keeper_.dismiss();
  placeLock_.release();
  servedElsewhere_ = false;
}

std::uint32_t RigctldWorker::open(bool reopen) {
  return post([reopen](Mail& mail) {
    ++mail.order;
    mail.open = reopen || mail.open.value_or(false);
  });
}

std::uint32_t RigctldWorker::close() {
  return post([](Mail& mail) {
    ++mail.order;
    mail.close = true;
    mail.open.reset();
    mail.requests.clear();
  });
}

void RigctldWorker::request(RigRequest request) {
  post([&](Mail& mail) { mail.requests.put(std::move(request)); });
}

void RigctldWorker::show(bool shown) {
  post([shown](Mail& mail) { mail.shown = shown; });
}

template <class Change>
std::uint32_t RigctldWorker::post(Change change) {
  std::uint32_t order = 0;
  {
    const std::lock_guard lock(mutex_);
    change(mail_);
    order = mail_.order;
  }
  client_.wake();
  return order;
}

void RigctldWorker::run() {
  bool goesOn = true;
  while (goesOn) {
    const bool whole = barrier("serving a link", [&] { goesOn = serve(); });
    // What the session knows is no longer sure: the link is made anew, as after any other fault.
    if (!whole) {
      barrier("closing a link", [this] { session_.closed(CloseReason::Ended, clockNow()); });
      std::this_thread::sleep_for(kPauseAfterFault);
    }
  }
  // Here and not in a destructor: the server was started by this thread.
  barrier("ending a server", [this] { dismissServer(); });
}

/// One turn; answers false when the worker is to end.
bool RigctldWorker::serve() {
  if (!readMail(clockNow())) return false;
  keepServer(clockNow());
  keepConnection(clockNow());
  if (const auto output = session_.takeOutput(); !output.empty()) client_.send(output);
  deliver();
  const auto events = client_.wait(clockNow(), nextDue());
  feed(events, clockNow());
  return true;
}

void RigctldWorker::deliver() {
  auto reports = session_.takeReports();
  if (reports.empty()) return;
  const bool up = std::ranges::any_of(reports, [](const RigReport& report) {
    const auto* link = std::get_if<LinkReport>(&report);
    return link && link->state == LinkState::Up;
  });
  // What went wrong before says nothing of the next fault.
  if (up) {
    written_.clear();
    rememberFault({});
    reached_ = true;
  } else if (address_.own && tellsOfLink(reports)) {
    lostRadio();
  }
  deliver_(std::move(reports), order_);
}

/// The server writes what is wrong with its port when it opens that, and never while it runs: it is
/// ended, and started anew by its keeper, so that it tells, and opens a port that is back.
void RigctldWorker::lostRadio() {
  if (fault().empty()) rememberFault(address_.own->silence());
  if (std::exchange(reached_, false)) process_.end();
}

Instant RigctldWorker::nextDue() const {
  return std::min({session_.nextDue(), keeper_.nextDue(), nextConnectAt_});
}

/// Answers false when the worker is to end.
bool RigctldWorker::readMail(Instant now) {
  Mail mail;
  {
    const std::lock_guard lock(mutex_);
    std::swap(mail, mail_);
    mail_.order = mail.order;
    mail_.stop = mail.stop;  // also when what follows fails
  }
  order_ = mail.order;
  if (mail.shown) session_.setShown(*mail.shown);
  if (mail.close) {
    session_.close();
    dismissServer();
  }
  if (mail.open) session_.open(*mail.open, now);
  while (auto request = mail.requests.take()) session_.request(std::move(*request), now);
  return !mail.stop;
}

std::string RigctldWorker::fault() const {
  const std::lock_guard lock(mutex_);
  return fault_;
}

void RigctldWorker::rememberFault(const std::string& words) {
  const std::lock_guard lock(mutex_);
  fault_ = words;
}

Result<> RigctldWorker::startServer() {
  if (!address_.own) return startSoleServer();
  written_.clear();
  const Result<OwnServer::Start> start = address_.own->prepare();
  address_.port = start ? start->port : 0;
  const Result<> started =
      start ? process_.start(start->command, Written::Kept) : Result<>(start.failure());
  if (!started) rememberFault(started.reason());
  return started;
}

/// Two servers at one place would fight for radio and port: the first process that wants one there
/// starts it, for all.
Result<> RigctldWorker::startSoleServer() {
  const Result<> sole = placeLock_.owned() ? Result<>() : placeLock_.acquire(serverMark(address_));
  const bool elsewhere = !sole && sole.held();
  if (elsewhere && !servedElsewhere_) {
    noteFault("starting the server at " + address_.host + ":" + std::to_string(address_.port),
              "another program started it already, and owns it; it is used as it is");
  }
  servedElsewhere_ = elsewhere;
  const Result<> started = elsewhere ? Result<>() : process_.start(address_.command);
  if (!started) placeLock_.release();
  return started;
}

/// Another process's server ends with its owner.
bool RigctldWorker::serverRunsElsewhere() {
  const bool free = bool(placeLock_.acquire(serverMark(address_)));
  placeLock_.release();
  return !free;
}

bool RigctldWorker::serverRuns() {
  if (servedElsewhere_) return serverRunsElsewhere();
  const bool runs = process_.running();
  if (!address_.own) return runs;
  const std::string more = process_.takeWritten();
  if (more.empty()) return runs;
  written_ += more;
  if (written_.size() > kMostWritten) written_.erase(0, written_.size() - kMostWritten);
  if (const auto words = address_.own->fault(written_); !words.empty()) rememberFault(words);
  return runs;
}

void RigctldWorker::keepServer(Instant now) {
  if (!address_.startsServer()) return;
  const bool begins =
      session_.connectionWanted() != 0 && session_.connectionWanted() != connection_;
  if (begins && !keeper_.want(now)) session_.closed(CloseReason::NoServer, now);
  if (keeper_.tick(now)) session_.tryAgain();
}

void RigctldWorker::keepConnection(Instant now) {
  const auto wanted = session_.connectionWanted();
  if (wanted == connection_ && now < nextConnectAt_) return;
  connection_ = wanted;
  nextConnectAt_ = kNever;
  client_.close();
  if (wanted != 0) client_.open(address_.host, address_.port, now);
}

void RigctldWorker::feed(const TcpClient::Events& events, Instant now) {
  if (events.opened) session_.connected(now);
  if (!events.received.empty()) session_.received(events.received, now);
  if (events.failed && session_.connectionWanted() == connection_) {
    if (events.failed == NetFailure::Refused && keeper_.justStarted(now)) {
      nextConnectAt_ = now + kConnectEvery;
    } else {
      session_.closed(reasonOf(*events.failed), now);
    }
  }
  if (now >= session_.nextDue()) session_.tick(now);
}

}  // namespace kelvane::sondrel
