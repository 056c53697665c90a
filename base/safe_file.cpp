#include "base/safe_file.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <functional>
#include <new>
#include <thread>
#include <utility>

#include "base/folder.h"
#include "base/text.h"
#include "base/utf8.h"

namespace kelvane {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kUnfinished = ".unfinished";

std::error_code lastError() {
  return std::error_code(errno ? errno : EIO, std::generic_category());
}

Failure failure(const fs::path& path, const Result<>& why) {
  return {"Cannot write " + pathText(path) + ": " + why.reason(), why.held()};
}

/// A path's own letters as UTF-8. The library's conversion throws at half a pair of UTF-16, which
/// the system takes in a name; here that is U+FFFD.
template <class Unit>
std::string utf8Of(const std::basic_string<Unit>& units) {
  if constexpr (sizeof(Unit) == 1) {
    return units;
  } else {
    const auto isHalf = [](char32_t c, char32_t first) { return c >= first && c < first + 0x400; };
    std::string text;
    for (std::size_t i = 0; i < units.size(); ++i) {
      char32_t character = units[i];
      const char32_t next = i + 1 < units.size() ? units[i + 1] : U'\0';
      if (isHalf(character, 0xD800) && isHalf(next, 0xDC00)) {
        character = 0x10000 + ((character - 0xD800) << 10) + (next - 0xDC00);
        ++i;
      } else if (isHalf(character, 0xD800) || isHalf(character, 0xDC00)) {
        character = 0xFFFD;
      }
      appendCharacter(text, character);
    }
    return text;
  }
}

/// "256 MB"; limits are whole ones, of either kind.
std::string sizeText(std::size_t bytes) {
  for (const std::size_t mega : {std::size_t{1'000'000}, std::size_t{1} << 20}) {
    if (bytes > 0 && bytes % mega == 0) return std::to_string(bytes / mega) + " MB";
  }
  return std::to_string(bytes) + " bytes";
}

FileReading readOnce(const fs::path& path, std::size_t limit, FileSteps& steps) try {
  return steps.read(path, limit);
} catch (const std::bad_alloc&) {
  return {
      FileReading::Unreadable, {}, pathText(path) + " does not fit into the memory that is left"};
}

/// A name beside the file that no other write, of this or another process, uses at this time.
fs::path nameBeside(const fs::path& path) {
  const auto moment = std::chrono::system_clock::now().time_since_epoch().count();
  const auto thread = std::hash<std::thread::id>{}(std::this_thread::get_id());
  fs::path name = path;
  name += "." + std::to_string(moment) + "-" + std::to_string(thread % 1000000);
  name += kUnfinished;
  return name;
}

/// Removes what an earlier write left when it was killed. Young files may belong to a write that
/// another process is busy with.
void removeLeftovers(const fs::path& path, FileSteps& steps) {
  const std::string start = pathText(path.filename()) + ".";
  const auto old = fs::file_time_type::clock::now() - std::chrono::minutes(10);
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  for (const fs::path& entry : entriesIn(folder)) {
    const std::string name = pathText(entry.filename());
    if (!name.starts_with(start) || !name.ends_with(kUnfinished)) continue;
    std::error_code none;
    const auto time = fs::last_write_time(entry, none);
    if (!none && time < old) steps.remove(entry);
  }
}

}  // namespace

Result<> FileSteps::makeFolders(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) return Failure{systemWords(error)};
  return {};
}

Result<> FileSteps::write(const fs::path& file, std::string_view content) {
  errno = 0;
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(content.data(), static_cast<std::streamsize>(content.size()));
  out.close();
  if (out) return {};
  return Failure{systemWords(lastError())};
}

Result<> FileSteps::append(const fs::path& file, std::string_view content) {
  errno = 0;
  std::ofstream out(file, std::ios::binary | std::ios::app);
  out.write(content.data(), static_cast<std::streamsize>(content.size()));
  out.close();
  if (out) return {};
  const std::error_code why = lastError();
  return Failure{systemWords(why), why == std::errc::permission_denied && fs::exists(file)};
}

