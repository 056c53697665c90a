#pragma once

#include <string>
#include <string_view>

#include "components/sondrel/sharing/share_command.h"

namespace kelvane::sondrel {

/// Writes the answer to one command in the form that was asked for.
class ShareReply {
 public:
  /// Appends to `out`.
  ShareReply(std::string& out, const ShareCommand& command);

  /// A value, with its label where the form has labels.
  void value(std::string_view label, std::string_view text);
  void value(std::string_view label, std::int64_t number);
  /// Text that has no label in either form.
  void bare(std::string_view text) { record(text); }
  bool extended() const { return command_.separator != 0; }
  /// Ends the answer.
  void close(RigStatus status);

 private:
  void record(std::string_view text);

  std::string& out_;
  const ShareCommand& command_;
};

}  // namespace kelvane::sondrel
