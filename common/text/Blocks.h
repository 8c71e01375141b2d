// Searches and copies text in blocks of several characters at a time.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kvo {

inline constexpr std::size_t kBlock = 16;

template <char... wanted>
constexpr bool IsAny(char c) {
  return ((c == wanted) || ...);
}

// Returns a bit for each character of a block, the lowest for the first: whether it is wanted.
template <char... wanted>
[[gnu::always_inline]] inline std::uint32_t MarkInBlock(const char* at) {
#ifdef __SSE2__
  const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
  __m128i found = _mm_setzero_si128();
  ((found = _mm_or_si128(found, _mm_cmpeq_epi8(block, _mm_set1_epi8(wanted)))), ...);
  return static_cast<std::uint32_t>(_mm_movemask_epi8(found));
#else
  std::uint32_t marks = 0;
  for (std::size_t i = 0; i < kBlock; ++i)
    marks |= static_cast<std::uint32_t>(IsAny<wanted...>(at[i])) << i;
  return marks;
#endif
}

// Returns the index of the first wanted character in a block, or kBlock.
template <char... wanted>
[[gnu::always_inline]] inline std::size_t FindInBlock(const char* at) {
  return static_cast<std::size_t>(
      std::countr_zero(MarkInBlock<wanted...>(at) | std::uint32_t{1} << kBlock));
}

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
    std::uint64_t places = 0;
    for (std::size_t i = 0; i < kSize; i += kBlock)
      places |= std::uint64_t{MarkInBlock<wanted...>(at + i)} << i;
    return places;
  }

  const char* end_;
  const char* block_;
  std::uint64_t places_;  // those in the block that are still to come
};

}  // namespace kvo
