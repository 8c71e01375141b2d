// The data grid with real databases.
#include <gtest/gtest.h>

#include "common/forms/Form.h"
#include "common/forms/FormGrid.h"
#include "host/headless/HeadlessPlatform.h"
#include "tests/shop/Members.h"
#include "tests/shop/support/PostgresqlServer.h"
#include "tests/shop/support/SqliteFile.h"

namespace kvo::shop {
namespace {

class GridForm final : public Form {
 public:
  GridForm() : Form("Probe", {6000, 4000}) {
    for (const char* field : {"ProductNo", "Desc1", "Desc2"})
      grid.AddColumn({.caption = field, .field = field, .emptyText = "<keine Angabe>"});
    grid.RecordSource(kProducts);
  }
  Grid grid{*this, "grid", {.at = {0, 0, 6000, 4000}}};
};

class ShopGrid : public testing::Test {
 protected:
  ShopGrid() {
    platform.recordsets = [] { return NewRecordset(); };
  }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  GridForm form;
  Grid& grid = form.grid;
};

void ShowsAMillionProductsWithoutLoadingThem(Grid& grid, const std::string& connectionString) {
  grid.DatabaseName(connectionString);
  grid.Rebind();
  EXPECT_EQ(grid.RowCount(), 1'000'000U);
  const auto asked = [&] { return dynamic_cast<Recordset&>(grid.Recordset()).Asked().records; };
  for (std::size_t row = 0; row < 40; ++row)
    EXPECT_EQ(grid.Cell(row, 1), "Artikel " + std::to_string(row));
  EXPECT_EQ(grid.Cell(9, 2), "<keine Angabe>");
  EXPECT_LE(asked(), 256U);
  EXPECT_EQ(grid.Cell(999'999, 0), "P-0999999");
  EXPECT_EQ(grid.Cell(500'000, 0), "P-0500000");
  EXPECT_LE(asked(), 1024U);
  const Variant bookmark = grid.RowBookmark(500'000);
  grid.Recordset().Let("Bookmark", bookmark);
  const Variant name = "ProductNo";
  EXPECT_EQ(ToObject(grid.Recordset().Call("Fields", {&name, 1}))->Get("Value"),
            Variant("P-0500000"));
}

TEST_F(ShopGrid, ShowsAMillionProductsOfAFileWithoutLoadingThem) {
  SqliteFile file;
  file.FillProducts(1'000'000);
  ShowsAMillionProductsWithoutLoadingThem(grid, file.ConnectionString());
}

TEST_F(ShopGrid, ShowsAMillionProductsOfAPostgresqlServerWithoutLoadingThem) {
  const PostgresqlServer server;
  server.FillProducts(1'000'000);
  ShowsAMillionProductsWithoutLoadingThem(grid, server.Uri());
}

TEST_F(ShopGrid, AnEmptyTableHasNoRows) {
  SqliteFile file;
  file.Run("CREATE TABLE Products (ProductNo, Desc1, Desc2)");
  grid.DatabaseName(file.ConnectionString());
  grid.Rebind();
  EXPECT_EQ(grid.RowCount(), 0U);
}

TEST_F(ShopGrid, AFileThatDisappearsIsAnErrorOnTheNextFetch) {
  SqliteFile file;
  file.FillProducts(10'000);
  grid.DatabaseName(file.ConnectionString());
  grid.Rebind();
  EXPECT_EQ(grid.Cell(0, 0), "P-0000000");
  file.Close();
  std::filesystem::remove(file.Path());
  EXPECT_EQ(grid.Cell(1, 0), "P-0000001");
  EXPECT_EQ(FailureOf([&] { grid.Cell(9'000, 0); }).number, 3002);
  EXPECT_EQ(FailureOf([&] { grid.Rebind(); }).number, 3002);
  EXPECT_EQ(grid.RowCount(), 0U);
}

}  // namespace
}  // namespace kvo::shop
