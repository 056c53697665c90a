#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace kelvane {

/// Whether a file operation succeeded; when it did not, the reason in words for the operator.
struct FileResult {
  bool ok = true;
  std::string reason;

  explicit operator bool() const { return ok; }
};

/// Replaces a file's content: written beside it, flushed to the disk, and swapped in, so that a
/// crash at any moment leaves the old or the new file whole. Makes missing folders.
FileResult writeFileSafely(const std::filesystem::path& path, std::string_view content);

/// The whole content of a file, at most `limit` bytes. None when it cannot be opened or read, or is
/// larger; `reason` then says why when it is asked for, and is empty when there is no such file.
std::optional<std::string> readFile(const std::filesystem::path& path, std::size_t limit,
                                    std::string* reason = nullptr);

/// Moves a damaged file aside under a name of its own beside it, and answers that name; empty when
/// it could not be moved.
std::filesystem::path keepAside(const std::filesystem::path& path);

}  // namespace kelvane
