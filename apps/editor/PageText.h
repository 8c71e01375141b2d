// A page as an author edits it: text with each control as one character. Sets aside whatever a text
// widget would not keep (odd line breaks, bytes that are not text), so that the same bytes are
// written again.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "document/page/Encoding.h"
#include "document/page/Problem.h"

namespace kvo::editor {

inline constexpr QChar kEmbeddedCharacter = QChar::ObjectReplacementCharacter;
inline constexpr QChar kLineBreakCharacter = QChar::ParagraphSeparator;

// The bytes in the page behind one character of the text.
struct Embedded {
  enum class Kind {
    control,    // an element or a saved span
    bytes,      // bytes that are not text in the page's encoding, or invisible characters
    lineBreak,  // an unusual one for the page; its character is kLineBreakCharacter
  };
  Kind kind = Kind::bytes;
  int position = 0;
  QByteArray bytes;  // as in the page
};

// Cheap to copy: copies share unchanged parts.
class PageText {
 public:
  PageText() = default;
  // Leaves controls that cannot be loaded as text, so that they can be fixed. A page in UTF-16
  // cannot be edited: check Encoding() first. `lineBreak` is the usual one; if empty, the most
  // frequent.
  explicit PageText(const std::string& page, const QByteArray& lineBreak = {});
  // Reads a UTF-8 fragment for a page in a given encoding.
  static PageText OfFragment(std::string_view fragment, const page::PageEncoding& encoding);

  const QString& Text() const { return text_; }
  const std::vector<Embedded>& EmbeddedParts() const { return embedded_; }
  const page::PageEncoding& Encoding() const { return encoding_; }
  // The page's usual line break.
  const QByteArray& LineBreak() const { return lineBreak_; }

  // Returns the part at a position; nullptr when there is none.
  const Embedded* At(int position) const;

  // Replaces a part of the text. The positions of `embedded` count from the start of `text`.
  void Replace(int position, int length, QStringView text, std::vector<Embedded> embedded);

  // Returns the page's bytes. Characters outside the encoding become character references.
  std::string Bytes() const;

  // Returns a fragment: the page in UTF-8 with line feeds.
  std::string Fragment() const;

  PageText Part(int begin, int end) const;

  // Maps between bytes and characters, for one state of the text.
  class Places {
   public:
    std::size_t OffsetOf(int position) const;
    // Returns the character at or after a byte.
    int PositionOf(std::size_t offset) const;
    // Returns the line and character in the text, where a control is one character.
    page::Place PlaceOf(int position) const;

   private:
    friend class PageText;
    struct Mark {
      int position;
      std::size_t offset;
    };
    const PageText* text_ = nullptr;
    std::vector<Mark> marks_;
    std::vector<int> lineStarts_;
  };
  std::string Bytes(Places& places) const;

 private:
  class Reader;
  class Writer;

  QString text_;
  std::vector<Embedded> embedded_;  // by position
  page::PageEncoding encoding_;
  QByteArray lineBreak_ = "\n";
  QByteArray mark_;  // the byte order mark
};

}  // namespace kvo::editor
