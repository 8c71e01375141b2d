// The product picker with real databases.
#include <gtest/gtest.h>

#include <filesystem>

#include "controls/DTCProductList.h"
#include "document/office/Office.h"
#include "host/script/FormState.h"
#include "host/script/HeadlessUser.h"
#include "pages/propProdListPicker.h"
#include "tests/shop/Members.h"
#include "tests/shop/support/PostgresqlServer.h"
#include "tests/shop/support/SqliteFile.h"

namespace kvo::shop {
namespace {

using Texts = std::vector<std::string>;

class ShopPicker : public testing::Test {
 protected:
  ShopPicker() {
    platform.recordsets = [] { return NewRecordset(); };
  }

  // Shows the page for a product list whose office has this shop.
  void Open(const std::string& connectionString, const char* products) {
    office::Office::Description description;
    description.shopDatabase = connectionString;
    list->Let("Office", ObjectRef(std::make_shared<office::Office>(description, NewConnection)));
    list->Let("SelectedProducts", products);
    page.Select({list});
  }

  Texts Picked() const {
    Texts captions;
    for (const auto& item : page.suiPickedProducts.Items()) captions.push_back(item->Caption());
    return captions;
  }

  // Works as an author does with a shop of 100,000 products.
  void PicksProductsFromAllOverTheTable(const std::string& connectionString) {
    Open(connectionString, "P-0000007");
    EXPECT_EQ(page.gdProducts.RowCount(), 100'000U);
    EXPECT_EQ(page.gdProducts.Cell(0, 1), "Artikel 0");
    EXPECT_EQ(page.gdProducts.Cell(9, 2), "<keine Angabe>");
    user.DoubleClick(page.gdProducts, 99'999);
    user.DoubleClick(page.gdProducts, 3);
    user.SelectRows(page.gdProducts, {50'000, 3, 7});
    user.Click(page.cmdAddProduct);
    EXPECT_EQ(Picked(), (Texts{"P-0000007", "P-0099999 (Artikel 99999)", "P-0000003 (Artikel 3)",
                               "P-0050000 (Artikel 50000)"}));
    EXPECT_LE(dynamic_cast<Recordset&>(page.gdProducts.Recordset()).Asked().records, 3 * 128U);
    page.Apply();
    EXPECT_EQ(list->Get("SelectedProducts"), Variant("P-0000007,P-0099999,P-0000003,P-0050000"));
  }

  // Returns the text of the page's error in both languages.
  std::string ExpectErrorAndUnchangedControl(const std::string& connectionString, int number) {
    const Failure failure = FailureOf([&] { Open(connectionString, "1,2"); });
    EXPECT_EQ(failure.number, number) << failure.english;
    EXPECT_FALSE(page.Changed());
    EXPECT_EQ(list->Get("SelectedProducts"), Variant("1,2"));
    return failure.english + '\n' + failure.german;
  }

  // Everything visible of the page and the control.
  std::string Shown() {
    std::string shown;
    for (const ControlState& state : StateOf(page)) shown += Text(state);
    MemoryBag bag;
    list->WriteProperties(bag);
    for (const auto& [key, value] : bag.Entries()) shown += key + '=' + value + '\n';
    return shown + list->GetRuntimeText() + '\n';
  }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  std::shared_ptr<DTCProductList> list = std::make_shared<DTCProductList>();
  propProdListPicker page;
  HeadlessUser user{platform, page};

 private:
  static std::string Text(const ControlState& state) {
    std::string text = state.kind + ' ' + state.name + '\n';
    for (const auto& [name, value] : state.values) {
      if (const auto* single = std::get_if<std::string>(&value)) text += *single + '\n';
      if (const auto* several = std::get_if<Texts>(&value))
        for (const std::string& each : *several) text += each + '\n';
    }
    for (const ControlState& part : state.parts) text += Text(part);
    return text;
  }
};

TEST_F(ShopPicker, PicksFromALargeFile) {
  SqliteFile file;
  file.FillProducts(100'000);
  PicksProductsFromAllOverTheTable(file.ConnectionString());
}

TEST_F(ShopPicker, PicksFromALargePostgresqlServer) {
  const PostgresqlServer server;
  server.FillProducts(100'000);
  PicksProductsFromAllOverTheTable(server.Uri());
}

TEST_F(ShopPicker, AMissingFileIsThePagesErrorAndKeepsTheControl) {
  SqliteFile file;
  ExpectErrorAndUnchangedControl(file.ConnectionString(), 3002);
}

TEST_F(ShopPicker, ALockedDatabaseIsThePagesErrorAndKeepsTheControl) {
  SqliteFile file;
  file.FillProducts(10);
  file.Run("BEGIN EXCLUSIVE");
  ExpectErrorAndUnchangedControl(file.ConnectionString(), 3006);
}

TEST_F(ShopPicker, AMissingTableIsThePagesErrorAndKeepsTheControl) {
  SqliteFile file;
  file.Run("CREATE TABLE Other (a)");
  ExpectErrorAndUnchangedControl(file.ConnectionString(), 3000);
}

TEST_F(ShopPicker, ADatabaseThatDisappearsSkipsTheRowAndKeepsThePickedProducts) {
  SqliteFile file;
  file.FillProducts(10'000);
  Open(file.ConnectionString(), "P-0000007");
  user.DoubleClick(page.gdProducts, 1);
  file.Close();
  std::filesystem::remove(file.Path());
  user.DoubleClick(page.gdProducts, 9'000);
  EXPECT_EQ(Picked(), (Texts{"P-0000007", "P-0000001 (Artikel 1)"}));
  page.Apply();
  EXPECT_EQ(list->Get("SelectedProducts"), Variant("P-0000007,P-0000001"));
  ExpectErrorAndUnchangedControl(file.ConnectionString(), 3002);
}

// Scrolls on, row by row, until a row cannot be read. Returns the failure, and the row's number in
// `row`.
Failure ScrollUntilItFails(const Grid& grid, std::size_t& row) {
  Failure failure;
  for (; row < grid.RowCount(); ++row) {
    failure = FailureOf([&] { grid.Cell(row, 0); });
    if (failure.number != 0) break;
  }
  return failure;
}

TEST_F(ShopPicker, AServerThatStopsDuringScrollingIsAClearErrorAndChangesNothing) {
  constexpr std::size_t kScrolled = 3'000;
  PostgresqlServer server;
  server.FillProducts(10'000);
  Open(server.Uri(), "P-0000007");
  EXPECT_EQ(page.gdProducts.RowCount(), 10'000U);
  std::size_t row = 0;
  for (; row < kScrolled; ++row)
    ASSERT_EQ(page.gdProducts.Cell(row, 1), "Artikel " + std::to_string(row));

  server.Stop();
  const Failure failure = ScrollUntilItFails(page.gdProducts, row);
  EXPECT_EQ(failure.number, 3709);
  EXPECT_EQ(failure.english.find("There is no connection to the database"), 0U) << failure.english;
  EXPECT_EQ(failure.german.find("Es besteht keine Verbindung zur Datenbank"), 0U) << failure.german;
  EXPECT_EQ((failure.english + failure.german + Shown()).find("eim"), std::string::npos)
      << "shows the password: " << failure.english;
  EXPECT_EQ(page.gdProducts.Cell(kScrolled - 1, 0), "P-0002999")
      << "rows seen before stay readable";
  EXPECT_FALSE(page.Changed());
  user.DoubleClick(page.gdProducts, row);
  EXPECT_EQ(Picked(), Texts{"P-0000007"});
  page.Apply();
  EXPECT_EQ(list->Get("SelectedProducts"), Variant("P-0000007"));

  server.Start();
  EXPECT_EQ(page.gdProducts.Cell(row, 1), "Artikel " + std::to_string(row));
  user.DoubleClick(page.gdProducts, row);
  EXPECT_EQ(Picked().size(), 2U);
}

TEST_F(ShopPicker, AConnectionCutDuringFetchingIsAClearErrorAndChangesNothing) {
  constexpr std::size_t kCutAt = 5'000;
  const PostgresqlServer server;
  // Reading that record makes the server end the connection, as long as Cut has a row.
  server.Run(
      "CREATE TABLE Cut (a integer);"
      "CREATE VIEW Products AS SELECT 'P-' || lpad(i::text, 7, '0') AS ProductNo,"
      " 'Artikel ' || i AS Desc1,"
      " CASE WHEN i = " +
      std::to_string(kCutAt) +
      " AND EXISTS (SELECT FROM Cut)"
      " THEN pg_terminate_backend(pg_backend_pid())::text ELSE 'x' END AS Desc2"
      " FROM generate_series(0, 9999) AS i;");
  Open(server.Pairs(), "P-0000007");
  EXPECT_EQ(page.gdProducts.RowCount(), 10'000U);
  EXPECT_EQ(page.gdProducts.Cell(0, 1), "Artikel 0");
  server.Run("INSERT INTO Cut VALUES (1)");
  std::size_t row = 0;
  const Failure failure = ScrollUntilItFails(page.gdProducts, row);
  EXPECT_GT(row, 1'000U);
  EXPECT_LE(row, kCutAt);
  EXPECT_EQ(failure.number, 3709) << failure.english;
  EXPECT_EQ(failure.english.find("There is no connection to the database"), 0U) << failure.english;
  EXPECT_NE(failure.english.find("server closed"), std::string::npos) << failure.english;
  EXPECT_EQ((failure.english + failure.german + Shown()).find("eim"), std::string::npos)
      << "shows the password: " << failure.english;
  EXPECT_FALSE(page.Changed());
  EXPECT_EQ(list->Get("SelectedProducts"), Variant("P-0000007"));

  server.Run("DELETE FROM Cut");
  EXPECT_EQ(page.gdProducts.Cell(row, 1), "Artikel " + std::to_string(row));
  // A connection cut between two screens goes unnoticed.
  server.Run(
      "SELECT pg_terminate_backend(pid) FROM pg_stat_activity"
      " WHERE datname = 'postgres' AND pid <> pg_backend_pid()");
  EXPECT_EQ(page.gdProducts.Cell(9'999, 1), "Artikel 9999");
}

// The grid still shows a row whose record has left the cache, so picking it queries the current
// table.
TEST_F(ShopPicker, AProductIsPickedAsShownOrNotAtAll) {
  constexpr std::size_t kProducts = 6'000;
  SqliteFile file;
  file.FillProducts(kProducts);
  Open(file.ConnectionString(), "");
  for (std::size_t row = 0; row < kProducts; ++row) page.gdProducts.Cell(row, 0);
  file.Run("DELETE FROM Products WHERE ProductNo < 'P-0000005' OR ProductNo = 'P-0000020'");
  user.DoubleClick(page.gdProducts, 5);
  EXPECT_EQ(Picked(), Texts{"P-0000005 (Artikel 5)"}) << "moved to the front";
  EXPECT_EQ(page.gdProducts.Cell(20, 0), "P-0000020");
  user.DoubleClick(page.gdProducts, 20);
  EXPECT_EQ(Picked(), Texts{"P-0000005 (Artikel 5)"}) << "deleted, and not confused with another";
}

TEST_F(ShopPicker, NeitherAnErrorNorThePageNorTheControlShowsThePassword) {
  PostgresqlServer server;
  server.FillProducts(10);
  // Wrong password, wrong user, no server.
  const std::pair<std::string_view, std::string_view> mistakes[] = {
      {"geh", "secret"}, {"shop", "nobody"}, {"kvo-pg", "kvo-none"}};
  // Parts of the passwords below, in every spelling.
  const auto expectNoPassword = [](const std::string& shown) {
    for (const char* piece : {"eim", "secret"})
      EXPECT_EQ(shown.find(piece), std::string::npos) << shown;
  };
  for (const std::string& good : {server.Uri(), server.Pairs()}) {
    Open(good, "1,2");
    EXPECT_EQ(page.gdProducts.RowCount(), 10U);
    EXPECT_NE(Shown().find("Artikel 3"), std::string::npos);
    expectNoPassword(Shown());

    for (const auto& [right, wrong] : mistakes) {
      std::string bad = good;
      bad.replace(bad.find(right), right.size(), wrong);
      const std::string error = ExpectErrorAndUnchangedControl(bad, 3709);
      EXPECT_NE(error.find("postgresql://"), std::string::npos) << error;
      expectNoPassword(error);
      expectNoPassword(Shown());
    }
  }
  server.Run("DROP TABLE Products");
  const std::string rejected = ExpectErrorAndUnchangedControl(server.Pairs(), 3000);
  EXPECT_NE(rejected.find("products"), std::string::npos) << rejected;
  expectNoPassword(rejected);
  server.Stop();
  expectNoPassword(ExpectErrorAndUnchangedControl(server.Uri(), 3709));
}

}  // namespace
}  // namespace kvo::shop
