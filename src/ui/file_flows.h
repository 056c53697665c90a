#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/replaced_file.h"
#include "ui/message_boxes.h"

namespace kelvane {

/// What a file dialog is asked for. All texts UTF-8.
struct FileRequest {
  std::string title;
  std::string folder;                    ///< where it starts; empty where there is none to start in
  std::string name;                      ///< what stands in the name field
  std::string extension;                 ///< added to a name typed without one
  std::string description;               ///< of the first filter
  std::string pattern;                   ///< of the first filter
  std::vector<std::string> others = {};  ///< extensions of further filters
};

/// The file dialogs, made by Windows. Long names; the read-only box is hidden; the open dialog
/// takes only a file that exists. They leave the program's current folder as it is: the station log
/// lives there.
class FileDialogs {
 public:
  virtual ~FileDialogs() = default;
  /// The name that the operator chose, with or without a folder; none when he cancelled or the
  /// dialog could not be shown.
  virtual std::optional<std::string> open(const FileRequest& request) = 0;
  virtual std::optional<std::string> save(const FileRequest& request) = 0;
};

/// Has the operator choose files to load and to save: answers the full path of the one that was
/// chosen. `name` is proposed, with the extension.
class FileFlows {
 public:
  FileFlows(FileDialogs& dialogs, MessageBoxes& boxes) : dialogs_(dialogs), boxes_(boxes) {}

  /// Asks until a file is chosen that exists. None when nothing was chosen.
  std::optional<std::string> openFile(const std::string& name, const std::string& extension);

  /// Asks for a name to write to. A file of that name, once its replacement is agreed to, is moved
  /// to a backup beside it before this returns, so that whatever becomes of the new one the old
  /// content is not lost. None when nothing was chosen, when it must not be replaced, and, after
  /// saying why, when no file of that name can be made. The operator may choose among kinds of
  /// file by their extensions, of which the first is added to a name that has none.
  std::optional<std::string> saveFile(const std::string& name, const std::string& extension,
                                      const std::vector<std::string>& others = {});
  /// The file that made way for the one that was last chosen to write to, if there was one. It
  /// gets its name back where the caller lets go of this before anything has the name.
  std::shared_ptr<ReplacedFile> takeReplaced() { return std::move(replaced_); }

 private:
  bool mayBeWritten(const std::string& chosen);
  bool replace(const std::string& chosen);
  bool refuse(const std::string& why);

  FileDialogs& dialogs_;
  MessageBoxes& boxes_;
  std::shared_ptr<ReplacedFile> replaced_;
};

}  // namespace kelvane
