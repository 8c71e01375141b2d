// Data grids in a desktop's widgets fetch as few records as possible.
#include <gtest/gtest.h>

#include "tests/desktop/DesktopUser.h"
#include "tests/forms/FakeRecordset.h"

namespace kvo {
namespace {

class Records final : public Form {
 public:
  Records() : Form("Sätze", {6000, 3000}) {}
  KVO_CONTROL(Grid, grid, .at = {0, 0, 6000, 3000});
};

class DataGrids : public testing::Test {
 protected:
  static constexpr std::size_t kRows = 100'000;

  DataGrids() {
    const std::map<std::string, Variant> record = {{"no", "1"}};
    table.rows.assign(kRows, record);
    platform.recordsets = [this] { return std::make_shared<FakeRecordset>(table); };
    form.grid.AddColumn(
        {.caption = "Nr & mehr", .field = "no", .sortHint = "Sortieren", .size = 100});
  }

  FakeTable table;
  HeadlessPlatform platform;
  PlatformScope scope{platform};
  Records form;
};

TEST_F(DataGrids, FetchOnlyTheVisibleOfManyRows) {
  const auto user = SitDown(platform, form);
  form.grid.Rebind();
  EXPECT_EQ(user->ShownRecords(form.grid), kRows);
  user->Paint(form.grid, 0);
  EXPECT_GT(table.fetched, 0U);
  user->Paint(form.grid, kRows - 1);
  EXPECT_LT(table.fetched, 2000U);
  user->SelectRows(form.grid, {kRows - 1, kRows / 2});
  EXPECT_EQ(form.grid.SelectedRows(), (std::vector<std::size_t>{kRows / 2, kRows - 1}));
  EXPECT_EQ(user->ShownSelection(form.grid), form.grid.SelectedRows());
  EXPECT_LT(table.fetched, 3000U);
  form.grid.Unbind();
  EXPECT_EQ(user->ShownRecords(form.grid), 0U);
  EXPECT_TRUE(user->ShownSelection(form.grid).empty());
}

TEST_F(DataGrids, ADatabaseThatDisappearsIsReportedOnce) {
  const auto user = SitDown(platform, form);
  int failures = 0;
  user->OnFailure([&](const std::exception&) { ++failures; });
  form.grid.Rebind();
  user->Paint(form.grid, 0);
  table.gone = true;
  user->Paint(form.grid, kRows - 1);
  EXPECT_EQ(failures, 0);  // not during painting
  user->Settle();
  EXPECT_EQ(failures, 1);
}

}  // namespace
}  // namespace kvo
