// Measures the picker's product grid with small and large shops on SQLite and PostgreSQL: from
// connecting to the last cell of the first screen, the length of the scroll bar, for which the
// database counts its records, and jumping to any row. Memory is the peak growth of the process's
// heap, including the database library.
#include <memory>
#include <random>

#include "bench/Heap.h"
#include "bench/Sections.h"
#include "bench/Stopwatch.h"
#include "common/forms/Form.h"
#include "common/forms/FormGrid.h"
#include "document/shop/Shop.h"
#include "host/headless/HeadlessPlatform.h"
#include "tests/shop/support/PostgresqlServer.h"
#include "tests/shop/support/SqliteFile.h"

namespace kvo::bench {
namespace {

constexpr std::size_t kRowsOnScreen = 40;
constexpr double kMostForFirstScreen = 100;  // milliseconds

class GridForm final : public Form {
 public:
  explicit GridForm(const std::string& connectionString) : Form("", {6000, 4000}) {
    for (const char* field : {"ProductNo", "Desc1", "Desc2"})
      grid.AddColumn({.caption = field, .field = field});
    grid.DatabaseName(connectionString);
    grid.RecordSource("SELECT ProductNo, Desc1, Desc2 FROM Products");
    grid.Rebind();
  }

  // Reads the screen that starts at row `first`; returns its size in bytes.
  std::size_t Screen(std::size_t first) const {
    std::size_t bytes = 0;
    for (std::size_t row = first; row < first + kRowsOnScreen; ++row)
      for (std::size_t column = 0; column < grid.Columns().size(); ++column)
        bytes += grid.Cell(row, column).size();
    return bytes;
  }

  Grid grid{*this, "grid", {}};
};

std::vector<std::string> Row(Report& report, const char* database, int products,
                             const std::string& connectionString) {
  GridForm(connectionString).Screen(0);  // loads the driver
  ProcessHeap heap;
  const GridForm open(connectionString);
  std::mt19937 random(1);
  std::uniform_int_distribution<std::size_t> anywhere(0, open.grid.RowCount() - kRowsOnScreen);
  Stopwatch stopwatch(Clock::wall);
  stopwatch.Add("screen", [&] {
    const GridForm form(connectionString);
    benchmark::DoNotOptimize(form.Screen(0));
    heap.Look();
  });
  stopwatch.Add("count", [&] {
    const GridForm form(connectionString);
    benchmark::DoNotOptimize(form.Screen(0));
    benchmark::DoNotOptimize(form.grid.RowCount());
    heap.Look();
  });
  stopwatch.Add("jump", [&] {
    benchmark::DoNotOptimize(open.Screen(anywhere(random)));
    heap.Look();
  });
  const Times times = stopwatch.Run();
  return {database,
          std::to_string(products),
          report.AtMost(times.at("screen") * 1e3, kMostForFirstScreen),
          Figure(times.at("count") * 1e3),
          Figure(times.at("jump") * 1e3),
          Figure(heap.PeakKilobytes())};
}

}  // namespace

void MeasurePicker(Report& report) {
  report.Heading("Picker");
  report.Paragraph(
      "Wall-clock time in milliseconds: for the first screen of " + std::to_string(kRowsOnScreen) +
      " products, including the connection (goal: at most " + Figure(kMostForFirstScreen) +
      "); for the same and the number of records, which the scroll bar needs; for a screen at a "
      "random place in the table. The last column is the peak heap, which must not grow with the "
      "table.");
  HeadlessPlatform platform;
  platform.recordsets = [] { return shop::NewRecordset(); };
  const PlatformScope scope(platform);
  std::vector<std::vector<std::string>> rows;
  for (const int products : {1'000, 10'000, 100'000, 1'000'000}) {
    shop::SqliteFile file;
    file.FillProducts(products);
    file.Close();
    rows.push_back(Row(report, "SQLite", products, file.ConnectionString()));
    shop::PostgresqlServer server;
    server.FillProducts(products);
    server.Run("VACUUM ANALYZE Products");
    rows.push_back(Row(report, "PostgreSQL", products, server.Uri()));
  }
  report.Table({"database", "products", "first screen", "with scroll bar", "jump", "heap, KB"},
               rows);
}

}  // namespace kvo::bench