void FileSteps::pause(milliseconds time) { std::this_thread::sleep_for(time); }

Result<> FileSteps::secondName(const fs::path& from, const fs::path& to) {
  std::error_code error;
  fs::path unfinished = to;
  unfinished += kUnfinished;
  fs::remove(unfinished, error);
  fs::create_hard_link(from, unfinished, error);
  // Not every file system has links.
  if (error) fs::copy_file(from, unfinished, fs::copy_options::overwrite_existing, error);
  if (!error) fs::rename(unfinished, to, error);
  if (error) return Failure{systemWords(error)};
  return {};
}

void FileSteps::remove(const fs::path& file) {
  std::error_code ignored;
  fs::remove(file, ignored);
}

Result<> writeFileSafely(const fs::path& path, std::string_view content) {
  FileSteps disk;
  return writeFileSafely(path, content, disk);
}

Result<> writeFileSafely(const fs::path& path, std::string_view content, FileSteps& steps) {
  return writeFileSafely(path, content, steps, [] { return Result<>(); });
}

Result<> writeFileSafely(const fs::path& path, std::string_view content, FileSteps& steps,
                         const std::function<Result<>()>& beforeSwap) {
  if (path.has_parent_path()) {
    const Result<> made = steps.makeFolders(path.parent_path());
    if (!made) return failure(path, made);
    removeLeftovers(path, steps);
  }
  const fs::path unfinished = nameBeside(path);
  Result<> result = steps.write(unfinished, content);
  if (result) result = retryWhileHeld(steps, [&] { return steps.flush(unfinished); });
  if (result) result = beforeSwap();
  if (result) result = retryWhileHeld(steps, [&] { return steps.swapIn(unfinished, path); });
  if (result) return result;
  steps.remove(unfinished);
  return failure(path, result);
}

FileReading tooLargeToRead(const fs::path& path, std::size_t limit) {
  return {
      FileReading::TooLarge, {}, pathText(path) + " is too large; the most is " + sizeText(limit)};
}

FileReading readWhenFree(const fs::path& path, std::size_t limit, FileSteps& steps) {
  return retryWhileHeld(steps, [&] { return readOnce(path, limit, steps); });
}

std::optional<std::string> readFile(const fs::path& path, std::size_t limit) {
  FileSteps disk;
  FileReading reading = readOnce(path, limit, disk);
  if (reading.how == FileReading::Whole) return std::move(reading.content);
  return std::nullopt;
}

bool hasContent(const fs::path& path, std::string_view content) {
  std::error_code error;
  if (fs::file_size(path, error) != content.size() || error) return false;
  std::ifstream in(path, std::ios::binary);
  std::array<char, 65536> piece;
  while (in && !content.empty()) {
    in.read(piece.data(), piece.size());
    const std::string_view read(piece.data(), static_cast<std::size_t>(in.gcount()));
    if (!content.starts_with(read)) return false;
    content.remove_prefix(read.size());
  }
  return content.empty();
}

fs::path keepAside(const fs::path& path) {
  constexpr int kTries = 1000;
  for (int i = 1; i <= kTries; ++i) {
    fs::path aside = path.parent_path() / path.stem();
    aside += ".damaged-" + std::to_string(i);
    aside += path.extension();
    std::error_code error;
    if (fs::exists(fs::symlink_status(aside, error))) continue;
    fs::rename(path, aside, error);
    return error ? fs::path() : aside;
  }
  return {};
}

std::string pathText(const fs::path& path) { return utf8Of(path.native()); }

fs::path pathFromText(std::string_view text) {
  const std::string valid = validUtf8(text, '_');
  return fs::path(std::u8string(valid.begin(), valid.end()));
}

}  // namespace kelvane
