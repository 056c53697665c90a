#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane::ambrel {

/// A file in a zip.
struct ZipMember {
  std::string name;
  std::string content;
};

/// What is in a zip; nothing where `refusal` says why.
struct ZipReading {
  std::vector<ZipMember> members;
  std::string refusal;
};

bool isZip(std::string_view bytes);

/// Unpacks a zip whose files, stored or deflated, have at most `limit` bytes together, whatever it
/// says of their sizes itself.
ZipReading unzip(std::string_view bytes, std::size_t limit);

}  // namespace kelvane::ambrel
