#include "fuzz/AdoptRules.h"

#include <algorithm>
#include <string>

#include "document/adopt/Adopt.h"
#include "fuzz/Demand.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo::adopt {
namespace {

constexpr std::string_view kMapping = R"({"placeholders": [
  {"patterns": ["{{ {name} }}", "*|{name}|*", "[{name}]", "%{name}%", "<%= {name} %>"],
   "fields": {"a": "customer.a", "Name": {"field": "order.Name", "format": "0"},
              "Age": "config.Age"}},
  {"pattern": "##{name}##", "class": "DTCPrint", "properties": {"Value": "{name}"}},
  {"pattern": "[[list]]", "class": "DTCProductList", "properties": {"CacheObject": true}}],
  "links": {"class": "DTCClicktracker", "properties": {"ClickId": "{number}"}},
  "namespaces": ["x"]})";

std::string SoundlyPublished(std::string bytes) {
  page::StringSink sink;
  const page::Problems problems = page::Publish(page::Page(std::move(bytes)), sink);
  Demand(!page::HasErrors(problems), "an adopted page cannot be published");
  return sink.Take();
}

}  // namespace

void CheckAdopt(std::string_view input) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const Mapping mapping = ReadMapping(kMapping, "mapping.json");
  const page::Page page{std::string(input)};
  Finds all = FindAll(page, mapping);
  Demand(!page::HasErrors(all.problems) || all.finds.empty(), "a faulty page has finds");
  Demand(std::ranges::is_sorted(all.finds, {}, &Find::begin), "finds are out of order");
  const Adopted adopted = Adopt(page, std::move(all.finds));

  page::TextEdits published;
  bool onlyTags = true;
  for (const Find& find : adopted.finds) {
    Demand(find.begin < find.end && find.end <= input.size(), "a find is not in the page");
    Demand(find.edits.empty() != find.reason.german.empty(), "a find neither stays nor goes");
    Demand(find.edits.size() == find.published.size(), "a find does not know what it publishes");
    Demand(page::Join(published, find.published), "finds overlap");
    if (find.kind != Find::Kind::tag && !find.edits.empty()) onlyTags = false;
  }
  Demand(adopted.bytes == page::Applied(input, adopted.edits), "the page is not its edits");
  if (adopted.edits.empty()) {
    Demand(adopted.bytes == input, "a page changes without a find");
    return;
  }
  const std::string now = SoundlyPublished(adopted.bytes);
  Demand(now == SoundlyPublished(page::Applied(input, published)),
         "an adopted page gives other bytes");
  if (onlyTags)
    Demand(now == SoundlyPublished(std::string(input)), "adopted tags give other bytes");
  page::StringSink saved;
  page::Save(page::Page(adopted.bytes), saved, {.force = true});
  const page::Page again(adopted.bytes);
  Demand(FindAll(again, mapping).problems.empty() ||
             !page::HasErrors(FindAll(again, mapping).problems),
         "an adopted page has errors");
}

}  // namespace kvo::adopt
