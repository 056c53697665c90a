#pragma once

#include <array>
#include <optional>

#include "contract/types.h"

namespace kelvane {

/// What a channel holds, in the order of the table's value columns.
enum class ChannelValue : int { Frequency, Bfo, Mode, Filter, Agc, Skip };

/// The values of one channel; none where the receiver has not reported the channel, or where the
/// operator emptied a cell.
struct ChannelRow {
  std::array<std::optional<Long>, 6> values;

  std::optional<Long>& operator[](ChannelValue value) { return values[static_cast<int>(value)]; }
  const std::optional<Long>& operator[](ChannelValue value) const {
    return values[static_cast<int>(value)];
  }
  /// As the value travels: an emptied cell is 0.
  Long sent(ChannelValue value) const { return (*this)[value].value_or(0); }
  /// Nothing is stored in the channel.
  bool free() const { return sent(ChannelValue::Frequency) == 0; }
  /// Whether both travel alike.
  bool same(const ChannelRow& other) const {
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (values[i].value_or(0) != other.values[i].value_or(0)) return false;
    }
    return true;
  }
};

/// As the receiver reports an empty channel.
inline constexpr ChannelRow kEmptyChannel{{0, 0, 0, 0, 0, 0}};

}  // namespace kelvane
