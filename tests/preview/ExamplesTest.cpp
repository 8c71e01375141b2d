// The records beside the example pages fit the office and the pages.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "common/values/Ascii.h"
#include "document/check/Fields.h"
#include "document/office/OfficeFile.h"
#include "document/page/File.h"
#include "document/preview/OfficeFields.h"
#include "document/preview/Records.h"
#include "document/preview/Template.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo::preview {
namespace {

namespace fs = std::filesystem;

class ExampleRecords : public testing::TestWithParam<const char*> {
 protected:
  const fs::path folder = fs::path(KVO_SOURCE_DIR "/examples") / GetParam();
  const RecordsFile file = LoadRecords((folder / kRecordsFile).string());
  const std::vector<OfficeField> fields =
      FieldsOf(office::LoadOffice((folder / "office.json").string()));
};

TEST_P(ExampleRecords, HaveOneNameEach) {
  std::set<std::string> names;
  for (const Record& record : file.records) names.insert(record.name);
  EXPECT_EQ(file.records.size(), 3U);
  EXPECT_EQ(names.size(), 3U);
  EXPECT_FALSE(names.contains(""));
}

TEST_P(ExampleRecords, HaveTheFieldsOfTheOfficeByType) {
  ASSERT_FALSE(fields.empty());
  for (const Record& record : file.records) {
    std::size_t values = 0;
    for (const std::string_view group : {kCustomer, kOrder}) {
      const auto found = std::ranges::find(
          record.groups, group, [](const auto& each) { return std::string_view(each.first); });
      ASSERT_NE(found, record.groups.end());
      values += found->second.All().size();
    }
    EXPECT_EQ(values, fields.size()) << record.name;
    for (const OfficeField& field : fields) {
      const Variant* value = record.Find(field.group, field.sqlName);
      ASSERT_NE(value, nullptr) << record.name << ' ' << field.sqlName;
      const bool isNumber = value->If<std::int32_t>() != nullptr || value->If<double>() != nullptr;
      EXPECT_EQ(isNumber, field.dataType == kNumberField) << field.sqlName;
      EXPECT_EQ(value->If<bool>() != nullptr, field.dataType == kFlagField) << field.sqlName;
    }
  }
}

TEST_P(ExampleRecords, LetThePagesMissNothing) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const ObjectRef office = office::LoadOffice((folder / "office.json").string());
  std::size_t pages = 0;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() != ".html") continue;
    ++pages;
    const Template page(page::Page(page::ReadFile(entry.path().string())), office);
    for (const Record& record : file.records)
      for (const Finding& finding : page.Render(record).findings)
        EXPECT_EQ(finding.kind, Finding::Kind::outside)
            << entry.path() << ' ' << record.name << ": " << finding.message.german;
  }
  EXPECT_GT(pages, 0U);
}

TEST_P(ExampleRecords, AreOfThreeKinds) {
  ASSERT_EQ(file.records.size(), 3U);
  const auto text = [&](std::size_t record, std::string_view name) {
    return ToText(*file.records[record].Find(kCustomer, name));
  };
  EXPECT_GT(file.records[0].positions.value().size(), 1U);
  EXPECT_NE(text(0, "LastName"), "");
  EXPECT_EQ(text(1, "LastName"), "");
  EXPECT_TRUE(file.records[1].positions.value().empty());
  for (const char* part : {"\"", "&", "<", "ö", "'"})
    EXPECT_NE(text(2, "LastName").find(part), std::string::npos) << part;
  EXPECT_EQ(text(2, "FirstName"), "");
  EXPECT_GT(ToText(*file.records[2].positions.value().at(0).Find("description")).size(), 200U);
}

INSTANTIATE_TEST_SUITE_P(Folders, ExampleRecords, testing::Values("newsletter", "templates"));

}  // namespace
}  // namespace kvo::preview
