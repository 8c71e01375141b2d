// Pages and what a take-over makes of them, one behaviour each: tests/golden/adopt/cases.txt. A
// case has the parts "page", "mapping" and "office" (both may be missing), "adopted" and "finds",
// the last two compared to the byte. Set KVO_SHOW to see what comes of each case.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <map>

#include "document/adopt/Adopt.h"
#include "document/office/OfficeFile.h"
#include "document/page/File.h"
#include "host/headless/HeadlessPlatform.h"
#include "tests/adopt/Published.h"
#include "tests/support/GoldenCases.h"

namespace kvo::adopt {
namespace {

const std::string kFile = KVO_SOURCE_DIR "/tests/golden/adopt/cases.txt";

std::string Listed(const std::vector<Find>& finds) {
  std::string list;
  for (const Find& find : finds) {
    if (!list.empty()) list += '\n';
    list += std::to_string(find.place.line) + ':' + std::to_string(find.place.column) + ' ' +
            find.text + " -> ";
    if (find.edits.empty()) {
      list += "stays: " + find.reason.english;
      if (!find.suggestion.empty()) list += " [" + find.suggestion + ']';
      continue;
    }
    list += find.contract->name;
    if (find.result == Find::Result::tag) list += " as a tag";
    for (const auto& [name, value] : find.properties) list += ' ' + name + '=' + value;
  }
  return list;
}

class AdoptGolden : public testing::TestWithParam<GoldenCase> {};

TEST_P(AdoptGolden, GivesThisPage) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  std::map<std::string, std::string> parts = GetParam().parts;
  Mapping mapping;
  if (parts.contains("mapping")) mapping = ReadMapping(parts["mapping"], "mapping.json");
  ObjectRef office;
  if (parts.contains("office"))
    office = std::make_shared<office::Office>(office::ReadOffice(parts["office"], "office.json"));
  const page::Page page(parts["page"]);
  Finds all = FindAll(page, mapping, office);
  EXPECT_TRUE(all.problems.empty());
  const Adopted adopted = Adopt(page, std::move(all.finds));
  if (std::getenv("KVO_SHOW") != nullptr)
    std::cout << adopted.bytes << "\n---\n" << Listed(adopted.finds) << '\n';
  EXPECT_EQ(adopted.bytes, parts["adopted"]);
  EXPECT_EQ(Listed(adopted.finds), parts["finds"]);

  // Taken over again, it stays as it is.
  const page::Page again(adopted.bytes);
  EXPECT_EQ(Adopt(again, FindAll(again, mapping, office).finds).bytes, adopted.bytes);
  page::TextEdits published;
  for (const Find& find : adopted.finds) EXPECT_TRUE(page::Join(published, find.published));
  EXPECT_EQ(Published(adopted.bytes), Published(page::Applied(page.Bytes(), published)));
}

INSTANTIATE_TEST_SUITE_P(Cases, AdoptGolden, testing::ValuesIn(GoldenCases(kFile)),
                         [](const auto& each) { return each.param.name; });

}  // namespace
}  // namespace kvo::adopt
