#include "companions/channel_file.h"
#include "components/sondrel/channels/channel_bank.h"
#include "tests/fuzz/fuzz_target.h"

namespace {

using namespace kelvane;

void keptChannels(std::string_view input) {
  const auto bank = sondrel::ChannelBank::read(input);
  if (!bank) return;
  const std::string text = bank->text();
  const auto again = sondrel::ChannelBank::read(text);
  fuzz::promise(again && again->text() == text, "kept channels are others after writing");
  fuzz::promise(again->unread() == bank->unread(), "lines were lost");
}

/// The same lines come out however the file is cut into pieces.
void exchangedChannels(std::string_view input) {
  std::string whole, pieces;
  const auto into = [](std::string& text) {
    return [&text](std::string_view line) {
      text += readChannelLine(line, 1).reason();
      text.append(line).append("\n");
      return true;
    };
  };
  LineCutter first(into(whole)), second(into(pieces));
  first.feed(input);
  first.end();
  for (std::size_t at = 0; at < input.size(); at += 7) second.feed(input.substr(at, 7));
  second.end();
  fuzz::promise(whole == pieces, "the pieces of a file change its lines");
}

}  // namespace

// A receiver's kept channels, and files of channels that are exchanged.
FUZZ_TARGET(channels) {
  keptChannels(input);
  exchangedChannels(input);
}
