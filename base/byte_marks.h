#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kelvane::byte_marks {

inline constexpr std::size_t kBlock = 64;

/// A bit for each byte of a block, the first byte's lowest, set where the byte is the wanted one.
#if defined(__SSE2__)
inline std::uint64_t find(const char* block, char wanted) {
  const __m128i each = _mm_set1_epi8(wanted);
  std::uint64_t marks = 0;
  for (std::size_t at = 0; at < kBlock; at += 16) {
    __m128i bytes;
    std::memcpy(&bytes, block + at, sizeof bytes);
    const int equal = _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, each));
    marks |= static_cast<std::uint64_t>(static_cast<std::uint32_t>(equal)) << at;
  }
  return marks;
}
#else
inline std::uint64_t find(const char* block, char wanted) {
  std::uint64_t marks = 0;
  for (std::size_t at = 0; at < kBlock; ++at)
    marks |= static_cast<std::uint64_t>(block[at] == wanted) << at;
  return marks;
}
#endif

}  // namespace kelvane::byte_marks
