#include "document/check/Balance.h"

#include "document/page/Messages.h"

namespace kvo::check {
namespace {

using page::messages::Quoted;

std::string PlaceText(const page::FoundControl& control) {
  return std::to_string(control.place.line) + ":" + std::to_string(control.place.column);
}

page::Problem Unbalanced(const page::FoundControl& control, Message message) {
  return {kUnbalanced.severity, kUnbalanced.id,     control.place, control.className,
          control.id,           std::move(message), control.begin};
}

}  // namespace

void Balance::Open(const std::string& name, const page::FoundControl& control) {
  Tags& tags = names_[name];
  tags.open.push_back(&control);
  tags.lastOpen = &control;
}

void Balance::Close(const std::string& name, const page::FoundControl& control) {
  Tags& tags = names_[name];
  if (tags.open.empty()) {
    const std::string tag = Quoted(name);
    Message message = {"Dieses schließende Element " + tag + " hat kein öffnendes vor sich.",
                       "This closing element " + tag + " has no opening one before it."};
    if (tags.lastClose != nullptr) {
      message.german += " Das letzte öffnende (" + PlaceText(*tags.lastOpen) +
                        ") schließt schon das Element in " + PlaceText(*tags.lastClose) + ".";
      message.english += " The last opening one (" + PlaceText(*tags.lastOpen) +
                         ") is closed by the element at " + PlaceText(*tags.lastClose) +
                         " already.";
    }
    problems_.push_back(Unbalanced(control, std::move(message)));
    return;
  }
  tags.open.pop_back();
  tags.lastClose = &control;
}

page::Problems Balance::Take() {
  for (const auto& [name, tags] : names_) {
    for (const page::FoundControl* control : tags.open) {
      const std::string tag = Quoted(name);
      Message message = {"Dieses öffnende Element " + tag + " wird nie geschlossen.",
                         "This opening element " + tag + " is never closed."};
      if (tags.lastClose != nullptr) {
        message.german += " Das letzte schließende steht in " + PlaceText(*tags.lastClose) + ".";
        message.english += " The last closing one stands at " + PlaceText(*tags.lastClose) + ".";
      }
      problems_.push_back(Unbalanced(*control, std::move(message)));
    }
  }
  names_.clear();
  return std::move(problems_);
}

}  // namespace kvo::check
