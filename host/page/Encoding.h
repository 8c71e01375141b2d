// The encoding of a page: found as browsers find it, and conversion from and to UTF-8.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kvo::page {

// A character set of one byte per character, as the system's iconv defines it.
class SingleByteSet {
 public:
  // `iconvName` as iconv_open takes it.
  explicit SingleByteSet(const char* iconvName);

  // The character of a byte; kNone for a byte that stands for none.
  static constexpr char32_t kNone = 0xFFFFFFFF;
  char32_t Decode(unsigned char byte) const { return decode_[byte]; }
  // The byte of a character, or -1.
  int Encode(char32_t character) const;

 private:
  std::array<char32_t, 256> decode_;
};

// Byte order mark, else a `meta` declaration within the first 1024 bytes, else UTF-8.
class PageEncoding {
 public:
  enum class Kind {
    utf8,
    singleByte,
    utf16,  // refused
    other,  // refused when the page holds controls
  };

  static PageEncoding Of(std::string_view page);

  Kind kind() const { return kind_; }
  bool IsUtf8() const { return kind_ == Kind::utf8; }
  // As the page names it, or "utf-8", "utf-16le", "utf-16be".
  const std::string& Name() const { return name_; }

  // Appends the bytes as UTF-8. Where a byte is not valid, stops there and returns its offset;
  // npos when all went well. Unserved encodings are read as ASCII.
  std::size_t Decode(std::string_view bytes, std::string& utf8) const;

  // The page's bytes of one character; false (and nothing appended) when it has none.
  bool Encode(char32_t character, std::string& bytes) const;

 private:
  Kind kind_ = Kind::utf8;
  std::string name_ = "utf-8";
  const SingleByteSet* set_ = nullptr;
};

}  // namespace kvo::page
