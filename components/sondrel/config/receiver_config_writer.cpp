#include "components/sondrel/config/receiver_config.h"

namespace kelvane::sondrel {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

void line(std::string& text, std::string_view content) {
  text += content;
  text += kLineEnd;
}

void pair(std::string& text, std::string_view key, std::string_view value) {
  line(text, std::string(key) + "=" + std::string(value));
}

void explainKind(std::string& text, const ReceiverKind& kind) {
  line(text, "#");
  line(text, "# Kind=" + std::string(kind.name) + ": " + std::string(kind.help));
  for (const Parameter& parameter : kind.parameters) {
    std::string row = "#   " + std::string(parameter.key) + ": " + std::string(parameter.help);
    if (!parameter.standard.empty()) row += " (" + std::string(parameter.standard) + ")";
    line(text, row);
  }
}

void explain(std::string& text) {
  for (const std::string_view row : {
           "# The receivers of this instance, one section [Receiver ...] each, at most eight, in",
           "# the order of the panel's tabs. UTF-8 text; lines that begin with # are comments.",
           "# A file without any section is an instance without receivers. The component writes",
           "# this file when its configuration dialog is closed with OK: keys and lines that it",
           "# does not know stay, and so do comments inside a section.",
           "#",
           "# Keys of every section, with what is used where a key is missing in brackets:",
           "#   Name: shown on the tab",
           "#   Kind: what stands behind it, see below (simulated)",
           "#   Memories: file in the folder Memories that keeps the channels; it stays the same",
           "#     when the receiver is renamed, which is how programs know it again (the name)",
       }) {
    line(text, row);
  }
  for (const ReceiverKind& kind : receiverKinds()) explainKind(text, kind);
}

void section(std::string& text, const ReceiverEntry& entry, std::size_t number) {
  line(text, "");
  line(text, "[Receiver " + std::to_string(number) + "]");
  pair(text, "Name", entry.name);
  if (!entry.kind.empty()) pair(text, "Kind", entry.kind);
  pair(text, "Memories", entry.memories);
  for (const auto& [key, value] : entry.settings) {
    if (key.empty()) {
      line(text, value);
    } else {
      pair(text, key, value);
    }
  }
}

}  // namespace

std::string writeConfig(const ReceiverConfig& config) {
  std::string text;
  explain(text);
  line(text, "");
  pair(text, "Version", "1");
  for (const std::string& row : config.head) line(text, row);
  std::size_t number = 0;
  for (const ReceiverEntry& entry : config.receivers) section(text, entry, ++number);
  for (const ReceiverEntry& entry : config.beyond) section(text, entry, ++number);
  if (!config.others.empty()) line(text, "");
  for (const std::string& row : config.others) line(text, row);
  return text;
}

}  // namespace kelvane::sondrel
