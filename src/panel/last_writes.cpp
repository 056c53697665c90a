#include "panel/last_writes.h"

#include <string_view>

#include "base/barrier.h"

namespace kelvane {

namespace {

/// The setting of the words for the next start.
constexpr std::string_view kNote = "ToldAtStart";

/// One that fails for want of memory is not to take the next ones along.
Result<> finished(const LastWrite& write) {
  Result<> result;
  barrier(
      "writing at the end", [&] { result = write.finish(); },
      [&](const std::string& why) { result = Failure{"Something was not written: " + why + "."}; });
  return result;
}

}  // namespace

void LastWrites::finish(const LastWrite& write) {
  const Result<> result = finished(write);
  if (result) return;
  if (ending_ == Ending::ByOperator) return ask(write, result);
  // At once, since there may be no time for the next one.
  note_ += (note_.empty() ? "" : "\n\n") + result.reason();
  settings_.writeText(kNote, note_);
}

void LastWrites::ask(const LastWrite& write, Result<> result) {
  if (!write.elsewhere) {
    boxes_.show(result.reason(), "", Buttons::Ok);
    return;
  }
  while (!result) {
    const std::string offer = result.reason() + "\n\nOK saves it in another place of your choice.";
    if (boxes_.show(offer, "", Buttons::OkCancel) != Choice::Ok) return;
    const auto file = files_.saveFile(write.name, write.extension);
    if (!file) continue;
    // What made way for it gets its name back where it fails.
    const auto replaced = files_.takeReplaced();
    result = write.elsewhere(*file);
  }
}

std::string LastWrites::takeNote(SettingsStore& settings) {
  const std::string note = settings.text(kNote, {});
  if (!note.empty()) settings.writeText(kNote, {});
  return note;
}

}  // namespace kelvane
