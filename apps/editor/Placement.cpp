#include "apps/editor/Placement.h"

#include <algorithm>

#include "apps/editor/ControlSource.h"
#include "common/values/RuntimeError.h"
#include "document/page/Page.h"
#include "document/page/Surroundings.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

bool IsControl(const Embedded& part) { return part.kind == Embedded::Kind::control; }

std::string RuntimeTextOf(const Embedded& control, const page::PageEncoding& encoding) {
  try {
    return ControlSource(control.bytes, encoding).Load()->GetRuntimeText();
  } catch (const RuntimeError&) {
    return {};
  }
}

// Returns the double quotes around a value that begins at `begin`; nothing when it does not end or
// contains a single quote.
std::optional<Misplacement::Quotes> QuotesAround(const QString& text, int begin, int end) {
  const auto close = text.indexOf(u'"', end);
  if (begin == 0 || text[begin - 1] != u'"' || close < 0) return std::nullopt;
  if (text.indexOf(u'\'', begin) >= 0 && text.indexOf(u'\'', begin) < close) return std::nullopt;
  return Misplacement::Quotes{begin - 1, static_cast<int>(close)};
}

}  // namespace

std::optional<Misplacement> FindMisplacement(const PageText& page, const Insertion& insertion) {
  if (std::ranges::none_of(insertion.part.EmbeddedParts(), IsControl)) return std::nullopt;
  PageText after = page;
  after.Replace(insertion.begin, insertion.end - insertion.begin, insertion.part.Text(),
                insertion.part.EmbeddedParts());
  PageText::Places places;
  const page::Page whole(after.Bytes(places));
  std::vector<std::size_t> standing;
  for (const page::FoundControl& found : page::Inspect(whole).controls)
    standing.push_back(found.begin);

  std::optional<Misplacement> misplacement;
  int shift = 0;  // by how much the texts are longer than the controls
  for (const Embedded& part : insertion.part.EmbeddedParts()) {
    if (!IsControl(part)) continue;
    const std::size_t offset = places.OffsetOf(insertion.begin + part.position);
    if (std::ranges::binary_search(standing, offset)) continue;
    const page::Surroundings around = page::SurroundingsAt(whole, offset);
    const int begin = places.PositionOf(around.begin);
    const std::string runtimeText = RuntimeTextOf(part, page.Encoding());
    const page::Pasting pasting = page::PastingOf(around, runtimeText);
    if (!misplacement)
      misplacement = {page::CannotHoldControl(around, places.PlaceOf(begin).line, runtimeText),
                      insertion.part, std::nullopt};
    if (pasting == page::Pasting::inSingleQuotes && insertion.part.Text().size() == 1)
      misplacement->quotes = QuotesAround(page.Text(), begin, insertion.end);
    if (pasting == page::Pasting::no ||
        (pasting == page::Pasting::inSingleQuotes && !misplacement->quotes))
      misplacement->asText.reset();
    if (!misplacement->asText) return misplacement;
    const QString text = ToQt(runtimeText);
    misplacement->asText->Replace(part.position + shift, 1, text, {});
    shift += static_cast<int>(text.size()) - 1;
  }
  return misplacement;
}

}  // namespace kvo::editor
