#include "base/net_filter.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "base/number.h"

namespace kelvane {

namespace {

struct Net {
  std::vector<std::uint8_t> bytes;
  std::size_t bits = 0;
};

std::optional<Net> netOf(std::string_view word) {
  const auto slash = word.find('/');
  const auto address = numericAddress(std::string(word.substr(0, slash)), 0);
  if (!address) return std::nullopt;
  Net net{addressBytes(*address), 0};
  const auto all = static_cast<std::int64_t>(net.bytes.size() * 8);
  const auto bits = slash == std::string_view::npos ? all : wholeNumber(word.substr(slash + 1));
  if (!bits || *bits < 0 || *bits > all) return std::nullopt;
  net.bits = static_cast<std::size_t>(*bits);
  return net;
}

bool contains(const Net& net, const std::vector<std::uint8_t>& address) {
  if (net.bytes.size() != address.size()) return false;
  for (std::size_t bit = 0; bit < net.bits; ++bit) {
    const int mask = 0x80 >> (bit % 8);
    if (((net.bytes[bit / 8] ^ address[bit / 8]) & mask) != 0) return false;
  }
  return true;
}

/// The words between blanks and commas.
std::vector<std::string_view> netWords(std::string_view list) {
  std::vector<std::string_view> words;
  while (!list.empty()) {
    const auto end = std::min(list.find_first_of(", \t"), list.size());
    if (end > 0) words.push_back(list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return words;
}

}  // namespace

bool isLoopbackAddress(const NetAddress& address) {
  return isInNetList(address, "127.0.0.0/8 ::1");
}

bool isInNetList(const NetAddress& address, std::string_view list) {
  const std::vector<std::uint8_t> bytes = addressBytes(address);
  return std::ranges::any_of(netWords(list), [&](std::string_view word) {
    const auto net = netOf(word);
    return net && contains(*net, bytes);
  });
}

bool isNetList(std::string_view list) {
  return std::ranges::all_of(netWords(list), [](auto word) { return netOf(word).has_value(); });
}

}  // namespace kelvane
