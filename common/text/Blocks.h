// A text's characters up to the first of some, found or copied a block at a time.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

#if __has_include(<experimental/simd>)
#include <experimental/simd>
#endif

namespace kvo {

template <char... wanted>
constexpr bool IsAny(char c) {
  return ((c == wanted) || ...);
}

// FindInBlock gives the place of the first of the characters in a block; kBlock when there is none.
#ifdef __cpp_lib_experimental_parallel_simd
using Block = std::experimental::native_simd<char>;
inline constexpr std::size_t kBlock = Block::size();

template <char... wanted>
inline std::size_t FindInBlock(const char* at) {
  const Block block(at, std::experimental::element_aligned);
  const auto found = ((block == wanted) || ...);
  return any_of(found) ? static_cast<std::size_t>(find_first_set(found)) : kBlock;
}
#else
inline constexpr std::size_t kBlock = 16;

template <char... wanted>
inline std::size_t FindInBlock(const char* at) {
  return static_cast<std::size_t>(std::find_if(at, at + kBlock, IsAny<wanted...>) - at);
}
#endif

// The place of the first of the characters in a text, or the text's end: what std::find_if finds.
template <char... wanted>
std::size_t FindAny(std::string_view text) {
  std::size_t at = 0;
  for (; text.size() - at >= kBlock; at += kBlock)
    if (const std::size_t found = FindInBlock<wanted...>(text.data() + at); found < kBlock)
      return at + found;
  while (at < text.size() && !IsAny<wanted...>(text[at])) ++at;
  return at;
}

// Copies up to the first of the characters or to the end, and says how much that was. Writes what
// is behind that as well, but no more than `size` in all.
template <char... stops>
std::size_t CopyUpTo(const char* from, std::size_t size, char* to) {
  std::size_t at = 0;
  for (; size - at >= kBlock; at += kBlock) {
    std::memcpy(to + at, from + at, kBlock);
    if (const std::size_t stop = FindInBlock<stops...>(from + at); stop < kBlock) return at + stop;
  }
  for (; at < size && !IsAny<stops...>(from[at]); ++at) to[at] = from[at];
  return at;
}

}  // namespace kvo
