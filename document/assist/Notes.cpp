#include "document/assist/Notes.h"

#include <algorithm>

#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"
#include "document/page/WrittenElement.h"
#include "document/uses/Uses.h"

namespace kvo::assist {
namespace {

using page::FoundControl;

Message HelpFrom(const Localized& text) {
  return {std::string(text.german), std::string(text.english)};
}

const FoundControl* ControlAt(const std::vector<FoundControl>& controls, std::size_t place) {
  const auto found = std::ranges::find_if(controls, [place](const FoundControl& control) {
    return control.begin <= place && place < control.end;
  });
  return found == controls.end() ? nullptr : &*found;
}

std::string RuntimeTextOf(const FoundControl& found) {
  if (found.broken || found.contract == nullptr) return {};
  try {
    return page::Load(*found.contract, found.bag)->GetRuntimeText();
  } catch (const RuntimeError&) {
    return {};  // checks report it
  }
}

bool IsIn(const page::WrittenValue& value, std::size_t place) {
  return value.begin <= place && place <= value.end;
}

// Describes the param at the place; false when none is there.
bool DescribeParam(const page::Page& page, const FoundControl& found, std::size_t place,
                   Note& note) {
  for (const page::WrittenParam& param : page::ReadWrittenElement(page, found).params) {
    if (place < param.tag || place >= param.end) continue;
    const PropertyRow* row = found.contract->FindKey(param.key);
    if (row == nullptr) return false;
    note.begin = param.tag;
    note.end = param.end;
    note.title = row->Caption();
    note.name = param.key;
    note.help = HelpFrom(row->input.help);
    return true;
  }
  return false;
}

Note NoteOf(const page::Page& page, const FoundControl& found, std::size_t place) {
  Note note{found.begin, found.end, {}, found.className, {}, RuntimeTextOf(found)};
  if (found.contract == nullptr || DescribeParam(page, found, place, note)) return note;
  note.title = found.contract->title;
  note.help = HelpFrom(found.contract->description);
  return note;
}

// Describes the field that the place refers to; nothing when it refers to none.
std::optional<Note> NoteOfField(const page::Page& page, std::size_t place,
                                const office::Office::Description* office) {
  for (const uses::Use& use : uses::FindUses(page).uses) {
    if (!uses::IsField(use.name) || !IsIn({use.begin, use.end}, place)) continue;
    const bool isContact = use.name.kind == uses::Kind::contactField;
    Note note{use.begin, use.end, {}, uses::Written(use.name), {}, {}};
    note.title = isContact ? Localized{"Kontaktfeld", "Contact field"}
                           : Localized{"Bestellfeld", "Order field"};
    if (office == nullptr) return note;
    const auto& fields = isContact ? office->contactFields : office->orderFields;
    const auto field = std::ranges::find(fields, use.name.text, &office::Field::sqlName);
    if (field != fields.end()) note.help = {field->displayName, field->displayName};
    return note;
  }
  return std::nullopt;
}

}  // namespace

std::optional<Note> NoteAt(const page::Page& page, const std::vector<FoundControl>& controls,
                           std::size_t place, const office::Office::Description* office) {
  std::optional<Note> field = NoteOfField(page, place, office);
  const FoundControl* found = ControlAt(controls, place);
  if (found == nullptr) return field;
  if (!field) return NoteOf(page, *found, place);
  field->runtime = RuntimeTextOf(*found);
  return field;
}

}  // namespace kvo::assist
