#include <gtest/gtest.h>

#include <set>

#include "common/values/RuntimeError.h"
#include "host/script/HeadlessUser.h"
#include "tests/forms/FakeRecordset.h"

namespace kvo {
namespace {

class TableForm final : public Form {
 public:
  TableForm() : Form("Probe", {6000, 4000}) {
    grid.AddColumn({.caption = "Nr.", .field = "No", .emptyText = "<leer>"});
    grid.AddColumn({.caption = "Name", .field = "Name", .emptyText = "<leer>"});
  }
  int doubleClicks = 0;
  KVO_CONTROL(
      Grid, grid, .onDblClick = [this](Grid&) { ++doubleClicks; });
};

class Grids : public testing::Test {
 protected:
  void Bind(std::size_t rows) {
    table.rows.clear();
    for (std::size_t i = 0; i < rows; ++i)
      table.rows.push_back({{"No", std::to_string(i)}, {"Name", "Name " + std::to_string(i)}});
    form.grid.DatabaseName("db");
    form.grid.RecordSource("SELECT No, Name FROM T");
    form.grid.Rebind();
  }
  FakeTable table;
  HeadlessPlatform platform;
  PlatformScope scope{platform};
  TableForm form;
  HeadlessUser user{platform, form};
  Grids() {
    platform.recordsets = [this] { return std::make_shared<FakeRecordset>(table); };
  }
};

TEST_F(Grids, OpensItsOwnRecordsetForTheStatement) {
  Bind(3);
  ASSERT_EQ(table.opened.size(), 1U);
  EXPECT_EQ(table.opened[0].source, "SELECT No, Name FROM T");
  EXPECT_EQ(table.opened[0].connection, Variant("db"));
  EXPECT_EQ(form.grid.RowCount(), 3U);
  EXPECT_EQ(form.grid.Cell(2, 1), "Name 2");
}

TEST_F(Grids, AnEmptyValueShowsTheColumnsPlaceholder) {
  Bind(1);
  table.rows[0]["Name"] = Variant();
  EXPECT_EQ(form.grid.Cell(0, 1), "<leer>");
}

TEST_F(Grids, RowsAreFetchedOnDemand) {
  Bind(100'000);
  EXPECT_EQ(table.fetched, 0U);
  EXPECT_EQ(form.grid.Cell(0, 0), "0");
  EXPECT_EQ(form.grid.Cell(99'999, 0), "99999");
  EXPECT_EQ(form.grid.Cell(50'000, 0), "50000");
  EXPECT_LT(table.fetched, 1'000U);
  const std::size_t fetched = table.fetched;
  EXPECT_EQ(form.grid.Cell(1, 0), "1");
  EXPECT_EQ(table.fetched, fetched);  // still cached
}

TEST_F(Grids, RowsReadLongAgoAreFetchedAgain) {
  Bind(100'000);
  form.grid.Cell(0, 0);
  for (std::size_t row = 0; row < 100'000; row += 100) form.grid.Cell(row, 0);
  const std::size_t fetched = table.fetched;
  form.grid.Cell(0, 0);
  EXPECT_GT(table.fetched, fetched);
}

TEST_F(Grids, CountsTheRowsOfARecordsetWithoutACount) {
  table.knowsCount = false;
  for (const std::size_t rows : {0U, 1U, 2U, 3U, 7U, 8U, 1000U, 4097U}) {
    Bind(rows);
    EXPECT_EQ(form.grid.RowCount(), rows);
  }
}

TEST_F(Grids, SelectsSeveralRowsInTheOrderOfTheTable) {
  Bind(10);
  user.SelectRows(form.grid, {7, 2, 7});
  EXPECT_EQ(form.grid.SelectedRows(), (std::vector<std::size_t>{2, 7}));
  EXPECT_THROW(user.SelectRows(form.grid, {10}), CannotDo);
  form.grid.Rebind();
  EXPECT_TRUE(form.grid.SelectedRows().empty());
}

TEST_F(Grids, TheBookmarkOfARowMovesTheRecordsetBackToIt) {
  Bind(300);
  form.grid.Recordset().Let("Bookmark", form.grid.RowBookmark(200));
  const Variant name = "No";
  EXPECT_EQ(ToObject(form.grid.Recordset().Call("Fields", {&name, 1}))->Get("Value"),
            Variant("200"));
}

TEST_F(Grids, ADoubleClickSelectsItsRowFirst) {
  Bind(3);
  user.DoubleClick(form.grid, 1);
  EXPECT_EQ(form.grid.SelectedRows(), std::vector<std::size_t>{1});
  EXPECT_EQ(form.doubleClicks, 1);
}

TEST_F(Grids, ADatabaseThatDisappearsIsAnErrorOnTheNextFetch) {
  Bind(1'000);
  EXPECT_EQ(form.grid.Cell(0, 0), "0");
  table.gone = true;
  EXPECT_THROW(form.grid.Cell(900, 0), std::runtime_error);
  EXPECT_EQ(form.grid.Cell(1, 0), "1");  // still cached
  table.gone = false;
  EXPECT_EQ(form.grid.Cell(900, 0), "900");
}

TEST_F(Grids, AFailedOpenLeavesTheGridEmpty) {
  Bind(3);
  table.gone = true;
  EXPECT_THROW(form.grid.Rebind(), std::runtime_error);
  EXPECT_EQ(form.grid.RowCount(), 0U);
}

}  // namespace
}  // namespace kvo
