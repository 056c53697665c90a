#include "frequency/dtmf_digits.h"

#include <cmath>
#include <utility>

#include "base/number.h"

namespace kelvane {

namespace {

constexpr double kLongestGap = 8000;
/// Nine digits of Hz are six of kHz; a decoder that hears noise must not fill the memory.
constexpr std::size_t kLongestEntry = 16;
constexpr Hz kStep = 100;

/// The time stated with a key, ms; 0 for none.
double gapOf(std::string_view text) {
  const auto bar = text.find('|');
  return bar == text.npos ? 0 : num(text.substr(bar + 1));
}

}  // namespace

bool DtmfDigits::Digits_Change(Index rx, std::string_view text) {
  if (rx < 0 || rx >= receiverCount(component_)) return false;
  if (text.empty()) return false;
  const char key = text.front();
  if (key <= ' ' || key > '~' || key == '|') return false;
  std::string& buffer = DtmfBuffer_[static_cast<std::size_t>(rx)];
  const double gap = gapOf(text);
  if (gap == 0 || gap > kLongestGap) buffer.clear();
  if (key == '#') return buffer.empty() ? step(rx, kStep) : tune(rx, buffer);
  if (key == '*' && buffer.empty()) return step(rx, -kStep);
  const bool secondPoint = key == '*' && buffer.find('.') != buffer.npos;
  if (!secondPoint && buffer.size() < kLongestEntry) buffer += key == '*' ? '.' : key;
  return false;
}

bool DtmfDigits::tune(Index rx, std::string& buffer) {
  const double hertz = std::round(num(std::exchange(buffer, {})) * 1000);
  if (hertz < component_.GetRxFrqMin(rx) || hertz > component_.GetRxFrqMax(rx)) return false;
  component_.SetRxFrequency(rx, false, static_cast<Hz>(hertz));
  return true;
}

bool DtmfDigits::step(Index rx, Hz hertz) {
  const Hz now = component_.GetRxFrequency(rx, kTuned);
  if (now < 0) return false;
  component_.SetRxFrequency(rx, false, now + hertz);
  return true;
}

}  // namespace kelvane
