#include "ui/file_flows.h"

#include <filesystem>
#include <system_error>

#include "base/safe_file.h"
#include "base/text.h"
#include "ui/global.h"

namespace kelvane {

namespace {

constexpr std::size_t kLongestPath = 259;

std::string currentFolder() {
  std::error_code gone;
  return pathText(std::filesystem::current_path(gone));
}

FileRequest request(const char* title, const char* verb, const std::string& name,
                    const std::string& extension) {
  const std::string pattern = "*." + extension;
  return {title,
          currentFolder(),
          name + "." + extension,
          extension,
          std::string(verb) + " Files [" + pattern + "]",
          pattern};
}

/// A bare name means the folder that the dialog stood in.
std::string fullPath(const FileRequest& request, const std::string& chosen) {
  return pathText(pathFromText(request.folder) / pathFromText(chosen));
}

}  // namespace

std::optional<std::string> FileFlows::openFile(const std::string& name,
                                               const std::string& extension) {
  const FileRequest asked = request("Select File name to be load ...", "Load", name, extension);
  for (;;) {
    const std::optional<std::string> chosen = dialogs_.open(asked);
    if (!chosen || chosen->empty()) return std::nullopt;
    const std::string path = fullPath(asked, *chosen);
    if (Global::fileExists(path)) return path;
  }
}

std::optional<std::string> FileFlows::saveFile(const std::string& name,
                                               const std::string& extension,
                                               const std::vector<std::string>& others) {
  replaced_.reset();
  FileRequest asked =
      request("Select File name to be used ...", "Save", name.empty() ? "*" : name, extension);
  asked.others = others;
  const std::optional<std::string> chosen = dialogs_.save(asked);
  if (!chosen || chosen->empty()) return std::nullopt;
  std::string path = fullPath(asked, *chosen);
  if (!mayBeWritten(path)) return std::nullopt;
  // Moved: where a file has made way, nothing may fail any more before the caller has it.
  return path;
}

bool FileFlows::mayBeWritten(const std::string& chosen) {
  if (characterCount(chosen) > kLongestPath) return refuse("The file name is too long");
  const std::filesystem::path file = pathFromText(chosen);
  std::error_code unknown;
  if (!std::filesystem::is_directory(file.parent_path(), unknown))
    return refuse("There is no folder " + pathText(file.parent_path()));
  if (std::filesystem::is_directory(file, unknown)) return refuse(chosen + " is a folder");
  return !std::filesystem::exists(file, unknown) || replace(chosen);
}

bool FileFlows::replace(const std::string& chosen) {
  if (boxes_.show("Do you want to replace file ?", "Warning: File already exists",
                  Buttons::OkCancel) != Choice::Ok)
    return false;
  auto old = std::make_shared<ReplacedFile>(pathFromText(chosen));
  const Result<> moved = old->makeWay();
  if (!moved) return refuse("The old file cannot be replaced: " + moved.reason());
  replaced_ = std::move(old);
  return true;
}

bool FileFlows::refuse(const std::string& why) {
  boxes_.show("Error: " + why, "", Buttons::Ok);
  return false;
}

}  // namespace kelvane
