#include "components/sondrel/receiver_config.h"

#include <algorithm>

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

std::string uniqueName(const std::string& name, const std::vector<std::string>& taken) {
  const auto isTaken = [&](const std::string& candidate) {
    return std::ranges::any_of(taken,
                               [&](const auto& t) { return equalIgnoringCase(t, candidate); });
  };
  std::string unique = name;
  for (int i = 2; isTaken(unique); ++i) unique = name + " (" + std::to_string(i) + ")";
  return unique;
}

void completeName(ReceiverEntry& entry, std::vector<std::string>& taken,
                  std::vector<std::string>& notes) {
  const std::string wanted =
      entry.name.empty() ? "Receiver " + std::to_string(taken.size() + 1) : entry.name;
  entry.name = uniqueName(wanted, taken);
  if (entry.name != wanted) {
    notes.push_back("Two receivers are called " + wanted + "; the later one is shown as " +
                    entry.name + ".");
  }
  taken.push_back(entry.name);
}

void completeMemories(ReceiverEntry& entry, std::vector<std::string>& taken,
                      std::vector<std::string>& notes) {
  const std::string wanted = entry.memories.empty() ? std::string() : safeFileName(entry.memories);
  const bool clash =
      std::ranges::any_of(taken, [&](const auto& t) { return equalIgnoringCase(t, wanted); });
  if (!wanted.empty() && clash) {
    notes.push_back(entry.name + ": another receiver keeps its channels in " + wanted +
                    " already; a new file is used.");
  }
  entry.memories = wanted.empty() || clash ? newMemoriesName(entry, taken) : wanted;
  taken.push_back(entry.memories);
}

void completeKind(ReceiverEntry& entry, std::vector<std::string>& notes) {
  if (!entry.kind.empty() && !receiverKind(entry.kind)) {
    notes.push_back(entry.name + ": there is no kind of receiver called " + entry.kind + "; a " +
                    std::string(receiverKinds().front().name) + " one is used.");
  }
}

void complete(ReceiverConfig& config) {
  std::vector<std::string> names;
  std::vector<std::string> memories;
  for (ReceiverEntry& entry : config.receivers) {
    completeName(entry, names, config.notes);
    completeMemories(entry, memories, config.notes);
    completeKind(entry, config.notes);
  }
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
  return uniqueName(safeFileName(entry.name), taken);
}

}  // namespace kelvane::sondrel
