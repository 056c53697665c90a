#pragma once

#include <optional>
#include <string>

namespace kelvane::sondrel {

/// A try-out of what an entry of the configuration describes, beside the links that are up. Nothing
/// blocks; to be taken away, also before it has ended, on the thread that asks.
class LinkTrial {
 public:
  virtual ~LinkTrial() = default;
  LinkTrial() = default;
  LinkTrial(const LinkTrial&) = delete;
  LinkTrial& operator=(const LinkTrial&) = delete;

  /// What came of it, in words, a line each; none while it goes on.
  virtual std::optional<std::string> result() = 0;
};

}  // namespace kelvane::sondrel
