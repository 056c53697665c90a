#include "components/sondrel/sharing/share_reply.h"

namespace kelvane::sondrel {

ShareReply::ShareReply(std::string& out, const ShareCommand& command)
    : out_(out), command_(command) {
  const CommandRow* row = command.row;
  if (!extended() || !row || row->closing == Closing::Never) return;
  std::string header = std::string(row->name) + ":";
  if (!command.vfo.empty()) header += " " + std::string(command.vfo);
  for (const std::string_view argument : command.arguments) header += " " + std::string(argument);
  record(header);
}

void ShareReply::value(std::string_view label, std::string_view text) {
  if (!extended()) return record(text);
  record(std::string(label) + ": " + std::string(text));
}

void ShareReply::value(std::string_view label, std::int64_t number) {
  value(label, std::to_string(number));
}

void ShareReply::close(RigStatus status) {
  const Closing closing = command_.row ? command_.row->closing : Closing::Status;
  const bool failed = status != RigStatus::Ok;
  const bool told = closing == Closing::Status || (closing == Closing::Value && extended());
  if (!failed && !told) {
    // Records of one line that no status ends.
    if (extended() && command_.separator != '\n') out_ += '\n';
    return;
  }
  out_ += "RPRT " + std::to_string(static_cast<int>(status)) + "\n";
}

void ShareReply::record(std::string_view text) {
  out_ += text;
  out_ += extended() ? command_.separator : '\n';
}

}  // namespace kelvane::sondrel
