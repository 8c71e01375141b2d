#include "apps/language/Shapes.h"

#include <utility>

namespace kvo::language {

Position PositionFrom(const Json& position) {
  return {position.at("line").get<std::size_t>(), position.at("character").get<std::size_t>()};
}

std::size_t OffsetFrom(const OpenPage& page, const Json& position) {
  return page.OffsetOf(PositionFrom(position));
}

Json PositionJson(Position position) {
  return {{"line", position.line}, {"character", position.character}};
}

Json RangeJson(const OpenPage& page, std::size_t begin, std::size_t end) {
  return {{"start", PositionJson(page.PositionOf(begin))},
          {"end", PositionJson(page.PositionOf(end))}};
}

Json EditsJson(const OpenPage& page, const page::TextEdits& edits) {
  Json all = Json::array();
  for (const page::TextEdit& edit : edits)
    all.push_back(
        {{"range", RangeJson(page, edit.begin, edit.end)}, {"newText", page.Utf8Of(edit.bytes)}});
  return all;
}

void WorkspaceEdit::Add(const std::string& uri, const Json& version, Json edits) {
  if (versioned_)
    all_.push_back(
        {{"textDocument", {{"uri", uri}, {"version", version}}}, {"edits", std::move(edits)}});
  else
    all_[uri] = std::move(edits);
}

Json WorkspaceEdit::Take() {
  if (versioned_) return {{"documentChanges", all_.is_null() ? Json::array() : std::move(all_)}};
  return {{"changes", all_.is_null() ? Json::object() : std::move(all_)}};
}

}  // namespace kvo::language
