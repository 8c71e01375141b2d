// Pages, records and what comes of them, one behaviour each: tests/golden/preview/cases.txt. A case
// has the parts "page", "record" (an object of preview.json), "html" and "findings"; "options"
// before them sets choices ("holds fails"), a product of the shop ("product K-1|Kaffee|250 g"),
// "marks" or "banner". The parts "html" and "findings" are compared to the byte.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

#include "document/office/Office.h"
#include "document/page/File.h"
#include "document/preview/Records.h"
#include "document/preview/Template.h"
#include "host/headless/HeadlessPlatform.h"
#include "tests/support/GoldenCases.h"

namespace kvo::preview {
namespace {

const std::string kFile = KVO_SOURCE_DIR "/tests/golden/preview/cases.txt";

struct Products final : Shop {
  std::map<std::string, Product> products;
  std::vector<std::optional<Product>> Find(const std::vector<std::string>& numbers,
                                           std::optional<Message>&) override {
    std::vector<std::optional<Product>> found;
    for (const std::string& number : numbers) {
      const auto product = products.find(number);
      found.push_back(product == products.end() ? std::nullopt : std::optional(product->second));
    }
    return found;
  }
};

void Set(std::string_view option, RenderOptions& options, Products& shop) {
  if (option == "marks") options.marks = true;
  if (option == "banner") options.banner = true;
  if (option == "holds") options.choices.push_back(Choice::holds);
  if (option == "fails") options.choices.push_back(Choice::fails);
  if (option == "as-record") options.choices.push_back(Choice::asRecord);
  if (!option.starts_with("product ")) return;
  options.shop = &shop;
  std::istringstream parts{std::string(option.substr(8))};
  Product product;
  std::getline(parts, product.number, '|');
  std::getline(parts, product.description, '|');
  std::getline(parts, product.description2);
  shop.products[product.number] = product;
}

std::string Listed(const std::vector<Finding>& findings) {
  std::string list;
  for (const Finding& finding : findings)
    list += std::to_string(finding.place.line) + ':' + std::to_string(finding.place.column) +
            (finding.kind == Finding::Kind::missing ? " missing" : " outside") +
            (finding.control.empty() ? "" : ' ' + finding.control) +
            (finding.id.empty() ? "" : " \"" + finding.id + '"') + ": " + finding.message.german +
            '\n';
  if (!list.empty()) list.pop_back();
  return list;
}

class PreviewGolden : public testing::TestWithParam<GoldenCase> {};

TEST_P(PreviewGolden, GivesTheHtml) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  GoldenCase each = GetParam();
  RenderOptions options;
  Products shop;
  std::istringstream lines(each.parts["options"]);
  for (std::string line; std::getline(lines, line);) Set(line, options, shop);

  office::Office::Description fields;
  fields.contactFields = {{"Name", "Name", 0}, {"Age", "Alter", 1}, {"Premium", "Premium", 3}};
  fields.orderFields = {{"OrderID", "Nummer", 1}, {"OrderTotal", "Summe", 1}};
  const Template page(page::Page(each.parts["page"]), std::make_shared<office::Office>(fields));
  const Record record =
      ReadRecords("{\"records\": [" + each.parts["record"] + "]}", each.name).records[0];
  const Preview preview = page.Render(record, options);
  const std::string findings = Listed(preview.findings);
  EXPECT_EQ(preview.html, each.parts["html"]);
  EXPECT_EQ(findings, each.parts["findings"]);

  if (!HasFailure()) return;
  std::ofstream actual(KVO_BINARY_DIR "/preview.txt", std::ios::app);
  actual << "=== " << each.name << '\n';
  for (const char* part : {"options", "page", "record"})
    if (!each.parts[part].empty()) actual << "--- " << part << '\n' << each.parts[part] << '\n';
  actual << "--- html\n" << preview.html << '\n';
  if (!findings.empty()) actual << "--- findings\n" << findings << '\n';
  actual << '\n';
}

INSTANTIATE_TEST_SUITE_P(Preview, PreviewGolden, testing::ValuesIn(GoldenCases(kFile)),
                         [](const testing::TestParamInfo<GoldenCase>& each) {
                           std::string name;
                           for (const char c : each.param.name) name += c == '-' ? '_' : c;
                           return name;
                         });

}  // namespace
}  // namespace kvo::preview
