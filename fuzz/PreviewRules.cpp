#include "fuzz/PreviewRules.h"

#include <algorithm>
#include <array>
#include <string>

#include "document/preview/HtmlPlace.h"
#include "document/preview/Template.h"
#include "fuzz/Demand.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo::preview {
namespace {

constexpr std::string_view kFriendly = "aaaa";
// Each would change the page if it were not escaped, or do harm in an attribute or a script.
constexpr std::array<std::string_view, 5> kHostile = {
    "<kvo-x y=\"", "'\"--></title></script><kvo-x>", "-!>x&lt;", "javascript:alert(1)",
    "\r\n;}*/</style>\xC3"};

Record RecordWith(std::string_view value) {
  Record record;
  record.name = value;
  for (const std::string_view group : {kCustomer, kOrder, kConfig})
    for (const std::string_view name : {"a", "Name", "Age"})
      record.Group(group).Set(name, Variant(value));
  record.positions.emplace(1);
  for (const PositionColumn& column : kPositionColumns)
    record.positions->front().Set(column.name, Variant(value));
  return record;
}

// The places that the HTML tokenizer goes through: the same for two pages with the same tags.
std::string PlacesOf(std::string_view html) {
  std::string places;
  HtmlReader reader;
  for (std::size_t at = 0; at < html.size(); ++at) {
    reader.Read(html.substr(at, 1));
    HtmlPlace place = reader.Place();
    // A name is a part of its tag; an address is a value, whatever it holds.
    if (place == HtmlPlace::name) place = HtmlPlace::tag;
    const char letter = static_cast<char>('a' + static_cast<int>(place));
    if (places.empty() || places.back() != letter) places += letter;
  }
  return places;
}

std::size_t Count(std::string_view text, std::string_view wanted) {
  std::size_t count = 0;
  for (std::size_t at = text.find(wanted); at != std::string_view::npos;
       at = text.find(wanted, at + 1))
    ++count;
  return count;
}

struct OneProduct final : Shop {
  std::string_view text;
  std::vector<std::optional<Product>> Find(const std::vector<std::string>& numbers,
                                           std::optional<Message>&) override {
    std::vector<std::optional<Product>> found(numbers.size());
    for (std::size_t at = 0; at < found.size(); at += 2)
      found[at] = Product{std::string(text), std::string(text), std::string(text)};
    return found;
  }
};

}  // namespace

void CheckPreview(std::string_view input) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const page::Page page{std::string(input)};
  const Template shown(page);

  for (const Choice choice : {Choice::asRecord, Choice::holds, Choice::fails}) {
    RenderOptions options;
    OneProduct shop;
    options.shop = &shop;
    options.choices.assign(shown.Switches().size(), choice);
    shop.text = kFriendly;
    const Preview friendly = shown.Render(RecordWith(kFriendly), options);
    Demand(shown.Render(RecordWith(kFriendly), options).html == friendly.html,
           "the same record gives another page");
    Demand(friendly.switches.size() == shown.Switches().size(), "a switch is missing");
    Demand(std::ranges::is_sorted(friendly.findings, {}, &Finding::offset),
           "findings are out of order");
    for (const Finding& finding : friendly.findings)
      Demand(finding.offset <= input.size() && !finding.message.german.empty(),
             "a finding is unsound");
    if (choice == Choice::asRecord) continue;  // values decide which parts are shown
    const std::string places = PlacesOf(friendly.html);
    for (const std::string_view hostile : kHostile) {
      shop.text = hostile;
      const std::string html = shown.Render(RecordWith(hostile), options).html;
      Demand(Count(html, "<kvo-x") == Count(friendly.html, "<kvo-x"), "a record adds an element");
      Demand(PlacesOf(html) == places, "a record changes the tags of the page");
    }
  }

  const std::vector<std::vector<Choice>> variants = AllBranches(shown.Switches());
  Demand(variants.size() <= 2 * shown.Switches().size() + 1, "there are too many variants");
}

}  // namespace kvo::preview
