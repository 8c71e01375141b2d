#include "document/adopt/AttributeValues.h"

#include <algorithm>

#include "common/values/Ascii.h"
#include "document/adopt/TagControl.h"
#include "document/page/Scanner.h"
#include "host/registration/classes.h"

namespace kvo::adopt {
namespace {

// An expression for the value of a control, as attributes take it: where its field stands.
struct ExpressionGroup {
  std::string_view className;
  std::string_view property;
  std::string_view group;
};
constexpr ExpressionGroup kExpressionGroups[] = {{"DTCContact", "Field", "customer"},
                                                 {"DTCOrder", "Field", "order"}};

// An expression has no format.
std::optional<std::string> ExpressionOf(const Hit& hit) {
  const ControlClass& contract = *hit.found.target->contract;
  const auto* const group =
      std::ranges::find(kExpressionGroups, contract.name, &ExpressionGroup::className);
  if (group == std::end(kExpressionGroups)) return std::nullopt;
  const std::shared_ptr<Control> control = page::Load(contract, hit.bag);
  if (!ToText(control->Get("Format")).empty()) return std::nullopt;
  const std::string name = ToText(control->Get(group->property));
  if (name.find_first_of("#\"|") != std::string::npos) return std::nullopt;
  return '#' + std::string(group->group) + '.' + name + '#';
}

}  // namespace

std::optional<std::string> ValueWithTags(const page::Page& page,
                                         const ElementTag::Attribute& attribute, Hits hits) {
  if (attribute.value.find('\'') != page::npos) return std::nullopt;
  std::string value = "'";
  auto copied = static_cast<std::size_t>(attribute.value.data() - page.Bytes().data());
  const std::size_t end = copied + attribute.value.size();
  for (const Hit& hit : hits) {
    std::string utf8;
    page.Encoding().Decode(hit.made->runtimeText, utf8);
    page::Surroundings inSingleQuotes = hit.around;
    inSingleQuotes.quote = '\'';
    if (page::PastingOf(inSingleQuotes, utf8) != page::Pasting::asItStands) return std::nullopt;
    value += page.Bytes().substr(copied, hit.found.begin - copied);
    value += hit.made->runtimeText;
    copied = hit.found.end;
  }
  value += page.Bytes().substr(copied, end - copied);
  value += '\'';
  return value;
}

const ControlClass& ElementClass() { return FindControlByName("DTCElement")->contract(); }

std::optional<AttributePairs> AttributesOf(const page::Page& page, const ElementTag& tag,
                                           Hits hits) {
  AttributePairs pairs;
  const page::PageEncoding& encoding = page.Encoding();
  for (const ElementTag::Attribute& attribute : tag.attributes) {
    AttributePair pair;
    if (encoding.Decode(attribute.name, pair.name) != page::npos) return std::nullopt;
    auto copied = static_cast<std::size_t>(attribute.value.data() - page.Bytes().data());
    const std::size_t end = copied + attribute.value.size();
    if (!attribute.hasValue) return std::nullopt;
    for (const Hit& hit : hits) {
      if (hit.found.begin < copied || hit.found.end > end) continue;
      const auto expression = ExpressionOf(hit);
      if (!expression) return std::nullopt;
      encoding.DecodeAttribute(page.Bytes().substr(copied, hit.found.begin - copied), pair.value);
      pair.value += *expression;
      copied = hit.found.end;
    }
    if (encoding.DecodeAttribute(page.Bytes().substr(copied, end - copied), pair.value) !=
        page::npos)
      return std::nullopt;
    // These would end the value or the list, or be read as something else.
    if (pair.value.empty() || pair.value.find_first_of("\"|<>\r\n\t") != std::string::npos ||
        pair.name.find_first_of("|\"'<=") != std::string::npos || Writes(ElementClass(), pair.name))
      return std::nullopt;
    const auto same = [&](const AttributePair& each) {
      return EqualIgnoringCase(each.name, pair.name);
    };
    if (std::ranges::any_of(pairs, same)) return std::nullopt;
    pairs.push_back(std::move(pair));
  }
  return pairs;
}

bool GivesAttributes(const page::PageEncoding& encoding, const Made& made,
                     const AttributePairs& pairs) {
  const std::string_view text = made.runtimeText;
  const auto tag = ElementTagAt(text, text.find('<', text.starts_with("<!--") ? 1 : 0));
  if (!tag) return false;
  auto pair = pairs.begin();
  for (const ElementTag::Attribute& attribute : tag->attributes) {
    std::string name;
    std::string value;
    encoding.Decode(attribute.name, name);
    encoding.DecodeAttribute(attribute.value, value);
    if (Writes(ElementClass(), name)) continue;
    if (pair == pairs.end() || pair->name != name || pair->value != value) return false;
    ++pair;
  }
  return pair == pairs.end();
}

}  // namespace kvo::adopt
