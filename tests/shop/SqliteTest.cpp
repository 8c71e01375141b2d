#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "document/office/OfficeFile.h"
#include "tests/shop/Members.h"
#include "tests/shop/support/SqliteFile.h"

namespace kvo::shop {
namespace {

class Sqlite : public testing::Test {
 protected:
  Sqlite() {
    file.Run(
        "CREATE TABLE Products (ProductNo TEXT, Desc1 TEXT, Desc2 TEXT);"
        "INSERT INTO Products VALUES ('K-1', 'Espresso', 'Kräftig'), ('K-2', '', NULL),"
        " ('K-3', 'Filter', 'Mild');");
  }

  ObjectRef Connection() { return NewConnection(file.ConnectionString()); }
  ObjectRef Products() { return OpenRecordset(Connection()); }
  std::string Number(const ObjectRef& recordset) { return ToText(FieldOf(recordset, "ProductNo")); }

  SqliteFile file;
};

TEST_F(Sqlite, AConnectionOpensOnFirstUse) {
  const auto connection = Connection();
  EXPECT_EQ(connection->Get("State"), Variant(ado::kStateOpen));
  EXPECT_EQ(connection->Get("connectionstring"), Variant(file.ConnectionString()));
}

TEST_F(Sqlite, ReadsEveryRecordInTheTablesOrder) {
  const auto products = Products();
  std::string seen;
  for (; !IsAtEnd(products); Call(products, "MoveNext"))
    seen += Number(products) + "|" + ToText(FieldOf(products, "Desc1")) + "|" +
            ToText(FieldOf(products, "Desc2")) + "\n";
  EXPECT_EQ(seen, "K-1|Espresso|Kräftig\nK-2||\nK-3|Filter|Mild\n");
}

TEST_F(Sqlite, ANullIsEmptyAndAnEmptyTextIsNot) {
  const auto products = Products();
  Call(products, "MoveNext");
  EXPECT_EQ(FieldOf(products, "Desc1"), Variant(""));
  EXPECT_TRUE(FieldOf(products, "Desc2").IsEmpty());
}

TEST_F(Sqlite, OpensWithAConnectionString) {
  EXPECT_EQ(Number(OpenRecordset(file.ConnectionString())), "K-1");
  EXPECT_EQ(Number(OpenRecordset(Connection()->Get("ConnectionString"))), "K-1");
}

TEST_F(Sqlite, OpensWithTheConnectionStringOfAForeignConnection) {
  class Foreign final : public Object {
   public:
    explicit Foreign(std::string text) : text_(std::move(text)) {}
    Variant Get(std::string_view name) override {
      return name == "ConnectionString" ? Variant(text_) : Object::Get(name);
    }

   private:
    std::string text_;
  };
  const ObjectRef foreign = std::make_shared<Foreign>(file.ConnectionString());
  EXPECT_EQ(Number(OpenRecordset(foreign)), "K-1");
}

TEST_F(Sqlite, KnowsItsSource) { EXPECT_EQ(Products()->Get("Source"), Variant(kProducts)); }

TEST_F(Sqlite, FieldsAreFoundByNameInAnyCase) {
  EXPECT_EQ(FieldOf(Products(), "PRODUCTNO"), Variant("K-1"));
}

TEST_F(Sqlite, AFieldObjectFollowsTheRecordset) {
  const auto products = Products();
  const Variant name = "ProductNo";
  const auto field = ToObject(products->Call("Fields", {&name, 1}));
  MoveTo(products, 2);
  EXPECT_EQ(field->Get("Value"), Variant("K-3"));
}

TEST_F(Sqlite, FieldsAreListedInOrder) {
  const auto products = Products();
  std::string names;
  ForEach(*ToObject(products->Get("Fields")),
          [&](const Variant& field) { names += ToText(ToObject(field)->Get("Name")) + ' '; });
  EXPECT_EQ(names, "ProductNo Desc1 Desc2 ");
}

TEST_F(Sqlite, AnUnknownFieldIsNamed) {
  const auto failure = FailureOf([&] { FieldOf(Products(), "Price"); });
  EXPECT_EQ(failure.number, 3265);
  EXPECT_NE(failure.german.find("\"Price\""), std::string::npos);
}

TEST_F(Sqlite, MovesToAnyRecordAndBeyondTheLast) {
  const auto products = Products();
  MoveTo(products, 2);
  EXPECT_EQ(Number(products), "K-3");
  Call(products, "MoveNext");
  EXPECT_TRUE(IsAtEnd(products));
  EXPECT_EQ(FailureOf([&] { Call(products, "MoveNext"); }).number, 3021);
  EXPECT_EQ(FailureOf([&] { FieldOf(products, "Desc1"); }).number, 3021);
  MoveTo(products, 1000);
  EXPECT_TRUE(IsAtEnd(products));
  MoveTo(products, 0);
  EXPECT_EQ(Number(products), "K-1");
  EXPECT_EQ(FailureOf([&] { MoveTo(products, -1); }).number, 5);
  EXPECT_EQ(FailureOf([&] { Call(products, "Move", {1, 2}); }).number, 5);
}

TEST_F(Sqlite, AnEmptyTableIsAtItsEnd) {
  file.Run("DELETE FROM Products");
  const auto products = Products();
  EXPECT_TRUE(IsAtEnd(products));
  EXPECT_EQ(products->Get("RecordCount"), Variant(std::int32_t{0}));
  MoveTo(products, 0);
  EXPECT_TRUE(IsAtEnd(products));
  EXPECT_EQ(FailureOf([&] { FieldOf(products, "Desc1"); }).number, 3021);
  EXPECT_EQ(FailureOf([&] { products->Get("Bookmark"); }).number, 3021);
}

TEST_F(Sqlite, ABookmarkLeadsBackToItsRecord) {
  const auto products = Products();
  Call(products, "MoveNext");
  const Variant second = products->Get("Bookmark");
  MoveTo(products, 2);
  products->Let("Bookmark", second);
  EXPECT_EQ(Number(products), "K-2");
}

TEST_F(Sqlite, ABookmarkFindsAMovedRecordAndNeverAnother) {
  const auto products = Products();
  MoveTo(products, 2);
  const Variant third = products->Get("Bookmark");
  file.Run("DELETE FROM Products WHERE ProductNo = 'K-1'");
  const auto later = Products();
  later->Let("Bookmark", third);
  EXPECT_EQ(Number(later), "K-3");
  file.Run("UPDATE Products SET Desc1 = 'Anders' WHERE ProductNo = 'K-3'");
  const auto latest = Products();
  EXPECT_EQ(FailureOf([&] { latest->Let("Bookmark", third); }).number, 3021);
}

TEST_F(Sqlite, AnInvalidBookmarkIsRefused) {
  const auto products = Products();
  for (const Variant& bookmark : {Variant("x"), Variant("1"), Variant("1:"), Variant("-1:5"),
                                  Variant("0:5x"), Variant(1), Variant()})
    EXPECT_EQ(FailureOf([&] { products->Let("Bookmark", bookmark); }).number, 5);
}

TEST_F(Sqlite, CountsTheRecordsOfAnySelect) {
  for (const auto& [source, count] : std::vector<std::pair<const char*, int>>{
           {kProducts, 3},
           {"SELECT * FROM Products ORDER BY Desc1 DESC", 3},
           {"SELECT DISTINCT Desc2 FROM Products WHERE Desc2 IS NOT NULL", 2},
           {"SELECT * FROM Products LIMIT 2", 2},
           {"SELECT ProductNo FROM Products UNION ALL SELECT Desc1 FROM Products;", 6},
           {"WITH x AS (SELECT 1 UNION SELECT 2) SELECT * FROM x -- two", 2},
           {"SELECT ProductNo, ProductNo FROM Products", 3}})
    EXPECT_EQ(OpenRecordset(Connection(), source)->Get("RecordCount"), Variant(count)) << source;
}

TEST_F(Sqlite, KeepsTheOrderOfTheStatement) {
  const auto products =
      OpenRecordset(Connection(), "SELECT ProductNo FROM Products ORDER BY ProductNo DESC");
  EXPECT_EQ(Number(products), "K-3");
  MoveTo(products, 2);
  EXPECT_EQ(Number(products), "K-1");
}

TEST_F(Sqlite, ReadsValuesWhateverTheirColumnsDeclare) {
  file.Run(
      "CREATE TABLE Mixed (n INTEGER, r REAL, x, t TEXT, b BLOB, m DECIMAL(10,2));"
      "INSERT INTO Mixed VALUES (5, 1.5, 7, 'a', x'4142', 12.5),"
      " (4006381333931, 1e300, 'seven', 12, NULL, 12),"
      " ('abc', 'no number', 2.5, '', x'', 'zwölf')");
  const auto mixed = OpenRecordset(Connection(), "SELECT * FROM Mixed");
  EXPECT_EQ(FieldOf(mixed, "n"), Variant(std::int32_t{5}));
  EXPECT_EQ(FieldOf(mixed, "r"), Variant(1.5));
  EXPECT_EQ(FieldOf(mixed, "x"), Variant("7"));
  EXPECT_EQ(FieldOf(mixed, "b"), Variant("AB"));
  Call(mixed, "MoveNext");
  EXPECT_EQ(FieldOf(mixed, "n"), Variant("4006381333931")) << "a whole EAN";
  EXPECT_EQ(FieldOf(mixed, "r"), Variant(1e300));
  EXPECT_EQ(FieldOf(mixed, "t"), Variant("12"));
  EXPECT_TRUE(FieldOf(mixed, "b").IsEmpty());
  Call(mixed, "MoveNext");
  EXPECT_EQ(FieldOf(mixed, "n"), Variant("abc"));
  EXPECT_EQ(FieldOf(mixed, "r"), Variant("no number"));
  EXPECT_EQ(FieldOf(mixed, "m"), Variant("zwölf"));
}

TEST_F(Sqlite, ReadsLongTextsCompletely) {
  file.Run("UPDATE Products SET Desc2 = printf('%.*c', 3000000, 'x') WHERE ProductNo = 'K-1'");
  EXPECT_EQ(ToText(FieldOf(Products(), "Desc2")).size(), 3'000'000U);
}

TEST_F(Sqlite, NothingIsOpenBeforeOpen) {
  const auto recordset = NewRecordset();
  EXPECT_EQ(recordset->Get("Source"), Variant(""));
  for (const char* member : {"EOF", "RecordCount", "Bookmark"})
    EXPECT_EQ(FailureOf([&] { recordset->Get(member); }).number, 3704) << member;
  EXPECT_EQ(FailureOf([&] { Call(recordset, "MoveNext"); }).number, 3704);
  EXPECT_EQ(FailureOf([&] { MoveTo(recordset, 0); }).number, 3704);
  EXPECT_EQ(FailureOf([&] { FieldOf(recordset, "ProductNo"); }).number, 3704);
}

TEST_F(Sqlite, OpeningAnOpenRecordsetFails) {
  const auto products = Products();
  EXPECT_EQ(FailureOf([&] { Call(products, "Open", {kProducts, Connection()}); }).number, 3705);
}

TEST_F(Sqlite, WriteLocksAreRefused) {
  for (const std::int32_t lockType : {2, 3, 4})
    EXPECT_EQ(FailureOf([&] {
                Call(NewRecordset(), "Open", {kProducts, Connection(), ado::kOpenKeyset, lockType});
              }).number,
              5);
}

TEST_F(Sqlite, OpenWithoutAConnectionIsError91) {
  EXPECT_EQ(FailureOf([&] { Call(NewRecordset(), "Open", {kProducts, Variant()}); }).number, 91);
}

TEST_F(Sqlite, UnknownMembersAreError438) {
  EXPECT_EQ(FailureOf([&] { Products()->Get("Nobody"); }).number, 438);
  EXPECT_EQ(FailureOf([&] { Call(Products(), "Update"); }).number, 438);
  EXPECT_EQ(FailureOf([&] { Products()->Let("Source", ""); }).number, 438);
  EXPECT_EQ(FailureOf([&] { Call(Connection(), "Execute", {"DROP TABLE Products"}); }).number, 438);
}

// --- Failures ----------------------------------------------------------------------------------

TEST_F(Sqlite, AMissingFileIsNamedInTheErrorAndNotCreated) {
  const auto missing = file.Path().parent_path() / "missing.db";
  const auto connection = NewConnection("sqlite3://" + missing.string());
  const auto failure = FailureOf([&] { connection->Get("State"); });
  EXPECT_EQ(failure.number, 3002);
  EXPECT_NE(failure.german.find(missing.string()), std::string::npos);
  EXPECT_NE(failure.german.find("Die Datenbankdatei lässt sich nicht öffnen"), std::string::npos);
  EXPECT_NE(failure.english.find("The database file cannot be opened"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST_F(Sqlite, AFileThatAppearsLaterIsOpenedThen) {
  const auto later = file.Path().parent_path() / "later.db";
  const auto connection = NewConnection("sqlite3://" + later.string());
  EXPECT_EQ(FailureOf([&] { connection->Get("State"); }).number, 3002);
  file.Close();
  std::filesystem::copy_file(file.Path(), later);
  EXPECT_EQ(connection->Get("State"), Variant(ado::kStateOpen));
  EXPECT_EQ(Number(OpenRecordset(connection)), "K-1");
}

TEST_F(Sqlite, AnotherKindOfFileIsAnError) {
  const auto text = file.Path().parent_path() / "text.db";
  std::ofstream(text) << std::string(5000, 'x');
  EXPECT_EQ(FailureOf([&] { OpenRecordset("sqlite3://" + text.string()); }).number, 3002);
  EXPECT_EQ(FailureOf([&] { OpenRecordset("sqlite3://" + text.parent_path().string()); }).number,
            3002);
  EXPECT_EQ(FailureOf([&] { OpenRecordset("sqlite3://"); }).number, 3002);
}

TEST_F(Sqlite, AMissingTableIsNamed) {
  file.Run("DROP TABLE Products");
  const auto failure = FailureOf([&] { Products(); });
  EXPECT_EQ(failure.number, 3000);
  EXPECT_NE(failure.german.find("no such table: Products"), std::string::npos) << failure.german;
  EXPECT_NE(failure.german.find("prüfen Sie, ob es die Tabelle"), std::string::npos);
}

TEST_F(Sqlite, AMissingFieldIsNamed) {
  const auto failure =
      FailureOf([&] { OpenRecordset(Connection(), "SELECT Price FROM Products"); });
  EXPECT_EQ(failure.number, 3000);
  EXPECT_NE(failure.english.find("Price"), std::string::npos) << failure.english;
}

TEST_F(Sqlite, AFailedOpenLeavesTheRecordsetClosedAndUsable) {
  const auto recordset = NewRecordset();
  EXPECT_EQ(FailureOf([&] {
              Call(recordset, "Open", {"SELECT x FROM y", Connection()});
            }).number,
            3000);
  EXPECT_EQ(FailureOf([&] { recordset->Get("EOF"); }).number, 3704);
  Call(recordset, "Open", {kProducts, Connection()});
  EXPECT_EQ(Number(recordset), "K-1");
}

TEST_F(Sqlite, ALockedDatabaseIsReportedAndReadOnceItIsFree) {
  const auto connection = Connection();
  EXPECT_EQ(connection->Get("State"), Variant(ado::kStateOpen));
  file.Run("BEGIN EXCLUSIVE");
  const auto failure = FailureOf([&] { Number(OpenRecordset(connection)); });
  EXPECT_EQ(failure.number, 3006);
  EXPECT_NE(failure.german.find("gesperrt"), std::string::npos);
  EXPECT_EQ(FailureOf([&] { Connection()->Get("State"); }).number, 3006);
  file.Run("COMMIT");
  EXPECT_EQ(Number(OpenRecordset(connection)), "K-1");
}

TEST_F(Sqlite, ReadingHoldsNoLockBetweenTheCalls) {
  const auto products = Products();
  EXPECT_EQ(Number(products), "K-1");
  file.Run(
      "PRAGMA busy_timeout=0; BEGIN EXCLUSIVE; INSERT INTO Products VALUES ('K-4','',''); COMMIT");
  EXPECT_EQ(Number(products), "K-1");
}

TEST_F(Sqlite, AFileThatDisappearsIsAnErrorOnItsNextUse) {
  const auto connection = Connection();
  const auto products = OpenRecordset(connection);
  EXPECT_EQ(Number(products), "K-1");
  file.Close();
  std::filesystem::rename(file.Path(), file.Path().string() + ".away");
  EXPECT_EQ(Number(products), "K-1") << "fetched before";
  EXPECT_EQ(FailureOf([&] {
              MoveTo(products, 500);
              IsAtEnd(products);
            }).number,
            3002);
  EXPECT_EQ(FailureOf([&] { connection->Get("State"); }).number, 3002);
  EXPECT_FALSE(std::filesystem::exists(file.Path()));
  std::filesystem::rename(file.Path().string() + ".away", file.Path());
  EXPECT_TRUE(IsAtEnd(products));
  EXPECT_EQ(connection->Get("State"), Variant(ado::kStateOpen));
}

TEST_F(Sqlite, AFileDamagedWhileOpenIsAnError) {
  constexpr std::size_t kPageOfTheTable = 4096;
  for (const std::size_t from : {kPageOfTheTable, std::size_t{0}}) {
    const auto connection = Connection();
    EXPECT_EQ(connection->Get("State"), Variant(ado::kStateOpen));
    file.Close();
    const std::size_t left = std::filesystem::file_size(file.Path()) - from;
    std::fstream stream(file.Path(), std::ios::in | std::ios::out | std::ios::binary);
    stream.seekp(static_cast<std::streamoff>(from)) << std::string(left, 'x') << std::flush;
    EXPECT_EQ(FailureOf([&] { Number(OpenRecordset(connection)); }).number, 3002) << from;
  }
}

TEST_F(Sqlite, AReplacedFileIsReadAgain) {
  const auto connection = Connection();
  EXPECT_EQ(Number(OpenRecordset(connection)), "K-1");
  SqliteFile other;
  other.FillProducts(5);
  other.Close();
  file.Close();
  std::filesystem::rename(other.Path(), file.Path());
  EXPECT_EQ(Number(OpenRecordset(connection)), "P-0000000");
}

TEST_F(Sqlite, NothingIsEverWritten) {
  file.Close();
  const auto read = [&] {
    std::ifstream stream(file.Path(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  };
  const std::string before = read();
  const auto connection = Connection();
  const auto products = OpenRecordset(connection);
  while (!IsAtEnd(products)) Call(products, "MoveNext");
  for (const char* source : {"DELETE FROM Products", "SELECT 1; DELETE FROM Products",
                             "WITH x AS (SELECT 1) DELETE FROM Products"})
    EXPECT_EQ(FailureOf([&] { OpenRecordset(connection, source); }).number, 5) << source;
  EXPECT_EQ(read(), before);
}

TEST_F(Sqlite, APathMayContainBlanksUmlautsAndEqualSigns) {
  for (const char* name :
       {"mein shop.db", "Müllers=Shop.db", "a b  c=d e.db", "it's.db", "x\"y.db"}) {
    SqliteFile other(name);
    other.FillProducts(1);
    EXPECT_EQ(Number(OpenRecordset(other.ConnectionString())), "P-0000000") << name;
  }
}

TEST_F(Sqlite, TheOfficeFileFindsTheDatabaseNextToIt) {
  const auto path = file.Path().parent_path() / "office.json";
  std::ofstream(path) << R"({"shopDatabase": "sqlite3://shop.db"})";
  const auto office = office::LoadOffice(path.string(), NewConnection);
  const auto connection = ToObject(office->Get("ShopDBConnection"));
  EXPECT_EQ(connection->Get("State"), Variant(ado::kStateOpen));
  EXPECT_EQ(Number(OpenRecordset(connection)), "K-1");
}

// --- A large table -----------------------------------------------------------------------------

TEST(SqliteLargeTable, RecordsAreFetchedOnDemand) {
  SqliteFile file;
  file.FillProducts(1'000'000);
  const auto products = OpenRecordset(NewConnection(file.ConnectionString()));
  EXPECT_EQ(AskedBy(products).records, 0U) << "opening fetches nothing";

  EXPECT_EQ(products->Get("RecordCount"), Variant(std::int32_t{1'000'000}));
  EXPECT_EQ(AskedBy(products).records, 0U) << "neither does counting";

  for (int row = 0; row < 40; ++row, Call(products, "MoveNext"))
    ASSERT_EQ(FieldOf(products, "Desc1"), Variant("Artikel " + std::to_string(row)));
  EXPECT_EQ(AskedBy(products).records, 128U) << "the first screen";

  MoveTo(products, 654'321);
  EXPECT_EQ(FieldOf(products, "ProductNo"), Variant("P-0654321"));
  EXPECT_EQ(AskedBy(products).records, 256U) << "a jump fetches one more page";

  const Variant bookmark = products->Get("Bookmark");
  MoveTo(products, 999'999);
  EXPECT_EQ(FieldOf(products, "ProductNo"), Variant("P-0999999"));
  EXPECT_TRUE(FieldOf(products, "Desc2").IsEmpty());
  products->Let("Bookmark", bookmark);
  EXPECT_EQ(FieldOf(products, "ProductNo"), Variant("P-0654321"));
  EXPECT_LE(AskedBy(products).records, 384U);
}

TEST(SqliteLargeTable, ReadingAllOfItFetchesEachRecordOnce) {
  SqliteFile file;
  file.FillProducts(100'000);
  const auto products = OpenRecordset(NewConnection(file.ConnectionString()));
  int count = 0;
  for (; !IsAtEnd(products); Call(products, "MoveNext")) ++count;
  EXPECT_EQ(count, 100'000);
  EXPECT_EQ(AskedBy(products).records, 100'000U);
  EXPECT_LT(AskedBy(products).statements, 70U);
}

}  // namespace
}  // namespace kvo::shop
