#include "apps/language/OpenPage.h"

#include <algorithm>
#include <utility>

#include "document/page/ElementWriter.h"
#include "document/page/Messages.h"
#include "document/page/ProblemList.h"
#include "document/page/Utf8.h"

namespace kvo::language {
namespace {

constexpr std::size_t kStep = 1024;

// The length of the character that a valid text begins with.
std::size_t LengthOf(std::string_view utf8) {
  return std::max<std::size_t>(page::FirstUtf8Character(utf8).length, 1);
}

// Returns the encoding of one byte per character that the page declares; nothing when it declares
// none, or another.
std::optional<page::PageEncoding> SingleByteDeclared(std::string_view utf8) {
  std::string head;
  for (std::size_t at = 0;
       at < utf8.size() && head.size() < page::PageEncoding::kDeclarationReach;) {
    const std::size_t length = LengthOf(utf8.substr(at));
    head += length == 1 ? utf8[at] : '?';
    at += length;
  }
  auto declared = page::PageEncoding::Declared(head);
  if (!declared || declared->kind() != page::PageEncoding::Kind::singleByte) return std::nullopt;
  return declared;
}

}  // namespace

OpenPage::Encoded::Encoded(std::string_view utf8) : page(BytesOf(utf8)) {
  problems = found.Take(page.Bytes(), page.Encoding());
}

std::string OpenPage::Encoded::BytesOf(std::string_view utf8) {
  const std::optional<page::PageEncoding> encoding = SingleByteDeclared(utf8);
  if (!encoding) return std::string(utf8);
  constexpr page::messages::Plain kUnwritable = {
      "Eine Seite in {} kann {} nicht aufnehmen. Schreiben Sie das Zeichen als &#...; oder ändern "
      "Sie charset.",
      "A page in {} cannot hold {}. Write the character as &#...; or change the charset."};
  std::string bytes;
  bool reported = false;
  for (std::size_t at = 0; at < utf8.size();) {
    if (bytes.size() % kStep == 0) places.push_back(at);
    const auto [character, length] = page::FirstUtf8Character(utf8.substr(at));
    if (character == U'\n' || character == U'\r') reported = false;
    if (!encoding->Encode(character, bytes)) {
      if (!reported)
        found.Add(bytes.size(), page::rule::notInEncoding, {},
                  kUnwritable(encoding->Name(), page::NotHeld(character).text));
      reported = true;
      bytes += '?';
    }
    at += std::max<std::size_t>(length, 1);
  }
  return bytes;
}

OpenPage::OpenPage(std::string utf8, Units units) : text_(std::move(utf8), units) {}

OpenPage OpenPage::OfFile(const page::Page& page, Units units) {
  std::string utf8;
  // Clients do not count the mark.
  std::string_view rest = page.Bytes().substr(page::PageEncoding::Mark(page.Bytes()));
  while (!rest.empty()) {
    const std::size_t bad = page.Encoding().Decode(rest, utf8);
    if (bad == page::npos) break;
    page::AppendUtf8(utf8, page::kReplacementCharacter);
    rest.remove_prefix(bad + 1);
  }
  return OpenPage(std::move(utf8), units);
}

void OpenPage::Replace(Position begin, Position end, std::string_view utf8) {
  text_.Replace(begin, end, utf8);
  encoded_.reset();
}

OpenPage::Encoded& OpenPage::Made() const {
  if (!encoded_) encoded_.emplace(text_.Utf8());
  return *encoded_;
}

const page::Page& OpenPage::Page() const { return Made().page; }

const page::Inspection& OpenPage::Inspection() const {
  Encoded& made = Made();
  if (!made.inspection) made.inspection = page::Inspect(made.page);
  return *made.inspection;
}

const page::Problems& OpenPage::Unwritable() const { return Made().problems; }

Position OpenPage::PositionOf(std::size_t offset) const {
  const std::vector<std::size_t>& places = Made().places;
  if (places.empty()) return text_.PositionOf(offset);
  offset = std::min(offset, Page().Bytes().size());
  const std::string_view utf8 = text_.Utf8();
  const std::size_t step = std::min(offset / kStep, places.size() - 1);
  std::size_t at = places[step];
  for (std::size_t byte = step * kStep; byte < offset; ++byte) at += LengthOf(utf8.substr(at));
  return text_.PositionOf(at);
}

std::size_t OpenPage::OffsetOf(Position position) const {
  const std::size_t wanted = text_.OffsetOf(position);
  const std::vector<std::size_t>& places = Made().places;
  if (places.empty()) return wanted;
  const auto next = std::ranges::upper_bound(places, wanted);
  const auto step = static_cast<std::size_t>(next - places.begin()) - 1;
  std::size_t offset = step * kStep;
  for (std::size_t at = places[step]; at < wanted; ++offset)
    at += LengthOf(std::string_view(text_.Utf8()).substr(at));
  return offset;
}

std::string OpenPage::Utf8Of(std::string_view bytes) const {
  std::string utf8;
  Page().Encoding().Decode(bytes, utf8);
  return utf8;
}

}  // namespace kvo::language
