#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <future>
#include <new>

#include "base/barrier.h"
#include "base/safe_file.h"
#include "components/sondrel/rigctld/rigctld_capabilities.h"
#include "components/sondrel/rigctld/rigctld_worker.h"
#include "tests/fakes/fake_rig.h"
#include "tests/fakes/stand_in_server.h"
#include "tests/fakes/temp_folder.h"

namespace kelvane::sondrel {
namespace {

using fakes::FakeRig;
using fakes::StandInServer;
using Connection = StandInServer::Connection;

/// A worker with what it reported so far.
class WorkerWatch {
 public:
  explicit WorkerWatch(RigctldAddress address)
      : worker(std::make_unique<RigctldWorker>(
            std::move(address), RigctldOptions{},
            [this](std::vector<RigReport> reports, std::uint32_t) { keep(reports); })) {}

  /// Waits until the link's newest state is this one; false after half a minute.
  bool becomes(LinkState state) {
    return wait([&] { return !links_.empty() && links_.back() == state; });
  }
  /// Waits until the link has been in this state so many times.
  bool becomesAgain(LinkState state, long times) {
    return wait([&] { return std::count(links_.begin(), links_.end(), state) >= times; });
  }
  bool hears(const std::function<bool(const ValueReport&)>& value) {
    return wait([&] { return std::any_of(values_.begin(), values_.end(), value); });
  }
  std::vector<LinkState> links() {
    const std::lock_guard lock(mutex_);
    return links_;
  }

