#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/result.h"

namespace kelvane::sondrel {

class LinkTrial;
class Receiver;
class ReceiverHost;

/// One receiver of the configuration: its kind, its name, and the keys of its section as they stand
/// in the file, those included that nobody knows.
struct ReceiverEntry {
  std::string name;
  std::string kind;
  /// Name of the file that keeps its channels. It stays through a renaming and is no other
  /// receiver's, so that it is what the receiver is known by.
  std::string memories;
  std::vector<std::pair<std::string, std::string>> settings;

  bool operator==(const ReceiverEntry&) const = default;
  /// The text of a key, in capital or small letters; empty where the section has none.
  std::string_view setting(std::string_view key) const;
  /// Changes the key's text, or adds the key.
  void set(std::string_view key, std::string value);
};

/// A key that a kind of receiver reads from its section.
struct Parameter {
  std::string_view key;
  std::string_view standard;  ///< used when the key is missing or cannot be read
  std::string_view help;      ///< one line for the file and the dialog
  /// Whether a text is right; else what is wrong with it, behind the key's name.
  Result<> (*check)(std::string_view text) = nullptr;
};

/// A kind of receiver: what it is called in the file, its keys, and how one is made.
struct ReceiverKind {
  std::string_view name;
  std::string_view help;
  std::span<const Parameter> parameters;
  /// Never fails: a key that cannot be read is replaced by its standard and said in `notes`.
  std::unique_ptr<Receiver> (*make)(ReceiverHost& host, const ReceiverEntry& entry,
                                    std::vector<std::string>& notes) = nullptr;
  /// Begins to try out what an entry describes; null for a kind that has nothing to try out.
  std::unique_ptr<LinkTrial> (*tryOut)(const ReceiverEntry& entry) = nullptr;
};

/// The kinds that there are; the first is what a section without a kind is.
std::span<const ReceiverKind> receiverKinds();
/// The kind of that name, in capital or small letters; null where there is none.
const ReceiverKind* receiverKind(std::string_view name);

}  // namespace kelvane::sondrel
