// The shapes of positions, ranges and edits in messages.
#pragma once

#include <cstddef>
#include <string>

#include "apps/language/Framing.h"
#include "apps/language/OpenPage.h"
#include "document/page/TextEdit.h"

namespace kvo::language {

// What the client can show.
struct Client {
  bool snippets = false;
  bool markdown = false;
  bool symbolTrees = false;
  bool versionedEdits = false;
  bool watchesFiles = false;
};

// Throws Json::exception for another shape.
Position PositionFrom(const Json& position);
// Returns the offset in the page's bytes.
std::size_t OffsetFrom(const OpenPage& page, const Json& position);

Json PositionJson(Position position);
Json RangeJson(const OpenPage& page, std::size_t begin, std::size_t end);
Json EditsJson(const OpenPage& page, const page::TextEdits& edits);

// Edits of several files, as the client can take them.
class WorkspaceEdit {
 public:
  explicit WorkspaceEdit(const Client& client) : versioned_(client.versionedEdits) {}

  // `version` is null for a file that is not open.
  void Add(const std::string& uri, const Json& version, Json edits);
  Json Take();

 private:
  bool versioned_;
  Json all_;
};

}  // namespace kvo::language