 private:
  bool wait(const std::function<bool()>& come) {
    std::unique_lock lock(mutex_);
    return news_.wait_for(lock, std::chrono::seconds(30), come);
  }
  void keep(const std::vector<RigReport>& reports) {
    const std::lock_guard lock(mutex_);
    for (const auto& report : reports) {
      if (const auto* link = std::get_if<LinkReport>(&report)) links_.push_back(link->state);
      if (const auto* value = std::get_if<ValueReport>(&report)) values_.push_back(*value);
    }
    news_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable news_;
  std::vector<LinkState> links_;
  std::vector<ValueReport> values_;

 public:
  std::unique_ptr<RigctldWorker> worker;  ///< last: it reports into the rest
};

/// Answers as a server of that manner does.
StandInServer::Script answering(FakeRig::Manner manner) {
  return [manner](Connection& connection) {
    FakeRig rig(manner);
    while (const auto line = connection.line()) connection.write(rig.answer(*line));
  };
}

/// Answers up to the given command, then does something else with it.
StandInServer::Script until(const std::string& command, std::function<void(Connection&)> then) {
  return [=](Connection& connection) {
    FakeRig rig(FakeRig::Manner::Rigctld);
    while (const auto line = connection.line()) {
      if (*line == command) return then(connection);
      connection.write(rig.answer(*line));
    }
  };
}

RigctldAddress addressOf(const StandInServer& server) { return {"127.0.0.1", server.port()}; }

TEST(RigctldWorker, TunesEveryMannerOfServer) {
  for (const auto manner :
       {FakeRig::Manner::Rigctld, FakeRig::Manner::RigctldVfo, FakeRig::Manner::StaticSdr,
        FakeRig::Manner::SilentSdr, FakeRig::Manner::SmallSdr}) {
    StandInServer server(answering(manner));
    WorkerWatch watch(addressOf(server));
    watch.worker->open(false);
    ASSERT_TRUE(watch.becomes(LinkState::Up));
    watch.worker->request({RigItem::Frequency, 5'000'000, {}, 9});
    EXPECT_TRUE(watch.hears([](const ValueReport& value) {
      return value.item == RigItem::Frequency && value.ticket == 9 && value.number == 5'000'000;
    }));
  }
}

TEST(RigctldWorker, PutsEveryFailureIntoWords) {
  struct Case {
    std::string name;
    StandInServer::Script script;
    LinkState state;
  };
  const auto wait = [](Connection& connection) {
    while (connection.line()) {
    }
  };
  const Case cases[] = {
      {"closes at once", [](Connection& c) { c.close(); }, LinkState::Error},
      {"resets at once", [](Connection& c) { c.reset(); }, LinkState::Error},
      {"never answers", wait, LinkState::Timeout},
      {"an HTTP server",
       [&](Connection& c) {
         c.write("HTTP/1.1 400 Bad Request\r\n\r\n<html></html>\r\n");
         wait(c);
       },
       LinkState::BadIdentity},
      {"closes in an answer", until("+f", [](Connection& c) { c.write("get_freq:\nFreq"); }),
       LinkState::Error},
      {"half a line",
       until("+m",
             [&](Connection& c) {
               c.write("get_mode:\nMode: U");
               wait(c);
             }),
       LinkState::Error},
      {"hangs up for its radio", until("+f", [](Connection& c) { c.reset(); }),
       LinkState::NotResponding},
      {"no end of bytes",
       [](Connection& c) {
         while (c.write(std::string(65536, 'x'))) {
         }
       },
       LinkState::BadIdentity}};
  for (const auto& each : cases) {
    StandInServer server(each.script);
    WorkerWatch watch(addressOf(server));
    watch.worker->open(false);
    EXPECT_TRUE(watch.becomes(each.state)) << each.name;
    EXPECT_EQ(watch.links().size(), 1U) << each.name;
  }
  const int unused = StandInServer(nullptr).port();
  for (const auto& [address, state] :
       {std::pair<RigctldAddress, LinkState>{{"127.0.0.1", unused}, LinkState::CannotOpen},
        {{"nosuch.invalid", 4532}, LinkState::BadAddress},
        {{"127.0.0.1", 0}, LinkState::BadAddress},
        {{"127.0.0.1", 70000}, LinkState::BadAddress}}) {
    WorkerWatch watch(address);
    watch.worker->open(false);
    EXPECT_TRUE(watch.becomes(state)) << address.host << address.port;
  }
}

TEST(RigctldWorker, HealsWhenItIsAskedToTryAgain) {
  std::atomic<bool> well = false;
  StandInServer server([&](Connection& connection) {
    if (well) answering(FakeRig::Manner::Rigctld)(connection);
  });
  WorkerWatch watch(addressOf(server));
  watch.worker->open(false);
  EXPECT_TRUE(watch.becomes(LinkState::Error));
  well = true;
  watch.worker->open(false);
  EXPECT_TRUE(watch.becomes(LinkState::Up));
  EXPECT_EQ(watch.links(), (std::vector<LinkState>{LinkState::Error, LinkState::Up}));
  EXPECT_EQ(server.connections(), 2) << "no attempt that nobody asked for";
}

TEST(RigctldWorker, EndsWhateverTheServerDoes) {
  const auto wait = [](Connection& connection) {
    while (connection.line()) {
    }
  };
  const StandInServer::Script scripts[] = {wait, answering(FakeRig::Manner::Rigctld),
                                           until("+f", wait), [](Connection& c) {
                                             while (c.write("x")) {
                                             }
                                           }};
  for (const auto& script : scripts) {
    for (const int ms : {0, 1, 30}) {
      StandInServer server(script);
      WorkerWatch watch(addressOf(server));
      watch.worker->open(false);
      std::this_thread::sleep_for(milliseconds(ms));
      watch.worker.reset();
    }
  }
  // A name whose lookup takes its time is not waited for either.
  for (int i = 0; i < 5; ++i) {
    WorkerWatch watch({"nosuch" + std::to_string(i) + ".invalid", 4532});
    watch.worker->open(false);
  }
}

TEST(RigctldWorker, CarriesOutNothingThatWasAskedBeforeItWasClosed) {
  std::mutex mutex;
  std::vector<std::string> sets;  ///< from the second connection on
  std::atomic<int> connections = 0;
  StandInServer server([&](Connection& connection) {
    FakeRig rig(FakeRig::Manner::Rigctld);
    const bool first = ++connections == 1;
    while (const auto line = connection.line()) {
      // Slow, so that what is asked has to wait.
      if (first) std::this_thread::sleep_for(milliseconds(10));
      connection.write(rig.answer(*line));
      const std::lock_guard lock(mutex);
      if (!first) sets.insert(sets.end(), rig.sets.begin(), rig.sets.end());
      rig.sets.clear();
    }
  });
  WorkerWatch watch(addressOf(server));
  watch.worker->open(false);
  ASSERT_TRUE(watch.becomes(LinkState::Up));
  watch.worker->request({RigItem::Frequency, 5'000'000, {}, 9});
  watch.worker->close();
  watch.worker->open(false);
  EXPECT_TRUE(watch.becomesAgain(LinkState::Up, 2));
  watch.worker->request({RigItem::Frequency, 6'000'000, {}, 10});
  EXPECT_TRUE(watch.hears([](const ValueReport& value) { return value.ticket == 10; }));
  const std::lock_guard lock(mutex);
  EXPECT_EQ(sets, std::vector<std::string>{"F 6000000"});
}

TEST(RigctldWorker, AFaultOnItsThreadEndsTheLinkAndNotTheProgram) {
  StandInServer server(answering(FakeRig::Manner::Rigctld));
  std::promise<void> thrown, up;
  std::atomic<bool> first = true;
  RigctldWorker worker(addressOf(server), {}, [&](const std::vector<RigReport>& reports, auto) {
    const auto isUp = [](const RigReport& report) {
      const auto* link = std::get_if<LinkReport>(&report);
      return link && link->state == LinkState::Up;
    };
    if (std::ranges::none_of(reports, isUp)) return;
    if (!first.exchange(false)) return up.set_value();
    thrown.set_value();
    throw std::bad_alloc();
  });
  worker.open(false);
  thrown.get_future().wait();
  worker.open(true);
  EXPECT_EQ(up.get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready);
}

TEST(RigctldWorker, OneProcessAloneStartsTheServerOfAPlaceAndTheNextOneInherits) {
  const fakes::TempFolder folder;
  const auto starts = folder.path() / "starts", script = folder.path() / "serve";
  writeFileSafely(script, "echo started >> " + pathText(starts) + "\nexec sleep 60\n");
  const auto startsAre = [&](std::size_t lines) {
    for (int i = 0; i < 1000; ++i) {
      if (readFile(starts, 1000).value_or("").size() == lines * std::string("started\n").size())
        return true;
      std::this_thread::sleep_for(milliseconds(20));
    }
    return false;
  };
  RigctldAddress address;
  {
    const StandInServer place(answering(FakeRig::Manner::Rigctld));
    address = addressOf(place);
  }
  address.command = "/bin/sh " + pathText(script);
  auto owner = std::make_unique<RigctldWorker>(address, RigctldOptions{}, [](auto, auto) {});
  owner->open(false);
  ASSERT_TRUE(startsAre(1));
  RigctldWorker other(address, {}, [](auto, auto) {});
  other.open(false);
  const auto said = [] { return notedFaults().find("owns it") != std::string::npos; };
  for (int i = 0; i < 1000 && !said(); ++i) std::this_thread::sleep_for(milliseconds(20));
  EXPECT_TRUE(said());
  EXPECT_TRUE(startsAre(1));
  owner.reset();
  EXPECT_TRUE(startsAre(2)) << "the server ended with its owner";
}

}  // namespace
}  // namespace kelvane::sondrel
