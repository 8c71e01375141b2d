#include "document/shop/Address.h"

#include <gtest/gtest.h>

#include "common/values/RuntimeError.h"

namespace kvo::shop {
namespace {

std::string Details(std::string_view connectionString) {
  return ParseAddress(connectionString).details;
}

int ErrorOf(std::string_view connectionString) {
  try {
    ParseAddress(connectionString);
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Text(Language::german).find("geheim"), std::string::npos);
    EXPECT_EQ(std::string(error.what()).find("geheim"), std::string::npos);
    return error.Number();
  }
  return 0;
}

TEST(Address, AFileIsOpenedReadOnlyAndWaitsBrieflyForALock) {
  EXPECT_EQ(Details("sqlite3:///var/my shop.db"), "db=\"/var/my shop.db\" readonly=true timeout=1");
  EXPECT_EQ(ParseAddress("sqlite3:///var/my shop.db").path, "/var/my shop.db");
}

TEST(Address, PostgresqlTakesPairsAndAddresses) {
  EXPECT_EQ(Details("postgresql://host=h dbname=d"), "connect_timeout=10 host=h dbname=d");
  EXPECT_EQ(Details("postgresql://host=h connect_timeout=3"), "host=h connect_timeout=3");
  EXPECT_EQ(Details("postgresql://u:p@h/d"), "postgresql://u:p@h/d?connect_timeout=10");
  EXPECT_EQ(Details("postgres://h/d?a=b"), "postgresql://h/d?a=b&connect_timeout=10");
}

TEST(Address, MysqlTakesPairsAndAddresses) {
  EXPECT_EQ(Details("mysql://host=h db=d"), "host=h db=d charset=utf8mb4 connect_timeout=10");
  EXPECT_EQ(Details("mysql://u:p%40%27s@h:3307/d"),
            "user='u' password=\"p@'s\" host='h' port='3307' dbname='d' charset=utf8mb4 "
            "connect_timeout=10");
  EXPECT_EQ(Details("mysql://h"), "host='h' charset=utf8mb4 connect_timeout=10");
}

TEST(Address, OdbcIsPassedOnUnchanged) {
  EXPECT_EQ(Details("odbc://DSN=shop;PWD={x}"), "DSN=shop;PWD={x}");
}

TEST(Address, AnUnknownKindIsNamedWithoutItsPassword) {
  EXPECT_EQ(ErrorOf("oracle://bob:geheim@h"), 3706);
  EXPECT_EQ(ErrorOf("sqlite://shop.db"), 3706);
  EXPECT_EQ(ErrorOf("Provider=MSDASQL;PWD=geheim"), 3706);
  EXPECT_EQ(ErrorOf(""), 3706);
}

TEST(Address, InvalidAddressesAreRefused) {
  EXPECT_EQ(ErrorOf("mysql://u:geheim%2@h/d"), 5);
  EXPECT_EQ(ErrorOf("mysql://u:%27%22geheim@h/d"), 5);
  EXPECT_EQ(ErrorOf("sqlite3:///a \"b\".db"), 5);
}

}  // namespace
}  // namespace kvo::shop
