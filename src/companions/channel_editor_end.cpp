#include <utility>

#include "companions/channel_editor.h"

// What becomes of the channel window's work when the program ends.

namespace kelvane {

/// What takes its time is done at once; what was imported so far counts as edited.
void ChannelEditor::endWork() {
  if (!task_ || task_->atEnd() == ChannelTask::AtEnd::Waited) return;
  if (task_->atEnd() == ChannelTask::AtEnd::Done) {
    while (task_->step()) {
    }
  }
  task_.reset();
}

/// The table where the receiver has not got all of it.
ChannelRows ChannelEditor::edits() {
  if (!view_.open) return {};
  grid_.commit();
  if (!rescue_.empty()) return rescue_;
  return table_.unsaved() ? workingRows() : ChannelRows();
}

void ChannelEditor::offerToSave() {
  endWork();
  // A table that is being read over, or whose receiver is gone, can only be kept.
  if (gone_ || !rescue_.empty() || edits().empty()) return;
  keepIn_ = datedFile();
  const std::string asked = "There are unsaved channel edits for " + name_ +
                            ".\n\nOK saves them to the receiver, Cancel keeps them in " +
                            pathText(keepIn_) + ".";
  if (files_.boxes.show(asked, "", Buttons::OkCancel) != Choice::Ok) return;
  SaveTask save(component_, table_);
  while (save.step()) {
  }
  // What it refused is told of.
  keepIn_.clear();
}

std::string ChannelEditor::endFile() {
  if (!task_ || task_->atEnd() != ChannelTask::AtEnd::Waited) return {};
  beside_.wait();
  beside_.deliver();
  if (task_->step()) return {};
  last_ = task_->content();
  const bool rescued = !std::exchange(rescue_, {}).empty();
  return rescued || task_->failed() ? task_->words() : std::string();
}

Result<> ChannelEditor::end() {
  std::string words = endFile();
  endWork();
  const ChannelRows rows = stored(edits());
  if (rows.empty()) return resultOf(words);
  const bool asked = !keepIn_.empty();
  const auto path = asked ? keepIn_ : datedFile();
  last_ = text(rows);
  const Result<> kept = writeFileSafely(path, last_, *disk_);
  if (kept && asked) return resultOf(words);
  words += (words.empty() ? "" : "\n") + ("The unsaved channel edits for " + name_);
  if (!kept) return Failure{words + " could not be kept in a file. " + kept.reason() + "."};
  return Failure{words + " are kept in " + pathText(path) +
                 ": Import that file and Save bring them back."};
}

Result<> ChannelEditor::saveTo(const std::string& file) const {
  const Result<> result = writeFileSafely(pathFromText(file), last_, *disk_);
  if (!result) return Failure{result.reason() + "."};
  return {};
}

}  // namespace kelvane
