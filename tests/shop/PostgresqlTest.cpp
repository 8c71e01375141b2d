#include <gtest/gtest.h>

#include "tests/shop/Members.h"
#include "tests/shop/support/PostgresqlServer.h"

namespace kvo::shop {
namespace {

constexpr const char* kSecret = "eim";  // part of the password, in every spelling

class Postgresql : public testing::Test {
 protected:
  PostgresqlServer server;
};

TEST_F(Postgresql, ReadsEveryKindOfValueThroughBothFormsOfConnectionString) {
  server.Run(
      "CREATE TABLE Products (ProductNo text, Desc1 varchar(80), Desc2 text, n integer,"
      " big bigint, price numeric(10,2), d double precision, day date, flag boolean);"
      "INSERT INTO Products VALUES"
      " ('K-1', 'Kräftig & mild', NULL, 5, 4006381333931, 12.50, 1.5, '2004-04-23', true),"
      " ('K-2', '', 'x', NULL, 7, 12, 1e300, NULL, NULL)");
  for (const std::string& connectionString : {server.Uri(), server.Pairs()}) {
    const auto connection = NewConnection(connectionString);
    ASSERT_EQ(connection->Get("State"), Variant(ado::kStateOpen));
    const auto products = OpenRecordset(connection, "SELECT * FROM Products ORDER BY ProductNo");
    EXPECT_EQ(FieldOf(products, "ProductNo"), Variant("K-1"));
    EXPECT_EQ(FieldOf(products, "Desc1"), Variant("Kräftig & mild"));
    EXPECT_TRUE(FieldOf(products, "Desc2").IsEmpty());
    EXPECT_EQ(FieldOf(products, "n"), Variant(std::int32_t{5}));
    EXPECT_EQ(FieldOf(products, "big"), Variant("4006381333931"));
    EXPECT_EQ(FieldOf(products, "price"), Variant(12.5));
    EXPECT_EQ(FieldOf(products, "d"), Variant(1.5));
    EXPECT_EQ(FieldOf(products, "day"), Variant("2004-04-23"));
    Call(products, "MoveNext");
    EXPECT_EQ(FieldOf(products, "Desc1"), Variant(""));
    EXPECT_TRUE(FieldOf(products, "n").IsEmpty());
    EXPECT_EQ(FieldOf(products, "big"), Variant(std::int32_t{7}));
    EXPECT_EQ(FieldOf(products, "d"), Variant(1e300));
    Call(products, "MoveNext");
    EXPECT_TRUE(IsAtEnd(products));
  }
}

TEST_F(Postgresql, ALargeTableIsFetchedOnDemand) {
  server.FillProducts(1'000'000);
  const auto products = OpenRecordset(NewConnection(server.Uri()));
  EXPECT_EQ(AskedBy(products).records, 0U) << "opening fetches nothing";
  EXPECT_EQ(products->Get("RecordCount"), Variant(std::int32_t{1'000'000}));
  EXPECT_EQ(AskedBy(products).records, 0U) << "neither does counting";
  for (int row = 0; row < 40; ++row, Call(products, "MoveNext"))
    ASSERT_EQ(FieldOf(products, "Desc1"), Variant("Artikel " + std::to_string(row)));
  EXPECT_EQ(AskedBy(products).records, 128U) << "the first screen";
  MoveTo(products, 654'321);
  EXPECT_EQ(FieldOf(products, "ProductNo"), Variant("P-0654321"));
  const Variant bookmark = products->Get("Bookmark");
  MoveTo(products, 999'999);
  EXPECT_EQ(FieldOf(products, "ProductNo"), Variant("P-0999999"));
  EXPECT_TRUE(FieldOf(products, "Desc2").IsEmpty());
  products->Let("Bookmark", bookmark);
  EXPECT_EQ(FieldOf(products, "ProductNo"), Variant("P-0654321"));
  EXPECT_LE(AskedBy(products).records, 384U);
}

TEST_F(Postgresql, NothingIsEverWritten) {
  server.FillProducts(3);
  server.Run(
      "CREATE FUNCTION empty_products() RETURNS text LANGUAGE sql AS"
      " $$ DELETE FROM Products; SELECT 'done' $$");
  const auto connection = NewConnection(server.Uri());
  EXPECT_EQ(FailureOf([&] { OpenRecordset(connection, "DELETE FROM Products"); }).number, 5);
  for (const char* source : {"SELECT empty_products()",
                             "WITH x AS (DELETE FROM Products RETURNING *) SELECT * FROM x"}) {
    const auto failure = FailureOf([&] { IsAtEnd(OpenRecordset(connection, source)); });
    EXPECT_EQ(failure.number, 3000) << source;
    EXPECT_NE(failure.english.find("read-only"), std::string::npos) << failure.english;
  }
  EXPECT_EQ(server.Run("SELECT count(*) FROM Products"), "3\n");
}

TEST_F(Postgresql, AMissingTableIsNamed) {
  const auto failure = FailureOf([&] { OpenRecordset(NewConnection(server.Uri())); });
  EXPECT_EQ(failure.number, 3000);
  EXPECT_NE(failure.german.find("\"products\" does not exist"), std::string::npos)
      << failure.german;
  EXPECT_EQ(failure.german.find(kSecret), std::string::npos) << failure.german;
}

TEST_F(Postgresql, AWrongPasswordIsNotShownInTheError) {
  std::string wrong = server.Uri();
  wrong.replace(wrong.find("geh%27eim"), 3, "nah");
  const auto failure = FailureOf([&] { NewConnection(wrong)->Get("State"); });
  EXPECT_EQ(failure.number, 3709);
  EXPECT_NE(failure.german.find("authentication failed"), std::string::npos) << failure.german;
  EXPECT_EQ(failure.german.find("shop:"), std::string::npos) << failure.german;
  EXPECT_EQ(failure.german.find("nah"), std::string::npos) << failure.german;
  EXPECT_EQ(failure.english.find(kSecret), std::string::npos) << failure.english;
}

TEST_F(Postgresql, AStoppedServerIsAnErrorAndARestartedOneIsUsedAgain) {
  server.FillProducts(1000);
  const auto connection = NewConnection(server.Pairs());
  const auto products = OpenRecordset(connection);
  EXPECT_EQ(FieldOf(products, "ProductNo"), Variant("P-0000000"));

  server.Stop();
  EXPECT_EQ(FieldOf(products, "ProductNo"), Variant("P-0000000")) << "fetched before";
  MoveTo(products, 500);
  const auto failure = FailureOf([&] { FieldOf(products, "ProductNo"); });
  EXPECT_EQ(failure.number, 3709);
  EXPECT_NE(failure.german.find("Es besteht keine Verbindung zur Datenbank"), std::string::npos);
  EXPECT_EQ(failure.german.find(kSecret), std::string::npos) << failure.german;
  EXPECT_EQ(FailureOf([&] { connection->Get("State"); }).number, 3709);

  server.Start();
  EXPECT_EQ(FieldOf(products, "ProductNo"), Variant("P-0000500"));
}

TEST_F(Postgresql, ARestartBetweenTwoScreensGoesUnnoticed) {
  server.FillProducts(1000);
  const auto products = OpenRecordset(NewConnection(server.Uri()));
  EXPECT_EQ(FieldOf(products, "ProductNo"), Variant("P-0000000"));
  server.Stop();
  server.Start();
  MoveTo(products, 500);
  EXPECT_EQ(FieldOf(products, "ProductNo"), Variant("P-0000500"));
}

}  // namespace
}  // namespace kvo::shop
