#include "apps/kvo/RenamedFiles.h"

#include <algorithm>

#include "apps/kvo/Terminal.h"
#include "common/values/Ascii.h"
#include "document/office/OfficeFile.h"
#include "document/page/File.h"
#include "document/page/Messages.h"
#include "document/preview/Records.h"
#include "document/uses/References.h"

namespace kvo {
namespace {

using page::messages::Quoted;

std::string ContentsOf(const std::string& file) {
  return page::ReadRegularFile(file, office::kLargestJsonFile);
}

page::TextEdits OfficeEdits(const std::string& contents, const std::string& file,
                            const uses::Name& from, const uses::Name& to) {
  const auto list =
      from.kind == uses::Kind::contactField ? office::FieldList::contact : office::FieldList::order;
  return office::RenameField(contents, file, list, from.text, to.text);
}

std::string_view GroupOf(const uses::Name& name) {
  return name.kind == uses::Kind::contactField ? preview::kCustomer : preview::kOrder;
}

// Whether a text has a word, in any case.
bool HasWord(std::string_view text, std::string_view word) {
  const std::string lowered = Lowered(text);
  const std::string wanted = Lowered(word);
  const auto isInside = [&](std::size_t at) {
    return at < lowered.size() && uses::IsNameCharacter(lowered[at]);
  };
  for (std::size_t at = lowered.find(wanted); at != std::string::npos;
       at = lowered.find(wanted, at + 1))
    if ((at == 0 || !isInside(at - 1)) && !isInside(at + wanted.size())) return true;
  return false;
}

// Calls `read` with the records; no for a faulty file, which other commands report.
template <class Read>
bool InRecords(const std::string& file, Read read) {
  try {
    return read(preview::LoadRecords(file));
  } catch (const LocalizedError&) {
    return false;
  }
}

}  // namespace

std::optional<EditedFile> RenamedOffice(const std::string& file, const uses::Renaming& renaming) {
  const auto& [from, to] = renaming;
  if (!uses::IsField(from))
    throw Failure(Say({"Eine id steht nicht im Office. --office weglassen.",
                       "An id is not in an office. Leave out --office."}));
  std::string contents = ContentsOf(file);
  page::TextEdits edits = OfficeEdits(contents, file, from, to);
  const bool listsNew = !OfficeEdits(contents, file, to, from).empty();
  if (!edits.empty() && listsNew)
    throw Failure(Say({"„{}“ hat beide Felder, {} und {}. Eines von Hand löschen.",
                       "\"{}\" lists both fields, {} and {}. Delete one by hand."},
                      {file, Quoted(uses::Written(from)), Quoted(uses::Written(to))}));
  if (edits.empty() && !listsNew)
    throw Failure(Say({"„{}“ hat kein Feld {}. --office weglassen oder ein anderes Office "
                       "angeben.",
                       "\"{}\" lists no field {}. Leave out --office, or name another office."},
                      {file, Quoted(uses::Written(from))}));
  if (edits.empty()) return std::nullopt;
  return EditedFile{file, std::move(contents), std::move(edits)};
}

bool OfficeLists(const std::string& file, const uses::Renaming& renaming) {
  try {
    return !OfficeEdits(ContentsOf(file), file, renaming.from, renaming.to).empty();
  } catch (const LocalizedError&) {
    return false;
  }
}

std::optional<EditedFile> RenamedRecords(const std::string& file, const uses::Renaming& renaming) {
  std::string contents = ContentsOf(file);
  page::TextEdits edits = preview::RenameValues(contents, file, GroupOf(renaming.from),
                                                renaming.from.text, renaming.to.text);
  if (edits.empty()) return std::nullopt;
  return EditedFile{file, std::move(contents), std::move(edits)};
}

bool RecordsHave(const std::string& file, const uses::Name& name) {
  return InRecords(file, [&](const preview::RecordsFile& found) {
    return std::ranges::any_of(found.records, [&](const preview::Record& record) {
      return record.Find(GroupOf(name), name.text) != nullptr;
    });
  });
}

bool QueryMayHave(const std::string& file, const uses::Name& name) {
  return InRecords(
      file, [&](const preview::RecordsFile& found) { return HasWord(found.query, name.text); });
}

}  // namespace kvo
