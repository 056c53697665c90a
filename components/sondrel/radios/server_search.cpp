#include "components/sondrel/radios/server_search.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <string_view>
#include <utility>

#include "base/barrier.h"
#include "base/number.h"
#include "base/text.h"

namespace kelvane::sondrel {

namespace {

constexpr std::int32_t kFirstPort = 4532, kLastPort = 4550, kReceiverPort = 7356;
constexpr milliseconds kConnectLimit{4000};
constexpr milliseconds kSearchReply{3000};
constexpr milliseconds kQuietAfter{200};
constexpr milliseconds kAskAgainAfter{500};
constexpr milliseconds kSearchSlice{20};

bool isThisComputer(const std::string& host) {
  return host.empty() || equalIgnoringCase(host, "localhost") || host.starts_with("127.");
}

bool samePlace(const ServerPlace& a, const ServerPlace& b) {
  const bool sameHost =
      (isThisComputer(a.host) && isThisComputer(b.host)) || equalIgnoringCase(a.host, b.host);
  return sameHost && a.port == b.port;
}

/// The text behind a label of the description; empty where there is none.
std::string labelled(std::string_view text, std::string_view label) {
  const auto from = text.find(label);
  if (from == text.npos) return {};
  text.remove_prefix(from + label.size());
  return validUtf8(trimmed(text.substr(0, std::min<std::size_t>(text.find('\n'), 60))), '?');
}

}  // namespace

std::vector<ServerPlace> usualPlaces(const std::string& host,
                                     const std::vector<ServerPlace>& except) {
  std::vector<ServerPlace> places;
  const auto add = [&](const std::string& at, std::int32_t port) {
    const ServerPlace place{at, port};
    const auto same = [&](const ServerPlace& other) { return samePlace(place, other); };
    if (std::ranges::none_of(except, same) && std::ranges::none_of(places, same))
      places.push_back(place);
  };
  const auto addUsual = [&](const std::string& at) {
    for (std::int32_t port = kFirstPort; port <= kLastPort; ++port) add(at, port);
    add(at, kReceiverPort);
  };
  addUsual("127.0.0.1");
  const std::string named(trimmed(host));
  if (named.empty()) return places;
  const auto colon = named.find(':');
  const bool one = colon != named.npos && named.find(':', colon + 1) == named.npos;
  if (!one) {
    if (!isThisComputer(named)) addUsual(named);
  } else if (const auto port = wholeNumber(named.substr(colon + 1));
             port && *port > 0 && *port < 65'536) {
    add(named.substr(0, colon), static_cast<std::int32_t>(*port));
  }
  return places;
}

ServerSearch::ServerSearch(const std::vector<ServerPlace>& places, std::function<void()> wake)
    : wake_(std::move(wake)) {
  running_ = static_cast<int>(places.size());
  threads_.reserve(places.size());
  for (std::size_t rank = 0; rank < places.size(); ++rank) {
    threads_.emplace_back([this, place = places[rank], rank] {
      barrier("looking for servers", [&] { look(place, rank); });
      --running_;
      if (wake_) wake_();
    });
  }
}

ServerSearch::~ServerSearch() {
  stop_ = true;
  for (auto& thread : threads_) thread.join();
}

std::vector<FoundServer> ServerSearch::found() const {
  const std::lock_guard lock(mutex_);
  auto ranked = found_;
  std::ranges::sort(ranked, {}, [](const auto& each) { return each.first; });
  std::vector<FoundServer> servers;
  for (auto& each : ranked) servers.push_back(std::move(each.second));
  return servers;
}

/// What a server says of its frequency. One that closes its radio when its last program goes ends
/// the connection of whoever comes in that moment: it is asked once more.
std::optional<std::string> ServerSearch::firstAnswer(ServerTalk& talk, const ServerPlace& place) {
  for (const bool again : {false, true}) {
    const Instant from =
        std::chrono::steady_clock::now() + (again ? kAskAgainAfter : milliseconds(0));
    while (!stop_ && std::chrono::steady_clock::now() < from)
      std::this_thread::sleep_for(kSearchSlice);
    if (!talk.open(place.host, place.port, kConnectLimit, false)) return std::nullopt;
    auto answer = talk.ask("f", kSearchReply);
    if (answer || talk.isOpen()) return answer;
  }
  return std::nullopt;
}

void ServerSearch::look(const ServerPlace& place, std::size_t rank) {
  ServerTalk talk([this] { return stop_.load(); });
  const auto answer = firstAnswer(talk, place);
  if (!answer) return;
  const double hertz = hertzIn(answer);
  // What says nothing that looks like the protocol is another kind of server.
  if (hertz <= 0 && !answer->starts_with("RPRT")) return;
  FoundServer server{place, {}, hertz > 0 ? decimalText(hertz / 1000) + " kHz" : std::string()};
  const auto first = talk.ask("\\dump_caps", kSearchReply);
  const std::string text = first.value_or("") + "\n" + talk.restOfAnswer(kQuietAfter);
  const std::string maker = labelled(text, "Mfg name:"), model = labelled(text, "Model name:");
  server.name = maker.empty() || model.empty() ? model : maker + " " + model;
  const std::lock_guard lock(mutex_);
  found_.emplace_back(rank, std::move(server));
}

}  // namespace kelvane::sondrel
