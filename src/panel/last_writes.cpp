#include "panel/last_writes.h"

#include "base/barrier.h"

namespace kelvane {

namespace {

/// The setting of the words for the next start.
constexpr std::string_view kNote = "ToldAtStart";

/// One that fails for want of memory is not to take the next ones along.
std::string finished(const LastWrite& write) {
  std::string words;
  barrier(
      "writing at the end", [&] { words = write.finish(); },
      [&](const std::string& why) { words = "Something was not written: " + why + "."; });
  return words;
}

}  // namespace

void LastWrites::finish(const LastWrite& write) {
  const std::string words = finished(write);
  if (words.empty()) return;
  if (how_ == Ending::ByOperator) return ask(write, words);
  // At once, since there may be no time for the next one.
  note_ += (note_.empty() ? "" : "\n\n") + words;
  settings_.writeText(kNote, note_);
}

void LastWrites::ask(const LastWrite& write, std::string words) {
  if (!write.elsewhere) {
    boxes_.show(words, "", Buttons::Ok);
    return;
  }
  while (!words.empty()) {
    const std::string offer = words + "\n\nOK saves it in another place of your choice.";
    if (boxes_.show(offer, "", Buttons::OkCancel) != Choice::Ok) return;
    std::string file = write.name;
    if (!files_.saveFile(file, write.extension)) continue;
    words = write.elsewhere(file);
    if (!words.empty()) files_.putBack();
  }
}

std::string LastWrites::takeNote(SettingsStore& settings) {
  const std::string note = settings.text(kNote, {});
  if (!note.empty()) settings.writeText(kNote, {});
  return note;
}

}  // namespace kelvane
