#include "document/shop/Statement.h"

#include <gtest/gtest.h>

#include "common/values/RuntimeError.h"

namespace kvo::shop {
namespace {

std::string LimitPage(std::string_view text) { return Statement(text).Page(Paging::limit, 20, 10); }

TEST(Statement, APageIsRequestedAtItsEnd) {
  EXPECT_EQ(LimitPage("SELECT a FROM t"), "SELECT a FROM t\nLIMIT 10 OFFSET 20");
  EXPECT_EQ(LimitPage("SELECT a FROM t ORDER BY a"),
            "SELECT a FROM t ORDER BY a\nLIMIT 10 OFFSET 20");
  EXPECT_EQ(LimitPage("WITH x AS (SELECT 1 LIMIT 1) SELECT * FROM x"),
            "WITH x AS (SELECT 1 LIMIT 1) SELECT * FROM x\nLIMIT 10 OFFSET 20");
}

TEST(Statement, AStatementWithALimitBecomesASubquery) {
  EXPECT_EQ(LimitPage("SELECT a FROM t limit 5"),
            "SELECT * FROM (\nSELECT a FROM t limit 5\n) kvo_source\nLIMIT 10 OFFSET 20");
}

TEST(Statement, IgnoresWordsInTextsNamesBracketsAndComments) {
  for (const char* text :
       {"SELECT ' limit ' FROM t", "SELECT \"limit\" FROM t", "SELECT `limit` FROM t",
        "SELECT [limit] FROM t", "SELECT (SELECT 1 LIMIT 1) FROM t", "SELECT /* limit */ 1 FROM t",
        "SELECT -- limit 5\n 1 FROM t", "SELECT t.limit FROM t", "SELECT 'it''s limit' FROM t",
        "SELECT $x$ limit $x$ FROM t"})
    EXPECT_EQ(LimitPage(text), std::string(text) + "\nLIMIT 10 OFFSET 20");
}

TEST(Statement, DropsASemicolonAndACommentAtTheEnd) {
  EXPECT_EQ(Statement("  SELECT 1 ; -- done").Text(), "  SELECT 1");
  EXPECT_EQ(Statement("SELECT 1 /* ; */ ;;\n").Text(), "SELECT 1");
  EXPECT_EQ(Statement("SELECT ';'").Text(), "SELECT ';'");
}

TEST(Statement, UsesThePagingOfOtherSystems) {
  EXPECT_EQ(Statement("SELECT a FROM t").Page(Paging::offsetFetch, 0, 7),
            "SELECT a FROM t\nOFFSET 0 ROWS FETCH NEXT 7 ROWS ONLY");
  EXPECT_EQ(Statement("SELECT a FROM t").Page(Paging::orderOffsetFetch, 0, 7),
            "SELECT a FROM t\nORDER BY (SELECT NULL)\nOFFSET 0 ROWS FETCH NEXT 7 ROWS ONLY");
  EXPECT_EQ(Statement("SELECT a FROM t ORDER BY a").Page(Paging::orderOffsetFetch, 0, 7),
            "SELECT a FROM t ORDER BY a\nOFFSET 0 ROWS FETCH NEXT 7 ROWS ONLY");
  EXPECT_EQ(Statement("SELECT a FROM t").Page(Paging::none, 9, 7), "SELECT a FROM t");
}

TEST(Statement, CountsItsRecords) {
  EXPECT_EQ(Statement("SELECT a FROM t;").Count(),
            "SELECT COUNT(*) FROM (\nSELECT a FROM t\n) kvo_source");
}

TEST(Statement, RefusesWhatDoesNotOnlyRead) {
  for (const char* text :
       {"", "  ", "-- nothing", "DELETE FROM t", "Products", "SELECT 1; DELETE FROM t",
        "SELECT 1; SELECT 2", "WITH x AS (SELECT 1) DELETE FROM t", "SELECT a INTO b FROM t",
        "SELECT a FROM t FOR UPDATE", "(SELECT 1", "SELECT 1)", "SELECT 'open", "SELECT \"open",
        "SELECT 1 /* open", "SELECT 1) x; DROP TABLE t; --", "PRAGMA journal_mode=delete"}) {
    try {
      const Statement statement(text);
      FAIL() << "accepted: " << text;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), 5) << text;
    }
  }
}

}  // namespace
}  // namespace kvo::shop
