#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/result.h"

namespace kelvane::sondrel {

/// A server that this program starts for one radio, made anew for each start. For one thread.
class OwnServer {
 public:
  virtual ~OwnServer() = default;
  OwnServer() = default;
  OwnServer(const OwnServer&) = delete;
  OwnServer& operator=(const OwnServer&) = delete;

  struct Start {
    std::string command;
    std::int32_t port = 0;  ///< of loopback, at which it will listen
  };
  /// What is to be started, or why nothing can be.
  virtual Result<Start> prepare() = 0;
  /// Why it does not reach its radio, by what it wrote last; empty where that says nothing.
  virtual std::string fault(std::string_view written) const = 0;
  /// The same where it wrote nothing of it.
  virtual std::string silence() const = 0;
};

}  // namespace kelvane::sondrel
