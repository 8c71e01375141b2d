// Searches and copies text in blocks of several characters at a time.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if __has_include(<experimental/simd>)
#include <experimental/simd>
#endif

namespace kvo {

template <char... wanted>
constexpr bool IsAny(char c) {
  return ((c == wanted) || ...);
}

// FindInBlock returns the index of the first wanted character in a block, or kBlock. MarkInBlock
// sets a mark for each character that is wanted.
#ifdef __cpp_lib_experimental_parallel_simd
using Block = std::experimental::native_simd<char>;
inline constexpr std::size_t kBlock = Block::size();

template <char... wanted>
inline auto Compare(const char* at) {
  const Block block(at, std::experimental::element_aligned);
  return ((block == wanted) || ...);
}
template <char... wanted>
inline std::size_t FindInBlock(const char* at) {
  const auto found = Compare<wanted...>(at);
  return any_of(found) ? static_cast<std::size_t>(find_first_set(found)) : kBlock;
}
template <char... wanted>
inline void MarkInBlock(const char* at, bool* marks) {
  Compare<wanted...>(at).copy_to(marks, std::experimental::element_aligned);
}
#else
inline constexpr std::size_t kBlock = 16;

template <char... wanted>
inline std::size_t FindInBlock(const char* at) {
  return static_cast<std::size_t>(std::find_if(at, at + kBlock, IsAny<wanted...>) - at);
}
template <char... wanted>
inline void MarkInBlock(const char* at, bool* marks) {
  std::transform(at, at + kBlock, marks, IsAny<wanted...>);
}
#endif

// Finds the first wanted character in [at, end), or `end`, as std::find_if does.
template <char... wanted>
[[gnu::always_inline]] inline const char* FindAny(const char* at, const char* end) {
  for (; static_cast<std::size_t>(end - at) >= kBlock; at += kBlock)
    if (const std::size_t found = FindInBlock<wanted...>(at); found < kBlock) return at + found;
  while (at != end && !IsAny<wanted...>(*at)) ++at;
  return at;
}

// Copies the text before the first stop character and returns its size. May write more than that,
// but at most `size` characters.
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

// Visits the wanted characters of a text in order. Searches 64 characters at once, so that a step
// from one to the next is cheap.
template <char... wanted>
class Places {
 public:
  Places(const char* at, const char* end) : end_(end), block_(at), places_(Look(at, end)) {}

  // The next wanted character, or the text's end.
  [[gnu::always_inline]] const char* Next() {
    while (places_ == 0) {
      if (end_ - block_ <= kSize) return end_;
      block_ += kSize;
      places_ = Look(block_, end_);
    }
    const char* const at = block_ + std::countr_zero(places_);
    places_ &= places_ - 1;
    return at;
  }
  // Skips the places before `at`.
  void SeekTo(const char* at) {
    if (at - block_ >= kSize)
      places_ = Look(block_ = at, end_);
    else
      places_ &= ~std::uint64_t{0} << static_cast<unsigned>(at - block_);
  }

 private:
  static constexpr std::ptrdiff_t kSize = 64;

  // One bit for each character, the lowest for the first. Static, so that the compiler can keep the
  // members in registers.
  [[gnu::noinline]] static std::uint64_t Look(const char* at, const char* end) {
    std::array<char, kSize> rest;
    if (end - at < kSize) {
      std::fill(std::copy(at, end, rest.begin()), rest.end(), '\0');
      at = rest.data();
    }
    std::array<bool, kSize> marks;
    for (std::size_t i = 0; i < marks.size(); i += kBlock)
      MarkInBlock<wanted...>(at + i, marks.data() + i);
    // Packs the marks of eight characters into eight bits, the first into the lowest.
    static_assert(std::endian::native == std::endian::little);
    std::uint64_t places = 0;
    for (std::size_t i = 0; i < marks.size(); i += 8) {
      std::uint64_t eight = 0;
      std::memcpy(&eight, marks.data() + i, 8);
      places |= (eight * 0x0102040810204080U >> 56U) << i;
    }
    return places;
  }

  const char* end_;
  const char* block_;
  std::uint64_t places_;  // those in the block that are still to come
};

}  // namespace kvo
