// Takes a template over: finds the runtime tags that stand in a page by hand or were published
// before, and the placeholders of other systems, and turns them into controls.
//
// A tag becomes a control exactly when the control's runtime text gives the same bytes again; what
// a placeholder becomes, a mapping says. Whatever else is found stays, with a reason. An adopted
// page is proved by publishing it: that gives the old page, with the runtime texts in place of the
// placeholders, byte for byte.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "common/frame/Control.h"
#include "common/values/Localized.h"
#include "common/values/Object.h"
#include "document/adopt/Mapping.h"
#include "document/page/Page.h"
#include "document/page/TextEdit.h"

namespace kvo::adopt {

// A tag or a placeholder, and what becomes of it.
struct Find {
  enum class Kind { tag, placeholder, statement };
  enum class Result {
    stays,
    control,  // stands as a control
    element,  // the element around an attribute becomes an element control, or two
    tag,      // the tag of the control, because no control can stand there
  };

  Kind kind = Kind::tag;
  Result result = Result::stays;
  std::size_t begin = 0;  // in the page
  std::size_t end = 0;
  page::Place place;
  std::string text;                        // what stands there, shortened when long; UTF-8
  std::string name;                        // of a placeholder
  const ControlClass* contract = nullptr;  // of what it becomes
  std::vector<std::pair<std::string, std::string>> properties;  // by name, for users
  Message reason{};                                             // why it stays
  // The field that an unknown placeholder may mean, as a mapping writes it; may be empty.
  std::string suggestion{};

  bool chosen = true;           // for callers to leave it out
  page::TextEdits edits{};      // of the page; empty when it stays
  page::TextEdits published{};  // the same ranges with their runtime texts
};

struct Finds {
  std::vector<Find> finds;  // in page order
  page::Problems problems;  // errors that keep the page from being published; there are no finds
};

// Finds everything. The office, which may be nullptr, gives the captions of fields and suggests
// fields for unknown placeholders. Takes time in proportion to the page. Needs a platform, as all
// that calls controls does.
Finds FindAll(const page::Page& page, const Mapping& mapping, const ObjectRef& office = nullptr);

struct Adopted {
  page::TextEdits edits;
  std::string bytes;  // the new page; the old one when nothing is taken over
  std::vector<Find> finds;
};

// Makes the chosen finds of the page. A find that cannot be proved is left out and stays, with the
// reason.
Adopted Adopt(const page::Page& page, std::vector<Find> finds);

}  // namespace kvo::adopt
