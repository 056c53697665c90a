#include "receiver/announcer.h"

#include <utility>

#include "base/number.h"

namespace kelvane {

namespace {

void add(std::string& news, const std::string& words) {
  if (!news.empty()) news += ", ";
  news += words;
}

}  // namespace

void Announcer::look(const State& now) {
  const bool lasts = std::exchange(seen_, now) == now;
  if (!lasts || now == announced_) return;
  const std::string news = newsOf(now);
  announced_ = now;
  // The same words once more would be no change to whoever watches the text.
  if (!news.empty()) Announced_.text = news == Announced_.text ? news + " " : news;
}

std::string Announcer::newsOf(const State& now) const {
  std::string news;
  const bool otherReceiver = now.receiver != announced_.receiver;
  if (otherReceiver) add(news, now.receiver);
  if (now.link != announced_.link) add(news, now.link.empty() ? "answers" : now.link);
  if (!now.link.empty()) return news;
  // After a break it is said where the receiver is now.
  if ((otherReceiver || !announced_.link.empty() || now.frequency != announced_.frequency) &&
      !now.frequency.empty())
    add(news, now.frequency);
  return news;
}

std::string spokenFrequency(double hertz) {
  if (hertz < 0) return {};
  return decimalText(hertz / 1000) + " kHz";
}

}  // namespace kelvane
