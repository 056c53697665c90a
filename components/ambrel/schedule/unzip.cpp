#include "components/ambrel/schedule/unzip.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace kelvane::ambrel {

namespace {

constexpr std::size_t kMostMembers = 100;
constexpr std::size_t kEndSize = 22, kCentralSize = 46, kLocalSize = 30;

std::size_t number(std::string_view bytes, std::size_t at, std::size_t size) {
  std::size_t value = 0;
  for (std::size_t i = size; i-- > 0;)
    value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
  return value;
}

/// Inflates until the stream ends; none where it is damaged or longer than the limit.
std::optional<std::string> inflated(std::string_view packed, std::size_t limit) {
  z_stream stream{};
  if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) return std::nullopt;
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
  stream.avail_in = static_cast<uInt>(packed.size());
  std::string content;
  std::array<char, 1 << 16> part;
  int code = Z_OK;
  while (code == Z_OK && content.size() <= limit) {
    stream.next_out = reinterpret_cast<Bytef*>(part.data());
    stream.avail_out = static_cast<uInt>(part.size());
    code = inflate(&stream, Z_NO_FLUSH);
    content.append(part.data(), part.size() - stream.avail_out);
    if (code == Z_OK && stream.avail_in == 0 && stream.avail_out > 0) break;
  }
  inflateEnd(&stream);
  if (code != Z_STREAM_END || content.size() > limit) return std::nullopt;
  return content;
}

/// Where the list of files begins and how many it has.
bool findList(std::string_view bytes, std::size_t& at, std::size_t& count) {
  const auto end = bytes.rfind("PK\5\6");
  if (end == bytes.npos || end + kEndSize > bytes.size()) return false;
  count = number(bytes, end + 10, 2);
  at = number(bytes, end + 16, 4);
  return true;
}

}  // namespace

bool isZip(std::string_view bytes) { return bytes.starts_with("PK\3\4"); }

ZipReading unzip(std::string_view bytes, std::size_t limit) {
  ZipReading reading;
  const auto refuse = [](const char* why) { return ZipReading{{}, why}; };
  std::size_t at = 0, count = 0;
  if (!findList(bytes, at, count)) return refuse("The zip is damaged or cut off.");
  if (count > kMostMembers) return refuse("There are too many files in the zip.");
  for (; count > 0; --count) {
    if (at + kCentralSize > bytes.size() || bytes.substr(at, 4) != "PK\1\2")
      return refuse("The zip is damaged or cut off.");
    const std::size_t method = number(bytes, at + 10, 2), packed = number(bytes, at + 20, 4),
                      nameSize = number(bytes, at + 28, 2), local = number(bytes, at + 42, 4);
    if (at + kCentralSize + nameSize > bytes.size() || local + kLocalSize > bytes.size())
      return refuse("The zip is damaged or cut off.");
    ZipMember member{std::string(bytes.substr(at + kCentralSize, nameSize)), {}};
    const std::size_t begin =
        local + kLocalSize + number(bytes, local + 26, 2) + number(bytes, local + 28, 2);
    if (begin > bytes.size() || packed > bytes.size() - begin || (method != 0 && method != 8))
      return refuse("The zip is damaged, or packed in a way that is not known.");
    const std::string_view content = bytes.substr(begin, packed);
    auto unpacked = method == 8 ? inflated(content, limit) : std::optional(std::string(content));
    if (!unpacked || unpacked->size() > limit)
      return refuse("The zip is damaged, or too large when it is unpacked.");
    limit -= unpacked->size();
    member.content = std::move(*unpacked);
    reading.members.push_back(std::move(member));
    at += kCentralSize + nameSize + number(bytes, at + 30, 2) + number(bytes, at + 32, 2);
  }
  return reading;
}

}  // namespace kelvane::ambrel
