// A page made ready to render: its plain parts and its tags, in order. Internal to the preview.
#pragma once

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "document/preview/HtmlPlace.h"
#include "document/preview/RuntimeTag.h"
#include "document/preview/Template.h"

namespace kvo::preview {

struct Piece {
  enum class Kind { plain, tag, banner };
  Kind kind = Kind::plain;
  std::size_t begin = 0;  // of a plain piece, in the published bytes
  std::size_t end = 0;
  std::size_t node = 0;  // of a tag
};

// A tag, and where it stands.
struct Node {
  RuntimeTag tag;  // without the tags in it
  HtmlPlace html = HtmlPlace::text;
  bool takesTags = true;  // whether elements can be put here
  page::Place place;      // in the page
  std::size_t offset = 0;
  std::size_t part = RuntimeTag::kNoPart;  // the control that it comes from
  std::size_t toggle = Switch::kNoSwitch;
  std::vector<Piece> content;
  std::vector<Piece> otherwise;
};

struct Template::Compiled {
  page::PublishedPage page;
  page::PageEncoding encoding;
  std::vector<Piece> pieces;
  std::deque<Node> nodes;
  std::vector<Switch> switches;
  // Fields that the office does not have, as "group.name" in lower case, and what to do.
  std::map<std::string, Message, std::less<>> unknownFields;

  std::string_view Bytes(const Piece& piece) const {
    return std::string_view(page.bytes).substr(piece.begin, piece.end - piece.begin);
  }
  // The control of a node; nullptr for a tag that was written by hand.
  const page::PublishedControl* ControlOf(const Node& node) const {
    return node.part == RuntimeTag::kNoPart ? nullptr : &page.controls[node.part];
  }
};

}  // namespace kvo::preview
