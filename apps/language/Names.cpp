#include "apps/language/Names.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "apps/language/Answers.h"
#include "apps/language/Protocol.h"
#include "document/office/JsonTree.h"
#include "document/uses/Rename.h"
#include "document/uses/Uses.h"

namespace kvo::language {
namespace {

using uses::Kind;
using uses::Name;
using uses::Use;

// A name where it is written.
struct Written {
  Name name;
  std::size_t begin = 0;
  std::size_t end = 0;
};

// Returns the fields that an office file lists, with the bytes of their names. Empty for a broken
// file.
std::vector<Written> FieldsIn(std::string_view contents) {
  std::vector<Written> fields;
  try {
    const office::JsonNode root = office::ParseJson(contents);
    for (const auto& [list, kind] : {std::pair{"contactFields", Kind::contactField},
                                     std::pair{"orderFields", Kind::orderField}}) {
      const office::JsonNode* all = root.Find(list);
      if (all == nullptr) continue;
      for (const office::JsonNode& field : all->children) {
        const office::JsonNode* name = field.Find("sqlName");
        if (name == nullptr || name->kind != office::JsonNode::Kind::text) continue;
        const std::size_t begin = name->at + 1;
        std::size_t end = begin;
        while (end < contents.size() && contents[end] != '"') end += contents[end] == '\\' ? 2 : 1;
        fields.push_back({{kind, name->text}, begin, end});
      }
    }
  } catch (const office::JsonError&) {
    fields.clear();
  }
  return fields;
}

// Returns the name at a place of a page or of an office file.
std::optional<Written> NameAt(Workspace& workspace, const Json& params) {
  const OpenText& text = TextOf(workspace, params);
  const std::size_t place = OffsetFrom(text.page, params.at("position"));
  const auto isThere = [place](const auto& each) {
    return each.begin <= place && place <= each.end;
  };
  if (Workspace::IsOffice(text.uri)) {
    const std::vector<Written> fields = FieldsIn(text.page.Utf8());
    const auto field = std::ranges::find_if(fields, isThere);
    return field == fields.end() ? std::nullopt : std::optional(*field);
  }
  const std::vector<Use> all = uses::FindUses(text.page.Page()).uses;
  const auto use = std::ranges::find_if(all, isThere);
  if (use == all.end()) return std::nullopt;
  return Written{use->name, use->begin, use->end};
}

// An id belongs to its page; fields and classes are the same in all pages.
void ForEachPageWith(Workspace& workspace, const std::string& uri, const Name& name,
                     const std::function<void(const std::string& uri, const OpenPage&)>& each) {
  if (name.kind == Kind::controlId) return each(uri, workspace.Find(uri)->page);
  workspace.ForEachPageAround(uri, each);
}

Json LocationJson(const std::string& uri, const OpenPage& page, std::size_t begin,
                  std::size_t end) {
  return {{"uri", uri}, {"range", RangeJson(page, begin, end)}};
}

// Calls `found` with the entry of a field in the office beside the text; not when there is none.
void WithEntry(Workspace& workspace, const std::string& uri, const Name& name,
               const std::function<void(const OfficeText&, const Written&)>& found) {
  const OfficeText* office = uses::IsField(name) ? workspace.OfficeBeside(uri) : nullptr;
  if (office == nullptr) return;
  for (const Written& field : FieldsIn(office->contents))
    if (field.name == name) return found(*office, field);
}

Json VersionOf(Workspace& workspace, const std::string& uri) {
  const OpenText* open = workspace.Find(uri);
  return open == nullptr ? Json() : Json(open->version);
}

uses::Renaming RenamingFrom(const Name& name, const std::string& newName) {
  try {
    return uses::RenamingOf(uses::Written(name), uses::Written({name.kind, newName}));
  } catch (const uses::RenameError& error) {
    throw RequestError(ErrorCode::requestFailed, error.What());
  }
}

}  // namespace

Json Definition(Workspace& workspace, const Json& params) {
  const auto name = NameAt(workspace, params);
  if (!name) return nullptr;
  Json location;
  WithEntry(workspace, TextOf(workspace, params).uri, name->name,
            [&location](const OfficeText& office, const Written& field) {
              location = LocationJson(office.uri, office.text, field.begin, field.end);
            });
  return location;
}

Json References(Workspace& workspace, const Json& params) {
  const auto name = NameAt(workspace, params);
  if (!name) return nullptr;
  const std::string uri = TextOf(workspace, params).uri;
  Json locations = Json::array();
  if (params.at("context").at("includeDeclaration").get<bool>())
    WithEntry(workspace, uri, name->name,
              [&locations](const OfficeText& office, const Written& field) {
                locations.push_back(LocationJson(office.uri, office.text, field.begin, field.end));
              });
  ForEachPageWith(workspace, uri, name->name, [&](const std::string& other, const OpenPage& page) {
    for (const Use& use : uses::UsesOf(name->name, uses::FindUses(page.Page()).uses))
      locations.push_back(LocationJson(other, page, use.begin, use.end));
  });
  return locations;
}

Json PrepareRename(Workspace& workspace, const Json& params) {
  const auto name = NameAt(workspace, params);
  if (!name || name->name.kind == Kind::controlClass) return nullptr;
  return {{"range", RangeJson(TextOf(workspace, params).page, name->begin, name->end)},
          {"placeholder", name->name.text}};
}

Json Rename(Workspace& workspace, const Client& client, const Json& params) {
  const std::string newName = params.at("newName");
  const auto name = NameAt(workspace, params);
  if (!name)
    throw RequestError(ErrorCode::requestFailed,
                       {"Hier steht kein Feld und keine id.", "There is no field and no id here."});
  const std::string uri = TextOf(workspace, params).uri;
  const uses::Renaming renaming = RenamingFrom(name->name, newName);
  WorkspaceEdit edit(client);
  WithEntry(workspace, uri, renaming.from, [&](const OfficeText& office, const Written& field) {
    edit.Add(office.uri, VersionOf(workspace, office.uri),
             EditsJson(office.text, {{field.begin, field.end, newName}}));
  });
  ForEachPageWith(
      workspace, uri, renaming.from, [&](const std::string& other, const OpenPage& page) {
        const uses::Renamed renamed = uses::Rename(page.Page(), renaming);
        if (!renamed.kept.empty()) {
          const uses::KeptUse& kept = renamed.kept.front();
          const std::string place = other + ':' + std::to_string(kept.use.place.line) + ": ";
          throw RequestError(ErrorCode::requestFailed,
                             {place + kept.why.german, place + kept.why.english});
        }
        if (!renamed.edits.empty())
          edit.Add(other, VersionOf(workspace, other), EditsJson(page, renamed.edits));
      });
  return edit.Take();
}

}  // namespace kvo::language
