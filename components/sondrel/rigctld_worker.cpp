#include "components/sondrel/rigctld_worker.h"

#include <algorithm>

#include "base/barrier.h"

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

constexpr milliseconds kKnockEvery{100};
/// What a turn lacked, memory above all, is hardly there at once.
constexpr milliseconds kPauseAfterFault{100};

Instant clockNow() { return std::chrono::steady_clock::now(); }

}  // namespace

RigctldWorker::RigctldWorker(RigctldAddress address, const RigctldOptions& options, Deliver deliver)
    : address_(std::move(address)),
      session_(options),
      deliver_(std::move(deliver)),
      keeper_({[this] { return process_.start(address_.command); },
               [this] { return process_.running(); }, [this] { process_.end(); }}),
      thread_([this] { run(); }) {}

RigctldWorker::~RigctldWorker() {
  post([](Mail& mail) { mail.stop = true; });
  thread_.join();
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
  barrier("ending a server", [this] { keeper_.dismiss(); });
}

/// One turn; answers false when the worker is to end.
bool RigctldWorker::serve() {
  if (!readMail(clockNow())) return false;
  keepServer(clockNow());
  keepConnection(clockNow());
  if (const auto output = session_.takeOutput(); !output.empty()) client_.send(output);
  if (auto reports = session_.takeReports(); !reports.empty()) deliver_(std::move(reports), order_);
  const auto events = client_.wait(clockNow(), nextDue());
  feed(events, clockNow());
  return true;
}

Instant RigctldWorker::nextDue() const {
  return std::min({session_.nextDue(), keeper_.nextDue(), knockAt_});
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
  if (mail.shown) session_.show(*mail.shown);
  if (mail.close) {
    session_.close();
    keeper_.dismiss();
  }
  if (mail.open) session_.open(*mail.open, now);
  while (auto request = mail.requests.take()) session_.request(std::move(*request), now);
  return !mail.stop;
}

void RigctldWorker::keepServer(Instant now) {
  if (address_.command.empty()) return;
  const bool begins =
      session_.connectionWanted() != 0 && session_.connectionWanted() != connection_;
  if (begins && !keeper_.want(now).empty()) session_.closed(CloseReason::NoServer, now);
  if (keeper_.tick(now)) session_.tryAgain();
}

void RigctldWorker::keepConnection(Instant now) {
  const auto wanted = session_.connectionWanted();
  if (wanted == connection_ && now < knockAt_) return;
  connection_ = wanted;
  knockAt_ = kNever;
  client_.close();
  if (wanted != 0) client_.open(address_.host, address_.port, now);
}

void RigctldWorker::feed(const TcpClient::Events& events, Instant now) {
  if (events.opened) session_.connected(now);
  if (!events.received.empty()) session_.received(events.received, now);
  if (events.failed && session_.connectionWanted() == connection_) {
    if (events.failed == NetFailure::Refused && keeper_.young(now)) {
      knockAt_ = now + kKnockEvery;
    } else {
      session_.closed(reasonOf(*events.failed), now);
    }
  }
  if (now >= session_.nextDue()) session_.tick(now);
}

}  // namespace kelvane::sondrel
