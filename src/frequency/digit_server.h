#pragma once

#include <functional>
#include <string>
#include <vector>

#include "contract/types.h"

namespace kelvane {

/// How a receiver's link with the server of its digits stands.
enum class DigitLink {
  Closed,
  Waiting,  ///< no server of that name answers yet
  Linked,
  Failed,  ///< a server is there and refuses, or does not answer what it is asked
};

/// Programs elsewhere on the computer that announce digits for receivers, each under a name of its
/// own. Nothing here waits for them.
class DigitServers {
 public:
  virtual ~DigitServers() = default;

  /// Where each receiver's digits shall go from now on, on the user-interface thread.
  virtual void setListener(std::function<void(Index, const std::string&)> take) = 0;
  /// Links each receiver with the server of that name, in order of the receivers; links that are
  /// there already stay. None closes all.
  virtual void link(const std::vector<std::string>& servers) = 0;
  /// Looks again for servers that are not there, and asks whether those that are still live.
  virtual void refresh() = 0;
  virtual DigitLink state(Index rx) const = 0;
};

}  // namespace kelvane
