#include "components/sondrel/radios/radio_desk.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "base/barrier.h"
#include "components/sondrel/radios/radio_setup.h"
#include "components/sondrel/radios/server_program.h"

namespace kelvane::sondrel {

namespace {

namespace fs = std::filesystem;

constexpr milliseconds kPortsEvery{700};
// A virus scanner may hold up the first start of a program.
constexpr milliseconds kProgramLimit{10'000};

std::string pathText(const fs::path& path) {
  const auto text = path.u8string();
  return {reinterpret_cast<const char*>(text.data()), text.size()};
}

}  // namespace

RadioDesk::RadioDesk(Sources sources) : sources_(std::move(sources)), thread_([this] { run(); }) {}

RadioDesk::~RadioDesk() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  wake_.notify_all();
  thread_.join();
}

void RadioDesk::setListener(std::function<void()> onChange) {
  const std::lock_guard lock(mutex_);
  onChange_ = std::move(onChange);
}

DeskState RadioDesk::state() const {
  const std::lock_guard lock(mutex_);
  return state_;
}

std::uint32_t RadioDesk::changes() const {
  const std::lock_guard lock(mutex_);
  return changes_;
}

bool RadioDesk::stopped() const {
  const std::lock_guard lock(mutex_);
  return stop_;
}

void RadioDesk::look() {
  change([this](DeskState& state) {
    wanted_.look = true;
    state.looking = true;
  });
}

void RadioDesk::show(const fs::path& program) {
  change([&](DeskState& state) {
    wanted_.shown = program;
    state.looking = true;
  });
}

void RadioDesk::ask(std::int32_t model) {
  change([&](DeskState&) { wanted_.model = model; });
}

void RadioDesk::watchPorts(bool watch) {
  change([&](DeskState&) { watching_ = watch; });
}

template <class Change>
void RadioDesk::change(Change change) {
  {
    const std::lock_guard lock(mutex_);
    change(state_);
    ++changes_;
    if (onChange_) onChange_();
  }
  wake_.notify_all();
}

void RadioDesk::run() {
  std::unique_lock lock(mutex_);
  while (!stop_) {
    const Wanted wanted = std::exchange(wanted_, {});
    const bool ports = watching_;
    lock.unlock();
    // Ports first: they are there at once.
    if (ports) barrier("looking for ports", [this] { readPorts(); });
    barrier("asking rigctld", [&] { turn(wanted); });
    lock.lock();
    const auto isWanted = [this] {
      return stop_ || wanted_.look || wanted_.shown || wanted_.model != 0;
    };
    if (watching_) {
      wake_.wait_for(lock, kPortsEvery, isWanted);
    } else {
      wake_.wait(lock, [&] { return isWanted() || watching_; });
    }
  }
}

void RadioDesk::turn(const Wanted& wanted) {
  if (wanted.shown) {
    endLooking(readProgram(*wanted.shown));
    if (state().program == pathText(*wanted.shown)) sources_.remember(*wanted.shown);
  } else if (wanted.look) {
    readBestProgram();
  }
  if (wanted.model != 0) readFacts(wanted.model);
}

void RadioDesk::readPorts() {
  auto ports = sources_.ports();
  if (ports == state().ports) return;
  change([&](DeskState& state) { state.ports = std::move(ports); });
}

/// Reads the first program that is a rigctld; the words are those of the first that is none.
void RadioDesk::readBestProgram() {
  constexpr std::size_t kMostTries = 4;
  const auto programs = sources_.programs();
  std::string first;
  for (std::size_t place = 0; place < std::min(programs.size(), kMostTries); ++place) {
    const std::string remark = readProgram(programs[place]);
    if (state().program == pathText(programs[place])) {
      if (place > 0) sources_.remember(programs[place]);
      return endLooking(remark);
    }
    if (place == 0) first = remark;
  }
  endLooking(programs.empty() ? noServerProgramWords() : first);
}

void RadioDesk::endLooking(const std::string& remark) {
  change([&](DeskState& state) {
    state.looking = false;
    state.remark = remark;
  });
}

/// Takes a program over unless it is in use already; answers what there is to say of it.
std::string RadioDesk::readProgram(const fs::path& program) {
  std::error_code none;
  const auto at = fs::last_write_time(program, none);
  if (program == readFrom_ && at == readAt_) return state().remark;
  const Result<std::string> taken = takeProgram(program);
  if (!taken) return taken.reason();
  readFrom_ = program;
  readAt_ = at;
  return *taken;
}

/// Takes a program over where it is a rigctld that lists models, and answers what there is to say
/// of it. What is in use stays otherwise.
Result<std::string> RadioDesk::takeProgram(const fs::path& program) {
  const std::string name = pathText(program);
  const Result<std::string> written = output(name, "--version");
  if (!written) return written.failure();
  const ServerVersion version = readServerVersion(*written);
  if (version.words.empty()) return Failure{name + " is no rigctld."};
  const Result<std::string> listed = output(name, "-l");
  if (!listed) return listed.failure();
  auto models = readModels(*listed);
  if (!models) return Failure{name + " does not list its models."};
  auto list = std::make_shared<const ModelList>(std::move(*models));
  change([&](DeskState& state) {
    state.program = name;
    state.version = version.words;
    state.models = std::move(list);
    state.factsOf = 0;
  });
  return version.tooOld ? version.words + " is too old: get 4.0 or later." : std::string();
}

void RadioDesk::readFacts(std::int32_t model) {
  const std::string program = state().program;
  if (program.empty()) return;
  const std::string number = "-m " + std::to_string(model);
  const Result<std::string> capabilities = output(program, number + " -u");
  const Result<std::string> settings = output(program, number + " -L");
  // What it does not print it does not have.
  const ModelFacts facts =
      readModelFacts(capabilities ? *capabilities : "", settings ? *settings : "");
  change([&](DeskState& state) {
    state.factsOf = model;
    state.facts = facts;
  });
}

/// What a rigctld prints.
Result<std::string> RadioDesk::output(const std::string& program, const std::string& words) {
  Result<std::string> output =
      sources_.run("\"" + program + "\" " + words, kProgramLimit, [this] { return stopped(); });
  if (!output) return Failure{program + ": " + output.reason()};
  return output;
}

}  // namespace kelvane::sondrel
