// Pages and what a take-over makes of them, one behaviour each: tests/golden/adopt/cases.txt. A
// case has the parts "page", "mapping" and "office" (both may be missing), "adopted" and "finds",
// the last two compared to the byte. Set KVO_SHOW to see what comes of each case.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <map>
#include <sstream>

#include "document/adopt/Adopt.h"
#include "document/office/OfficeFile.h"
#include "document/page/File.h"
#include "host/headless/HeadlessPlatform.h"
#include "tests/adopt/Published.h"

namespace kvo::adopt {
namespace {

const std::string kFile = KVO_SOURCE_DIR "/tests/golden/adopt/cases.txt";

struct Case {
  std::string name;
  std::map<std::string, std::string> parts;
};

void PrintTo(const Case& each, std::ostream* stream) { *stream << each.name; }

std::vector<Case> AllCases() {
  std::vector<Case> cases;
  std::istringstream file(page::ReadFile(kFile));
  std::string* part = nullptr;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("=== ")) {
      cases.push_back({line.substr(4), {}});
      part = nullptr;
    } else if (line.starts_with("--- ")) {
      part = &cases.back().parts[line.substr(4)];
    } else if (part != nullptr) {
      *part += line + '\n';
    }
  }
  // The line that ends a part is not its own.
  for (Case& each : cases)
    for (auto& [name, text] : each.parts)
      while (text.ends_with('\n')) text.pop_back();
  return cases;
}

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

class AdoptGolden : public testing::TestWithParam<Case> {};

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

INSTANTIATE_TEST_SUITE_P(Cases, AdoptGolden, testing::ValuesIn(AllCases()),
                         [](const auto& each) { return each.param.name; });

}  // namespace
}  // namespace kvo::adopt
