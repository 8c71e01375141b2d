#include "controls/AttributeList.h"

namespace kvo {
namespace {

constexpr std::string_view kItemSeparator = "||";

}  // namespace

void AttributeList::operator()(ObjectRef newItems) {
  items_ = newItems ? std::move(newItems) : std::make_shared<Collection>();
  own_ = dynamic_cast<const Collection*>(items_.get());
}

std::string JoinedAttributes::operator()() const {
  std::string joined;
  list_.ForEachText([&joined](std::string_view item) {
    if (!joined.empty()) joined += kItemSeparator;  // deliberate: none before an empty beginning
    joined += item;
  });
  return joined;
}

void JoinedAttributes::operator()(std::string_view newAttributes) {
  auto items = std::make_shared<Collection>();
  std::string_view rest = newAttributes;
  while (!rest.empty() || items->Count() > 0) {
    const std::size_t end = rest.find(kItemSeparator);
    items->Add(rest.substr(0, end));
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + kItemSeparator.size());
  }
  list_(std::move(items));
}

}  // namespace kvo
