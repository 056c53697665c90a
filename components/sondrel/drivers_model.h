#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "components/sondrel/config/receiver_config.h"

namespace kelvane::sondrel {

/// The list of receivers while it is edited. A change that is not possible fails with its reason,
/// and nothing is changed then; so does one at an index that there is not.
class DriversModel {
 public:
  explicit DriversModel(ReceiverConfig config);

  const std::vector<ReceiverEntry>& receivers() const { return config_.receivers; }
  const ReceiverConfig& config() const { return config_; }

  /// Adds one of that kind at the end, under a name of its own; at most eight.
  Result<> add(std::string_view kind);
  /// Adds a receiver that is described already; where its name is taken, with a number behind it.
  Result<> add(ReceiverEntry entry);
  Result<> remove(std::size_t index);
  /// A name of 1 to 60 characters that no other receiver has.
  Result<> rename(std::size_t index, std::string_view name);
  /// Moves it to another place; those in between move by one.
  Result<> move(std::size_t index, std::size_t to);
  /// Keys that the new kind does not know stay in the file.
  Result<> setKind(std::size_t index, std::string_view kind);
  /// An empty text stands for the key's standard.
  Result<> setParameter(std::size_t index, std::string_view key, std::string_view text);
  /// The key's text as it stands, else its standard.
  std::string parameter(std::size_t index, std::string_view key) const;
  /// Kind of that receiver, the standard one where the file names none that there is.
  const ReceiverKind& kindOf(std::size_t index) const;

 private:
  ReceiverConfig config_;
  /// Names of files that there have been since the editing began: a receiver that is added is not
  /// to be taken for one that was removed.
  std::vector<std::string> memories_;
};

/// The receivers but this one whose radio is at the same serial port, for a warning: the name of
/// the first; empty where there is none, and for a device that is a place in the network.
std::string whoHasDevice(const std::vector<ReceiverEntry>& receivers, std::string_view device);

/// "COM5 is the port of Attic already.", where another radio of these has the port of this one;
/// else empty.
std::string samePortWords(const std::vector<ReceiverEntry>& receivers, std::size_t index);

}  // namespace kelvane::sondrel
