#include "document/preview/OfficeShop.h"

#include <gtest/gtest.h>

#include "document/office/Office.h"
#include "document/shop/Shop.h"
#include "host/headless/HeadlessPlatform.h"
#include "tests/shop/support/SqliteFile.h"

namespace kvo::preview {
namespace {

class OfficeShopTest : public testing::Test {
 protected:
  OfficeShopTest() { platform_.recordsets = shop::NewRecordset; }

  static ObjectRef OfficeWith(const std::optional<std::string>& database) {
    return std::make_shared<office::Office>(office::Office::Description{{}, {}, database},
                                            shop::NewConnection);
  }

  shop::SqliteFile file;

 private:
  HeadlessPlatform platform_;
  PlatformScope scope_{platform_};
};

TEST_F(OfficeShopTest, FindsDescriptions) {
  file.FillProducts(200);
  OfficeShop shop(OfficeWith(file.ConnectionString()));
  std::optional<Message> failure;
  const auto found = shop.Find({"P-0000007", "p-0000150 ", "P-0000250", "P-0000009"}, failure);
  EXPECT_FALSE(failure.has_value());
  ASSERT_EQ(found.size(), 4U);
  EXPECT_EQ(found[0].value().description, "Artikel 7");
  EXPECT_EQ(found[0]->description2, "Beschreibung von Artikel 7");
  EXPECT_FALSE(found[1].has_value());  // the database tells "p" from "P"
  EXPECT_FALSE(found[2].has_value());
  EXPECT_EQ(found[3].value().number, "P-0000009");
  EXPECT_EQ(found[3]->description2, "");  // null
}

TEST_F(OfficeShopTest, AsksForANumberOnce) {
  file.FillProducts(10);
  OfficeShop shop(OfficeWith(file.ConnectionString()));
  std::optional<Message> failure;
  shop.Find({"P-0000007"}, failure);
  file.Run("UPDATE Products SET Desc1 = 'new'");
  EXPECT_EQ(shop.Find({"P-0000007"}, failure)[0]->description, "Artikel 7");
  EXPECT_EQ(shop.Find({"P-0000008"}, failure)[0]->description, "new");
}

TEST_F(OfficeShopTest, SaysEachTimeWhyTheShopCannotBeAsked) {
  OfficeShop shop(OfficeWith("sqlite3:///missing/shop.db"));
  for (int i = 0; i < 2; ++i) {
    std::optional<Message> failure;
    EXPECT_FALSE(shop.Find({"P-0000007"}, failure)[0].has_value());
    ASSERT_TRUE(failure.has_value());
    EXPECT_NE(failure->english.find("shop.db"), std::string::npos) << failure->english;
  }
}

TEST_F(OfficeShopTest, SaysThatThereIsNoDatabase) {
  for (const ObjectRef& office : {OfficeWith(std::nullopt), ObjectRef()}) {
    OfficeShop shop(office);
    std::optional<Message> failure;
    EXPECT_FALSE(shop.Find({"P-0000007"}, failure)[0].has_value());
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->english, "Products cannot be looked up without the shop's database.");
  }
}

TEST_F(OfficeShopTest, DoesNotCallAnOddNumberMissing) {
  file.FillProducts(10);
  OfficeShop shop(OfficeWith(file.ConnectionString()));
  std::optional<Message> failure;
  const auto found = shop.Find({"P-0000007", "x' OR 'a'='a"}, failure);
  EXPECT_TRUE(found[0].has_value());
  EXPECT_FALSE(found[1].has_value());
  EXPECT_TRUE(failure.has_value());
}

TEST_F(OfficeShopTest, FindsNothingForNoNumbers) {
  OfficeShop shop(OfficeWith("sqlite3:///missing/shop.db"));
  std::optional<Message> failure;
  EXPECT_TRUE(shop.Find({}, failure).empty());
  EXPECT_FALSE(failure.has_value());
}

}  // namespace
}  // namespace kvo::preview
