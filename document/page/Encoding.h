// Detects the encoding of a page as browsers do, and converts from and to UTF-8.
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
  // `iconvName` is a name for iconv_open.
  explicit SingleByteSet(const char* iconvName);

  // Returns the character of a byte; kNone for an undefined byte.
  static constexpr char32_t kNone = 0xFFFFFFFF;
  char32_t Decode(unsigned char byte) const { return decode_[byte]; }
  // Returns the byte of a character, or -1.
  int Encode(char32_t character) const;

 private:
  struct Row {
    char32_t character;
    unsigned char byte;
  };
  std::array<char32_t, 256> decode_;
  std::vector<Row> encode_;  // by character
};

// The encoding of a page: from its byte order mark, else a `meta` declaration within the first 1024
// bytes, else UTF-8 if the page is valid UTF-8, else windows-1252.
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
  // The encoding declared at the start of the page, if any.
  static std::optional<PageEncoding> Declared(std::string_view page);
  // The encoding of a page that declares none.
  static PageEncoding Undeclared(bool isValidUtf8);
  bool IsDeclared() const { return declared_; }

  // An ineffective declaration, in a page without an effective one.
  struct VoidDeclaration {
    std::string name;
    std::size_t offset = 0;  // of its `meta`
    bool tooFar = false;     // beyond what browsers read; otherwise a template tag
  };
  static std::optional<VoidDeclaration> FindVoidDeclaration(std::string_view page);

  // Whether both decode all bytes alike.
  bool ReadsAs(const PageEncoding& other) const {
    return kind_ == other.kind_ && set_ == other.set_;
  }

  Kind kind() const { return kind_; }
  bool IsUtf8() const { return kind_ == Kind::utf8; }
  // Whether it is ISO-8859-1 or US-ASCII, both of which browsers read as windows-1252.
  bool IsReadAsWindows1252() const;
  static bool IsInWindows1252(char32_t character);
  // The name used in the page, or "utf-8", "utf-16le", "utf-16be".
  const std::string& Name() const { return name_; }

  // Returns the size of a UTF-8 byte order mark at the start of the page, or 0.
  static std::size_t Mark(std::string_view page);

  // Returns the byte length of the first character, at least 1; an invalid byte counts as one.
  std::size_t CharacterLength(std::string_view bytes) const;

  // Appends the bytes as UTF-8. Stops at the first invalid byte and returns its offset, or npos on
  // success. Reads unsupported encodings as UTF-8.
  std::size_t Decode(std::string_view bytes, std::string& utf8) const {
    return Decode(bytes, utf8, false);
  }
  // Decodes the raw value of an attribute, resolving character references.
  std::size_t DecodeAttribute(std::string_view bytes, std::string& utf8) const {
    return Decode(bytes, utf8, true);
  }

  // Appends the bytes of a character; false, appending nothing, when the encoding lacks it.
  bool Encode(char32_t character, std::string& bytes) const;

 private:
  std::size_t Decode(std::string_view bytes, std::string& utf8, bool references) const;

  Kind kind_ = Kind::utf8;
  std::string name_ = "utf-8";
  const SingleByteSet* set_ = nullptr;
  bool declared_ = false;
};

}  // namespace kvo::page
