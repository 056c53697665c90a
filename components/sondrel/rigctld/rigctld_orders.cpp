#include "components/sondrel/rigctld/rigctld_orders.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

namespace kelvane::sondrel {

namespace {

class OrderMaker {
 public:
  OrderMaker(const RigctldCapabilities& can, const RigSituation& situation,
             const RigctldCommands& commands)
      : can_(can), situation_(situation), commands_(commands) {}

  std::optional<RigOrder> make(const RigRequest& request) const;

 private:
  RigOrder frequency(const RigRequest& request) const;
  std::optional<RigOrder> mode(const RigRequest& request, const std::string& mode) const;
  std::optional<RigOrder> level(const RigRequest& request, RigItem item, std::int32_t value) const;
  std::optional<RigOrder> bfo(const RigRequest& request) const;

  const RigctldCapabilities& can_;
  const RigSituation& situation_;
  const RigctldCommands& commands_;
};

std::optional<RigOrder> OrderMaker::make(const RigRequest& request) const {
  const auto number = request.number;
  switch (request.item) {
    case RigItem::Frequency:
      return frequency(request);
    case RigItem::Mode:
      return mode(request, request.mode);
    case RigItem::Filter:
      return mode(request, situation_.mode);
    case RigItem::Attenuator: {
      auto list = can_.attenuators;
      list.push_back(0);
      return level(request, request.item, nearestOf(list, number));
    }
    case RigItem::Preamp: {
      auto list = can_.preamps;
      list.push_back(0);
      return level(request, request.item, nearestOf(list, number));
    }
    case RigItem::Agc: {
      const auto known = [number](const AgcLevel& level) { return level.code == number; };
      const auto& levels = can_.agcLevels;
      if (std::none_of(levels.begin(), levels.end(), known)) return std::nullopt;
      return level(request, request.item, number);
    }
    case RigItem::Blanker:
      return level(request, request.item, number != 0 ? 1 : 0);
    case RigItem::Clock:
      return level(request, request.item, std::clamp(number, 0, 86399));
    case RigItem::Bfo:
      return bfo(request);
    default:
      return std::nullopt;
  }
}

RigOrder OrderMaker::frequency(const RigRequest& request) const {
  const auto radio = std::clamp<std::int64_t>(std::int64_t{request.number} - situation_.offset, 0,
                                              std::numeric_limits<std::int32_t>::max());
  const auto hertz = can_.nearestFrequency(static_cast<std::int32_t>(radio));
  return {request, RigItem::Frequency, hertz, {}, commands_.setFrequency(hertz)};
}

std::optional<RigOrder> OrderMaker::mode(const RigRequest& request, const std::string& mode) const {
  if (!can_.hasMode(mode)) return std::nullopt;
  const auto width = request.number > 0 ? can_.nearestWidth(mode, request.number) : 0;
  return RigOrder{request, RigItem::Mode, width, mode, commands_.setMode(mode, width)};
}

std::optional<RigOrder> OrderMaker::level(const RigRequest& request, RigItem item,
                                          std::int32_t value) const {
  if (!can_.settable.has(item)) return std::nullopt;
  return RigOrder{request, item, value, {}, commands_.set(item, value)};
}

std::optional<RigOrder> OrderMaker::bfo(const RigRequest& request) const {
  const auto way = bfoWay(can_, situation_.mode);
  if (way != BfoWay::Pitch && way != BfoWay::Shift) return std::nullopt;
  const auto limits = bfoLimits(can_, way, situation_.offsetLimit);
  const auto item = way == BfoWay::Pitch ? RigItem::Pitch : RigItem::Shift;
  return level(request, item, std::clamp(request.number, limits.low, limits.high));
}

}  // namespace

void RequestBox::put(RigRequest request) {
  for (auto& waiting : requests_) {
    if (waiting.item != request.item) continue;
    waiting = std::move(request);
    return;
  }
  requests_.push_back(std::move(request));
}

std::optional<RigRequest> RequestBox::take() {
  if (requests_.empty()) return std::nullopt;
  auto first = std::move(requests_.front());
  requests_.erase(requests_.begin());
  return first;
}

bool RequestBox::waits(RigItem item) const {
  return std::any_of(requests_.begin(), requests_.end(),
                     [item](const RigRequest& each) { return each.item == item; });
}

std::optional<RigOrder> orderFor(const RigRequest& request, const RigctldCapabilities& can,
                                 const RigSituation& situation, const RigctldCommands& commands) {
  return OrderMaker(can, situation, commands).make(request);
}

}  // namespace kelvane::sondrel
