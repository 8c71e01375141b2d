// One version of a page, divided into its controls and the text around them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/compare/Align.h"
#include "document/page/Page.h"

namespace kvo::compare {

// A control, or a text that ends with its line or before the next control.
struct Piece {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::size_t control = kNone;  // in Version::controls; kNone for a text
  std::size_t line = 1;         // where it begins
};

class Version {
 public:
  explicit Version(std::string bytes);

  const page::Page& Page() const { return page_; }
  std::string_view Bytes() const { return page_.Bytes(); }
  // The controls that can be read. Broken ones count as text.
  const std::vector<page::FoundControl>& Controls() const { return controls_; }
  const std::vector<Piece>& Pieces() const { return pieces_; }
  // Whether the page holds something that looks like a control and cannot be read.
  bool IsBroken() const { return broken_; }

  std::string_view BytesOf(const Piece& piece) const {
    return Bytes().substr(piece.begin, piece.end - piece.begin);
  }
  std::string_view BytesOf(const page::FoundControl& control) const {
    return Bytes().substr(control.begin, control.end - control.begin);
  }

  // The text of a saved control, if it is not what its properties give: somebody edited it.
  std::optional<std::string> HandText(const page::FoundControl& control) const;

 private:
  void AddText(std::size_t begin, std::size_t end);

  page::Page page_;
  std::vector<page::FoundControl> controls_;
  std::vector<Piece> pieces_;
  bool broken_ = false;
  std::size_t line_ = 1;  // where the next piece begins
};

// Which controls of two versions are the same one.
struct Pairs {
  std::vector<std::size_t> ofA;  // by control of `a`: its partner in `b`, or kNone
  std::vector<std::size_t> ofB;
};
// How far controls are paired that changed and have no id. Between two parts that are paired, each
// with the next of its class, ...
enum class Pairing {
  never,
  certain,  // if there are as many of each class, in one order, and no ids differ
  likely,   // in any case
};
// Pairs controls by class and id, then by class and content, then by the text around them.
Pairs PairControls(const Version& a, const Version& b, Pairing pairing);

}  // namespace kvo::compare
