#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/result.h"
#include "companions/channel_row.h"

namespace kelvane {

/// One line of a channel file, read: the channel's number, whatever it is, and its values. Mode and
/// AGC are names.
struct ChannelLine {
  double channel = 0;
  Long frequency = 0, bfo = 0, filter = 0, skip = 0;
  std::string_view mode, agc;
};

/// Which names a line cannot do without: those of settings that the receiver has.
struct NamesNeeded {
  bool mode = true, agc = true;
};

/// Reads a line, without its end; `number` is which one it is, from 1. The names lie in the line's
/// own memory.
Result<ChannelLine> readChannelLine(std::string_view line, std::int64_t number,
                                    NamesNeeded needed = {});

/// Adds the line for a channel to a text, with its end; names and text are UTF-8.
void addChannelLine(std::string& text, Channel channel, const ChannelRow& row,
                    std::string_view modeName, std::string_view agcName);

/// Cuts a file that comes in pieces into lines. A line ends with CR LF, with either alone, or with
/// the file.
class LineCutter {
 public:
  /// Told a line without its end; answers whether more is wanted.
  using Line = std::function<bool(std::string_view)>;

  explicit LineCutter(Line line) : line_(std::move(line)) {}

  /// Answers whether more is wanted.
  bool feed(std::string_view bytes);
  /// The file has ended: what has no line end is a line too.
  void end();

 private:
  bool tell(std::string_view rest);
  void keep(std::string_view part);

  Line line_;
  std::string kept_;  ///< the beginning of a line whose end is not there yet
  bool afterReturn_ = false;
  bool open_ = true;
};

}  // namespace kelvane
