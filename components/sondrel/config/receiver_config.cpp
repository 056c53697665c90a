#include "components/sondrel/config/receiver_config.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/instance_name.h"
#include "base/text.h"
#include "contract/types.h"

namespace kelvane::sondrel {

namespace {

constexpr std::string_view kVersionKey = "Version";
constexpr std::string_view kSection = "receiver";

bool hasControlCharacters(std::string_view text) {
  return std::ranges::any_of(text, [](char c) {
    return static_cast<unsigned char>(c) < 32 && c != '\t' && c != '\r' && c != '\n' && c != '\f';
  });
}

struct KeyAndText {
  std::string_view key;
  std::string_view text;
};

/// A line's key and text; none for a line that has no "=" or no key.
std::optional<KeyAndText> keyOf(std::string_view line) {
  const auto equals = line.find('=');
  if (equals == std::string_view::npos || line.front() == '#' || line.front() == ';') return {};
  const std::string_view key = trimmed(line.substr(0, equals));
  if (key.empty()) return {};
  return KeyAndText{key, trimmed(line.substr(equals + 1))};
}

bool isReceiverSection(std::string_view line) {
  const std::string_view name = trimmed(line.substr(1, line.find(']') - 1));
  return equalIgnoringCase(name.substr(0, kSection.size()), kSection);
}

/// Takes a file's lines one after the other.
class ConfigReader {
 public:
  void line(std::string_view line) {
    ++number_;
    line = trimmed(line);
    if (line.empty()) return;
    if (line.front() == '[') return section(line);
    if (inReceiver_) return receiverLine(line);
    outerLine(line);
  }
  bool recognised() const { return recognised_; }
  ReceiverConfig take() { return std::move(config_); }

 private:
  void section(std::string_view line) {
    inReceiver_ = isReceiverSection(line);
    inOther_ = !inReceiver_;
    if (!inReceiver_) {
      config_.others.emplace_back(line);
      note("the section " + std::string(line) + " is not known");
      return;
    }
    recognised_ = true;
    config_.receivers.emplace_back();
  }

  void receiverLine(std::string_view line) {
    ReceiverEntry& entry = config_.receivers.back();
    const auto pair = keyOf(line);
    if (!pair) {
      if (line.front() != '#' && line.front() != ';') note("is not of the form Key=Text");
      entry.settings.emplace_back("", line);
    } else if (equalIgnoringCase(pair->key, "Name")) {
      entry.name = pair->text;
    } else if (equalIgnoringCase(pair->key, "Kind")) {
      entry.kind = pair->text;
    } else if (equalIgnoringCase(pair->key, "Memories")) {
      entry.memories = pair->text;
    } else {
      entry.settings.emplace_back(pair->key, pair->text);
    }
  }

  void outerLine(std::string_view line) {
    const auto pair = keyOf(line);
    if (!inOther_ && pair && equalIgnoringCase(pair->key, kVersionKey)) {
      recognised_ = true;
      return;
    }
    // The comments at the head are written anew each time.
    const bool comment = line.front() == '#' || line.front() == ';';
    if (inOther_) {
      config_.others.emplace_back(line);
    } else if (!comment) {
      config_.head.emplace_back(line);
      note("is not known");
    }
  }

  void note(const std::string& what) {
    config_.notes.push_back("Line " + std::to_string(number_) + " " + what + "; it is not used.");
  }

  ReceiverConfig config_;
  int number_ = 0;
  bool recognised_ = false;
  bool inReceiver_ = false;
  bool inOther_ = false;
};

/// Names that are taken, whatever the case of their letters.
class TakenNames {
 public:
  std::size_t count() const { return taken_.size(); }
  bool has(std::string_view name) const { return taken_.contains(upper(name)); }
  void take(std::string_view name) { taken_.insert(upper(name)); }

  /// The name, with a number behind it where it is taken already.
  std::string unique(const std::string& name) {
    if (!has(name)) return name;
    int& number = last_.try_emplace(upper(name), 1).first->second;
    std::string candidate;
    do {
      candidate = name + " (" + std::to_string(++number) + ")";
    } while (has(candidate));
    return candidate;
  }

 private:
  std::unordered_set<std::string> taken_;
  /// The number given to a name last: a thousand receivers of one name are not counted through a
  /// thousand times.
  std::unordered_map<std::string, int> last_;
};

void completeName(ReceiverEntry& entry, TakenNames& taken, std::vector<std::string>& notes) {
  const std::string wanted =
      entry.name.empty() ? "Receiver " + std::to_string(taken.count() + 1) : entry.name;
  entry.name = taken.unique(wanted);
  if (entry.name != wanted) {
    notes.push_back("Two receivers are called " + wanted + "; the later one is shown as " +
                    entry.name + ".");
  }
  taken.take(entry.name);
}

void completeMemories(ReceiverEntry& entry, TakenNames& taken, std::vector<std::string>& notes) {
  const std::string wanted = entry.memories.empty() ? std::string() : safeFileName(entry.memories);
  const bool clash = taken.has(wanted);
  if (!wanted.empty() && clash) {
    notes.push_back(entry.name + ": another receiver keeps its channels in " + wanted +
                    " already; a new file is used.");
  }
  entry.memories = wanted.empty() || clash ? taken.unique(safeFileName(entry.name)) : wanted;
  taken.take(entry.memories);
}

void completeKind(ReceiverEntry& entry, std::vector<std::string>& notes) {
  if (!entry.kind.empty() && !receiverKind(entry.kind)) {
    notes.push_back(entry.name + ": there is no kind of receiver called " + entry.kind + "; a " +
                    std::string(receiverKinds().front().name) + " one is used.");
  }
}

/// A person reads the first ones; of a file that is nothing but faults the rest is counted.
void shorten(std::vector<std::string>& notes) {
  constexpr std::size_t kMostNotes = 20;
  if (notes.size() <= kMostNotes) return;
  const std::size_t more = notes.size() - kMostNotes;
  notes.resize(kMostNotes);
  notes.push_back("And " + std::to_string(more) + " more of the kind.");
}

void complete(ReceiverConfig& config) {
  TakenNames names;
  TakenNames memories;
  for (ReceiverEntry& entry : config.receivers) {
    completeName(entry, names, config.notes);
    completeMemories(entry, memories, config.notes);
    completeKind(entry, config.notes);
  }
  shorten(config.notes);
  if (config.receivers.size() <= kMostReceivers) return;
  const auto ninth = config.receivers.begin() + kMostReceivers;
  config.beyond.assign(ninth, config.receivers.end());
  config.receivers.erase(ninth, config.receivers.end());
  config.notes.push_back("There are " + std::to_string(kMostReceivers + config.beyond.size()) +
                         " receivers in the file; the first eight are used.");
}

}  // namespace

std::optional<ReceiverConfig> readConfig(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  if (hasControlCharacters(text)) return std::nullopt;
  const std::string valid = validUtf8(text, '?');
  ConfigReader reader;
  for (const std::string_view line : split(valid, '\n')) reader.line(line);
  if (!reader.recognised()) return std::nullopt;
  ReceiverConfig config = reader.take();
  if (valid != text) config.notes.push_back("The file is not UTF-8; letters are shown as \"?\".");
  complete(config);
  return config;
}

std::string newMemoriesName(const ReceiverEntry& entry, const std::vector<std::string>& taken) {
  TakenNames names;
  for (const std::string& name : taken) names.take(name);
  return names.unique(safeFileName(entry.name));
}

}  // namespace kelvane::sondrel
