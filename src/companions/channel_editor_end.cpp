#include <utility>

#include "companions/channel_editor.h"

// What becomes of the channel window's work when the program ends.

namespace kelvane {

/// What takes its time is done at once; what was imported so far counts as edited.
void ChannelEditor::endWork() {
  while (task_ && task_->atEnd() == ChannelTask::AtEnd::Done) runTask();
  // Where the operator goes on instead, it is not taken up again.
  if (task_ && task_->atEnd() != ChannelTask::AtEnd::Waited) taskStopped("the program was to end");
}

/// The table where the receiver has not got all of it.
ChannelRows ChannelEditor::edits() {
  if (!view_.open || dropped_) return {};
  grid_.commit();
  if (!rescue_.empty()) return rescue_;
  return table_.unsaved() ? workingRows() : ChannelRows();
}

bool ChannelEditor::offerToSave() {
  endWork();
  // A table that is being read over, or whose receiver is gone, can only be kept.
  if (gone_ || !rescue_.empty() || edits().empty()) return true;
  const std::string asked = "Save the unsaved channel edits to " + name_ + "?";
  const Choice choice = files_.boxes.show(asked, "", Buttons::SaveOrNot);
  // Time goes on while a box is open.
  if (choice == Choice::Cancel) return false;
  dropped_ = choice == Choice::No;
  if (dropped_ || gone_) return true;
  SaveTask save(component_, table_);
  while (save.step()) {
  }
  // What it refused is kept in a file, and told of.
  return true;
}

std::string ChannelEditor::endFile() {
  if (!task_ || task_->atEnd() != ChannelTask::AtEnd::Waited) return {};
  work_.wait();
  work_.deliver();
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
  const auto path = datedFile();
  last_ = text(rows);
  const Result<> kept = writeFileSafely(path, last_, *disk_);
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
