// The encoding of a page: found as browsers find it, and conversion from and to UTF-8.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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
  struct Row {
    char32_t character;
    unsigned char byte;
  };
  std::array<char32_t, 256> decode_;
  std::vector<Row> encode_;  // by character
};

// Byte order mark, else a `meta` declaration within the first 1024 bytes, else UTF-8 if the page is
// valid in it, else windows-1252.
class PageEncoding {
 public:
  enum class Kind {
    utf8,
    singleByte,
    utf16,  // refused
    other,  // refused when the page holds controls
  };

  // How far into a page browsers look for a declaration.
  static constexpr std::size_t kDeclarationReach = 1024;
  static PageEncoding Of(std::string_view page);
  // What the page says itself, at its start.
  static std::optional<PageEncoding> Declared(std::string_view page);
  // Of a page that says nothing.
  static PageEncoding Undeclared(bool isValidUtf8);
  bool IsDeclared() const { return declared_; }

  // A declaration that does not count, in a page that has no other.
  struct VoidDeclaration {
    std::string name;
    std::size_t offset = 0;  // of its `meta`
    bool tooFar = false;     // beyond what browsers look at; else it is a tag of a template
  };
  static std::optional<VoidDeclaration> FindVoidDeclaration(std::string_view page);

  // Whether both read all bytes alike.
  bool ReadsAs(const PageEncoding& other) const {
    return kind_ == other.kind_ && set_ == other.set_;
  }

  Kind kind() const { return kind_; }
  bool IsUtf8() const { return kind_ == Kind::utf8; }
  // Whether it is ISO-8859-1, or the part of it that is ASCII: browsers read both as windows-1252.
  bool IsReadAsWindows1252() const;
  static bool IsInWindows1252(char32_t character);
  // As the page names it, or "utf-8", "utf-16le", "utf-16be".
  const std::string& Name() const { return name_; }

  // How many bytes at the start of a page are a byte order mark of UTF-8.
  static std::size_t Mark(std::string_view page);

  // How many of the bytes (at least one) are the first character; invalid ones count singly.
  std::size_t CharacterLength(std::string_view bytes) const;

  // Appends the bytes as UTF-8. Stops at the first byte that is not valid and returns its offset;
  // npos when all went well. Encodings that are not served are read as UTF-8.
  std::size_t Decode(std::string_view bytes, std::string& utf8) const {
    return Decode(bytes, utf8, false);
  }
  // The same for the raw value of an attribute, character references resolved.
  std::size_t DecodeAttribute(std::string_view bytes, std::string& utf8) const {
    return Decode(bytes, utf8, true);
  }

  // The page's bytes of one character; false (and nothing appended) when it has none.
  bool Encode(char32_t character, std::string& bytes) const;

 private:
  std::size_t Decode(std::string_view bytes, std::string& utf8, bool references) const;

  Kind kind_ = Kind::utf8;
  std::string name_ = "utf-8";
  const SingleByteSet* set_ = nullptr;
  bool declared_ = false;
};

}  // namespace kvo::page
