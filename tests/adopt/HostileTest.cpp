// Pages designed to be slow to take over, or to be read wrongly.
#include <gtest/gtest.h>

#include <ctime>

#include "document/adopt/Adopt.h"
#include "fuzz/AdoptRules.h"
#include "fuzz/HostilePages.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo::adopt {
namespace {

using page::HostilePage;
using page::hostile::Times;

const HostilePage kHostileTemplates[] = {
    {"OpenTags", [](int n) { return Times(n, "<kv:if test=\"1\">"); }},
    {"OpenBlocks",
     [](int n) { return Times(n, "<!--KVO BLOCKLEVEL ELEMENT STARTSPAN<kv:if test=\"1\">"); }},
    {"NestedBlocks",
     [](int n) {
       return Times(n, "<!--KVO BLOCKLEVEL ELEMENT STARTSPAN<kv:if test=\"1\">") +
              Times(n, "</kv:if>KVO BLOCKLEVEL ELEMENT ENDSPAN-->");
     }},
    {"UnendedTags", [](int n) { return Times(n, "<kv:print value=\""); }},
    {"ManyAttributes", [](int n) { return "<kv:productlist" + Times(n, " a=\"b\"") + "/>"; }},
    {"ManyElementAttributes",
     [](int n) { return "<kv:element name=\"a\"" + Times(n, " b=\"c\"") + "/>"; }},
    {"OpenPlaceholders", [](int n) { return Times(n, "{{ "); }},
    {"BracesOnly", [](int n) { return Times(10 * n, "{"); }},
    {"PlaceholdersInOneTag", [](int n) { return "<a" + Times(n, " b=\"{{ a }}\"") + ">x</a>"; }},
    {"PlaceholdersInOneValue", [](int n) { return "<a b=\"" + Times(n, "{{ a }}") + "\">x</a>"; }},
    {"NestedElements",
     [](int n) { return Times(n, "<td title=\"{{ a }}\">") + Times(n, "</td>"); }},
    {"OpenElements", [](int n) { return Times(n, "<td title=\"{{ a }}\">"); }},
    {"CrossedElements",
     [](int n) { return Times(n, "<b title=\"{{ a }}\"><i title=\"{{ a }}\"></b></i>"); }},
    {"TagsThatOpenTitles", [](int n) { return Times(n, "<kv:script><title></kv:script>"); }},
    {"ListsInTheCache", [](int n) { return Times(n, "[[list]]"); }},
    {"LongPlaceholders",
     [](int n) { return Times(n, "*|aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"); }},
};

void CheckRules(const HostilePage& page) { EXPECT_NO_THROW(CheckAdopt(page.of(20))) << page.name; }

TEST(AdoptHostile, TemplatesKeepEveryRule) {
  for (const HostilePage& page : kHostileTemplates) CheckRules(page);
}
TEST(AdoptHostile, PagesKeepEveryRule) {
  for (const HostilePage& page : page::kHostilePages) CheckRules(page);
}

// Four times the page may take four times as long, not sixteen.
TEST(AdoptHostile, TimeGrowsWithThePage) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const Mapping mapping = ReadMapping(
      R"({"placeholders": [{"pattern": "{{ {name} }}", "fields": {"a": "customer.a"}}]})", "m");
  const auto timeOf = [&](const std::string& bytes) {
    const std::clock_t begin = std::clock();
    const page::Page page(bytes);
    Adopt(page, FindAll(page, mapping).finds);
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
  };
  for (const HostilePage& page : kHostileTemplates) {
    const double small = timeOf(page.of(100));
    const double large = timeOf(page.of(400));
    EXPECT_LT(large, 10 * small + 0.1) << page.name << ' ' << small << ' ' << large;
  }
}

}  // namespace
}  // namespace kvo::adopt
