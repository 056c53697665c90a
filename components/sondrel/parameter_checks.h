#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/number.h"
#include "components/sondrel/receiver_entry.h"

namespace kelvane::sondrel {

/// Whether a text is a whole number within the limits. What is wrong follows the key's name.
template <std::int64_t Low, std::int64_t High>
Result<> checkWhole(std::string_view text) {
  const auto value = wholeNumber(text);
  if (value && *value >= Low && *value <= High) return {};
  return Failure{"must be a whole number from " + std::to_string(Low) + " to " +
                 std::to_string(High)};
}

/// Whether a text is "yes" or "no".
Result<> checkYesNo(std::string_view text);

/// Reads the keys of one receiver, each checked by its own rule.
class ParameterReader {
 public:
  /// A text that is wrong is said in `notes` and its key's standard used.
  ParameterReader(const ReceiverKind& kind, const ReceiverEntry& entry,
                  std::vector<std::string>& notes);

  /// The text of a key of the kind's: the section's where it is right, else the standard.
  std::string_view text(std::string_view key) const;
  std::int32_t whole(std::string_view key) const;
  bool yes(std::string_view key) const;

 private:
  const ReceiverKind& kind_;
  const ReceiverEntry& entry_;
  std::vector<std::string>& notes_;
};

/// Whether a key's text is right; else what is wrong with it. An empty text stands for the
/// standard, and keys that the kind does not know are never wrong.
Result<> checkParameter(const ReceiverKind& kind, std::string_view key, std::string_view text);

}  // namespace kelvane::sondrel
