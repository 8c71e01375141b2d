// A page as a client holds it: in UTF-8, whatever encoding its file has. The units that answer
// questions get the bytes that the file would have.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/language/Text.h"
#include "document/page/Page.h"
#include "document/page/ProblemList.h"

namespace kvo::language {

class OpenPage {
 public:
  // Takes the client's text.
  explicit OpenPage(std::string utf8, Units units = Units::utf16);
  // Takes a page that the client does not hold. Bytes that are not of its encoding count as one
  // character each.
  static OpenPage OfFile(const page::Page& page, Units units);

  // Replaces a part of the client's text.
  void Replace(Position begin, Position end, std::string_view utf8);

  // The client's text.
  const std::string& Utf8() const { return text_.Utf8(); }

  // The following are made when they are first asked for.
  const page::Page& Page() const;
  const page::Inspection& Inspection() const;
  // The first character of each line that the page's encoding cannot hold. Such a character is a
  // "?" in the page's bytes.
  const page::Problems& Unwritable() const;

  // Convert between the client's positions and offsets in the page's bytes.
  Position PositionOf(std::size_t offset) const;
  std::size_t OffsetOf(Position position) const;
  // Returns bytes of the page as the client's text.
  std::string Utf8Of(std::string_view bytes) const;

 private:
  struct Encoded {
    explicit Encoded(std::string_view utf8);

    page::ProblemList found;
    // The offsets in the text of every kStep-th byte of the page; none when all offsets are equal.
    std::vector<std::size_t> places;
    page::Page page;
    page::Problems problems;
    std::optional<page::Inspection> inspection;

   private:
    std::string BytesOf(std::string_view utf8);
  };
  Encoded& Made() const;

  Text text_;
  mutable std::optional<Encoded> encoded_;
};

}  // namespace kvo::language
