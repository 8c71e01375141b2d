#include "document/check/OwnText.h"

#include <algorithm>

#include "document/check/ControlRules.h"
#include "document/page/ProblemList.h"

namespace kvo::check {
namespace {

// A page may hold nothing but unknown fields.
constexpr std::size_t kMostTold = 1'000;

// The page with blanks in place of its controls, so that every place stays the same.
std::string WithoutControls(const page::Page& page,
                            const std::vector<page::FoundControl>& controls) {
  std::string text(page.Bytes());
  for (const page::FoundControl& control : controls) {
    const std::size_t end = std::min(control.end, text.size());
    if (control.begin < end)
      text.replace(control.begin, end - control.begin, end - control.begin, ' ');
  }
  return text;
}

}  // namespace

page::Problems CheckOwnText(const page::Page& page, const std::vector<page::FoundControl>& controls,
                            KnownFields& fields) {
  if (!fields.contact && !fields.order) return {};
  if (page.Encoding().kind() == page::PageEncoding::Kind::utf16) return {};
  page::ProblemList problems;
  std::size_t told = 0;
  ForEachFieldReference(WithoutControls(page, controls), [&](const FieldReference& reference) {
    if (told > kMostTold) return;
    std::string name;
    page.Encoding().Decode(reference.name, name);
    auto message = UnknownFieldMessage(reference.kind, name, fields);
    if (!message) return;
    if (++told > kMostTold)
      message = Message{"Weitere unbekannte Felder im Text der Seite werden nicht genannt.",
                        "Further unknown fields in the page's text are not named."};
    const Rule& rule = IsFieldForSure(reference) ? kUnknownField : kUnknownOrderValue;
    problems.Add(reference.at, rule.id, {}, std::move(*message), rule.severity);
  });
  return problems.Take(page.Bytes(), page.Encoding());
}

}  // namespace kvo::check
