// A page as an author edits it: text in which every control is one character, and everything that a
// text widget would not keep as it is (odd line ends, bytes that are no text) is put aside, so that
// the same bytes come out again.
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

// What stands in the page for one character of the text.
struct Embedded {
  enum class Kind {
    control,    // an element or a saved span
    bytes,      // bytes that are no text in the page's encoding, or characters that do not show
    lineBreak,  // one that is not the page's usual one; its character is kLineBreakCharacter
  };
  Kind kind = Kind::bytes;
  int position = 0;
  QByteArray bytes;  // as they stand in the page
};

// Cheap to copy: what was not changed is shared.
class PageText {
 public:
  PageText() = default;
  // Controls that cannot be loaded stay text, so that they can be mended. A page in UTF-16 cannot
  // be edited: look at Encoding() first. `lineBreak` is the usual one; an empty one: the most
  // frequent.
  explicit PageText(const std::string& page, const QByteArray& lineBreak = {});
  // A part of a page in a given encoding; `fragment` is in UTF-8.
  static PageText OfFragment(std::string_view fragment, const page::PageEncoding& encoding);

  const QString& Text() const { return text_; }
  const std::vector<Embedded>& EmbeddedParts() const { return embedded_; }
  const page::PageEncoding& Encoding() const { return encoding_; }
  // The usual one of the page.
  const QByteArray& LineBreak() const { return lineBreak_; }

  // The part at a position; nullptr when there is none.
  const Embedded* At(int position) const;

  // Replaces a part of the text by another, whose embedded parts count from the start of `text`.
  void Replace(int position, int length, QStringView text, std::vector<Embedded> embedded);

  // The page's bytes. A character that the encoding does not have becomes a character reference.
  std::string Bytes() const;

  // The same in UTF-8, with line feeds: a fragment.
  std::string Fragment() const;

  // Which byte belongs to which character, both ways; for one state of the text.
  class Places {
   public:
    std::size_t OffsetOf(int position) const;
    // The character at or behind a byte.
    int PositionOf(std::size_t offset) const;
    // Line and character of the text, in which a control is one character.
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
