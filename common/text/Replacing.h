// One pass over a text in which some characters are replaced and all others are copied: what the
// escaping helpers share. Copying goes in blocks, replacements are gathered before they are
// appended, so that neither clean texts nor texts full of replacements cost more than they must.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kvo {

// What stands for a character, in a block of a fixed size that is copied without a loop.
struct Replacement {
  std::array<char, 15> text{};
  std::uint8_t size = 0;

  constexpr Replacement() = default;
  constexpr explicit Replacement(std::string_view of) : size(static_cast<std::uint8_t>(of.size())) {
    std::ranges::copy(of, text.begin());
  }
};
static_assert(sizeof(Replacement) == 16);

// Writes a replacement and returns its end. Surplus bytes are written behind that.
inline char* Put(const Replacement& replacement, char* to) {
  std::memcpy(to, &replacement, sizeof replacement);
  return to + replacement.size;
}

// Some characters, looked for one by one or in a block.
template <char... characters>
struct CharacterSet {
  static constexpr bool Has(char c) { return ((c == characters) || ...); }
#ifdef __SSE2__
  // All ones where a character belongs to the set.
  static __m128i Hits(__m128i block) {
    __m128i hits = _mm_setzero_si128();
    ((hits = _mm_or_si128(hits, _mm_cmpeq_epi8(block, _mm_set1_epi8(characters)))), ...);
    return hits;
  }
#endif
};

// Copies up to the first character of the set or to the end, whichever comes first, and says how
// much that was. Writes up to kBlock surplus bytes behind it.
#ifdef __SSE2__
inline constexpr std::size_t kBlock = sizeof(__m128i);

template <class Set>
std::size_t CopyUpTo(const char* from, std::size_t size, char* to) {
  const auto load = [](const char* at) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
  };
  const auto hitsIn = [](__m128i block) {
    return static_cast<unsigned>(_mm_movemask_epi8(Set::Hits(block)));
  };
  std::size_t copied = 0;
  for (; size - copied >= kBlock; copied += kBlock) {
    const __m128i block = load(from + copied);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + copied), block);
    if (const unsigned hits = hitsIn(block); hits != 0)
      return copied + static_cast<std::size_t>(std::countr_zero(hits));
  }
  // What is behind the end is whatever stood there: it does not count.
  const std::size_t rest = size - copied;
  if (rest == 0) return copied;
  std::memcpy(to + copied, from + copied, rest);
  const unsigned hits = hitsIn(load(to + copied)) | (1U << rest);
  return copied + static_cast<std::size_t>(std::countr_zero(hits));
}
#else
inline constexpr std::size_t kBlock = 0;

template <class Set>
std::size_t CopyUpTo(const char* from, std::size_t size, char* to) {
  std::size_t copied = 0;
  for (; copied < size && !Set::Has(from[copied]); ++copied) to[copied] = from[copied];
  return copied;
}
#endif

// Where a replacing pass stands: in the text that it reads and in what it writes.
struct ReplacingAt {
  const char* from;
  char* to;
};

// How many replacements may be written at once, and how many bytes that are, surplus included.
inline constexpr std::size_t kLongestRun = 8;
inline constexpr std::size_t kMostReplaced = kLongestRun * sizeof(Replacement);

// Appends the text with its characters of the set replaced. At such a character `replacer.Next(at,
// end)` writes what stands for it, or for it and some after it, and returns where to go on; behind
// a run of them `replacer.Settle(to)` writes what it held back, and returns the end of that.
template <class Set, class Replacer>
void AppendReplacing(std::string& out, std::string_view text, Replacer replacer) {
  constexpr std::size_t kChunk = 1024;  // is copied at once
  constexpr std::size_t kSize = 4 * kChunk;
  constexpr std::size_t kLatest = kSize - kChunk - kBlock - kMostReplaced;
  char gathered[kSize];  // left as it is: nothing is read before it is written
  ReplacingAt at{text.data(), gathered};
  const char* const end = at.from + text.size();
  const auto makeRoom = [&] {
    if (at.to <= gathered + kLatest) return;
    out.append(gathered, static_cast<std::size_t>(at.to - gathered));
    at.to = gathered;
  };
  while (at.from != end) {
    makeRoom();
    const std::size_t size = std::min(static_cast<std::size_t>(end - at.from), kChunk);
    const std::size_t plain = CopyUpTo<Set>(at.from, size, at.to);
    at.from += plain;
    at.to += plain;
    if (plain == size) continue;
    do {
      makeRoom();
      at = replacer.Next(at, end);
    } while (at.from != end && Set::Has(*at.from));
    at.to = replacer.Settle(at.to);
  }
  out.append(gathered, static_cast<std::size_t>(at.to - gathered));
}

}  // namespace kvo
